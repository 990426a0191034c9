#include "app/file_news_display.h"

#include <QAction>
#include <QMenu>
#include <algorithm>
#include <utility>

#include "app/status_line.h"
#include "app/ui_file_dialogs.h"
#include "app/undo_commands.h"
#include "app/versions_dialog.h"

namespace tessavo {

namespace {

QString nameOf(const std::filesystem::path& path) {
    return textOf(path.filename());
}

}  // namespace

FileNewsDisplay::FileNewsDisplay(const Dependencies& dependencies)
    : dependencies_(dependencies), files_(dependencies.tuning, dependencies.commands, dependencies.folder) {
    files_.setListener([this](FileNews news, const std::filesystem::path& path) { take(news, path); });
    connect(&dependencies_.undo, &UndoCommands::historyChanged, this, &FileNewsDisplay::followHistory);
    showDocument();
}

FileNewsDisplay::~FileNewsDisplay() = default;

void FileNewsDisplay::addTo(QMenu& menu) {
    menu.addSeparator();
    saveAgain_ = menu.addAction(QStringLiteral("Save A&gain"));
    saveAgain_->setShortcut(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_S));
    connect(saveAgain_, &QAction::triggered, this, &FileNewsDisplay::saveAgain);
    QAction* const versions = menu.addAction(QStringLiteral("Earlier &Versions..."));
    connect(versions, &QAction::triggered, this, &FileNewsDisplay::showVersions);
    showDocument();
}

void FileNewsDisplay::resumeDocument(const std::filesystem::path& path,
                                     const std::optional<DocumentMemory>& memory) {
    files_.resumeDocument(path, memory);
    dependencies_.status.withdrawNotice(changedNotice_);
    resumeShortFile();
    showDocument();
    Q_EMIT documentChanged();
}

void FileNewsDisplay::take(FileNews news, const std::filesystem::path& path) {
    StatusLine& status = dependencies_.status;
    const History& history = dependencies_.undo.history();
    const std::uint64_t stepsBefore = history.dropped() + history.position();
    if (news == FileNews::loaded || news == FileNews::saved) {
        hasShortFile_ = false;
        showShortFile();
    }
    switch (news) {
        case FileNews::loaded:
            Q_EMIT opened();
            dependencies_.undo.noteOpened(path);
            break;
        case FileNews::saved:
            dependencies_.undo.noteSaved(path);
            Q_EMIT saved();
            break;
        case FileNews::notSaved:
            if (!isKept(path)) {
                break;
            }
            status.showNotice(
                {.text = nameOf(path) + QStringLiteral(" was not saved; what it held is kept"),
                 .kind = Notice::Kind::warning,
                 .buttons = {{QStringLiteral("Earlier Versions..."), [this] { showVersions(); }}}});
            break;
        case FileNews::notKept:
            status.showNotice({.text = QStringLiteral("What ") + nameOf(path) +
                                       QStringLiteral(" held before could not be kept"),
                               .kind = Notice::Kind::warning});
            break;
        case FileNews::opened:
            dependencies_.undo.noteOpenedVersion(path);
            break;
        case FileNews::broughtBack:
            break;
        case FileNews::notesUnreadable:
            tellOfNotes(path, " cannot be read; the channels have no names");
            break;
        case FileNews::notesDamaged:
            tellOfNotes(path, " is damaged and was not read");
            break;
        case FileNews::notesNewer:
            tellOfNotes(path, " is of a later version of Tessavo and was not read");
            break;
        case FileNews::notesNotSaved:
            tellOfNotes(path, " was not saved; the settings were");
            break;
    }
    if (news == FileNews::loaded || news == FileNews::saved) {
        status.withdrawNotice(changedNotice_);
        noteShortFile(history.dropped() + history.position() > stepsBefore);
    }
    showDocument();
    Q_EMIT documentChanged();
}

void FileNewsDisplay::tellOfNotes(const std::filesystem::path& path, const char* words) {
    dependencies_.status.showNotice(
        {.text = nameOf(path) + QLatin1String(words), .kind = Notice::Kind::warning});
}

void FileNewsDisplay::noteShortFile(bool isStep) {
    const History& history = dependencies_.undo.history();
    hasShortFile_ = !files_.document().shortFileText().empty();
    // Opened once more it is what it was.
    if (isStep || !stepsBeforeShortFile()) {
        shortFileStep_ = isStep ? history.steps()[history.position() - 1] : nullptr;
    }
    showShortFile();
}

