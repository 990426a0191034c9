#include "plot/chart/line_geometry.h"

#include <gtest/gtest.h>
#include <random>

namespace tessavo::test {
namespace {

const QRectF square(0, 0, 100, 100);

TEST(LineGeometry, PointsOnLevelStretchesFallAway) {
    const QPolygonF line{{0, 5}, {1, 5}, {2, 5}, {3, 6}, {4, 6}, {5, 6}};
    EXPECT_EQ(thinned(line, 0), (QPolygonF{{0, 5}, {2, 5}, {3, 6}, {5, 6}}));
}

TEST(LineGeometry, ALineThatTurnsBackKeepsItsTurn) {
    const QPolygonF line{{0, 5}, {10, 5}, {4, 5}};
    EXPECT_EQ(thinned(line, 0), line);
}

TEST(LineGeometry, AColumnKeepsItsExtremes) {
    QPolygonF line;
    for (int n = 0; n < 1000; ++n) {
        line.append({n / 100.0, static_cast<double>(n * 37 % 101)});
    }
    const QPolygonF thin = thinned(line, 1);
    EXPECT_LE(thin.size(), 40);
    for (int column = 0; column < 10; ++column) {
        double low = 1e9;
        double high = -1e9;
        double thinLow = 1e9;
        double thinHigh = -1e9;
        for (const QPointF& point : line) {
            if (static_cast<int>(point.x()) == column) {
                low = std::min(low, point.y());
                high = std::max(high, point.y());
            }
        }
        for (const QPointF& point : thin) {
            if (static_cast<int>(point.x()) == column) {
                thinLow = std::min(thinLow, point.y());
                thinHigh = std::max(thinHigh, point.y());
            }
        }
        EXPECT_EQ(thinLow, low);
        EXPECT_EQ(thinHigh, high);
    }
    EXPECT_EQ(thin.first(), line.first());
    EXPECT_EQ(thin.last(), line.last());
}

TEST(LineGeometry, PiecesEndAtTheEdges) {
    const auto pieces = piecesInside({{-50, 50}, {50, 50}, {50, 150}, {90, 150}, {90, -50}}, square);
    ASSERT_EQ(pieces.size(), 2U);
    EXPECT_EQ(pieces[0], (QPolygonF{{0, 50}, {50, 50}, {50, 100}}));
    EXPECT_EQ(pieces[1], (QPolygonF{{90, 100}, {90, 0}}));
}

TEST(LineGeometry, ALineOutsideHasNoPieces) {
    EXPECT_TRUE(piecesInside({{-50, -1}, {150, -1}}, square).empty());
    EXPECT_TRUE(piecesInside({{-50, 40}, {40, -60}}, square).empty());
    EXPECT_TRUE(piecesInside({}, square).empty());
    EXPECT_TRUE(piecesInside({{500, 5}}, square).empty());
    EXPECT_EQ(piecesInside({{5, 5}}, square).size(), 1U);
}

TEST(LineGeometry, ALongSegmentKeepsItsSlope) {
    const auto pieces = piecesInside({{-1e12, -1e12}, {1e12, 1e12}}, square);
    ASSERT_EQ(pieces.size(), 1U);
    EXPECT_NEAR(pieces[0].first().x(), pieces[0].first().y(), 1e-2);
    EXPECT_NEAR(pieces[0].last().x(), 100, 1e-2);
}

TEST(LineGeometry, PolygonsAreCutAtTheEdges) {
    EXPECT_EQ(polygonInside({{-10, -10}, {110, -10}, {110, 110}, {-10, 110}}, square).boundingRect(), square);
    EXPECT_TRUE(polygonInside({{-10, -10}, {-5, -10}, {-5, 110}}, square).isEmpty());
    EXPECT_TRUE(polygonInside({}, square).isEmpty());
}

TEST(LineGeometry, WhateverComesInStaysInside) {
    std::mt19937 random(5);
    std::uniform_real_distribution place(-300.0, 400.0);
    const QRectF near = square.adjusted(-1e-9, -1e-9, 1e-9, 1e-9);
    for (int n = 0; n < 2000; ++n) {
        QPolygonF line;
        for (auto k = random() % 20; k > 0; --k) {
            line.append({place(random), place(random)});
        }
        for (const QPolygonF& piece : piecesInside(line, square)) {
            for (const QPointF& point : piece) {
                ASSERT_TRUE(near.contains(point));
            }
        }
        for (const QPointF& point : polygonInside(line, square)) {
            ASSERT_TRUE(near.contains(point));
        }
        for (const QPointF& point : line) {
            if (square.contains(point) && line.size() > 1) {
                const auto pieces = piecesInside(line, square);
                ASSERT_TRUE(std::any_of(pieces.begin(), pieces.end(),
                                        [&](const QPolygonF& piece) { return piece.contains(point); }));
            }
        }
    }
}

}  // namespace
}  // namespace tessavo::test
