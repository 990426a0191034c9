#include "compare/set_compare.h"

#include <gtest/gtest.h>

namespace tessavo {
namespace {

TEST(SetCompare, EqualSetsHaveNoLine) {
    const ParameterSet set{};
    EXPECT_TRUE(compareSets(set, set).groups.empty());
}

}  // namespace
}  // namespace tessavo
