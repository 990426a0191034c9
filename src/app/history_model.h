#pragma once

#include <QAbstractListModel>
#include <vector>

#include "history/history.h"

namespace tessavo {

/// The rows of a history as a list: where it starts, the steps, oldest first, and between them what was
/// saved, confirmed and told. Choosing a row leads to the state that was there then.
class HistoryModel : public QAbstractListModel {
    Q_OBJECT

 public:
    enum Role {
        timeRole = Qt::UserRole,  ///< text: "10:21:07", with the date unless that is today's
        kindRole,                 ///< a Kind, as an int
        stateRole,                ///< a State, as an int
        positionRole,             ///< for History::goTo()
    };
    enum class Kind { start, step, saved, confirmed, notice };
    enum class State { done, current, undone };

    /// \param history outlives the model
    explicit HistoryModel(const History& history, QObject* parent = nullptr);

    /// Reads the history again.
    void update();
    /// Row of the state as it is.
    [[nodiscard]] int currentRow() const { return currentRow_; }

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;

 private:
    struct Row {
        Kind kind;
        std::size_t index;     ///< in the steps or marks
        std::size_t position;  ///< steps that are done there
    };
    void addMarks(std::size_t position, std::size_t& next);
    [[nodiscard]] QString textOf(const Row& row) const;
    [[nodiscard]] QString timeOf(const Row& row) const;
    [[nodiscard]] State stateOf(const Row& row) const;
    [[nodiscard]] QString sentenceOf(const Row& row) const;

    const History& history_;
    std::vector<Row> rows_;
    int currentRow_ = 0;
};

}  // namespace tessavo
