#include "base/saturate.h"

#include <cmath>
#include <cstdint>
#include <gtest/gtest.h>
#include <limits>

namespace tessavo::test {
namespace {

constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double inf = std::numeric_limits<double>::infinity();

template <typename Integer>
class Saturate : public ::testing::Test {};

using Integers = ::testing::Types<std::int8_t, std::uint8_t, std::int16_t, std::uint16_t, std::int32_t,
                                  std::uint32_t, std::int64_t, std::uint64_t>;
TYPED_TEST_SUITE(Saturate, Integers);

TYPED_TEST(Saturate, InfinitiesAndHugeValuesGiveTheLimits) {
    using Limits = std::numeric_limits<TypeParam>;
    EXPECT_EQ(truncateTo<TypeParam>(inf), Limits::max());
    EXPECT_EQ(truncateTo<TypeParam>(-inf), Limits::min());
    EXPECT_EQ(truncateTo<TypeParam>(1e300), Limits::max());
    EXPECT_EQ(truncateTo<TypeParam>(-1e300), Limits::min());
}

TYPED_TEST(Saturate, NotANumberGivesZero) {
    EXPECT_EQ(truncateTo<TypeParam>(nan), 0);
    EXPECT_EQ(truncateTo<TypeParam>(-nan), 0);
}

TYPED_TEST(Saturate, StepsAcrossTheUpperLimit) {
    // One above the highest value, a power of two, is exact as a double for every type.
    const double above = std::ldexp(1.0, std::numeric_limits<TypeParam>::digits);
    EXPECT_EQ(truncateTo<TypeParam>(above), std::numeric_limits<TypeParam>::max());
    EXPECT_EQ(truncateTo<TypeParam>(std::nextafter(above, inf)), std::numeric_limits<TypeParam>::max());
    const double below = std::nextafter(above, 0.0);
    // Beyond 53 bits the largest double below the limit is a whole number of its own.
    const auto expected = std::numeric_limits<TypeParam>::digits <= 53 ? std::numeric_limits<TypeParam>::max()
                                                                       : static_cast<TypeParam>(below);
    EXPECT_EQ(truncateTo<TypeParam>(below), expected);
}

TYPED_TEST(Saturate, StepsAcrossTheLowerLimit) {
    const auto lowest = static_cast<double>(std::numeric_limits<TypeParam>::min());
    EXPECT_EQ(truncateTo<TypeParam>(lowest), std::numeric_limits<TypeParam>::min());
    EXPECT_EQ(truncateTo<TypeParam>(std::nextafter(lowest, -inf)), std::numeric_limits<TypeParam>::min());
    EXPECT_EQ(truncateTo<TypeParam>(lowest - 1.0), std::numeric_limits<TypeParam>::min());
    EXPECT_EQ(truncateTo<TypeParam>(lowest + 1.0), static_cast<TypeParam>(lowest + 1.0));
}

TYPED_TEST(Saturate, TruncatesTowardsZero) {
    EXPECT_EQ(truncateTo<TypeParam>(3.999), 3);
    EXPECT_EQ(truncateTo<TypeParam>(0.999), 0);
    EXPECT_EQ(truncateTo<TypeParam>(-0.999), 0);
    EXPECT_EQ(truncateTo<TypeParam>(-0.0), 0);
    const auto minusThree =
        std::numeric_limits<TypeParam>::is_signed ? static_cast<TypeParam>(-3) : TypeParam{0};
    EXPECT_EQ(truncateTo<TypeParam>(-3.999), minusThree);
}

static_assert(truncateTo<std::int8_t>(127.9) == 127 && truncateTo<std::int8_t>(-128.9) == -128);
static_assert(truncateTo<std::int16_t>(40000.0) == 32767 && truncateTo<std::uint8_t>(-1.0) == 0);

}  // namespace
}  // namespace tessavo::test
