#pragma once

#include <QAbstractItemView>

#include "comm/page/log_model.h"

namespace tessavo {

/// The communication log on the page: eighteen rows, coloured by kind. The newest line is selected and in
/// view. All rows are equally high, so a line costs the same however many there are.
class LogView : public QAbstractItemView {
    Q_OBJECT

 public:
    static constexpr int rowHeight = 18;

    explicit LogView(int controlId, QWidget* parent = nullptr);

    void append(LogKind kind, const QString& text);
    void clear();

    [[nodiscard]] int lineCount() const { return model_.rowCount(); }
    [[nodiscard]] const QString& line(int row) const { return model_.line(row); }
    /// All lines, or those that are selected, each with a line break behind it.
    [[nodiscard]] QString allText() const;
    [[nodiscard]] QString selectedText() const;

    [[nodiscard]] QRect visualRect(const QModelIndex& index) const override;
    void scrollTo(const QModelIndex& index, ScrollHint hint = EnsureVisible) override;
    [[nodiscard]] QModelIndex indexAt(const QPoint& point) const override;

 Q_SIGNALS:
    /// The context menu's item of that name was chosen.
    void saveAsked();

 protected:
    QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;
    [[nodiscard]] int horizontalOffset() const override { return 0; }
    [[nodiscard]] int verticalOffset() const override;
    [[nodiscard]] bool isIndexHidden(const QModelIndex& /*index*/) const override { return false; }
    void setSelection(const QRect& rect, QItemSelectionModel::SelectionFlags command) override;
    [[nodiscard]] QRegion visualRegionForSelection(const QItemSelection& selection) const override;
    void updateGeometries() override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;
    void showEvent(QShowEvent* event) override;

 private:
    [[nodiscard]] int rowsInView() const;

    LogModel model_;
};

}  // namespace tessavo
