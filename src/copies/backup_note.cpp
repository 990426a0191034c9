#include "copies/backup_note.h"

#include <algorithm>
#include <chrono>
#include <initializer_list>
#include <nlohmann/json.hpp>
#include <set>
#include <utility>
#include <vector>

#include "base/number_text.h"
#include "history/note_lines.h"

namespace tessavo {

namespace {

using Json = nlohmann::json;

constexpr std::string_view formatName = "Tessavo backup of a target";
constexpr unsigned formatVersion = 1;
constexpr int deepest = 32;  // more than a later version ever needs, and soon read
constexpr std::string_view soundWord = "sound";
constexpr std::string_view wrongDigestWord = "wrong digest";
constexpr std::string_view notReadWord = "not read";
constexpr std::string_view hexPrefix = "0x";

// As other programs tell the digest of a file.
std::string lowerCase(std::string text) {
    for (char& letter : text) {
        letter = letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
    }
    return text;
}

std::string digits(std::int64_t value, std::size_t count) {
    std::string text = std::to_string(value);
    text.insert(0, count - std::min(text.size(), count), '0');
    return text;
}

// "2026-11-22T12:33:59Z"
std::string timeText(WallTime time) {
    using namespace std::chrono;
    const auto seconds = floor<std::chrono::seconds>(time);
    const auto day = floor<days>(seconds);
    const year_month_day date(day);
    const hh_mm_ss clock(seconds - day);
    std::string text = digits(static_cast<int>(date.year()), 4);
    const auto add = [&text](char before, std::int64_t value) {
        text.append(1, before).append(digits(value, 2));
    };
    add('-', static_cast<unsigned>(date.month()));
    add('-', static_cast<unsigned>(date.day()));
    add('T', clock.hours().count());
    add(':', clock.minutes().count());
    add(':', clock.seconds().count());
    return text.append("Z");
}

std::optional<WallTime> timeFrom(std::string_view text) {
    using namespace std::chrono;
    constexpr std::string_view layout = "0000-00-00T00:00:00Z";
    if (text.size() != layout.size()) {
        return std::nullopt;
    }
    for (std::size_t i = 0; i < layout.size(); ++i) {
        const bool right = layout[i] == '0' ? text[i] >= '0' && text[i] <= '9' : text[i] == layout[i];
        if (!right) {
            return std::nullopt;
        }
    }
    const auto part = [text](std::size_t start, std::size_t count) {
        return wholeNumber<unsigned>(text.substr(start, count)).value_or(0);
    };
    const year_month_day date(year(static_cast<int>(part(0, 4))), month(part(5, 2)), day(part(8, 2)));
    // The clock of files and windows cannot tell much earlier or later times.
    const bool isTime = date.ok() && date.year() >= year(1970) && date.year() < year(2200) &&
                        part(11, 2) < 24 && part(14, 2) < 60 && part(17, 2) < 60;
    return isTime ? std::optional<WallTime>(sys_days(date) + hours(part(11, 2)) + minutes(part(14, 2)) +
                                            seconds(part(17, 2)))
                  : std::nullopt;
}

Json setJson(std::uint8_t targetSet, const std::optional<BackupNote::Set>& set) {
    Json json{{"set", targetSetWord(targetSet)}, {"file", nullptr}, {"md5", nullptr}, {"state", notReadWord}};
    if (set) {
        json["file"] = replyFileName(targetSet);
        json["md5"] = lowerCase(note::digestText(set->digest));
        json["state"] = set->sound ? soundWord : wrongDigestWord;
    }
    return json;
}

/// Parses without building what is too deep or says something twice.
class StrictParser {
 public:
    /// \return nothing for what is no such JSON
    std::optional<Json> parse(std::string_view text) {
        Json json = Json::parse(
            text.begin(), text.end(),
            [this](int depth, Json::parse_event_t event, Json& parsed) { return take(depth, event, parsed); },
            false);
        return broken_ || json.is_discarded() ? std::nullopt : std::optional(std::move(json));
    }

 private:
    bool take(int depth, Json::parse_event_t event, const Json& parsed) {
        switch (event) {
            case Json::parse_event_t::object_start:
            case Json::parse_event_t::array_start:
                broken_ = broken_ || depth >= deepest;
                keys_.emplace_back();
                break;
            case Json::parse_event_t::object_end:
            case Json::parse_event_t::array_end:
                keys_.pop_back();
                break;
            case Json::parse_event_t::key:
                broken_ = broken_ || !keys_.back().insert(parsed.get<std::string>()).second;
                break;
            case Json::parse_event_t::value:
                break;
        }
        return !broken_;
    }

