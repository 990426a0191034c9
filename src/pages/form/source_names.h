#pragma once

#include <QString>
#include <cstdint>

namespace tessavo {

/// Name of a source; a number without one as it is.
[[nodiscard]] QString sourceName(std::uint8_t source);

/// At most three letters for places too narrow for the name; a dash for a silenced channel.
[[nodiscard]] QString shortSourceName(std::uint8_t source);

}  // namespace tessavo
