#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "comm/transfers.h"
#include "params/parameter_image.h"
#include "params/records.h"

namespace tessavo {

class TuningState;

/// A set that was read from a copy or from the target.
struct CopiedSet {
    std::optional<ParameterSet> set;
    std::string trouble;  ///< why there is none, as a sentence
};

/// One set that can be looked at beside others.
struct CopySource {
    std::string title;  ///< names it within its group, in UTF-8
    std::string group;  ///< what it stands under: "Target", a backup's folder, "Written into the target"
    std::function<CopiedSet()> read;
};

// What each source reads is converted into a copy of `base`: what the target does not take, as the name, stays
// the base's. Phases are those of the image, which reading a set into the program only ever inverts.

/// The sound sets of all backups that the data folder knows of, newest backup first. Reads disks; any thread.
/// The sources hold what they read.
[[nodiscard]] std::vector<CopySource> backupSources(const std::filesystem::path& dataFolder,
                                                    const ParameterSet& base);
/// What the program itself has written into sets of the target, newest first. As backupSources().
[[nodiscard]] std::vector<CopySource> writtenSources(const std::filesystem::path& dataFolder,
                                                     const ParameterSet& base);
/// The six sets of the target. Each is read through an exchange of its own, which touches neither image nor
/// sets of the program and needs Live Mode off: with Live Mode on nothing is sent, and the trouble is
/// `turnOffLiveModeText`.
/// \param tuning, transfers outlive the sources; the sources read on their thread
[[nodiscard]] std::vector<CopySource> targetSources(const TuningState& tuning, ITransfers& transfers,
                                                    const ParameterSet& base);

/// An image as a set.
[[nodiscard]] ParameterSet setOfImage(const ParameterImage& image, const ParameterSet& base);

}  // namespace tessavo
