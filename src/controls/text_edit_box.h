#pragma once

#include <QLineEdit>

namespace tessavo {

/// Edit box for a line of text, left-aligned, with the frame of the skin.
class TextEditBox : public QLineEdit {
    Q_OBJECT

 public:
    explicit TextEditBox(int controlId, QWidget* parent = nullptr);

 protected:
    void paintEvent(QPaintEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;

 private:
    bool hovered_ = false;
};

}  // namespace tessavo
