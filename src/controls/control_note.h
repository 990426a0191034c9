#pragma once

#include <QString>

class QWidget;

namespace tessavo {

/// Replaces a note in a control's tooltip and in its description for screen readers, whatever else these
/// say; an empty one takes it away. Each note stands on lines of its own.
///
/// \param old as it was given before, empty for none
void replaceNote(QWidget& control, const QString& old, const QString& note);

/// Mark of a switch, list or button that shows something else than what is in force or what plays: a note,
/// and a small corner that the control draws. Part of the control.
class CornerNote {
 public:
    explicit CornerNote(QWidget& control) : control_(control) {}

    /// Puts the mark on with these lines, or takes it away with none.
    void setNote(const QString& note);
    [[nodiscard]] const QString& note() const { return note_; }
    /// State of the skin's piece: `skinMarked` or none.
    [[nodiscard]] unsigned skinState() const;

 private:
    QWidget& control_;
    QString note_;
};

}  // namespace tessavo
