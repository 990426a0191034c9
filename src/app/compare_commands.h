#pragma once

#include <QObject>
#include <QPointer>
#include <vector>

#include "app/compare_source.h"
#include "app/group_terms_offer.h"
#include "app/set_edits.h"
#include "base/message_box.h"

class QAction;
class QMenu;
class QWidget;

namespace tessavo {

class CompareDialog;
class IFileDialogs;

/// The commands that compare and copy channels and sets, with their menu entries. Each of them that changes a set is one
/// step. User-interface thread.
class CompareCommands : public QObject {
    Q_OBJECT

 public:
    struct Dependencies {
        TuningState& tuning;
        History& history;
        UndoCommands& undo;
        CTessavoView& view;
        StatusLine& status;
        CommLink& link;
        IMessageBox& boxes;
        IFileDialogs& dialogs;
        QWidget& window;  ///< that the dialogs belong to
    };

    /// \param dependencies outlive this object
    explicit CompareCommands(const Dependencies& dependencies);
    ~CompareCommands() override;

    /// Adds sets that a comparison can show, asked for whenever a list drops down. Lists that are open do not change.
    void addSources(CompareSources sources) { sources_.push_back(std::move(sources)); }

    [[nodiscard]] QAction* compareAction() const { return compare_; }
    /// Adds "Compare..." to one menu, and to the other a separator and the commands that copy.
    void addTo(QMenu& edit, QMenu& tools) const;

    /// Shows the comparison, or brings it to the front.
    void showCompare();
    /// Puts the last selected channel on the clipboard.
    void copyChannel();
    /// Gives every selected channel what is on the clipboard.
    void pasteChannel();
    /// Tells which channels would be written, asks, and gives those of the right what those of the left have.
    void mirror();
    /// Asks where the current set goes, and copies it.
    void copySetTo();

 Q_SIGNALS:
    /// A comparison is about to be shown anew.
    void opened();

 private:
    QAction* make(const QString& text, void (CompareCommands::*act)());

    Dependencies dependencies_;
    SetEdits edits_;
    GroupTermsOffer groupTerms_;
    std::vector<CompareSources> sources_;
    QAction* compare_;
    QAction* copyChannel_;
    QAction* pasteChannel_;
    QAction* mirror_;
    QAction* copySetTo_;
    QPointer<CompareDialog> dialog_;
};

}  // namespace tessavo
