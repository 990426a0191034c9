#include "history/recovery_file.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "base/md5.h"
#include "base/raw_file.h"
#include "dsp/filter_methods.h"
#include "history/cbor.h"
#include "params/set_text.h"

namespace tessavo {

namespace {

using Bytes = std::vector<std::uint8_t>;
using namespace std::chrono;

constexpr std::array<std::uint8_t, 8> signature{'T', 'S', 'V', 'R', 'E', 'C', 'O', 'V'};
constexpr std::uint32_t version = 2;
// The version before had no notes at the end of its states.
constexpr std::size_t stateSizeWithoutNotes = tuningSnapshotSize - fileNotesSize;
constexpr std::size_t headSize = signature.size() + sizeof version;
constexpr std::size_t digestSize = std::tuple_size_v<Md5Digest>;
// The largest time that both this clock and whole milliseconds can tell.
constexpr std::int64_t latestTime = duration_cast<milliseconds>(WallTime::duration::max()).count();
// No system takes a longer path.
constexpr std::size_t pathLimit = std::size_t{1} << 16U;

// --- making the file

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

std::uint64_t millisecondsOf(WallTime time) {
    const auto count = duration_cast<milliseconds>(time.time_since_epoch()).count();
    return count > 0 ? static_cast<std::uint64_t>(count) : 0;
}

// Of the sets alone.
std::span<const std::uint8_t> bytesOf(const ParameterStore& store) {
    return {reinterpret_cast<const std::uint8_t*>(&store), parameterStoreSize};
}

// A path need not be valid text, so it goes as the system has it.
Bytes bytesOfPath(const std::filesystem::path& path) {
    const auto& native = path.native();
    Bytes bytes(native.size() * sizeof(native[0]));
    if (!bytes.empty()) {
        std::memcpy(bytes.data(), native.data(), bytes.size());
    }
    return bytes;
}

void write(CborWriter& out, std::span<const std::shared_ptr<const Step>> steps) {
    out.list(steps.size());
    for (const auto& step : steps) {
        out.map(5);
        out.text("text");
        out.text(plainText(step->text));
        out.text("time");
        out.number(millisecondsOf(step->time));
        out.text("set");
        out.number(step->set);
        out.text("lead");
        out.bytes(step->lead.bytes());
        out.text("change");
        out.bytes(step->change.bytes());
    }
}

void write(CborWriter& out, const DocumentMemory& memory, const ParameterStore& now) {
    out.map(std::size_t{1} + (memory.stamp ? 2U : 0U) + (memory.store ? 1U : 0U));
    out.text("read");
    out.number(memory.bytesInFile);
    if (memory.stamp) {
        out.text("size");
        out.number(memory.stamp->size);
        out.text("digest");
        out.bytes(memory.stamp->digest);
    }
    if (memory.store) {
        out.text("sets");
        out.bytes(ByteDiff::between(bytesOf(now), bytesOf(*memory.store)).bytes());
    }
}

void write(CborWriter& out, const RecoveryState& state) {
    const History::Trail& trail = *state.trail;
    const std::span done(trail.done);
    const std::span undone(trail.undone);
    const bool hasMemory = state.documentMemory && !state.documentPath.empty();
    out.map(hasMemory ? 11 : 10);
    out.text("time");
    out.number(millisecondsOf(state.time));
    out.text("process");
    out.number(state.process);
    out.text("saved");
    out.boolean(state.isSaved);
    out.text("filterMode");
    out.number(state.filterMode);
    out.text("document");
    out.bytes(bytesOfPath(state.documentPath));
    if (hasMemory) {
        out.text("documentFile");
        write(out, *state.documentMemory, trail.state.store);
    }
    out.text("state");
    out.bytes(bytesOf(trail.state));
    out.text("begun");
    out.bytes(ByteDiff::between(bytesOf(trail.state), bytesOf(trail.begun)).bytes());
    out.text("settled");
    out.bytes(ByteDiff::between(bytesOf(trail.state), bytesOf(trail.settled)).bytes());
    out.text("done");
    write(out, done.last(std::min(done.size(), recoveryStepLimit)));
    out.text("undone");
    write(out, undone.first(std::min(undone.size(), recoveryStepLimit)));
}

// --- reading it; each function tells whether the value is as it should be

constexpr std::uint64_t anyNumber = ~std::uint64_t{0};

template <typename Number>
bool read(CborReader& in, Number& value, std::uint64_t largest) {
    const auto number = in.number();
    value = static_cast<Number>(number.value_or(0));
    return number.has_value() && *number <= largest;
}

bool read(CborReader& in, WallTime& time) {
    std::int64_t count = 0;
    const bool isRight = read(in, count, static_cast<std::uint64_t>(latestTime));
    time = WallTime(milliseconds(isRight ? count : 0));
    return isRight;
}

bool read(CborReader& in, bool& value) {
    const auto found = in.boolean();
    value = found.value_or(false);
    return found.has_value();
}

bool read(CborReader& in, std::string& text) {
    const auto found = in.text();
    text = found.value_or("");
    return found.has_value() && plainText(text) == text;
}

bool read(CborReader& in, ByteDiff& difference, std::size_t length = tuningSnapshotSize) {
    const auto bytes = in.bytes();
    auto found = bytes ? ByteDiff::fromBytes(Bytes(bytes->begin(), bytes->end()), length) : std::nullopt;
    difference = found ? std::move(*found) : ByteDiff();
    return found.has_value();
}

bool read(CborReader& in, TuningSnapshot& state) {
    const auto bytes = in.bytes();
    if (!bytes || (bytes->size() != tuningSnapshotSize && bytes->size() != stateSizeWithoutNotes)) {
        return false;
    }
    std::memcpy(&state, bytes->data(), bytes->size());
    return true;
}

bool read(CborReader& in, std::filesystem::path& path) {
    using Native = std::filesystem::path::string_type;
    const auto bytes = in.bytes();
    if (!bytes || bytes->size() > pathLimit || bytes->size() % sizeof(Native::value_type) != 0) {
        return false;
    }
    Native native(bytes->size() / sizeof(Native::value_type), Native::value_type{});
    if (!bytes->empty()) {
        std::memcpy(native.data(), bytes->data(), bytes->size());
    }
    path = native;
    return native.find(Native::value_type{}) == Native::npos;
}

bool read(CborReader& in, Md5Digest& digest) {
    const auto bytes = in.bytes();
    const bool isRight = bytes && bytes->size() == digest.size();
    if (isRight) {
        std::copy(bytes->begin(), bytes->end(), digest.begin());
    }
    return isRight;
}

/// What an entry says of the settings file, before the sets are known that it refers to.
struct MemoryEntry {
    DocumentMemory memory;
    std::optional<ByteDiff> sets;
};

bool read(CborReader& in, MemoryEntry& entry) {
    FileStamp stamp;
    bool hasSize = false;
    bool hasDigest = false;
    const bool isRight = in.map(
        {{"read", [&](CborReader& value) { return read(value, entry.memory.bytesInFile, anyNumber); }},
         {"size", [&](CborReader& value) { return hasSize = read(value, stamp.size, anyNumber); }, true},
         {"digest", [&](CborReader& value) { return hasDigest = read(value, stamp.digest); }, true},
         {"sets", [&](CborReader& value) { return read(value, entry.sets.emplace(), parameterStoreSize); },
          true}});
    if (hasSize) {
        entry.memory.stamp = stamp;
    }
    return isRight && hasSize == hasDigest;
}

bool read(CborReader& in, Step& step) {
    return in.map({{"text", [&](CborReader& value) { return read(value, step.text); }},
                   {"time", [&](CborReader& value) { return read(value, step.time); }},
                   {"set", [&](CborReader& value) { return read(value, step.set, setCount - 1); }},
                   {"lead", [&](CborReader& value) { return read(value, step.lead); }},
                   {"change", [&](CborReader& value) { return read(value, step.change); }}});
}

bool read(CborReader& in, Steps& steps) {
    const auto count = in.list();
    if (!count || *count > recoveryStepLimit) {
        return false;
    }
    for (std::size_t i = 0; i < *count; ++i) {
        auto step = std::make_shared<Step>();
        if (!read(in, *step)) {
            return false;
        }
        steps.push_back(std::move(step));
    }
    return true;
}

// What was saved, from the sets as they stand.
DocumentMemory memoryOf(const MemoryEntry& entry, const ParameterStore& now) {
    DocumentMemory memory = entry.memory;
    if (entry.sets) {
        memory.store = now;
        entry.sets->applyTo({reinterpret_cast<std::uint8_t*>(&*memory.store), parameterStoreSize});
    }
    return memory;
}

std::optional<RecoveryState> readBody(std::span<const std::uint8_t> body) {
    RecoveryState state;
    auto trail = std::make_unique<History::Trail>();
    ByteDiff begun;
    ByteDiff settled;
    std::optional<MemoryEntry> document;
    CborReader in(body);
    const bool isRight = in.map(
        {{"time", [&](CborReader& value) { return read(value, state.time); }},
         {"process", [&](CborReader& value) { return read(value, state.process, anyNumber); }},
         {"saved", [&](CborReader& value) { return read(value, state.isSaved); }},
         {"filterMode",
          [&](CborReader& value) { return read(value, state.filterMode, filterMethodNames.size() - 1); }},
         {"document", [&](CborReader& value) { return read(value, state.documentPath); }},
         {"documentFile", [&](CborReader& value) { return read(value, document.emplace()); }, true},
         {"state", [&](CborReader& value) { return read(value, trail->state); }},
         {"begun", [&](CborReader& value) { return read(value, begun); }},
         {"settled", [&](CborReader& value) { return read(value, settled); }},
         {"done", [&](CborReader& value) { return read(value, trail->done); }},
         {"undone", [&](CborReader& value) { return read(value, trail->undone); }}});
    if (!isRight || !in.isAtEnd()) {
        return std::nullopt;
    }
    trail->begun = trail->state;
    begun.applyTo(bytesOf(trail->begun));
    trail->settled = trail->state;
    settled.applyTo(bytesOf(trail->settled));
    const auto first = std::make_unique<TuningSnapshot>();
    if (!findFirst(*trail, *first)) {
        return std::nullopt;
    }
    if (document && !state.documentPath.empty()) {
        state.documentMemory = memoryOf(*document, trail->state.store);
    }
    state.trail = std::move(trail);
    return state;
}

}  // namespace

std::vector<std::uint8_t> encodeRecovery(const RecoveryState& state) {
    Bytes bytes(signature.begin(), signature.end());
    for (unsigned shift = 0; shift < 32; shift += 8) {
        bytes.push_back(static_cast<std::uint8_t>(version >> shift & 0xFFU));
    }
    CborWriter body(bytes);
    write(body, state);
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
    auto state = fileVersion > 0 ? readBody(content.subspan(headSize)) : std::nullopt;
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
