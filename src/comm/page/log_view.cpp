#include "comm/page/log_view.h"

#include <QClipboard>
#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QMenu>
#include <QPainter>
#include <QStyledItemDelegate>
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

class LogLine : public QStyledItemDelegate {
 public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override {
        if ((option.state & QStyle::State_Selected) != 0) {
            QColor tint = QColor::fromRgb(theme::level);
            tint.setAlpha(selectionAlpha);
            painter->fillRect(option.rect, tint);
        }
        painter->setFont(option.font);
        painter->setPen(QColor::fromRgb(colorOf(index.data(LogModel::kindRole))));
        painter->drawText(option.rect.adjusted(textLeft, 0, 0, 0), Qt::AlignVCenter | Qt::AlignLeft,
                          index.data(Qt::DisplayRole).toString());
    }
    QSize sizeHint(const QStyleOptionViewItem& /*option*/, const QModelIndex& /*index*/) const override {
        return {0, LogView::rowHeight};
    }
};

}  // namespace

LogView::LogView(int controlId, QWidget* parent) : QListView(parent) {
    setControlId(*this, controlId);
    setAccessibleName(QStringLiteral("Communication Log"));
    setFont(theme::fixedFont(11));
    // The ring is painted inside, so that the rows stay where they are.
    const QString edge = QColor::fromRgb(theme::edge).name();
    setStyleSheet(
        QStringLiteral("QListView, QListView:focus { border: 1px solid %1; border-radius: 4px; padding: 0; }")
            .arg(edge));
    setUniformItemSizes(true);
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setItemDelegate(new LogLine(this));
    setModel(&model_);
    following_.setSingleShot(true);
    connect(&following_, &QTimer::timeout, this, &LogView::followNewest);
}

void LogView::append(LogKind kind, const QString& text) {
    model_.append(kind, text);
    if (!following_.isActive()) {
        following_.start(0);
    }
}

void LogView::clear() {
    model_.clear();
}

void LogView::followNewest() {
    const QModelIndex newest = model_.index(model_.rowCount() - 1, 0);
    if (newest.isValid()) {
        setCurrentIndex(newest);
        scrollToBottom();
    }
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
    add("Copy Selected Lines", selectionModel()->hasSelection(),
        [this] { QGuiApplication::clipboard()->setText(selectedText()); });
    add("Copy Whole Log", any, [this] { QGuiApplication::clipboard()->setText(allText()); });
    menu.addSeparator();
    add("Save As Text File...", any, [this] { emit saveAsked(); });
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
    QListView::keyPressEvent(event);
}

void LogView::paintEvent(QPaintEvent* event) {
    QListView::paintEvent(event);
    if (hasFocus()) {
        QPainter painter(viewport());
        painter.setPen(QPen(QColor::fromRgb(theme::focus), 1));
        painter.drawRect(QRectF(viewport()->rect()).adjusted(0.5, 0.5, -0.5, -0.5));
    }
}

}  // namespace tessavo
