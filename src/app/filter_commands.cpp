#include "app/filter_commands.h"

#include <QAction>
#include <QMenu>
#include <QSaveFile>
#include <array>

#include "app/compare_side.h"
#include "app/import_filters_dialog.h"
#include "app/ui_file_dialogs.h"
#include "app/undo_commands.h"
#include "base/file_dialogs.h"
#include "filtertext/filter_export.h"
#include "pages/form/channel_titles.h"

namespace tessavo {

namespace {

const FileFilter exportedTexts{
    "Filter texts (*.txt)|*.txt|Tables of filters (*.csv)|*.csv|CamillaDSP (*.yml)|*.yml||", "txt"};

QString importName() {
    return QStringLiteral("Import Filters");
}
QString exportName() {
    return QStringLiteral("Export Filters");
}

ExportForm formOf(const std::filesystem::path& path) {
    const QString ending = textOf(path.extension()).toLower();
    return ending == QStringLiteral(".csv")                                        ? ExportForm::csv
           : ending == QStringLiteral(".yml") || ending == QStringLiteral(".yaml") ? ExportForm::yaml
                                                                                   : ExportForm::text;
}

}  // namespace

FilterCommands::FilterCommands(const Dependencies& dependencies)
    : dependencies_(dependencies),
      edits_({dependencies.tuning, dependencies.history, dependencies.undo, dependencies.view,
              dependencies.status}),
      import_(new QAction(QStringLiteral("&Import Filters..."), this)),
      export_(new QAction(QStringLiteral("&Export Filters..."), this)) {
    connect(import_, &QAction::triggered, this, &FilterCommands::importFilters);
    connect(export_, &QAction::triggered, this, &FilterCommands::exportFilters);
}

void FilterCommands::addTo(QMenu& tools) const {
    tools.addActions({import_, export_});
}

void FilterCommands::importFilters() {
    if (!edits_.mayWrite(importName())) {
        return;
    }
    const TuningState& tuning = dependencies_.tuning;
    ImportFiltersDialog dialog({tuning, dependencies_.dialogs}, &dependencies_.window);
    if (dialog.exec() != QDialog::Accepted) {
        return;
    }
    const QString channel = channelTitle(tuning.notes(), dialog.channel());
    const std::array replacement{SetReplacement{tuning.currentSet(), dialog.record()}};
    const QString text = QStringLiteral("Import filters into ") + channel;
    if (edits_.write(replacement, importName(), text) == SetEdits::Written::nothing) {
        edits_.tell(channel + QStringLiteral(": the same as the filters already"));
    }
}

void FilterCommands::exportFilters() {
    const auto channel = lastSelected(dependencies_.tuning.selectionMask());
    if (!channel) {
        edits_.tell(exportName() + QStringLiteral(": no channel is chosen"), true);
        return;
    }
    // A drag that is under way belongs to what is written.
    dependencies_.undo.settle();
    const auto path = dependencies_.dialogs.askSavePath(exportedTexts);
    dependencies_.dialogs.resetLocale();
    if (path && !path->empty()) {
        writeFile(*path, *channel);
    }
}

void FilterCommands::writeFile(const std::filesystem::path& path, RecordChannel channel) {
    const TuningState& tuning = dependencies_.tuning;
    const QString title = channelTitle(tuning.notes(), channel);
    const QString heading =
        nameOfSet(tuning.currentParameterSet(), tuning.currentSet()) + QStringLiteral(", ") + title;
    const std::string text = tessavo::exportFilters(tuning.currentParameterSet().channels.at(channel.value),
                                                    formOf(path), {.title = heading.toStdString()});
    // Keeps the rights of a file that is written over.
    QSaveFile file(textOf(path));
    const auto size = static_cast<qint64>(text.size());
    const QString name = textOf(path.filename());
    if (!file.open(QIODevice::WriteOnly) || file.write(text.data(), size) != size || !file.commit()) {
        edits_.tell(QStringLiteral("%1 could not be written: %2").arg(name, file.errorString()), true);
        return;
    }
    edits_.tell(QStringLiteral("The filters of %1 are in %2").arg(title, name));
}

}  // namespace tessavo
