#pragma once

#include <QAbstractListModel>
#include <QString>
#include <deque>

#include "comm/comm_log.h"

namespace tessavo {

/// Lines of the communication log, the newest last.
class LogModel : public QAbstractListModel {
    Q_OBJECT

 public:
    /// With one more line the oldest goes.
    static constexpr int lineLimit = 100000;
    /// Kind of a line, as an int; invalid for an empty one.
    static constexpr int kindRole = Qt::UserRole;

    using QAbstractListModel::QAbstractListModel;

    /// \param text empty for a line that its filter keeps back
    void append(LogKind kind, const QString& text);
    void clear();

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] const QString& line(int row) const { return lines_[static_cast<std::size_t>(row)].text; }

 private:
    struct Line {
        LogKind kind;
        QString text;
    };
    std::deque<Line> lines_;
};

}  // namespace tessavo
