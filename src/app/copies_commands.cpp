#include "app/copies_commands.h"

#include <QDateTime>
#include <QEvent>
#include <QWidget>
#include <algorithm>
#include <utility>

#include "app/back_up_dialog.h"
#include "app/comm_link.h"
#include "app/copy_parts.h"
#include "app/restore_dialog.h"
#include "app/status_line.h"
#include "app/tessavo_view.h"
#include "app/ui_file_dialogs.h"
#include "comm/page/communication.h"
#include "copies/backup_folder.h"
#include "copies/copy_text.h"
#include "copies/known_backups.h"
#include "copies/written_sets.h"

namespace tessavo {

namespace {

constexpr std::string_view backUpTitle = "Back Up Target";
// More than a round takes of which every answer is late.
constexpr Milliseconds liveRoundWait{30000};
constexpr Milliseconds lookAgain{20};

QString utf8(const std::string& text) {
    return QString::fromStdString(text);
}

QDateTime localTime(WallTime time) {
    const auto sinceEpoch = std::chrono::duration_cast<std::chrono::milliseconds>(time.time_since_epoch());
    return QDateTime::fromMSecsSinceEpoch(sinceEpoch.count());
}

// No system minds this name, and folders sort by time.
std::string proposedName(WallTime time) {
    return localTime(time).toString(QStringLiteral("'target' yyyy-MM-dd HH-mm-ss")).toStdString();
}

WallTime midnightBefore(WallTime time) {
    return WallTime(std::chrono::milliseconds(localTime(time).date().startOfDay().toMSecsSinceEpoch()));
}

// Looks again within the hour: clocks are set, and a computer that sleeps counts no time.
std::chrono::milliseconds waitForMidnight(WallTime time) {
    constexpr std::chrono::milliseconds longest = std::chrono::hours(1);
    const QDateTime here = localTime(time);
    const std::chrono::milliseconds wait(here.msecsTo(here.date().addDays(1).startOfDay()) + 1);
    return std::clamp(wait, std::chrono::milliseconds(1), longest);
}

/// What a backup has not: in words for a notice, and as lines that say why.
struct Missing {
    QStringList names;
    QStringList lines;
};

Missing missingIn(const TargetCopy& copy) {
    Missing missing;
    for (const SetCopy& set : copy.sets) {
        if (set.state != SetState::sound) {
            missing.names << utf8(targetSetText(set.targetSet));
            missing.lines << sentenceStart(troubleText(set)) + QLatin1Char('.');
        }
    }
    if (!copy.versions) {
        missing.names << QStringLiteral("the versions");
        missing.lines << QStringLiteral("The versions: they could not be read from the target.");
    }
    return missing;
}

}  // namespace

/// While it lives a command is under way, and the window asks before it closes.
class CopiesCommands::Run {
 public:
    explicit Run(CopiesCommands& commands) : commands_(commands) {
        commands_.running_ = true;
        commands_.clock_.reset();
        commands_.dependencies_.window.installEventFilter(&commands_);
    }
    ~Run() {
        commands_.dependencies_.window.removeEventFilter(&commands_);
        commands_.running_ = false;
        commands_.ended();
    }
    Run(const Run&) = delete;
    Run& operator=(const Run&) = delete;