    std::vector<std::set<std::string>> keys_;  // of every object or list that is open
    bool broken_ = false;
};

bool hasExactly(const Json& json, std::initializer_list<const char*> keys) {
    return json.is_object() && json.size() == keys.size() &&
           std::ranges::all_of(keys, [&json](const char* key) { return json.contains(key); });
}

// Nothing for what is no text.
std::optional<std::string> textIn(const Json& json, const char* key) {
    const Json& value = json.at(key);
    return value.is_string() ? std::optional(value.get<std::string>()) : std::nullopt;
}

std::optional<std::uint32_t> versionIn(const Json& json, const char* key) {
    const auto text = textIn(json, key);
    const auto number = text && text->starts_with(hexPrefix)
                            ? wholeNumber<std::uint32_t>(std::string_view(*text).substr(hexPrefix.size()), 16)
                            : std::nullopt;
    return number && versionText(*number) == *text ? number : std::nullopt;
}

bool readVersions(const Json& json, BackupNote& note) {
    if (json.at("hardwareVersion").is_null() && json.at("softwareVersion").is_null()) {
        return true;
    }
    const auto hardware = versionIn(json, "hardwareVersion");
    const auto software = versionIn(json, "softwareVersion");
    if (!hardware || !software) {
        return false;
    }
    note.versions = TargetVersions{*hardware, *software};
    return true;
}

bool readSet(const Json& json, std::uint8_t targetSet, std::optional<BackupNote::Set>& set) {
    if (!hasExactly(json, {"file", "md5", "set", "state"}) || json.at("set") != targetSetWord(targetSet)) {
        return false;
    }
    const auto state = textIn(json, "state");
    if (state == notReadWord) {
        return json.at("file").is_null() && json.at("md5").is_null();
    }
    const auto digestText = textIn(json, "md5");
    const auto digest = digestText ? note::digestFrom(*digestText) : std::nullopt;
    if ((state != soundWord && state != wrongDigestWord) || json.at("file") != replyFileName(targetSet) ||
        !digest || lowerCase(note::digestText(*digest)) != *digestText) {
        return false;
    }
    set = BackupNote::Set{.digest = *digest, .sound = state == soundWord};
    return true;
}

BackupNoteRead trouble(std::string text) {
    return {.note = {}, .trouble = std::move(text)};
}

BackupNoteRead noteFrom(const Json& json) {
    BackupNote note;
    const auto time = textIn(json, "time");
    const auto wallTime = time ? timeFrom(*time) : std::nullopt;
    if (!wallTime) {
        return trouble("its \"time\" is none");
    }
    note.time = *wallTime;
    auto port = textIn(json, "port");
    if (!port) {
        return trouble("its \"port\" is no text");
    }
    note.port = std::move(*port);
    if (!readVersions(json, note)) {
        return trouble("its \"hardwareVersion\" and \"softwareVersion\" are not such");
    }
    const Json& sets = json.at("sets");
    if (!sets.is_array() || sets.size() != note.sets.size()) {
        return trouble("its \"sets\" are not a list of six");
    }
    for (std::size_t i = 0; i < note.sets.size(); ++i) {
        if (!readSet(sets.at(i), targetSetNumbers.at(i), note.sets.at(i))) {
            return trouble("what it says of " + targetSetText(targetSetNumbers.at(i)) + " is not right");
        }
    }
    return {.note = std::move(note), .trouble = {}};
}

}  // namespace

std::string replyFileName(std::uint8_t targetSet) {
    return targetSetWord(targetSet).append(".reply");
}

std::string backupText(const BackupNote& note) {
    Json sets = Json::array();
    for (std::size_t i = 0; i < note.sets.size(); ++i) {
        sets.push_back(setJson(targetSetNumbers.at(i), note.sets.at(i)));
    }
    Json json{{"format", formatName},       {"formatVersion", formatVersion}, {"hardwareVersion", nullptr},
              {"port", note.port},          {"sets", std::move(sets)},        {"softwareVersion", nullptr},
              {"time", timeText(note.time)}};
    if (note.versions) {
        json["hardwareVersion"] = versionText(note.versions->hardware);
        json["softwareVersion"] = versionText(note.versions->software);
    }
    // A port's name need not be text in any encoding.
    return json.dump(2, ' ', false, Json::error_handler_t::replace).append("\n");
}

BackupNoteRead readBackupText(std::string_view text) {
    if (text.size() > backupNoteLimit) {
        return trouble("it is larger than one ever is");
    }
    const auto json = StrictParser().parse(text);
    if (!json || !json->is_object()) {
        return trouble("it is not JSON as a backup has it");
    }
    if (!json->contains("format") || json->at("format") != formatName) {
        return trouble("it is not that of a backup");
    }
    const auto version = json->find("formatVersion");
    if (version == json->end() || !version->is_number_unsigned()) {
        return trouble("its \"formatVersion\" is none");
    }
    if (version->get<std::uint64_t>() > formatVersion) {
        return trouble("a later version of Tessavo wrote it");
    }
    if (*version != formatVersion || !hasExactly(*json, {"format", "formatVersion", "hardwareVersion", "port",
                                                         "sets", "softwareVersion", "time"})) {
        return trouble("an entry is missing, or one too many is there");
    }
    return noteFrom(*json);
}

}  // namespace tessavo
