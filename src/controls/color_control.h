#pragma once

#include <QLabel>

namespace tessavo {

/// Line of text with colours of its own.
class CColorControl : public QLabel {
    Q_OBJECT

 public:
    explicit CColorControl(const QString& text, int controlId, QWidget* parent = nullptr);

    /// An invalid background lets what lies below show through.
    void setColors(const QColor& text, const QColor& background = {});
    [[nodiscard]] QColor textColor() const { return text_; }
    [[nodiscard]] QColor backgroundColor() const { return background_; }

 protected:
    void paintEvent(QPaintEvent* event) override;

 private:
    QColor text_;
    QColor background_;
};

}  // namespace tessavo
