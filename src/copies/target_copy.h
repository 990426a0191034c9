#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>

#include "comm/target_commands.h"
#include "comm/transfers.h"
#include "copies/copy_watch.h"
#include "copies/target_sets.h"
#include "history/step.h"

namespace tessavo {

/// What there is of one set of the target.
enum class SetState : std::uint8_t {
    notRead,      ///< nobody has asked for it
    sound,        ///< as the target has it, with the right digest
    wrongDigest,  ///< as the target sent it, but its digest is another: it cannot be restored
    failed,       ///< the exchange failed; the engine has told why
    lost          ///< it was read, but its file is missing, cut short or altered
};

/// One set of a target as it was read.
struct SetCopy {
    std::uint8_t targetSet = 0;  ///< 1 to 5, or 0 for the default set
    SetState state = SetState::notRead;
    TargetReply reply{};  ///< as it arrived; zeros unless the state is `sound` or `wrongDigest`
    std::string trouble;  ///< what is wrong with a `lost` one, in words

    /// Its image, byte for byte as it arrived; nothing unless it is sound.
    [[nodiscard]] std::optional<ParameterImage> image() const;
};

/// The six sets of a target and its versions.
struct TargetCopy {
    TargetCopy();

    std::array<SetCopy, targetSetNumbers.size()> sets;  ///< in the order of targetSetNumbers
    std::optional<TargetVersions> versions;             ///< nothing when they could not be read
    std::string port;                                   ///< name of the port that it was read through
    WallTime time;                                      ///< when it was read; whole seconds

    /// \param targetSet 1 to 5, or 0 for the default set
    [[nodiscard]] const SetCopy& set(std::uint8_t targetSet) const;
    /// Whether the target gave all six sets, sound or not.
    [[nodiscard]] bool everySetRead() const;
    /// Whether all six sets are sound.
    [[nodiscard]] bool everySetSound() const;
    /// Whether not a single set is there.
    [[nodiscard]] bool isEmpty() const;
};

struct BackUp {
    TargetCopy copy;         ///< without port and time, which the caller fills in
    bool cancelled = false;  ///< it was ended before the last exchange; what follows was not read
};

/// Reads the six sets, 1 to 5 and then the default set, and behind them the versions: seven exchanges. A set
/// that is damaged or whose exchange failed does not stop the others. No image of the program is touched.
[[nodiscard]] BackUp backUp(ITransfers& transfers, const CopyWatch& watch = {});

/// Reads one set of the target through its own exchange, and touches nothing else.
/// \param targetSet 1 to 5, or 0 for the default set
/// \return `sound`, `wrongDigest` or `failed`
[[nodiscard]] SetCopy readTargetSet(ITransfers& transfers, std::uint8_t targetSet);

}  // namespace tessavo
