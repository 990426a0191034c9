#include "pages/output/output_eq.h"

#include <QCoreApplication>
#include <QLabel>
#include <bit>

#include "base/saturate.h"
#include "comm/target_commands.h"
#include "controls/bitmap_slider.h"
#include "controls/number_edit.h"
#include "controls/skin_button.h"
#include "controls/skin_check_box.h"
#include "controls/skin_combo_box.h"
#include "controls/skin_group_box.h"
#include "controls/slider_event.h"
#include "pages/output/channel_selection.h"
#include "pages/output/output_eq_controls.h"

namespace tessavo {

using namespace output_eq_controls;

namespace {

const QString& disableAllText() {
    static const auto text = QStringLiteral("Disable All Filters");
    return text;
}

// What a reset writes: the fields of an entry in one edit for each band or crossover, as their controls do.
const std::vector<std::vector<FieldId>>& resetFields() {
    using enum FieldId;
    static const std::vector<std::vector<FieldId>> fields{{bandOff},
                                                          {bandType},
                                                          {bandFrequency},
                                                          {bandGain},
                                                          {bandQ},
                                                          {crossoverFrequency},
                                                          {crossoverEnabled, crossoverKind, crossoverOrder},
                                                          {invertPhase},
                                                          {limiterGain},
                                                          {limiterActivateLevel},
                                                          {limiterDeactivateLevel},
                                                          {limiterAttack},
                                                          {limiterRelease},
                                                          {limiterEnabled}};
    return fields;
}

}  // namespace

COutputEQ::COutputEQ(TuningState& tuning, IMessageBox& boxes, QWidget* parent)
    : ParameterPage(tuning, parent), boxes_(boxes) {
    for (std::size_t band = 0; band < bandCount; ++band) {
        makeBand(band);
    }
    makeSelection();
    for (std::size_t crossover = 0; crossover < crossoverCount; ++crossover) {
        makeCrossover(crossover);
    }
    makeVolume();
    makeLimiter();
    makeHiddenControls();
    tuning.setSelectionMask(selection_->mask());
    COutputEQ::refresh();
}

void COutputEQ::makeBand(std::size_t band) {
    const int left = 100 * static_cast<int>(band);
    const BandIds& ids = bandIds[band];
    const QString title = QStringLiteral("Filter %1").arg(band + 1);
    Band& made = bands_[band];
    made.group = addGroup(title, {left, 8, 94, 378});
    made.group->setTitlePlace({8, 7});
    made.enabled = &addCheck({FieldId::bandOff, band}, ids.enabled, {left + 4, 37, 86, 22},
                             QStringLiteral("Enabled"), true, title + QStringLiteral(" enabled"), made.group);
    made.type = &addCombo({FieldId::bandType, band}, ids.type, {left + 7, 64, 80, 24},
                          {QStringLiteral("Low Shelf"), QStringLiteral("Peak"), QStringLiteral("High Shelf")},
                          {1, 2, 0}, title + QStringLiteral(" type"), made.group);
    for (int i = 0; i < 3; ++i) {
        const auto column = static_cast<std::size_t>(i);
        const BandColumn& what = bandColumns[column];
        const int center = left + 18 + 29 * i;
        addLabel(QLatin1String(what.head), {center - 14, 97, 28, 14}, made.group, Qt::AlignCenter);
        const int y = 302 + 26 * i;
        made.sliders[column] = &addSlider({{what.field, band},
                                           ids.sliders[column].slider,
                                           ids.sliders[column].edit,
                                           Qt::Vertical,
                                           {center - 14, 114, 28, 182},
                                           {left + 7, y, 58, 24},
                                           what.color},
                                          title + QLatin1Char(' ') + QLatin1String(what.name), made.group);
        addLabel(QLatin1String(what.unit), {left + 69, y, 22, 24}, made.group);
    }
    setReadingOrder({&made.sliders[0]->slider(), &made.sliders[1]->slider(), &made.sliders[2]->slider(),
                     &made.sliders[0]->edit(), &made.sliders[1]->edit(), &made.sliders[2]->edit()});
}

void COutputEQ::makeSelection() {
    selection_ = new ChannelSelection(this);
    selection_->setGeometry(800, 8, 184, 378);
    connect(selection_, &ChannelSelection::chosen, this, &COutputEQ::selectChannels);
    connect(selection_, &ChannelSelection::assignClicked, this, &COutputEQ::assignToMultiple);
    allFilters_ = addButton(disableAllText(), allFiltersId, {812, 308, 160, 28}, selection_);
    connect(allFilters_, &QAbstractButton::clicked, this, &COutputEQ::toggleAllFilters);
    CxSkinButton* reset =
        addButton(QStringLiteral("Reset Channel"), resetChannelId, {812, 346, 160, 28}, selection_);
    connect(reset, &QAbstractButton::clicked, this, &COutputEQ::resetChannel);
}

void COutputEQ::makeCrossover(std::size_t crossover) {
    const int top = 396 + 66 * static_cast<int>(crossover);
    const CrossoverIds& ids = crossoverIds[crossover];
    const QString title = QStringLiteral("Crossover Filter %1").arg(crossover + 1);
    Crossover& made = crossovers_[crossover];
    made.group = addGroup(title, {0, top, 594, 60});
    made.enabled =
        &addCheck({FieldId::crossoverEnabled, crossover}, ids.enabled, {9, top + 29, 89, 22},
                  QStringLiteral("Enabled"), false, title + QStringLiteral(" enabled"), made.group);
    made.kind = &addCombo({FieldId::crossoverKind, crossover}, ids.kind, {104, top + 28, 58, 24},
                          {QStringLiteral("HP"), QStringLiteral("LP")}, {0, 1},
                          title + QStringLiteral(" kind"), made.group);
    made.order = &addCombo({FieldId::crossoverOrder, crossover}, ids.order, {168, top + 28, 48, 24},
                           {QStringLiteral("2"), QStringLiteral("4")}, {2, 4},
                           title + QStringLiteral(" order"), made.group);
    made.frequency = &addSlider({{FieldId::crossoverFrequency, crossover},
                                 ids.frequency.slider,
                                 ids.frequency.edit,
                                 Qt::Horizontal,
                                 {230, top + 26, 266, 28},
                                 {506, top + 28, 58, 24},
                                 theme::frequency},
                                title + QStringLiteral(" frequency"), made.group);
    addLabel(QStringLiteral("Hz"), {568, top + 28, 22, 24}, made.group);
}

void COutputEQ::makeVolume() {
    SkinGroupBox* group = addGroup(QStringLiteral("Volume"), {0, 528, 594, 60});
    addCheck({FieldId::invertPhase}, invertPhaseId, {9, 557, 113, 22}, QStringLiteral("Invert Phase"), false,
             QStringLiteral("Invert Phase"), group);
    addSlider({{FieldId::volume},
               volumeIds.slider,
               volumeIds.edit,
               Qt::Horizontal,
               {230, 554, 266, 28},
               {506, 556, 58, 24},
               theme::level},
              QStringLiteral("Volume"), group);
    addLabel(QStringLiteral("dB"), {568, 556, 22, 24}, group);
}

void COutputEQ::makeLimiter() {
    limiter_ = addGroup(QStringLiteral("Limiter"), {600, 396, 384, 192});
    for (int i = 0; i < static_cast<int>(limiterColumns.size()); ++i) {
        const LimiterColumn& column = limiterColumns[static_cast<std::size_t>(i)];
        const int left = 610 + 82 * i;
        addLabel(QLatin1String(column.head), {left, 422, 82, 28}, limiter_,
                 Qt::AlignHCenter | Qt::AlignBottom);
        limiterControls_.push_back(&addSlider({{column.field},
                                               column.ids.slider,
                                               column.ids.edit,
                                               Qt::Vertical,
                                               {left + 27, 452, 28, 98},
                                               {left + 2, 556, 50, 24},
                                               theme::level},
                                              QLatin1String(column.name), limiter_));
        addLabel(QStringLiteral("[dB]"), {left + 55, 556, 27, 24}, limiter_);
    }
    limiterDisabled_ =
        &addCheck({FieldId::limiterEnabled}, limiterDisabledId, {875, 423, 99, 22},
                  QStringLiteral("Disabled"), true, QStringLiteral("Limiter disabled"), limiter_);
    addLine({864, 426, 1, 152}, limiter_);
    for (const LimiterTime& time : limiterTimes) {
        addLabel(QLatin1String(time.caption), {878, time.y - 18, 90, 14}, limiter_);
        limiterControls_.push_back(&addNumber({time.field}, time.edit, {878, time.y, 58, 24}, theme::quality,
                                              QLatin1String(time.name), limiter_));
        addLabel(QStringLiteral("ms"), {940, time.y, 26, 24}, limiter_);
    }
}

// Controls without a place: there for whoever looks them up by number, never to be seen or reached.
void COutputEQ::makeHiddenControls() {
    for (const HiddenBandIds& band : hiddenBands) {
        SkinGroupBox* group = addGroup(QLatin1String(band.title), {0, 0, 94, 378});
        group->hide();
        group->setEnabled(false);
        for (const SliderIds& ids : band.sliders) {
            new CBitmapSlider(Qt::Vertical, ids.slider, group);
            new NumberEdit(ids.edit, group);
        }
        new SkinCheckBox(QStringLiteral("Disabled"), band.disabled, group);
    }
    SkinGroupBox* delay = addGroup(QStringLiteral("Delay"), {0, 0, 594, 60});
    delay->hide();
    delay->setEnabled(false);
    addDelay({{FieldId::delay},
              delayIds.slider,
              delayIds.edit,
              Qt::Horizontal,
              {230, 26, 266, 28},
              {506, 28, 40, 24},
              theme::quality},
             delayDistanceId, {550, 28, 40, 24}, QStringLiteral("Delay"), delay);
    CxSkinButton* calibrate = addButton(QStringLiteral("Calibrate"), calibrateId, {0, 0, 160, 28}, this);
    calibrate->hide();
    calibrate->setEnabled(false);
}

std::optional<RecordChannel> COutputEQ::lastChosen() const {
    const int last = static_cast<int>(channelCount) - 1 - std::countr_zero(tuning().selectionMask());
    if (last < 0) {
        return {};
    }
    return recordChannelAt({static_cast<std::uint8_t>(last)});
}

void COutputEQ::refresh() {
    // Several channels at once may differ: the last of them is shown, like its curve.
    shownChannel_ = lastChosen().value_or(shownChannel_);
    ParameterPage::refresh();
    showSources();
}

void COutputEQ::showSources() {
    for (std::uint8_t position = 0; position < channelCount; ++position) {
        selection_->setSource({position},
                              tuning().currentParameterSet().routerSource[recordChannelAt({position}).value]);
    }
}

void COutputEQ::showEvent(QShowEvent* event) {
    ParameterPage::showEvent(event);
    // Another page may have routed the channels anew.
    showSources();
}

FieldIndex COutputEQ::elementOf(BoundField bound) const {
    return {shownChannel_.value, bound.element};
}

FieldIndex COutputEQ::markedElement(BoundField bound) const {
    return {lastChosen().value_or(shownChannel_).value, bound.element};
}

void COutputEQ::write(BoundField bound, double value, bool final) {
    switch (bound.field) {
        case FieldId::crossoverOrder: {
            // The frequency is written and shown again with the new order, as if its slider had moved. The
            // edit that is sent comes last: it must not leave with an older frequency.
            const CBitmapSlider& slider = crossovers_[bound.element].frequency->slider();
            tuning().editSelected(FieldId::crossoverFrequency, bound.element, slider.position(), false);
            writeCrossover(bound.element);
            QCoreApplication::postEvent(
                this, new SliderEvent(SliderEvent::moved, crossoverIds[bound.element].frequency.slider,
                                      slider.position()));
            break;
        }
        case FieldId::crossoverEnabled:
        case FieldId::crossoverKind:
            writeCrossover(bound.element);
            break;
        default:
            tuning().editSelected(bound.field, bound.element, storedFromShown(fieldOf(bound.field), value),
                                  final);
    }
}

void COutputEQ::writeCrossover(std::size_t crossover) {
    const Crossover& controls = crossovers_[crossover];
    const bool enabled = controls.enabled->box().isChecked();
    // A code that the lists do not know is left as it is.
    const auto codeOf = [&](const ComboBinding& list, FieldId field) {
        return truncateTo<std::uint8_t>(list.code() >= 0 ? list.code() : shown({field, crossover}));
    };
    tuning().setCrossover(crossover, codeOf(*controls.kind, FieldId::crossoverKind),
                          codeOf(*controls.order, FieldId::crossoverOrder), enabled ? 1 : 0);
}

void COutputEQ::updateLook() {
    for (const Band& band : bands_) {
        const bool on = band.enabled->box().isChecked();
        band.group->setInCircuit(on);
        for (SliderBinding* slider : band.sliders) {
            slider->setBypassed(!on);
        }
    }
    for (const Crossover& crossover : crossovers_) {
        const bool on = crossover.enabled->box().isChecked();
        crossover.group->setInCircuit(on);
        crossover.frequency->setBypassed(!on);
    }
    const bool limiting = !limiterDisabled_->box().isChecked();
    limiter_->setInCircuit(limiting);
    for (Binding* control : limiterControls_) {
        control->setBypassed(!limiting);
    }
    markTickedChannels();
    markAllFilters();
}

std::vector<ParameterPage::Holder> COutputEQ::markedHolders() const {
    std::vector<Holder> ticked;
    for (std::uint8_t position = 0; selection_->multiChannelMode() && position < channelCount; ++position) {
        if ((tuning().selectionMask() & selectionBit({position})) != 0) {
            ticked.push_back({ChannelSelection::nameOf({position}), recordChannelAt({position}).value});
        }
    }
    return ticked;
}

// The button counts its own presses; the filters also change by other ways.
void COutputEQ::markAllFilters() {
    unsigned on = 0;
    for (std::uint8_t position = 0; position < channelCount; ++position) {
        const auto& bands = tuning().currentParameterSet().channels[recordChannelAt({position}).value].bands;
        for (std::size_t band = 0; band < bandCount; ++band) {
            const bool chosen = (tuning().selectionMask() & selectionBit({position})) != 0;
            on |= chosen && bands[band].off == 0 ? 1U << band : 0U;
        }
    }
    QStringList names;
    for (std::size_t band = 0; band < bandCount; ++band) {
        if ((on >> band & 1U) != 0) {
            names << QString::number(band + 1);
        }
    }
    QString note;
    if (allFiltersOff_ && on != 0) {
        note = QStringLiteral("Not all filters are off: on are %1").arg(names.join(QStringLiteral(", ")));
    } else if (!allFiltersOff_ && on == 0 && tuning().selectionMask() != 0) {
        note = QStringLiteral("All filters are off already");
    }
    allFilters_->setMark(note);
}

// Several channels share the controls, which go on showing what they showed before.
void COutputEQ::markTickedChannels() {
    markMixed(markedHolders());
}

void COutputEQ::selectChannels() {
    tuning().setSelectionMask(selection_->mask());
    if (!selection_->multiChannelMode()) {
        refresh();
    }
    // Band 8's type always follows its list, whichever channels are chosen.
    if (const int type = bands_[lastBand].type->code(); type >= 0) {
        tuning().setBandType(lastBand, truncateTo<std::uint8_t>(type));
    } else {
        tuning().showOutputCurve(tuning().selectionMask() != 0 ? shownChannel_
                                                               : tuning().lastEditedBand().channel);
    }
    updateLook();
    updateMarks();
}

void COutputEQ::assignToMultiple(bool checked) {
    if (checked && boxes_.show("Are you sure?\r\nThe current channel settings will be lost!", BoxIcon::error,
                               BoxButtons::okCancel) != BoxAnswer::ok) {
        selection_->assignBox().setChecked(false);
        return;
    }
    selection_->setMultiChannelMode(checked);
    selectChannels();
}

void COutputEQ::toggleAllFilters() {
    allFiltersOff_ = !allFiltersOff_;
    for (std::size_t band = 0; band < bandCount; ++band) {
        bands_[band].enabled->box().setChecked(!allFiltersOff_);
        tuning().setBandOff(band, allFiltersOff_ ? 1 : 0);
    }
    allFilters_->setText(allFiltersOff_ ? QStringLiteral("Enable All Filters") : disableAllText());
    updateLook();
    updateMarks();
}

void COutputEQ::resetChannel() {
    if (tuning().liveMode()) {
        boxes_.showPlain(turnOffLiveModeText);
        return;
    }
    if (boxes_.show("Are you sure?\r\nThe current channel settings will be lost!", BoxIcon::error,
                    BoxButtons::okCancel) != BoxAnswer::ok) {
        return;
    }
    for (const std::vector<FieldId>& together : resetFields()) {
        for (std::size_t part = 0; part < fieldOf(together.front()).inner.count; ++part) {
            std::vector<FieldValue> values;
            for (const FieldId field : together) {
                values.push_back({field, storedDefault(fieldOf(field), {0, part})});
            }
            tuning().editSelected(values, part, true);
        }
    }
    refresh();
}

}  // namespace tessavo
