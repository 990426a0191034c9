#include "controls/skin.h"

#include <QImage>
#include <QPaintEvent>
#include <QPainter>
#include <cmath>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "controls/bitmap_slider.h"
#include "controls/number_edit.h"
#include "controls/pictures.h"
#include "controls/skin_button.h"
#include "controls/skin_check_box.h"
#include "controls/skin_combo_box.h"
#include "controls/skin_radio_button.h"
#include "controls/theme.h"
#include "support/synthetic_events.h"

namespace tessavo::test {
namespace {

using Kind = SkinPiece::Kind;

constexpr double scales[]{1.0, 1.25, 1.5, 1.75, 2.0, 3.0};

QImage render(QWidget& widget, double scale) {
    QImage image((QSizeF(widget.size()) * scale).toSize(), QImage::Format_RGB32);
    image.setDevicePixelRatio(scale);
    image.fill(QColor::fromRgb(theme::card));
    QPainter painter(&image);
    widget.render(&painter, {}, {}, QWidget::DrawChildren);
    painter.end();
    image.setDevicePixelRatio(1);
    return image;
}

/// Smallest rectangle around all pixels of a colour.
QRect boundsOf(const QImage& image, QRgb color) {
    QRect bounds;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixel(x, y) == color) {
                bounds |= QRect(x, y, 1, 1);
            }
        }
    }
    return bounds;
}

