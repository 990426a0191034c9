#pragma once

#include <QCheckBox>

#include "controls/captioned_mark.h"
#include "controls/marked_widget.h"

namespace tessavo {

using SkinCheckBoxBase = MixedMarked<CornerMarked<CaptionedMark<QCheckBox>>>;

/// Check box drawn from the skin's pieces.
class SkinCheckBox : public SkinCheckBoxBase {
    Q_OBJECT

 public:
    using SkinCheckBoxBase::SkinCheckBoxBase;

 protected:
    void paintEvent(QPaintEvent* event) override;
};

}  // namespace tessavo
