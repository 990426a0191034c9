#include "comm/page/log_model.h"

namespace tessavo {

void LogModel::append(LogKind kind, const QString& text) {
    const int count = static_cast<int>(lines_.size());
    if (count == lineLimit) {
        beginRemoveRows({}, 0, 0);
        lines_.pop_front();
        endRemoveRows();
    }
    const int row = static_cast<int>(lines_.size());
    beginInsertRows({}, row, row);
    lines_.push_back({kind, text});
    endInsertRows();
}

void LogModel::clear() {
    beginResetModel();
    lines_.clear();
    endResetModel();
}

int LogModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(lines_.size());
}

QVariant LogModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || index.row() >= rowCount()) {
        return {};
    }
    const Line& line = lines_[static_cast<std::size_t>(index.row())];
    if (role == Qt::DisplayRole) {
        return line.text;
    }
    if (role == kindRole && !line.text.isEmpty()) {
        return static_cast<int>(line.kind);
    }
    return {};
}

}  // namespace tessavo
