#include "app/import_rows.h"

#include <QHeaderView>
#include <QPainter>
#include <QPolygonF>

#include "app/import_list.h"
#include "controls/column_list.h"
#include "controls/theme.h"

namespace tessavo {

namespace {

constexpr int lineColumnWidth = 39;
constexpr int verdictColumnWidth = 325;
constexpr int placeColumnWidth = 62;
constexpr int numberRight = 33;
constexpr int textLeft = 8;
constexpr int signSize = 16;
constexpr int wordsLeft = 32;
constexpr int discMiddle = 41;
constexpr double signPen = 1.7;
constexpr double discRadius = 8;
constexpr int hoverAlpha = 13;
constexpr int chosenAlpha = 51;

QRgb signColor(Verdict verdict) {
    switch (verdict) {
        case Verdict::taken:
            return theme::live;
        case Verdict::converted:
            return theme::lightBlue;
        case Verdict::clamped:
            return theme::target;
        case Verdict::off:
            return theme::text2;
        case Verdict::notPossible:
            return theme::trouble;
        default:
            return theme::text3;
    }
}

QRgb wordsColor(Verdict verdict) {
    switch (verdict) {
        case Verdict::notPossible:
            return theme::trouble;
        case Verdict::off:
        case Verdict::empty:
        case Verdict::none:
            return theme::text2;
        default:
            return theme::text;
    }
}

/// Shape and colour tell the verdicts apart.
void paintSign(QPainter& painter, QPointF corner, Verdict verdict) {
    painter.save();
    painter.translate(corner);
    painter.setPen(
        QPen(QColor::fromRgb(signColor(verdict)), signPen, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(Qt::NoBrush);
    switch (verdict) {
        case Verdict::taken:
            painter.drawPolyline(QPolygonF({{3.2, 8.4}, {6.6, 11.6}, {12.8, 4.8}}));
            break;
        case Verdict::converted:
            painter.drawLine(QPointF(2.5, 8), QPointF(13, 8));
            painter.drawPolyline(QPolygonF({{9.6, 4.6}, {13, 8}, {9.6, 11.4}}));
            break;
        case Verdict::clamped:
            painter.drawLine(QPointF(2.5, 3.2), QPointF(13.5, 3.2));
            painter.drawLine(QPointF(8, 13.5), QPointF(8, 6.2));
            painter.drawPolyline(QPolygonF({{4.8, 9}, {8, 5.8}, {11.2, 9}}));
            break;
        case Verdict::off:
            painter.drawEllipse(QPointF(8, 8), 4.6, 4.6);
            break;
        case Verdict::notPossible:
            painter.drawEllipse(QPointF(8, 8), 5.6, 5.6);
            painter.drawLine(QPointF(4.2, 11.8), QPointF(11.8, 4.2));
            break;
        default:
            painter.drawLine(QPointF(4, 8), QPointF(12, 8));
            break;
    }
    painter.restore();
}

void paintDisc(QPainter& painter, QPointF middle, const QString& text, bool isOff) {
    const QFont font = theme::font(11, QFont::DemiBold);
    // A crossover has a letter before its number.
    const double wider = text.size() > 1 ? 4 : 0;
    const QRectF disc(middle.x() - discRadius - wider, middle.y() - discRadius, 2 * (discRadius + wider),
                      2 * discRadius);
    painter.setPen(QPen(QColor::fromRgb(isOff ? theme::mark : theme::discEdge), 1));
    painter.setBrush(QColor::fromRgb(isOff ? theme::sunk : theme::disc));
    painter.drawRoundedRect(disc, discRadius, discRadius);
    painter.setFont(font);
    painter.setPen(QColor::fromRgb(isOff ? theme::text2 : theme::sunk));
    painter.drawText(disc, Qt::AlignCenter, text);
}

void paintWords(QPainter& painter, const QRect& place, Qt::Alignment alignment, QRgb color, const QFont& font,
                const QString& text) {
    painter.setFont(font);
    painter.setPen(QColor::fromRgb(color));
    painter.drawText(place, static_cast<int>(alignment | Qt::AlignVCenter),
                     QFontMetrics(font).elidedText(text, Qt::ElideRight, place.width()));
}

}  // namespace

ImportView::ImportView(ImportList& list, QWidget* parent) : QTreeView(parent) {
    setAccessibleName(QStringLiteral("Lines of the filter text"));
    // Captions above what they stand for.
    setStyleSheet(columnListSheet() + QStringLiteral("QHeaderView::section { padding: 3px 7px; }"));
    setRootIsDecorated(false);
    setIndentation(0);
    setItemsExpandable(false);
    setUniformRowHeights(true);
    setAllColumnsShowFocus(true);
    setTabKeyNavigation(false);
    setMouseTracking(true);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    setItemDelegate(new ImportRows(*this));
    setModel(&list);
    QHeaderView& head = *header();
    head.setFont(theme::font(11, QFont::Medium));
    head.setFixedHeight(headHeight);
    head.setStretchLastSection(false);
    head.setSectionsMovable(false);
    head.setSectionsClickable(false);
    head.setMinimumSectionSize(lineColumnWidth);
    head.setSectionResizeMode(QHeaderView::Fixed);
    head.setSectionResizeMode(ImportList::textColumn, QHeaderView::Stretch);
    head.resizeSection(ImportList::lineColumn, lineColumnWidth);
    head.resizeSection(ImportList::verdictColumn, verdictColumnWidth);
    head.resizeSection(ImportList::placeColumn, placeColumnWidth);
}

QSize ImportRows::sizeHint(const QStyleOptionViewItem& /*option*/, const QModelIndex& /*index*/) const {
    return {100, ImportView::rowHeight};
}

void ImportRows::paint(QPainter* painter, const QStyleOptionViewItem& option,
                       const QModelIndex& index) const {
    const auto verdict = static_cast<Verdict>(index.data(ImportList::verdictRole).toInt());
    const QRect cell = option.rect;
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    // The sheet's ground of a chosen row would drown the signs.
    painter->fillRect(cell, QColor::fromRgb(theme::sunk));
    if ((option.state & QStyle::State_Selected) != 0) {
        QColor chosen = QColor::fromRgb(theme::level);
        chosen.setAlpha(chosenAlpha);
        painter->fillRect(cell, chosen);
    } else if ((option.state & QStyle::State_MouseOver) != 0) {
        painter->fillRect(cell, QColor(255, 255, 255, hoverAlpha));
    }
    switch (index.column()) {
        case ImportList::lineColumn:
            paintWords(*painter, QRect(cell.left(), cell.top(), numberRight, cell.height()), Qt::AlignRight,
                       theme::text2, theme::font(11), index.data().toString());
            break;
        case ImportList::textColumn: {
            const bool isQuiet = verdict == Verdict::none || verdict == Verdict::empty;
            paintWords(*painter, cell.adjusted(textLeft, 0, -textLeft, 0), Qt::AlignLeft,
                       isQuiet ? theme::text3 : theme::text, theme::fixedFont(11), index.data().toString());
            break;
        }
        case ImportList::verdictColumn:
            paintSign(*painter, cell.topLeft() + QPointF(textLeft, (cell.height() - signSize) / 2.0),
                      verdict);
            paintWords(*painter, cell.adjusted(wordsLeft, 0, 0, 0), Qt::AlignLeft, wordsColor(verdict),
                       theme::font(12), index.data().toString());
            break;
        default:
            if (const QString disc = index.data(ImportList::placeRole).toString(); !disc.isEmpty()) {
                paintDisc(*painter,
                          QPointF(cell.left() + discMiddle, cell.top() + ImportView::rowHeight / 2.0), disc,
                          index.data(ImportList::offRole).toBool());
            }
            break;
    }
    painter->restore();
}

}  // namespace tessavo
