#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace tessavo {

/// The program's arguments without its name, in UTF-8 whatever the system hands to main().
[[nodiscard]] std::vector<std::string> programArguments(int argc, char** argv);

/// Prepares the standard streams for text in UTF-8, also on a console that has another code page. Called
/// once, before anything is written.
void prepareStandardStreams();

/// Whether standard error goes to a terminal, so that a person sees it as it is written.
[[nodiscard]] bool standardErrorIsTerminal();

/// Connects the standard streams of a program with a window to the console from which it was started. Nothing
/// changes where a program has standard streams anyway, and where there is no console.
void attachConsole();

/// Turns Ctrl-C, and the system's request to end the program, into a call, as long as the object lives. Only
/// one object may exist at a time.
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
