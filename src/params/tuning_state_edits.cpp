#include <algorithm>
#include <array>

#include "params/image_conversion.h"
#include "params/set_text.h"
#include "params/tuning_state.h"

namespace tessavo {

namespace {

// The input section that a field of a graphic or tone band belongs to.
std::size_t inputSectionOf(FieldId id, FieldIndex index) {
    return id >= FieldId::inputBandType ? index.outer : inputBandCount + index.outer;
}

static_assert(FieldId::toneOff < FieldId::inputBandType);

}  // namespace

template <typename Act>
void TuningState::forSelectedChannels(Act act) const {
    for (std::uint8_t position = 0; position < channelCount; ++position) {
        if ((selectionMask_ & selectionBit({position})) != 0) {
            act(recordChannelAt({position}));
        }
    }
}

void TuningState::finish(bool final) {
    discardOutdatedImage(currentSet_);
    if (final) {
        raiseUpdatePending();
    }
    notifyHistory(TuningEvent::changed);
    notifyChange();
}

bool TuningState::edit(std::span<const FieldValue> values, FieldIndex index, bool final) {
    if (!mayWrite(values, index)) {
        return false;
    }
    const RunningChange running(*this);
    write(values, index);
    showCurveOf(values.front().field, {static_cast<std::uint8_t>(index.outer)});
    finish(final);
    return true;
}

// Curves follow the last channel that was written, once for all of them; where none was, the channel of the
// band that was edited last.
bool TuningState::editSelected(std::span<const FieldValue> values, std::size_t inner, bool final) {
    if (!mayWrite(values, {0, inner}) || fieldOf(values.front().field).outer.count != channelCount) {
        return false;
    }
    const RunningChange running(*this);
    RecordChannel last = lastEditedBand_.channel;
    forSelectedChannels([&](RecordChannel channel) {
        write(values, {channel.value, inner});
        last = channel;
    });
    showCurveOf(values.front().field, last);
    finish(final);
    return true;
}

bool TuningState::mayWrite(std::span<const FieldValue> values, FieldIndex index) {
    const auto writable = [index](const FieldValue& value) {
        return value.field < FieldId::count && fieldOf(value.field).editable &&
               contains(fieldOf(value.field), index);
    };
    return !values.empty() && std::ranges::all_of(values, writable);
}

// Value and words go into the image at the same time, so that no copy of the image holds one without the
// other. The exception is a generator that shows its warning: then the value goes first.
void TuningState::write(std::span<const FieldValue> values, FieldIndex index) {
    for (const FieldValue& value : values) {
        setStoredValue(editedSet(), fieldOf(value.field), index, value.stored);
    }
    runningEdit_ = {values, index};
    compute(values.front().field, index);
    runningEdit_.reset();
    const SemaphoreHold hold(*imageGuard_);
    writeToImage(values, index);
    takeWords(fieldOf(values.front().field).shapes, index);
}

void TuningState::takeWords(Shapes shapes, FieldIndex index) {
    if (shapes == Shapes::band) {
        image_.channels[index.outer].bandWords = bandWords_[index.outer];
    } else if (shapes == Shapes::crossovers) {
        image_.channels[index.outer].crossoverWords = crossoverWords_[index.outer];
    }
}

void TuningState::compute(FieldId id, FieldIndex index) {
    computeShaped(currentParameterSet(), id, index);
    if (fieldOf(id).shapes == Shapes::band) {
        lastEditedBand_ = {{static_cast<std::uint8_t>(index.outer)}, index.inner};
    }
}

void TuningState::computeShaped(const ParameterSet& set, FieldId id, FieldIndex index) {
    const RecordChannel channel{static_cast<std::uint8_t>(index.outer)};
    switch (fieldOf(id).shapes) {
        case Shapes::nothing:
            break;
        case Shapes::band:
            computeBand(set, channel, index.inner);
            break;
        case Shapes::crossovers:
            computeCrossovers(set, channel);
            break;
        case Shapes::inputSection:
            computeInputBand(set, inputSectionOf(id, index));
            break;
    }
}

void TuningState::showCurveOf(FieldId id, RecordChannel channel) {
    switch (fieldOf(id).shapes) {
        case Shapes::nothing:
            break;
        case Shapes::band:
        case Shapes::crossovers:
            showOutputCurve(channel);
            break;
        case Shapes::inputSection:
            showInputCurve();
            break;
    }
}

void TuningState::writeToImage(std::span<const FieldValue> values, FieldIndex index) {
    for (const FieldValue& value : values) {
        writeImageField(image_, currentParameterSet(), fieldOf(value.field), index);
    }
}

void TuningState::setDelay(float delayMs, bool final) {
    editSelected(FieldId::delay, 0, delayMs, final);
}

void TuningState::setVolume(float volumeDb, bool final) {
    editSelected(FieldId::volume, 0, volumeDb, final);
}

void TuningState::setInvertPhase(bool apply, std::uint8_t value) {
    if (apply) {
        editSelected(FieldId::invertPhase, 0, value, true);
        return;
    }
    forSelectedChannels([&](RecordChannel channel) {
        const SemaphoreHold hold(*imageGuard_);
        image_.channels[channel.value].invertPhase = value;
    });
    finish(true);
}

void TuningState::setBandFrequency(std::size_t band, std::uint16_t frequencyHz, bool final) {
    editSelected(FieldId::bandFrequency, band, frequencyHz, final);
}

void TuningState::setBandType(std::size_t band, std::uint8_t type) {
    editSelected(FieldId::bandType, band, type, true);
}

void TuningState::setBandGainOrQ(std::size_t band, BandValue which, float value, bool final) {
    editSelected(which == BandValue::gain ? FieldId::bandGain : FieldId::bandQ, band, value, final);
}

void TuningState::setBandOff(std::size_t band, std::uint8_t off) {
    editSelected(FieldId::bandOff, band, off, true);
}

void TuningState::setCrossover(std::size_t crossover, std::uint8_t kind, std::uint8_t order,
                               std::uint8_t enabled) {
    editSelected(std::array<FieldValue, 3>{{{FieldId::crossoverEnabled, static_cast<double>(enabled)},
                                            {FieldId::crossoverKind, static_cast<double>(kind)},
                                            {FieldId::crossoverOrder, static_cast<double>(order)}}},
                 crossover, true);
}

void TuningState::setCrossoverFrequency(std::size_t crossover, std::uint16_t frequencyHz, bool final) {
    editSelected(FieldId::crossoverFrequency, crossover, frequencyHz, final);
}

void TuningState::setLimiter(LimiterField which, std::int32_t value, bool final) {
    // In the order of LimiterField.
    constexpr std::array<FieldId, 7> fields{
        FieldId::limiterGain,    FieldId::limiterActivateLevel, FieldId::limiterDeactivateLevel,
        FieldId::limiterAttack,  FieldId::limiterRelease,       FieldId::limiterEnabled,
        FieldId::limiterEnabled,
    };
    const auto operation = static_cast<std::size_t>(which);
    if (operation >= fields.size()) {
        return;
    }
    if (which == LimiterField::enable || which == LimiterField::disable) {
        value = which == LimiterField::enable ? 1 : 0;
    }
    editSelected(fields[operation], 0, value, final);
}

void TuningState::setGroupGain(RecordChannel channel, float groupGainDb) {
    edit(FieldId::groupGain, {channel.value, 0}, groupGainDb, true);
}

void TuningState::setGroupDelay(RecordChannel channel, float groupDelayMs) {
    edit(FieldId::groupDelay, {channel.value, 0}, groupDelayMs, true);
}

void TuningState::setGainGroup(RecordChannel channel, std::uint32_t group) {
    edit(FieldId::gainGroup, {channel.value, 0}, group, true);
}

void TuningState::setDelayGroup(RecordChannel channel, std::uint32_t group) {
    edit(FieldId::delayGroup, {channel.value, 0}, group, true);
}

void TuningState::setChannelFlag(RecordChannel channel, std::uint8_t value) {
    edit(FieldId::channelFlag, {channel.value, 0}, value, true);
}

void TuningState::setRouterSource(RecordChannel channel, std::uint8_t source) {
    edit(FieldId::routerSource, {channel.value, 0}, source, true);
}

void TuningState::setInputBandGain(std::size_t inputBand, float gainDb, bool final) {
    if (inputBand < inputBandCount) {
        edit(FieldId::inputBandGain, {inputBand, 0}, gainDb, final);
    } else {
        edit(FieldId::toneGain, {inputBand - inputBandCount, 0}, gainDb, final);
    }
}

void TuningState::setInputEqOn(bool on) {
    edit(FieldId::inputEqOn, {}, on ? 1 : 0, true);
}

void TuningState::setName(std::u16string_view name) {
    writeSetText(editedSet().setName, name, setNameLimit);
    notifyHistory(TuningEvent::changed);
}

}  // namespace tessavo
