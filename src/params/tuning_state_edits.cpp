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
    const SemaphoreHold hold(*imageGuard_);
    writeImageField(image_, currentParameterSet(), fieldOf(id), index);
}

void TuningState::finish(bool final) {
    dropChangedImage();
    if (final) {
        raiseUpdatePending();
    }
    tellChange();
}

// Value and words go into the image at once, so that no copy of it holds one without the other; only where a
// generator shows its box in between, the value goes first.
template <typename Compute, typename CopyWords>
void TuningState::writeWithWords(std::span<const FieldId> fields, FieldIndex index, Compute compute,
                                 CopyWords copyWords) {
    underWay_ = {fields, index};
    compute();
    underWay_.reset();
    const SemaphoreHold hold(*imageGuard_);
    for (const FieldId id : fields) {
        writeImageField(image_, currentParameterSet(), fieldOf(id), index);
    }
    copyWords(image_.channels[index.outer]);
}

// Curves follow the last channel that was written, once for all of them; where none was, the channel of the
// band that was edited last.
template <typename Change>
void TuningState::editBands(std::size_t band, FieldId id, Change change, bool final) {
    if (band >= bandCount) {
        return;
    }
    forSelectedChannels([&](RecordChannel channel) {
        change(edited(channel).bands[band]);
        writeWithWords(
            {&id, 1}, {channel.value, band}, [&] { computeBand(currentParameterSet(), channel, band); },
            [&](ChannelImageBlock& block) { block.bandWords = bandWords_[channel.value]; });
        lastEditedBand_ = {channel, band};
    });
    showOutputCurve(lastEditedBand_.channel);
    finish(final);
}

template <typename Change>
void TuningState::editCrossovers(std::size_t crossover, std::span<const FieldId> fields, Change change,
                                 bool final) {
    if (crossover >= crossoverCount) {
        return;
    }
    RecordChannel last = lastEditedBand_.channel;
    forSelectedChannels([&](RecordChannel channel) {
        change(edited(channel).crossovers[crossover]);
        writeWithWords(
            fields, {channel.value, crossover}, [&] { computeCrossovers(currentParameterSet(), channel); },
            [&](ChannelImageBlock& block) { block.crossoverWords = crossoverWords_[channel.value]; });
        last = channel;
    });
    showOutputCurve(last);
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
        const SemaphoreHold hold(*imageGuard_);
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
    constexpr std::array fields{FieldId::crossoverEnabled, FieldId::crossoverKind, FieldId::crossoverOrder};
    const auto change = [&](CrossoverParams& params) {
        params.kind = kind;
        params.order = order;
        params.enabled = enabled;
    };
    editCrossovers(crossover, fields, change, true);
}

void TuningState::setCrossoverFrequency(std::size_t crossover, std::uint16_t frequencyHz, bool final) {
    constexpr std::array fields{FieldId::crossoverFrequency};
    editCrossovers(
        crossover, fields, [&](CrossoverParams& params) { params.frequencyHz = frequencyHz; }, final);
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
    mirror(graphic ? FieldId::inputBandGain : FieldId::toneGain, {index, 0});
    computeInputBand(currentParameterSet(), inputBand);
    showInputCurve();
    finish(final);
}

void TuningState::setInputEqOn(bool on) {
    editedSet().inputEqOn = on ? 1 : 0;
    mirror(FieldId::inputEqOn);
    finish(true);
}

void TuningState::setField(FieldId id, FieldIndex index, double storedValue, bool final) {
    if (id == FieldId::recordSize || id >= FieldId::count || !contains(fieldOf(id), index)) {
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
