#include "pages/rows/clip_rows.h"

namespace tessavo {

namespace {

using enum ControlKind;

constexpr int firstRowTop = 120;
constexpr int rowStep = 47;

ControlRow text(std::string caption, const Bounds& bounds) {
    return {.kind = label,
            .caption = std::move(caption),
            .bounds = bounds,
            .colour = theme::text,
            .textPixels = 13};
}

// Made last, the clipping picture lies above: where both are shown the warning is what a person sees.
void addLight(ControlRows& rows, const clip_id::LightIds& ids, const std::string& name,
              const Bounds& bounds) {
    rows.push_back({.kind = own, .bounds = bounds});
    rows.push_back(
        {.kind = own, .identifier = ids.notClipping, .name = name + ": not clipping", .bounds = bounds});
    rows.push_back({.kind = own, .identifier = ids.clipping, .name = name + ": clipping", .bounds = bounds});
}

void addSwitch(ControlRows& rows) {
    rows.push_back({.kind = group,
                    .identifier = clip_id::switchGroup,
                    .name = "Clip Detection",
                    .bounds = {0, 8, 984, 62}});
    rows.push_back({.kind = button,
                    .identifier = clip_id::onOff,
                    .caption = "On/Off",
                    .name = "Clip Detection On/Off",
                    .bounds = {16, 23, 112, 32}});
    rows.push_back({.kind = lamp, .identifier = clip_id::stateLamp, .bounds = {147, 30, 18, 18}});
    ControlRow state = text("Clip Detection is OFF", {174, 23, 200, 32});
    state.identifier = clip_id::state;
    state.textPixels = 15;
    rows.push_back(state);
    ControlRow answer = text("", {382, 23, 586, 32});
    answer.identifier = clip_id::lastAnswer;
    rows.push_back(answer);
}

void addColumn(ControlRows& rows, std::size_t stage) {
    const std::string caption(clipStages[stage].caption);
    const Bounds column = clipColumnPlace(stage);
    rows.push_back({.kind = group,
                    .identifier = clip_id::firstColumn + static_cast<int>(stage),
                    .caption = caption,
                    .bounds = column,
                    .titleBounds = {16, 10}});
    rows.push_back({.kind = line, .bounds = {column.x + 1, column.y + 36, column.width - 2, 1}});
    for (std::size_t row = 0; row < clipStages[stage].names.size(); ++row) {
        const std::string name(clipStages[stage].names[row]);
        const int top = firstRowTop + rowStep * static_cast<int>(row);
        if (row > 0) {
            rows.push_back({.kind = line,
                            .bounds = {column.x + 16, top, column.width - 32, 1},
                            .colour = theme::rowDivider});
        }
        rows.push_back(text(name, {column.x + 16, top, 140, rowStep}));
        addLight(rows, clip_id::light(stage, row), std::string(caption).append(", ").append(name),
                 {column.x + 178, top + 7, 34, 34});
    }
}

void addAmplifier(ControlRows& rows, std::size_t row) {
    const std::string name = std::string(clipAmplifierNames[row]) + " Clipping Status";
    const int left = 504 * static_cast<int>(row);
    rows.push_back({.kind = group,
                    .identifier = clip_id::firstAmplifier + static_cast<int>(row),
                    .name = name,
                    .bounds = {left, 514, 480, 74}});
    rows.push_back(text(name, {left + 16, 535, 320, 32}));
    addLight(rows, clip_id::amplifiers[row], name, {left + 425, 529, 44, 44});
}

}  // namespace

const ControlRows& clipRows() {
    static const ControlRows rows = [] {
        ControlRows made;
        addSwitch(made);
        for (std::size_t stage = 0; stage < clipStages.size(); ++stage) {
            addColumn(made, stage);
        }
        for (std::size_t row = 0; row < clipAmplifierNames.size(); ++row) {
            addAmplifier(made, row);
        }
        return made;
    }();
    return rows;
}

}  // namespace tessavo
