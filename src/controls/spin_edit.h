#pragma once

#include <QSpinBox>
#include <QTimer>

namespace tessavo {

/// Edit box of a small whole number with an up-down column at its right.
class SpinEdit : public QSpinBox {
    Q_OBJECT

 public:
    explicit SpinEdit(int controlId, QWidget* parent = nullptr);

    /// How fast the column repeats while held: first pause and each further one.
    void setRepeat(int delayMs, int intervalMs);
    /// Upper or lower half of the column.
    [[nodiscard]] QRect buttonRect(bool upper) const;

 protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void changeEvent(QEvent* event) override;

 private:
    void placeField();
    void letGo();
    void hoverAt(const QPoint& place);

    QTimer repeat_;
    int repeatDelayMs_ = 300;
    int repeatIntervalMs_ = 75;
    int pressed_ = 0;  ///< +1 upper half held, -1 lower half held
    int hoveredHalf_ = 0;
    bool hovered_ = false;
};

}  // namespace tessavo
