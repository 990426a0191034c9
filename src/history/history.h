#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "history/step.h"
#include "params/tuning_state.h"

namespace tessavo {

/// What a person's hand is doing; everything that changes meanwhile is one step.
enum class Gesture : std::uint8_t {
    none,   ///< nothing: each change is a step of its own
    press,  ///< a button of the mouse is down
    run,    ///< one key or the wheel moves one control, or a text is typed into one box
};

/// What stands beside the steps in the list of a history.
enum class MarkKind : std::uint8_t {
    saved,      ///< the sets were written to a settings file or read from it
    confirmed,  ///< the target has confirmed the image
    notice,     ///< something was told
};

/// Something that happened between two steps.
struct HistoryMark {
    MarkKind kind;
    std::uint64_t number;  ///< of the step that was done last then, counted from 1; 0 before the first
    WallTime time;
    std::string text;
};

/// What a listener of the history is told.
enum class HistoryEvent : std::uint8_t {
    tuningChanged,  ///< something changed that is no step yet, or turned out to be none, as a change of set
    stepsChanged,   ///< a step was made, undone or redone, or old ones were dropped
    marksChanged,   ///< a mark was added
};

/// The steps of a person, to be undone and redone.
///
/// Compares states: whatever an edit, a file or a received set does between two commits is one step, and a
/// state comes back to the byte, image included. Choosing a set is no step; undoing an edit in another set
/// chooses that set first. Holds at least 10000 usual steps; beyond `memoryLimit` the oldest are dropped.
///
/// Used on the user-interface thread.
class History {
 public:
    /// Memory that all steps together may take, in bytes. One step of a slider takes less than 1000, a loaded
    /// file at most 45000.
    static constexpr std::size_t memoryLimit = std::size_t{26} * 1024 * 1024;

    /// What a step needs of the window. Functions may be empty.
    struct View {
        /// Chooses a set as the selector does.
        std::function<void(std::uint32_t set)> chooseSet;
        /// Every page reads the current set again.
        std::function<void()> refresh;
        /// Asks for commit() as soon as the event in hand is done.
        std::function<void()> commitSoon;
    };

    /// The state as it is counts as the start. Takes the tuning's history listener for as long as it lives.
    /// \param tuning outlives this object
    /// \param now the clock that dates the steps; the system's when empty
    explicit History(TuningState& tuning, std::function<WallTime()> now = {});
    ~History();
    History(const History&) = delete;
    History& operator=(const History&) = delete;

    void setView(View view) { view_ = std::move(view); }
    /// Called after what it is told has happened. Must neither undo nor redo.
    void setListener(std::function<void(HistoryEvent)> listener) { listener_ = std::move(listener); }

    // --- steps in the making

    /// Ends the step in the making and begins the next, which lasts until endGesture().
    void beginGesture(Gesture gesture);
    /// Ends the step in the making.
    void endGesture();
    [[nodiscard]] Gesture gesture() const { return gesture_; }
    /// Makes a step of everything that has changed since the last one; none where nothing has. Nothing happens
    /// while a change is under way.
    /// \param text what the step did; found by comparing when empty
    /// \return whether a step was made
    bool commit(std::string text = {});
    /// The same for what counts as a step even where it has changed nothing.
    bool commitAlways(std::string text);

    // --- back and forth; each ends a step in the making first, and does nothing while a change is under way

    [[nodiscard]] bool canUndo() const { return position_ > 0 || isChanged_; }
    [[nodiscard]] bool canRedo() const { return position_ < steps_.size() && !isChanged_; }
    /// Text of the step that undo() or redo() is about; empty where there is none. A step in the making does
    /// not count.
    [[nodiscard]] std::string_view undoText() const;
    [[nodiscard]] std::string_view redoText() const;
    /// \return whether there was a step
    bool undo();
    bool redo();
    /// Undoes or redoes until this many steps are done.
    /// \param position 0 to steps().size()
    /// \return whether anything was undone or redone
    bool goTo(std::size_t position);
    /// The sets as they were when this many steps were done. Nothing moves.
    /// \param position 0 to steps().size()
    /// \return null for another position
    [[nodiscard]] std::unique_ptr<const ParameterStore> setsAt(std::size_t position) const;

    // --- the list

    /// The steps, oldest first; those from position() on are undone.
    [[nodiscard]] const std::deque<std::shared_ptr<const Step>>& steps() const { return steps_; }
    /// How many of them are done.
    [[nodiscard]] std::size_t position() const { return position_; }
    /// Steps that were dropped: steps()[i] has number dropped() + i + 1.
    [[nodiscard]] std::uint64_t dropped() const { return dropped_; }
    /// By number of the step, and then by time. Those of steps that are gone are gone as well.
    [[nodiscard]] const std::deque<HistoryMark>& marks() const { return marks_; }
    /// Bytes that the steps take.
    [[nodiscard]] std::size_t memory() const { return memory_; }

