#include "history/step_place.h"

#include <cstring>

namespace tessavo {

namespace {

bool differ(const ParameterSet& one, const ParameterSet& other) {
    return std::memcmp(&one, &other, sizeof one) != 0;
}

std::optional<std::uint32_t> changedSet(const TuningSnapshot& before, const TuningSnapshot& after) {
    const auto differs = [&](std::uint32_t set) {
        return differ(before.store.sets[set], after.store.sets[set]);
    };
    if (differs(after.currentSet)) {
        return after.currentSet;
    }
    for (std::uint32_t set = 0; set < setCount; ++set) {
        if (differs(set)) {
            return set;
        }
    }
    return std::nullopt;
}

bool bypassDiffers(const ParameterImage& one, const ParameterImage& other) {
    return one.inputRow0.bypass != other.inputRow0.bypass || one.inputRow1.bypass != other.inputRow1.bypass;
}

}  // namespace

std::vector<ChangedPlace> changedPlaces(const TuningSnapshot& before, const TuningSnapshot& after) {
    std::vector<ChangedPlace> places;
    const std::optional<std::uint32_t> set = changedSet(before, after);
    if (!set) {
        if (bypassDiffers(before.image, after.image)) {
            places.push_back({after.currentSet, FieldId::inputEqOn, {}});
        }
        return places;
    }
    const ParameterSet& one = before.store.sets[*set];
    const ParameterSet& other = after.store.sets[*set];
    if (one.setName != other.setName) {
        places.push_back({*set, std::nullopt, {}});
    }
    for (const Field& field : fieldTable()) {
        forEachElement(field, [&](FieldIndex index) {
            const std::size_t offset = recordOffsetOf(field, index);
            const auto* oneBytes = reinterpret_cast<const unsigned char*>(&one) + offset;
            const auto* otherBytes = reinterpret_cast<const unsigned char*>(&other) + offset;
            if (std::memcmp(oneBytes, otherBytes, widthOf(field.type)) != 0) {
                places.push_back({*set, field.id, index});
            }
        });
    }
    return places;
}

std::optional<RecordChannel> channelOf(const ChangedPlace& place) {
    if (!place.field || fieldOf(*place.field).outer.count != channelCount) {
        return std::nullopt;
    }
    return RecordChannel{static_cast<std::uint8_t>(place.index.outer)};
}

std::optional<std::size_t> bandOf(const ChangedPlace& place) {
    if (!channelOf(place) || fieldOf(*place.field).inner.count != bandCount) {
        return std::nullopt;
    }
    return place.index.inner;
}

}  // namespace tessavo
