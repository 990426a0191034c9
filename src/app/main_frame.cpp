#include "app/main_frame.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QDataStream>
#include <QDragEnterEvent>
#include <QMenu>
#include <QMenuBar>
#include <QMimeData>
#include <QMouseEvent>
#include <QPainter>
#include <QScreen>
#include <QSignalBlocker>
#include <QWindow>
#include <algorithm>
#include <array>
#include <chrono>

#include "app/about_dialog.h"
#include "app/comm_link.h"
#include "app/edit_menu.h"
#include "app/file_news_display.h"
#include "app/narrow_view.h"
#include "app/session_keeper.h"
#include "app/target_display.h"
#include "app/tessavo_view.h"
#include "app/ui_file_dialogs.h"
#include "app/undo_commands.h"
#include "comm/page/input_hold.h"
#include "controls/theme.h"

namespace tessavo {

namespace {

constexpr int menuHeight = 28;
// Menu, header, tab row, status bar and a strip of the page: below this nothing could be worked with.
constexpr int lowestHeight = 320;
constexpr int lowestWidth = 480;
// More than twice what a poll of a target that answers takes.
constexpr std::chrono::seconds pollPatience{2};
constexpr std::string_view exitQuestion =
    "The current settings will be lost!\r\n Do you want to save settings?";
constexpr std::string_view breakExchangeQuestion =
    "An exchange with the target is still running.\r\nDo you want to wait until it ends?";
constexpr std::string_view breakSoftwareQuestion =
    "The software image is still being sent!\r\n"
    "If you close now, the target may be left without software.\r\n"
    "Do you want to wait until it is sent?";

QString fileNameForMenu(const QString& path, qsizetype number) {
    QString shown = path;
    shown.replace(QLatin1Char('&'), QStringLiteral("&&"));
    return QStringLiteral("&%1 %2").arg(number).arg(shown);
}

std::filesystem::path versionsFolder(const std::filesystem::path& dataFolder) {
    return dataFolder.empty() ? dataFolder : dataFolder / "versions";
}

// The platform that draws pictures has a screen of its own size, which nobody looks at.
QSize roomOn(const QScreen* screen) {
    const bool seen = screen != nullptr && QGuiApplication::platformName() != QStringLiteral("offscreen");
    return seen ? screen->availableSize() : QSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX);
}

bool isWithinReach(const QRect& placement) {
    constexpr int farthest = 1 << 20;
    const std::array<int, 4> edges{placement.left(), placement.top(), placement.right(), placement.bottom()};
    return std::ranges::all_of(edges, [](int edge) { return edge > -farthest && edge < farthest; });
}

// The toolkit calculates with the numbers of a stored place before it looks whether they make sense.
bool isSensiblePlacement(const QByteArray& stored) {
    QDataStream stream(stored);
    stream.setVersion(QDataStream::Qt_4_0);
    quint32 mark = 0;
    quint16 major = 0;
    quint16 minor = 0;
    QRect frame;
    QRect normal;
    qint32 screen = 0;
    quint8 maximised = 0;
    quint8 wholeScreen = 0;
    qint32 screenWidth = 0;
    QRect client;
    stream >> mark >> major >> minor >> frame >> normal >> screen >> maximised >> wholeScreen >>
        screenWidth >> client;
    return isWithinReach(frame) && isWithinReach(normal) && isWithinReach(client);
}

}  // namespace

CMainFrame::CMainFrame(Dependencies dependencies)
    : QWidget(nullptr, Qt::Window | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowSystemMenuHint |
                           Qt::WindowMinimizeButtonHint | Qt::WindowCloseButtonHint),
      dependencies_(dependencies),
      view_(new CTessavoView(dependencies.tuning, dependencies.chartHost, this, dependencies.makePage)),
      status_(new StatusLine(this)),
      commands_(dependencies.tuning, dependencies.dialogs, dependencies.boxes, *view_),
      undo_(std::make_unique<UndoCommands>(
          UndoCommands::Dependencies{dependencies.history, dependencies.tuning, dependencies.link, *view_})),
      fileNews_(std::make_unique<FileNewsDisplay>(
          FileNewsDisplay::Dependencies{dependencies.tuning, commands_, *undo_, dependencies.dialogs,
                                        *status_, *this, versionsFolder(dependencies.dataFolder)})) {
    setObjectName(QStringLiteral("mainFrame"));
    setWindowTitle(QStringLiteral("Tessavo Velmira"));
    setAcceptDrops(true);
    makeMenus();
    fitInto(roomOn(screen()));
    view_->initialUpdate();
    status_->setKeyStates(readKeyStates());
    qApp->installEventFilter(this);

    targetDisplay_ = std::make_unique<TargetDisplay>(TargetDisplay::Dependencies{
        dependencies_.tuning, dependencies_.link, *view_, *status_, dependencies_.ports});
    followExchanges();
    followHistory();
}

