#pragma once

#include <QSpinBox>
#include <QTimer>

#include "controls/edit_notes.h"
#include "controls/tracked_widget.h"

namespace tessavo {

using SpinEditBase = HoverTracked<WheelWithFocus<QSpinBox>>;

/// Edit box of a small whole number with an up-down column at its right.
///
/// Every text can be typed. A text that does not begin with a number leaves the value as it is, a number
/// outside the range counts as the nearest one inside, and what follows a whole number is ignored. While such
/// a text stands in the box, the box warns and says what it counts as; once it is left, it shows the value.
class SpinEdit : public SpinEditBase {
    Q_OBJECT

 public:
    explicit SpinEdit(int controlId, QWidget* parent = nullptr);

    /// Sets how fast the up-down column repeats while it is held.
    /// \param delayMs pause before the second step; 300 without a call
    /// \param intervalMs each further pause; 75 without a call
    void setRepeat(int delayMs, int intervalMs);
    /// The upper or lower half of the up-down column.
    [[nodiscard]] QRect buttonRect(bool upper) const;

    /// Tells that something else plays than the box shows: by a small corner, in the tooltip and to screen
    /// readers. An empty mark tells nothing.
    void setMark(const QString& mark) { notes_.setMark(mark); }
    [[nodiscard]] const QString& mark() const { return notes_.mark(); }
    /// The warning about the text that is being typed; empty when it counts as what it says.
    [[nodiscard]] const QString& warning() const { return notes_.warning(); }

    /// Whether text was typed or pasted since the box showed a value or its text was applied.
    [[nodiscard]] bool isEdited() const { return edited_; }
    /// Takes back the last piece of typing, or brings it again; the value follows.
    void undoTyping();
    void redoTyping();
    /// Ends what a person does with the up-down column just now, as if the button had come up.
    void finish() { releaseButton(); }

    /// Shows a value, clamped to the range, without emitting a signal.
    void showValue(int value);
    void stepBy(int steps) override;

    [[nodiscard]] QValidator::State validate(QString& text, int& cursor) const override;
    [[nodiscard]] int valueFromText(const QString& text) const override;

 Q_SIGNALS:
    /// A person typed the number that the box holds already and applied it. It may be meant for channels that
    /// have another one.
    void retyped(int value);

 protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void changeEvent(QEvent* event) override;

 private:
    void layOutField();
    void releaseButton();
    void warn();
    void noteApplied();
    void applyTypedText();
    void hoverPoint(const QPoint& point);

    EditNotes notes_{*this};
    QString applied_;      ///< text that was shown or applied last
    bool edited_ = false;  ///< a person has typed since
    bool typed_ = false;   ///< a person typed, and the value has not changed since
    QTimer repeat_;
    int repeatDelayMs_ = 300;
    int repeatIntervalMs_ = 75;
    int pressed_ = 0;  ///< +1 upper half held, -1 lower half held
    int hoveredHalf_ = 0;
};

}  // namespace tessavo
