#include "filtertext/filter_forms.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "base/number_text.h"
#include "dsp/band_types.h"
#include "dsp/filter_kind.h"
#include "params/field_table.h"

namespace tessavo {

namespace {

/// One value on its field's steps; notes it where it lay outside.
double stepped(double exact, FieldId id, FilterValue value, std::vector<FilterValue>& clamped) {
    const Field& field = fieldOf(id);
    const double scale = std::pow(10.0, field.decimals);
    const double rounded = std::round(exact * scale) / scale;
    const double inside = std::clamp(rounded, field.minimum, field.maximum);
    if (inside != rounded) {
        clamped.push_back(value);
    }
    // A small cut rounds to a zero that would keep its sign.
    return inside + 0.0;
}

/// The number that a person reads: the float nearest to 0.7 is 0.7.
double read(float stored) {
    return finiteNumber(shortestText(stored)).value_or(static_cast<double>(stored));
}

BandType bandTypeOf(FilterShape shape) {
    switch (shape) {
        case FilterShape::lowShelf:
            return BandType::lowShelf;
        case FilterShape::highShelf:
            return BandType::highShelf;
        default:
            return BandType::peak;
    }
}

}  // namespace

SteppedFilter onDeviceSteps(const DeviceFilter& exact) {
    SteppedFilter result{exact, {}};
    if (!isBand(exact.shape)) {
        result.filter.frequencyHz =
            stepped(exact.frequencyHz, FieldId::crossoverFrequency, FilterValue::frequency, result.clamped);
        return result;
    }
    result.filter.frequencyHz =
        stepped(exact.frequencyHz, FieldId::bandFrequency, FilterValue::frequency, result.clamped);
    result.filter.gainDb = stepped(exact.gainDb, FieldId::bandGain, FilterValue::gain, result.clamped);
    result.filter.q = stepped(exact.q, FieldId::bandQ, FilterValue::q, result.clamped);
    return result;
}

EqBandParams bandOf(const DeviceFilter& filter, bool off) {
    EqBandParams band;
    band.type = static_cast<std::uint8_t>(bandTypeOf(filter.shape));
    band.frequencyHz = static_cast<std::uint16_t>(filter.frequencyHz);
    band.gainDb = static_cast<float>(filter.gainDb);
    band.q = static_cast<float>(filter.q);
    band.off = off ? 1 : 0;
    return band;
}

CrossoverParams crossoverOf(const DeviceFilter& filter, bool enabled) {
    CrossoverParams crossover;
    crossover.enabled = enabled ? 1 : 0;
    crossover.kind = static_cast<std::uint8_t>(
        filter.shape == FilterShape::highPass ? CrossoverKind::highPass : CrossoverKind::lowPass);
    crossover.frequencyHz = static_cast<std::uint16_t>(filter.frequencyHz);
    crossover.order = static_cast<std::uint8_t>(filter.order);
    return crossover;
}

std::optional<DeviceFilter> filterOf(const EqBandParams& band) {
    if (bandDesign(band.type) == nullptr) {
        return std::nullopt;
    }
    const auto type = static_cast<BandType>(band.type);
    const FilterShape shape = type == BandType::lowShelf    ? FilterShape::lowShelf
                              : type == BandType::highShelf ? FilterShape::highShelf
                                                            : FilterShape::peak;
    return DeviceFilter{shape, static_cast<double>(band.frequencyHz), read(band.gainDb), read(band.q), 2};
}

DeviceFilter filterOf(const CrossoverParams& crossover) {
    const bool high = crossover.kind == static_cast<std::uint8_t>(CrossoverKind::highPass);
    return {high ? FilterShape::highPass : FilterShape::lowPass, static_cast<double>(crossover.frequencyHz),
            0.0, 0.0, crossover.order == 4 ? 4 : 2};
}

}  // namespace tessavo
