#include "pages/input/audio_router.h"

#include <QLabel>
#include <algorithm>

#include "base/saturate.h"
#include "controls/bitmap_slider.h"
#include "controls/control_id.h"
#include "controls/note_mark.h"
#include "controls/number_edit.h"
#include "controls/skin_button.h"
#include "controls/skin_check_box.h"
#include "controls/skin_combo_box.h"
#include "controls/skin_group_box.h"
#include "controls/spin_edit.h"
#include "controls/state_lamp.h"
#include "pages/input/source_names.h"

namespace tessavo {

namespace {

struct DecoderGain {
    const char* head;
    const char* name;
};

// In the order of the record.
constexpr std::array<DecoderGain, 4> decoderGains{{
    {"Center\ngain [dB]", "Center gain"},
    {"Panorama\ngain [dB]", "Panorama gain"},
    {"Hall effect\ngain [dB]", "Hall effect gain"},
    {"Rear to front\nmix gain [dB]", "Rear to front mix gain"},
}};

constexpr std::array<const char*, surroundModeCount> modeNames{"0 - Music Club", "1 - Concert Hall",
                                                               "2 - Stadium"};

/// Words that take the same value as delay size 1.
constexpr std::array<BoundField, 5> delaySize1Words{{
    {FieldId::delaySize1},
    {FieldId::delaySize1Copies, 0},
    {FieldId::delaySize1Copies, 1},
    {FieldId::delaySize1Copies, 2},
    {FieldId::delaySize1Last},
}};

constexpr Qt::Alignment leftAligned = Qt::AlignLeft | Qt::AlignVCenter;

}  // namespace

CAudioRouter::CAudioRouter(TuningState& tuning, QWidget* parent) : ParameterPage(tuning, parent) {
    makeOutput();
    makeTurnOffDelay();
    makeSurround();
    CAudioRouter::refresh();
    showSurround(false);
}

void CAudioRouter::makeOutput() {
    SkinGroupBox* group = addGroup(QStringLiteral("Output"), {0, 8, 388, 440});
    QStringList names;
    std::vector<int> codes;
    for (const FieldCode& source : fieldOf(FieldId::routerSource).codes) {
        names << sourceName(source.code);
        codes.push_back(source.code);
    }
    for (int i = 0; i < static_cast<int>(channelCount); ++i) {
        const QString channel = QStringLiteral("Channel %1").arg(i + 1);
        const int top = 46 + 42 * i;
        const auto position = static_cast<std::size_t>(i);
        QLabel* label = addLabel(channel, {16, top, 90, 28}, group, leftAligned, theme::text, 12);
        sources_[position] =
            &addCombo({FieldId::routerSource, position}, audio_router_id::firstSource + i,
                      {120, top, 252, 28}, names, codes, channel + QStringLiteral(" source"), group);
        label->setBuddy(&sources_[position]->list());
        sources_[position]->list().setItemDot(0, QColor::fromRgb(theme::mark));
        const bool last = position + 1 == channelCount;
        addLine({16, top + 35, 356, 1}, group, last ? theme::line : theme::rowDivider);
    }
    const auto deactivate = QStringLiteral("Deactivate Channel 7 and 8 (for Line-Out use)");
    addCheck({FieldId::lineOutUse}, audio_router_id::lineOutUse, {13, 401, 363, 22}, deactivate, false,
             deactivate, group);
}

void CAudioRouter::makeTurnOffDelay() {
    SkinGroupBox* group = addGroup(QStringLiteral("Long Turn-Off Delay settings"), {0, 458, 388, 130});
    addCombo({FieldId::turnOffDelayOn}, audio_router_id::turnOffDelayOn, {16, 496, 356, 28},
             {QStringLiteral("Off"), QStringLiteral("On")}, {0, 1}, QStringLiteral("Long turn-off delay"),
             group);
    addSlider({{FieldId::turnOffDelay},
               audio_router_id::turnOffDelaySlider,
               audio_router_id::turnOffDelayEdit,
               Qt::Horizontal,
               {12, 538, 262, 30},
               {284, 540, 58, 26},
               theme::quality},
              QStringLiteral("Turn-off delay"), group)
        .setTyping(Typing::followed);
    addLabel(QStringLiteral("[ms]"), {346, 540, 28, 26}, group);
}

void CAudioRouter::makeSurround() {
    surround_ = addGroup(QStringLiteral("Surround"), {398, 8, 586, 580});
    surroundButton_ = addButton(QString(), audio_router_id::surround, {414, 44, 152, 32}, surround_);
    connect(surroundButton_, &QAbstractButton::clicked, this, &CAudioRouter::toggleSurround);
    surroundLamp_ = new StateLamp(12, audio_router_id::surroundLamp, surround_);
    surroundLamp_->move(placeIn(surround_, {583, 51, 18, 18}).topLeft());
    surroundLamp_->setAccessibleName(QStringLiteral("Surround"));
    surroundState_ = addLabel({}, {610, 44, 220, 32}, surround_, leftAligned, theme::text, 15);
    surroundState_->setFont(theme::font(15, QFont::Medium));
    setControlId(*surroundState_, audio_router_id::surroundState);
    surroundNote_ = new NoteMark(audio_router_id::surroundNote, surround_);
    surroundNote_->setGeometry(placeIn(surround_, {836, 51, 132, NoteMark::markHeight}));
    addLine({414, 92, 554, 1}, surround_);
    makeDelaySizes(surround_);
    makeDecoderGains();
    const auto rear = QStringLiteral("Use rear channel for surround calculation");
    addCheck({FieldId::rearForSurround}, audio_router_id::rearForSurround, {411, 549, 403, 22}, rear, false,
             rear, surround_);
}

void CAudioRouter::makeDelaySizes(SkinGroupBox* group) {
    addLabel(QStringLiteral("Surround mode"), {414, 106, 112, 16}, group, leftAligned, theme::text, 12);
    mode_ = &addSpin({FieldId::surroundMode}, audio_router_id::surroundMode, {414, 128, 84, 26},
                     QStringLiteral("Surround mode"), group);
    for (std::size_t mode = 0; mode < modeNames.size(); ++mode) {
        modeNames_[mode] =
            addLabel(QLatin1String(modeNames[mode]), {534, 106 + 21 * static_cast<int>(mode), 130, 16}, group,
                     leftAligned, theme::text2, 12);
    }
    addLine({770, 106, 1, 128}, group);
    addLabel(QStringLiteral("Delay size 1 [ms]"), {794, 106, 160, 16}, group, leftAligned, theme::text, 12);
    delay1_ = &addNumber({FieldId::delaySize1}, audio_router_id::delaySize1, {794, 128, 96, 26},
                         theme::quality, QStringLiteral("Delay size 1"), group);
    addLabel(QStringLiteral("Room size"), {414, 186, 112, 16}, group, leftAligned, theme::text, 12);
    room_ = &addSpin({FieldId::roomSize}, audio_router_id::roomSize, {414, 208, 84, 26},
                     QStringLiteral("Room size"), group);
    addLabel(QStringLiteral("0 - Small Room....4 - Large Room"), {534, 208, 220, 26}, group, leftAligned,
             theme::text2, 12);
    addLabel(QStringLiteral("Delay size 2 [ms]"), {794, 186, 160, 16}, group, leftAligned, theme::text, 12);
    NumberBinding& delay2 = addNumber({FieldId::delaySize2}, audio_router_id::delaySize2, {794, 208, 96, 26},
                                      theme::quality, QStringLiteral("Delay size 2"), group);
    for (NumberBinding* delay : {delay1_, &delay2}) {
        delay->setTyping(Typing::followed);
        surroundControls_.push_back(delay);
    }
}

void CAudioRouter::makeDecoderGains() {
    SkinGroupBox* group =
        addGroup(QStringLiteral("Surround decoder gain setting"), {414, 250, 554, 284}, surround_);
    group->setTitlePlace({12, 7});
    std::vector<QWidget*> order;
    std::vector<QWidget*> edits;
    for (int i = 0; i < static_cast<int>(decoderGains.size()); ++i) {
        const auto gain = static_cast<std::size_t>(i);
        const int left = 423 + 134 * i;
        addLabel(QLatin1String(decoderGains[gain].head), {left, 284, 134, 30}, group,
                 Qt::AlignHCenter | Qt::AlignBottom, theme::text2, 12);
        SliderBinding& made = addSlider({{FieldId::decoderGain, gain},
                                         audio_router_id::firstDecoderGainSlider + i,
                                         audio_router_id::firstDecoderGainEdit + i,
                                         Qt::Vertical,
                                         {left + 52, 322, 30, 164},
                                         {left + 39, 494, 56, 26},
                                         theme::level},
                                        QLatin1String(decoderGains[gain].name), group);
        made.setTyping(Typing::followed);
        made.slider().setTicks({-300, -200, -100, 0});
        made.edit().setColor(0);
        made.edit().setAlignment(Qt::AlignCenter);
        surroundControls_.push_back(&made);
        order.push_back(&made.slider());
        edits.push_back(&made.edit());
    }
    order.insert(order.end(), edits.begin(), edits.end());
    setReadingOrder(order);
}

FieldIndex CAudioRouter::elementOf(BoundField bound) const {
    if (bound.field == FieldId::routerSource) {
        return {recordChannelAt({static_cast<std::uint8_t>(bound.part)}).value, 0};
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
            delay1_->show(delaySize1());
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
    for (std::size_t mode = 0; mode < modeNames_.size(); ++mode) {
        const bool inForce = static_cast<int>(mode) == mode_->spin().value();
        modeNames_[mode]->setFont(theme::font(12, inForce ? QFont::Medium : QFont::Normal));
        QPalette palette = modeNames_[mode]->palette();
        palette.setColor(QPalette::WindowText, QColor::fromRgb(inForce ? theme::text : theme::text2));
        modeNames_[mode]->setPalette(palette);
    }
}

void CAudioRouter::updateMarks() {
    ParameterPage::updateMarks();
    const bool on = tuning().currentParameterSet().surroundOff != 1;
    if (on == surroundIsShownOn_) {
        surroundNote_->setNote({});
        return;
    }
    const auto word = on ? QStringLiteral("on") : QStringLiteral("off");
    surroundNote_->setNote(QStringLiteral("the set says ") + word,
                           QStringLiteral("The set says that surround is ") + word);
}

void CAudioRouter::toggleSurround() {
    const bool on = tuning().currentParameterSet().surroundOff == 1;
    tuning().edit(FieldId::surroundOff, {}, on ? 0 : 1, true);
    showSurround(on);
    redrawWhole();
    for (std::size_t position = 0; position < channelCount; ++position) {
        sources_[position]->show(shown({FieldId::routerSource, position}));
    }
}

void CAudioRouter::showSurround(bool on) {
    surroundButton_->setText(on ? QStringLiteral("Disable Surround") : QStringLiteral("Enable Surround"));
    surroundState_->setText(on ? QStringLiteral("Surround is ON") : QStringLiteral("Surround is OFF"));
    surroundLamp_->setLit(on);
    surround_->setInCircuit(on);
    surroundIsShownOn_ = on;
    updateMarks();
    for (Binding* control : surroundControls_) {
        control->setBypassed(!on);
    }
}

void CAudioRouter::redrawWhole() {
    if (!isVisible()) {
        return;
    }
    const bool focused = surroundButton_->hasFocus();
    hide();
    show();
    if (focused) {
        surroundButton_->setFocus(surroundButton_->underMouse() ? Qt::MouseFocusReason : Qt::TabFocusReason);
    }
}

}  // namespace tessavo
