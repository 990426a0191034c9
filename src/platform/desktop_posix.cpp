#include <array>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <system_error>

#include "platform/desktop.h"

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

// The desktop reads the type and the program that opens it from the installed files.
void registerFileType() {}

// The kernel shows the lock lights of every keyboard as files; they need neither a library nor rights.
KeyStates readKeyStates() {
    KeyStates states;
    std::error_code error;
    for (std::filesystem::directory_iterator entry("/sys/class/leds", error), end; !error && entry != end;
         entry.increment(error)) {
        const std::string name = entry->path().filename().string();
        const auto isLight = [&](std::string_view lock) { return name.ends_with(lock); };
        bool* state = isLight("::capslock")     ? &states.capsLock
                      : isLight("::numlock")    ? &states.numLock
                      : isLight("::scrolllock") ? &states.scrollLock
                                                : nullptr;
        if (state != nullptr) {
            int brightness = 0;
            std::ifstream(entry->path() / "brightness") >> brightness;
            *state = *state || brightness > 0;
        }
    }
    return states;
}

}  // namespace tessavo
