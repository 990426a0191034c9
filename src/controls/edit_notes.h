#pragma once

#include <QString>

class QWidget;

namespace tessavo {

/// What an edit box says beside its number: the warning about a text under way, and the mark of a box whose
/// number is not what is in force or what plays. All of it stands in the tooltip and, behind the unit, in the
/// description for screen readers; the box draws what `skinState` says.
class EditNotes {
 public:
    /// \param box outlives this object
    explicit EditNotes(QWidget& box) : box_(box) {}

    // Each is a sentence, empty for none.
    void setUnit(const QString& unit);
    void setWarning(const QString& warning);
    void setMark(const QString& mark);
    /// The values that an edit of the box goes over, one on each line.
    void setMixed(const QString& mixed);

    [[nodiscard]] const QString& unit() const { return unit_; }
    [[nodiscard]] const QString& warning() const { return warning_; }
    [[nodiscard]] const QString& mark() const { return mark_; }
    /// States of the skin's piece: `skinWarned`, `skinMarked`.
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
