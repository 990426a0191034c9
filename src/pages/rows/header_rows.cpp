#include "pages/rows/header_rows.h"

namespace tessavo {

using enum ControlKind;
using namespace view_id;

const ControlRows& headerRows() {
    static const ControlRows rows = [] {
        ControlRows made{
            {.kind = combo, .identifier = setSelector, .name = "Parameter set", .bounds = {20, 10, 132, 28}},
            {.kind = own, .identifier = recordMark, .bounds = {2, 16, 16, 16}},
            {.kind = own, .identifier = setName, .name = "Set name", .bounds = {160, 10, 188, 28}},
            {.kind = toggle, .identifier = eqMode, .caption = "EQ Mode Off", .bounds = {374, 10, 124, 28}},
            {.kind = combo,
             .identifier = filterMode,
             .caption = "Switch Mode",
             .bounds = {596, 10, 96, 28},
             .captionBounds = {510, 10, 78, 28},
             .textPixels = 12,
             .side = TextSide::right},
            {.kind = button, .identifier = showPlot, .caption = "Show Plot", .bounds = {702, 10, 92, 28}},
            {.kind = line, .bounds = {360, 11, 1, 26}},
            {.kind = line, .bounds = {807, 11, 1, 26}},
        };
        for (int flag = 0; flag < static_cast<int>(channelCount); ++flag) {
            const int x = 817 + 24 * flag;
            const std::string number = std::to_string(flag + 1);
            made.push_back({.kind = check,
                            .identifier = firstChannelFlag + flag,
                            .name = "Channel flag " + number,
                            .bounds = {x, 7, 22, 22}});
            made.push_back(
                {.kind = label, .caption = number, .bounds = {x, 29, 22, 12}, .side = TextSide::centre});
        }
        made.push_back({.kind = own, .identifier = tabs, .bounds = {20, 50, 776, 34}});
        return made;
    }();
    return rows;
}

}  // namespace tessavo
