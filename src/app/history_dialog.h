#pragma once

#include <QListView>

#include "app/history_model.h"
#include "controls/dialog_sk.h"

namespace tessavo {

class UndoCommands;

/// "History": all steps with their times, what was saved and confirmed between them, and which of them are
/// undone. A row that is activated leads to its state. Not modal: pages and list follow each other.
class HistoryDialog : public CDialogSK {
    Q_OBJECT

 public:
    /// \param commands outlive the dialog
    explicit HistoryDialog(UndoCommands& commands, QWidget* parent = nullptr);

    [[nodiscard]] QListView& list() { return *list_; }

 protected:
    void paintBackground(QPainter& painter, QSize size) const override;
    void resizeEvent(QResizeEvent* event) override;

 private:
    void follow(HistoryEvent event);
    void goTo(const QModelIndex& row);
    void showCurrent();

    UndoCommands& commands_;
    HistoryModel model_;
    QListView* list_;
    QWidget* go_;
    QWidget* close_;
};

}  // namespace tessavo