CMainFrame::~CMainFrame() = default;

int CMainFrame::heightFor(int availableHeight) {
    // What the caption and the frame around the client area take on usual desktops.
    constexpr int captionHeight = 32;
    return std::clamp(availableHeight - captionHeight, lowestHeight, clientHeight);
}

int CMainFrame::widthFor(int availableWidth) {
    // What the frame around a client area takes that would otherwise fill the screen.
    constexpr int borders = 8;
    return availableWidth >= clientWidth ? clientWidth : std::max(availableWidth - borders, lowestWidth);
}

void CMainFrame::fitInto(QSize room) {
    setFixedSize(widthFor(room.width()), heightFor(room.height()));
    if (width() < clientWidth && narrow_ == nullptr) {
        narrow_ = new NarrowView(view_, this);
        narrow_->show();
    }
    layOut();
}

void CMainFrame::followScreen(QScreen* screen) {
    disconnect(screenConnection_);
    if (screen == nullptr) {
        return;
    }
    screenConnection_ = connect(screen, &QScreen::availableGeometryChanged, this,
                                [this, screen] { fitInto(roomOn(screen)); });
    fitInto(roomOn(screen));
}

void CMainFrame::layOut() {
    const QRect middle(0, menuHeight, width(), height() - menuHeight - StatusLine::barHeight);
    if (narrow_ != nullptr) {
        narrow_->setGeometry(middle);
    } else {
        view_->setGeometry(middle);
    }
    status_->setGeometry(0, height() - StatusLine::barHeight, width(), StatusLine::barHeight);
}

void CMainFrame::bringIntoSight(QWidget* control) {
    if (!view_->isAncestorOf(control)) {
        return;
    }
    view_->bringIntoSight(control);
    if (narrow_ != nullptr) {
        narrow_->bringIntoSight(control);
    }
}

void CMainFrame::makeMenus() {
    menuBar_ = new QMenuBar(this);
    menuBar_->setNativeMenuBar(false);
    menuBar_->setFixedSize(clientWidth, menuHeight);
    fileMenu_ = menuBar_->addMenu(QStringLiteral("&File"));
    const auto add = [this](QMenu* menu, const char* text, const QKeySequence& keys, auto act) {
        auto* action = menu->addAction(QLatin1String(text));
        action->setShortcut(keys);
        connect(action, &QAction::triggered, this, act);
        return action;
    };
    add(fileMenu_, "&Open", QKeySequence(Qt::CTRL | Qt::Key_O), &CMainFrame::open);
    add(fileMenu_, "&Save", QKeySequence(Qt::CTRL | Qt::Key_S), &CMainFrame::save);
    add(fileMenu_, "&Export", QKeySequence(Qt::CTRL | Qt::Key_E), [this] { commands_.exportImage(); });
    fileMenu_->addSeparator();
    recentEnd_ = fileMenu_->addSeparator();
    add(fileMenu_, "E&xit", QKeySequence(Qt::CTRL | Qt::Key_Q), [this] { close(); });
    fileNews_->addTo(*fileMenu_);
    fillRecentFiles();

    editMenu_ = std::make_unique<EditMenu>(*undo_, *menuBar_);
    makeToolsMenu();
    QMenu* help = menuBar_->addMenu(QStringLiteral("&Help"));
    add(help, "&About", QKeySequence(Qt::Key_F1), &CMainFrame::showAbout);
}

QAction* CMainFrame::action(const QString& text) const {
    for (QMenu* menu : menuBar_->findChildren<QMenu*>(Qt::FindDirectChildrenOnly)) {
        for (QAction* action : menu->actions()) {
            if (action->text().remove(QLatin1Char('&')) == text) {
                return action;
            }
        }
    }
    return nullptr;
}

void CMainFrame::fillRecentFiles() {
    for (QAction* action : fileMenu_->actions()) {
        if (action->data().isValid()) {
            fileMenu_->removeAction(action);
            action->deleteLater();
        }
    }
    const QStringList files = dependencies_.profile.recentFiles();
    for (qsizetype i = 0; i < files.size(); ++i) {
        auto* action = new QAction(fileNameForMenu(files[i], i + 1), fileMenu_);
        action->setData(files[i]);
        connect(action, &QAction::triggered, this, [this, path = files[i]] { openFile(path); });
        fileMenu_->insertAction(recentEnd_, action);
    }
    recentEnd_->setVisible(!files.isEmpty());
}

void CMainFrame::open() {
    undo_->settle();
    if (commands_.loadSettings()) {
        noteRecentFile(textOf(commands_.settingsPath()));
    }
}

