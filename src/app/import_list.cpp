#include "app/import_list.h"

#include <algorithm>

#include "app/plain_tool_tip.h"
#include "pages/form/form.h"

namespace tessavo {

namespace {

// A list shows neither; the columns of a table stay apart.
QString shownLine(const std::string& line) {
    QString text = textOf(line);
    text.replace(QLatin1Char('\t'), QStringLiteral("    "));
    for (QChar& each : text) {
        if (each.category() == QChar::Other_Control) {
            each = QLatin1Char(' ');
        }
    }
    return text;
}

// The room's reasons are sentences; here they follow a word.
QString leftOutText(const std::string& reason) {
    QString text = textOf(reason);
    if (!text.isEmpty()) {
        text[0] = text[0].toLower();
    }
    if (text.endsWith(QLatin1Char('.'))) {
        text.chop(1);
    }
    return QStringLiteral("left out: ") + text;
}

}  // namespace

std::vector<ImportList::Row> ImportList::rowsOf(const FilterText& text, const ImportPlan& plan) {
    std::vector<Row> rows;
    rows.reserve(text.lines.size());
    for (const FilterLine& line : text.lines) {
        Row row;
        row.line = QString::number(line.line);
        row.text = shownLine(line.text);
        row.verdict = verdictOf(line);
        row.verdictWords = textOf(verdictText(line));
        row.isOff = line.kind == FilterLineKind::off;
        rows.push_back(std::move(row));
    }
    for (const ImportedLine& imported : plan.lines) {
        Row& row = rows.at(imported.index);
        if (imported.band) {
            row.disc = QString::number(*imported.band + 1);
            row.place = QStringLiteral("band ") + row.disc;
        } else if (imported.crossover) {
            const QString number = QString::number(*imported.crossover + 1);
            row.disc = QLatin1Char('X') + number;
            row.place = QStringLiteral("crossover ") + number;
        } else {
            row.isLeftOut = true;
            row.verdict = Verdict::notPossible;
            row.verdictWords = leftOutText(imported.reason);
        }
        if (row.isOff && !row.place.isEmpty()) {
            row.place += QStringLiteral(", off");
        }
    }
    return rows;
}

void ImportList::show(const FilterText& text, const ImportPlan& plan) {
    beginResetModel();
    rows_ = rowsOf(text, plan);
    endResetModel();
}

void ImportList::showPlan(const FilterText& text, const ImportPlan& plan) {
    rows_ = rowsOf(text, plan);
    if (!rows_.empty()) {
        Q_EMIT dataChanged(index(0, verdictColumn), index(rowCount() - 1, placeColumn));
    }
}

int ImportList::leftOut() const {
    return static_cast<int>(std::ranges::count(rows_, true, &Row::isLeftOut));
}

int ImportList::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

int ImportList::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(columns);
}

QString ImportList::cellText(const Row& row, int column) {
    switch (column) {
        case lineColumn:
            return row.line;
        case textColumn:
            return row.text;
        case verdictColumn:
            return row.verdictWords;
        default:
            return row.place;
    }
}

QVariant ImportList::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || index.row() >= rowCount()) {
        return {};
    }
    const Row& row = rows_.at(static_cast<std::size_t>(index.row()));
    switch (role) {
        case Qt::DisplayRole:
            return cellText(row, index.column());
        case Qt::ToolTipRole:
            return plainToolTip(cellText(row, index.column()));
        case Qt::AccessibleTextRole:
            // Most readers read the first cell of the row that is chosen, and only that.
            return index.column() == lineColumn
                       ? QStringLiteral("Line %1, %2: %3")
                             .arg(row.line, row.text, row.verdictWords)
                             .append(row.place.isEmpty() ? QString() : QStringLiteral(", ") + row.place)
                       : cellText(row, index.column());
        case verdictRole:
            return static_cast<int>(row.verdict);
        case placeRole:
            return row.disc;
        case offRole:
            return row.isOff;
        default:
            return {};
    }
}

QVariant ImportList::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal) {
        return {};
    }
    const bool isLast = section == placeColumn;
    if (role == Qt::TextAlignmentRole) {
        return static_cast<int>((isLast ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter);
    }
    if (role != Qt::DisplayRole) {
        return {};
    }
    switch (section) {
        case lineColumn:
            return QStringLiteral("Line");
        case textColumn:
            return QStringLiteral("Text");
        case verdictColumn:
            return QStringLiteral("Verdict");
        default:
            return QStringLiteral("Band");
    }
}

}  // namespace tessavo
