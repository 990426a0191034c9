#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "params/channels.h"
#include "params/field_table.h"
#include "params/tuning_snapshot.h"

namespace tessavo {

/// A value of a set that two states hold differently.
struct ChangedPlace {
    std::uint32_t set = 0;         ///< 0 to 4
    std::optional<FieldId> field;  ///< nothing for the name of the set
    FieldIndex index{};            ///< which element of a repeated field
};

/// Every value that differs between two states in one set, in record order, the set's name first. The set is
/// the one that is current in `after`, where that differs; otherwise the first one that does. Where no record
/// differs, but the bytes by which the input equalizer is bypassed do, its switch stands for them.
[[nodiscard]] std::vector<ChangedPlace> changedPlaces(const TuningSnapshot& before,
                                                      const TuningSnapshot& after);

/// The output channel that a value belongs to; nothing for one of the input side or of the whole set.
[[nodiscard]] std::optional<RecordChannel> channelOf(const ChangedPlace& place);

/// The parametric band of an output channel that a value belongs to, counted from 0.
[[nodiscard]] std::optional<std::size_t> bandOf(const ChangedPlace& place);

}  // namespace tessavo
