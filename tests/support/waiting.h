#pragma once

#include <chrono>
#include <thread>

namespace tessavo::test {

/// Waits until the condition holds, a minute at most.
/// \return whether it does
template <typename Condition>
bool eventually(Condition condition) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::minutes(1);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end) {
            return false;
        }
        std::this_thread::sleep_for(std::chrono::microseconds(100));
    }
    return true;
}

}  // namespace tessavo::test
