#include "pages/input/audio_router.h"

#include <QLabel>
#include <algorithm>

#include "base/saturate.h"
#include "controls/note_mark.h"
#include "controls/skin_combo_box.h"
#include "controls/spin_edit.h"
#include "controls/state_lamp.h"
#include "controls/theme.h"

namespace tessavo {

namespace {

/// Words that take the same value as delay size 1.
constexpr std::array<BoundField, 5> delaySize1Words{{
    {FieldId::delaySize1},
    {FieldId::delaySize1Copies, 0},
    {FieldId::delaySize1Copies, 1},
    {FieldId::delaySize1Copies, 2},
    {FieldId::delaySize1Last},
}};

}  // namespace

CAudioRouter::CAudioRouter(TuningState& tuning, QWidget* parent) : ParameterPage(tuning, parent) {
    form().setTyping(Typing::followed);
    form().build(audioRouterRows());
    form().onClick(audio_router_id::surround, [this] { toggleSurround(); });
    form().control<QLabel>(audio_router_id::surroundState).setFont(theme::font(15, QFont::Medium));
    for (const ControlRow& row : audioRouterRows()) {
        if (row.field == FieldId::routerSource) {
            auto& list = form().control<SkinComboBox>(row.identifier);
            list.setItemDot(0, QColor::fromRgb(theme::mark));
            form().labelAt(row.captionBounds).setBuddy(&list);
        }
    }
    CAudioRouter::refresh();
    showSurround(false);
}

FieldIndex CAudioRouter::elementOf(BoundField bound) const {
    if (bound.field == FieldId::routerSource) {
        return {recordChannelAt({static_cast<std::uint8_t>(bound.element)}).value, 0};
    }
    return ParameterPage::elementOf(bound);
}

void CAudioRouter::write(BoundField bound, double value, bool final) {
    switch (bound.field) {
        case FieldId::delaySize1:
            keepDelaySize1(value);
            writeDelaySize1(value, final);
            break;
        case FieldId::surroundMode:
        case FieldId::roomSize:
            ParameterPage::write(bound, value, final);
            writeDelaySize1(delaySize1(), final);
            form().binding<NumberBinding>(audio_router_id::delaySize1).show(delaySize1());
            break;
        default:
            ParameterPage::write(bound, value, final);
    }
}

std::uint16_t& CAudioRouter::delaySize1() {
    const auto entry = [this](FieldId field, std::size_t count) {
        return std::min(truncateTo<std::size_t>(shown({field})), count - 1);
    };
    return delays_[entry(FieldId::surroundMode, surroundModeCount)][entry(FieldId::roomSize, roomSizeCount)];
}

// A set may hold a delay that nobody could have typed. It stays there, but is not carried to other sets and
// rooms.
void CAudioRouter::keepDelaySize1(double delayMs) {
    const Field& field = fieldOf(FieldId::delaySize1);
    delaySize1() = truncateTo<std::uint16_t>(std::clamp(delayMs, field.minimum, field.maximum));
}

void CAudioRouter::writeDelaySize1(double delayMs, bool final) {
    for (const BoundField word : delaySize1Words) {
        ParameterPage::write(word, delayMs, final);
    }
}

void CAudioRouter::refresh() {
    ParameterPage::refresh();
    keepDelaySize1(shown({FieldId::delaySize1}));
    showSurround(tuning().currentParameterSet().surroundOff != 1);
}

void CAudioRouter::updateLook() {
    const int modeInForce = form().control<SpinEdit>(audio_router_id::surroundMode).value();
    for (int mode = 0; mode < static_cast<int>(surroundModeCount); ++mode) {
        QLabel& label = form().labelAt(surroundModeBounds(mode));
        const bool inForce = mode == modeInForce;
        label.setFont(theme::font(12, inForce ? QFont::Medium : QFont::Normal));
        QPalette palette = label.palette();
        palette.setColor(QPalette::WindowText, QColor::fromRgb(inForce ? theme::text : theme::text2));
        label.setPalette(palette);
    }
}

void CAudioRouter::updateMarks() {
    ParameterPage::updateMarks();
    auto& note = form().control<NoteMark>(audio_router_id::surroundNote);
    const bool on = tuning().currentParameterSet().surroundOff != 1;
    if (on == surroundIsShownOn_) {
        note.setNote({});
        return;
    }
    const auto word = on ? QStringLiteral("on") : QStringLiteral("off");
    note.setNote(QStringLiteral("the set says ") + word,
                 QStringLiteral("The set says that surround is ") + word);
}

void CAudioRouter::toggleSurround() {
    const bool on = tuning().currentParameterSet().surroundOff == 1;
    tuning().edit(FieldId::surroundOff, {}, on ? 0 : 1, true);
    showSurround(on);
    redrawWhole();
    for (const Form::Bound& bound : form().bindings()) {
        if (bound.to.field == FieldId::routerSource) {
            bound.binding->show(shown(bound.to));
        }
    }
}

void CAudioRouter::showSurround(bool on) {
    using namespace audio_router_id;
    form().control<QAbstractButton>(surround).setText(on ? QStringLiteral("Disable Surround")
                                                         : QStringLiteral("Enable Surround"));
    form()
        .control<QLabel>(surroundState)
        .setText(on ? QStringLiteral("Surround is ON") : QStringLiteral("Surround is OFF"));
    form().control<StateLamp>(surroundLamp).setLit(on);
    surroundIsShownOn_ = on;
    CAudioRouter::updateMarks();
    form().setInCircuit("Surround", on);
}

void CAudioRouter::redrawWhole() {
    if (!isVisible()) {
        return;
    }
    auto& button = form().control<QAbstractButton>(audio_router_id::surround);
    const bool focused = button.hasFocus();
    hide();
    show();
    if (focused) {
        button.setFocus(button.underMouse() ? Qt::MouseFocusReason : Qt::TabFocusReason);
    }
}

}  // namespace tessavo
