#include <QMenu>

#include "app/ab_commands.h"
#include "app/align_commands.h"
#include "app/comm_link.h"
#include "app/compare_commands.h"
#include "app/compare_copies.h"
#include "app/copies_commands.h"
#include "app/edit_menu.h"
#include "app/filter_commands.h"
#include "app/main_frame.h"
#include "app/tools_menu.h"

namespace tessavo {

void CMainFrame::makeToolsMenu() {
    toolsMenu_ = std::make_unique<ToolsMenu>(*menuBar_);
    QMenu& menu = toolsMenu_->menu();
    compare_ = std::make_unique<CompareCommands>(
        CompareCommands::Dependencies{dependencies_.tuning, dependencies_.history, *undo_, *view_, *status_,
                                      dependencies_.link, dependencies_.boxes, dependencies_.dialogs, *this});
    compare_->addTo(editMenu_->menu(), menu);
    compareCopies_ = std::make_unique<CompareCopies>(
        CompareCopies::Dependencies{dependencies_.tuning, dependencies_.link.foreground(),
                                    dependencies_.dialogs, *this, dependencies_.dataFolder});
    compare_->addSources([this] { return compareCopies_->sources(); });
    connect(compare_.get(), &CompareCommands::opened, compareCopies_.get(), &CompareCopies::look);
    menu.addSeparator();
    filters_ = std::make_unique<FilterCommands>(FilterCommands::Dependencies{
        dependencies_.tuning, dependencies_.history, *undo_, *view_, *status_, dependencies_.dialogs, *this});
    filters_->addTo(menu);
    align_ = std::make_unique<AlignCommands>(AlignCommands::Dependencies{
        dependencies_.tuning, dependencies_.history, *undo_, *view_, *status_, *this});
    align_->addTo(menu);
    copies_ = std::make_unique<CopiesCommands>(CopiesCommands::Dependencies{
        dependencies_.tuning, dependencies_.link, dependencies_.boxes, dependencies_.dialogs, *view_,
        *status_, *this, dependencies_.dataFolder});
    menu.addSeparator();
    menu.addAction(&copies_->backUpAction());
    menu.addAction(&copies_->restoreAction());
    abCommands_ = std::make_unique<AbCommands>(
        AbCommands::Dependencies{dependencies_.tuning, dependencies_.history, dependencies_.link, *undo_,
                                 *view_, *status_, *toolsMenu_});
}

}  // namespace tessavo
