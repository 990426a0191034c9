#pragma once

#include <QString>

class QWidget;

namespace tessavo {

/// What an edit box says beside its number: a warning about a text that is being typed, and a mark when the
/// number is not what is in force or what the target plays. The notes stand in the tooltip and, behind the
/// unit, in the description for screen readers. The box draws what `skinState` says.
class EditNotes {
 public:
    /// \param box outlives this object
    explicit EditNotes(QWidget& box) : box_(box) {}

    // Each of these sets one sentence; an empty one takes it away.
    void setUnit(const QString& unit);
    void setWarning(const QString& warning);
    void setMark(const QString& mark);
    /// Sets the different values of the channels that an edit of the box goes to, one on each line.
    void setMixed(const QString& mixed);

    [[nodiscard]] const QString& unit() const { return unit_; }
    [[nodiscard]] const QString& warning() const { return warning_; }
    [[nodiscard]] const QString& mark() const { return mark_; }
    /// States of the skin's piece: `skinWarned`, `skinMarked`, both or none.
    [[nodiscard]] unsigned skinState() const;

 private:
    void change(QString& note, const QString& text);

    QWidget& box_;
    QString unit_;
    QString warning_;
    QString mark_;
    QString mixed_;
};

}  // namespace tessavo
