#include "controls/skin_tab_bar.h"

#include <QHoverEvent>
#include <QPainterPath>

#include "controls/control_id.h"
#include "controls/skin_painter.h"
#include "controls/theme.h"

namespace tessavo {
namespace {

constexpr int barHeight = 2;
constexpr int clearance = 4;

/// A rounded rectangle of which only the part above `bottom` shows: round corners at the top alone.
void paintTop(SkinPainter& painter, const QRectF& body, double bottom, const QBrush& fill,
              const QColor& border) {
    painter.save();
    painter.setClipRect(painter.snapped(QRectF(body.left(), body.top(), body.width(), bottom - body.top())));
    painter.roundFrame(body.adjusted(0, 0, 0, 12), 6, fill, border);
    painter.restore();
}

}  // namespace

SkinTabBar::SkinTabBar(int controlId, QWidget* parent) : SkinTabBarBase(parent) {
    setControlId(*this, controlId);
    setFont(theme::font(13));
    setFocusPolicy(Qt::TabFocus);
    setAttribute(Qt::WA_Hover);
    setDrawBase(false);
    setExpanding(false);
    setUsesScrollButtons(false);
    setElideMode(Qt::ElideNone);
}

int SkinTabBar::addFixedTab(const QString& text, int width) {
    widths_.append(width);
    return addTab(text);
}

QSize SkinTabBar::tabSizeHint(int index) const {
    const int width = index < widths_.size() ? widths_[index] : neededWidth(index);
    return {width + gap, rowHeight};
}

QRect SkinTabBar::tabBody(int index) const {
    return tabRect(index).adjusted(0, 0, -gap, 0);
}

int SkinTabBar::neededWidth(int index) const {
    return QFontMetrics(theme::font(13, QFont::Medium)).horizontalAdvance(tabText(index)) + 2 * clearance;
}

bool SkinTabBar::event(QEvent* event) {
    if (event->type() == QEvent::HoverMove || event->type() == QEvent::HoverEnter ||
        event->type() == QEvent::HoverLeave) {
        const bool left = event->type() == QEvent::HoverLeave;
        const int hovered = left ? -1 : tabAt(static_cast<QHoverEvent*>(event)->position().toPoint());
        if (hovered != hovered_) {
            hovered_ = hovered;
            update();
        }
    }
    return QTabBar::event(event);
}

void SkinTabBar::paintEvent(QPaintEvent* /*event*/) {
    SkinPainter painter(this);
    for (int index = 0; index < count(); ++index) {
        const QRectF body = tabBody(index);
        const bool chosen = index == currentIndex();
        const bool lively = chosen || (index == hovered_ && isTabEnabled(index));
        if (chosen) {
            paintTop(painter, body, body.bottom(), QColor::fromRgb(theme::window),
                     QColor::fromRgb(theme::line));
            paintTop(painter, body.adjusted(1, 0, -1, 0), body.top() + barHeight,
                     QColor::fromRgb(theme::level), {});
        } else if (lively) {
            paintTop(painter, body, body.bottom() - 1, QColor(255, 255, 255, 13), {});
        }
        if (chosen && isRingShown()) {
            painter.focusRing(body.adjusted(5, 5, -5, -4), 5);
        }
        painter.setFont(theme::font(13, chosen ? QFont::Medium : QFont::Normal));
        painter.text(body, Qt::AlignCenter | Qt::TextHideMnemonic,
                     !isTabEnabled(index) ? theme::text3
                     : lively             ? theme::text
                                          : theme::text2,
                     tabText(index));
    }
}

}  // namespace tessavo
