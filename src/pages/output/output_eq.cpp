#include "pages/output/output_eq.h"

#include <QCoreApplication>

#include "base/saturate.h"
#include "comm/target_commands.h"
#include "controls/bitmap_slider.h"
#include "controls/skin_button.h"
#include "controls/skin_check_box.h"
#include "controls/slider_event.h"
#include "pages/form/channel_titles.h"
#include "pages/output/channel_selection.h"
#include "pages/rows/output_eq_rows.h"

namespace tessavo {

using namespace output_eq_id;

namespace {

constexpr std::size_t lastBand = bandCount - 1;

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
    form().build(outputEqRows(), [this](const ControlRow&, QWidget& place) {
        return selection_ = new ChannelSelection(&place);
    });
    connect(selection_, &ChannelSelection::chosen, this, &COutputEQ::selectChannels);
    const Form& chosen = selection_->form();
    chosen.onClick(selection_id::assign, [this](bool checked) { assignToMultiple(checked); });
    chosen.onClick(selection_id::allFilters, [this] { toggleAllFilters(); });
    chosen.onClick(selection_id::resetChannel, [this] { resetChannel(); });
    tuning.setSelectionMask(selection_->mask());
    COutputEQ::refresh();
}

void COutputEQ::refresh() {
    // Several channels at once may differ: the last of them is shown, like its curve.
    shownChannel_ = lastSelected(tuning().selectionMask()).value_or(shownChannel_);
    ParameterPage::refresh();
    showSources();
}

void COutputEQ::showSources() {
    for (std::uint8_t position = 0; position < channelCount; ++position) {
        const RecordChannel channel = recordChannelAt({position});
        selection_->setSource({position}, tuning().currentParameterSet().routerSource[channel.value],
                              channelNameText(tuning().notes(), channel));
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
    return {lastSelected(tuning().selectionMask()).value_or(shownChannel_).value, bound.element};
}

void COutputEQ::write(BoundField bound, double value, bool final) {
    switch (bound.field) {
        case FieldId::crossoverOrder: {
            // The frequency is written and shown again with the new order, as if its slider had moved. The
            // edit that is sent comes last: it must not leave with an older frequency.
            const int slider = crossovers[bound.element].frequency.slider;
            const int position = form().control<CBitmapSlider>(slider).position();
            tuning().editSelected(FieldId::crossoverFrequency, bound.element, position, false);
            writeCrossover(bound.element);
            QCoreApplication::postEvent(this, new SliderEvent(SliderEvent::moved, slider, position));
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
    const CrossoverIds& ids = crossovers[crossover];
    // A code that the lists do not know is left as it is.
    const auto codeOf = [&](int list, FieldId field) {
        const int code = form().binding<ComboBinding>(list).code();
        return truncateTo<std::uint8_t>(code >= 0 ? code : shown({field, crossover}));
    };
    tuning().setCrossover(crossover, codeOf(ids.kind, FieldId::crossoverKind),
                          codeOf(ids.order, FieldId::crossoverOrder),
                          form().control<SkinCheckBox>(ids.enabled).isChecked() ? 1 : 0);
}

void COutputEQ::updateLook() {
    const auto isChecked = [this](int box) { return form().control<SkinCheckBox>(box).isChecked(); };
    for (std::size_t band = 0; band < bandCount; ++band) {
        form().setInCircuit(bandTitle(band), isChecked(bands[band].enabled));
    }
    for (std::size_t crossover = 0; crossover < crossoverCount; ++crossover) {
        form().setInCircuit(crossoverTitle(crossover), isChecked(crossovers[crossover].enabled));
    }
    form().setInCircuit(limiterTitle, !isChecked(limiterDisabled));
    // Several channels share the controls, which go on showing what they showed before.
    markMixed(markedHolders());
    markAllFilters();
}

std::vector<ParameterPage::Holder> COutputEQ::markedHolders() const {
    std::vector<Holder> ticked;
    for (std::uint8_t position = 0; selection_->multiChannelMode() && position < channelCount; ++position) {
        if ((tuning().selectionMask() & selectionBit({position})) != 0) {
            ticked.push_back({textOf(channelName({position})), recordChannelAt({position}).value});
        }
    }
    return ticked;
}

// The button counts its own presses; the filters also change by other ways.
void COutputEQ::markAllFilters() {
    unsigned on = 0;
    for (std::uint8_t position = 0; position < channelCount; ++position) {
        const auto& channel = tuning().currentParameterSet().channels[recordChannelAt({position}).value];
        for (std::size_t band = 0; band < bandCount; ++band) {
            const bool chosen = (tuning().selectionMask() & selectionBit({position})) != 0;
            on |= chosen && channel.bands[band].off == 0 ? 1U << band : 0U;
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
    selection_->form().control<CxSkinButton>(selection_id::allFilters).setMark(note);
}

void COutputEQ::selectChannels() {
    tuning().setSelectionMask(selection_->mask());
    if (!selection_->multiChannelMode()) {
        refresh();
    }
    // Band 8's type always follows its list, whichever channels are chosen.
    if (const int type = form().binding<ComboBinding>(bands[lastBand].type).code(); type >= 0) {
        tuning().setBandType(lastBand, truncateTo<std::uint8_t>(type));
    } else {
        tuning().showOutputCurve(tuning().selectionMask() != 0 ? shownChannel_
                                                               : tuning().lastEditedBand().channel);
    }
    updateLook();
    updateMarks();
}

void COutputEQ::showChannel(RecordChannel channel) {
    for (std::uint8_t position = 0; position < channelCount; ++position) {
        if (recordChannelAt({position}) != channel || (selection_->mask() & selectionBit({position})) != 0) {
            continue;
        }
        selection_->chooseOnly({position});
        tuning().setSelectionMask(selection_->mask());
        refresh();
        tuning().showOutputCurve(channel);
    }
}

bool COutputEQ::mayLoseSettings() {
    return boxes_.show("Are you sure?\r\nThe current channel settings will be lost!", BoxIcon::error,
                       BoxButtons::okCancel) == BoxAnswer::ok;
}

void COutputEQ::assignToMultiple(bool checked) {
    if (checked && !mayLoseSettings()) {
        selection_->form().control<SkinCheckBox>(selection_id::assign).setChecked(false);
        return;
    }
    selection_->setMultiChannelMode(checked);
    selectChannels();
}

void COutputEQ::toggleAllFilters() {
    allFiltersOff_ = !allFiltersOff_;
    for (std::size_t band = 0; band < bandCount; ++band) {
        form().control<SkinCheckBox>(bands[band].enabled).setChecked(!allFiltersOff_);
        tuning().setBandOff(band, allFiltersOff_ ? 1 : 0);
    }
    selection_->form()
        .control<CxSkinButton>(selection_id::allFilters)
        .setText(allFiltersOff_ ? QStringLiteral("Enable All Filters")
                                : QStringLiteral("Disable All Filters"));
    updateLook();
    updateMarks();
}

void COutputEQ::resetChannel() {
    if (tuning().liveMode()) {
        boxes_.showPlain(turnOffLiveModeText);
        return;
    }
    if (!mayLoseSettings()) {
        return;
    }
    for (const std::vector<FieldId>& together : resetFields()) {
        for (std::size_t element = 0; element < fieldOf(together.front()).inner.count; ++element) {
            std::vector<FieldValue> values;
            values.reserve(together.size());
            for (const FieldId field : together) {
                values.push_back({field, storedDefault(fieldOf(field), {0, element})});
            }
            tuning().editSelected(values, element, true);
        }
    }
    refresh();
}

}  // namespace tessavo
