#include <array>
#include <cstdlib>

#include "app/display.h"

namespace tessavo {

bool hasDisplay() {
    constexpr std::array<const char*, 3> names{"QT_QPA_PLATFORM", "WAYLAND_DISPLAY", "DISPLAY"};
    for (const char* name : names) {
        const char* value = std::getenv(name);  // NOLINT(concurrency-mt-unsafe): no thread runs yet
        if (value != nullptr && *value != '\0') {
            return true;
        }
    }
    return false;
}

}  // namespace tessavo
