#pragma once

#include <QStyledItemDelegate>

class QTreeView;

namespace tessavo {

/// Draws the rows of a comparison and takes the clicks on their marks: a click on a check mark chooses, one on the sign
/// beside a group's name folds it. The space bar chooses too.
class CompareRows : public QStyledItemDelegate {
    Q_OBJECT

 public:
    /// Where chosen values go.
    enum class Direction { none, toLeft, toRight };

    static constexpr int groupHeight = 26;
    static constexpr int lineHeight = 24;

    /// \param tree shows a CompareModel; owns the delegate
    explicit CompareRows(QTreeView& tree);

    void setDirection(Direction direction);

    /// Where the values of both sides begin in a row of this width.
    [[nodiscard]] static int leftValueAt(int width);
    [[nodiscard]] static int rightValueAt(int width);
    /// The check mark of a row, and the folding sign of a group's.
    [[nodiscard]] QRect markRect(const QModelIndex& index) const;
    [[nodiscard]] QRect foldRect(const QModelIndex& index) const;

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    bool editorEvent(QEvent* event, QAbstractItemModel* model, const QStyleOptionViewItem& option,
                     const QModelIndex& index) override;

 private:
    bool handleMouse(const QMouseEvent& event, QAbstractItemModel& model, const QModelIndex& index);
    void paintMark(QPainter& painter, const QModelIndex& index) const;
    void paintGroup(QPainter& painter, const QRect& row, const QModelIndex& index) const;
    static void paintHeading(QPainter& painter, const QRect& row, const QModelIndex& index);
    void paintLine(QPainter& painter, const QRect& row, const QModelIndex& index) const;
    void paintArrow(QPainter& painter, const QRect& row) const;

    QTreeView& tree_;
    Direction direction_ = Direction::none;
};

}  // namespace tessavo
