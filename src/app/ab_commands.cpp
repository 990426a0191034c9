#include "app/ab_commands.h"

#include <array>

#include "app/comm_link.h"
#include "app/status_line.h"
#include "app/tessavo_view.h"
#include "app/tools_menu.h"
#include "app/undo_commands.h"
#include "history/element_words.h"

namespace tessavo {

namespace {

QChar letter(AbSide side) {
    return QLatin1Char(letterOf(side));
}

QString decibels(unsigned steps) {
    return QString::number(steps * matchStepDb, 'f', 1) + QLatin1String(" dB");
}

QString missingText(const LevelMatch& match) {
    const std::array<std::size_t, 1> lowest{match.lowest->value};
    return QStringLiteral("; %1 are missing, %2 is at \u22126 dB already")
        .arg(decibels(match.missingSteps), QString::fromStdString(channelList(lowest)));
}

}  // namespace

AbCommands::AbCommands(const Dependencies& dependencies)
    : dependencies_(dependencies),
      memories_(dependencies.tuning, dependencies.history),
      shownSet_(dependencies.tuning.currentSet()) {
    dependencies_.menu.addSides({.store = [this] { store(); },
                                 .switchSides = [this] { switchSides(); },
                                 .setLevelMatched = [this](bool on) { setLevelMatched(on); }});
    follow();
    // Terms may be left from a window before this one.
    playDueSteps();
    showSides();
}

void AbCommands::follow() {
    CommLink* const link = &dependencies_.link;
    connect(&dependencies_.undo, &UndoCommands::historyChanged, this, &AbCommands::noteHistory);
    connect(link, &CommLink::plainImageNeeded, this, [this] {
        isLevelMatched_ = false;
        showSides();
    });
    connect(link, &CommLink::plainImageEnded, this, &AbCommands::noteSaving);
}

void AbCommands::noteHistory(HistoryEvent event) {
    if (event == HistoryEvent::stepsChanged) {
        playDueSteps();
        showSides();
        return;
    }
    if (event == HistoryEvent::tuningChanged && shownSet_ != dependencies_.tuning.currentSet()) {
        // Choosing a set sends nothing, so that another level alone is no reason to send it.
        shownSet_ = dependencies_.tuning.currentSet();
        const bool isOnItsWay = dependencies_.tuning.updatePending() || dependencies_.link.liveTransferRuns();
        if (isOnItsWay) {
            playDueSteps();
        } else {
            dependencies_.link.played().setLoweredSteps(dueSteps(memories_.heard()));
            dependencies_.link.notePlayedCopy();
        }
        showSides();
    }
}

void AbCommands::showSides() {
    const AbSide heard = memories_.heard();
    dependencies_.menu.showSides(letter(heard), letter(otherSide(heard)), isLevelMatched_);
}

bool AbCommands::mayAct() {
    if (dependencies_.undo.mayMove()) {
        dependencies_.undo.settle();
        // What a drag has posted may have opened a box.
        if (dependencies_.undo.mayMove()) {
            return true;
        }
    }
    tell(QStringLiteral(
        "A and B stay as they are: answer or close what is open first, or wait for the target"));
    return false;
}

void AbCommands::store() {
    if (!mayAct()) {
        return;
    }
    memories_.store();
    playDueSteps();
    tell(QStringLiteral("Stored %1").arg(letter(memories_.heard())) + levelText());
}

void AbCommands::switchSides() {
    if (!mayAct()) {
        return;
    }
    const AbSide from = memories_.heard();
    const AbMemories::Switch done = memories_.switchSides([this, from](const TuningSnapshot& state) {
        {
            const SemaphoreHold hold = dependencies_.link.played().hold();
            dependencies_.link.played().setLoweredSteps(dueSteps(otherSide(from)));
            dependencies_.tuning.restore(state);
        }
        dependencies_.view.refreshPages();
    });
    showSides();
    QString text = done.isCopy
                       ? QStringLiteral("%1 begins as a copy of %2").arg(letter(done.to), letter(from))
                       : QStringLiteral("Switched to %1").arg(letter(done.to));
    if (done.hadChanges && done.isCopy) {
        text += QStringLiteral(" with the changes since F8");
    }
    text += levelText();
    if (done.hadChanges && done.isCopy) {
        text += QStringLiteral("; %1 stays as it was stored").arg(letter(from));
    } else if (done.hadChanges) {
        text +=
            QStringLiteral(". Changes to %1 since F8 were left out; Undo brings them back").arg(letter(from));
    }
    tell(text);
}

void AbCommands::setLevelMatched(bool on) {
    isLevelMatched_ = on;
    playDueSteps();
    showSides();
    const bool hasBoth = memories_.has(AbSide::a) && memories_.has(AbSide::b);
    if (!on) {
        tell(QStringLiteral("Not level matched any more: %1 plays as it is").arg(letter(memories_.heard())));
    } else if (!hasBoth) {
        tell(QStringLiteral("Level matched as soon as A and B are both stored"));
    } else {
        tell(QStringLiteral("%1 is heard").arg(letter(memories_.heard())) + levelText());
    }
}

unsigned AbCommands::dueSteps(AbSide heard) const {
    return isLevelMatched_ ? memories_.levelMatch(heard).loweredSteps : 0;
}

void AbCommands::playDueSteps() {
    PlayedCopy& played = dependencies_.link.played();
    const unsigned steps = dueSteps(memories_.heard());
    if (steps != played.terms().loweredSteps) {
        played.setLoweredSteps(steps);
        dependencies_.tuning.raiseUpdatePending();
        dependencies_.link.notePlayedCopy();
    }
}

void AbCommands::noteSaving(bool confirmed) {
    tell(confirmed
             ? QStringLiteral("Level matching is off, so that the set is saved as it is")
             : QStringLiteral("Not saved: the target has not confirmed the set without level matching, which "
                              "is off now"));
}

void AbCommands::tell(const QString& text) {
    dependencies_.status.showNotice({.text = text});
}

QString AbCommands::levelText() {
    const bool hasBoth = memories_.has(AbSide::a) && memories_.has(AbSide::b);
    if (!isLevelMatched_ || !hasBoth) {
        return {};
    }
    const LevelMatch match = memories_.levelMatch(memories_.heard());
    if (!match.isComparable) {
        return QStringLiteral(", not level matched: one of both has no loudness");
    }
    QString text = match.loweredSteps > 0
                       ? QStringLiteral(", level matched: %1 lower").arg(decibels(match.loweredSteps))
                       : QStringLiteral(", level matched: not lowered");
    return match.missingSteps > 0 ? text + missingText(match) : text;
}

}  // namespace tessavo
