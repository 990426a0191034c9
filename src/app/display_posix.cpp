#include <cstdlib>

#include "app/display.h"

namespace tessavo {

bool hasDisplay() {
    for (const char* name : {"QT_QPA_PLATFORM", "WAYLAND_DISPLAY", "DISPLAY"}) {
        const char* value = std::getenv(name);
        if (value != nullptr && *value != '\0') {
            return true;
        }
    }
    return false;
}

}  // namespace tessavo