double luminance(QRgb color) {
    const auto linear = [](int channel) {
        const double share = channel / 255.0;
        return share <= 0.03928 ? share / 12.92 : std::pow((share + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(qRed(color)) + 0.7152 * linear(qGreen(color)) + 0.0722 * linear(qBlue(color));
}

double contrast(QRgb first, QRgb second) {
    const double a = luminance(first);
    const double b = luminance(second);
    return (std::max(a, b) + 0.05) / (std::min(a, b) + 0.05);
}

TEST(Skin, DrawsInDevicePixels) {
    for (const double scale : scales) {
        const QPixmap button = Skin::pixmap({Kind::button, 0, QSize(104, 28)}, scale);
        EXPECT_EQ(button.size(), QSize(qRound(104 * scale), qRound(28 * scale)));
        EXPECT_EQ(button.devicePixelRatio(), 1.0);
    }
}

TEST(Skin, DrawsEachPieceOnlyOnce) {
    Skin::clear();
    const SkinPiece piece{Kind::button, skinHovered, QSize(90, 28)};
    const qint64 first = Skin::pixmap(piece, 1.5).cacheKey();
    EXPECT_EQ(Skin::pixmap(piece, 1.5).cacheKey(), first);
    EXPECT_NE(Skin::pixmap(piece, 2).cacheKey(), first);
    EXPECT_NE(Skin::pixmap({Kind::button, skinPressed, QSize(90, 28)}, 1.5).cacheKey(), first);
    EXPECT_NE(Skin::pixmap({Kind::combo, skinHovered, QSize(90, 28)}, 1.5).cacheKey(), first);
    EXPECT_EQ(Skin::pixmap(piece, 1.5).cacheKey(), first);
}

TEST(Skin, ForgetsWhenItKeepsTooMuch) {
    Skin::clear();
    EXPECT_EQ(Skin::cachedBytes(), 0);
    for (int width = 100; width < 700; ++width) {
        EXPECT_FALSE(Skin::pixmap({Kind::button, 0, QSize(width, 28)}, 2).isNull());
        ASSERT_LE(Skin::cachedBytes(), Skin::limitBytes);
    }
    Skin::clear();
}

TEST(Skin, AnEmptyPieceIsNoPixmap) {
    EXPECT_TRUE(Skin::pixmap({Kind::button, 0, QSize(0, 28)}, 1).isNull());
    EXPECT_TRUE(Skin::pixmap({Kind::edit, 0, QSize(-5, 28)}, 1).isNull());
}

TEST(Skin, PartsOfASliderAreCentredOnWholePixels) {
    for (const double scale : scales) {
        EXPECT_EQ(Skin::hairline(scale), qMax(1, qRound(scale)));
        for (const bool odd : {false, true}) {
            const SliderPixels pixels(scale, odd);
            EXPECT_EQ(pixels.channel % 2 != 0, odd);
            EXPECT_EQ(pixels.capAcross % 2 != 0, odd);
            EXPECT_EQ((pixels.channel - pixels.fill) % 2, 0);
            EXPECT_GT(pixels.fill, 0);
        }
    }
    const SliderPixels atOne(1, false);
    EXPECT_EQ(atOne.channel, 6);
    EXPECT_EQ(atOne.fill, 4);
    EXPECT_EQ(atOne.capAcross, 22);
    EXPECT_EQ(atOne.capAlong, 13);
}

TEST(Skin, ControlsAtOddPlacesAreAsSharpAsAtEvenOnes) {
    CBitmapSlider slider(Qt::Vertical, 1);
    slider.resize(28, 182);
    CxSkinButton button(QString(), 2);
    button.resize(100, 28);
    SkinCheckBox check(QString(), 3);
    check.resize(22, 22);
    for (QWidget* control : std::initializer_list<QWidget*>{&slider, &button, &check}) {
        QWidget page;
        page.resize(300, 260);
        control->setParent(&page);
        control->show();
        for (const double scale : {1.5, 2.0}) {
            const auto at = [&](QPoint point) {
                control->move(point);
                // Half a pixel rounds up, and the last one may then lie outside.
                const QSize size = (QSizeF(control->size()) * scale).toSize() - QSize(1, 1);
                return render(page, scale)
                    .copy(QRect(QPoint(qRound(point.x() * scale), qRound(point.y() * scale)), size));
            };
            const QImage even = at({20, 20});
            EXPECT_EQ(at({21, 20}), even) << scale;
            EXPECT_EQ(at({20, 23}), even) << scale;
            EXPECT_EQ(at({25, 25}), even) << scale;
        }
        control->setParent(nullptr);
    }
}

TEST(Skin, EdgesOfACapAreCrispAtEveryScale) {
    for (const double scale : {1.0, 1.5, 2.0}) {
        const QImage cap = Skin::pixmap({Kind::sliderCap, 0, QSize(30, 21)}, scale).toImage();
        const SliderPixels pixels(scale, false);
        const int middle = cap.width() / 2;
        // A whole border line above the body, none of it half transparent.
        EXPECT_EQ(qAlpha(cap.pixel(middle, pixels.capMargin)), 255) << scale;
        EXPECT_EQ(cap.pixel(middle, pixels.capMargin), 0xFF0A0D10) << scale;
        EXPECT_EQ(qAlpha(cap.pixel(middle, pixels.capMargin - 1)), 0) << scale;
        int white = 0;
        for (int y = 0; y < cap.height(); ++y) {
            white += cap.pixel(middle, y) == theme::white ? 1 : 0;
        }
        EXPECT_GE(white, pixels.hair) << scale;
        EXPECT_LE(white, pixels.hair + 1) << scale;
    }
}

TEST(Skin, RingsLieInsideTheirControlsOnAllSides) {
    CxSkinButton button(QString(), 1);
    button.resize(100, 28);
    SkinComboBox combo(2);
    combo.resize(80, 24);
    NumberEdit edit(3);
    edit.resize(58, 24);
    SkinCheckBox check(QString(), 4);
    check.resize(22, 22);
    SkinRadioButton radio(QString(), 5);
    radio.resize(22, 22);
    for (QWidget* control : std::initializer_list<QWidget*>{&button, &combo, &edit, &check, &radio}) {
        EXPECT_TRUE(boundsOf(render(*control, 1), theme::focus).isNull());
        sendFocus(*control);
        for (const double scale : {1.0, 1.5, 2.0}) {
            const QImage image = render(*control, scale);
            // The outermost pixels of a circle are blended.
            const int blended = control == &radio ? 1 : 0;
            EXPECT_EQ(boundsOf(image, theme::focus),
                      image.rect().adjusted(blended, blended, -blended, -blended))
                << control->objectName().toStdString() << " at " << scale;
        }
    }
}

TEST(Skin, TheRingOfASliderIsWholeAtBothEnds) {
    for (const auto orientation : {Qt::Vertical, Qt::Horizontal}) {
        for (const int across : {28, 30}) {
            CBitmapSlider slider(orientation, 1);
            slider.resize(orientation == Qt::Vertical ? QSize(across, 182) : QSize(182, across));
            slider.setRange(0, 100);
            sendFocus(slider);
            for (const int position : {0, 37, 100}) {
                slider.setPosition(position);
                for (const double scale : {1.0, 1.5, 2.0}) {
                    const SliderPixels pixels(scale, qRound(across * scale) % 2 != 0);
                    const int reach = 2 * qRound(3 * scale);
                    QSize whole(pixels.capAcross + reach, pixels.capAlong + reach);
                    if (orientation == Qt::Horizontal) {
                        whole.transpose();
                    }
                    EXPECT_EQ(boundsOf(render(slider, scale), theme::focus).size(), whole)
                        << position << " at " << scale << " across " << across;
                }
            }
        }
    }
}

TEST(Skin, EverySliderStateLooksDifferent) {
    CBitmapSlider slider(Qt::Vertical, 1);
    slider.resize(28, 182);
    slider.setRange(0, 100);
    slider.setPosition(40);
    std::vector<QImage> looks{render(slider, 1)};
    const auto look = [&] {
        const QImage now = render(slider, 1);
        EXPECT_THAT(looks, testing::Not(testing::Contains(now)));
        looks.push_back(now);
    };
    slider.setColor(theme::frequency);
    look();
    slider.setBypassed(true);
    look();
    slider.setBypassed(false);
    sendHover(slider);
    look();
    sendPress(slider, QPointF(14, slider.track().pixelOf(40, 0, 100)));
    look();
    slider.setEnabled(false);
    look();
}

TEST(Skin, TheFillLeadsFromItsOriginToTheCap) {
    CBitmapSlider slider(Qt::Vertical, 1);
    slider.resize(28, 182);
    const auto fillRows = [&slider] { return boundsOf(render(slider, 1), theme::level); };
    slider.setRange(-180, 180);
    slider.setPosition(0);
    EXPECT_TRUE(fillRows().isNull());
    slider.setPosition(-90);  // above the middle
    EXPECT_NEAR(fillRows().bottom(), 91, 2);
    EXPECT_GT(fillRows().top(), 50);
    slider.setPosition(90);
    EXPECT_NEAR(fillRows().top(), 91, 2);
    slider.setRange(-200, -1);  // no zero inside: from the bottom
    slider.setPosition(-100);
    EXPECT_NEAR(fillRows().bottom(), 175, 2);
}

TEST(Skin, OnlyThePartThatMovedIsPaintedAgain) {
    struct Probe : CBitmapSlider {
        using CBitmapSlider::CBitmapSlider;
        QRect painted;
        void paintEvent(QPaintEvent* event) override {
            painted = event->rect();
            CBitmapSlider::paintEvent(event);
        }
    };
    Probe slider(Qt::Vertical, 1);
    slider.resize(28, 182);
    slider.setRange(0, 162);
    slider.setPosition(100);
    slider.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&slider));
    ASSERT_TRUE(letLoopRun());
    const QImage before = slider.grab().toImage();
    slider.painted = {};
    slider.setPosition(102);
    QCoreApplication::processEvents();
    ASSERT_FALSE(slider.painted.isNull());
    EXPECT_LT(slider.painted.height(), 40);
    // And nothing outside that part looks different.
    const QImage after = slider.grab().toImage();
    const QRect part = devicePlace(after, {0, 109 - 16, 28, 40});
    for (int y = 0; y < after.height(); ++y) {
        for (int x = 0; x < after.width(); ++x) {
            if (after.pixel(x, y) != before.pixel(x, y)) {
                ASSERT_TRUE(part.contains(x, y)) << x << ", " << y;
            }
        }
    }
}

TEST(Theme, TextsStandOutFromTheirGrounds) {
    const std::pair<QRgb, std::vector<QRgb>> pairs[]{
        {theme::text,
         {theme::window, theme::card, theme::inset, theme::sunk, theme::buttonTop, theme::buttonHoverTop,
          theme::buttonPressed}},
        {theme::text2, {theme::window, theme::bars, theme::card, theme::inset, theme::headerTop}},
        {theme::text3, {theme::window, theme::bars, theme::card, theme::inset}},
        {theme::white,
         {theme::defaultTop, theme::defaultBottom, theme::liveTop, theme::liveBottom, theme::selected}},
        {theme::trouble, {theme::bars, theme::sunk}}};
    for (const auto& [text, grounds] : pairs) {
        for (const QRgb ground : grounds) {
            EXPECT_GE(contrast(text, ground), 4.5) << std::hex << text << " on " << ground;
        }
    }
    for (const QRgb ground : {theme::card, theme::inset, theme::window}) {
        EXPECT_GE(contrast(theme::mark, ground), 3.0);
        EXPECT_GE(contrast(theme::focus, ground), 3.0);
    }
}

}  // namespace
}  // namespace tessavo::test
