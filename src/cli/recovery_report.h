#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "history/recovery_store.h"

namespace tessavo::cli {

/// A recovery file with what it holds.
struct FoundRecovery {
    std::filesystem::path file;
    RecoveryState state;
};

/// Recovery files for people to read: where each one lies, its time, settings file, current set, names of the
/// sets and of channels, note, steps, and in what the sets differ from the settings file, or from the defaults
/// where they have none.
[[nodiscard]] std::string recoveriesReport(const std::vector<FoundRecovery>& found);

/// The same for programs, with every difference:
/// {"recoveries": [{"file": ..., "time": ..., "process": 1, "document": ..., "currentSet": 1,
/// "filterMode": "BZT", "setNames": [...], "notes": {...}, "done": [{"time": ..., "set": 1, "text": ...}],
/// "undone": [...],
/// "comparedWith": "document", "differences": [{"field": ..., "before": ..., "after": ...}]}],
/// "damaged": [...], "newer": [...], "unreadable": [...]}. Times are in UTC; a recovery without settings file
/// has none in "document"; where that cannot be read, "comparedWith" and "differences" are null. "notes" is what
/// their own file would hold, and null where there are none.
[[nodiscard]] std::string recoveriesJson(const std::vector<FoundRecovery>& found, const RecoveryList& list);

}  // namespace tessavo::cli
