#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <vector>

#include "comm/clock.h"
#include "comm/transfers.h"
#include "copies/copy_watch.h"
#include "copies/target_sets.h"

namespace tessavo {

/// A set of the target and what it is to hold.
struct SetToWrite {
    std::uint8_t targetSet = 0;  ///< 1 to 5, or 0 for the default set
    ParameterImage image;
};

/// What is known of a set that was to be restored.
enum class RestoredState : std::uint8_t {
    untouched,    ///< nothing was saved into it: it holds what it held before
    oldOrNew,     ///< the command to save it failed and it could not be read: it holds one of the two, whole
    notCompared,  ///< the target has saved it, but it was not read back
    differs,      ///< the target has saved it, but what was read back is something else
    done          ///< it holds the copy: read back and compared byte for byte
};

/// What the target plays when a restore has ended.
struct PlaysNow {
    enum class Kind : std::uint8_t {
        asBefore,  ///< no image was sent
        image,     ///< the image of `targetSet`, which the target has confirmed
        unknown    ///< an image was sent, and the target did not confirm it
    };
    Kind kind = Kind::asBefore;
    std::uint8_t targetSet = 0;  ///< the set whose image it is

    friend bool operator==(const PlaysNow&, const PlaysNow&) = default;
};

/// What became of a restore.
struct RestoreReport {
    enum class End : std::uint8_t { done, failed, cancelled };
    struct Row {
        std::uint8_t targetSet = 0;
        RestoredState state = RestoredState::untouched;
    };
    /// What a restore failed at, or was about to do when it was cancelled.
    struct Place {
        std::uint8_t targetSet = 0;
        CopyAct act = CopyAct::sendLive;
        /// The exchange itself went through, but the target did not confirm, or gave back something else.
        bool answered = false;
    };
    End end = End::done;
    std::vector<Row> sets;       ///< in the order in which they were asked for
    std::optional<Place> place;  ///< nothing when all is done
    PlaysNow plays;
};

/// Puts images back into sets of the target. **The target plays each of them in turn.** For each set: the
/// image live, its confirmation, the command to save it, the set read back and compared byte for byte. The
/// bytes of the image go as they are, its first word included. Stops at the first failure; a command to save
/// that failed is followed by one attempt to read the set, to tell what it holds.
///
/// Needs Live Mode off, which the caller sees to.
/// \param clock pauses between an image and its confirmation; a pause that is cut short cancels
/// \param saved called after each command to save that the target took; may be empty
[[nodiscard]] RestoreReport restoreSets(ITransfers& transfers, IClock& clock,
                                        std::span<const SetToWrite> sets, const CopyWatch& watch = {},
                                        const std::function<void(const SetToWrite&)>& saved = {});

/// How a set of the target compares with a copy.
struct Comparison {
    enum class Result : std::uint8_t {
        notRead,      ///< cancelled before it
        failed,       ///< the exchange failed
        wrongDigest,  ///< the target sent it with a wrong digest
        differs,
        equal
    };
    std::uint8_t targetSet = 0;
    Result result = Result::notRead;
    std::size_t differingBytes = 0;  ///< of the image's 3384
};

/// Reads sets of the target and compares each with its copy byte for byte. A set that cannot be read does not
/// stop the others. Changes nothing in the target.
/// \return a row for each set, in the order given
[[nodiscard]] std::vector<Comparison> compareSets(ITransfers& transfers, std::span<const SetToWrite> sets,
                                                  const CopyWatch& watch = {});

}  // namespace tessavo
