#include "controls/mem_dc.h"

#include <QtMath>

namespace tessavo {

CMemDC::CMemDC(QPainter& target, const QRect& area, QPixmap& store, const QColor& ground)
    : target_(target), area_(area), store_(store) {
    const double scale = target.deviceTransform().m11();
    const QSize size(qMax(1, qCeil(area.width() * scale)), qMax(1, qCeil(area.height() * scale)));
    if (store_.size() != size) {
        store_ = QPixmap(size);
    }
    store_.setDevicePixelRatio(scale);
    store_.fill(ground);
    painter_.begin(&store_);
    painter_.setFont(target.font());
    painter_.translate(-area.topLeft());
}

CMemDC::~CMemDC() {
    painter_.end();
    target_.drawPixmap(QPointF(area_.topLeft()), store_);
}

}  // namespace tessavo
