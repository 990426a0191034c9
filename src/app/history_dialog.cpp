#include "app/history_dialog.h"

#include <QPainter>
#include <QStyledItemDelegate>

#include "app/undo_commands.h"
#include "controls/skin_button.h"
#include "controls/theme.h"

namespace tessavo {

namespace {

constexpr int goButton = 1;
constexpr int closeButton = 2;
constexpr QSize buttonSize(92, 28);
constexpr int margin = 12;
constexpr int footHeight = 52;
constexpr int rowHeight = 24;
constexpr int signCentre = 14;
constexpr int timeLeft = 28;

QRgb signColor(HistoryModel::Kind kind) {
    switch (kind) {
        case HistoryModel::Kind::saved:
            return theme::lightBlue;
        case HistoryModel::Kind::confirmed:
            return theme::live;
        case HistoryModel::Kind::notice:
            return theme::mixed;
        default:
            return theme::level;
    }
}

/// Shape and colour tell the kinds apart: a disc for the current state, a square for what was saved, a tick
/// for what was confirmed, a bar for what was told.
void paintSign(QPainter& painter, QPointF centre, HistoryModel::Kind kind, HistoryModel::State state,
               QRgb ink) {
    const QColor color = QColor::fromRgb(ink);
    painter.setPen(QPen(color, 1.8, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(Qt::NoBrush);
    switch (kind) {
        case HistoryModel::Kind::saved:
            painter.drawRect(QRectF(centre - QPointF(3.5, 3.5), QSizeF(7, 7)));
            break;
        case HistoryModel::Kind::confirmed: {
            const QPointF tick[]{centre + QPointF(-4, 0), centre + QPointF(-1, 3), centre + QPointF(4, -3)};
            painter.drawPolyline(tick, 3);
            break;
        }
        case HistoryModel::Kind::notice:
            painter.drawLine(centre + QPointF(0, -4), centre + QPointF(0, 4));
            break;
        default:
            if (state == HistoryModel::State::current) {
                painter.setBrush(color);
                painter.drawEllipse(centre, 3.5, 3.5);
            }
    }
}

class RowPainter : public QStyledItemDelegate {
 public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override {
        const auto kind = static_cast<HistoryModel::Kind>(index.data(HistoryModel::kindRole).toInt());
        const auto state = static_cast<HistoryModel::State>(index.data(HistoryModel::stateRole).toInt());
        const bool isSelected = (option.state & QStyle::State_Selected) != 0;
        const bool isUndone = state == HistoryModel::State::undone;
        const bool isMark = kind != HistoryModel::Kind::start && kind != HistoryModel::Kind::step;
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        if (isSelected) {
            painter->setPen(Qt::NoPen);
            painter->setBrush(QColor::fromRgb(theme::selected));
            painter->drawRoundedRect(QRectF(option.rect).adjusted(2, 1, -2, -1), 3, 3);
        }
        paintSign(*painter, QPointF(option.rect.left() + signCentre, option.rect.center().y() + 0.5), kind,
                  state,
                  isSelected ? theme::white
                  : isUndone ? theme::text3
                             : signColor(kind));
        const QRgb quiet = isSelected ? theme::white : isUndone ? theme::text3 : theme::text2;
        const QRgb plain = isSelected || (!isUndone && !isMark) ? theme::text : quiet;
        QRect row = option.rect.adjusted(timeLeft, 0, -8, 0);
        const QString time = index.data(HistoryModel::timeRole).toString();
        painter->setFont(theme::font(11));
        painter->setPen(QColor::fromRgb(quiet));
        painter->drawText(row, Qt::AlignLeft | Qt::AlignVCenter, time);
        row.setLeft(row.left() + timeWidth(time));
        const bool isCurrent = state == HistoryModel::State::current;
        const QFont font = theme::font(12, isCurrent ? QFont::Medium : QFont::Normal);
        painter->setFont(font);
        painter->setPen(QColor::fromRgb(plain));
        const QString text = index.data().toString();
        painter->drawText(row, Qt::AlignLeft | Qt::AlignVCenter,
                          QFontMetrics(font).elidedText(text, Qt::ElideRight, row.width()));
        painter->restore();
    }

    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem& /*option*/,
                                 const QModelIndex& /*index*/) const override {
        return {100, rowHeight};
    }

 private:
    // The texts stand below each other, except those of another day, whose times are longer.
    static int timeWidth(const QString& time) {
        const QFontMetrics metrics(theme::font(11));
        return std::max(metrics.horizontalAdvance(QStringLiteral("00:00:00")),
                        metrics.horizontalAdvance(time)) +
               10;
    }
};

}  // namespace

HistoryDialog::HistoryDialog(UndoCommands& commands, QWidget* parent)
    : CDialogSK(parent), commands_(commands), model_(commands.history()), list_(new QListView(this)) {
    setObjectName(QStringLiteral("history"));
    setWindowTitle(QStringLiteral("History"));
    list_->setAccessibleName(QStringLiteral("History"));
    list_->setUniformItemSizes(true);
    list_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    list_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    list_->setItemDelegate(new RowPainter(list_));
    list_->setModel(&model_);
    const auto addButton = [this](const QString& text, int identifier) {
        auto* button = new CxSkinButton(text, identifier, this);
        // Enter goes to the row that is chosen in the list.
        button->setAutoDefault(false);
        return button;
    };
    auto* go = addButton(QStringLiteral("Go There"), goButton);
    go->setAccented(true);
    auto* close = addButton(QStringLiteral("Close"), closeButton);
    go_ = go;
    close_ = close;
    setMinimumSize(320, 200);
    resize(440, 520);
    connect(list_, &QAbstractItemView::activated, this, &HistoryDialog::goTo);
    connect(go, &QAbstractButton::clicked, this, [this] { goTo(list_->currentIndex()); });
    connect(close, &QAbstractButton::clicked, this, &QDialog::close);
    connect(&commands_, &UndoCommands::historyChanged, this, &HistoryDialog::follow);
    showCurrent();
    list_->setFocus();
}

void HistoryDialog::follow(HistoryEvent event) {
    if (event == HistoryEvent::tuningChanged) {
        return;
    }
    const int chosen = list_->currentIndex().row();
    model_.update();
    if (event == HistoryEvent::marksChanged && chosen >= 0) {
        list_->setCurrentIndex(model_.index(std::min(chosen, model_.rowCount() - 1), 0));
    } else {
        showCurrent();
    }
}

void HistoryDialog::showCurrent() {
    const QModelIndex current = model_.index(model_.currentRow(), 0);
    list_->setCurrentIndex(current);
    list_->scrollTo(current);
}

void HistoryDialog::goTo(const QModelIndex& row) {
    if (row.isValid()) {
        commands_.goTo(row.data(HistoryModel::positionRole).value<std::size_t>());
    }
}

void HistoryDialog::paintBackground(QPainter& painter, QSize size) const {
    CDialogSK::paintBackground(painter, size);
    paintFoot(painter, size, footHeight);
}

void HistoryDialog::resizeEvent(QResizeEvent* event) {
    CDialogSK::resizeEvent(event);
    list_->setGeometry(margin, margin, width() - 2 * margin, height() - footHeight - 2 * margin);
    const int top = height() - footHeight + (footHeight - buttonSize.height()) / 2;
    close_->setGeometry(QRect(QPoint(width() - margin - buttonSize.width(), top), buttonSize));
    go_->setGeometry(QRect(QPoint(width() - margin - 2 * buttonSize.width() - 8, top), buttonSize));
}

}  // namespace tessavo
