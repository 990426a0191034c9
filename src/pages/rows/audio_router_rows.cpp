#include "pages/rows/audio_router_rows.h"

#include <array>

#include "params/channels.h"

namespace tessavo {

namespace {

using enum ControlKind;
namespace id = audio_router_id;

// clang-format off
void addOutput(ControlRows& rows) {
    rows.push_back({.kind = group, .caption = "Output", .bounds = {0, 8, 388, 440}});
    for (int i = 0; i < static_cast<int>(channelCount); ++i) {
        const std::string channel = "Channel " + std::to_string(i + 1);
        const int top = 46 + 42 * i;
        const bool last = i + 1 == static_cast<int>(channelCount);
        rows.push_back({.kind = combo, .identifier = id::firstSource + i, .caption = channel,
                        .name = channel + " source", .bounds = {120, top, 252, 28},
                        .field = FieldId::routerSource, .element = static_cast<std::size_t>(i),
                        .captionBounds = {16, top, 90, 28}, .textPixels = 12, .captionColour = theme::text,
                        .manual = {"source that feeds the output channel", "one of the sources below", "Silenced"}});
        rows.push_back({.kind = line, .bounds = {16, top + 35, 356, 1},
                        .colour = last ? theme::line : theme::rowDivider});
    }
    rows.push_back({.kind = check, .identifier = id::lineOutUse,
                    .caption = "Deactivate Channel 7 and 8 (for Line-Out use)", .bounds = {13, 401, 363, 22},
                    .field = FieldId::lineOutUse, .manual = {"takes the two channels out of use, for the line output"}});
}

void addTurnOffDelay(ControlRows& rows) {
    rows.push_back({.kind = group, .caption = "Long Turn-Off Delay settings", .bounds = {0, 458, 388, 130}});
    rows.push_back({.kind = combo, .identifier = id::turnOffDelayOn, .name = "Long turn-off delay",
                    .bounds = {16, 496, 356, 28}, .field = FieldId::turnOffDelayOn, .entries = {"Off", "On"},
                    .manual = {"whether the long turn-off delay is in use"}});
    rows.push_back({.kind = slider, .identifier = id::turnOffDelaySlider, .name = "Turn-off delay",
                    .bounds = {12, 538, 262, 30}, .field = FieldId::turnOffDelay,
                    .editIdentifier = id::turnOffDelayEdit, .edit = {284, 540, 58, 26},
                    .unit = "[ms]", .unitBounds = {346, 540, 28, 26}, .manual = {"how long it is"}});
}

void addSurroundSwitch(ControlRows& rows) {
    rows.push_back({.kind = group, .caption = "Surround", .bounds = {398, 8, 586, 580}});
    rows.push_back({.kind = button, .identifier = id::surround, .caption = "Enable Surround",
                    .bounds = {414, 44, 152, 32}, .field = FieldId::surroundOff, .entries = {"on", "off"},
                    .manual = {.effect = "the surround processing; see below", .start = "shown as off"}});
    rows.push_back({.kind = lamp, .identifier = id::surroundLamp, .name = "Surround", .bounds = {583, 51, 18, 18}});
    rows.push_back({.kind = label, .identifier = id::surroundState, .bounds = {610, 44, 220, 32},
                    .colour = theme::text, .textPixels = 15});
    rows.push_back({.kind = note, .identifier = id::surroundNote, .bounds = {836, 51, 132, 18}});
    rows.push_back({.kind = line, .bounds = {414, 92, 554, 1}});
}

/// A control with its caption above it.
ControlRow captioned(ControlKind kind, int identifier, FieldId field, const std::string& name, const Bounds& bounds,
                     int captionWidth, std::string_view effect) {
    return {.kind = kind, .identifier = identifier, .caption = kind == number ? name + " [ms]" : name, .name = name,
            .bounds = bounds, .field = field, .captionBounds = {bounds.x, bounds.y - 22, captionWidth, 16},
            .textPixels = 12, .captionColour = theme::text, .manual = {effect}};
}

void addDelaySizes(ControlRows& rows) {
    rows.push_back(captioned(spin, id::surroundMode, FieldId::surroundMode, "Surround mode", {414, 128, 84, 26}, 112,
                             "what the room sounds like"));
    for (const FieldCode& mode : fieldOf(FieldId::surroundMode).codes) {
        rows.push_back({.kind = label, .caption = std::to_string(mode.code) + " - " + std::string(mode.shown),
                        .bounds = surroundModeBounds(mode.code), .textPixels = 12});
    }
    rows.push_back({.kind = line, .bounds = {770, 106, 1, 128}});
    rows.push_back(captioned(number, id::delaySize1, FieldId::delaySize1, "Delay size 1", {794, 128, 96, 26}, 160,
                             "kept for each pair of mode and room size"));
    rows.push_back(captioned(spin, id::roomSize, FieldId::roomSize, "Room size", {414, 208, 84, 26}, 112,
                             "0 small room … 4 large room"));
    rows.push_back({.kind = label, .caption = "0 - Small Room....4 - Large Room", .bounds = {534, 208, 220, 26},
                    .textPixels = 12});
    rows.push_back(captioned(number, id::delaySize2, FieldId::delaySize2, "Delay size 2", {794, 208, 96, 26}, 160,
                             "second delay"));
}

void addDecoderGains(ControlRows& rows) {
    // In the order of the record.
    constexpr std::array heads{"Center\ngain [dB]", "Panorama\ngain [dB]", "Hall effect\ngain [dB]",
                               "Rear to front\nmix gain [dB]"};
    constexpr std::array names{"Center gain", "Panorama gain", "Hall effect gain", "Rear to front mix gain"};
    rows.push_back({.kind = group, .caption = "Surround decoder gain setting", .bounds = {414, 250, 554, 284},
                    .titleBounds = {12, 7}});
    for (std::size_t gain = 0; gain < names.size(); ++gain) {
        const int i = static_cast<int>(gain);
        const int x = 423 + 134 * i;
        rows.push_back({.kind = slider, .identifier = id::firstDecoderGainSlider + i,
                        .caption = heads[gain], .name = names[gain],
                        .bounds = {x + 52, 322, 30, 164}, .field = FieldId::decoderGain, .element = gain,
                        .editIdentifier = id::firstDecoderGainEdit + i, .edit = {x + 39, 494, 56, 26},
                        .editsLast = true, .plainEdit = true, .ticks = std::vector{-300, -200, -100, 0},
                        .captionBounds = {x, 284, 134, 30}, .textPixels = 12, .side = TextSide::bottom,
                        .manual = {"gains of the surround decoder; the bottom is silence",
                                   "-Inf., -29.9 … 0.0", "-Inf."}});
    }
}
// clang-format on

}  // namespace

const ControlRows& audioRouterRows() {
    static const ControlRows rows = [] {
        ControlRows made;
        addOutput(made);
        addTurnOffDelay(made);
        addSurroundSwitch(made);
        addDelaySizes(made);
        addDecoderGains(made);
        made.push_back({.kind = check,
                        .identifier = id::rearForSurround,
                        .caption = "Use rear channel for surround calculation",
                        .bounds = {411, 549, 403, 22},
                        .field = FieldId::rearForSurround,
                        .manual = {"the rear channels take part in the surround calculation"}});
        return made;
    }();
    return rows;
}

}  // namespace tessavo
