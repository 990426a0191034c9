#pragma once

#include <QObject>
#include <QPointer>
#include <memory>

class QAction;
class QMenu;
class QMenuBar;

namespace tessavo {

class ChannelNames;
class HistoryDialog;
class UndoCommands;

/// The menu "Edit": undo and redo with what they are about, the list of all steps, and the names of the
/// channels. The keys also work while another window of the program is in front. User-interface thread.
class EditMenu : public QObject {
    Q_OBJECT

 public:
    /// Adds the menu behind those that the bar has.
    /// \param commands, bar outlive this object
    EditMenu(UndoCommands& commands, QMenuBar& bar);
    ~EditMenu() override;

    /// The menu, for entries behind its own.
    [[nodiscard]] QMenu& menu() { return *menu_; }

    /// Shows the list of all steps, or brings it to the front.
    void showHistory();

 private:
    void follow();
    void showTexts(bool typingCounts);
    void makeRoom();

    UndoCommands& commands_;
    QMenu* menu_;
    QAction* undo_;
    QAction* redo_;
    QPointer<HistoryDialog> dialog_;
    std::unique_ptr<ChannelNames> names_;
};

}  // namespace tessavo
