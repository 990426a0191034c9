#include "pages/rows/output_eq_rows.h"

#include <span>
#include <utility>

namespace tessavo {

namespace {

using enum ControlKind;
using namespace output_eq_id;

ControlRow boundRow(ControlKind kind, FieldId field, int identifier, std::string name, const Bounds& bounds,
                    std::string_view effect) {
    return {.kind = kind,
            .identifier = identifier,
            .name = std::move(name),
            .bounds = bounds,
            .field = field,
            .manual = {effect}};
}

ControlRow checkRow(FieldId field, int identifier, std::string caption, std::string name,
                    const Bounds& bounds, std::string_view effect) {
    ControlRow row = boundRow(check, field, identifier, std::move(name), bounds, effect);
    row.caption = std::move(caption);
    // "Enabled" and "Disabled" both say the opposite of these fields.
    row.inverted = field == FieldId::bandOff || field == FieldId::limiterEnabled;
    return row;
}

/// \param unitWidth of the label beside the box
ControlRow sliderRow(FieldId field, const SliderIds& ids, std::string name, const Bounds& bounds,
                     const Bounds& edit, int unitWidth, std::string_view effect) {
    ControlRow row = boundRow(slider, field, ids.slider, std::move(name), bounds, effect);
    row.editIdentifier = ids.edit;
    row.edit = edit;
    row.unit = fieldOf(field).unit;
    row.unitBounds = {edit.x + edit.width + 4, edit.y, unitWidth, edit.height};
    return row;
}

/// Its caption stands above it.
ControlRow captioned(ControlRow row, std::string caption, const Bounds& bounds, TextSide side) {
    row.caption = std::move(caption);
    row.captionBounds = bounds;
    row.side = side;
    return row;
}

ControlRow groupRow(std::string title, const Bounds& bounds) {
    return {.kind = group, .caption = std::move(title), .bounds = bounds};
}

void addBand(ControlRows& rows, std::size_t band) {
    struct Column {
        FieldId field;
        const char* head;
        const char* name;
        std::string_view effect;
        std::string_view unit{};
    };
    constexpr std::array<Column, 3> columns{{
        {FieldId::bandFrequency, "Freq", " frequency", "centre of a peak, corner of a shelf"},
        {FieldId::bandGain, "Gain", " gain", "height of the peak or shelf"},
        {FieldId::bandQ, "Q", " Q", "the higher, the narrower", "Q"},
    }};
    const BandIds& ids = bands[band];
    const int left = 100 * static_cast<int>(band);
    const std::string title = bandTitle(band);
    const std::size_t first = rows.size();
    rows.push_back(groupRow(title, {left, 8, 94, 378}));
    rows.back().titleBounds = {8, 7};
    rows.push_back(checkRow(FieldId::bandOff, ids.enabled, "Enabled", title + " enabled",
                            {left + 4, 37, 86, 22}, "puts the band in circuit"));
    rows.push_back(boundRow(combo, FieldId::bandType, ids.type, title + " type", {left + 7, 64, 80, 24},
                            "shape of the band"));
    rows.back().caption = "type";
    rows.back().codes = {1, 2, 0};
    for (int i = 0; i < static_cast<int>(columns.size()); ++i) {
        const auto& [field, head, name, effect, unit] = columns[static_cast<std::size_t>(i)];
        const int x = left + 4 + 29 * i;
        rows.push_back(captioned(sliderRow(field, ids.sliders[static_cast<std::size_t>(i)], title + name,
                                           {x, 114, 28, 182}, {left + 7, 302 + 26 * i, 58, 24}, 22, effect),
                                 head, {x, 97, 28, 14}, TextSide::centre));
        rows.back().editsLast = true;
        rows.back().unit = unit;
    }
    for (ControlRow& row : std::span(rows).subspan(first)) {
        row.element = band;
    }
}

void addCrossover(ControlRows& rows, std::size_t crossover) {
    const CrossoverIds& ids = crossovers[crossover];
    const int top = 396 + 66 * static_cast<int>(crossover);
    const std::string title = crossoverTitle(crossover);
    const std::size_t first = rows.size();
    rows.push_back(groupRow(title, {0, top, 594, 60}));
    rows.push_back(checkRow(FieldId::crossoverEnabled, ids.enabled, "Enabled", title + " enabled",
                            {9, top + 29, 89, 22}, "puts the crossover in circuit"));
    rows.push_back(boundRow(combo, FieldId::crossoverKind, ids.kind, title + " kind", {104, top + 28, 58, 24},
                            "HP high-pass, LP low-pass"));
    rows.back().caption = "kind";
    rows.push_back(boundRow(combo, FieldId::crossoverOrder, ids.order, title + " order",
                            {168, top + 28, 48, 24},
                            "order that the target is told; the curve shows one second-order section"));
    rows.back().caption = "order";
    rows.push_back(sliderRow(FieldId::crossoverFrequency, ids.frequency, title + " frequency",
                             {230, top + 26, 266, 28}, {506, top + 28, 58, 24}, 22, "corner frequency"));
    rows.back().caption = "frequency";
    for (ControlRow& row : std::span(rows).subspan(first)) {
        row.element = crossover;
    }
}

void addVolume(ControlRows& rows) {
    rows.push_back(groupRow("Volume", {0, 528, 594, 60}));
    rows.push_back(checkRow(FieldId::invertPhase, invertPhase, "Invert Phase", "", {9, 557, 113, 22},
                            "turns the polarity of the channel"));
    rows.push_back(sliderRow(FieldId::volume, volume, "Volume", {230, 554, 266, 28}, {506, 556, 58, 24}, 22,
                             "volume of the channel; the target takes it in steps of 0.5 dB"));
}

void addLimiter(ControlRows& rows) {
    rows.push_back(groupRow(limiterTitle, {600, 396, 384, 192}));
    int left = 610;
    const auto addLevel = [&](FieldId field, const SliderIds& ids, const char* head, const char* name,
                              std::string_view effect) {
        rows.push_back(captioned(
            sliderRow(field, ids, name, {left + 27, 452, 28, 98}, {left + 2, 556, 50, 24}, 27, effect), head,
            {left, 422, 82, 28}, TextSide::bottom));
        rows.back().unit = "[dB]";
        rows.back().unitBounds.x -= 1;
        left += 82;
    };
    addLevel(FieldId::limiterGain, {1346, 1347}, "Gain", "Limiter gain", "gain of the limiter");
    addLevel(FieldId::limiterActivateLevel, {1355, 1356}, "Activate\nLevel", "Limiter activate level",
             "level above which it acts");
    addLevel(FieldId::limiterDeactivateLevel, {1353, 1354}, "Deactivate\nLevel", "Limiter deactivate level",
             "level below which it lets go");
    rows.push_back(checkRow(FieldId::limiterEnabled, limiterDisabled, "Disabled", "Limiter disabled",
                            {875, 423, 99, 22}, "takes the limiter out of circuit"));
    rows.push_back({.kind = line, .bounds = {864, 426, 1, 152}});
    const auto addTime = [&](FieldId field, int identifier, const char* caption, const char* name, int y,
                             std::string_view effect) {
        rows.push_back(captioned(boundRow(number, field, identifier, name, {878, y, 58, 24}, effect), caption,
                                 {878, y - 18, 90, 14}, TextSide::left));
        rows.back().unit = "ms";
        rows.back().unitBounds = {940, y, 26, 24};
    };
    addTime(FieldId::limiterAttack, 1358, "Attacktime", "Limiter attack time", 502,
            "attack time of the limiter");
    addTime(FieldId::limiterRelease, 1359, "Releasetime", "Limiter release time", 556,
            "release time of the limiter");
}

// Controls that are there for whoever looks them up by number, never to be seen or reached: bands that the
// record has no room for, the channel's delay and its calibration.
void addHidden(ControlRows& rows) {
    const auto addSpareBand = [&](const char* title, const std::array<SliderIds, 3>& sliders, int disabled) {
        rows.push_back({.kind = group, .caption = title, .bounds = {0, 0, 94, 378}, .isHidden = true});
        for (const SliderIds& ids : sliders) {
            rows.push_back({.kind = slider, .identifier = ids.slider, .editIdentifier = ids.edit});
        }
        rows.push_back({.kind = check, .identifier = disabled, .caption = "Disabled"});
    };
    addSpareBand("Filter 9 Properties", {{{1023, 1135}, {1024, 1136}, {1025, 1137}}}, 1038);
    addSpareBand("Filter 10 Properties", {{{1029, 1052}, {1030, 1059}, {1031, 1071}}}, 1039);
    rows.push_back({.kind = group, .caption = "Delay", .bounds = {0, 0, 594, 60}, .isHidden = true});
    ControlRow& delay = rows.emplace_back(
        sliderRow(FieldId::delay, {1243, 1244}, "Delay", {230, 26, 266, 28}, {506, 28, 40, 24}, 0, {}));
    delay.kind = ControlKind::delay;
    delay.distanceIdentifier = 1041;
    delay.distance = {550, 28, 40, 24};
    delay.isHidden = true;
    rows.push_back({.kind = button, .identifier = 1254, .caption = "Calibrate"});
}

}  // namespace

std::string channelName(PagePosition position) {
    return "Channel " + std::to_string(position.value + 1);
}

std::string bandTitle(std::size_t band) {
    return "Filter " + std::to_string(band + 1);
}

std::string crossoverTitle(std::size_t crossover) {
    return "Crossover Filter " + std::to_string(crossover + 1);
}

const ControlRows& outputEqRows() {
    static const ControlRows rows = [] {
        ControlRows made;
        for (std::size_t band = 0; band < bandCount; ++band) {
            addBand(made, band);
        }
        made.push_back({.kind = own, .caption = "Channel Selection", .bounds = {800, 8, 184, 378}});
        for (std::size_t crossover = 0; crossover < crossoverCount; ++crossover) {
            addCrossover(made, crossover);
        }
        addVolume(made);
        addLimiter(made);
        addHidden(made);
        return made;
    }();
    return rows;
}

const ControlRows& channelSelectionRows() {
    using namespace selection_id;
    static const ControlRows rows = [] {
        ControlRows made;
        const auto add = [&](ControlKind kind, int identifier, std::string caption,
                             const Bounds& bounds) -> ControlRow& {
            return made.emplace_back(ControlRow{
                .kind = kind, .identifier = identifier, .caption = std::move(caption), .bounds = bounds});
        };
        for (int row = 0; row < static_cast<int>(channelCount); ++row) {
            const std::uint8_t position = selectionRows[static_cast<std::size_t>(row)];
            const std::string name = channelName({position});
            const int top = selectionRowPlace(row).y;
            add(label, -1, "Ch " + std::to_string(row + 1), selectionHeadPlace(row)).textPixels = 12;
            add(radio, radios[position], "", {55, top, 119, 25}).name = name;
            add(check, checks[position], "", {55, top, 119, 25}).name = name;
            ControlRow& nameRow = add(label, names[position], name, {80, top, 62, 25});
            nameRow.colour = theme::text;
            nameRow.textPixels = 12;
            add(label, -1, "", selectionSourcePlace(row)).side = TextSide::right;
        }
        add(check, assign, "Assign to multiple Ch.", {11, 265, 167, 22});
        ControlRow& nowhere = add(label, -1, "No channel: edits go nowhere", selectionNowherePlace);
        nowhere.colour = theme::trouble;
        nowhere.side = TextSide::centre;
        add(button, allFilters, "Disable All Filters", {12, 300, 160, 28});
        add(button, resetChannel, "Reset Channel", {12, 338, 160, 28});
        return made;
    }();
    return rows;
}

}  // namespace tessavo
