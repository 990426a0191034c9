#pragma once

#include <chrono>
#include <thread>

namespace tessavo::test {

/// Waits until the condition holds, at most thirty seconds.
/// \return whether it does
template <typename Condition>
bool eventually(Condition condition) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(30);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end) {
            return false;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return true;
}

}  // namespace tessavo::test
