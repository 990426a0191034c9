#pragma once

#include <QStringList>

#include "params/foreign_words.h"

namespace tessavo {

// What a drawn curve includes that does not play, and what it leaves out: "Filter 3 is off but drawn". One
// entry for each; none when what is drawn is what plays.

/// Of an output channel's curve.
[[nodiscard]] QStringList outputCurveNotes(const TuningState& tuning, RecordChannel channel,
                                           const ForeignWords& foreign);

/// Of the input equalizer's curve.
[[nodiscard]] QStringList inputCurveNotes(const TuningState& tuning, const ForeignWords& foreign);

/// What the list "Switch Mode" says beside its method: which sections have words that it does not give.
/// Empty when none has.
[[nodiscard]] QString foreignWordsNote(const TuningState& tuning, const ForeignWords& foreign);

}  // namespace tessavo
