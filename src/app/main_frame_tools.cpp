#include <QMenu>
#include <algorithm>
#include <iterator>
#include <utility>

#include "app/ab_commands.h"
#include "app/comm_link.h"
#include "app/compare_commands.h"
#include "app/copies_commands.h"
#include "app/copy_sources.h"
#include "app/edit_menu.h"
#include "app/main_frame.h"
#include "app/tools_menu.h"

namespace tessavo {

namespace {

// A set of the target or of a copy, as the comparison lists it.
CompareSource toCompare(CopySource source) {
    const QString title =
        QString::fromStdString(source.group) + QStringLiteral(", ") + QString::fromStdString(source.title);
    return {title, QString::fromStdString(source.group), [read = std::move(source.read)] {
                CopiedSet copied = read();
                return CompareReading{copied.set, {}, QString::fromStdString(copied.trouble)};
            }};
}

}  // namespace

void CMainFrame::makeToolsMenu() {
    toolsMenu_ = std::make_unique<ToolsMenu>(*menuBar_);
    QMenu& menu = toolsMenu_->menu();
    compare_ = std::make_unique<CompareCommands>(
        CompareCommands::Dependencies{dependencies_.tuning, dependencies_.history, *undo_, *view_, *status_,
                                      dependencies_.link, dependencies_.boxes, dependencies_.dialogs, *this});
    compare_->addTo(editMenu_->menu(), menu);
    compare_->addSources([this] {
        const TuningState& tuning = dependencies_.tuning;
        const ParameterSet& base = tuning.currentParameterSet();
        std::vector<CompareSource> sources;
        const auto add = [&sources](std::vector<CopySource> copies) {
            std::ranges::transform(copies, std::back_inserter(sources),
                                   [](CopySource& copy) { return toCompare(std::move(copy)); });
        };
        add(targetSources(tuning, dependencies_.link.foreground(), base));
        add(backupSources(dependencies_.dataFolder, base));
        add(writtenSources(dependencies_.dataFolder, base));
        return sources;
    });
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
