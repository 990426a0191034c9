#pragma once

#include <QStringList>
#include <optional>

#include "controls/dialog_sk.h"

class QListView;
class QStringListModel;

namespace tessavo {

/// Asks for one of several texts: a list with "OK" and "Cancel". Enter and a double click choose too.
class ChoiceDialog : public CDialogSK {
    Q_OBJECT

 public:
    /// \param texts at least one
    /// \param current row that is chosen at first
    ChoiceDialog(const QString& title, const QStringList& texts, int current, QWidget* parent);

    /// Shows the dialog and waits.
    /// \return the row; nothing when it was cancelled
    [[nodiscard]] static std::optional<int> ask(const QString& title, const QStringList& texts, int current,
                                                QWidget* parent);

    [[nodiscard]] int row() const;

 private:
    QListView* list_;
    QStringListModel* model_;
};

}  // namespace tessavo
