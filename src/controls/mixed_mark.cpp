#include "controls/mixed_mark.h"

#include <QWidget>

#include "controls/control_note.h"
#include "controls/skin_painter.h"
#include "controls/theme.h"

namespace tessavo {
namespace {

constexpr double outlineWidth = 1.5;
constexpr double dash = 2;  ///< in widths of the line
constexpr double gap = 1.5;
constexpr double radius = 4;

}  // namespace

void MixedMark::setNote(const QString& note) {
    if (note == note_) {
        return;
    }
    replaceNote(control_, note_, note);
    note_ = note;
    setShown(!note.isEmpty());
}

void MixedMark::setShown(bool shown) {
    if (shown_ != shown) {
        shown_ = shown;
        control_.update();
    }
}

void MixedMark::paint(SkinPainter& painter, const QRectF& bounds) const {
    if (!isShown()) {
        return;
    }
    const double width = qRound(outlineWidth * painter.scale()) / painter.scale();
    QPen pen(QColor::fromRgb(theme::mixed), width, Qt::CustomDashLine, Qt::FlatCap);
    pen.setDashPattern({dash, gap});
    painter.setPen(pen);
    painter.setBrush(Qt::NoBrush);
    const double half = width / 2;
    painter.drawRoundedRect(painter.snapped(bounds).adjusted(half, half, -half, -half), radius - half,
                            radius - half);
}

void MixedMark::paintOverControl() const {
    if (isShown()) {
        SkinPainter painter(&control_);
        paint(painter, control_.rect());
    }
}

}  // namespace tessavo
