#pragma once

#include "controls/control_note.h"
#include "controls/mixed_mark.h"

namespace tessavo {

/// Base of a control that can wear a corner: it shows something else than what is in force or what plays.
/// \tparam Widget what the control would derive from otherwise
template <typename Widget>
class CornerMarked : public Widget {
 public:
    using Widget::Widget;

    /// Puts the corner on and tells the note in the tooltip and to screen readers; an empty note takes it
    /// away.
    void setMark(const QString& note) { corner_.setNote(note); }
    /// The note as it was given; empty without a mark.
    [[nodiscard]] const QString& markNote() const { return corner_.note(); }

 protected:
    /// State of the skin's piece that draws the corner: `skinMarked` or none.
    [[nodiscard]] unsigned markState() const { return corner_.skinState(); }

 private:
    CornerNote corner_{*this};
};

/// Base of a control that can show one value in place of several different ones: those of the channels that
/// an edit of it goes to.
/// \tparam Widget what the control would derive from otherwise
template <typename Widget>
class MixedMarked : public Widget {
 public:
    using Widget::Widget;

    /// Draws the dashed outline and tells the note, the channels' values, in the tooltip and to screen
    /// readers; an empty note takes both away.
    void setMixed(const QString& note) { mixed_.setNote(note); }
    [[nodiscard]] bool isMixed() const { return mixed_.isShown(); }

 protected:
    [[nodiscard]] const MixedMark& mixedMark() const { return mixed_; }

 private:
    MixedMark mixed_{*this};
};

}  // namespace tessavo
