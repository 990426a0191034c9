#pragma once

#include <functional>
#include <memory>

namespace tessavo::cli {

/// Turns Ctrl-C, and a request to end, into a call while it lives. One at a time.
///
/// The first such event makes the call; a second one ends the program as if nothing had been set up.
class Interruption {
 public:
    /// \param stop runs on a thread of its own, at most once
    explicit Interruption(std::function<void()> stop);
    ~Interruption();
    Interruption(const Interruption&) = delete;
    Interruption& operator=(const Interruption&) = delete;

    /// Whether the event has come.
    [[nodiscard]] bool happened() const;

 private:
    struct Native;
    std::unique_ptr<Native> native_;
};

}  // namespace tessavo::cli