    /// The sets stand in a settings file now. Ends the step in the making, and a run.
    void markSaved(std::string text);
    /// The target has confirmed an image. Where it is that of the state as it stands, or of the last step,
    /// that gets the mark, and no later change joins that step. Where a run in Live Mode has left it already,
    /// the run is parted there into two steps, of which the first gets the mark. So is a run that has ended, done
    /// or undone, as long as no step stands behind it; nothing moves. A press stays one step.
    void markConfirmed(const ParameterImage& image, std::string text);
    using ImageTest = std::function<bool(const ParameterImage&)>;
    /// The same where the target holds a copy that is made of an image.
    /// \param plays whether what the target has confirmed is what belongs to an image
    void markConfirmedWhere(const ImageTest& plays, std::string text);
    /// Something was told.
    void markNotice(std::string text);

    // --- across two runs of the program

    /// What a later run needs to go on from here.
    struct Trail {
        TuningSnapshot state;    ///< as it stands, also in the middle of a step
        TuningSnapshot begun;    ///< in which the step in the making began; `state` where there is none
        TuningSnapshot settled;  ///< the state after the last step that is done
        Steps done;              ///< the last ones that are done, oldest first
        Steps undone;            ///< the next ones, oldest first
    };
    /// \param limit most steps in each direction
    [[nodiscard]] std::unique_ptr<const Trail> trail(std::size_t limit) const;
    /// Goes over to the state of another run, with its steps behind those of this one. Its first state is one
    /// step away from the state as it stands, and what it had not finished is a step of its own.
    /// \param text of the step that leads there
    /// \return false, and nothing is changed, when a state of the trail has a current set
    ///     that is not 0 to 4
    bool adopt(const Trail& trail, std::string text);

 private:
    void take(TuningEvent event);
    void tell(HistoryEvent event) const;
    [[nodiscard]] bool isBusy() const { return isMoving_ || tuning_.changeRuns(); }
    /// What has to differ for a step to be made.
    enum class Needs : std::uint8_t { change, changeOrLead, nothing };
    /// \return whether a step was made
    bool addStep(std::string text, const TuningSnapshot& after, Needs needs);
    bool commit(std::string text, Needs needs);
    void append(std::shared_ptr<const Step> step);
    void dropOldest();
    void dropUndone();
    void addMark(MarkKind kind, std::uint64_t number, std::string text);
    [[nodiscard]] std::uint64_t lastDone() const { return dropped_ + position_; }
    void show(const TuningSnapshot& target);
    void notePassed();
    void partRunWhere(const ImageTest& plays);
    /// The newest step, where a run in Live Mode has made it, with the states that this run has passed through.
    struct EndedRun {
        std::shared_ptr<const Step> step;     ///< not that of the history any more once there is a newer one
        std::unique_ptr<TuningSnapshot> end;  ///< in which the step ended; null as long as no run has
        /// From each state to the next, up to `end`: from the first of the step on, or only the last ones.
        std::deque<ByteDiff> passed;
    };
    void keepEndedRun();
    [[nodiscard]] std::optional<std::uint64_t> numberInEndedRun(const ImageTest& plays);
    [[nodiscard]] std::uint64_t partEndedRun(std::size_t count, const TuningSnapshot& middle);

    TuningState& tuning_;
    std::function<WallTime()> now_;
    View view_;
    std::function<void(HistoryEvent)> listener_;

    std::deque<std::shared_ptr<const Step>> steps_;
    std::size_t position_ = 0;
    std::deque<HistoryMark> marks_;
    std::uint64_t dropped_ = 0;
    std::size_t memory_ = 0;

    // Together far too large for a stack that nobody knows.
    std::unique_ptr<TuningSnapshot> settled_;  ///< after the last step that is done
    std::unique_ptr<TuningSnapshot> begun_;    ///< in which the step in the making began
    std::unique_ptr<TuningSnapshot> passing_;  ///< the last state that a run in Live Mode has reached
    std::unique_ptr<TuningSnapshot> scratch_;
    /// From each state of such a run to the next, up to `passing_`: from `begun_` on, or only the last ones.
    std::deque<ByteDiff> passed_;
    EndedRun endedRun_;
    bool beganElsewhere_ = false;  ///< `begun_` may differ from `settled_`

    Gesture gesture_ = Gesture::none;
    bool isChanged_ = false;  ///< something may differ from `begun_`
    bool isMoving_ = false;   ///< a state is being restored
};

/// Finds the state before the first step of a trail.
/// \return whether every state that the steps lead to has a current set that there is
[[nodiscard]] bool findFirst(const History::Trail& trail, TuningSnapshot& first);

}  // namespace tessavo
