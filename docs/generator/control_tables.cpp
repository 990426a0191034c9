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
#include "params/channels.h"
#include "params/field_table.h"

namespace tessavo {

namespace {

using Names = std::vector<std::string_view>;

/// A control of a page and the field behind it.
struct Control {
    std::string_view caption;
    FieldId field;
    std::string effect;
    /// What a person reads for the values of a switch, 0 first.
    Names names = {};
    /// Told in place of the range, or of the first value, where a list of them would tell nothing.
    std::string_view range = {};
    std::string_view start = {};
    bool showsNumber = false;  ///< although the field has codes
};

const Names tick{"no", "yes"};
const Names inverseTick{"yes", "no"};

const std::vector<Control>& outputControls() {
    static const std::vector<Control> rows{
        {"**Filter 1 … 8** Enabled", FieldId::bandOff, "puts the band in circuit", inverseTick},
        {"**Filter 1 … 8** type", FieldId::bandType, "shape of the band"},
        {"**Filter 1 … 8** Freq", FieldId::bandFrequency, "centre of a peak, corner of a shelf"},
        {"**Filter 1 … 8** Gain", FieldId::bandGain, "height of the peak or shelf"},
        {"**Filter 1 … 8** Q", FieldId::bandQ, "the higher, the narrower"},
        {"**Crossover Filter 1, 2** Enabled", FieldId::crossoverEnabled, "puts the crossover in circuit",
         tick},
        {"**Crossover Filter 1, 2** kind", FieldId::crossoverKind, "HP high-pass, LP low-pass"},
        {"**Crossover Filter 1, 2** order", FieldId::crossoverOrder,
         "order that the target is told; the curve shows one second-order section"},
        {"**Crossover Filter 1, 2** frequency", FieldId::crossoverFrequency, "corner frequency"},
        {"**Volume**", FieldId::volume, "volume of the channel; the target takes it in steps of 0.5 dB"},
        {"**Invert Phase**", FieldId::invertPhase, "turns the polarity of the channel", tick},
        {"**Limiter** Gain", FieldId::limiterGain, "gain of the limiter"},
        {"**Limiter** Activate Level", FieldId::limiterActivateLevel, "level above which it acts"},
        {"**Limiter** Deactivate Level", FieldId::limiterDeactivateLevel, "level below which it lets go"},
        {"**Limiter** Attacktime", FieldId::limiterAttack, "attack time of the limiter"},
        {"**Limiter** Releasetime", FieldId::limiterRelease, "release time of the limiter"},
        {"**Limiter** Disabled", FieldId::limiterEnabled, "takes the limiter out of circuit", inverseTick},
    };
    return rows;
}

const std::vector<Control>& groupControls() {
    static const std::vector<Control> rows{
        {"**Output Gain** slider", FieldId::groupGain, "added to the channel's volume"},
        {"**Output Gain** Group",
         FieldId::gainGroup,
         "channels with the same letter move together",
         {},
         {},
         "A for Channel 1 … H for Channel 8"},
        {"**Output Delay** slider and ms box", FieldId::groupDelay, "added to the channel's delay"},
        {"**Output Delay** Group",
         FieldId::delayGroup,
         "channels with the same letter move together",
         {},
         {},
         "A for Channel 1 … H for Channel 8"},
    };
    return rows;
}

bool hasNames(const Control& control) {
    return !control.names.empty() || (!control.showsNumber && !fieldOf(control.field).codes.empty());
}

// What a person reads for a value; empty for one that the field does not have.
std::string nameOf(const Control& control, double value) {
    if (!control.names.empty()) {
        return std::string(control.names.at(static_cast<std::size_t>(value)));
    }
    const FieldCode* code = codeOf(fieldOf(control.field), value);
    return code == nullptr ? "" : std::string(code->shown);
}

std::string numberRange(const Field& field) {
    return shortestText(field.minimum) + " … " + shortestText(field.maximum);
}

std::string rangeOf(const Control& control) {
    const Field& field = fieldOf(control.field);
    if (!control.range.empty()) {
        return std::string(control.range);
    }
    if (!hasNames(control)) {
        return numberRange(field);
    }
    std::string text;
    for (double value = field.minimum; value <= field.maximum; ++value) {
        if (const std::string name = nameOf(control, value); !name.empty()) {
            text += (text.empty() ? "" : ", ") + name;
        }
    }
    return text;
}

std::string unitOf(const Control& control) {
    const Field& field = fieldOf(control.field);
    return control.field == FieldId::decoderGain ? "dB" : std::string(field.unit);
}

std::string stepOf(const Control& control) {
    const Field& field = fieldOf(control.field);
    if (hasNames(control)) {
        return "";
    }
    return field.decimals > 0 || field.id == FieldId::decoderGain ? "0.1" : "1";
}

std::string startOf(const Control& control) {
    const Field& field = fieldOf(control.field);
    if (!control.start.empty()) {
        return std::string(control.start);
    }
    constexpr double zero = 0;
    std::string text;
    for (const double value : field.defaults.empty() ? std::span(&zero, 1) : field.defaults) {
        text +=
            (text.empty() ? "" : ", ") + (hasNames(control) ? nameOf(control, value) : shortestText(value));
    }
    return text;
}

std::string controlTable(const std::vector<Control>& controls) {
    std::vector<Row> rows;
    for (const Control& control : controls) {
        rows.push_back({std::string(control.caption), rangeOf(control), unitOf(control), stepOf(control),
                        startOf(control), control.effect});
    }
    return table({"Control", "Range", "Unit", "Step", "At first", "What it does"}, rows);
}

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
        rows.push_back({quoted(escaped(word.usage)), scriptRange(word), std::string(word.effect)});
    }
    return table({"Line", "Range", "What it sets"}, rows);
}

}  // namespace

std::map<std::string, std::string> manualTables() {
    return {{"input controls", controlTable(inputEqRows())},
            {"config controls", controlTable(audioRouterRows())},
            {"output controls", controlTable(outputControls())},
            {"group controls", controlTable(groupControls())},
            {"channels", channelTable()},
            {"script words", scriptTable()}};
}

}  // namespace tessavo
