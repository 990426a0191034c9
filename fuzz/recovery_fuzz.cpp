#include <algorithm>
#include <cstdint>
#include <memory>
#include <span>
#include <variant>
#include <vector>

#include "base/md5.h"
#include "check.h"
#include "history/history.h"
#include "history/recovery_file.h"

// Any bytes as a recovery file, as they are and as the content of one whose digest is right.

namespace {

using namespace tessavo;

using Bytes = std::vector<std::uint8_t>;

/// A whole file around these bytes, as far as its head and its digest tell.
Bytes fileAround(std::span<const std::uint8_t> body) {
    Bytes file{'T', 'S', 'V', 'R', 'E', 'C', 'O', 'V', 2, 0, 0, 0};
    file.insert(file.end(), body.begin(), body.end());
    const Md5Digest digest = md5(file);
    file.insert(file.end(), digest.begin(), digest.end());
    return file;
}

/// Everything that a state says, in bytes.
Bytes use(const RecoveryState& state) {
    const Bytes again = encodeRecovery(state);
    fuzz::SilentBoxes boxes;
    TuningState tuning(boxes);
    tuning.start();
    History history(tuning);
    fuzz::check(history.adopt(*state.trail, "Restored"), "a history takes every trail that was read");
    fuzz::check(tuning.currentSet() < setCount, "the current set is one");
    while (history.undo()) {
    }
    while (history.redo()) {
    }
    const auto now = std::make_unique<TuningSnapshot>();
    tuning.takeSnapshot(*now);
    return again;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::span<const std::uint8_t> bytes(data, size);
    if (const auto raw = decodeRecovery(bytes); const auto* state = std::get_if<RecoveryState>(&raw)) {
        static_cast<void>(use(*state));
    }
    const auto decoded = decodeRecovery(fileAround(bytes));
    const auto* state = std::get_if<RecoveryState>(&decoded);
    if (state == nullptr) {
        fuzz::check(std::get<RecoveryTrouble>(decoded) == RecoveryTrouble::damaged, "it is no later version");
        return 0;
    }
    const Bytes first = use(*state);
    const auto again = decodeRecovery(first);
    fuzz::check(std::holds_alternative<RecoveryState>(again), "what was read can be written and read again");
    fuzz::check(encodeRecovery(std::get<RecoveryState>(again)) == first, "and is the same then");
    return 0;
}
