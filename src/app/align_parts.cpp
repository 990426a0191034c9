#include "app/align_parts.h"

#include <QAccessible>
#include <QPolygonF>
#include <algorithm>
#include <array>

#include "app/plain_tool_tip.h"
#include "controls/skin_painter.h"
#include "controls/theme.h"
#include "plot/chart/dialog_parts.h"

namespace tessavo {

namespace {

constexpr double signPen = 1.5;
constexpr int slats = 4;
constexpr double slatGap = 1.4;
constexpr double samplePixels = 28;
constexpr double sampleHeight = 6;
constexpr double sampleGap = 3;
constexpr double itemGap = 13;
constexpr int lineHeight = 20;
constexpr int signLeft = 12;
constexpr int textLeft = 40;
constexpr int signSize = 16;
constexpr QRgb shortfallGround = 0xFF30252C;
constexpr QRgb shortfallEdge = 0xFF6B3338;

struct LegendItem {
    const char* text;
    int textWidth;
    QRgb color;
};

constexpr std::array<LegendItem, 4> legendItems{{{"path", 28, align_color::path},
                                                 {"group", 38, align_color::group},
                                                 {"channel", 50, theme::quality},
                                                 {"missing", 48, theme::clip}}};

}  // namespace

void paintAlignSign(QPainter& painter, QPointF corner, bool isInLine) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(corner);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(QColor::fromRgb(isInLine ? theme::live : theme::trouble), signPen, Qt::SolidLine,
                        Qt::RoundCap, Qt::RoundJoin));
    if (isInLine) {
        painter.drawPolyline(QPolygonF({{3.2, 8.4}, {6.6, 11.6}, {12.8, 4.8}}));
    } else {
        painter.drawPolygon(QPolygonF({{8, 2.4}, {14.2, 13.4}, {1.8, 13.4}}));
        painter.drawLine(QPointF(8, 6.4), QPointF(8, 9.6));
        painter.drawLine(QPointF(8, 11.4), QPointF(8, 11.6));
    }
    painter.restore();
}

void paintMissing(QPainter& painter, const QRectF& place) {
    const double pitch = place.width() / slats;
    // A slat too narrow to be seen would tell nothing.
    const double width = std::max(1.0, pitch - slatGap);
    for (int slat = 0; slat < slats; ++slat) {
        painter.fillRect(QRectF(place.left() + slat * pitch, place.top(), width, place.height()),
                         QColor::fromRgb(theme::clip));
    }
}

AlignLegend::AlignLegend(QWidget* parent) : QWidget(parent) {
    resize(usualSize);
}

void AlignLegend::paintEvent(QPaintEvent* /*event*/) {
    SkinPainter painter(this);
    painter.setFont(theme::font(11));
    painter.setRenderHint(QPainter::Antialiasing);
    double right = width();
    for (auto item = legendItems.rbegin(); item != legendItems.rend(); ++item) {
        const double textLeftEdge = right - item->textWidth;
        painter.text(QRectF(textLeftEdge, 0, item->textWidth, height()), Qt::AlignLeft | Qt::AlignVCenter,
                     theme::text2, QLatin1String(item->text));
        const QRectF sample(textLeftEdge - sampleGap - samplePixels, (height() - sampleHeight) / 2.0,
                            samplePixels, sampleHeight);
        if (item->color == theme::clip) {
            paintMissing(painter, sample.adjusted(3, 0, -3, 0));
        } else {
            painter.setPen(Qt::NoPen);
            painter.setBrush(QColor::fromRgb(item->color));
            painter.drawRoundedRect(sample, sampleHeight / 2, sampleHeight / 2);
        }
        right = sample.left() - itemGap;
    }
}

AlignVerdict::AlignVerdict(QWidget* parent)
    : QWidget(parent), lines_{makeLabel({}, this), makeLabel({}, this)} {
    lines_[0]->setColors(QColor::fromRgb(theme::text));
}

void AlignVerdict::showText(const QString& first, const QString& second, bool isShortfall) {
    const std::array texts{first, second};
    if (texts == texts_ && isShortfall == isShortfall_) {
        return;
    }
    texts_ = texts;
    isShortfall_ = isShortfall;
    layOut();
    update();
    if (QAccessible::isActive()) {
        QAccessibleEvent alert(lines_[0], QAccessible::Alert);
        QAccessible::updateAccessibility(&alert);
    }
}

QString AlignVerdict::text() const {
    return texts_[1].isEmpty() ? texts_[0] : texts_[0] + QLatin1Char('\n') + texts_[1];
}

void AlignVerdict::layOut() {
    const int left = isShortfall_ ? textLeft : signLeft;
    const int room = width() - left - signLeft;
    const int shown = texts_[1].isEmpty() ? 1 : 2;
    int top = (height() - shown * lineHeight) / 2;
    for (std::size_t i = 0; i < lines_.size(); ++i) {
        CColorControl& line = *lines_.at(i);
        const QString& text = texts_.at(i);
        const bool isWide = QFontMetrics(theme::font(12)).horizontalAdvance(text) > room;
        line.setFont(theme::font(isWide ? 11 : 12));
        line.setText(line.fontMetrics().elidedText(text, Qt::ElideRight, room));
        line.setAccessibleName(text);
        line.setToolTip(line.text() == text ? QString() : plainToolTip(text));
        line.setGeometry(left, top, room, lineHeight);
        line.setVisible(!text.isEmpty());
        top += lineHeight;
    }
}

void AlignVerdict::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    layOut();
}

void AlignVerdict::paintEvent(QPaintEvent* /*event*/) {
    SkinPainter painter(this);
    painter.roundFrame(rect(), 5, QColor::fromRgb(isShortfall_ ? shortfallGround : theme::inset),
                       QColor::fromRgb(isShortfall_ ? shortfallEdge : theme::line));
    if (isShortfall_) {
        paintAlignSign(painter, QPointF(signLeft, (height() - signSize) / 2.0), false);
    }
}

}  // namespace tessavo
