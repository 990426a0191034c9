#pragma once

#include <QLineEdit>

#include "controls/tracked_widget.h"

namespace tessavo {

/// Edit box for one line of text, with the skin's frame.
class TextEditBox : public HoverTracked<QLineEdit> {
    Q_OBJECT

 public:
    explicit TextEditBox(int controlId, QWidget* parent = nullptr);

 protected:
    void paintEvent(QPaintEvent* event) override;
};

}  // namespace tessavo
