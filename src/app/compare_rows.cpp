#include "app/compare_rows.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QTreeView>

#include "app/compare_model.h"
#include "controls/skin.h"
#include "controls/theme.h"

namespace tessavo {

namespace {

constexpr int markSize = 22;
constexpr int groupMarkLeft = 5;
constexpr int lineMarkLeft = 27;
constexpr int foldLeft = 30;
constexpr int foldWidth = 20;
constexpr int headingLeft = 52;
constexpr int nameLeft = 56;
constexpr int numberRoom = 78;
constexpr int otherNumberRoom = 36;
constexpr int gap = 8;
constexpr QRgb chosenGround = 0xFF10263F;

bool isGroup(const QModelIndex& index) {
    return !index.parent().isValid();
}

Qt::CheckState checkStateOf(const QModelIndex& index) {
    return static_cast<Qt::CheckState>(index.data(Qt::CheckStateRole).toInt());
}

void paintText(QPainter& painter, const QRect& place, QRgb color, const QFont& font, const QString& text) {
    painter.setFont(font);
    painter.setPen(QColor::fromRgb(color));
    painter.drawText(place, Qt::AlignLeft | Qt::AlignVCenter,
                     QFontMetrics(font).elidedText(text, Qt::ElideRight, place.width()));
}

QRect columnOf(const QRect& row, int left, int right) {
    return {row.left() + left, row.top(), right - left, row.height()};
}

}  // namespace

CompareRows::CompareRows(QTreeView& tree) : QStyledItemDelegate(&tree), tree_(tree) {}

void CompareRows::setDirection(Direction direction) {
    if (direction != direction_) {
        direction_ = direction;
        tree_.viewport()->update();
    }
}

int CompareRows::leftValueAt(int width) {
    return width * 365 / 1000;
}

int CompareRows::rightValueAt(int width) {
    return width * 709 / 1000;
}

QRect CompareRows::markRect(const QModelIndex& index) const {
    const QRect row = tree_.visualRect(index);
    const int left = isGroup(index) ? groupMarkLeft : lineMarkLeft;
    return {left, row.top() + (row.height() - markSize) / 2, markSize, markSize};
}

QRect CompareRows::foldRect(const QModelIndex& index) const {
    const QRect row = tree_.visualRect(index);
    return isGroup(index) ? QRect(foldLeft, row.top(), foldWidth, row.height()) : QRect();
}

QSize CompareRows::sizeHint(const QStyleOptionViewItem& /*option*/, const QModelIndex& index) const {
    return {100, isGroup(index) ? groupHeight : lineHeight};
}

void CompareRows::paint(QPainter* painter, const QStyleOptionViewItem& option,
                        const QModelIndex& index) const {
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    if (isGroup(index)) {
        paintGroup(*painter, option.rect, index);
    } else {
        paintLine(*painter, option.rect, index);
    }
    if (index.data(Qt::CheckStateRole).isValid()) {
        paintMark(*painter, index);
    }
    if ((option.state & QStyle::State_Selected) != 0) {
        // The ground tells what is chosen, so the current row has an edge.
        painter->setBrush(Qt::NoBrush);
        painter->setPen(QPen(QColor::fromRgb(tree_.hasFocus() ? theme::focus : theme::mark), 1));
        painter->drawRoundedRect(QRectF(option.rect).adjusted(1.5, 0.5, -1.5, -0.5), 3, 3);
    }
    painter->restore();
}

void CompareRows::paintMark(QPainter& painter, const QModelIndex& index) const {
    const QRect place = markRect(index);
    const Qt::CheckState state = checkStateOf(index);
    const double scale = painter.device()->devicePixelRatioF();
    QPixmap picture =
        Skin::pixmap({SkinPiece::Kind::checkMark, state == Qt::Checked ? skinOn : 0U, place.size()}, scale);
    picture.setDevicePixelRatio(scale);
    painter.drawPixmap(place.topLeft(), picture);
    if (state == Qt::PartiallyChecked) {
        const QRectF box = QRectF(place).adjusted(3.5, 3.5, -3.5, -3.5);
        painter.setPen(QColor::fromRgb(theme::defaultEdge));
        painter.setBrush(QColor::fromRgb(theme::selected));
        painter.drawRoundedRect(box, 3.5, 3.5);
        painter.setPen(QPen(QColor::fromRgb(theme::white), 2, Qt::SolidLine, Qt::RoundCap));
        painter.drawLine(QPointF(box.left() + 4, box.center().y()),
                         QPointF(box.right() - 4, box.center().y()));
    }
}

void CompareRows::paintGroup(QPainter& painter, const QRect& row, const QModelIndex& index) const {
    painter.fillRect(row, QColor::fromRgb(theme::card));
    painter.fillRect(QRect(row.left(), row.top(), row.width(), 1), QColor::fromRgb(theme::line));
    const QPointF middle = QRectF(foldRect(index)).center();
    painter.setPen(QPen(QColor::fromRgb(theme::text2), 1.6, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    const bool isOpen = tree_.isExpanded(index);
    const QPointF sign[3] = {middle + (isOpen ? QPointF(-4, -2) : QPointF(-2, -4)),
                             middle + (isOpen ? QPointF(0, 2) : QPointF(2, 0)),
                             middle + (isOpen ? QPointF(4, -2) : QPointF(-2, 4))};
    painter.drawPolyline(sign, 3);

    paintHeading(painter, row, index);
}

// Number, other number and name stand below those of the other channels; the sources stand with the values.
void CompareRows::paintHeading(QPainter& painter, const QRect& row, const QModelIndex& index) {
    const int left = leftValueAt(row.width());
    const int right = rightValueAt(row.width());
    const QFont bold = theme::font(12, QFont::DemiBold);
    const QFont small = theme::font(11);
    const QString heading = index.data().toString();
    paintText(painter, columnOf(row, headingLeft, left - gap), theme::text, bold, heading);
    const int other = headingLeft + std::max(numberRoom, QFontMetrics(bold).horizontalAdvance(heading) + gap);
    paintText(painter, columnOf(row, other, left - gap), theme::text2, small,
              index.data(CompareModel::otherNumberRole).toString());
    const int name = other + std::max(otherNumberRoom,
                                      QFontMetrics(small).horizontalAdvance(QStringLiteral("Ch 8")) + gap);
    paintText(painter, columnOf(row, name, left - gap), theme::text, theme::font(12),
              index.data(CompareModel::nameRole).toString());
    paintText(painter, columnOf(row, left, right - gap), theme::text2, small,
              index.data(CompareModel::countsRole).toString());
    paintText(painter, columnOf(row, right, row.width() - gap), theme::text2, small,
              index.data(CompareModel::sourceRole).toString());
}

void CompareRows::paintLine(QPainter& painter, const QRect& row, const QModelIndex& index) const {
    const bool isChosen = index.data(Qt::CheckStateRole).isValid() && checkStateOf(index) == Qt::Checked;
    if (isChosen) {
        painter.fillRect(row, QColor::fromRgb(chosenGround));
    }
    const bool differs = index.data(CompareModel::differsRole).toBool();
    const bool isReal = index.data(CompareModel::realRole).toBool();
    const int left = leftValueAt(row.width());
    const int right = rightValueAt(row.width());
    const QFont plain = theme::font(12);
    const QFont strong = theme::font(12, QFont::Medium);
    const QRgb quiet = theme::text2;
    paintText(painter, columnOf(row, nameLeft, left - gap), differs ? theme::text : quiet, plain,
              index.data().toString());
    // What stays is strong, what is written over is not.
    const bool goesLeft = isChosen && direction_ == Direction::toLeft;
    const bool goesRight = isChosen && direction_ == Direction::toRight;
    const QRgb usual = differs && isReal ? theme::text : quiet;
    paintText(painter, columnOf(row, left, right - 50),
              goesLeft    ? quiet
              : goesRight ? theme::white
                          : usual,
              goesRight ? strong : plain, index.data(CompareModel::leftRole).toString());
    paintText(painter, columnOf(row, right, row.width() - gap),
              goesRight  ? quiet
              : goesLeft ? theme::white
                         : usual,
              goesLeft ? strong : plain, index.data(CompareModel::rightRole).toString());
    if (differs && !isReal) {
        paintText(painter, columnOf(row, right - 46, right - 32), quiet, plain, QStringLiteral("\u2248"));
    }
    if (goesLeft || goesRight) {
        paintArrow(painter, columnOf(row, right - 30, right - 12));
    }
}

void CompareRows::paintArrow(QPainter& painter, const QRect& row) const {
    const double sense = direction_ == Direction::toLeft ? -1 : 1;
    const QPointF middle = QRectF(row).center();
    const QPointF tip = middle + QPointF(7 * sense, 0);
    painter.setPen(QPen(QColor::fromRgb(theme::lightBlue), 1.6, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawLine(middle - QPointF(7 * sense, 0), tip);
    const QPointF head[3] = {tip + QPointF(-4 * sense, -4), tip, tip + QPointF(-4 * sense, 4)};
    painter.drawPolyline(head, 3);
}

bool CompareRows::editorEvent(QEvent* event, QAbstractItemModel* model,
                              const QStyleOptionViewItem& /*option*/, const QModelIndex& index) {
    switch (event->type()) {
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonRelease:
        case QEvent::MouseButtonDblClick:
            return handleMouse(*static_cast<QMouseEvent*>(event), *model, index);
        case QEvent::KeyPress: {
            const int key = static_cast<QKeyEvent*>(event)->key();
            if (key != Qt::Key_Space && key != Qt::Key_Select) {
                return false;
            }
            model->setData(index, checkStateOf(index) == Qt::Checked ? Qt::Unchecked : Qt::Checked,
                           Qt::CheckStateRole);
            return true;
        }
        default:
            return false;
    }
}

bool CompareRows::handleMouse(const QMouseEvent& event, QAbstractItemModel& model, const QModelIndex& index) {
    const bool onMark = markRect(index).contains(event.pos());
    const bool onFold = foldRect(index).contains(event.pos());
    if (event.button() != Qt::LeftButton || !(onMark || onFold)) {
        return false;
    }
    if (event.type() != QEvent::MouseButtonRelease) {
        return true;
    }
    if (onMark) {
        model.setData(index, checkStateOf(index) == Qt::Checked ? Qt::Unchecked : Qt::Checked,
                      Qt::CheckStateRole);
    } else {
        tree_.setExpanded(index, !tree_.isExpanded(index));
    }
    return true;
}

}  // namespace tessavo
