#pragma once

#include <QPainter>
#include <QPixmap>
#include <QRect>

namespace tessavo {

/// Off-screen painter: draws into a pixmap, which is copied to the target in one step when the object is
/// destroyed, so that nobody sees a half-drawn picture. The pixmap belongs to the caller, so that the next
/// painting need not allocate one.
class CMemDC {
 public:
    /// \param target what the picture is copied to
    /// \param area the part of the target that is drawn, in its logical pixels; drawing uses the same
    ///     coordinates
    /// \param store the pixmap; made anew when its size or scale does not fit
    /// \param ground colour that the area is filled with at first
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
