#pragma once

#include <chrono>
#include <fstream>
#include <string>
#include <thread>
#include <unistd.h>

namespace tessavo::test {

/// Waits until a thread of this process waits for something.
/// \return false when it keeps running
inline bool untilAsleep(pid_t thread) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    const std::string path = "/proc/self/task/" + std::to_string(thread) + "/stat";
    while (std::chrono::steady_clock::now() < end) {
        std::string line;
        std::getline(std::ifstream(path), line);
        // The state follows the program's name, which stands in parentheses.
        const std::size_t name = line.rfind(") ");
        if (name != std::string::npos && line.at(name + 2) == 'S') {
            return true;
        }
        std::this_thread::yield();
    }
    return false;
}

}  // namespace tessavo::test