void CMainFrame::save() {
    undo_->settle();
    if (commands_.saveSettings()) {
        noteRecentFile(textOf(commands_.settingsPath()));
    }
}

bool CMainFrame::openFile(const QString& path) {
    undo_->settle();
    const bool loaded = commands_.loadSettingsFrom(pathOf(path));
    if (loaded) {
        dependencies_.profile.addRecentFile(path);
    } else {
        dependencies_.profile.removeRecentFile(path);
    }
    fillRecentFiles();
    return loaded;
}

void CMainFrame::noteRecentFile(const QString& path) {
    dependencies_.profile.addRecentFile(path);
    fillRecentFiles();
}

void CMainFrame::showAbout() {
    AboutDialog(this).exec();
}

void CMainFrame::followExchanges() {
    CommLink* const link = &dependencies_.link;
    ForegroundTransfers* const commands = &link->foreground();
    connect(link, &CommLink::exchangeEnded, this, [this] {
        if (!dependencies_.link.exchangeRuns()) {
            pollEnded();
        }
    });
    pollLimit_.setSingleShot(true);
    connect(&pollLimit_, &QTimer::timeout, this, &CMainFrame::pollEnded);
    // What has run the exchange has to return first.
    connect(link, &CommLink::workerState, this, &CMainFrame::closeOnceQuiet, Qt::QueuedConnection);
    connect(commands, &ForegroundTransfers::ended, this, &CMainFrame::closeOnceQuiet, Qt::QueuedConnection);
    connect(commands, &ForegroundTransfers::ended, this, [this] {
        if (closing_) {
            // The command that has run the exchange has to return first.
            QMetaObject::invokeMethod(this, &CMainFrame::closeAfterExchange, Qt::QueuedConnection);
        }
    });
}

void CMainFrame::followHistory() {
    connect(fileNews_.get(), &FileNewsDisplay::savedAgain, this, &CMainFrame::noteRecentFile);
    // The newest notice wins; what was told is found in the list of the steps.
    connect(status_, &StatusLine::noticeShown, this,
            [this](const QString& text) { dependencies_.history.markNotice(text.toStdString()); });
    connect(
        undo_.get(), &UndoCommands::moved, this,
        [this](const QString& text, const std::optional<FieldPlace>& place) {
            Notice notice{.text = text};
            if (place) {
                notice.buttons = {{QStringLiteral("Show"), [this, at = *place] { view_->showPlace(at); }}};
            }
            // The list itself shows which steps are undone.
            const QSignalBlocker unlisted(status_);
            status_->showNotice(std::move(notice));
        });
    keeper_ = std::make_unique<SessionKeeper>(
        SessionKeeper::Dependencies{dependencies_.tuning, dependencies_.history, *undo_, *fileNews_, *view_,
                                    *status_, dependencies_.dataFolder});
}

bool CMainFrame::lineIsQuiet() const {
    return !dependencies_.link.foreground().running() && !dependencies_.link.liveTransferRuns();
}

bool CMainFrame::mayBreakOff() {
    if (lineIsQuiet()) {
        return true;
    }
    const bool software =
        dependencies_.link.foreground().activity() == ForegroundTransfers::Activity::sendingSoftware;
    // The default button waits: a key pressed too soon must not break anything off.
    const BoxAnswer answer = dependencies_.boxes.show(
        software ? breakSoftwareQuestion : breakExchangeQuestion, BoxIcon::error, BoxButtons::yesNoCancel);
    closeOnceQuiet_ = answer == BoxAnswer::yes;
    if (closeOnceQuiet_) {
        // The exchange may have ended while the question was open.
        QMetaObject::invokeMethod(this, &CMainFrame::closeOnceQuiet, Qt::QueuedConnection);
    }
    return answer == BoxAnswer::no;
}

void CMainFrame::closeOnceQuiet() {
    if (!closeOnceQuiet_ || !lineIsQuiet()) {
        return;
    }
    if (QApplication::activeModalWidget() != nullptr) {
        // A box tells what the exchange came to: that is read first.
        constexpr std::chrono::milliseconds lookAgain{100};
        QTimer::singleShot(lookAgain, this, &CMainFrame::closeOnceQuiet);
        return;
    }
    closeOnceQuiet_ = false;
    close();
}

// Nobody has started this exchange, so nobody is asked about it: it gets the moment that it needs.
void CMainFrame::closeAfterPoll() {
    closing_ = true;
    hold_ = std::make_unique<InputHold>();
    pollLimit_.start(pollPatience);
}

void CMainFrame::pollEnded() {
    if (!hold_) {
        return;
    }
    pollLimit_.stop();
    hold_.reset();
    // A live transfer may have waited for the line.
    if (mayBreakOff()) {
        closeAfterExchange();
    } else {
        closing_ = false;
    }
}

