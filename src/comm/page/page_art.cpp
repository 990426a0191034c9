#include "comm/page/page_art.h"

#include <QPainter>
#include <QPainterPath>
#include <cmath>

namespace tessavo {

namespace {

constexpr QRgb gridColor = 0xFF191F26;
constexpr int gridStep = 22;

struct Wave {
    QRgb color;
    double height;
};
constexpr Wave waves[]{{0xFF1C3551, 46}, {0xFF1A3C3E, 36}, {0xFF2B264E, 28}};

double bell(double distance, double width) {
    return std::exp(-std::pow(distance / width, 2));
}

QPainterPath waveLine(QSize size, double height, int number) {
    QPainterPath line;
    for (int x = 0; x <= size.width(); x += 2) {
        const double t = static_cast<double>(x) / size.width();
        const double value = bell(t - 0.24 - 0.05 * number, 0.1) -
                             0.85 * bell(t - 0.54 + 0.04 * number, 0.07) +
                             0.75 * bell(t - 0.80 - 0.02 * number, 0.09);
        const QPointF at(x, size.height() / 2.0 - height * value);
        if (x == 0) {
            line.moveTo(at);
        } else {
            line.lineTo(at);
        }
    }
    return line;
}

void fadeOut(QPainter& painter, QSize size, QPointF end, double clear) {
    QLinearGradient fade(QPointF(), end);
    fade.setColorAt(0, Qt::transparent);
    fade.setColorAt(clear, Qt::black);
    fade.setColorAt(1 - clear, Qt::black);
    fade.setColorAt(1, Qt::transparent);
    painter.setCompositionMode(QPainter::CompositionMode_DestinationIn);
    painter.fillRect(QRect(QPoint(), size), fade);
}

}  // namespace

QPixmap pageArt(QSize size, double scale) {
    QPixmap art(size * scale);
    art.setDevicePixelRatio(scale);
    art.fill(Qt::transparent);
    QPainter painter(&art);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(QColor::fromRgb(gridColor), 1));
    for (int x = 0; x <= size.width(); x += gridStep) {
        painter.drawLine(QPointF(x + 0.5, 0), QPointF(x + 0.5, size.height()));
    }
    for (int y = size.height() / 2 % gridStep; y <= size.height(); y += gridStep) {
        painter.drawLine(QPointF(0, y + 0.5), QPointF(size.width(), y + 0.5));
    }
    int number = 0;
    for (const Wave& wave : waves) {
        painter.setPen(QPen(QColor::fromRgb(wave.color), 2));
        painter.drawPath(waveLine(size, wave.height, number++));
    }
    fadeOut(painter, size, QPointF(size.width(), 0), 0.2);
    fadeOut(painter, size, QPointF(0, size.height()), 0.25);
    return art;
}

}  // namespace tessavo
