#include "pages/rows/communication_rows.h"

#include "params/channels.h"

namespace tessavo {

namespace {

using enum ControlKind;
using namespace comm_id;

ControlRow control(ControlKind kind, int identifier, const char* caption, const Bounds& bounds) {
    return {.kind = kind, .identifier = identifier, .caption = caption, .bounds = bounds};
}

/// A box that only shows, and a list, with its caption beside it.
ControlRow captioned(ControlKind kind, int identifier, const char* caption, const Bounds& captionBounds,
                     const Bounds& bounds) {
    return {.kind = kind,
            .identifier = identifier,
            .caption = caption,
            .bounds = bounds,
            .captionBounds = captionBounds,
            .textPixels = 12,
            .captionColour = theme::text};
}

void addSets(ControlRows& rows, int groupIdentifier, const char* title, int left, int first) {
    rows.push_back(control(group, groupIdentifier, title, {left, 8, 382, 68}));
    const auto add = [&](int set, const std::string& caption, int width) {
        const int x = left + 12 + 52 * (set > 0 ? set - 1 : static_cast<int>(setCount));
        rows.push_back({.kind = button,
                        .identifier = first + set,
                        .caption = caption,
                        .name = std::string(title) + ": " + caption,
                        .bounds = {x, 38, width, 28}});
    };
    for (int set = 1; set <= static_cast<int>(setCount); ++set) {
        add(set, "Set " + std::to_string(set), 46);
    }
    add(0, "Default Set", 98);
}

}  // namespace

const ControlRows& communicationRows() {
    static const ControlRows rows = [] {
        ControlRows made;
        addSets(made, saveGroup, "Save Set In RAM To", 0, firstSave);
        addSets(made, loadGroup, "Load Set from RAM", 392, firstLoad);
        const ControlRows others{
            control(group, softwareGroup, "Software Update", {0, 86, 774, 90}),
            {.kind = readOnly,
             .identifier = imagePath,
             .name = "Software image file",
             .bounds = {12, 116, 470, 28}},
            control(button, selectImage, "Select Image File", {492, 116, 130, 28}),
            control(button, flashFile, "Flash File", {632, 116, 130, 28}),
            control(own, transferLine, "", {12, 150, 750, 16}),
            control(button, backUpTarget, "Back Up Target...", {602, 90, 160, 22}),
            control(group, interfaceGroup, "Communication Interface", {784, 8, 200, 168}),
            captioned(combo, portList, "COM Port", {796, 46, 62, 28}, {864, 46, 108, 28}),
            control(button, refresh, "Refresh", {796, 138, 176, 28}),
            control(group, versionGroup, "Version Information", {784, 186, 200, 200}),
            captioned(readOnly, hardwareVersion, "Hardware Version", {796, 222, 176, 16},
                      {796, 242, 176, 26}),
            captioned(readOnly, softwareVersion, "Software Version", {796, 284, 176, 16},
                      {796, 304, 176, 26}),
            control(button, update, "Update", {796, 348, 176, 28}),
            control(group, logGroup, "Communication Log", {0, 186, 774, 402}),
            control(own, comm_id::log, "Communication Log", {12, 216, 750, 326}),
            control(check, showStatus, "Show Status Message", {9, 550, 157, 28}),
            control(check, showErrors, "Show Error Message", {167, 550, 149, 28}),
            control(check, showSent, "Show TX Message", {317, 550, 135, 28}),
            control(check, showReceived, "Show RX Message", {453, 550, 137, 28}),
            control(button, clearLog, "Clear Communication Log", {592, 550, 170, 28})};
        made.insert(made.end(), others.begin(), others.end());
        return made;
    }();
    return rows;
}

}  // namespace tessavo
