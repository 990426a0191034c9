#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "app/tab_pages.h"
#include "history/step_place.h"
#include "params/channels.h"

namespace tessavo {

/// Where a person finds a value in the window.
struct FieldPlace {
    std::uint32_t set = 0;                 ///< 0 to 4
    std::optional<Page> page;              ///< nothing for what stands above every page
    int control = -1;                      ///< number of its control; of the slider where it has a box too
    std::optional<RecordChannel> channel;  ///< that the page of the output equalizer has to show
};

/// Where the first of these values stands that has a control; nothing where none has one.
[[nodiscard]] std::optional<FieldPlace> findPlace(const std::vector<ChangedPlace>& changes);

}  // namespace tessavo
