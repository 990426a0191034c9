#pragma once

#include <QLineEdit>

#include "controls/edit_notes.h"
#include "controls/mixed_mark.h"
#include "controls/theme.h"
#include "controls/tracked_widget.h"

namespace tessavo {

/// Edit box of a number, with a stripe in the colour of its slider.
///
/// The click that brings the focus selects the number. Enter applies the text and keeps the focus, Escape
/// brings back the text that was applied last, Up and Down ask for a step. Every text can be typed: the box
/// does not read the number. Its owner does, when the text is applied, and answers with setValueText(); while
/// a person types, the owner warns of a text that would count as another number.
class NumberEdit : public HoverTracked<QLineEdit> {
    Q_OBJECT

 public:
    explicit NumberEdit(int controlId, QWidget* parent = nullptr);

    /// Shows a value, to which Escape returns from now on. This does not count as an edit.
    void setValueText(const QString& text);
    /// Whether the text was typed, pasted or set from outside since the box got the focus, showed a value or
    /// applied its text; also when it reads as before.
    [[nodiscard]] bool isEdited() const { return edited_; }
    /// Takes back the last piece of typing. Back at the text that was applied last the box is as Escape leaves
    /// it, except that redo() still brings the typing again.
    void undoTyping();

    /// Colour of the stripe, 0 for none.
    void setColor(QRgb color);
    void setBypassed(bool bypassed);
    /// Sets the unit that screen readers say behind the number; empty for a plain number.
    void setUnit(const QString& unit) { notes_.setUnit(unit); }
    [[nodiscard]] const QString& unit() const { return notes_.unit(); }

    /// Tells that the text being typed counts as another number: by a red edge, in the tooltip and to screen
    /// readers. An empty warning tells nothing; the warning also ends when the text is applied or taken back.
    void setWarning(const QString& warning) { notes_.setWarning(warning); }
    [[nodiscard]] const QString& warning() const { return notes_.warning(); }
    /// Tells that something else is in force or plays than the box shows: by a small corner, in the tooltip
    /// and to screen readers. An empty mark tells nothing.
    void setMark(const QString& mark) { notes_.setMark(mark); }
    [[nodiscard]] const QString& mark() const { return notes_.mark(); }

    /// Marks the value as one that not all of the channels have that an edit of it goes to. The note, their
    /// values, goes into the tooltip and to screen readers; an empty note takes the mark away.
    void setMixed(const QString& note) {
        notes_.setMixed(note);
        mixed_.setShown(!note.isEmpty());
    }
    [[nodiscard]] bool isMixed() const { return mixed_.isShown(); }

    /// Width that the box needs to show `value`, in pixels.
    [[nodiscard]] int neededWidth(const QString& value) const;

 Q_SIGNALS:
    /// Enter was pressed.
    void entered();
    /// Escape took an edit back: the text is the one that was applied or shown last.
    void cancelled();
    /// The focus went elsewhere. Not sent while a receiver of entered() or left() is still at work (it may
    /// open a dialog, which takes the focus), nor when the box opens its own menu.
    void left();
    /// Up (+1) or Down (-1) was pressed; coarse with Shift.
    void stepRequested(int steps, bool coarse);

 protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

 private:
    void apply(void (NumberEdit::*signal)());
    void revert();

    EditNotes notes_{*this};
    MixedMark mixed_{*this};
    QString applied_;
    bool edited_ = false;
    bool showing_ = false;  ///< setValueText() is changing the text just now
    QRgb color_ = 0;
    bool bypassed_ = false;
    bool focused_ = false;
    bool applying_ = false;
    bool selectsOnRelease_ = false;  ///< the press under way brought the focus
};

}  // namespace tessavo
