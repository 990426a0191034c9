#include "filtertext/filter_forms.h"

#include <cmath>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "dsp/band_types.h"
#include "dsp/filter_kind.h"

namespace tessavo {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(FilterForms, ValuesAreRoundedToTheStepsOfTheTarget) {
    const SteppedFilter stepped = onDeviceSteps({FilterShape::peak, 641.5, -2.45, 0.95});
    EXPECT_EQ(stepped.filter.frequencyHz, 642.0);
    EXPECT_EQ(stepped.filter.gainDb, -2.5);
    EXPECT_NEAR(stepped.filter.q, 1.0, 1e-12);
    EXPECT_THAT(stepped.clamped, IsEmpty());
}

TEST(FilterForms, EveryValueOutsideItsRangeIsClampedAndNamed) {
    const SteppedFilter above = onDeviceSteps({FilterShape::peak, 23000, 21, 20.05});
    EXPECT_EQ(above.filter.frequencyHz, 20000.0);
    EXPECT_EQ(above.filter.gainDb, 18.0);
    EXPECT_EQ(above.filter.q, 20.0);
    EXPECT_THAT(above.clamped, ElementsAre(FilterValue::frequency, FilterValue::gain, FilterValue::q));
    const SteppedFilter below = onDeviceSteps({FilterShape::highShelf, 19.4, -18.06, 0.04});
    EXPECT_EQ(below.filter.frequencyHz, 20.0);
    EXPECT_EQ(below.filter.gainDb, -18.0);
    EXPECT_EQ(below.filter.q, 0.1);
    EXPECT_THAT(below.clamped, ElementsAre(FilterValue::frequency, FilterValue::gain, FilterValue::q));
}

TEST(FilterForms, WhatRoundsIntoItsRangeIsNotClamped) {
    EXPECT_THAT(onDeviceSteps({FilterShape::peak, 20000.4, 18.04, 0.051}).clamped, IsEmpty());
    EXPECT_THAT(onDeviceSteps({FilterShape::lowPass, 19.5, 0, 0}).clamped, IsEmpty());
    EXPECT_THAT(onDeviceSteps({FilterShape::lowPass, 19.4, 0, 0}).clamped,
                ElementsAre(FilterValue::frequency));
}

TEST(FilterForms, AGainThatRoundsToZeroHasNoSign) {
    for (const double gainDb : {-0.0, -0.04, 0.0, 0.04}) {
        const SteppedFilter stepped = onDeviceSteps({FilterShape::peak, 100, gainDb, 1});
        EXPECT_EQ(stepped.filter.gainDb, 0.0);
        EXPECT_FALSE(std::signbit(stepped.filter.gainDb)) << gainDb;
        EXPECT_FALSE(std::signbit(bandOf(stepped.filter, false).gainDb)) << gainDb;
    }
}

TEST(FilterForms, ABandBecomesTheFilterItCameFrom) {
    const struct {
        FilterShape shape;
        BandType type;
    } types[] = {{FilterShape::peak, BandType::peak},
                 {FilterShape::lowShelf, BandType::lowShelf},
                 {FilterShape::highShelf, BandType::highShelf}};
    for (const auto& [shape, type] : types) {
        for (const bool off : {false, true}) {
            const EqBandParams band = bandOf({shape, 1234, -3.5, 0.7}, off);
            EXPECT_EQ(band.type, static_cast<std::uint8_t>(type));
            EXPECT_EQ(band.frequencyHz, 1234);
            EXPECT_EQ(band.gainDb, -3.5F);
            EXPECT_EQ(band.q, 0.7F);
            EXPECT_EQ(band.off, off ? 1 : 0);
            EXPECT_EQ(filterOf(band).value().shape, shape);
            EXPECT_EQ(filterOf(band).value().frequencyHz, 1234.0);
            EXPECT_EQ(filterOf(band).value().gainDb, -3.5);
            // Not the 0.699999988 that a float holds.
            EXPECT_EQ(filterOf(band).value().q, 0.7);
        }
    }
    EqBandParams unknown;
    unknown.type = 3;
    EXPECT_FALSE(filterOf(unknown).has_value());
}

TEST(FilterForms, ACrossoverBecomesTheFilterItCameFrom) {
    for (const FilterShape shape : {FilterShape::lowPass, FilterShape::highPass}) {
        for (const int order : {2, 4}) {
            const CrossoverParams crossover = crossoverOf({shape, 80, 0, 0, order}, true);
            EXPECT_EQ(crossover.kind,
                      static_cast<std::uint8_t>(shape == FilterShape::lowPass ? CrossoverKind::lowPass
                                                                              : CrossoverKind::highPass));
            EXPECT_EQ(crossover.enabled, 1);
            EXPECT_EQ(crossover.order, order);
            EXPECT_EQ(crossover.frequencyHz, 80);
            EXPECT_EQ(filterOf(crossover).shape, shape);
            EXPECT_EQ(filterOf(crossover).order, order);
            EXPECT_EQ(filterOf(crossover).frequencyHz, 80.0);
        }
    }
    EXPECT_EQ(crossoverOf({FilterShape::lowPass, 80, 0, 0, 2}, false).enabled, 0);
}

}  // namespace
}  // namespace tessavo
