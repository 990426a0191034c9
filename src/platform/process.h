#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace tessavo {

/// The program's arguments without its name, in UTF-8 whatever the system hands to main().
[[nodiscard]] std::vector<std::string> programArguments(int argc, char** argv);

/// Readies the standard streams: text in UTF-8, also on a console that has another code page.
void prepareStandardStreams();

/// Whether a person sees standard error as it is written.
[[nodiscard]] bool standardErrorIsTerminal();

/// Lets a program with a window answer into the console from which it was started. Where a program has
/// standard streams anyway, and where there is no console, nothing changes.
void attachConsole();

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

/// Gives the calling thread the lowest priority at which it still runs beside busy ones. Where the system
/// refuses, the thread keeps its priority.
void lowerThreadPriority();

}  // namespace tessavo
