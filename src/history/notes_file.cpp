#include "history/notes_file.h"

#include <algorithm>
#include <array>
#include <nlohmann/json.hpp>
#include <optional>
#include <system_error>
#include <utility>

#include "base/raw_file.h"
#include "params/set_text.h"

namespace tessavo {

namespace {

using Json = nlohmann::ordered_json;

constexpr std::uint64_t version = 1;

constexpr const char* versionKey = "version";
constexpr const char* noteKey = "note";
constexpr const char* channelsKey = "channels";
constexpr const char* channelKey = "channel";
constexpr const char* nameKey = "name";
constexpr const char* measurementKey = "measurement";

// The text of a key, which may be left out; nothing where it is no text or too long.
std::optional<std::u16string> textAt(const Json& object, const char* key, std::size_t limit) {
    const auto found = object.find(key);
    if (found == object.end()) {
        return std::u16string();
    }
    const auto* const text = found->get_ptr<const Json::string_t*>();
    if (text == nullptr) {
        return std::nullopt;
    }
    std::u16string units = utf16FromUtf8(*text);
    return units.size() <= limit ? std::optional(std::move(units)) : std::nullopt;
}

std::optional<std::uint64_t> numberAt(const Json& object, const char* key) {
    const auto found = object.find(key);
    const auto* const number =
        found != object.end() ? found->get_ptr<const Json::number_unsigned_t*>() : nullptr;
    return number != nullptr ? std::optional<std::uint64_t>(*number) : std::nullopt;
}

bool readChannel(const Json& entry, FileNotes& notes, std::array<bool, channelCount>& isKnown) {
    if (!entry.is_object()) {
        return false;
    }
    const std::uint64_t number = numberAt(entry, channelKey).value_or(0);
    const auto name = textAt(entry, nameKey, channelNameLimit);
    const auto measurement = textAt(entry, measurementKey, measurementPathLimit);
    if (number < 1 || number > channelCount || !name || !measurement) {
        return false;
    }
    const RecordChannel channel = recordChannelAt({static_cast<std::uint8_t>(number - 1)});
    setChannelName(notes, channel, *name);
    setMeasurementPath(notes, channel, *measurement);
    return !std::exchange(isKnown.at(channel.value), true);
}

bool readChannels(const Json& root, FileNotes& notes) {
    const auto channels = root.find(channelsKey);
    if (channels == root.end()) {
        return true;
    }
    std::array<bool, channelCount> isKnown{};
    return channels->is_array() && std::ranges::all_of(*channels, [&](const Json& entry) {
               return readChannel(entry, notes, isKnown);
           });
}

}  // namespace

std::filesystem::path notesPathOf(const std::filesystem::path& settings) {
    std::string ending = utf8FromPath(settings.extension());
    std::ranges::transform(ending, ending.begin(), [](char letter) {
        return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
    });
    std::filesystem::path name = ending == ".eqs" ? settings.stem() : settings.filename();
    name += notesSuffix;
    return settings.parent_path() / name;
}

std::string notesJson(const FileNotes& notes) {
    Json root;
    root[versionKey] = version;
    root[noteKey] = utf8FromUtf16(noteText(notes));
    Json& channels = root[channelsKey] = Json::array();
    for (std::uint8_t position = 0; position < channelCount; ++position) {
        const RecordChannel channel = recordChannelAt({position});
        Json entry;
        entry[channelKey] = position + 1;
        entry[nameKey] = utf8FromUtf16(channelName(notes, channel));
        if (const std::u16string path = measurementPath(notes, channel); !path.empty()) {
            entry[measurementKey] = utf8FromUtf16(path);
        }
        channels.push_back(std::move(entry));
    }
    constexpr int indent = 2;
    return root.dump(indent) + '\n';
}

std::variant<FileNotes, NotesTrouble> notesFrom(std::span<const std::uint8_t> bytes) {
    if (bytes.size() > notesFileLimit) {
        return NotesTrouble::damaged;
    }
    const Json root = Json::parse(bytes.begin(), bytes.end(), nullptr, false);
    const auto fileVersion = root.is_object() ? numberAt(root, versionKey) : std::nullopt;
    if (!fileVersion || *fileVersion == 0) {
        return NotesTrouble::damaged;
    }
    if (*fileVersion > version) {
        return NotesTrouble::newer;
    }
    FileNotes notes;
    const auto note = textAt(root, noteKey, noteLimit);
    if (!note || !readChannels(root, notes)) {
        return NotesTrouble::damaged;
    }
    setNoteText(notes, *note);
    return notes;
}

std::variant<FileNotes, NotesTrouble> readNotes(const std::filesystem::path& file) {
    std::error_code unknown;
    if (std::filesystem::status(file, unknown).type() == std::filesystem::file_type::not_found) {
        return NotesTrouble::missing;
    }
    // One byte more shows that a file is longer than it may be.
    const auto start = readFileStart(file, notesFileLimit + 1);
    if (!start) {
        return NotesTrouble::unreadable;
    }
    return notesFrom(start->bytes);
}

bool writeNotes(const std::filesystem::path& settings, const FileNotes& notes) {
    std::error_code unknown;
    const std::filesystem::path file = notesPathOf(settings);
    std::filesystem::path place = file;
    if (std::filesystem::is_symlink(file, unknown)) {
        // Whoever has linked the notes to another place finds them there.
        place = std::filesystem::weakly_canonical(file, unknown);
    }
    const std::string text = notesJson(notes);
    if (replaceFile(place, {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()})) {
        return false;
    }
    // Who may read the settings may read their notes.
    const auto permissions = std::filesystem::status(settings, unknown).permissions();
    if (!unknown) {
        std::filesystem::permissions(file, permissions, unknown);
    }
    return true;
}

}  // namespace tessavo
