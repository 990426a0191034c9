#include <QMenu>
#include <QMenuBar>

#include "app/copies_commands.h"
#include "app/main_frame.h"

namespace tessavo {

void CMainFrame::makeToolsMenu() {
    auto* const copies =
        new CopiesCommands({dependencies_.tuning, dependencies_.link, dependencies_.boxes,
                            dependencies_.dialogs, *view_, *status_, *this, dependencies_.dataFolder},
                           this);
    QMenu* const tools = menuBar_->addMenu(QStringLiteral("&Tools"));
    tools->addAction(&copies->backUpAction());
    tools->addAction(&copies->restoreAction());
}

}  // namespace tessavo
