#include "controls/skin_combo_box.h"

#include <QAbstractItemView>
#include <QStyledItemDelegate>
#include <QWheelEvent>

#include "controls/control_id.h"
#include "controls/skin_drawing.h"
#include "controls/skin_painter.h"
#include "controls/theme.h"

namespace tessavo {
namespace {

constexpr int dotSize = 8;
constexpr int dotRoom = 13;
constexpr int chevronRoom = 20;
constexpr int compactChevronRoom = 13;
constexpr int rowHeight = 27;
constexpr int dotRole = Qt::UserRole + 100;

void paintDot(QPainter& painter, double left, double middle, const QColor& color) {
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    painter.drawEllipse(QRectF(left, middle - dotSize / 2.0, dotSize, dotSize));
}

/// Row of the opened list.
class RowDelegate : public QStyledItemDelegate {
 public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override {
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        QRectF row(option.rect);
        const bool current = (option.state & (QStyle::State_Selected | QStyle::State_MouseOver)) != 0;
        if (current) {
            painter->setPen(Qt::NoPen);
            painter->setBrush(QColor::fromRgb(theme::selected));
            painter->drawRoundedRect(row.adjusted(0, 1, 0, -1), 3, 3);
        }
        row.adjust(8, 0, -4, 0);
        const QColor dot = index.data(dotRole).value<QColor>();
        if (dot.isValid()) {
            paintDot(*painter, row.left(), row.center().y(), dot);
            row.setLeft(row.left() + dotRoom);
        }
        painter->setFont(option.font);
        painter->setPen(QColor::fromRgb(current ? theme::white : theme::text));
        painter->drawText(row, Qt::AlignLeft | Qt::AlignVCenter, index.data().toString());
        painter->restore();
    }

    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem& option,
                                 const QModelIndex& index) const override {
        return {QStyledItemDelegate::sizeHint(option, index).width() + 12, rowHeight};
    }
};

}  // namespace

SkinComboBox::SkinComboBox(int controlId, QWidget* parent) : QComboBox(parent) {
    setControlId(*this, controlId);
    setFont(theme::font(12));
    setFocusPolicy(Qt::StrongFocus);
    setItemDelegate(new RowDelegate(this));
    setMaxVisibleItems(16);
    setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
}

void SkinComboBox::setItemDot(int index, const QColor& color) {
    setItemData(index, color.isValid() ? QVariant(color) : QVariant(), dotRole);
    update();
}

QColor SkinComboBox::dotOf(int index) const {
    return itemData(index, dotRole).value<QColor>();
}

bool SkinComboBox::isCompact() const {
    return width() <= compactCombo;
}

int SkinComboBox::textLeft(bool dotted) const {
    const int left = isCompact() ? 5 : 8;
    return dotted ? left + dotRoom : left;
}

int SkinComboBox::neededWidth() const {
    int widest = 0;
    for (int index = 0; index < count(); ++index) {
        widest =
            qMax(widest, textLeft(dotOf(index).isValid()) + fontMetrics().horizontalAdvance(itemText(index)));
    }
    return widest + (isCompact() ? compactChevronRoom : chevronRoom);
}

void SkinComboBox::paintEvent(QPaintEvent* /*event*/) {
    SkinPainter painter(this);
    unsigned state = 0;
    state |= isEnabled() ? 0U : skinDisabled;
    state |= hovered_ ? skinHovered : 0U;
    state |= ring_.isShown() ? skinRinged : 0U;
    painter.piece({}, {SkinPiece::Kind::combo, state, size()});
    const QColor dot = dotOf(currentIndex());
    const int left = textLeft(dot.isValid());
    if (dot.isValid()) {
        paintDot(painter, left - dotRoom, height() / 2.0, isEnabled() ? dot : QColor::fromRgb(theme::off));
    }
    // Texts of the program fit; one that a person made up may not.
    const int room = width() - left - (isCompact() ? compactChevronRoom : chevronRoom);
    const QString shown = fontMetrics().elidedText(currentText(), Qt::ElideRight, room);
    painter.text(QRectF(left, 0, width() - left, height()), Qt::AlignLeft | Qt::AlignVCenter,
                 isEnabled() ? theme::text : theme::text3, shown);
}

void SkinComboBox::wheelEvent(QWheelEvent* event) {
    if (hasFocus()) {
        QComboBox::wheelEvent(event);
    } else {
        event->ignore();
    }
}

void SkinComboBox::resizeEvent(QResizeEvent* event) {
    setFont(theme::font(isCompact() ? 11 : 12));
    view()->setFont(theme::font(12));
    QComboBox::resizeEvent(event);
}

void SkinComboBox::focusInEvent(QFocusEvent* event) {
    ring_.focusIn(*event);
    QComboBox::focusInEvent(event);
    update();
}

void SkinComboBox::focusOutEvent(QFocusEvent* event) {
    ring_.focusOut(*event);
    QComboBox::focusOutEvent(event);
    update();
}

void SkinComboBox::enterEvent(QEnterEvent* event) {
    hovered_ = true;
    QComboBox::enterEvent(event);
    update();
}

void SkinComboBox::leaveEvent(QEvent* event) {
    hovered_ = false;
    QComboBox::leaveEvent(event);
    update();
}

}  // namespace tessavo
