#include "copies/copy_text.h"

#include <algorithm>

namespace tessavo {

namespace {

std::string line(std::uint8_t targetSet, std::string_view text) {
    return targetSetText(targetSet).append(": ").append(text);
}

std::string failureText(const RestoreReport& report) {
    const RestoreReport::Place& place = *report.place;
    const std::string set = targetSetText(place.targetSet);
    switch (place.act) {
        case CopyAct::sendLive:
            return std::string("the target did not take the copy of ").append(set);
        case CopyAct::confirm:
            return std::string(place.answered ? "the target did not confirm the copy of "
                                              : "the target took, but was not heard to confirm, the copy of ")
                .append(set);
        case CopyAct::save:
            return std::string("the command to save ").append(set).append(" failed");
        default:
            break;
    }
    const auto row = std::ranges::find(report.sets, place.targetSet, &RestoreReport::Row::targetSet);
    if (!place.answered) {
        return set + " was saved, but could not be read back";
    }
    return row != report.sets.end() && row->state == RestoredState::differs
               ? set + " was saved, but what was read back is not the copy"
               : set + " was saved, but was read back with a wrong digest";
}

}  // namespace

std::string copyActText(CopyAct act, std::uint8_t targetSet) {
    const std::string set = targetSetText(targetSet);
    switch (act) {
        case CopyAct::readSet:
            return "reading " + set;
        case CopyAct::readVersions:
            return "reading the versions";
        case CopyAct::sendLive:
            return "sending the copy of " + set + " live";
        case CopyAct::confirm:
            return "asking the target to confirm the copy of " + set;
        case CopyAct::save:
            return "saving " + set;
        case CopyAct::readBack:
            return "reading " + set + " back";
    }
    return {};
}

std::string troubleText(const SetCopy& set) {
    switch (set.state) {
        case SetState::sound:
            return {};
        case SetState::notRead:
            return line(set.targetSet, "it was not read");
        case SetState::wrongDigest:
            return line(set.targetSet, "the target sent it with a wrong digest, so it cannot be restored");
        case SetState::failed:
            return line(set.targetSet, "it could not be read from the target");
        case SetState::lost:
            return line(set.targetSet, set.trouble);
    }
    return {};
}

std::string playsNowText(const PlaysNow& plays) {
    switch (plays.kind) {
        case PlaysNow::Kind::asBefore:
            return "The target plays what it played before.";
        case PlaysNow::Kind::image:
            return "The target plays the copy of " + targetSetText(plays.targetSet) + " now.";
        case PlaysNow::Kind::unknown:
            return "What the target plays now is not known.";
    }
    return {};
}

std::string restoredText(const RestoreReport::Row& row) {
    switch (row.state) {
        case RestoredState::untouched:
            return line(row.targetSet, "unchanged");
        case RestoredState::oldOrNew:
            return line(row.targetSet, "not known, it holds what it held before or the whole copy");
        case RestoredState::notCompared:
            return line(row.targetSet, "saved, but not compared with the copy");
        case RestoredState::differs:
            return line(row.targetSet, "saved, but the target gives back something else than the copy");
        case RestoredState::done:
            return line(row.targetSet, "restored, read back and compared");
    }
    return {};
}

std::string restoreEndText(const RestoreReport& report) {
    if (!report.place) {
        return {};
    }
    if (report.end == RestoreReport::End::cancelled) {
        return "it was cancelled before " + copyActText(report.place->act, report.place->targetSet);
    }
    return failureText(report);
}

std::string comparisonText(const Comparison& comparison) {
    switch (comparison.result) {
        case Comparison::Result::notRead:
            return line(comparison.targetSet, "not compared");
        case Comparison::Result::failed:
            return line(comparison.targetSet, "it could not be read from the target");
        case Comparison::Result::wrongDigest:
            return line(comparison.targetSet, "the target sent it with a wrong digest");
        case Comparison::Result::differs:
            return line(comparison.targetSet, "differs in " + std::to_string(comparison.differingBytes) +
                                                  " of " + std::to_string(parameterImageSize) + " bytes");
        case Comparison::Result::equal:
            return line(comparison.targetSet, "equal");
    }
    return {};
}

}  // namespace tessavo
