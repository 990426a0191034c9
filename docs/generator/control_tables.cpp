#include "control_tables.h"

#include <algorithm>
#include <span>
#include <string_view>

#include "base/number_text.h"
#include "cli/edit_script.h"
#include "cli/script_words.h"
#include "markdown.h"
#include "page_tables.h"
#include "pages/rows/audio_router_rows.h"
#include "pages/rows/input_eq_rows.h"
#include "pages/rows/output_eq_rows.h"
#include "pages/rows/output_group_rows.h"
#include "params/channels.h"
#include "params/field_table.h"

namespace tessavo {

namespace {

// Ranges of the numbers that a word takes; switches and codes stand in its usage.
std::string scriptRange(const cli::ScriptWord& word) {
    std::vector<std::string> ranges;
    for (const cli::WordField& each : word.fields) {
        const Field& field = fieldOf(each.field);
        const bool isChosen = !each.choice.empty();
        const bool isSwitch = field.unit.empty() && field.minimum == 0 && field.maximum == 1;
        if (isChosen ? each.rangeCaption.empty() : isSwitch || !cli::scriptCodes(field).empty()) {
            continue;
        }
        const std::string caption = isChosen ? std::string(each.rangeCaption) + " " : "";
        const std::string unit = field.unit.empty() ? "" : " " + std::string(field.unit);
        const std::string range = caption + numberRange(field) + unit;
        // The input bands are two fields with one range.
        if (std::ranges::find(ranges, range) == ranges.end()) {
            ranges.push_back(range);
        }
    }
    std::string text;
    for (const std::string& range : ranges) {
        text += (text.empty() ? "" : ", ") + range;
    }
    return text;
}

/// The same channel under each of its numbers.
std::string channelTable() {
    std::vector<Row> rows;
    for (std::uint8_t position = 0; position < channelCount; ++position) {
        const std::uint8_t channel = recordChannelAt({position}).value;
        const auto slider = std::find(groupSliderMap.begin(), groupSliderMap.end(), channel);
        rows.push_back({"Channel " + std::to_string(position + 1),
                        "Ch " + std::to_string(slider - groupSliderMap.begin() + 1),
                        std::to_string(channel)});
    }
    return table(
        {"Equalizing Output, Channel Config, `select` in scripts",
         "Row in Channel Selection; \"Channel\" on Output Group, channel flag, \"Kanal\" on Clip Detection",
         "Record channel: files, `tessavoctl show`, `diff`"},
        rows);
}

std::string escaped(std::string_view text) {
    std::string out;
    for (const char character : text) {
        out += character == '|' ? "\\|" : std::string(1, character);
    }
    return out;
}

std::string scriptTable() {
    std::vector<Row> rows;
    for (const cli::ScriptWord& word : cli::scriptWords()) {
        rows.push_back({inBackticks(escaped(word.usage)), scriptRange(word), std::string(word.effect)});
    }
    return table({"Line", "Range", "What it sets"}, rows);
}

}  // namespace

std::map<std::string, std::string> manualTables() {
    return {{"input controls", controlTable(inputEqRows())},
            {"config controls", controlTable(audioRouterRows())},
            {"output controls", controlTable(outputEqRows())},
            {"group controls", controlTable(outputGroupRows())},
            {"channels", channelTable()},
            {"script words", scriptTable()}};
}

}  // namespace tessavo
