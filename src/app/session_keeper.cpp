#include "app/session_keeper.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QLocale>
#include <algorithm>
#include <memory>
#include <utility>

#include "app/tessavo_view.h"
#include "app/ui_file_dialogs.h"
#include "app/wall_time_text.h"

namespace tessavo {

namespace {

constexpr std::chrono::milliseconds longestWrite{2000};

}  // namespace

SessionKeeper::SessionKeeper(Dependencies dependencies)
    : dependencies_(std::move(dependencies)), store_(dependencies_.folder) {
    if (!dependencies_.now) {
        dependencies_.now = [] { return std::chrono::system_clock::now(); };
    }
    if (dependencies_.folder.empty()) {
        return;
    }
    RecoveryStart start = store_.beginRun(dependencies_.now());
    waiting_ = std::move(start.list.waiting);
    tellTroubles(start.list);
    if (!start.isFree) {
        offerNext();
        tell(QStringLiteral("The recovery file of an earlier run cannot be moved: nothing is kept"),
             Notice::Kind::warning);
        return;
    }
    writer_ = std::make_unique<RecoveryWriter>(store_.currentFile(), [this](const std::error_code& error) {
        calls_.call([this, reason = QString::fromStdString(error.message())] {
            tell(QStringLiteral("The recovery file cannot be written: ") + reason, Notice::Kind::warning);
        });
    });
    soon_.setSingleShot(true);
    soon_.setInterval(delay);
    connect(&soon_, &QTimer::timeout, this, &SessionKeeper::write);
    connect(&dependencies_.undo, &UndoCommands::historyChanged, this, &SessionKeeper::noteHistory);
    connect(&dependencies_.files, &FileNewsDisplay::documentChanged, this, &SessionKeeper::scheduleWrite);
    connect(&dependencies_.files, &FileNewsDisplay::opened, this, &SessionKeeper::noteOpened);
    connect(&dependencies_.files, &FileNewsDisplay::saved, this, &SessionKeeper::noteSaved);
    connect(&dependencies_.view, &CTessavoView::filterModeChanged, this, &SessionKeeper::scheduleWrite);
    // The system is about to end the session, and may end the program at any moment after this.
    connect(qApp, &QGuiApplication::commitDataRequest, this, &SessionKeeper::finish, Qt::DirectConnection);
    offerNext();
}

SessionKeeper::~SessionKeeper() {
    finish();
}

void SessionKeeper::noteHistory(HistoryEvent event) {
    if (event == HistoryEvent::stepsChanged) {
        isUnsaved_ = !isNothingToRestore();
    }
    if (event != HistoryEvent::marksChanged) {
        scheduleWrite();
    }
}

// The sets stand in a file now, but those that it has replaced are only in the steps.
void SessionKeeper::noteOpened() {
    isBuried_ = isBuried_ || isUnsaved_;
}

void SessionKeeper::noteSaved() {
    isBuried_ = false;
    // The notes beside the sets may have found no place.
    isUnsaved_ = !isNothingToRestore();
}

// Later changes do not put it off.
void SessionKeeper::scheduleWrite() {
    if (writer_ && !soon_.isActive()) {
        soon_.start();
    }
}

bool SessionKeeper::isNothingToRestore() const {
    if (isBuried_) {
        return false;
    }
    const History& history = dependencies_.history;
    const FileHistory& files = dependencies_.files.files();
    const bool isStart = history.steps().empty() && !history.canUndo();
    return files.document().path().empty() ? isStart : !files.documentDiffers();
}

void SessionKeeper::write() {
    soon_.stop();
    if (!writer_) {
        return;
    }
    if (isNothingToRestore()) {
        writer_->remove();
        return;
    }
    auto state = std::make_shared<RecoveryState>();
    state->trail = dependencies_.history.trail(recoveryStepLimit);
    state->filterMode = dependencies_.tuning.filterMode();
    const Document& document = dependencies_.files.files().document();
    state->documentPath = document.path();
    state->documentMemory = document.memory();
    state->time = dependencies_.now();
    state->process = static_cast<std::uint64_t>(QCoreApplication::applicationPid());
    writer_->put(std::move(state));
}

bool SessionKeeper::isWritten() {
    write();
    return writer_ && writer_->flush(longestWrite);
}

void SessionKeeper::finish() {
    isWritten();
}

void SessionKeeper::tell(const QString& text, Notice::Kind kind) {
    dependencies_.status.showNotice({.text = text, .kind = kind});
}

// What waits there is named each time: nobody else would tell that it is there.
void SessionKeeper::tellTroubles(const RecoveryList& list) {
    const auto tellOf = [this](const QString& text, const std::vector<std::filesystem::path>& files) {
        if (!files.empty()) {
            tell(text + textOf(files.front().filename()), Notice::Kind::warning);
        }
    };
    tellOf(QStringLiteral("A recovery file cannot be read: "), list.unreadable);
    tellOf(QStringLiteral("A later version of Tessavo wrote and restores this recovery file: "), list.newer);
    tellOf(QStringLiteral("A damaged recovery file was set aside: "), list.damaged);
}

void SessionKeeper::offerNext() {
    if (waiting_.empty()) {
        return;
    }
    const QString moment = minuteText(waiting_.front().time, dependencies_.now());
    dependencies_.status.showNotice({.text = QStringLiteral("Tessavo ended without saving at ") + moment,
                                     .kind = Notice::Kind::warning,
                                     .buttons = {{QStringLiteral("Restore"), [this] { restore(); }},
                                                 {QStringLiteral("Discard"), [this] { discard(); }}},
                                     .dismissible = false,
                                     .stays = true});
}

void SessionKeeper::restore() {
    if (!dependencies_.undo.mayMove()) {
        offerNext();
        return;
    }
    const WaitingRecovery one = waiting_.front();
    const auto state = RecoveryStore::take(one);
    if (!state) {
        waiting_.erase(waiting_.begin());
        offerNext();
        tell(QStringLiteral("The recovery file is damaged or gone: ") + textOf(one.file.filename()),
             Notice::Kind::warning);
        return;
    }
    dependencies_.undo.settle();
    const QString moment = minuteText(one.time, dependencies_.now());
    if (!dependencies_.history.adopt(*state->trail,
                                     (QStringLiteral("Restored the tuning of ") + moment).toStdString())) {
        offerNext();
        return;
    }
    waiting_.erase(waiting_.begin());
    isBuried_ = true;
    dependencies_.view.showFilterMode(state->filterMode);
    dependencies_.files.resumeDocument(one.documentPath, state->documentMemory);
    // The earlier file is needed until this run has one of its own.
    if (isWritten()) {
        RecoveryStore::discard(one);
    }
    offerNext();
    tell(QStringLiteral("Restored the tuning of ") + moment, Notice::Kind::info);
}

void SessionKeeper::discard() {
    const WaitingRecovery one = waiting_.front();
    waiting_.erase(waiting_.begin());
    const std::error_code trouble = RecoveryStore::discard(one);
    offerNext();
    if (trouble) {
        tell(QStringLiteral("The recovery file cannot be removed: ") +
                 QString::fromStdString(trouble.message()),
             Notice::Kind::warning);
    }
}

}  // namespace tessavo
