#pragma once

#include <QString>

class QWidget;

namespace tessavo {

/// Replaces a note in a control's tooltip and in its description for screen readers. Other notes there stay.
/// Each note stands on lines of its own.
/// \param control the control
/// \param old the note to be replaced, as it was given before; empty when there is none yet
/// \param note the note in its place; empty to have none
void replaceNote(QWidget& control, const QString& old, const QString& note);

/// Tells that a switch, list or button shows something else than what is in force or what the target plays:
/// by a note in its tooltip, and by a small corner that the control draws. A member of the control.
class CornerNote {
 public:
    /// \param control outlives this object
    explicit CornerNote(QWidget& control) : control_(control) {}

    /// Sets the note; an empty one takes note and corner away.
    void setNote(const QString& note);
    [[nodiscard]] const QString& note() const { return note_; }
    /// State of the skin's piece that draws the corner: `skinMarked` or none.
    [[nodiscard]] unsigned skinState() const;

 private:
    QWidget& control_;
    QString note_;
};

}  // namespace tessavo
