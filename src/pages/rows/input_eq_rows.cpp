#include "pages/rows/input_eq_rows.h"

#include <array>

#include "base/number_text.h"

namespace tessavo {

namespace {

using enum ControlKind;
namespace id = input_eq_id;

constexpr Colour ruler = 0xFF28303A;
constexpr Colour zeroRuler = 0xFF46535F;

// clang-format off
void addRuler(ControlRows& rows, int first, int last, int textsAt, int textWidth) {
    // At +20, +10, 0, -10 and -20 dB, where the middle of a cap stands.
    for (const int y : {77, 120, 163, 205, 248}) {
        rows.push_back({.kind = line, .bounds = {first, y, last - first, 1}, .colour = y == 163 ? zeroRuler : ruler});
    }
    const auto addText = [&](const char* text, int y, int height) {
        rows.push_back({.kind = label, .caption = text, .bounds = {textsAt, y, textWidth, height},
                        .side = TextSide::right});
    };
    addText("20 dB", 70, 15);
    addText("-20 dB", 241, 15);
    addText("dB", 266, 24);
}

ControlRow band(int index, const std::string& head, const std::string& name, FieldId field, std::size_t element,
                const Bounds& column, std::string_view effect) {
    const int centre = column.x + column.width / 2;
    // The lines of the group are the ruler, so the slider has no ticks.
    return {.kind = slider, .identifier = id::firstBandSlider + index, .caption = head, .name = name,
            .bounds = {centre - 14, 68, 28, 190}, .field = field, .element = element,
            .editIdentifier = id::firstBandEdit + index, .edit = {centre - 25, 266, 50, 24},
            .editsLast = true, .plainEdit = true, .ticks = std::vector<int>{},
            .captionBounds = column, .side = TextSide::centre, .captionColour = theme::text, .manual = {effect}};
}

void addEqualizer(ControlRows& rows) {
    rows.push_back({.kind = group, .caption = "Equalizer", .bounds = {0, 8, 656, 292}});
    rows.push_back({.kind = toggle, .identifier = id::eqOn, .caption = "EQ On", .bounds = {470, 16, 92, 26},
                    .field = FieldId::inputEqOn, .entries = {"EQ Off", "EQ On"},
                    .manual = {.effect = "puts the equalizer and the tone bands in circuit; the caption names "
                                         "the state in force",
                               .start = "EQ On"}});
    rows.push_back({.kind = note, .identifier = id::eqNote, .bounds = {120, 20, 340, 18}, .side = TextSide::right});
    rows.push_back({.kind = button, .identifier = id::reset, .caption = "Reset", .bounds = {570, 16, 74, 26}});
    rows.push_back({.kind = label, .caption = "Hz", .bounds = {6, 50, 42, 14}, .side = TextSide::right});
    addRuler(rows, 56, 644, 6, 42);
    constexpr std::array heads{"60", "170", "310", "600", "1K", "3K", "6K", "12K", "14K", "16K"};
    for (std::size_t i = 0; i < heads.size(); ++i) {
        const int index = static_cast<int>(i);
        const std::string name = shortestText(fieldOf(FieldId::inputBandFrequency).defaults[i]) + " Hz gain";
        rows.push_back(band(index, heads[i], name, FieldId::inputBandGain, i, {58 + 58 * index, 50, 58, 14},
                            "gain of a graphic band; the frequencies are fixed"));
    }
}

void addTone(ControlRows& rows) {
    rows.push_back({.kind = group, .caption = "Tone", .bounds = {666, 8, 318, 292}});
    addRuler(rows, 724, 972, 672, 46);
    const std::array<std::string, 3> heads{"Bass", "Mid", "Treble"};
    for (std::size_t i = 0; i < heads.size(); ++i) {
        const int index = static_cast<int>(i);
        rows.push_back(band(10 + index, heads[i], heads[i] + " gain", FieldId::toneGain, i,
                            {725 + 82 * index, 50, 82, 14},
                            "gain of the low shelf at 150 Hz, the peak at 4000 Hz, the high shelf at 15000 Hz"));
    }
}

void addLevel(ControlRows& rows, int index, FieldId field, const char* title, std::string_view effect) {
    const int top = 310 + 48 * index;
    const bool isDetection = field == FieldId::gainDetectionLevel;
    rows.push_back({.kind = group, .caption = title, .bounds = {0, top, 394, 38}, .titleBounds = {12, 11}});
    rows.push_back({.kind = slider, .identifier = id::firstLevelSlider + index, .caption = isDetection ? "Level" : "",
                    .name = title, .bounds = {172, top + 5, 138, 28}, .field = field,
                    .editIdentifier = id::firstLevelEdit + index, .edit = {316, top + 7, 50, 24},
                    .captionBounds = isDetection ? Bounds{134, top + 7, 34, 24} : Bounds{},
                    .unit = "dB", .unitBounds = {370, top + 7, 18, 24}, .side = TextSide::right, .manual = {effect}});
}

void addColumn(ControlRows& rows, int index, FieldId field, const char* head, const char* name,
               std::string_view effect) {
    const int x = 412 + 75 * index;
    const std::string unit(fieldOf(field).unit);
    rows.push_back({.kind = slider, .identifier = id::firstCompressorSlider + index, .caption = head, .name = name,
                    .bounds = {x + 24, 372, 28, 174}, .field = field,
                    .editIdentifier = id::firstCompressorEdit + index, .edit = {x + 2, 554, 50, 24}, .editsLast = true,
                    .captionBounds = {x, 340, 75, 28},
                    .unit = unit, .unitBounds = unit.empty() ? Bounds{} : Bounds{x + 55, 554, 20, 24},
                    .side = TextSide::bottom, .manual = {effect}});
}

void addTime(ControlRows& rows, int identifier, FieldId field, int y, const char* caption, const char* name,
             std::string_view effect) {
    rows.push_back({.kind = number, .identifier = identifier, .caption = caption, .name = name,
                    .bounds = {886, y, 56, 24}, .field = field, .captionBounds = {886, y - 18, 90, 14},
                    .unit = "ms", .unitBounds = {946, y, 28, 24}, .manual = {effect}});
}

void addCompressor(ControlRows& rows) {
    rows.push_back({.kind = group, .caption = "Compressor", .bounds = {404, 310, 580, 278}});
    addColumn(rows, 0, FieldId::compressorCrossover, "Crossover", "Compressor crossover",
              "crossover frequency of the compressor");
    addColumn(rows, 1, FieldId::pone, "PONE", "PONE", "the target's parameter of that name");
    addColumn(rows, 2, FieldId::compressorLowerLimit, "Compressor\nLower Limit", "Compressor lower limit",
              "lower limit of the compressor");
    addColumn(rows, 3, FieldId::compressorGain, "Gain", "Compressor gain", "gain of the compressor");
    addColumn(rows, 4, FieldId::expanderUpperLimit, "Expander\nUpper Limit", "Expander upper limit",
              "upper limit of the expander");
    addColumn(rows, 5, FieldId::expanderFactor, "Expander\nFactor", "Expander factor", "factor of the expander");
    rows.push_back({.kind = line, .bounds = {872, 344, 1, 234}});
    rows.push_back({.kind = check, .identifier = id::compressorDisabled, .caption = "Disable",
                    .name = "Compressor disable", .bounds = {883, 341, 91, 22}, .field = FieldId::compressorDisabled,
                    .manual = {"takes the compressor out of circuit"}});
    addTime(rows, id::attackTime, FieldId::compressorAttack, 500, "Attacktime", "Compressor attack time",
            "attack time of the compressor");
    addTime(rows, id::releaseTime, FieldId::compressorRelease, 554, "Releasetime", "Compressor release time",
            "release time of the compressor");
}
// clang-format on

}  // namespace

const ControlRows& inputEqRows() {
    static const ControlRows rows = [] {
        ControlRows made;
        addEqualizer(made);
        addTone(made);
        addLevel(made, 0, FieldId::inputGain, "Gain", "input level");
        addLevel(made, 1, FieldId::preampGain, "Preamp", "gain of the preamplifier");
        addLevel(made, 2, FieldId::powerampGain, "Poweramp", "gain of the power amplifier");
        addLevel(made, 3, FieldId::lineInGain, "Line-In Gain", "gain of the line input");
        addLevel(made, 4, FieldId::suppression, "Suppression", "suppression");
        addLevel(made, 5, FieldId::gainDetectionLevel, "Gain Detection", "level of the gain detection");
        addCompressor(made);
        return made;
    }();
    return rows;
}

}  // namespace tessavo
