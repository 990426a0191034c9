#include "house/rooms.h"

#include <array>

namespace tessavo::house {

std::span<const Room> houseRooms() {
    static constexpr std::array<Room, 14> rooms{{
        {"base", 0, false, "boxes and dialogs as interfaces, semaphore, raw files, numbers, MD5"},
        {"platform", 0, false, "process and desktop, for POSIX and for Windows"},
        {"dsp", 1, false, "coefficient generators, fixed-point words"},
        {"controls", 1, true, "sliders, buttons, boxes and their look"},
        {"plot", 2, false, "response curves"},
        {"params", 3, false, "records, field table, settings files, image, the door for edits"},
        {"plot/chart", 3, true, "chart, its dialogs, plot window"},
        {"comm", 4, false, "serial port, framing, transfer engine, live worker, commands"},
        {"target", 5, false, "the simulated target"},
        {"comm/page", 5, true, "communication page with its log"},
        {"pages/input", 5, true, "input equalizer, channel configuration"},
        {"cli", 6, false, "tessavoctl"},
        {"pages/output", 6, true, "output equalizer, output group, clip detection"},
        {"app", 7, true, "application object, frame, main view, main()"},
    }};
    return rooms;
}

}  // namespace tessavo::house
