#pragma once

#include <QObject>
#include <filesystem>

#include "app/set_edits.h"

class QAction;
class QMenu;
class QWidget;

namespace tessavo {

class IFileDialogs;

/// The commands that bring filters of other programs into a channel and the channel's filters to other programs, with
/// their menu entries. User-interface thread.
class FilterCommands : public QObject {
    Q_OBJECT

 public:
    struct Dependencies {
        TuningState& tuning;
        History& history;
        UndoCommands& undo;
        CTessavoView& view;
        StatusLine& status;
        IFileDialogs& dialogs;
        QWidget& window;  ///< that the dialog belongs to
    };

    /// \param dependencies outlive this object
    explicit FilterCommands(const Dependencies& dependencies);

    void addTo(QMenu& tools) const;

    /// Shows a filter text, asks where its filters go, and writes them as one step.
    void importFilters();
    /// Asks for a file and writes the bands and crossovers of the last selected channel into it, in the form that its
    /// ending tells. The file is written whole or stays as it was.
    void exportFilters();

 private:
    void writeFile(const std::filesystem::path& path, RecordChannel channel);

    Dependencies dependencies_;
    SetEdits edits_;
    QAction* import_;
    QAction* export_;
};

}  // namespace tessavo
