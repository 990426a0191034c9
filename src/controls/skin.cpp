#include "controls/skin.h"

#include <QCache>
#include <QCoreApplication>
#include <QHashFunctions>
#include <QPainterPath>
#include <QtMath>

#include "controls/skin_drawing.h"
#include "controls/theme.h"

namespace tessavo {
namespace {

struct Key {
    SkinPiece piece;
    double scale;

    bool operator==(const Key&) const = default;
};

size_t qHash(const Key& key, size_t seed = 0) {
    return qHashMulti(seed, static_cast<int>(key.piece.kind), key.piece.state, key.piece.size.width(),
                      key.piece.size.height(), key.piece.color, key.scale);
}

using Cache = QCache<Key, QPixmap>;

Cache& cache() {
    static Cache pieces(Skin::limitBytes);
    // The toolkit wants all pixmaps destroyed before the application object.
    [[maybe_unused]] static const bool cleaned = (qAddPostRoutine([] { Skin::clear(); }), true);
    return pieces;
}

int withParityOf(int size, bool odd, int correction) {
    return (size % 2 != 0) == odd ? size : size + correction;
}

QSize deviceSize(const SkinPiece& piece, double scale) {
    const bool horizontal = (piece.state & skinHorizontal) != 0;
    const auto oriented = [horizontal](int across, int along) {
        return horizontal ? QSize(along, across) : QSize(across, along);
    };
    const SliderPixels pixels(scale, (piece.state & skinOddBox) != 0);
    if (piece.kind == SkinPiece::Kind::sliderCap) {
        return oriented(pixels.capAcross + 2 * pixels.capMargin, pixels.capAlong + 2 * pixels.capMargin);
    }
    const QSize whole(qRound(piece.size.width() * scale), qRound(piece.size.height() * scale));
    if (piece.kind == SkinPiece::Kind::sliderChannel) {
        return oriented(pixels.channel, horizontal ? whole.width() : whole.height());
    }
    return whole;
}

void draw(const SkinInk& ink, const SkinPiece& piece) {
    switch (piece.kind) {
        case SkinPiece::Kind::button:
        case SkinPiece::Kind::combo:
            return drawButtonPiece(ink, piece);
        case SkinPiece::Kind::edit:
        case SkinPiece::Kind::upDown:
            return drawEditPiece(ink, piece);
        case SkinPiece::Kind::checkMark:
        case SkinPiece::Kind::radioMark:
            return drawMarkPiece(ink, piece);
        case SkinPiece::Kind::sliderChannel:
        case SkinPiece::Kind::sliderCap:
            return drawSliderPiece(ink, piece);
        default:
            return drawLightPiece(ink, piece);
    }
}

}  // namespace

// The cap rounds down so that its ring stays inside the slider at every scale.
SliderPixels::SliderPixels(double scale, bool oddBox)
    : hair(Skin::hairline(scale)),
      channel(withParityOf(qRound(6 * scale), oddBox, 1)),
      fill(qMax(1, channel - 2 * hair)),
      capAcross(withParityOf(qRound(Skin::capWidth * scale), oddBox, -1)),
      capAlong(qFloor(Skin::capLength * scale)),
      capMargin(qRound(4 * scale)) {}

int Skin::hairline(double scale) {
    return qMax(1, qRound(scale));
}

QPixmap Skin::pixmap(const SkinPiece& piece, double scale) {
    const Key key{piece, scale};
    if (const QPixmap* cached = cache().object(key)) {
        return *cached;
    }
    const QSize size = deviceSize(piece, scale);
    if (size.isEmpty()) {
        return {};
    }
    QPixmap pixmap(size);
    pixmap.fill(Qt::transparent);
    {
        QPainter painter(&pixmap);
        painter.setRenderHint(QPainter::Antialiasing);
        draw({painter, size, scale, hairline(scale)}, piece);
    }
    cache().insert(key, new QPixmap(pixmap), qsizetype{4} * size.width() * size.height());
    return pixmap;
}

void Skin::clear() {
    cache().clear();
}

qsizetype Skin::cachedBytes() {
    return cache().totalCost();
}

void SkinInk::frame(const QRectF& rect, double radius, const QBrush& fill, const QColor& border,
                    double width) const {
    const double half = width / 2;
    const double round = qMax(0.0, radius * scale - half);
    painter.setPen(QPen(border, width));
    painter.setBrush(fill);
    painter.drawRoundedRect(rect.adjusted(half, half, -half, -half), round, round);
}

void SkinInk::ring(const QRectF& rect, double radius, QRgb color) const {
    frame(rect, radius, Qt::NoBrush, QColor::fromRgb(color), whole(2));
}

void SkinInk::stroke(QPointF origin, std::initializer_list<QPointF> points, const QColor& color,
                     double width) const {
    QPainterPath path;
    for (const QPointF& point : points) {
        const QPointF at = origin + point * scale;
        if (path.elementCount() == 0) {
            path.moveTo(at);
        } else {
            path.lineTo(at);
        }
    }
    painter.strokePath(path, QPen(color, width * scale, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
}

QBrush verticalGradient(const QRectF& rect, QRgb top, QRgb bottom) {
    QLinearGradient gradient(rect.topLeft(), rect.bottomLeft());
    gradient.setColorAt(0, QColor::fromRgb(top));
    gradient.setColorAt(1, QColor::fromRgb(bottom));
    return gradient;
}

}  // namespace tessavo
