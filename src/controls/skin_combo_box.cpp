#include "controls/skin_combo_box.h"

#include <QAbstractItemView>
#include <QStyledItemDelegate>

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
constexpr int separatorHeight = 9;
constexpr int numberGap = 6;
constexpr int dotRole = Qt::UserRole + 100;
constexpr int numberRole = Qt::UserRole + 101;

int numberRoom(const QFontMetrics& metrics, const QString& number) {
    return number.isEmpty() ? 0 : metrics.horizontalAdvance(number) + numberGap;
}

void paintDot(QPainter& painter, double left, double middle, const QColor& color) {
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    painter.drawEllipse(QRectF(left, middle - dotSize / 2.0, dotSize, dotSize));
}

// What QComboBox::insertSeparator() leaves.
bool isSeparator(const QModelIndex& index) {
    return index.data(Qt::AccessibleDescriptionRole).toString() == QStringLiteral("separator");
}

/// Row of the opened list.
class RowDelegate : public QStyledItemDelegate {
 public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override {
        if (isSeparator(index)) {
            painter->fillRect(
                QRect(option.rect.left() + 4, option.rect.center().y(), option.rect.width() - 8, 1),
                QColor::fromRgb(theme::edge));
            return;
        }
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
        const auto dot = index.data(dotRole).value<QColor>();
        if (dot.isValid()) {
            paintDot(*painter, row.left(), row.center().y(), dot);
            row.setLeft(row.left() + dotRoom);
        }
        painter->setFont(option.font);
        const QFontMetrics metrics(option.font);
        const QString number = index.data(numberRole).toString();
        if (!number.isEmpty()) {
            painter->setPen(QColor::fromRgb(current ? theme::white : theme::text2));
            painter->drawText(row, Qt::AlignLeft | Qt::AlignVCenter, number);
            row.setLeft(row.left() + numberRoom(metrics, number));
        }
        painter->setPen(QColor::fromRgb(current ? theme::white : theme::text));
        painter->drawText(
            row, Qt::AlignLeft | Qt::AlignVCenter,
            metrics.elidedText(index.data().toString(), Qt::ElideRight, static_cast<int>(row.width())));
        painter->restore();
    }

    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem& option,
                                 const QModelIndex& index) const override {
        return {QStyledItemDelegate::sizeHint(option, index).width() + 12,
                isSeparator(index) ? separatorHeight : rowHeight};
    }
};

}  // namespace

SkinComboBox::SkinComboBox(int controlId, QWidget* parent) : SkinComboBoxBase(parent) {
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

void SkinComboBox::setItemNumber(int index, int number) {
    const QVariant text = number < 0 ? QVariant() : QVariant(QString::number(number));
    setItemData(index, text, numberRole);
    setItemData(index,
                number < 0 ? QVariant() : QVariant(text.toString() + QLatin1Char(' ') + itemText(index)),
                Qt::AccessibleTextRole);
    update();
}

QColor SkinComboBox::dotOf(int index) const {
    return itemData(index, dotRole).value<QColor>();
}

QString SkinComboBox::numberOf(int index) const {
    return itemData(index, numberRole).toString();
}

bool SkinComboBox::isCompact() const {
    return width() <= compactCombo;
}

int SkinComboBox::markLeft() const {
    return isCompact() ? 5 : 8;
}

int SkinComboBox::numberLeft(int index) const {
    return dotOf(index).isValid() ? markLeft() + dotRoom : markLeft();
}

int SkinComboBox::textLeft(int index) const {
    return numberLeft(index) + numberRoom(fontMetrics(), numberOf(index));
}

int SkinComboBox::neededWidth() const {
    int widest = 0;
    for (int index = 0; index < count(); ++index) {
        widest = qMax(widest, textLeft(index) + fontMetrics().horizontalAdvance(itemText(index)));
    }
    return widest + (isCompact() ? compactChevronRoom : chevronRoom);
}

void SkinComboBox::paintEvent(QPaintEvent* /*event*/) {
    SkinPainter painter(this);
    unsigned state = markState();
    state |= isEnabled() ? 0U : skinDisabled;
    state |= isHovered() ? skinHovered : 0U;
    state |= isRingShown() ? skinRinged : 0U;
    painter.piece({}, {SkinPiece::Kind::combo, state, size()});
    const QColor dot = dotOf(currentIndex());
    if (dot.isValid()) {
        paintDot(painter, markLeft(), height() / 2.0, isEnabled() ? dot : QColor::fromRgb(theme::off));
    }
    const int numberAt = numberLeft(currentIndex());
    painter.text(QRectF(numberAt, 0, width() - numberAt, height()), Qt::AlignLeft | Qt::AlignVCenter,
                 isEnabled() ? theme::text2 : theme::text3, numberOf(currentIndex()));
    const int left = textLeft(currentIndex());
    // Texts of the program fit; one that a person made up may not.
    const int room = width() - left - (isCompact() ? compactChevronRoom : chevronRoom);
    const QString shown = fontMetrics().elidedText(currentText(), Qt::ElideRight, room);
    painter.text(QRectF(left, 0, width() - left, height()), Qt::AlignLeft | Qt::AlignVCenter,
                 isEnabled() ? theme::text : theme::text3, shown);
    mixedMark().paint(painter, rect());
}

void SkinComboBox::resizeEvent(QResizeEvent* event) {
    setFont(theme::font(isCompact() ? 11 : 12));
    view()->setFont(theme::font(12));
    QComboBox::resizeEvent(event);
}

}  // namespace tessavo
