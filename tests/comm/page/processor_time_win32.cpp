#include <windows.h>

#include <cstdint>

#include "comm/page/processor_time.h"

namespace tessavo::test {

namespace {

// A count of 100 ns.
double secondsOf(const FILETIME& time) {
    constexpr double unit = 1e-7;
    return unit * static_cast<double>((std::uint64_t{time.dwHighDateTime} << 32U) | time.dwLowDateTime);
}

}  // namespace

// std::clock() tells the time on the wall there.
double processorSeconds() {
    FILETIME started{};
    FILETIME ended{};
    FILETIME kernel{};
    FILETIME user{};
    if (GetProcessTimes(GetCurrentProcess(), &started, &ended, &kernel, &user) == 0) {
        return 0;
    }
    return secondsOf(kernel) + secondsOf(user);
}

}  // namespace tessavo::test
