#pragma once

#include <chrono>

namespace tessavo::test {

/// Real time since its making.
class Elapsed {
 public:
    [[nodiscard]] std::chrono::milliseconds get() const {
        return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() -
                                                                     start_);
    }

 private:
    std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

/// More than a loaded machine adds to a wait that ends in time, and less than a wait that does not end.
inline constexpr std::chrono::milliseconds generous{10000};

}  // namespace tessavo::test
