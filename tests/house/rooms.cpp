#include "house/rooms.h"

#include <array>

namespace tessavo::house {

std::span<const Room> houseRooms() {
    static constexpr std::array<Room, 24> rooms{{
        {"base", 0, false, "boxes and dialogs as interfaces, semaphore, raw files, numbers, MD5"},
        {"platform", 0, false, "process and desktop, for POSIX and for Windows"},
        {"text", 1, false, "texts of other programs: encodings, lines, numbers"},
        {"dsp", 1, false, "coefficient generators, fixed-point words"},
        {"controls", 1, true, "sliders, buttons, boxes and their look"},
        {"plot", 2, false, "response curves"},
        {"params", 3, false, "records, field table, settings files, image, the door for edits"},
        {"plot/chart", 3, true, "chart, its dialogs, plot window"},
        {"comm", 4, false, "serial port, framing, transfer engine, live worker, commands"},
        {"filtertext", 4, false, "filter texts of other programs in and out"},
        {"history", 4, false, "undo and redo, recovery file, earlier versions of files"},
        {"response", 4, false, "exact complex responses of channels and their sums"},
        {"compare", 5, false, "two sets side by side, copies of elements, channels and sets"},
        {"pages/rows", 5, false, "what stands on each page, as tables"},
        {"measure", 5, false, "measurements, smoothing, target curves, alignment"},
        {"copies", 5, false, "copies of the target: backups, restoring them, what was written into it"},
        {"target", 5, false, "the simulated target"},
        {"pages/form", 6, true, "makes the controls of a page's rows, keeps them bound to their fields"},
        {"fit", 6, false, "filters that bring a measurement to its target"},
        {"cli", 7, false, "tessavoctl"},
        {"comm/page", 7, true, "communication page with its log"},
        {"pages/input", 7, true, "input equalizer, channel configuration"},
        {"pages/output", 7, true, "output equalizer, output group, clip detection"},
        {"app", 8, true, "application object, frame, main view, main()"},
    }};
    return rooms;
}

}  // namespace tessavo::house
