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
#include <utility>

#include "app/ab_commands.h"
#include "app/about_dialog.h"
#include "app/align_commands.h"
#include "app/comm_link.h"
#include "app/compare_commands.h"
#include "app/compare_copies.h"
#include "app/copies_commands.h"
#include "app/edit_menu.h"
#include "app/file_news_display.h"
#include "app/filter_commands.h"
#include "app/frame_closing.h"
#include "app/narrow_view.h"
#include "app/session_keeper.h"
#include "app/target_display.h"
#include "app/tessavo_view.h"
#include "app/tools_menu.h"
#include "app/ui_file_dialogs.h"
#include "app/undo_commands.h"
#include "controls/theme.h"

namespace tessavo {

namespace {

constexpr int menuHeight = 28;
// Menu, header, tab row, status bar and a strip of the page: below this nothing could be worked with.
constexpr int lowestHeight = 320;
constexpr int lowestWidth = 480;

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
    closing_ = std::make_unique<FrameClosing>(
        FrameClosing::Dependencies{.link = dependencies_.link,
                                   .boxes = dependencies_.boxes,
                                   .saveAtExit = [this] { commands_.saveSettingsAtExit(); },
                                   .close = [this] { close(); },
                                   .leave = [this] { leave(); }});
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
    connect(undo_.get(), &UndoCommands::refused, status_, [this](const QString& reason) {
        status_->showNotice({.text = reason, .kind = Notice::Kind::warning});
    });
    keeper_ = std::make_unique<SessionKeeper>(
        SessionKeeper::Dependencies{dependencies_.tuning, dependencies_.history, *undo_, *fileNews_, *view_,
                                    *status_, dependencies_.dataFolder});
}

void CMainFrame::setNothingToLose(std::function<bool()> nothingToLose) {
    closing_->setNothingToLose(std::move(nothingToLose));
}

void CMainFrame::leave() {
    keeper_->finish();
    dependencies_.profile.setWindowPlacement(saveGeometry());
    hide();
    qApp->quit();
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
    if (closing_->request()) {
        event->accept();
        leave();
    }
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
