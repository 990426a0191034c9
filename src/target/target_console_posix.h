#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

namespace tessavo {

/// What reaches a running program from outside: the wish to end, and lines on its standard input.
///
/// Made before any thread starts, so that no other thread gets the signals.
class TargetConsole {
 public:
    TargetConsole();
    ~TargetConsole();
    TargetConsole(const TargetConsole&) = delete;
    TargetConsole& operator=(const TargetConsole&) = delete;

    /// \return false when signals cannot be waited for
    [[nodiscard]] bool usable() const { return signals_ >= 0; }

    /// Waits for Ctrl-C, SIGTERM or SIGHUP, or until `endDescriptor` becomes readable.
    ///
    /// \param line takes each line of standard input, without its line break; empty leaves standard input
    ///        alone. Lines longer than 4096 characters come in pieces.
    /// \param room asked before reading; while it says no, standard input waits
    void wait(int endDescriptor, const std::function<void(std::string_view)>& line,
              const std::function<bool()>& room);

 private:
    void readInput(const std::function<void(std::string_view)>& line);

    int signals_ = -1;
    bool inputEnded_ = false;
    std::string pending_;
};

}  // namespace tessavo
