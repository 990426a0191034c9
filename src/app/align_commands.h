#pragma once

#include <QObject>

#include "app/align_dialog.h"
#include "app/set_edits.h"

class QAction;
class QMenu;
class QWidget;

namespace tessavo {

/// The command that sets the delays from the places of the loudspeakers, with its menu entry. It knows what was typed as long
/// as the program runs. User-interface thread.
class AlignCommands : public QObject {
    Q_OBJECT

 public:
    struct Dependencies {
        TuningState& tuning;
        History& history;
        UndoCommands& undo;
        CTessavoView& view;
        StatusLine& status;
        QWidget& window;  ///< that the dialog belongs to
    };

    /// \param dependencies outlive this object
    explicit AlignCommands(const Dependencies& dependencies);

    void addTo(QMenu& tools) const;

    /// Asks for the places and writes the delays into the current set, as one step.
    void align();

 private:
    Dependencies dependencies_;
    SetEdits edits_;
    AlignInputs inputs_;
    QAction* action_;
};

}  // namespace tessavo