void CMainFrame::closeAfterExchange() {
    keeper_->finish();
    dependencies_.profile.setWindowPlacement(saveGeometry());
    hide();
    qApp->quit();
}

bool CMainFrame::mayClose() {
    switch (dependencies_.boxes.show(exitQuestion, BoxIcon::error, BoxButtons::yesNoCancel)) {
        case BoxAnswer::yes:
            commands_.saveSettingsAtExit();
            return true;
        case BoxAnswer::no:
            return true;
        default:
            return false;
    }
}

void CMainFrame::restoreWindowPlacement() {
    const QSize fixed = size();
    const QByteArray placement = dependencies_.profile.windowPlacement();
    if (isSensiblePlacement(placement) && restoreGeometry(placement)) {
        // The place may come with another size, or as large as the screen.
        setWindowState(Qt::WindowNoState);
        setFixedSize(fixed);
    }
}

void CMainFrame::closeEvent(QCloseEvent* event) {
    event->ignore();
    if (closing_) {
        return;
    }
    const bool atOnce = nothingToLose_ && nothingToLose_();
    const bool quiet = lineIsQuiet();
    // A live transfer may begin while the second question is open.
    if (!atOnce && (!mayBreakOff() || !mayClose() || (quiet && !mayBreakOff()))) {
        return;
    }
    if (dependencies_.link.foreground().running()) {
        closing_ = true;
        dependencies_.link.cancelExchanges();
        return;
    }
    if (!atOnce && lineIsQuiet() && dependencies_.link.exchangeRuns()) {
        closeAfterPoll();
        return;
    }
    event->accept();
    closeAfterExchange();
}

void CMainFrame::paintEvent(QPaintEvent*) {
    QPainter(this).fillRect(rect(), QColor::fromRgb(theme::window));
}

void CMainFrame::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    // The screens of a laptop come and go while the window is open.
    connect(windowHandle(), &QWindow::screenChanged, this, &CMainFrame::followScreen, Qt::UniqueConnection);
    followScreen(screen());
}

void CMainFrame::resizeEvent(QResizeEvent*) {
    layOut();
}

// The background acts as a caption. Only what no control has taken arrives here.
void CMainFrame::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) {
        dragStart_ = event->globalPosition().toPoint() - pos();
    }
}

void CMainFrame::mouseMoveEvent(QMouseEvent* event) {
    if (!dragStart_ || (event->buttons() & Qt::LeftButton) == 0) {
        return;
    }
    const QPoint target = event->globalPosition().toPoint() - *dragStart_;
    // A hand that clicks trembles; and a system that were asked to move the window at the press would go on
    // after a quick release that it has not seen.
    if (!dragging_ && (target - pos()).manhattanLength() < QApplication::startDragDistance()) {
        return;
    }
    if (!dragging_ && windowHandle() != nullptr && windowHandle()->startSystemMove()) {
        dragStart_.reset();
        return;
    }
    dragging_ = true;
    move(target);
}

void CMainFrame::mouseReleaseEvent(QMouseEvent*) {
    dragStart_.reset();
    dragging_ = false;
}

void CMainFrame::dragEnterEvent(QDragEnterEvent* event) {
    if (event->mimeData()->hasUrls() && event->mimeData()->urls().size() == 1 &&
        event->mimeData()->urls().constFirst().isLocalFile()) {
        event->acceptProposedAction();
    }
}

void CMainFrame::dropEvent(QDropEvent* event) {
    event->acceptProposedAction();
    // Whoever dragged the file here waits for the end of this event, and a box would keep it waiting.
    const QString path = event->mimeData()->urls().constFirst().toLocalFile();
    QMetaObject::invokeMethod(
        this, [this, path] { openFile(path); }, Qt::QueuedConnection);
}

bool CMainFrame::event(QEvent* event) {
    if (event->type() == QEvent::WindowActivate) {
        status_->setKeyStates(readKeyStates());
    }
    return QWidget::event(event);
}

bool CMainFrame::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::KeyRelease) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_CapsLock || key == Qt::Key_NumLock || key == Qt::Key_ScrollLock) {
            status_->setKeyStates(readKeyStates());
        }
    }
    if (event->type() == QEvent::FocusIn && watched->isWidgetType()) {
        // Only for the keyboard: what the mouse has pressed must not move away under it.
        const Qt::FocusReason reason = static_cast<QFocusEvent*>(event)->reason();
        if (reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason ||
            reason == Qt::ShortcutFocusReason) {
            bringIntoSight(static_cast<QWidget*>(watched));
        }
    }
    return QWidget::eventFilter(watched, event);
}

}  // namespace tessavo