// The step that opened the short file is known by its text only, and is gone where many came after it.
void FileNewsDisplay::resumeShortFile() {
    const auto& steps = dependencies_.undo.history().steps();
    const std::string text = UndoCommands::openedText(files_.document().path());
    const auto found =
        std::find_if(steps.rbegin(), steps.rend(),
                     [&](const std::shared_ptr<const Step>& step) { return step->text == text; });
    // What another short file has shown is no longer so.
    hasShortFile_ = false;
    showShortFile();
    hasShortFile_ = !files_.document().shortFileText().empty();
    shortFileStep_ = found != steps.rend() ? *found : nullptr;
    showShortFile();
}

std::optional<std::size_t> FileNewsDisplay::stepsBeforeShortFile() const {
    const History& history = dependencies_.undo.history();
    const auto& steps = history.steps();
    const auto done = steps.begin() + static_cast<std::ptrdiff_t>(history.position());
    const auto found = std::find(steps.begin(), done, shortFileStep_);
    return found != done ? std::optional(static_cast<std::size_t>(found - steps.begin())) : std::nullopt;
}

// What was left out stays left out until the sets are saved or those of before are back: this is no message
// that passes.
void FileNewsDisplay::showShortFile() {
    const bool isInForce = hasShortFile_ && (!shortFileStep_ || stepsBeforeShortFile());
    if (!isInForce) {
        dependencies_.status.withdrawNotice(shortFileNotice_);
        shortFileNotice_ = 0;
        return;
    }
    if (shortFileNotice_ != 0) {
        return;
    }
    Notice notice{.text = QString::fromStdString(files_.document().shortFileText()),
                  .kind = Notice::Kind::warning,
                  .stays = true};
    if (shortFileStep_) {
        notice.buttons = {{QStringLiteral("Undo"), [this] { takeBackShortFile(); }}};
    }
    shortFileNotice_ = dependencies_.status.showNotice(std::move(notice));
}

void FileNewsDisplay::followHistory(HistoryEvent event) {
    showDocument();
    // A mark changes no sets; and each notice that is shown makes one.
    if (event != HistoryEvent::marksChanged) {
        showShortFile();
    }
}

// Whatever was done since: the sets of before the file are what is asked for.
void FileNewsDisplay::takeBackShortFile() {
    if (const auto before = stepsBeforeShortFile(); before && !dependencies_.undo.goTo(*before)) {
        shortFileNotice_ = 0;
        showShortFile();
    }
}

bool FileNewsDisplay::isKept(const std::filesystem::path& path) const {
    return std::ranges::any_of(
        files_.versions().list(),
        [whole = wholePath(path)](const KeptVersion& version) { return version.path == whole; });
}

void FileNewsDisplay::showDocument() {
    const Document& document = files_.document();
    dependencies_.status.setDocument({.name = QString::fromStdString(document.name()),
                                      .toolTip = textOf(document.path()),
                                      .modified = files_.documentDiffers()});
    if (saveAgain_ != nullptr) {
        saveAgain_->setEnabled(!document.path().empty());
    }
}

void FileNewsDisplay::saveAgain() {
    dependencies_.undo.settle();
    const std::filesystem::path path = files_.document().path();
    switch (files_.saveAgain()) {
        case SaveAgain::saved:
            Q_EMIT savedAgain(textOf(path));
            break;
        case SaveAgain::changedOnDisk:
            dependencies_.status.withdrawNotice(changedNotice_);
            changedNotice_ = dependencies_.status.showNotice(
                {.text = nameOf(path) + QStringLiteral(" has changed on the disk"),
                 .kind = Notice::Kind::warning,
                 .buttons = {{QStringLiteral("Overwrite"), [this] { overwrite(); }}}});
            break;
        case SaveAgain::noDocument:
        case SaveAgain::failed:
            break;
    }
}

void FileNewsDisplay::overwrite() {
    dependencies_.undo.settle();
    const std::filesystem::path path = files_.document().path();
    if (files_.overwrite() == SaveAgain::saved) {
        Q_EMIT savedAgain(textOf(path));
    }
}

void FileNewsDisplay::showVersions() {
    dependencies_.undo.settle();
    VersionsDialog(files_, dependencies_.dialogs, &dependencies_.window).exec();
}

}  // namespace tessavo
