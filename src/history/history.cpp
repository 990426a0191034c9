#include "history/history.h"

#include <algorithm>
#include <span>
#include <utility>

#include "history/step_text.h"

namespace tessavo {

namespace {

// Marks are small; with Live Mode on every step may have one.
constexpr std::size_t markLimit = 40000;

// Nobody makes so many changes with keys or wheel while one live transfer lasts.
constexpr std::size_t passedLimit = 512;

bool isSame(const ParameterImage& one, const ParameterImage& other) {
    return std::ranges::equal(std::as_bytes(std::span(&one, 1)), std::as_bytes(std::span(&other, 1)));
}

std::size_t memoryOf(const Step& step) {
    // Of the allocator, of the shared pointer and of the list.
    constexpr std::size_t bookkeeping = 96;
    return sizeof(Step) + bookkeeping + step.text.capacity() + step.lead.bytes().size() +
           step.change.bytes().size();
}

bool isWhole(const TuningSnapshot& state) {
    return state.currentSet < setCount;
}

}  // namespace

bool findFirst(const History::Trail& trail, TuningSnapshot& first) {
    bool allAreWhole = isWhole(trail.state) && isWhole(trail.begun) && isWhole(trail.settled);
    const auto apply = [&](const ByteDiff& difference) {
        difference.applyTo(bytesOf(first));
        allAreWhole = allAreWhole && isWhole(first);
    };
    first = trail.settled;
    for (const auto& step : trail.undone) {
        apply(step->lead);
        apply(step->change);
    }
    first = trail.settled;
    std::for_each(trail.done.rbegin(), trail.done.rend(), [&](const std::shared_ptr<const Step>& step) {
        apply(step->change);
        apply(step->lead);
    });
    return allAreWhole;
}

History::History(TuningState& tuning, std::function<WallTime()> now)
    : tuning_(tuning),
      now_(now ? std::move(now) : [] { return std::chrono::system_clock::now(); }),
      settled_(std::make_unique<TuningSnapshot>()),
      begun_(std::make_unique<TuningSnapshot>()),
      passing_(std::make_unique<TuningSnapshot>()),
      scratch_(std::make_unique<TuningSnapshot>()) {
    tuning_.takeSnapshot(*settled_);
    *begun_ = *settled_;
    tuning_.setHistoryListener([this](TuningEvent event) { take(event); });
}

History::~History() {
    tuning_.setHistoryListener({});
}

void History::take(TuningEvent event) {
    if (isMoving_) {
        return;
    }
    switch (event) {
        case TuningEvent::changed:
            isChanged_ = true;
            notePassed();
            tell(HistoryEvent::tuningChanged);
            if (gesture_ == Gesture::none && view_.commitSoon) {
                view_.commitSoon();
            }
            break;
        case TuningEvent::setIsChosen:
            commit();
            break;
        case TuningEvent::setWasChosen:
            tuning_.takeSnapshot(*begun_);
            beganElsewhere_ = true;
            passed_.clear();
            tell(HistoryEvent::tuningChanged);
            break;
    }
}

void History::tell(HistoryEvent event) const {
    if (listener_) {
        listener_(event);
    }
}

void History::beginGesture(Gesture gesture) {
    commit();
    gesture_ = gesture;
}

void History::endGesture() {
    commit();
    gesture_ = Gesture::none;
}

bool History::commit(std::string text) {
    return isChanged_ && commit(std::move(text), Needs::change);
}

bool History::commitAlways(std::string text) {
    return commit(std::move(text), Needs::nothing);
}

bool History::commit(std::string text, Needs needs) {
    if (isBusy()) {
        return false;
    }
    isChanged_ = false;
    tuning_.takeSnapshot(*scratch_);
    // Others know a step that was given its text as the one that it is: it stays whole.
    const bool mayBeParted = text.empty();
    const bool isStep = addStep(std::move(text), *scratch_, needs);
    if (isStep && mayBeParted) {
        keepEndedRun();
    }
    passed_.clear();
    // Without a step, too, what can be undone and redone may differ from what it was while it was in the making.
    tell(isStep ? HistoryEvent::stepsChanged : HistoryEvent::tuningChanged);
    return isStep;
}

bool History::addStep(std::string text, const TuningSnapshot& after, Needs needs) {
    auto step = std::make_shared<Step>();
    step->change = ByteDiff::between(bytesOf(std::as_const(*begun_)), bytesOf(after));
    if (step->change.empty() && needs == Needs::change) {
        return false;
    }
    if (beganElsewhere_) {
        step->lead = ByteDiff::between(bytesOf(std::as_const(*settled_)), bytesOf(std::as_const(*begun_)));
    }
    if (step->change.empty() && step->lead.empty() && needs != Needs::nothing) {
        return false;
    }
    step->text = text.empty() ? describeStep(*begun_, after) : std::move(text);
    step->text.shrink_to_fit();
    step->time = now_();
    step->set = after.currentSet;
    dropUndone();
    append(std::move(step));
    ++position_;
    *settled_ = after;
    *begun_ = after;
    beganElsewhere_ = false;
    dropOldest();
    return true;
}

void History::append(std::shared_ptr<const Step> step) {
    memory_ += memoryOf(*step);
    steps_.push_back(std::move(step));
    endedRun_.step.reset();
    endedRun_.passed.clear();
}

void History::dropOldest() {
    while (memory_ > memoryLimit && position_ > 0) {
        memory_ -= memoryOf(*steps_.front());
        steps_.pop_front();
        --position_;
        ++dropped_;
    }
    while (!marks_.empty() && (marks_.front().number < dropped_ || marks_.size() > markLimit)) {
        marks_.pop_front();
    }
}

void History::dropUndone() {
    while (steps_.size() > position_) {
        memory_ -= memoryOf(*steps_.back());
        steps_.pop_back();
    }
    while (!marks_.empty() && marks_.back().number > dropped_ + position_) {
        marks_.pop_back();
    }
}

std::string_view History::undoText() const {
    return position_ > 0 ? std::string_view(steps_[position_ - 1]->text) : std::string_view();
}

std::string_view History::redoText() const {
    return position_ < steps_.size() ? std::string_view(steps_[position_]->text) : std::string_view();
}

bool History::undo() {
    if (isBusy()) {
        return false;
    }
    endGesture();
    return position_ > 0 && goTo(position_ - 1);
}

bool History::redo() {
    if (isBusy()) {
        return false;
    }
    endGesture();
    return position_ < steps_.size() && goTo(position_ + 1);
}

bool History::goTo(std::size_t position) {
    if (isBusy()) {
        return false;
    }
    endGesture();
    if (position > steps_.size() || position == position_) {
        return false;
    }
    TuningSnapshot& state = *scratch_;
    state = *settled_;
    while (position_ > position) {
        const Step& step = *steps_[--position_];
        step.change.applyTo(bytesOf(state));
        *begun_ = state;
        step.lead.applyTo(bytesOf(state));
        beganElsewhere_ = !step.lead.empty();
        *settled_ = state;
    }
    while (position_ < position) {
        const Step& step = *steps_[position_++];
        step.lead.applyTo(bytesOf(state));
        step.change.applyTo(bytesOf(state));
        *begun_ = state;
        beganElsewhere_ = false;
        *settled_ = state;
    }
    show(*begun_);
    tell(HistoryEvent::stepsChanged);
    return true;
}

std::unique_ptr<const ParameterStore> History::setsAt(std::size_t position) const {
    if (position > steps_.size()) {
        return nullptr;
    }
    auto state = std::make_unique<TuningSnapshot>(*settled_);
    for (std::size_t at = position_; at > position; --at) {
        steps_[at - 1]->change.applyTo(bytesOf(*state));
        steps_[at - 1]->lead.applyTo(bytesOf(*state));
    }
    for (std::size_t at = position_; at < position; ++at) {
        steps_[at]->lead.applyTo(bytesOf(*state));
        steps_[at]->change.applyTo(bytesOf(*state));
    }
    return std::make_unique<const ParameterStore>(state->store);
}

void History::show(const TuningSnapshot& target) {
    isMoving_ = true;
    if (target.currentSet != tuning_.currentSet() && view_.chooseSet) {
        view_.chooseSet(target.currentSet);
    }
    tuning_.restore(target);
    if (view_.refresh) {
        view_.refresh();
    }
    isMoving_ = false;
}

void History::addMark(MarkKind kind, std::uint64_t number, std::string text) {
    // It goes before the marks of later steps, which may be undone.
    auto place =
        std::upper_bound(marks_.begin(), marks_.end(), number,
                         [](std::uint64_t value, const HistoryMark& mark) { return value < mark.number; });
    const bool repeats = kind == MarkKind::confirmed && place != marks_.begin() &&
                         std::prev(place)->number == number && std::prev(place)->kind == kind;
    if (repeats) {
        *std::prev(place) = {kind, number, now_(), std::move(text)};
    } else {
        marks_.insert(place, {kind, number, now_(), std::move(text)});
    }
    dropOldest();
    tell(HistoryEvent::marksChanged);
}

void History::markSaved(std::string text) {
    commit();
    addMark(MarkKind::saved, lastDone(), std::move(text));
}

void History::markConfirmed(const ParameterImage& image, std::string text) {
    markConfirmedWhere([&image](const ParameterImage& other) { return isSame(image, other); },
                       std::move(text));
}

void History::markConfirmedWhere(const ImageTest& plays, std::string text) {
    const bool isAsItStands = plays(tuning_.image());
    // One press-to-release is one step, even where a control sends each of its moves.
    if (gesture_ != Gesture::press) {
        if (isAsItStands) {
            commit();
        } else {
            partRunWhere(plays);
        }
    }
    // The set may have been changed since the last step.
    if (plays(begun_->image) || (!isAsItStands && plays(settled_->image))) {
        addMark(MarkKind::confirmed, lastDone(), std::move(text));
    } else if (!isAsItStands && !isBusy()) {
        if (const auto number = numberInEndedRun(plays)) {
            addMark(MarkKind::confirmed, *number, std::move(text));
        }
    }
}

// By the time a confirmation comes, and even by the time this thread hears that something is being sent, keys
// and wheel may have gone on: which of the states it is about is known only by then.
void History::notePassed() {
    if (gesture_ != Gesture::run || !tuning_.liveMode()) {
        return;
    }
    const TuningSnapshot& before = passed_.empty() ? *begun_ : *passing_;
    tuning_.takeSnapshot(*scratch_);
    passed_.push_back(ByteDiff::between(bytesOf(before), bytesOf(std::as_const(*scratch_))));
    std::swap(passing_, scratch_);
    if (passed_.size() > passedLimit) {
        passed_.pop_front();
    }
}

void History::partRunWhere(const ImageTest& plays) {
    if (isBusy()) {
        return;
    }
    *scratch_ = *passing_;
    for (std::size_t count = passed_.size(); count > 0; --count) {
        if (plays(scratch_->image)) {
            passed_.erase(passed_.begin(), passed_.begin() + static_cast<std::ptrdiff_t>(count));
            if (addStep({}, *scratch_, Needs::change)) {
                tell(HistoryEvent::stepsChanged);
            }
            return;
        }
        passed_[count - 1].applyTo(bytesOf(*scratch_));
    }
}

// The confirmation of what keys or wheel have sent may come after they have come to rest, and after an undo.
void History::keepEndedRun() {
    // The oldest steps are dropped, in the extreme all of them.
    if (passed_.empty() || steps_.empty()) {
        return;
    }
    ByteDiff last = ByteDiff::between(bytesOf(std::as_const(*passing_)), bytesOf(std::as_const(*settled_)));
    if (!last.empty()) {
        passed_.push_back(std::move(last));
    }
    endedRun_.step = steps_.back();
    endedRun_.passed = std::exchange(passed_, {});
    if (endedRun_.end == nullptr) {
        endedRun_.end = std::make_unique<TuningSnapshot>();
    }
    *endedRun_.end = *settled_;
}

// Number of the step that ends in the state that the target has confirmed, after parting the run there.
std::optional<std::uint64_t> History::numberInEndedRun(const ImageTest& plays) {
    if (steps_.empty() || steps_.back() != endedRun_.step) {
        return std::nullopt;
    }
    const std::deque<ByteDiff>& passed = endedRun_.passed;
    const auto state = std::make_unique<TuningSnapshot>(*endedRun_.end);
    std::size_t count = passed.size();
    while (count > 0 && !plays(state->image)) {
        passed[--count].applyTo(bytesOf(*state));
    }
    if (count == 0) {
        return std::nullopt;
    }
    return count == passed.size() ? dropped_ + steps_.size() : partEndedRun(count, *state);
}

std::uint64_t History::partEndedRun(std::size_t count, const TuningSnapshot& middle) {
    const Step whole = *endedRun_.step;
    const TuningSnapshot& end = *endedRun_.end;
    const auto begin = std::make_unique<TuningSnapshot>(end);
    whole.change.applyTo(bytesOf(*begin));
    const std::uint64_t number = dropped_ + steps_.size();
    auto first = std::make_shared<Step>(whole);
    first->change = ByteDiff::between(bytesOf(std::as_const(*begin)), bytesOf(middle));
    if (first->change.empty()) {
        return number - 1;
    }
    first->text = describeStep(*begin, middle);
    first->text.shrink_to_fit();
    first->set = middle.currentSet;
    auto second = std::make_shared<Step>(whole);
    second->lead = {};
    second->change = ByteDiff::between(bytesOf(middle), bytesOf(end));
    second->text = describeStep(middle, end);
    second->text.shrink_to_fit();

    std::deque<ByteDiff> rest = std::move(endedRun_.passed);
    rest.erase(rest.begin(), rest.begin() + static_cast<std::ptrdiff_t>(count));
    const bool isDone = position_ == steps_.size();
    memory_ -= memoryOf(*steps_.back());
    steps_.pop_back();
    append(std::move(first));
    append(std::move(second));
    endedRun_.step = steps_.back();
    endedRun_.passed = std::move(rest);
    position_ += isDone ? 1 : 0;
    // They are about the end of the whole, which is that of the second.
    for (auto mark = marks_.rbegin(); mark != marks_.rend() && mark->number >= number; ++mark) {
        ++mark->number;
    }
    dropOldest();
    tell(HistoryEvent::stepsChanged);
    return number;
}

void History::markNotice(std::string text) {
    addMark(MarkKind::notice, lastDone(), std::move(text));
}

std::unique_ptr<const History::Trail> History::trail(std::size_t limit) const {
    auto trail = std::make_unique<Trail>();
    tuning_.takeSnapshot(trail->state);
    trail->begun = *begun_;
    trail->settled = *settled_;
    const auto current = steps_.begin() + static_cast<std::ptrdiff_t>(position_);
    const auto first = current - static_cast<std::ptrdiff_t>(std::min(limit, position_));
    const auto last = current + static_cast<std::ptrdiff_t>(std::min(limit, steps_.size() - position_));
    trail->done.assign(first, current);
    trail->undone.assign(current, last);
    return trail;
}

bool History::adopt(const Trail& trail, std::string text) {
    auto first = std::make_unique<TuningSnapshot>();
    if (isBusy() || !findFirst(trail, *first)) {
        return false;
    }
    endGesture();
    // The steps of the trail begin with its first state, not with the one after the last step of this run.
    addStep(std::move(text), *first, Needs::changeOrLead);
    dropUndone();
    for (const auto& step : trail.done) {
        append(step);
        ++position_;
    }
    for (const auto& step : trail.undone) {
        append(step);
    }
    *settled_ = trail.settled;
    *begun_ = trail.begun;
    beganElsewhere_ = true;
    dropOldest();
    show(trail.state);
    isChanged_ = true;
    commit();
    tell(HistoryEvent::stepsChanged);
    return true;
}

}  // namespace tessavo
