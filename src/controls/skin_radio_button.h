#pragma once

#include <QRadioButton>

#include "controls/captioned_mark.h"

namespace tessavo {

using SkinRadioButtonBase = CaptionedMark<QRadioButton>;

/// Radio button drawn from the skin's pieces.
class SkinRadioButton : public SkinRadioButtonBase {
    Q_OBJECT

 public:
    using SkinRadioButtonBase::SkinRadioButtonBase;

 protected:
    void paintEvent(QPaintEvent* event) override;
};

}  // namespace tessavo
