#include "comm/page/log_view.h"

#include <QClipboard>
#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QMenu>
#include <QPainter>
#include <QScrollBar>
#include <algorithm>

#include "controls/control_id.h"
#include "controls/theme.h"

namespace tessavo {

namespace {

constexpr int textLeft = 7;
constexpr int selectionAlpha = 61;  // 24 %

QRgb colorOf(const QVariant& kind) {
    switch (static_cast<LogKind>(kind.toInt())) {
        case LogKind::tx:
            return theme::lightBlue;
        case LogKind::rx:
            return theme::received;
        case LogKind::error:
            return theme::trouble;
        case LogKind::status:
            break;
    }
    return theme::text2;
}

}  // namespace

LogView::LogView(int controlId, QWidget* parent) : QAbstractItemView(parent) {
    setControlId(*this, controlId);
    setAccessibleName(QStringLiteral("Communication Log"));
    setFont(theme::fixedFont(11));
    setStyleSheet(
        QStringLiteral("tessavo--LogView { background: %1; border: 1px solid %2; border-radius: 4px; }")
            .arg(QColor::fromRgb(theme::sunk).name(), QColor::fromRgb(theme::edge).name()));
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setModel(&model_);
}

void LogView::append(LogKind kind, const QString& text) {
    model_.append(kind, text);
    updateGeometries();
    // Not the view's own function: that one heeds the keys which a person holds at this moment.
    selectionModel()->setCurrentIndex(model_.index(lineCount() - 1, 0), QItemSelectionModel::ClearAndSelect);
    verticalScrollBar()->setValue(verticalScrollBar()->maximum());
    viewport()->update();
}

void LogView::clear() {
    model_.clear();
}

int LogView::rowsInView() const {
    return std::max(1, viewport()->height() / rowHeight);
}

int LogView::verticalOffset() const {
    return verticalScrollBar()->value() * rowHeight;
}

QRect LogView::visualRect(const QModelIndex& index) const {
    return {0, index.row() * rowHeight - verticalOffset(), viewport()->width(), rowHeight};
}

void LogView::scrollTo(const QModelIndex& index, ScrollHint /*hint*/) {
    QScrollBar* bar = verticalScrollBar();
    bar->setValue(std::clamp(bar->value(), index.row() - rowsInView() + 1, index.row()));
}

QModelIndex LogView::indexAt(const QPoint& point) const {
    return model_.index((point.y() + verticalOffset()) / rowHeight, 0);
}

QModelIndex LogView::moveCursor(CursorAction action, Qt::KeyboardModifiers /*modifiers*/) {
    const int last = lineCount() - 1;
    int row = currentIndex().row();
    switch (action) {
        case MoveUp:
        case MovePrevious:
            --row;
            break;
        case MoveDown:
        case MoveNext:
            ++row;
            break;
        case MovePageUp:
            row -= rowsInView();
            break;
        case MovePageDown:
            row += rowsInView();
            break;
        case MoveHome:
            row = 0;
            break;
        case MoveEnd:
            row = last;
            break;
        case MoveLeft:
        case MoveRight:
            break;
    }
    return last < 0 ? QModelIndex() : model_.index(std::clamp(row, 0, last), 0);
}

void LogView::setSelection(const QRect& rect, QItemSelectionModel::SelectionFlags command) {
    const int last = lineCount() - 1;
    const auto rowAt = [&](int y) {
        return std::clamp((y + verticalOffset()) / rowHeight, 0, std::max(0, last));
    };
    QItemSelection rows;
    if (last >= 0) {
        rows.select(model_.index(rowAt(rect.top()), 0), model_.index(rowAt(rect.bottom()), 0));
    }
    selectionModel()->select(rows, command);
}

QRegion LogView::visualRegionForSelection(const QItemSelection& selection) const {
    QRegion region;
    for (const QItemSelectionRange& range : selection) {
        region += visualRect(range.topLeft()) | visualRect(range.bottomRight());
    }
    return region;
}

void LogView::updateGeometries() {
    verticalScrollBar()->setRange(0, std::max(0, lineCount() - rowsInView()));
    verticalScrollBar()->setPageStep(rowsInView());
    verticalScrollBar()->setSingleStep(1);
    QAbstractItemView::updateGeometries();
}

void LogView::resizeEvent(QResizeEvent* event) {
    QAbstractItemView::resizeEvent(event);
    updateGeometries();
}

void LogView::showEvent(QShowEvent* event) {
    QAbstractItemView::showEvent(event);
    updateGeometries();
    scrollTo(currentIndex());
}

void LogView::scrollContentsBy(int /*dx*/, int /*dy*/) {
    viewport()->update();
}

QString LogView::allText() const {
    QString text;
    for (int row = 0; row < lineCount(); ++row) {
        text += line(row) + QLatin1Char('\n');
    }
    return text;
}

QString LogView::selectedText() const {
    QList<QModelIndex> rows = selectionModel()->selectedRows();
    std::sort(rows.begin(), rows.end());
    QString text;
    for (const QModelIndex& row : rows) {
        text += line(row.row()) + QLatin1Char('\n');
    }
    return text;
}

void LogView::contextMenuEvent(QContextMenuEvent* event) {
    QMenu menu(this);
    const auto add = [&](const char* text, bool enabled, auto act) {
        QAction* action = menu.addAction(QLatin1String(text));
        action->setEnabled(enabled);
        connect(action, &QAction::triggered, this, act);
    };
    const bool any = lineCount() > 0;
    // Each line that arrives while the menu is open becomes the selected one.
    add("Copy Selected Lines", selectionModel()->hasSelection(),
        [selected = selectedText()] { QGuiApplication::clipboard()->setText(selected); });
    add("Copy Whole Log", any, [this] { QGuiApplication::clipboard()->setText(allText()); });
    menu.addSeparator();
    add("Save As Text File...", any, [this] { Q_EMIT saveAsked(); });
    menu.exec(event->globalPos());
}

void LogView::keyPressEvent(QKeyEvent* event) {
    if (event->matches(QKeySequence::Copy)) {
        if (selectionModel()->hasSelection()) {
            QGuiApplication::clipboard()->setText(selectedText());
        }
        event->accept();
        return;
    }
    QAbstractItemView::keyPressEvent(event);
}

void LogView::paintEvent(QPaintEvent* event) {
    QPainter painter(viewport());
    QColor tint = QColor::fromRgb(theme::level);
    tint.setAlpha(selectionAlpha);
    painter.setFont(font());
    const int first = (event->rect().top() + verticalOffset()) / rowHeight;
    const int last = std::min((event->rect().bottom() + verticalOffset()) / rowHeight, lineCount() - 1);
    for (int row = first; row <= last; ++row) {
        const QModelIndex index = model_.index(row, 0);
        const QRect bounds = visualRect(index);
        if (selectionModel()->isSelected(index)) {
            painter.fillRect(bounds, tint);
        }
        painter.setPen(QColor::fromRgb(colorOf(index.data(LogModel::kindRole))));
        painter.drawText(bounds.adjusted(textLeft, 0, 0, 0), Qt::AlignVCenter | Qt::AlignLeft, line(row));
    }
    if (hasFocus()) {
        // Inside, so that the rows stay where they are.
        painter.setPen(QPen(QColor::fromRgb(theme::focus), 2));
        painter.drawRect(viewport()->rect().adjusted(1, 1, -1, -1));
    }
}

}  // namespace tessavo
