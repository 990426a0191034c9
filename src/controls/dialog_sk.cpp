#include "controls/dialog_sk.h"

#include <QKeyEvent>
#include <QPaintEvent>

#include "controls/skin_painter.h"
#include "controls/theme.h"

namespace tessavo {

CDialogSK::CDialogSK(QWidget* parent) : QDialog(parent) {
    setFont(theme::font(12));
    // The background covers the whole dialog, so the toolkit need not clear it first.
    setAttribute(Qt::WA_OpaquePaintEvent);
}

void CDialogSK::paintBackground(QPainter& painter, QSize size) const {
    painter.fillRect(QRect(QPoint(), size), QColor::fromRgb(theme::window));
}

void CDialogSK::paintFoot(QPainter& painter, QSize size, int height) {
    const QRect foot(0, size.height() - height, size.width(), height);
    painter.fillRect(foot, QColor::fromRgb(theme::inset));
    painter.fillRect(QRect(foot.left(), foot.top(), foot.width(), 1), QColor::fromRgb(theme::line));
}

void CDialogSK::backgroundChanged() {
    background_ = QPixmap();
    update();
}

void CDialogSK::paintEvent(QPaintEvent* event) {
    SkinPainter painter(this);
    const double scale = painter.scale();
    if (background_.isNull() || backgroundSize_ != size() || background_.devicePixelRatio() != scale) {
        background_ = QPixmap(QSize(qCeil(width() * scale), qCeil(height() * scale)));
        background_.setDevicePixelRatio(scale);
        background_.fill(QColor::fromRgb(theme::window));
        backgroundSize_ = size();
        QPainter drawing(&background_);
        drawing.setRenderHint(QPainter::Antialiasing);
        paintBackground(drawing, size());
    }
    painter.setClipRegion(event->region());
    painter.drawPixmap(QPointF(), background_);
}

void CDialogSK::keyPressEvent(QKeyEvent* event) {
    if (isWindow()) {
        QDialog::keyPressEvent(event);
    } else {
        event->ignore();
    }
}

}  // namespace tessavo
