#pragma once

#include <QObject>

class QKeyEvent;

namespace tessavo {

enum class UndoDirection { undo, redo };

/// What the keys Ctrl+Z, Ctrl+Shift+Z and Ctrl+Y ask for; nothing for other keys.
/// \return whether the event is one of them
[[nodiscard]] bool isUndoKey(const QKeyEvent& event, UndoDirection& direction);

/// Lets a text box that is being edited undo and redo its own typing before anything else is undone. A box
/// whose text was applied has no typing of its own any more.
///
/// The toolkit's boxes keep the keys for themselves whether they have something to undo or not; here they get
/// them only where they have. User-interface thread.
class TextUndo : public QObject {
    Q_OBJECT

 public:
    /// Watches the input of the whole program for as long as it lives.
    TextUndo();
    ~TextUndo() override;

    /// Whether the control with the focus is a text box with typing of its own in this direction.
    [[nodiscard]] static bool isDue(UndoDirection direction);
    /// Undoes or redoes in that box.
    /// \return whether there was something
    static bool act(UndoDirection direction);

 protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
};

}  // namespace tessavo
