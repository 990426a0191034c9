#include "controls/skin_group_box.h"

#include <QCoreApplication>
#include <QPaintEvent>
#include <QPainterPath>

#include "controls/accessible.h"
#include "controls/control_id.h"
#include "controls/skin_painter.h"
#include "controls/slider_event.h"
#include "controls/theme.h"

namespace tessavo {
namespace {

constexpr int titleHeight = 16;
constexpr int barHeight = 2;

}  // namespace

SkinGroupBox::SkinGroupBox(const QString& title, int controlId, QWidget* parent, Kind kind)
    : QWidget(parent),
      title_(title),
      titlePosition_(kind == Kind::card ? QPoint(12, 7) : QPoint(12, 9)),
      kind_(kind),
      centred_(kind == Kind::inset) {
    installAccessibility();
    setControlId(*this, controlId);
    setFont(theme::font(12, kind == Kind::card ? QFont::DemiBold : QFont::Medium));
    setAccessibleName(title);
}

void SkinGroupBox::setTitle(const QString& title) {
    title_ = title;
    setAccessibleName(title);
    update();
}

void SkinGroupBox::setTitlePosition(QPoint position, bool centred) {
    titlePosition_ = position;
    centred_ = centred;
    update();
}

void SkinGroupBox::setInCircuit(bool on) {
    const QColor bar = on ? QColor::fromRgb(theme::level) : QColor();
    if (bar == bar_ && dimmed_ == !on) {
        return;
    }
    bar_ = bar;
    dimmed_ = !on;
    setAccessibleDescription(on ? QStringLiteral("in circuit") : QStringLiteral("bypassed"));
    update();
}

void SkinGroupBox::setBar(const QColor& color) {
    bar_ = color;
    update();
}

int SkinGroupBox::neededWidth() const {
    return 2 * titlePosition_.x() + fontMetrics().horizontalAdvance(title_);
}

bool SkinGroupBox::event(QEvent* event) {
    if (SliderEvent::isSliderEvent(*event) && parentWidget() != nullptr) {
        return QCoreApplication::sendEvent(parentWidget(), event);
    }
    return QWidget::event(event);
}

void SkinGroupBox::paintEvent(QPaintEvent* event) {
    const bool card = kind_ == Kind::card;
    const QColor fill = QColor::fromRgb(card ? theme::card : theme::inset);
    const int top = titlePosition_.y() + titleHeight;
    // A slider that moves inside makes its group repaint a small rectangle again and again; filling it is
    // enough.
    if (QRect(6, top, width() - 12, height() - top - 6).contains(event->rect())) {
        QPainter(this).fillRect(event->rect(), fill);
        return;
    }
    SkinPainter painter(this);
    painter.roundFrame(rect(), card ? 6 : 5, fill, QColor::fromRgb(theme::line));
    if (card) {
        painter.fillRect(painter.snapped(QRectF(6, 1, width() - 12, 1)), QColor(255, 255, 255, 9));
    }
    if (bar_.isValid()) {
        QPainterPath shape;
        shape.addRoundedRect(painter.snapped(QRectF(1, 0, width() - 2, 10)), 5, 5);
        painter.save();
        painter.setClipRect(painter.snapped(QRectF(1, 0, width() - 2, barHeight)));
        painter.fillPath(shape, bar_);
        painter.restore();
    }
    const QRectF row(centred_ ? 0 : titlePosition_.x(), titlePosition_.y(),
                     width() - (centred_ ? 0 : titlePosition_.x()), titleHeight);
    const int across = centred_ ? Qt::AlignHCenter : Qt::AlignLeft;
    painter.text(row, across | Qt::AlignVCenter, dimmed_ ? theme::text2 : theme::text, title_);
}

}  // namespace tessavo
