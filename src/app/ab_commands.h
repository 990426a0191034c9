#pragma once

#include <QObject>
#include <QString>
#include <cstdint>

#include "history/ab_memories.h"

namespace tessavo {

class CommLink;
class CTessavoView;
class StatusLine;
class ToolsMenu;
class UndoCommands;

/// A and B in the window: stores and switches the two memories of the current set as a person asks for it, and makes
/// the copy that Live Mode sends level matched. Notices tell what each did and which side is heard.
///
/// Nothing is stored or switched while nothing could be undone. A drag ends first. User-interface thread.
class AbCommands : public QObject {
    Q_OBJECT

 public:
    struct Dependencies {
        TuningState& tuning;
        History& history;
        CommLink& link;
        UndoCommands& undo;
        CTessavoView& view;
        StatusLine& status;
        ToolsMenu& menu;
    };

    /// Adds its entries to the menu.
    /// \param dependencies outlive this object
    explicit AbCommands(const Dependencies& dependencies);

    void store();
    void switchSides();
    /// Lowers the louder side in the copy that is sent, or no more. Is off at first, and after a set was saved in the
    /// target.
    void setLevelMatched(bool on);

    [[nodiscard]] bool isLevelMatched() const { return isLevelMatched_; }
    [[nodiscard]] AbMemories& memories() { return memories_; }

 private:
    [[nodiscard]] bool mayAct();
    void follow();
    void noteHistory(HistoryEvent event);
    void showSides();
    /// By how much the played copy of the side that is heard is lowered.
    [[nodiscard]] unsigned dueSteps(AbSide heard) const;
    /// Lowers it by so much, and has it sent where that is another copy than before.
    void playDueSteps();
    void noteSaving(bool confirmed);
    void tell(const QString& text);
    /// What the match comes to, as the end of a notice; empty where none is wanted.
    [[nodiscard]] QString levelText();

    Dependencies dependencies_;
    AbMemories memories_;
    bool isLevelMatched_ = false;
    std::uint32_t shownSet_;
};

}  // namespace tessavo
