#pragma once

#include <QStyledItemDelegate>
#include <QTreeView>

namespace tessavo {

class ImportList;

/// The list of an import: columns that leave the room to the text, rows with signs and discs.
class ImportView : public QTreeView {
    Q_OBJECT

 public:
    static constexpr int headHeight = 24;
    static constexpr int rowHeight = 24;

    /// \param list outlives the view
    explicit ImportView(ImportList& list, QWidget* parent = nullptr);
};

/// Draws the cells of an ImportView.
class ImportRows : public QStyledItemDelegate {
    Q_OBJECT

 public:
    explicit ImportRows(QTreeView& view) : QStyledItemDelegate(&view), view_(view) {}

    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;

 private:
    QTreeView& view_;
};

}  // namespace tessavo
