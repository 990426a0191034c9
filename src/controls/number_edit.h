#pragma once

#include <QLineEdit>

#include "controls/mixed_mark.h"
#include "controls/theme.h"

namespace tessavo {

/// Edit box of a number, with a stripe in the colour of its slider.
///
/// The click that brings the focus selects the number. Enter applies the text and keeps the focus, Escape
/// brings back the text last applied, Up and Down ask for a step. The box does not read the number: whoever
/// applies it answers with `setValueText`.
class NumberEdit : public QLineEdit {
    Q_OBJECT

 public:
    explicit NumberEdit(int controlId, QWidget* parent = nullptr);

    /// Shows a value; Escape returns to it from now on.
    void setValueText(const QString& text);
    /// Whether a person has changed the text since it was last set or applied.
    [[nodiscard]] bool isEdited() const { return text() != applied_; }

    /// Colour of the stripe, 0 for none.
    void setColor(QRgb color);
    void setBypassed(bool bypassed);
    /// What the number counts, for screen readers; empty for a plain number.
    void setUnit(const QString& unit) { setAccessibleDescription(unit); }

    /// Marks the value as one that not every channel has which an edit goes to, with this note; takes the
    /// mark away without one.
    void setMixed(const QString& note) { mixed_.setNote(note); }
    [[nodiscard]] bool isMixed() const { return mixed_.isShown(); }

    /// Width that `value` needs in this box.
    [[nodiscard]] int neededWidth(const QString& value) const;

 Q_SIGNALS:
    /// Enter was pressed.
    void entered();
    /// The focus went elsewhere. Not sent while a receiver of either signal is still at work, whatever
    /// dialogs that opens, nor for a menu of the box itself.
    void left();
    /// Up (+1) or Down (-1) was pressed; coarse with Shift.
    void stepRequested(int steps, bool coarse);

 protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

 private:
    void apply(void (NumberEdit::*signal)());

    MixedMark mixed_{*this};
    QString applied_;
    QRgb color_ = 0;
    bool bypassed_ = false;
    bool hovered_ = false;
    bool focused_ = false;
    bool applying_ = false;
    bool selectsOnRelease_ = false;  ///< the press under way brought the focus
};

}  // namespace tessavo
