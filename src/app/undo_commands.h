#pragma once

#include <QObject>
#include <QString>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>

#include "app/comm_link.h"
#include "app/field_place.h"
#include "app/gesture_watch.h"
#include "app/text_undo.h"
#include "history/history.h"

namespace tessavo {

class CTessavoView;

/// Undo and redo in the window: ties the history to the input, the pages and the target, and carries out what
/// a person asks for.
///
/// Nothing is undone while a box, a dialog or a list is open, while a command has the line, or in the middle
/// of an edit whose warning waits for its answer; who asks for it then is told why. A drag ends first.
/// User-interface thread.
class UndoCommands : public QObject {
    Q_OBJECT

 public:
    struct Dependencies {
        History& history;
        TuningState& tuning;
        CommLink& link;
        CTessavoView& view;
    };

    /// Becomes the history's view and listener.
    /// \param dependencies outlive this object
    explicit UndoCommands(const Dependencies& dependencies);
    ~UndoCommands() override;

    [[nodiscard]] const History& history() const { return dependencies_.history; }
    [[nodiscard]] TuningState& tuning() const { return dependencies_.tuning; }
    [[nodiscard]] CTessavoView& view() const { return dependencies_.view; }

    /// Undoes or redoes the typing in the text box with the focus, if it has some; otherwise a step.
    /// \return whether anything was undone or redone
    bool undo();
    bool redo();
    /// Undoes or redoes until this many steps are done.
    bool goTo(std::size_t position);
    /// Whether steps can be undone and redone just now.
    [[nodiscard]] bool mayMove() const;

    /// Ends the step in the making before something else begins, as the opening of a file.
    void settle();
    /// A settings file was opened, or the sets were saved into one.
    void noteOpened(const std::filesystem::path& path);
    void noteSaved(const std::filesystem::path& path);
    /// Text of the step that opens a settings file, in UTF-8.
    [[nodiscard]] static std::string openedText(const std::filesystem::path& path);
    /// The sets of an earlier version of a settings file were taken; the file stays as it is.
    void noteOpenedVersion(const std::filesystem::path& path);

 Q_SIGNALS:
    /// What the history tells its listener.
    void historyChanged(tessavo::HistoryEvent event);
    /// Steps were undone or redone.
    /// \param text "Undone: Channel 7, Filter 3 gain −4.5 dB"
    /// \param place where the change is seen, for CTessavoView::showPlace(); nothing where no control shows it
    void moved(const QString& text, const std::optional<tessavo::FieldPlace>& place);
    /// A person has asked for what is not to be had just now.
    /// \param reason "Nothing is undone or redone while a command has the line"
    void refused(const QString& reason);

 protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

 private:
    bool mayMoveOrTell();
    bool move(const std::function<bool()>& act, const std::function<QString()>& text);
    void noteCommand(const CommandReport& report);
    void noteConfirmation(LiveWorker::State state);

    Dependencies dependencies_;
    TextUndo textUndo_;
    GestureWatch watch_;
};

}  // namespace tessavo