 private:
    CopiesCommands& commands_;
};

CopiesCommands::CopiesCommands(Dependencies dependencies, QObject* parent)
    : QObject(parent),
      dependencies_(std::move(dependencies)),
      backUp_(new QAction(QStringLiteral("&Back Up Target..."), this)),
      restore_(new QAction(QStringLiteral("&Restore Target..."), this)) {
    connect(backUp_, &QAction::triggered, this, &CopiesCommands::backUpTarget);
    connect(restore_, &QAction::triggered, this, &CopiesCommands::restoreTarget);
    CommLink* const link = &dependencies_.link;
    connect(link, &CommLink::exchangeEnded, this, [this](LineUser user, ExchangeEnd end) {
        if (user == LineUser::command) {
            portNotOpened_ = end == ExchangeEnd::portNotOpened;
        }
    });
    connect(link, &CommLink::commandReported, this, &CopiesCommands::noteReport);
    connect(link, &CommLink::portNameChanged, this, [this] {
        hardware_.reset();
        offerBackUp();
    });
    midnight_.setSingleShot(true);
    connect(&midnight_, &QTimer::timeout, this, &CopiesCommands::offerBackUp);
    // The pages are made after the window has been painted.
    connect(&dependencies_.view, &CTessavoView::firstPainted, this, &CopiesCommands::meetPage,
            Qt::QueuedConnection);
}

CopiesCommands::~CopiesCommands() = default;

WallTime CopiesCommands::now() const {
    return dependencies_.now ? dependencies_.now() : std::chrono::system_clock::now();
}

bool CopiesCommands::mayBegin() {
    if (running_ || dependencies_.link.foreground().running()) {
        return false;
    }
    if (dependencies_.tuning.liveMode()) {
        dependencies_.boxes.showPlain(turnOffLiveModeText);
        return false;
    }
    return true;
}

void CopiesCommands::backUpTarget() {
    if (!mayBegin()) {
        return;
    }
    const auto folder = dependencies_.dialogs.askNewFolder(backUpTitle, proposedName(now()));
    dependencies_.dialogs.resetLocale();
    // The question may have stood for a while.
    if (!folder || folder->empty() || !mayBegin()) {
        return;
    }
    const Run run(*this);
    BackUpDialog dialog(&dependencies_.window);
    backUpDialog_ = &dialog;
    dialog.show();
    std::string trouble;
    jobs_.runAndWait([&] { trouble = backupFolderTrouble(*folder); });
    if (!trouble.empty()) {
        dialog.hide();
        tellFolderTrouble(*folder, trouble);
        return;
    }
    BackUp read = readTarget(dialog);
    if (dialog.cancelled()) {
        tellNotice(QStringLiteral("The backup was cancelled; nothing was written."), false);
    } else if (read.copy.isEmpty()) {
        tellNotice(QStringLiteral("Not backed up: the target gave none of its sets."), true);
    } else {
        writeCopy(dialog, *folder, std::move(read.copy));
    }
}

BackUp CopiesCommands::readTarget(BackUpDialog& dialog) {
    portNotOpened_ = false;
    CopyWatch watch = dialog.watch();
    // A port that does not open does not do so for the next set either, and each try shows a box.
    watch.mayGoOn = [this, &dialog] { return !dialog.cancelled() && !portNotOpened_; };
    watch.nothingSent = [this] { return portNotOpened_; };
    BackUp read = backUp(dependencies_.link.foreground(), watch);
    read.copy.port = dependencies_.link.portName();
    read.copy.time = now();
    return read;
}

void CopiesCommands::writeCopy(BackUpDialog& dialog, const std::filesystem::path& folder, TargetCopy copy) {
    dialog.showWriting();
    std::string trouble;
    jobs_.runAndWait([&] {
        trouble = writeBackup(folder, copy);
        if (trouble.empty()) {
            // What is not remembered can still be chosen by its folder.
            KnownBackups(knownBackupsFolder(dependencies_.dataFolder)).add(folder);
        }
    });
    if (!trouble.empty()) {
        dialog.hide();
        tellFolderTrouble(folder, trouble);
        return;
    }
    if (copy.versions) {
        // It may be another one than that whose versions were read before.
        hardware_ = copy.versions->hardware;
    }
    made_.push_back({copy.time, copy.port,
                     copy.versions ? std::optional(copy.versions->hardware) : std::nullopt,
                     copy.everySetRead()});
    offerBackUp();
    const Missing missing = missingIn(copy);
    QString text = QStringLiteral("Backed up to ") + folderText(folder);
    if (missing.names.isEmpty()) {
        dialog.hide();
        tellNotice(text + QLatin1Char('.'), false);
        return;
    }
    text += QStringLiteral(", but not ") + missing.names.join(QStringLiteral(", ")) + QLatin1Char('.');
    tellNotice(text, true);
    dialog.showMissing(text, missing.lines);
}

void CopiesCommands::tellFolderTrouble(const std::filesystem::path& folder, const std::string& trouble) {
    const QString text = textOf(folder) + QStringLiteral(": ") + utf8(trouble) + QLatin1Char('.');
    dependencies_.boxes.showError(text.toStdString());
}

void CopiesCommands::restoreTarget() {
    if (!mayBegin()) {
        return;
    }
    const Run run(*this);
    RestoreDialog dialog({.boxes = dependencies_.boxes,
                          .restore = [this](std::span<const SetToWrite> sets,
                                            const CopyWatch& watch) { return restoreSets(sets, watch); },
                          .askFolder = [this] { return askFolder(); },
                          .sendCurrentSet =
                              [this] {
                                  // A window that closed now would take the set back before it is sent.
                                  closeAfter_ = false;
                                  dependencies_.view.turnOnLiveMode();
                              }},
                         &dependencies_.window);
    connect(&dialog, &RestoreDialog::cancelAsked, this, [this] { clock_.interrupt(); });
    restoreDialog_ = &dialog;
    jobs_.run([this, folder = dependencies_.dataFolder] {
        calls_.call([this, sources = restoreSources(folder)] {
            if (restoreDialog_) {
                restoreDialog_->setSources(sources);
            }
        });
    });
    dialog.exec();
}

std::optional<RestoreSource> CopiesCommands::askFolder() {
    const auto folder = dependencies_.dialogs.askFolder(openBackupTitle);
    dependencies_.dialogs.resetLocale();
    if (!folder || folder->empty()) {
        return std::nullopt;
    }
    RestoreFolder read;
    jobs_.runAndWait([&] { read = readRestoreFolder(*folder); });
    if (!read.source) {
        tellFolderTrouble(*folder, read.trouble);
    }
    return std::move(read.source);
}

// A round that began before Live Mode was switched off would put its image between one of ours and the command
// to save that.
void CopiesCommands::awaitLiveRound() {
    const Milliseconds giveUp = clock_.now() + liveRoundWait;
    while (dependencies_.link.liveTransferRuns() && clock_.now() < giveUp && clock_.sleep(lookAgain)) {
    }
}

RestoreReport CopiesCommands::restoreSets(std::span<const SetToWrite> sets, const CopyWatch& watch) {
    clock_.reset();
    awaitLiveRound();
    portNotOpened_ = false;
    CopyWatch watchWithPort = watch;
    watchWithPort.nothingSent = [this] { return portNotOpened_; };
    // Whatever was confirmed before, the target is about to hold something else.
    dependencies_.link.forgetConfirmation();
    RestoreReport report =
        tessavo::restoreSets(dependencies_.link.foreground(), clock_, sets, watchWithPort,
                             [this](const SetToWrite& set) { keepWritten(set.targetSet, set.image); });
    // A live transfer that was under way at the start may have been confirmed meanwhile.
    dependencies_.link.forgetConfirmation();
    return report;
}

void CopiesCommands::noteReport(const CommandReport& report) {
    if (report.command != Command::saveSet || report.result != CommandReport::Result::done) {
        return;
    }
    // The target saves what Live Mode sent last. It took the command with the digest of the program's image,
    // so that this is the one where nothing is known to be confirmed.
    keepWritten(report.targetSet, dependencies_.link.confirmedImage().value_or(dependencies_.tuning.image()));
}

void CopiesCommands::keepWritten(std::uint8_t targetSet, const ParameterImage& image) {
    if (dependencies_.dataFolder.empty()) {
        return;
    }
    jobs_.run([this, folder = writtenSetsFolder(dependencies_.dataFolder), time = now(), targetSet,
               port = dependencies_.link.portName(), image] {
        if (WrittenSets(folder, [time] { return time; }).keep(targetSet, port, image)) {
            return;
        }
        calls_.call([this] {
            if (!std::exchange(toldNotKept_, true)) {
                tellNotice(utf8(std::string(writtenNotKeptText)), true);
            }
        });
    });
}

bool CopiesCommands::eventFilter(QObject* watched, QEvent* event) {
    if (watched == &dependencies_.window && event->type() == QEvent::Close) {
        event->ignore();
        askBeforeClosing();
        return true;
    }
    if (watched == page_ && event->type() == QEvent::Show) {
        // Another day may have begun.
        offerBackUp();
    }
    return QObject::eventFilter(watched, event);
}

void CopiesCommands::askBeforeClosing() {
    const bool restores = restoreDialog_ && restoreDialog_->running();
    const bool reads = backUpDialog_ && !backUpDialog_->finished();
    if (!restores && !reads) {
        // Only a dialog stands there, which waits for its answer.
        closeAfter_ = true;
        if (restoreDialog_) {
            restoreDialog_->reject();
        }
        if (backUpDialog_) {
            backUpDialog_->reject();
        }
        return;
    }
    if (asking_) {
        return;
    }
    asking_ = true;
    // The default button waits: a key pressed too soon must not break anything off.
    const BoxAnswer answer =
        dependencies_.boxes.show(breakCopyQuestion, BoxIcon::error, BoxButtons::yesNoCancel);
    asking_ = false;
    closeAfter_ = answer != BoxAnswer::cancel;
    if (answer != BoxAnswer::no) {
        return;
    }
    if (restoreDialog_) {
        restoreDialog_->cancel();
    }
    if (backUpDialog_) {
        backUpDialog_->cancel();
    }
}

void CopiesCommands::ended() {
    if (std::exchange(closeAfter_, false)) {
        // The command has to return first.
        QMetaObject::invokeMethod(&dependencies_.window, &QWidget::close, Qt::QueuedConnection);
    }
}

void CopiesCommands::meetPage() {
    page_ = qobject_cast<CCommunication*>(
        dependencies_.view.pages()[static_cast<std::size_t>(Page::communication)]);
    if (!page_) {
        return;
    }
    connect(page_, &CCommunication::backUpAsked, this, &CopiesCommands::backUpTarget);
    connect(page_, &CCommunication::versionsRead, this, [this](const TargetVersions& versions) {
        hardware_ = versions.hardware;
        offerBackUp();
    });
    page_->installEventFilter(this);
    offerBackUp();
}

bool CopiesCommands::madeInThisRun(WallTime since) const {
    return std::ranges::any_of(made_, [&](const MadeBackup& made) {
        return made.time >= since && made.everySetRead && made.port == dependencies_.link.portName() &&
               (!hardware_ || made.hardware == hardware_);
    });
}

// Shown again only where it is known that there is none: a disk may take its time.
void CopiesCommands::offerBackUp() {
    if (!page_) {
        return;
    }
    const quint64 question = ++lastQuestion_;
    const WallTime time = now();
    const WallTime today = midnightBefore(time);
    midnight_.start(waitForMidnight(time));
    // Without a port there is no target.
    if (dependencies_.link.portName().empty() || madeInThisRun(today)) {
        page_->offerBackUp(false);
        return;
    }
    jobs_.run([this, question, today, folder = knownBackupsFolder(dependencies_.dataFolder),
               port = dependencies_.link.portName(), hardware = hardware_] {
        const bool made = KnownBackups(folder).madeSince(today, port, hardware);
        calls_.call([this, question, made] {
            if (page_ && question == lastQuestion_) {
                page_->offerBackUp(!made);
            }
        });
    });
}

void CopiesCommands::tellNotice(const QString& text, bool isWarning) {
    dependencies_.status.showNotice(
        {.text = text, .kind = isWarning ? Notice::Kind::warning : Notice::Kind::info});
}

}  // namespace tessavo
