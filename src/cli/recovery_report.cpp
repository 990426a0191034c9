#include "cli/recovery_report.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <ctime>
#include <iterator>
#include <nlohmann/json.hpp>
#include <optional>
#include <span>
#include <string_view>

#include "cli/file_access.h"
#include "cli/set_diff.h"
#include "cli/set_fields.h"
#include "cli/text_table.h"
#include "dsp/filter_methods.h"
#include "history/notes_file.h"
#include "params/factory_defaults.h"
#include "params/set_text.h"
#include "params/settings_file.h"

namespace tessavo::cli {

namespace {

using Json = nlohmann::ordered_json;
using namespace std::chrono;

// More would hide the rest on a screen; programs get them all.
constexpr std::size_t shownDifferences = 20;

// What strftime() makes of a time.
std::string timeText(const std::tm* parts, const char* format) {
    std::array<char, 64> text{};
    return parts == nullptr
               ? "?"
               : std::string(text.data(), std::strftime(text.data(), text.size(), format, parts));
}

// NOLINTBEGIN(concurrency-mt-unsafe): this program has no other thread that asks for times
std::string localTime(WallTime time) {
    const std::time_t seconds = system_clock::to_time_t(time);
    return timeText(std::localtime(&seconds), "%Y-%m-%d %H:%M:%S");
}

std::string worldTime(WallTime time) {
    const std::time_t seconds = system_clock::to_time_t(floor<std::chrono::seconds>(time));
    const auto fraction = duration_cast<milliseconds>(time - floor<std::chrono::seconds>(time)).count();
    const std::string digits = std::to_string(fraction);
    return timeText(std::gmtime(&seconds), "%Y-%m-%dT%H:%M:%S.") + std::string(3 - digits.size(), '0') +
           digits + "Z";
}
// NOLINTEND(concurrency-mt-unsafe)

std::string nameOfSet(const ParameterSet& set) {
    return utf8FromUtf16(readSetText(set.setName));
}

/// In what the sets differ from what they were made from.
struct Comparison {
    bool withDocument = false;  ///< otherwise with the defaults
    std::vector<Difference> found;
};

std::optional<Comparison> compare(const RecoveryState& state) {
    const ParameterStore& now = state.trail->state.store;
    ParameterStore before = emptyStore();
    if (state.documentPath.empty()) {
        writeDefaults(before);
        return Comparison{false, differences(before, now)};
    }
    for (std::size_t set = 0; set < setCount; ++set) {
        if (readSettings(state.documentPath, set, before) == LoadVerdict::loaded) {
            return Comparison{true, differences(before, now)};
        }
    }
    return std::nullopt;
}

std::string quoted(const std::string& text) {
    return "\"" + text + "\"";
}

std::string setNames(const ParameterStore& store) {
    std::string names;
    for (const ParameterSet& set : store.sets) {
        names += (names.empty() ? "" : ", ") + quoted(readable(nameOfSet(set)));
    }
    return names;
}

// What a person has written beside the sets; nothing where that is nothing.
std::vector<std::vector<std::string>> notesRows(const FileNotes& notes) {
    std::string names;
    std::string measurements;
    const auto add = [](std::string& list, std::uint8_t position, const std::u16string& text) {
        if (!text.empty()) {
            list.append(list.empty() ? "" : ", ").append("channel ").append(std::to_string(position + 1));
            list.append(" ").append(quoted(readable(utf8FromUtf16(text))));
        }
    };
    for (std::uint8_t position = 0; position < channelCount; ++position) {
        const RecordChannel channel = recordChannelAt({position});
        add(names, position, channelName(notes, channel));
        add(measurements, position, measurementPath(notes, channel));
    }
    std::string note = utf8FromUtf16(noteText(notes));
    std::ranges::replace(note, '\n', ' ');
    std::vector<std::vector<std::string>> rows;
    if (!names.empty()) {
        rows.push_back({"names", names});
    }
    if (!note.empty()) {
        rows.push_back({"note", quoted(readable(note))});
    }
    if (!measurements.empty()) {
        rows.push_back({"measurements", measurements});
    }
    return rows;
}

std::string stepRows(const RecoveryState& state) {
    std::vector<std::vector<std::string>> rows;
    const auto add = [&](const Steps& steps, const char* mark) {
        for (const auto& step : steps) {
            rows.push_back(
                {localTime(step->time), "set " + std::to_string(step->set + 1), readable(step->text) + mark});
        }
    };
    add(state.trail->done, "");
    add(state.trail->undone, " (undone)");
    return alignedTable(rows, "    ");
}

std::string differenceRows(const RecoveryState& state) {
    const auto comparison = compare(state);
    if (!comparison) {
        return "  differs from the settings file: that cannot be read\n";
    }
    const std::size_t count = comparison->found.size();
    std::string text = std::string("  differs from ") +
                       (comparison->withDocument ? "the settings file" : "the defaults") + ": " +
                       std::to_string(count) + (count == 1 ? " value\n" : " values\n");
    for (const Difference& one : std::span(comparison->found).first(std::min(count, shownDifferences))) {
        text += "    " + one.path + ": " + one.first + " | " + one.second + "\n";
    }
    return text + (count > shownDifferences
                       ? "    and " + std::to_string(count - shownDifferences) + " more; --json tells all\n"
                       : "");
}

std::string report(const FoundRecovery& found) {
    const RecoveryState& state = found.state;
    const TuningSnapshot& now = state.trail->state;
    const std::string document = state.documentPath.empty() ? "none" : readable(textOf(state.documentPath));
    const std::string set = std::to_string(now.currentSet + 1) + ", " +
                            quoted(readable(nameOfSet(now.store.sets[now.currentSet])));
    const std::string steps = std::to_string(state.trail->done.size()) + " done, " +
                              std::to_string(state.trail->undone.size()) + " undone";
    std::vector<std::vector<std::string>> rows{
        {"time", localTime(state.time)},
        {"settings file", document},
        {"current set", set},
        {"sets", setNames(now.store)},
        {"filter method", std::string(filterMethodNames[state.filterMode])},
    };
    std::ranges::move(notesRows(wellFormed(now.notes)), std::back_inserter(rows));
    rows.push_back({"steps", steps});
    return readable(textOf(found.file)) + "\n" + alignedTable(rows, "  ") + stepRows(state) +
           differenceRows(state);
}

Json stepsJson(const Steps& steps) {
    Json list = Json::array();
    for (const auto& step : steps) {
        list.push_back({{"time", worldTime(step->time)}, {"set", step->set + 1}, {"text", step->text}});
    }
    return list;
}

Json recoveryJson(const FoundRecovery& found) {
    const RecoveryState& state = found.state;
    const TuningSnapshot& now = state.trail->state;
    Json out;
    out["file"] = textOf(found.file);
    out["time"] = worldTime(state.time);
    out["process"] = state.process;
    out["document"] = state.documentPath.empty() ? Json() : Json(textOf(state.documentPath));
    out["currentSet"] = now.currentSet + 1;
    out["filterMode"] = filterMethodNames[state.filterMode];
    Json& names = out["setNames"] = Json::array();
    for (const ParameterSet& set : now.store.sets) {
        names.push_back(nameOfSet(set));
    }
    const FileNotes notes = wellFormed(now.notes);
    out["notes"] = isEmpty(notes) ? Json() : Json::parse(notesJson(notes));
    out["done"] = stepsJson(state.trail->done);
    out["undone"] = stepsJson(state.trail->undone);
    const auto comparison = compare(state);
    out["comparedWith"] = comparison ? Json(comparison->withDocument ? "document" : "defaults") : Json();
    Json& list = out["differences"];
    if (comparison) {
        list = Json::array();
        for (const Difference& one : comparison->found) {
            list.push_back({{"field", one.path}, {"before", one.first}, {"after", one.second}});
        }
    }
    return out;
}

Json pathsJson(const std::vector<std::filesystem::path>& files) {
    Json list = Json::array();
    for (const auto& file : files) {
        list.push_back(textOf(file));
    }
    return list;
}

}  // namespace

std::string recoveriesReport(const std::vector<FoundRecovery>& found) {
    std::string text;
    for (const FoundRecovery& one : found) {
        text += (text.empty() ? "" : "\n") + report(one);
    }
    return text;
}

std::string recoveriesJson(const std::vector<FoundRecovery>& found, const RecoveryList& list) {
    Json out;
    Json& recoveries = out["recoveries"] = Json::array();
    for (const FoundRecovery& one : found) {
        recoveries.push_back(recoveryJson(one));
    }
    out["damaged"] = pathsJson(list.damaged);
    out["newer"] = pathsJson(list.newer);
    out["unreadable"] = pathsJson(list.unreadable);
    return out.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

}  // namespace tessavo::cli
