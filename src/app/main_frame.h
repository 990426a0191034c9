#pragma once

#include <QWidget>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>

#include "app/profile.h"
#include "app/status_line.h"
#include "app/tab_pages.h"
#include "base/message_box.h"
#include "comm/port_watch.h"
#include "params/settings_commands.h"

class QAction;
class QMenu;
class QMenuBar;
class QScreen;

namespace tessavo {

class AbCommands;
class AlignCommands;
class CommLink;
class CompareCommands;
class CompareCopies;
class CopiesCommands;
class CTessavoView;
class EditMenu;
class FileNewsDisplay;
class FilterCommands;
class FrameClosing;
class History;
class IChartHost;
class NarrowView;
class SessionKeeper;
class TargetDisplay;
class ToolsMenu;
class UndoCommands;

/// The program's one window: menu, view, status bar. Its size is fixed; on a screen too low for it only the
/// page scrolls, on one too narrow everything between menu and status bar scrolls across.
class CMainFrame : public QWidget {
    Q_OBJECT

 public:
    static constexpr int clientWidth = 1024;
    static constexpr int clientHeight = 736;

    struct Dependencies {
        TuningState& tuning;
        History& history;  ///< of that tuning
        IMessageBox& boxes;
        IFileDialogs& dialogs;
        Profile& profile;
        CommLink& link;
        IChartHost& chartHost;
        PageFactory makePage = {};  ///< pages without content when empty
        PortWatch::System ports = systemPorts();
        /// Where recovery file and earlier versions are kept; nothing is when empty.
        std::filesystem::path dataFolder = {};
    };

    explicit CMainFrame(Dependencies dependencies);
    ~CMainFrame() override;

    [[nodiscard]] CTessavoView& view() { return *view_; }
    [[nodiscard]] StatusLine& statusLine() { return *status_; }
    [[nodiscard]] SettingsCommands& commands() { return commands_; }
    [[nodiscard]] UndoCommands& undoCommands() { return *undo_; }
    [[nodiscard]] AbCommands& abCommands() { return *abCommands_; }
    [[nodiscard]] FileNewsDisplay& fileNews() { return *fileNews_; }
    [[nodiscard]] CompareCommands& compareCommands() { return *compare_; }
    [[nodiscard]] FilterCommands& filterCommands() { return *filters_; }
    /// The menu's action of this text, for the keyboard and for tests; null where there is none.
    [[nodiscard]] QAction* action(const QString& text) const;

    /// Loads a file that came from the command line, the list of recent files or a drop.
    /// \return whether it was loaded; a box has told why not
    bool openFile(const QString& path);

    /// When this answers true the frame closes without a question.
    void setNothingToLose(std::function<bool()> nothingToLose);

    /// Puts the frame where it was when the program last ended, if that place is still on a screen.
    void restoreWindowPlacement();

    /// Takes the size that fits into this much room on the screen, in pixels.
    void fitInto(QSize room);

    /// Height and width of the frame on a screen with this much room, in pixels.
    static int heightFor(int availableHeight);
    static int widthFor(int availableWidth);

 protected:
    void closeEvent(QCloseEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

 private:
    void makeMenus();
    void makeToolsMenu();
    void followScreen(QScreen* screen);
    void layOut();
    void bringIntoSight(QWidget* control);
    void open();
    void save();
    void fillRecentFiles();
    void showAbout();
    void followHistory();
    void noteRecentFile(const QString& path);
    void leave();

    Dependencies dependencies_;
    QMenuBar* menuBar_ = nullptr;
    QMenu* fileMenu_ = nullptr;
    QAction* recentEnd_ = nullptr;
    CTessavoView* view_ = nullptr;
    StatusLine* status_ = nullptr;
    NarrowView* narrow_ = nullptr;  ///< holds the view once a screen was too narrow
    QMetaObject::Connection screenConnection_;
    SettingsCommands commands_;
    std::unique_ptr<UndoCommands> undo_;
    std::unique_ptr<FileNewsDisplay> fileNews_;
    std::unique_ptr<EditMenu> editMenu_;
    std::unique_ptr<ToolsMenu> toolsMenu_;
    std::unique_ptr<CompareCopies> compareCopies_;
    std::unique_ptr<CompareCommands> compare_;
    std::unique_ptr<FilterCommands> filters_;
    std::unique_ptr<AlignCommands> align_;
    std::unique_ptr<CopiesCommands> copies_;
    std::unique_ptr<AbCommands> abCommands_;
    std::unique_ptr<SessionKeeper> keeper_;
    std::unique_ptr<TargetDisplay> targetDisplay_;
    std::unique_ptr<FrameClosing> closing_;
    std::optional<QPoint> dragStart_;  ///< of the window under the pointer, while the background is pressed
    bool dragging_ = false;            ///< the pointer has left the place of the press
};

}  // namespace tessavo
