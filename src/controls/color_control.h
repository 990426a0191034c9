#pragma once

#include <QLabel>

namespace tessavo {

/// Label for one line of text with colours of its own.
class CColorControl : public QLabel {
    Q_OBJECT

 public:
    explicit CColorControl(const QString& text, int controlId, QWidget* parent = nullptr);

    /// Sets the colours of text and ground; without a valid background, what lies below shows through.
    void setColors(const QColor& text, const QColor& background = {});
    [[nodiscard]] QColor textColor() const { return text_; }

 protected:
    void paintEvent(QPaintEvent* event) override;

 private:
    QColor text_;
    QColor background_;
};

}  // namespace tessavo
