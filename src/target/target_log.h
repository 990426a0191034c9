#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace tessavo {

/// How much a line of the simulated target matters.
enum class TargetLogKind : std::uint8_t {
    event,   ///< what happened on the line
    trouble  ///< something the person who runs the target must know, such as a state file that cannot be used
};

/// Takes the simulated target's lines as they happen, without a line break. May be empty.
using TargetLog = std::function<void(TargetLogKind, std::string_view)>;

inline void note(const TargetLog& log, std::string_view text) {
    if (log) {
        log(TargetLogKind::event, text);
    }
}

inline void warn(const TargetLog& log, std::string_view text) {
    if (log) {
        log(TargetLogKind::trouble, text);
    }
}

/// "1 byte", "2 bytes".
[[nodiscard]] inline std::string countOf(std::size_t count, std::string_view unit) {
    return std::to_string(count) + " " + std::string(unit) + (count == 1 ? "" : "s");
}

}  // namespace tessavo
