#pragma once

#include <unistd.h>
#include <utility>

namespace tessavo {

/// A file descriptor that closes itself; -1 when there is none.
class Descriptor {
 public:
    explicit Descriptor(int number = -1) : number_(number) {}
    ~Descriptor() { close(); }
    Descriptor(Descriptor&& other) noexcept : number_(other.release()) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        if (this != &other) {
            close();
            number_ = other.release();
        }
        return *this;
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    [[nodiscard]] int get() const { return number_; }
    [[nodiscard]] bool valid() const { return number_ >= 0; }
    /// \return false when the system could not keep what was written; true without a descriptor
    bool close() { return !valid() || ::close(release()) == 0; }
    /// Hands it over to the caller, who closes it.
    [[nodiscard]] int release() { return std::exchange(number_, -1); }

 private:
    int number_;
};

}  // namespace tessavo
