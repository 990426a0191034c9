#include "app/undo_commands.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMenuBar>
#include <memory>
#include <string>

#include "app/tessavo_view.h"
#include "app/ui_file_dialogs.h"

namespace tessavo {

namespace {

QString fileNameOf(const std::filesystem::path& path) {
    return textOf(path.filename());
}

QString afterWord(const char* word, std::string_view text) {
    return QLatin1String(word) + QLatin1String(": ") + textOf(text);
}

std::string nameOfTargetSet(std::uint8_t set) {
    return set == 0 ? "the default set" : "set " + std::to_string(set);
}

}  // namespace

UndoCommands::UndoCommands(const Dependencies& dependencies)
    : dependencies_(dependencies), watch_(dependencies.history) {
    CTessavoView& view = dependencies_.view;
    dependencies_.history.setView({.chooseSet = [&view](std::uint32_t set) { view.showSet(set); },
                                   .refresh = [&view] { view.refreshPages(); },
                                   .commitSoon = [this] { watch_.commitSoon(); }});
    dependencies_.history.setListener([this](HistoryEvent event) { Q_EMIT historyChanged(event); });
    CommLink* const link = &dependencies_.link;
    connect(link, &CommLink::commandReported, this, &UndoCommands::noteCommand);
    connect(link, &CommLink::workerState, this, &UndoCommands::noteConfirmation);
    // What a person does with the other hand is no part of what the command does.
    connect(&link->foreground(), &ForegroundTransfers::started, this, &UndoCommands::settle);
    // In front of what keeps all input from the windows meanwhile.
    connect(&link->foreground(), &ForegroundTransfers::started, this,
            [this] { qApp->installEventFilter(this); });
    connect(&link->foreground(), &ForegroundTransfers::ended, this,
            [this] { qApp->removeEventFilter(this); });
}

UndoCommands::~UndoCommands() {
    dependencies_.history.setView({});
    dependencies_.history.setListener({});
}

bool UndoCommands::mayMove() const {
    const QWidget* const popup = QApplication::activePopupWidget();
    // The menu itself may be open still when a screen reader chooses its entry.
    const bool isFree = popup == nullptr || qobject_cast<const QMenuBar*>(popup->parentWidget()) != nullptr;
    return isFree && QApplication::activeModalWidget() == nullptr && !dependencies_.tuning.changeRuns() &&
           !dependencies_.link.foreground().running();
}

bool UndoCommands::mayMoveOrTell() {
    if (mayMove()) {
        return true;
    }
    Q_EMIT refused(
        dependencies_.link.foreground().running()
            ? QStringLiteral("Nothing is undone or redone while a command has the line")
            : QStringLiteral("Nothing is undone or redone while a question, a dialog or a list is open"));
    return false;
}

bool UndoCommands::eventFilter(QObject* watched, QEvent* event) {
    // The first event of a key, whatever is to become of it. An open box has its own use for keys.
    if (event->type() == QEvent::ShortcutOverride && QApplication::activeModalWidget() == nullptr) {
        const auto& key = *static_cast<QKeyEvent*>(event);
        UndoDirection direction{};
        if (isUndoKey(key, direction) && !key.isAutoRepeat()) {
            mayMoveOrTell();
        }
    }
    return QObject::eventFilter(watched, event);
}

bool UndoCommands::move(const std::function<bool()>& act, const std::function<QString()>& text) {
    if (!mayMoveOrTell()) {
        return false;
    }
    watch_.finish();
    // What the drag has posted may have opened a box.
    if (!mayMoveOrTell()) {
        return false;
    }
    const QString words = text();
    auto before = std::make_unique<TuningSnapshot>();
    dependencies_.tuning.takeSnapshot(*before);
    {
        // What is played may change with the steps.
        const SemaphoreHold hold = dependencies_.link.played().hold();
        if (!act()) {
            return false;
        }
    }
    auto after = std::make_unique<TuningSnapshot>();
    dependencies_.tuning.takeSnapshot(*after);
    // An edit of another set is seen there also after it was undone.
    Q_EMIT moved(words, findPlace(changedPlaces(*before, *after)));
    return true;
}

bool UndoCommands::undo() {
    if (!mayMoveOrTell()) {
        return false;
    }
    History& history = dependencies_.history;
    return TextUndo::act(UndoDirection::undo) ||
           move([&history] { return history.undo(); },
                [&history] { return afterWord("Undone", history.undoText()); });
}

bool UndoCommands::redo() {
    if (!mayMoveOrTell()) {
        return false;
    }
    History& history = dependencies_.history;
    return TextUndo::act(UndoDirection::redo) ||
           move([&history] { return history.redo(); },
                [&history] { return afterWord("Redone", history.redoText()); });
}

bool UndoCommands::goTo(std::size_t position) {
    History& history = dependencies_.history;
    return move([&history, position] { return history.goTo(position); },
                [&history, position] {
                    return position == 0 || position > history.steps().size()
                               ? QStringLiteral("Back at the start")
                               : afterWord("Went to", history.steps()[position - 1]->text);
                });
}

void UndoCommands::settle() {
    watch_.finish();
}

void UndoCommands::noteOpened(const std::filesystem::path& path) {
    const std::string name = fileNameOf(path).toStdString();
    dependencies_.history.commit(openedText(path));
    dependencies_.history.markSaved("same as " + name);
}

std::string UndoCommands::openedText(const std::filesystem::path& path) {
    return "Opened " + fileNameOf(path).toStdString();
}

void UndoCommands::noteSaved(const std::filesystem::path& path) {
    dependencies_.history.markSaved("saved " + fileNameOf(path).toStdString());
}

void UndoCommands::noteOpenedVersion(const std::filesystem::path& path) {
    dependencies_.history.commit("Opened an earlier version of " + fileNameOf(path).toStdString());
}

void UndoCommands::noteCommand(const CommandReport& report) {
    if (report.command != Command::readSet) {
        return;
    }
    const std::string name = nameOfTargetSet(report.targetSet);
    switch (report.result) {
        case CommandReport::Result::done:
            dependencies_.history.commit("Read " + name + " of the target");
            break;
        case CommandReport::Result::wrongDigest:
            // The sets stay, and the target would get the image as it came.
            dependencies_.history.commit("Damaged " + name + " of the target plays");
            break;
        case CommandReport::Result::exchangeFailed:
            break;
    }
}

void UndoCommands::noteConfirmation(LiveWorker::State state) {
    if (state != LiveWorker::State::confirmed) {
        return;
    }
    const CommLink& link = dependencies_.link;
    dependencies_.history.markConfirmedWhere(
        [&link](const ParameterImage& image) { return link.isConfirmed(image); },
        link.played().isPlain() ? "confirmed" : "confirmed, level matched");
}

}  // namespace tessavo
