#pragma once

#include <QAbstractButton>
#include <QImage>
#include <QLabel>
#include <QPainter>
#include <QWidget>
#include <array>
#include <gtest/gtest.h>
#include <span>
#include <vector>

#include "controls/skin_group_box.h"
#include "plot/chart/chart.h"
#include "plot/chart/chart_host.h"
#include "plot/response_curve.h"

namespace tessavo::test {

/// Answers from a list and keeps what was told.
class FakeHost : public IChartHost {
 public:
    void showMessage(QWidget* /*parent*/, const QString& text) override { messages.push_back(text); }
    std::optional<QString> askSavePath(QWidget* /*parent*/, const QString& filter,
                                       const QString& /*suffix*/) override {
        filters.push_back(filter);
        return path;
    }
    std::optional<QFont> askFont(QWidget* /*parent*/, const QFont& /*current*/) override { return font; }
    std::optional<QRgb> askColor(QWidget* /*parent*/, QRgb /*current*/) override { return color; }

    std::vector<QString> messages;
    std::vector<QString> filters;
    std::optional<QString> path;
    std::optional<QFont> font;
    std::optional<QRgb> color;
};

/// Adds n x values and n y values.
inline int addXy(CChart& chart, const std::vector<double>& x, const std::vector<double>& y) {
    std::vector<double> values(x);
    values.insert(values.end(), y.begin(), y.end());
    return chart.addDataSet(values, std::array{2, static_cast<int>(x.size())});
}

/// A response that is the same at every frequency.
inline ResponseCurve flatCurve(std::int32_t magnitudeDb) {
    ResponseCurve curve;
    for (std::size_t n = 0; n < curvePointCount; ++n) {
        curve.frequencyHz.at(n) = curveStepHz * static_cast<std::int32_t>(n + 1);
        curve.magnitudeDb.at(n) = magnitudeDb;
    }
    return curve;
}

inline QImage drawn(const CChart& chart, QSize size, double scale = 1) {
    QImage image(size * scale, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(scale);
    image.fill(Qt::black);
    QPainter painter(&image);
    chart.draw(painter, QRectF(QPointF(0, 0), QSizeF(size)));
    return image;
}

/// Colour at a place in logical pixels.
inline QRgb pixelAt(const QImage& image, QPointF point) {
    const double scale = image.devicePixelRatio();
    return image.pixel(QPointF(point * scale - QPointF(0.5, 0.5)).toPoint());
}

/// How far apart two colours are, in the channel where they differ most.
inline int difference(QRgb one, QRgb other) {
    return std::max({std::abs(qRed(one) - qRed(other)), std::abs(qGreen(one) - qGreen(other)),
                     std::abs(qBlue(one) - qBlue(other))});
}

/// Pixels of the image within a rectangle of logical pixels that have nearly this colour.
inline int countOf(const QImage& image, QRgb color, const QRectF& where, int tolerance = 12) {
    const double scale = image.devicePixelRatio();
    const QRect device =
        QRectF(where.topLeft() * scale, where.size() * scale).toAlignedRect().intersected(image.rect());
    int count = 0;
    for (int y = device.top(); y <= device.bottom(); ++y) {
        for (int x = device.left(); x <= device.right(); ++x) {
            count += difference(image.pixel(x, y), color) <= tolerance ? 1 : 0;
        }
    }
    return count;
}

template <typename Widget>
Widget* byName(const QWidget& parent, const QString& accessibleName) {
    for (Widget* const widget : parent.findChildren<Widget*>()) {
        if (widget->accessibleName() == accessibleName) {
            return widget;
        }
    }
    ADD_FAILURE() << "nothing is named " << accessibleName.toStdString();
    return nullptr;
}

inline QAbstractButton* button(const QWidget& parent, const QString& text) {
    for (QAbstractButton* const candidate : parent.findChildren<QAbstractButton*>()) {
        if (candidate->text() == text) {
            return candidate;
        }
    }
    ADD_FAILURE() << "no button says " << text.toStdString();
    return nullptr;
}

/// Whether a label, a button or a group shows this text.
inline bool shows(const QWidget& parent, const QString& text) {
    const auto has = [&text](const QObject* object) {
        const auto* const group = qobject_cast<const SkinGroupBox*>(object);
        return object->property("text").toString() == text || (group != nullptr && group->title() == text);
    };
    const auto children = parent.findChildren<QWidget*>();
    return std::any_of(children.begin(), children.end(), has);
}

}  // namespace tessavo::test

inline void PrintTo(const QString& text, std::ostream* out) {
    *out << '"' << text.toStdString() << '"';
}
