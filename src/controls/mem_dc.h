#pragma once

#include <QPainter>
#include <QPixmap>
#include <QRect>

namespace tessavo {

/// Off-screen painter: what is drawn through it goes to a pixmap and reaches the target in one copy when the
/// object ends. The caller keeps the pixmap, so that painting again allocates nothing.
class CMemDC {
 public:
    /// `area` is in the target's logical pixels; drawing uses the same coordinates and starts from `ground`.
    CMemDC(QPainter& target, const QRect& area, QPixmap& store, const QColor& ground = Qt::transparent);
    ~CMemDC();
    CMemDC(const CMemDC&) = delete;
    CMemDC& operator=(const CMemDC&) = delete;

    [[nodiscard]] QPainter& painter() { return painter_; }
    QPainter* operator->() { return &painter_; }

 private:
    QPainter& target_;
    QRect area_;
    QPixmap& store_;
    QPainter painter_;
};

}  // namespace tessavo
