#include "pages/rows/input_eq_rows.h"

#include <array>

#include "base/number_text.h"

namespace tessavo {

namespace {

using enum ControlKind;
using namespace input_eq_id;

// Lines behind the band sliders at +20, +10, 0, -10 and -20 dB, where the middle of a cap stands.
constexpr std::array<int, 5> rulerLines{77, 120, 163, 205, 248};
constexpr int zeroLine = 163;
constexpr Colour ruler = 0xFF28303A;
constexpr Colour zeroRuler = 0xFF46535F;

void addRuler(ControlRows& rows, int first, int last, int textsAt, int textWidth) {
    for (const int y : rulerLines) {
        rows.push_back({.kind = line,
                        .place = {first, y, last - first, 1},
                        .colour = y == zeroLine ? zeroRuler : ruler});
    }
    const auto addText = [&](const char* text, int y, int height) {
        rows.push_back({.kind = label,
                        .caption = text,
                        .place = {textsAt, y, textWidth, height},
                        .side = TextSide::right});
    };
    addText("20 dB", 70, 15);
    addText("-20 dB", 241, 15);
    addText("dB", 266, 24);
}

ControlRow band(int index, std::string head, std::string name, const Place& column) {
    const int centre = column.x + column.width / 2;
    return {.kind = slider,
            .identifier = firstBandSlider + index,
            .caption = std::move(head),
            .name = std::move(name),
            .place = {centre - 14, 68, 28, 190},
            .editIdentifier = firstBandEdit + index,
            .edit = {centre - 25, 266, 50, 24},
            .editsLast = true,
            .plainEdit = true,
            // The lines of the group are the ruler.
            .ticks = std::vector<int>{},
            .captionPlace = column,
            .side = TextSide::centre,
            .captionColour = theme::text};
}

void addEqualizer(ControlRows& rows) {
    rows.push_back({.kind = group, .caption = "Equalizer", .place = {0, 8, 656, 292}});
    rows.push_back(
        {.kind = toggle,
         .identifier = eqOn,
         .caption = "EQ On",
         .place = {470, 16, 92, 26},
         .field = FieldId::inputEqOn,
         .entries = {"EQ Off", "EQ On"},
         .manual = {.effect = "puts the equalizer and the tone bands in circuit; the caption names "
                              "the state in force",
                    .start = "EQ On"}});
    rows.push_back(
        {.kind = note, .identifier = eqNote, .place = {120, 20, 340, 18}, .side = TextSide::right});
    rows.push_back({.kind = button, .identifier = reset, .caption = "Reset", .place = {570, 16, 74, 26}});
    rows.push_back({.kind = label, .caption = "Hz", .place = {6, 50, 42, 14}, .side = TextSide::right});
    addRuler(rows, 56, 644, 6, 42);
    constexpr std::array heads{"60", "170", "310", "600", "1K", "3K", "6K", "12K", "14K", "16K"};
    const auto frequencies = fieldOf(FieldId::inputBandFrequency).defaults;
    for (std::size_t i = 0; i < heads.size(); ++i) {
        const int index = static_cast<int>(i);
        ControlRow& row = rows.emplace_back(
            band(index, heads[i], shortestText(frequencies[i]) + " Hz gain", {58 + 58 * index, 50, 58, 14}));
        row.field = FieldId::inputBandGain;
        row.element = i;
        row.manual.effect = "gain of a graphic band; the frequencies are fixed";
    }
}

void addTone(ControlRows& rows) {
    rows.push_back({.kind = group, .caption = "Tone", .place = {666, 8, 318, 292}});
    addRuler(rows, 724, 972, 672, 46);
    constexpr std::array<std::string_view, 3> heads{"Bass", "Mid", "Treble"};
    for (std::size_t i = 0; i < heads.size(); ++i) {
        const int index = static_cast<int>(i);
        const std::string head(heads[i]);
        ControlRow& row =
            rows.emplace_back(band(10 + index, head, head + " gain", {725 + 82 * index, 50, 82, 14}));
        row.field = FieldId::toneGain;
        row.element = i;
        row.manual.effect =
            "gain of the low shelf at 150 Hz, the peak at 4000 Hz, the high shelf at 15000 Hz";
    }
}

void addLevels(ControlRows& rows) {
    struct Level {
        const char* title;
        FieldId field;
        std::string_view effect;
    };
    constexpr std::array<Level, 6> levels{{
        {"Gain", FieldId::inputGain, "input level"},
        {"Preamp", FieldId::preampGain, "gain of the preamplifier"},
        {"Poweramp", FieldId::powerampGain, "gain of the power amplifier"},
        {"Line-In Gain", FieldId::lineInGain, "gain of the line input"},
        {"Suppression", FieldId::suppression, "suppression"},
        {"Gain Detection", FieldId::gainDetectionLevel, "level of the gain detection"},
    }};
    for (int i = 0; i < static_cast<int>(levels.size()); ++i) {
        const Level& level = levels[static_cast<std::size_t>(i)];
        const int top = 310 + 48 * i;
        rows.push_back(
            {.kind = group, .caption = level.title, .place = {0, top, 394, 38}, .titlePlace = {12, 11}});
        ControlRow& row = rows.emplace_back(ControlRow{.kind = slider,
                                                       .identifier = firstLevelSlider + i,
                                                       .name = level.title,
                                                       .place = {172, top + 5, 138, 28},
                                                       .field = level.field,
                                                       .editIdentifier = firstLevelEdit + i,
                                                       .edit = {316, top + 7, 50, 24},
                                                       .unit = "dB",
                                                       .unitPlace = {370, top + 7, 18, 24},
                                                       .side = TextSide::right,
                                                       .manual = {level.effect}});
        if (level.field == FieldId::gainDetectionLevel) {
            row.caption = "Level";
            row.captionPlace = {134, top + 7, 34, 24};
        }
    }
}

void addCompressor(ControlRows& rows) {
    struct Column {
        FieldId field;
        const char* head;
        const char* unit;
        const char* name;
        std::string_view effect;
    };
    constexpr std::array<Column, 6> columns{{
        {FieldId::compressorCrossover, "Crossover", "Hz", "Compressor crossover",
         "crossover frequency of the compressor"},
        {FieldId::pone, "PONE", "dB", "PONE", "the target's parameter of that name"},
        {FieldId::compressorLowerLimit, "Compressor\nLower Limit", "dB", "Compressor lower limit",
         "lower limit of the compressor"},
        {FieldId::compressorGain, "Gain", "dB", "Compressor gain", "gain of the compressor"},
        {FieldId::expanderUpperLimit, "Expander\nUpper Limit", "dB", "Expander upper limit",
         "upper limit of the expander"},
        {FieldId::expanderFactor, "Expander\nFactor", "", "Expander factor", "factor of the expander"},
    }};
    rows.push_back({.kind = group, .caption = "Compressor", .place = {404, 310, 580, 278}});
    for (int i = 0; i < static_cast<int>(columns.size()); ++i) {
        const Column& column = columns[static_cast<std::size_t>(i)];
        const int x = 412 + 75 * i;
        const bool hasUnit = column.unit[0] != '\0';
        rows.push_back({.kind = slider,
                        .identifier = firstCompressorSlider + i,
                        .caption = column.head,
                        .name = column.name,
                        .place = {x + 24, 372, 28, 174},
                        .field = column.field,
                        .editIdentifier = firstCompressorEdit + i,
                        .edit = {x + 2, 554, 50, 24},
                        .editsLast = true,
                        .captionPlace = {x, 340, 75, 28},
                        .unit = column.unit,
                        .unitPlace = hasUnit ? Place{x + 55, 554, 20, 24} : Place{},
                        .side = TextSide::bottom,
                        .manual = {column.effect}});
    }
    rows.push_back({.kind = line, .place = {872, 344, 1, 234}});
    rows.push_back({.kind = check,
                    .identifier = compressorDisabled,
                    .caption = "Disable",
                    .name = "Compressor disable",
                    .place = {883, 341, 91, 22},
                    .field = FieldId::compressorDisabled,
                    .manual = {"takes the compressor out of circuit"}});
    const auto addTime = [&](int identifier, FieldId field, const char* caption, std::string what, int y,
                             std::string_view effect) {
        rows.push_back({.kind = number,
                        .identifier = identifier,
                        .caption = caption,
                        .name = std::move(what),
                        .place = {886, y, 56, 24},
                        .field = field,
                        .captionPlace = {886, y - 18, 90, 14},
                        .unit = "ms",
                        .unitPlace = {946, y, 28, 24},
                        .manual = {effect}});
    };
    addTime(attackTime, FieldId::compressorAttack, "Attacktime", "Compressor attack time", 500,
            "attack time of the compressor");
    addTime(releaseTime, FieldId::compressorRelease, "Releasetime", "Compressor release time", 554,
            "release time of the compressor");
}

}  // namespace

const ControlRows& inputEqRows() {
    static const ControlRows rows = [] {
        ControlRows made;
        addEqualizer(made);
        addTone(made);
        addLevels(made);
        addCompressor(made);
        return made;
    }();
    return rows;
}

}  // namespace tessavo
