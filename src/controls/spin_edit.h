#pragma once

#include <QSpinBox>
#include <QTimer>

#include "controls/edit_notes.h"

namespace tessavo {

/// Edit box of a small whole number with an up-down column at its right.
///
/// Every text can be typed. One that begins with no number leaves the value, a number beyond the range counts
/// as the nearest one inside, what follows a whole number is cut off; the box warns of each while it stands
/// there, and shows the value once it is left.
class SpinEdit : public QSpinBox {
    Q_OBJECT

 public:
    explicit SpinEdit(int controlId, QWidget* parent = nullptr);

    /// How fast the column repeats while held: first pause and each further one.
    void setRepeat(int delayMs, int intervalMs);
    /// Upper or lower half of the column.
    [[nodiscard]] QRect buttonRect(bool upper) const;

    /// Tells by a small corner, the tooltip and to screen readers what plays other than the box shows; empty
    /// for nothing to tell.
    void setMark(const QString& mark) { notes_.setMark(mark); }
    [[nodiscard]] const QString& mark() const { return notes_.mark(); }
    /// What the text under way counts as, where that is not what it says.
    [[nodiscard]] const QString& warning() const { return notes_.warning(); }

    /// Shows a value, clamped to the range, and tells nobody.
    void showValue(int value);
    void stepBy(int steps) override;

    [[nodiscard]] QValidator::State validate(QString& text, int& cursor) const override;
    [[nodiscard]] int valueFromText(const QString& text) const override;

 Q_SIGNALS:
    /// The number that the box holds already was typed once more and applied.
    void retyped(int value);

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
    void keyPressEvent(QKeyEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void changeEvent(QEvent* event) override;

 private:
    void placeField();
    void letGo();
    void warn();
    void takeTyped();
    void hoverAt(const QPoint& place);

    EditNotes notes_{*this};
    bool typed_ = false;  ///< a text that has changed no value
    QTimer repeat_;
    int repeatDelayMs_ = 300;
    int repeatIntervalMs_ = 75;
    int pressed_ = 0;  ///< +1 upper half held, -1 lower half held
    int hoveredHalf_ = 0;
    bool hovered_ = false;
};

}  // namespace tessavo
