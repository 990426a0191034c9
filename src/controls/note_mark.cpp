#include "controls/note_mark.h"

#include <algorithm>

#include "controls/accessible.h"
#include "controls/control_id.h"
#include "controls/skin_painter.h"
#include "controls/theme.h"

namespace tessavo {
namespace {

constexpr int signWidth = 10;
constexpr int textLeft = 15;
constexpr int spare = 2;  ///< behind the text, whose width is rounded
constexpr double stroke = 1.5;

// "Not equal".
void paintSign(SkinPainter& painter, double left, double middle) {
    painter.setPen(QPen(QColor::fromRgb(theme::lightBlue), stroke, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(QPointF(left + 1, middle - 2), QPointF(left + signWidth - 1, middle - 2));
    painter.drawLine(QPointF(left + 1, middle + 2), QPointF(left + signWidth - 1, middle + 2));
    painter.drawLine(QPointF(left + 3, middle + 5), QPointF(left + signWidth - 3, middle - 5));
}

}  // namespace

NoteMark::NoteMark(int controlId, QWidget* parent, Qt::Alignment side) : QWidget(parent), side_(side) {
    installAccessibility();
    setControlId(*this, controlId);
    setFont(theme::font(11));
    hide();
}

void NoteMark::setNote(const QString& line, const QString& whole) {
    const QString full = whole.isEmpty() ? line : whole;
    if (line_ == line && toolTip() == full) {
        return;
    }
    line_ = line;
    setToolTip(full);
    setAccessibleName(QString(full).replace(QLatin1Char('\n'), QLatin1String("; ")));
    setVisible(!line.isEmpty());
    update();
}

QString NoteMark::shownLine() const {
    return neededWidth() <= width()
               ? line_
               : fontMetrics().elidedText(line_, Qt::ElideRight, width() - textLeft - spare);
}

int NoteMark::neededWidth() const {
    return textLeft + fontMetrics().horizontalAdvance(line_) + spare;
}

void NoteMark::paintEvent(QPaintEvent* /*event*/) {
    SkinPainter painter(this);
    const int left = side_ == Qt::AlignRight ? std::max(0, width() - neededWidth()) : 0;
    paintSign(painter, left, height() / 2.0);
    painter.text(QRectF(left + textLeft, 0, width() - left - textLeft, height()),
                 Qt::AlignLeft | Qt::AlignVCenter, theme::text2, shownLine());
}

}  // namespace tessavo
