#pragma once

#include <QString>
#include <span>

#include "params/tuning_state.h"

namespace tessavo {

class CTessavoView;
class History;
class StatusLine;
class UndoCommands;

/// Writes whole sets for a command of the window: as one step, seen on the pages at once, and sent in Live Mode. Refused
/// where nothing may be undone either. User-interface thread.
class SetEdits {
 public:
    /// What came of writing.
    enum class Written {
        done,
        nothing,  ///< no byte differs
        refused,  ///< a notice has told why
    };
    struct Dependencies {
        TuningState& tuning;
        History& history;
        UndoCommands& undo;
        CTessavoView& view;
        StatusLine& status;
    };

    /// \param dependencies outlive this object
    explicit SetEdits(const Dependencies& dependencies) : dependencies_(dependencies) {}

    /// Whether sets may be written just now; a step in the making ends. Otherwise a notice tells why not.
    /// \param command its name: "Paste Channel"
    [[nodiscard]] bool mayWrite(const QString& command);
    /// Asks mayWrite() and writes the sets.
    /// \param command as for mayWrite()
    /// \param text of the step
    Written write(std::span<const SetReplacement> replacements, const QString& command, const QString& text);
    /// Tells something in the status bar.
    void tell(const QString& text, bool isWarning = false);

 private:
    Dependencies dependencies_;
};

}  // namespace tessavo
