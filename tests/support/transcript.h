#pragma once

#include <mutex>
#include <string>
#include <utility>
#include <vector>

namespace tessavo::test {

using Lines = std::vector<std::string>;

/// Everything an exchange does to the outside, in order. Thread-safe.
class Transcript {
 public:
    void add(std::string line) {
        const std::lock_guard guard(mutex_);
        lines_.push_back(std::move(line));
    }
    [[nodiscard]] Lines lines() const {
        const std::lock_guard guard(mutex_);
        return lines_;
    }
    void clear() {
        const std::lock_guard guard(mutex_);
        lines_.clear();
    }

 private:
    mutable std::mutex mutex_;
    Lines lines_;
};

/// Several stretches of a transcript, one after the other.
inline Lines joined(const std::vector<Lines>& parts) {
    Lines all;
    for (const Lines& part : parts) {
        all.insert(all.end(), part.begin(), part.end());
    }
    return all;
}

}  // namespace tessavo::test
