#pragma once

#include <QAbstractTableModel>
#include <vector>

#include "filtertext/filter_import.h"
#include "filtertext/filter_words.h"

namespace tessavo {

/// The lines of a filter text as a table: line, text, verdict, and where in the channel the line's filter goes.
class ImportList : public QAbstractTableModel {
    Q_OBJECT

 public:
    enum Column { lineColumn, textColumn, verdictColumn, placeColumn, columns };
    enum Role {
        verdictRole = Qt::UserRole,  ///< a Verdict, as an int; Verdict::notPossible for what is left out too
        placeRole,                   ///< what stands in its disc: "4", "X1"; empty where it goes nowhere
        offRole                      ///< whether it goes there switched off
    };

    using QAbstractTableModel::QAbstractTableModel;

    /// Shows another text.
    /// \param plan of that text
    void show(const FilterText& text, const ImportPlan& plan);
    /// Shows where the lines of the same text go now.
    void showPlan(const FilterText& text, const ImportPlan& plan);
    /// Lines whose filters the target could have and that found no place.
    [[nodiscard]] int leftOut() const;

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
    struct Row {
        QString line;
        QString text;
        QString verdictWords;
        Verdict verdict = Verdict::none;
        QString disc;
        QString place;
        bool isOff = false;
        bool isLeftOut = false;
    };
    [[nodiscard]] static std::vector<Row> rowsOf(const FilterText& text, const ImportPlan& plan);
    [[nodiscard]] static QString cellText(const Row& row, int column);

    std::vector<Row> rows_;
};

}  // namespace tessavo
