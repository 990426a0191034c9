#include "pages/rows/output_group_rows.h"

namespace tessavo {

namespace {

using enum ControlKind;

void addChannel(ControlRows& rows, const GroupRow& row, int position) {
    const int left = 15 + 120 * position;
    const int editY = row.top + 206;
    const int letterY = row.top + 241;
    const auto index = static_cast<std::size_t>(position);
    const std::string channel = "Channel " + std::to_string(position + 1);
    const std::string name = channel + " " + row.name;
    rows.push_back({.kind = group, .caption = channel, .bounds = {left, row.top + 32, 114, 242}});
    ControlRow value{.kind = slider,
                     .identifier = row.firstSlider + position,
                     .name = name,
                     .bounds = {left + 42, row.top + 64, 30, row.sliderHeight},
                     .field = row.value,
                     .element = index,
                     .isBound = false,
                     .editIdentifier = row.edits[index],
                     .manual = {row.effect}};
    if (row.firstDistance != 0) {
        value.kind = delay;
        value.edit = {left + 8, editY, 47, 24};
        value.distanceIdentifier = row.firstDistance + position;
        value.distance = {left + 59, editY, 47, 24};
        value.caption = "[ms] / [cm]";
        value.captionBounds = {left, editY - 18, 114, 14};
        value.side = TextSide::centre;
    } else {
        value.caption = "slider";
        value.edit = {left + 24, editY, 48, 24};
        value.unit = "dB";
        value.unitBounds = {left + 76, editY, 22, 24};
    }
    rows.push_back(value);
    rows.push_back({.kind = combo,
                    .identifier = row.firstGroup + position,
                    .caption = "Group",
                    .name = name + " group",
                    .bounds = {left + 54, letterY, 52, 24},
                    .field = row.group,
                    .element = index,
                    .captionBounds = {left + 10, letterY, 42, 24},
                    .manual = {.effect = "channels with the same letter move together",
                               .start = "A for Channel 1 … H for Channel 8"}});
}

}  // namespace

const ControlRows& outputGroupRows() {
    static const ControlRows rows = [] {
        ControlRows made;
        for (const GroupRow& row : groupRows) {
            made.push_back({.kind = group, .caption = row.title, .bounds = {0, row.top, 984, 286}});
            for (int position = 0; position < static_cast<int>(channelCount); ++position) {
                addChannel(made, row, position);
            }
        }
        return made;
    }();
    return rows;
}

}  // namespace tessavo
