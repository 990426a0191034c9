#include "history/recovery_file.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstring>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "base/md5.h"
#include "base/raw_file.h"
#include "dsp/filter_methods.h"
#include "history/cbor_shape.h"
#include "params/set_text.h"

namespace tessavo {

namespace {

using Json = nlohmann::json;
using Bytes = std::vector<std::uint8_t>;
using namespace std::chrono;

constexpr std::array<std::uint8_t, 8> signature{'T', 'S', 'V', 'R', 'E', 'C', 'O', 'V'};
constexpr std::uint32_t version = 1;
constexpr std::size_t headSize = signature.size() + sizeof version;
constexpr std::size_t digestSize = std::tuple_size_v<Md5Digest>;
// The largest time that both this clock and whole milliseconds can tell.
constexpr std::int64_t latestTime = duration_cast<milliseconds>(WallTime::duration::max()).count();
// No system takes a longer path.
constexpr std::size_t pathLimit = std::size_t{1} << 16U;

// --- making the file

Json binary(std::span<const std::uint8_t> bytes) {
    return Json::binary(Bytes(bytes.begin(), bytes.end()));
}

std::string plainText(std::string_view text) {
    std::string valid = utf8FromUtf16(utf16FromUtf8(text));
    if (valid.size() > recoveryTextLimit) {
        constexpr unsigned kind = 0xC0;
        constexpr unsigned middleOfCharacter = 0x80;
        std::size_t end = recoveryTextLimit;
        while (end > 0 && (static_cast<unsigned char>(valid[end]) & kind) == middleOfCharacter) {
            --end;
        }
        valid.resize(end);
    }
    return valid;
}

std::int64_t countOf(WallTime time) {
    return std::max<std::int64_t>(duration_cast<milliseconds>(time.time_since_epoch()).count(), 0);
}

// A path need not be valid text, so it goes as the system has it.
Json encodePath(const std::filesystem::path& path) {
    const auto& native = path.native();
    Bytes bytes(native.size() * sizeof(native[0]));
    if (!bytes.empty()) {
        std::memcpy(bytes.data(), native.data(), bytes.size());
    }
    return Json::binary(std::move(bytes));
}

Json encodeStep(const Step& step) {
    return {{"text", plainText(step.text)},
            {"time", countOf(step.time)},
            {"set", step.set},
            {"lead", binary(step.lead.bytes())},
            {"change", binary(step.change.bytes())}};
}

Json encodeSteps(std::span<const std::shared_ptr<const Step>> steps) {
    Json list = Json::array();
    for (const auto& step : steps) {
        list.push_back(encodeStep(*step));
    }
    return list;
}

Json encodeBody(const RecoveryState& state) {
    const History::Trail& trail = *state.trail;
    const auto differing = [&](const TuningSnapshot& other) {
        return binary(ByteDiff::between(bytesOf(trail.state), bytesOf(other)).bytes());
    };
    const std::span done(trail.done);
    const std::span undone(trail.undone);
    return {{"time", countOf(state.time)},
            {"process", state.process},
            {"saved", state.isSaved},
            {"filterMode", state.filterMode},
            {"document", encodePath(state.documentPath)},
            {"state", binary(bytesOf(trail.state))},
            {"begun", differing(trail.begun)},
            {"settled", differing(trail.settled)},
            {"done", encodeSteps(done.last(std::min(done.size(), recoveryStepLimit)))},
            {"undone", encodeSteps(undone.first(std::min(undone.size(), recoveryStepLimit)))}};
}

// --- reading it; what is not as it should be gives nothing

const Json* member(const Json& object, const char* name) {
    const auto found = object.is_object() ? object.find(name) : object.end();
    return found != object.end() ? &*found : nullptr;
}

std::optional<std::uint64_t> numberOf(const Json& object, const char* name, std::uint64_t largest) {
    const Json* value = member(object, name);
    if (value == nullptr || !value->is_number_unsigned() || value->get<std::uint64_t>() > largest) {
        return std::nullopt;
    }
    return value->get<std::uint64_t>();
}

std::optional<WallTime> timeOf(const Json& object) {
    const auto count = numberOf(object, "time", static_cast<std::uint64_t>(latestTime));
    if (!count) {
        return std::nullopt;
    }
    return WallTime(milliseconds(static_cast<std::int64_t>(*count)));
}

const Bytes* bytesAt(const Json& object, const char* name) {
    const Json* value = member(object, name);
    return value != nullptr && value->is_binary() ? &value->get_binary() : nullptr;
}

std::optional<std::string> textOf(const Json& object) {
    const Json* value = member(object, "text");
    if (value == nullptr || !value->is_string()) {
        return std::nullopt;
    }
    const auto& text = value->get_ref<const std::string&>();
    return plainText(text) == text ? std::optional(text) : std::nullopt;
}

std::optional<ByteDiff> diffAt(const Json& object, const char* name) {
    const Bytes* bytes = bytesAt(object, name);
    return bytes != nullptr ? ByteDiff::fromBytes(*bytes, tuningSnapshotSize) : std::nullopt;
}

std::optional<std::filesystem::path> pathOf(const Json& object) {
    using Native = std::filesystem::path::string_type;
    const Bytes* bytes = bytesAt(object, "document");
    if (bytes == nullptr || bytes->size() > pathLimit || bytes->size() % sizeof(Native::value_type) != 0) {
        return std::nullopt;
    }
    Native native(bytes->size() / sizeof(Native::value_type), Native::value_type{});
    if (!bytes->empty()) {
        std::memcpy(native.data(), bytes->data(), bytes->size());
    }
    return native.find(Native::value_type{}) == Native::npos
               ? std::optional<std::filesystem::path>(std::move(native))
               : std::nullopt;
}

std::shared_ptr<const Step> decodeStep(const Json& object) {
    auto text = textOf(object);
    const auto time = timeOf(object);
    const auto set = numberOf(object, "set", setCount - 1);
    auto lead = diffAt(object, "lead");
    auto change = diffAt(object, "change");
    if (!text || !time || !set || !lead || !change) {
        return nullptr;
    }
    auto step = std::make_shared<Step>();
    step->text = std::move(*text);
    step->time = *time;
    step->set = static_cast<std::uint32_t>(*set);
    step->lead = std::move(*lead);
    step->change = std::move(*change);
    return step;
}

std::optional<Steps> stepsAt(const Json& object, const char* name) {
    const Json* list = member(object, name);
    if (list == nullptr || !list->is_array() || list->size() > recoveryStepLimit) {
        return std::nullopt;
    }
    Steps steps;
    for (const Json& item : *list) {
        steps.push_back(decodeStep(item));
        if (steps.back() == nullptr) {
            return std::nullopt;
        }
    }
    return steps;
}

bool isWhole(const TuningSnapshot& state) {
    return state.currentSet < setCount;
}

// Whether every state that the steps lead to has a current set that there is.
bool leadsToWholeStates(const History::Trail& trail) {
    const auto state = std::make_unique<TuningSnapshot>(trail.settled);
    bool allAreWhole = isWhole(trail.state) && isWhole(trail.begun) && isWhole(trail.settled);
    const auto apply = [&](const ByteDiff& difference) {
        difference.applyTo(bytesOf(*state));
        allAreWhole = allAreWhole && isWhole(*state);
    };
    for (const auto& step : trail.undone) {
        apply(step->lead);
        apply(step->change);
    }
    *state = trail.settled;
    for (auto step = trail.done.rbegin(); step != trail.done.rend(); ++step) {
        apply((*step)->change);
        apply((*step)->lead);
    }
    return allAreWhole;
}

std::unique_ptr<const History::Trail> trailOf(const Json& body) {
    const Bytes* state = bytesAt(body, "state");
    const auto begun = diffAt(body, "begun");
    const auto settled = diffAt(body, "settled");
    auto done = stepsAt(body, "done");
    auto undone = stepsAt(body, "undone");
    if (state == nullptr || state->size() != tuningSnapshotSize || !begun || !settled || !done || !undone) {
        return nullptr;
    }
    auto trail = std::make_unique<History::Trail>();
    std::memcpy(&trail->state, state->data(), tuningSnapshotSize);
    trail->begun = trail->state;
    begun->applyTo(bytesOf(trail->begun));
    trail->settled = trail->state;
    settled->applyTo(bytesOf(trail->settled));
    trail->done = std::move(*done);
    trail->undone = std::move(*undone);
    return leadsToWholeStates(*trail) ? std::move(trail) : nullptr;
}

std::optional<RecoveryState> decodeBody(const Json& body) {
    RecoveryState state;
    state.trail = trailOf(body);
    const auto time = timeOf(body);
    const auto process = numberOf(body, "process", ~std::uint64_t{0});
    const auto filterMode = numberOf(body, "filterMode", filterMethodNames.size() - 1);
    const Json* saved = member(body, "saved");
    auto path = pathOf(body);
    if (!state.trail || !time || !process || !filterMode || saved == nullptr || !saved->is_boolean() ||
        !path) {
        return std::nullopt;
    }
    state.time = *time;
    state.process = *process;
    state.filterMode = static_cast<std::uint32_t>(*filterMode);
    state.isSaved = saved->get<bool>();
    state.documentPath = std::move(*path);
    return state;
}

}  // namespace

std::vector<std::uint8_t> encodeRecovery(const RecoveryState& state) {
    Bytes bytes(signature.begin(), signature.end());
    for (unsigned shift = 0; shift < 32; shift += 8) {
        bytes.push_back(static_cast<std::uint8_t>(version >> shift & 0xFFU));
    }
    Json::to_cbor(encodeBody(state), bytes);
    const Md5Digest digest = md5(bytes);
    bytes.insert(bytes.end(), digest.begin(), digest.end());
    return bytes;
}

std::variant<RecoveryState, RecoveryTrouble> decodeRecovery(std::span<const std::uint8_t> bytes) {
    if (bytes.size() < headSize + digestSize || bytes.size() > recoveryFileLimit ||
        !std::equal(signature.begin(), signature.end(), bytes.begin())) {
        return RecoveryTrouble::damaged;
    }
    const std::span content = bytes.first(bytes.size() - digestSize);
    const Md5Digest digest = md5(content);
    if (!std::equal(digest.begin(), digest.end(), bytes.last(digestSize).begin())) {
        return RecoveryTrouble::damaged;
    }
    std::uint32_t fileVersion = 0;
    for (unsigned i = 0; i < sizeof fileVersion; ++i) {
        fileVersion |= static_cast<std::uint32_t>(content[signature.size() + i]) << 8U * i;
    }
    if (fileVersion > version) {
        return RecoveryTrouble::newer;
    }
    const std::span body = content.subspan(headSize);
    if (fileVersion != version || !hasPlainShape(body)) {
        return RecoveryTrouble::damaged;
    }
    auto state = decodeBody(Json::from_cbor(body.begin(), body.end(), true, false));
    if (!state) {
        return RecoveryTrouble::damaged;
    }
    return std::move(*state);
}

std::variant<RecoveryState, RecoveryTrouble> readRecovery(const std::filesystem::path& path) {
    std::error_code error;
    const std::uintmax_t size = std::filesystem::file_size(path, error);
    if (error) {
        return RecoveryTrouble::unreadable;
    }
    // One byte more shows that a file is longer than it may be.
    const auto start =
        readFileStart(path, static_cast<std::size_t>(std::min<std::uintmax_t>(size, recoveryFileLimit + 1)));
    return start ? decodeRecovery(start->bytes) : RecoveryTrouble::unreadable;
}

}  // namespace tessavo
