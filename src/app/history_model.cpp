#include "app/history_model.h"

#include <chrono>

#include "app/wall_time_text.h"
#include "pages/form/form.h"

namespace tessavo {

HistoryModel::HistoryModel(const History& history, QObject* parent)
    : QAbstractListModel(parent), history_(history) {
    update();
}

void HistoryModel::update() {
    beginResetModel();
    rows_.clear();
    rows_.reserve(1 + history_.steps().size() + history_.marks().size());
    std::size_t nextMark = 0;
    for (std::size_t position = 0; position <= history_.steps().size(); ++position) {
        if (position == history_.position()) {
            currentRow_ = static_cast<int>(rows_.size());
        }
        rows_.push_back(position == 0 ? Row{Kind::start, 0, 0} : Row{Kind::step, position - 1, position});
        addMarks(position, nextMark);
    }
    endResetModel();
}

void HistoryModel::addMarks(std::size_t position, std::size_t& next) {
    const auto& marks = history_.marks();
    for (; next < marks.size() && marks[next].number <= history_.dropped() + position; ++next) {
        const MarkKind kind = marks[next].kind;
        rows_.push_back({kind == MarkKind::saved       ? Kind::saved
                         : kind == MarkKind::confirmed ? Kind::confirmed
                                                       : Kind::notice,
                         next, position});
    }
}

int HistoryModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

QVariant HistoryModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || index.row() >= rowCount()) {
        return {};
    }
    const Row& row = rows_[static_cast<std::size_t>(index.row())];
    switch (role) {
        case Qt::DisplayRole:
        case Qt::ToolTipRole:
            return textOf(row);
        case Qt::AccessibleTextRole:
            return sentenceOf(row);
        case timeRole:
            return timeOf(row);
        case kindRole:
            return static_cast<int>(row.kind);
        case stateRole:
            return static_cast<int>(stateOf(row));
        case positionRole:
            return QVariant::fromValue(row.position);
        default:
            return {};
    }
}

QString HistoryModel::textOf(const Row& row) const {
    switch (row.kind) {
        case Kind::start:
            return history_.dropped() == 0 ? QStringLiteral("Start")
                                           : QStringLiteral("Oldest state that is kept");
        case Kind::step:
            return tessavo::textOf(history_.steps()[row.index]->text);
        default:
            return tessavo::textOf(history_.marks()[row.index].text);
    }
}

QString HistoryModel::timeOf(const Row& row) const {
    if (row.kind == Kind::start) {
        return {};
    }
    const WallTime time =
        row.kind == Kind::step ? history_.steps()[row.index]->time : history_.marks()[row.index].time;
    return secondText(time, std::chrono::system_clock::now());
}

HistoryModel::State HistoryModel::stateOf(const Row& row) const {
    if (row.position != history_.position()) {
        return row.position < history_.position() ? State::done : State::undone;
    }
    return row.kind == Kind::start || row.kind == Kind::step ? State::current : State::done;
}

QString HistoryModel::sentenceOf(const Row& row) const {
    QStringList parts{textOf(row)};
    if (const QString time = timeOf(row); !time.isEmpty()) {
        parts << time;
    }
    if (stateOf(row) != State::done) {
        parts << (stateOf(row) == State::current ? QStringLiteral("current") : QStringLiteral("undone"));
    }
    return parts.join(QStringLiteral(", "));
}

}  // namespace tessavo
