#include "copies/restore.h"

#include <algorithm>

#include "comm/set_messages.h"
#include "comm/target_commands.h"
#include "comm/transfer_timing.h"
#include "copies/copy_round.h"
#include "copies/target_copy.h"

namespace tessavo {

namespace {

constexpr std::size_t exchangesPerSet = 4;

std::size_t countOfDifferences(const ParameterImage& one, const ParameterImage& other) {
    const auto* const bytes = reinterpret_cast<const std::uint8_t*>(&one);
    const auto* const others = reinterpret_cast<const std::uint8_t*>(&other);
    std::size_t count = 0;
    for (std::size_t i = 0; i < sizeof one; ++i) {
        count += bytes[i] != others[i] ? 1 : 0;
    }
    return count;
}

// Each step answers whether the restore goes on.
class Restore {
 public:
    Restore(ITransfers& transfers, IClock& clock, std::span<const SetToWrite> sets, const CopyWatch& watch,
            const std::function<void(const SetToWrite&)>& saved)
        : transfers_(transfers),
          clock_(clock),
          sets_(sets),
          saved_(saved),
          round_(watch, sets.size() * exchangesPerSet) {}

    RestoreReport run() {
        for (const SetToWrite& set : sets_) {
            report_.sets.push_back({.targetSet = set.targetSet, .state = RestoredState::untouched});
        }
        for (std::size_t i = 0; i < sets_.size(); ++i) {
            const SetToWrite& set = sets_[i];
            RestoredState& state = report_.sets[i].state;
            if (!sendLive(set) || !confirm(set) || !save(set, state) || !readBack(set, state)) {
                break;
            }
        }
        return report_;
    }

 private:
    bool begin(CopyAct act, const SetToWrite& set) {
        return round_.begin(act, set.targetSet) || ended(RestoreReport::End::cancelled, act, set);
    }
    bool ended(RestoreReport::End end, CopyAct act, const SetToWrite& set, bool answered = false) {
        report_.end = end;
        report_.place = {.targetSet = set.targetSet, .act = act, .answered = answered};
        return false;
    }
    bool failed(CopyAct act, const SetToWrite& set, bool answered = false) {
        return ended(RestoreReport::End::failed, act, set, answered);
    }
    void tellSaved(const SetToWrite& set) const {
        if (saved_) {
            saved_(set);
        }
    }
    bool sendLive(const SetToWrite& set);
    bool confirm(const SetToWrite& set);
    bool save(const SetToWrite& set, RestoredState& state);
    bool readBack(const SetToWrite& set, RestoredState& state);
    [[nodiscard]] RestoredState afterFailedSave(const SetToWrite& set);

    ITransfers& transfers_;
    IClock& clock_;
    std::span<const SetToWrite> sets_;
    const std::function<void(const SetToWrite&)>& saved_;
    CopyRound round_;
    RestoreReport report_;
};

bool Restore::sendLive(const SetToWrite& set) {
    if (!begin(CopyAct::sendLive, set)) {
        return false;
    }
    if (transfers_.SendToTarget(liveMessage(set.image), MessageType::blocks4k)) {
        report_.plays = {.kind = PlaysNow::Kind::unknown, .targetSet = 0};
        return true;
    }
    if (round_.maybeSent()) {
        report_.plays = {.kind = PlaysNow::Kind::unknown, .targetSet = 0};
    }
    return failed(CopyAct::sendLive, set);
}

bool Restore::confirm(const SetToWrite& set) {
    if (!clock_.sleep(timing::pauseBeforeConfirmation)) {
        return ended(RestoreReport::End::cancelled, CopyAct::confirm, set);
    }
    if (!begin(CopyAct::confirm, set)) {
        return false;
    }
    TargetReply reply{};
    if (!transfers_.ReceiveFromTarget(reply, std::span(&command_code::confirmLiveSet, std::size_t{1}))) {
        return failed(CopyAct::confirm, set);
    }
    if (!isConfirmation(reply)) {
        return failed(CopyAct::confirm, set, true);
    }
    report_.plays = {.kind = PlaysNow::Kind::image, .targetSet = set.targetSet};
    return true;
}

bool Restore::save(const SetToWrite& set, RestoredState& state) {
    if (!begin(CopyAct::save, set)) {
        return false;
    }
    if (!transfers_.SendToTarget(saveMessage(set.targetSet, set.image), MessageType::blocks128)) {
        state = round_.maybeSent() ? afterFailedSave(set) : RestoredState::untouched;
        if (state == RestoredState::done) {
            tellSaved(set);
        }
        return failed(CopyAct::save, set);
    }
    state = RestoredState::notCompared;
    tellSaved(set);
    return true;
}

// Where only the answer was lost the set is saved all the same; the set itself tells.
RestoredState Restore::afterFailedSave(const SetToWrite& set) {
    const auto image =
        round_.mayGoOn() ? readTargetSet(transfers_, set.targetSet).image() : std::optional<ParameterImage>();
    if (!image) {
        return RestoredState::oldOrNew;
    }
    return equalBytes(*image, set.image) ? RestoredState::done : RestoredState::untouched;
}

bool Restore::readBack(const SetToWrite& set, RestoredState& state) {
    if (!begin(CopyAct::readBack, set)) {
        return false;
    }
    const SetCopy copy = readTargetSet(transfers_, set.targetSet);
    const auto image = copy.image();
    if (!image) {
        return failed(CopyAct::readBack, set, copy.state == SetState::wrongDigest);
    }
    if (!equalBytes(*image, set.image)) {
        state = RestoredState::differs;
        return failed(CopyAct::readBack, set, true);
    }
    state = RestoredState::done;
    return true;
}

}  // namespace

RestoreReport restoreSets(ITransfers& transfers, IClock& clock, std::span<const SetToWrite> sets,
                          const CopyWatch& watch, const std::function<void(const SetToWrite&)>& saved) {
    return Restore(transfers, clock, sets, watch, saved).run();
}

std::vector<Comparison> compareSets(ITransfers& transfers, std::span<const SetToWrite> sets,
                                    const CopyWatch& watch) {
    std::vector<Comparison> rows;
    for (const SetToWrite& set : sets) {
        rows.push_back({.targetSet = set.targetSet});
    }
    CopyRound round(watch, sets.size());
    for (std::size_t i = 0; i < sets.size(); ++i) {
        if (!round.begin(CopyAct::readSet, sets[i].targetSet)) {
            break;
        }
        const SetCopy copy = readTargetSet(transfers, sets[i].targetSet);
        const auto image = copy.image();
        if (!image) {
            rows[i].result = copy.state == SetState::wrongDigest ? Comparison::Result::wrongDigest
                                                                 : Comparison::Result::failed;
            continue;
        }
        rows[i].differingBytes = countOfDifferences(*image, sets[i].image);
        rows[i].result =
            rows[i].differingBytes == 0 ? Comparison::Result::equal : Comparison::Result::differs;
    }
    return rows;
}

}  // namespace tessavo
