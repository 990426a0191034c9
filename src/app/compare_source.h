#pragma once

#include <QString>
#include <functional>
#include <optional>
#include <vector>

#include "params/records.h"

namespace tessavo {

/// What came of reading a source of a comparison.
struct CompareReading {
    std::optional<ParameterSet> set;
    /// What was read, where that was only known then, as the file that a person chose; the source's own title where
    /// empty.
    QString title;
    /// Why there is no set, as a sentence. Empty where a person has thought better of it.
    QString trouble;
};

/// A set that a comparison can show beside the program's own ones, as one of a file, of the target or of a backup.
struct CompareSource {
    QString
        title;  ///< in the list of a side: "Backup 2026-03-14 18:02"; with "..." where it asks a person first
    /// Sources of one group stand together; not shown. Those of none stand beside the settings files.
    QString group;
    /// May run an exchange or a dialog. What a set of the target does not hold, as its name, is taken from `base`, so
    /// that it is no difference to that.
    std::function<CompareReading(const ParameterSet& base)> read;
};

/// Gives the sources that there are. Asked whenever a list drops down, so it takes no time.
using CompareSources = std::function<std::vector<CompareSource>()>;

}  // namespace tessavo
