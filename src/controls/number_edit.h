#pragma once

#include <QLineEdit>

#include "controls/edit_notes.h"
#include "controls/mixed_mark.h"
#include "controls/theme.h"

namespace tessavo {

/// Edit box of a number, with a stripe in the colour of its slider.
///
/// The click that brings the focus selects the number. Enter applies the text and keeps the focus, Escape
/// brings back the text last applied, Up and Down ask for a step. Every text can be typed. The box does not
/// read the number: whoever applies it answers with `setValueText`, and warns of texts that count as
/// something else.
class NumberEdit : public QLineEdit {
    Q_OBJECT

 public:
    explicit NumberEdit(int controlId, QWidget* parent = nullptr);

    /// Shows a value; Escape returns to it from now on. This is no edit, and nothing is left to be written.
    void setValueText(const QString& text);
    /// Whether the text was typed, pasted or set from outside since the box got the focus or last showed or
    /// applied a value; also where it reads as before.
    [[nodiscard]] bool isEdited() const { return edited_; }

    /// Colour of the stripe, 0 for none.
    void setColor(QRgb color);
    void setBypassed(bool bypassed);
    /// What the number counts, for screen readers; empty for a plain number.
    void setUnit(const QString& unit) { notes_.setUnit(unit); }
    [[nodiscard]] const QString& unit() const { return notes_.unit(); }

    /// Tells what a text under way counts as, by a red edge, the tooltip and to screen readers; empty for
    /// nothing to tell. Ends by itself when the text is applied or taken back.
    void setWarning(const QString& warning) { notes_.setWarning(warning); }
    [[nodiscard]] const QString& warning() const { return notes_.warning(); }
    /// Tells in the same way, but by a small corner, what is in force or plays other than the box shows.
    void setMark(const QString& mark) { notes_.setMark(mark); }
    [[nodiscard]] const QString& mark() const { return notes_.mark(); }

    /// Marks the value as one that not every channel has which an edit goes to, with this note; takes the
    /// mark away without one.
    void setMixed(const QString& note) {
        notes_.setMixed(note);
        mixed_.setShown(!note.isEmpty());
    }
    [[nodiscard]] bool isMixed() const { return mixed_.isShown(); }

    /// Width that `value` needs in this box.
    [[nodiscard]] int neededWidth(const QString& value) const;

 Q_SIGNALS:
    /// Enter was pressed.
    void entered();
    /// Escape took an edit back; the text is that of the last value again.
    void cancelled();
    /// The focus went elsewhere. Not sent while a receiver of either signal is still at work, whatever
    /// dialogs that opens, nor for a menu of the box itself.
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
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

 private:
    void apply(void (NumberEdit::*signal)());
    void takeBack();

    EditNotes notes_{*this};
    MixedMark mixed_{*this};
    QString applied_;
    bool edited_ = false;
    bool showing_ = false;  ///< the change of text under way is a shown value
    QRgb color_ = 0;
    bool bypassed_ = false;
    bool hovered_ = false;
    bool focused_ = false;
    bool applying_ = false;
    bool selectsOnRelease_ = false;  ///< the press under way brought the focus
};

}  // namespace tessavo
