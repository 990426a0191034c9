#include "app/set_edits.h"

#include "app/status_line.h"
#include "app/tessavo_view.h"
#include "app/undo_commands.h"
#include "history/history.h"

namespace tessavo {

bool SetEdits::mayWrite(const QString& command) {
    UndoCommands& undo = dependencies_.undo;
    if (undo.mayMove()) {
        undo.settle();
    }
    // What a drag has posted may have opened a box.
    if (undo.mayMove()) {
        return true;
    }
    tell(command + QStringLiteral(": not now, while a box is open or a command has the line"), true);
    return false;
}

SetEdits::Written SetEdits::write(std::span<const SetReplacement> replacements, const QString& command,
                                  const QString& text) {
    if (!mayWrite(command)) {
        return Written::refused;
    }
    if (!dependencies_.tuning.replaceSets(replacements)) {
        return Written::nothing;
    }
    dependencies_.history.commit(text.toStdString());
    dependencies_.view.refreshPages();
    return Written::done;
}

void SetEdits::tell(const QString& text, bool isWarning) {
    dependencies_.status.showNotice(
        {.text = text, .kind = isWarning ? Notice::Kind::warning : Notice::Kind::info});
}

}  // namespace tessavo
