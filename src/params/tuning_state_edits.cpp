#include <array>

#include "params/image_conversion.h"
#include "params/set_text.h"
#include "params/tuning_state.h"

namespace tessavo {

template <typename Act>
void TuningState::forSelectedChannels(Act act) const {
    for (std::uint8_t position = 0; position < channelCount; ++position) {
        if ((selectionMask_ & selectionBit({position})) != 0) {
            act(recordChannelAt({position}));
        }
    }
}

void TuningState::mirror(FieldId id, FieldIndex index) {
    const std::lock_guard guard(imageGuard_);
    writeImageField(image_, currentParameterSet(), fieldOf(id), index);
}

void TuningState::finish(bool final) {
    if (final) {
        raiseUpdatePending();
    }
    tellChange();
}

// Curves follow the last channel that was written, once for all of them.
template <typename Change>
void TuningState::editBands(std::size_t band, FieldId id, Change change, bool final) {
    if (band >= bandCount) {
        return;
    }
    std::uint8_t last = channelCount;
    forSelectedChannels([&](RecordChannel channel) {
        change(edited(channel).bands[band]);
        computeBand(channel, band);
        const std::lock_guard guard(imageGuard_);
        writeImageField(image_, currentParameterSet(), fieldOf(id), {channel.value, band});
        image_.channels[channel.value].bandWords = bandWords_[channel.value];
        last = channel.value;
    });
    showOutputCurve({last});
    finish(final);
}

template <typename Change>
void TuningState::editCrossovers(std::size_t crossover, Change change, bool final) {
    if (crossover >= crossoverCount) {
        return;
    }
    std::uint8_t last = channelCount;
    forSelectedChannels([&](RecordChannel channel) {
        change(edited(channel).crossovers[crossover]);
        computeCrossovers(channel);
        const std::lock_guard guard(imageGuard_);
        for (const FieldId id : {FieldId::crossoverEnabled, FieldId::crossoverKind,
                                 FieldId::crossoverFrequency, FieldId::crossoverOrder}) {
            writeImageField(image_, currentParameterSet(), fieldOf(id), {channel.value, crossover});
        }
        image_.channels[channel.value].crossoverWords = crossoverWords_[channel.value];
        last = channel.value;
    });
    showOutputCurve({last});
    finish(final);
}

void TuningState::setDelay(float delayMs, bool final) {
    forSelectedChannels([&](RecordChannel channel) {
        edited(channel).delayMs = delayMs;
        mirror(FieldId::delay, {channel.value, 0});
    });
    finish(final);
}

void TuningState::setVolume(float volumeDb, bool final) {
    forSelectedChannels([&](RecordChannel channel) {
        edited(channel).volumeDb = volumeDb;
        mirror(FieldId::volume, {channel.value, 0});
    });
    finish(final);
}

void TuningState::setInvertPhase(bool apply, std::uint8_t value) {
    forSelectedChannels([&](RecordChannel channel) {
        if (apply) {
            edited(channel).invertPhase = value;
        }
        const std::lock_guard guard(imageGuard_);
        image_.channels[channel.value].invertPhase = value;
    });
    finish(true);
}

void TuningState::setBandFrequency(std::size_t band, std::uint16_t frequencyHz, bool final) {
    editBands(
        band, FieldId::bandFrequency, [&](EqBandParams& params) { params.frequencyHz = frequencyHz; }, final);
}

void TuningState::setBandType(std::size_t band, std::uint8_t type) {
    editBands(
        band, FieldId::bandType, [&](EqBandParams& params) { params.type = type; }, true);
}

void TuningState::setBandGainOrQ(std::size_t band, BandValue which, float value, bool final) {
    if (which == BandValue::gain) {
        editBands(
            band, FieldId::bandGain, [&](EqBandParams& params) { params.gainDb = value; }, final);
    } else {
        editBands(
            band, FieldId::bandQ, [&](EqBandParams& params) { params.q = value; }, final);
    }
}

void TuningState::setBandOff(std::size_t band, std::uint8_t off) {
    if (band >= bandCount) {
        return;
    }
    forSelectedChannels([&](RecordChannel channel) {
        edited(channel).bands[band].off = off;
        mirror(FieldId::bandOff, {channel.value, band});
    });
    finish(true);
}

void TuningState::setCrossover(std::size_t crossover, std::uint8_t kind, std::uint8_t order,
                               std::uint8_t enabled) {
    const auto change = [&](CrossoverParams& params) {
        params.kind = kind;
        params.order = order;
        params.enabled = enabled;
    };
    editCrossovers(crossover, change, true);
}

void TuningState::setCrossoverFrequency(std::size_t crossover, std::uint16_t frequencyHz, bool final) {
    editCrossovers(
        crossover, [&](CrossoverParams& params) { params.frequencyHz = frequencyHz; }, final);
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
    forSelectedChannels([&](RecordChannel channel) {
        const FieldIndex index{channel.value, 0};
        setStoredValue(editedSet(), fieldOf(fields[operation]), index, static_cast<double>(value));
        mirror(fields[operation], index);
    });
    finish(final);
}

void TuningState::setGroupGain(RecordChannel channel, float groupGainDb) {
    if (channel.value >= channelCount) {
        return;
    }
    edited(channel).groupGainDb = groupGainDb;
    mirror(FieldId::groupGain, {channel.value, 0});
    finish(true);
}

void TuningState::setGroupDelay(RecordChannel channel, float groupDelayMs) {
    if (channel.value >= channelCount) {
        return;
    }
    edited(channel).groupDelayMs = groupDelayMs;
    mirror(FieldId::groupDelay, {channel.value, 0});
    finish(true);
}

void TuningState::setGainGroup(RecordChannel channel, std::uint32_t group) {
    setField(FieldId::gainGroup, {channel.value, 0}, static_cast<double>(group), true);
}

void TuningState::setDelayGroup(RecordChannel channel, std::uint32_t group) {
    setField(FieldId::delayGroup, {channel.value, 0}, static_cast<double>(group), true);
}

void TuningState::setChannelFlag(RecordChannel channel, std::uint8_t value) {
    setField(FieldId::channelFlag, {channel.value, 0}, static_cast<double>(value), true);
}

void TuningState::setRouterSource(RecordChannel channel, std::uint8_t source) {
    setField(FieldId::routerSource, {channel.value, 0}, static_cast<double>(source), true);
}

void TuningState::setInputBandGain(std::size_t inputBand, float gainDb, bool final) {
    if (inputBand >= inputSectionCount) {
        return;
    }
    const bool graphic = inputBand < inputBandCount;
    const std::size_t index = graphic ? inputBand : inputBand - inputBandCount;
    (graphic ? editedSet().inputEqBands[index] : editedSet().inputToneBands[index]).gainDb = gainDb;
    computeInputBand(inputBand);
    mirror(graphic ? FieldId::inputBandGain : FieldId::toneGain, {index, 0});
    showInputCurve();
    finish(final);
}

void TuningState::setInputEqOn(bool on) {
    editedSet().inputEqOn = on ? 1 : 0;
    mirror(FieldId::inputEqOn);
    finish(true);
}

void TuningState::setField(FieldId id, FieldIndex index, double storedValue, bool final) {
    if (id >= FieldId::count || !contains(fieldOf(id), index)) {
        return;
    }
    setStoredValue(editedSet(), fieldOf(id), index, storedValue);
    mirror(id, index);
    finish(final);
}

void TuningState::setName(std::u16string_view name) {
    writeSetText(editedSet().setName, name, setNameLimit);
}

}  // namespace tessavo
