#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "history/history.h"
#include "params/level_match.h"
#include "params/tuning_snapshot.h"

namespace tessavo {

/// The two sides between which a person switches to compare.
enum class AbSide : std::uint8_t { a, b };

[[nodiscard]] constexpr AbSide otherSide(AbSide side) {
    return side == AbSide::a ? AbSide::b : AbSide::a;
}

/// 'A' or 'B'.
[[nodiscard]] constexpr char letterOf(AbSide side) {
    return side == AbSide::a ? 'A' : 'B';
}

/// The memories A and B of each of the five sets. A memory is everything that belongs to one set: record, image,
/// what it was received with, and coefficients. Memories live as long as this object; opening a file does not touch
/// them.
///
/// One side of each set counts as heard: A at first, and after a switch the side that was switched to. A switch is a
/// step, and undoing or redoing it leads back to the side of then.
///
/// Used on the user-interface thread. Whatever says nothing else is about the current set.
class AbMemories {
 public:
    /// \param tuning, history outlive this object
    AbMemories(TuningState& tuning, History& history) : tuning_(tuning), history_(history) {}

    /// The side that counts as heard. To be asked after each change of the steps, so that steps that are made in the
    /// place of an undone switch are not taken for it.
    [[nodiscard]] AbSide heard();
    [[nodiscard]] bool has(AbSide side) const { return memoryOf(side) != nullptr; }
    /// Whether the set differs from the memory of the side that is heard. Not before that side has one.
    [[nodiscard]] bool isChanged();

    /// Puts the set as it stands into the memory of the side that is heard.
    void store();

    /// What a switch did.
    struct Switch {
        AbSide to;
        /// The other side had no memory: it holds the set as it stood, and so does the side that was left if that had
        /// none either.
        bool isCopy;
        /// What had changed since the memory of the side that was left: that memory stays without it. It is in the other
        /// one where the switch made a copy, and otherwise in none.
        bool hadChanges;
    };
    /// Brings a state back, as TuningState::restore() does.
    using Restore = std::function<void(const TuningSnapshot&)>;
    /// Makes the memory of the other side the current set and that side the one that is heard, as one step "Switched to
    /// B". The rest of the state stays. Ends the step in the making first; nothing may be under way.
    /// \param restore is given the whole state to go over to, once
    Switch switchSides(const Restore& restore);

    /// How far a side is to be lowered to play as loud as the other one, by their memories: what has changed since
    /// does not count. Nothing is lowered before both sides have one.
    [[nodiscard]] LevelMatch levelMatch(AbSide side) const;

 private:
    /// The parts of a TuningSnapshot that belong to one set.
    struct Memory {
        ParameterSet record;
        ParameterImage image;
        ReceivedSnapshot received;
        std::array<std::array<BiquadWords, bandCount>, channelCount> bandWords;
        std::array<std::array<BiquadWords, crossoverCount>, channelCount> crossoverWords;
        std::array<BiquadWords, inputSectionCount> inputWords;
        double loudnessDb;
    };
    using Pair = std::array<std::unique_ptr<const Memory>, 2>;
    /// A step that switched.
    struct Done {
        std::uint64_t number;  ///< of the step, counted from 1
        std::shared_ptr<const Step> step;
        std::uint32_t set;
        AbSide to;
    };

    [[nodiscard]] static std::unique_ptr<const Memory> memoryIn(const TuningSnapshot& state);
    [[nodiscard]] static bool equals(const Memory& memory, const TuningSnapshot& state);
    [[nodiscard]] const Memory* memoryOf(AbSide side) const;
    [[nodiscard]] std::unique_ptr<const Memory>& slotOf(AbSide side);
    [[nodiscard]] std::unique_ptr<TuningSnapshot> state() const;
    void forgetReplaced();

    TuningState& tuning_;
    History& history_;
    std::array<Pair, setCount> memories_;
    std::array<AbSide, setCount> first_{};  ///< heard before the first of `switches_`
    std::vector<Done> switches_;            ///< by rising number
    std::optional<AbSide> switchingTo_;     ///< while the step of a switch is being made
};

}  // namespace tessavo
