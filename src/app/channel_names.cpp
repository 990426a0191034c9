#include "app/channel_names.h"

#include <QAction>
#include <QMenu>

#include "app/channel_names_dialog.h"
#include "app/tessavo_view.h"
#include "app/undo_commands.h"

namespace tessavo {

ChannelNames::ChannelNames(UndoCommands& commands, QMenu& menu) : commands_(commands) {
    QAction* const action = menu.addAction(QStringLiteral("Channel &Names..."));
    connect(action, &QAction::triggered, this, &ChannelNames::edit);
    connect(&commands_, &UndoCommands::historyChanged, this, [this](HistoryEvent event) {
        if (event != HistoryEvent::marksChanged) {
            follow();
        }
    });
}

void ChannelNames::edit() {
    commands_.settle();
    ChannelNamesDialog dialog(commands_.tuning(), commands_.view().window());
    if (dialog.exec() == QDialog::Accepted) {
        // What the hand does that pressed the button is no part of it.
        commands_.settle();
    }
}

// They came with a file, from the dialog, or from a step that was undone.
void ChannelNames::follow() {
    const FileNotes& notes = commands_.tuning().notes();
    if (shown_ != notes) {
        shown_ = notes;
        commands_.view().refreshPages();
    }
}

}  // namespace tessavo
