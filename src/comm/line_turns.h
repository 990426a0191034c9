#pragma once

#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <mutex>
#include <utility>

namespace tessavo {

/// Who runs an exchange with the target.
enum class LineUser : std::uint8_t {
    command,   ///< a button that a person has pressed
    liveMode,  ///< the worker's image or its confirmation
    clipPoll   ///< a question for the clip state
};
inline constexpr std::size_t lineUserCount = 3;

/// Turns of live rounds (an image and its confirmation) and of questions for the clip state on one line.
///
/// While both want the line they alternate: between two rounds one question is asked, and an edit that waits
/// lets one question pass at most. Commands come in front of both. Beside the lock of the exchanges, which
/// alone keeps them apart: who does not ask for a turn is held up by nothing here. Any thread, at most one
/// that asks questions and one that sends rounds.
class LineTurns {
 public:
    /// What else decides. Called on any thread, and must not call back.
    struct Needs {
        std::function<bool()> editWaits;    ///< an edit waits for the next round
        std::function<bool()> commandRuns;  ///< a command has the line or waits for it
    };
    /// Asked while a turn is waited for, at least ten times a second; false gives the turn up.
    using Wanted = std::function<bool()>;

    explicit LineTurns(Needs needs) : needs_(std::move(needs)) {}

    /// Waits until a question may be asked.
    /// \return false when it was given up; otherwise endQuestion() has to follow
    bool takeQuestion(const Wanted& wanted);
    /// The question's exchange is over. Without one it does nothing.
    void endQuestion();
    /// Waits for a question that runs, or that is due since the last round.
    /// \return false when it was given up; otherwise endRound() has to follow
    bool takeRound(const Wanted& wanted);
    /// The round's result is known. Without one it does nothing.
    void endRound();
    /// Whoever sends rounds waits for a person and uses no line: until he goes on, questions are held up
    /// neither by the round that runs nor by an edit.
    void setRoundsRest(bool rest);

    /// Gives up every turn that is waited for now or later; called when the program ends.
    void end();

 private:
    template <typename May>
    bool waitFor(std::unique_lock<std::mutex>& guard, const Wanted& wanted, May may);

    Needs needs_;
    std::mutex mutex_;
    std::condition_variable changed_;
    bool roundRuns_ = false;
    bool roundsRest_ = false;
    bool questionRuns_ = false;
    bool questionWaits_ = false;
    bool askedSinceRound_ = false;
    bool ended_ = false;
};

}  // namespace tessavo
