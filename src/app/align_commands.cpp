#include "app/align_commands.h"

#include <QAction>
#include <QMenu>
#include <array>

namespace tessavo {

namespace {

QString commandName() {
    return QStringLiteral("Align");
}

}  // namespace

AlignCommands::AlignCommands(const Dependencies& dependencies)
    : dependencies_(dependencies),
      edits_({dependencies.tuning, dependencies.history, dependencies.undo, dependencies.view,
              dependencies.status}),
      action_(new QAction(QStringLiteral("&Align..."), this)) {
    connect(action_, &QAction::triggered, this, &AlignCommands::align);
}

void AlignCommands::addTo(QMenu& tools) const {
    tools.addAction(action_);
}

void AlignCommands::align() {
    if (!edits_.mayWrite(commandName())) {
        return;
    }
    const TuningState& tuning = dependencies_.tuning;
    AlignDialog dialog(tuning, inputs_, &dependencies_.window);
    const bool isAccepted = dialog.exec() == QDialog::Accepted;
    inputs_ = dialog.inputs();
    if (!isAccepted) {
        return;
    }
    const std::array replacement{SetReplacement{tuning.currentSet(), dialog.record()}};
    if (edits_.write(replacement, commandName(), commandName()) == SetEdits::Written::nothing) {
        edits_.tell(commandName() + QStringLiteral(": the delays are these already"));
    }
}

}  // namespace tessavo
