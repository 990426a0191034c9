#pragma once

#include <QObject>

#include "params/file_notes.h"

class QMenu;

namespace tessavo {

class UndoCommands;

/// The names of the channels in the window: the entry "Channel Names..." of a menu, and pages that tell other
/// names as soon as there are some. User-interface thread.
class ChannelNames : public QObject {
    Q_OBJECT

 public:
    /// Adds its entry to the end of the menu.
    /// \param commands, menu outlive this object
    ChannelNames(UndoCommands& commands, QMenu& menu);

    /// Asks for names and note. What a person changes is one step.
    void edit();

 private:
    void follow();

    UndoCommands& commands_;
    FileNotes shown_;  ///< which the pages tell
};

}  // namespace tessavo
