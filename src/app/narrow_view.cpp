#include "app/narrow_view.h"

#include <QScrollBar>
#include <QTabBar>

#include "app/tessavo_view.h"

namespace tessavo {

namespace {

constexpr int barWidth = 8;
// Stays beside what is brought into sight.
constexpr int gap = 12;

}  // namespace

NarrowView::NarrowView(CTessavoView* view, QWidget* parent)
    : QScrollArea(parent), view_(view), down_(new QScrollBar(Qt::Vertical, this)) {
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::NoFocus);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setWidget(view);
    for (auto* tabs : view->findChildren<QTabBar*>()) {
        connect(tabs, &QTabBar::currentChanged, this, [this, tabs] { bringIntoSight(tabs); });
    }
}

void NarrowView::bringIntoSight(QWidget* control) {
    const auto* tabs = qobject_cast<QTabBar*>(control);
    const QRect needed = tabs != nullptr ? tabs->tabRect(tabs->currentIndex()) : control->rect();
    const QRect bounds(control->mapTo(view_, needed.topLeft()), needed.size());
    // The end of a control that is wider than the window comes last.
    ensureVisible(bounds.right(), bounds.center().y(), gap, 0);
    ensureVisible(bounds.left(), bounds.center().y(), gap, 0);
}

bool NarrowView::focusNextPrevChild(bool next) {
    // The base would bring the whole row of tabs into sight, of which the wrong end might be seen.
    return QWidget::focusNextPrevChild(next);  // NOLINT(bugprone-parent-virtual-call)
}

void NarrowView::resizeEvent(QResizeEvent* event) {
    const bool narrow = width() < CTessavoView::viewWidth;
    setViewportMargins(0, 0, narrow ? barWidth : 0, 0);
    setHorizontalScrollBarPolicy(narrow ? Qt::ScrollBarAlwaysOn : Qt::ScrollBarAlwaysOff);
    down_->setGeometry(width() - barWidth, CTessavoView::pageTop, barWidth,
                       viewport()->height() - CTessavoView::pageTop);
    down_->setVisible(narrow);
    view_->scrollPageWith(narrow ? down_ : nullptr);
    view_->resize(CTessavoView::viewWidth, viewport()->height());
    QScrollArea::resizeEvent(event);
}

}  // namespace tessavo
