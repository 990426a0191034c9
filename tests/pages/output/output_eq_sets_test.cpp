#include "pages/output/output_eq_fixture.h"

namespace tessavo::test {
namespace {

class OutputEqSetsTest : public OutputEqTest {};

TEST_F(OutputEqSetsTest, AnotherSetIsShownAndEditedWhenItBecomesCurrent) {
    loadRandom(17);
    page->refresh();
    for (const std::uint32_t set : {4U, 1U}) {
        actual.state.selectSet(set, [&] { page->changeSet(set); });
        twin.state.selectSet(set);
        EXPECT_TRUE(inStep());
        EXPECT_FALSE(actual.state.updatePending());
        expectShown(7);
        typeAndEnter(bandControls[0].gain.edit, QStringLiteral("1.5"));
        twinBand(0, Column::gain, -15, true);
        EXPECT_TRUE(inStep());
        takePending();
    }
}

TEST_F(OutputEqSetsTest, SeveralChannelsShowTheLastAfterARefresh) {
    loadRandom(18);
    page->refresh();
    selectSeveral({5, 1});
    page->refresh();
    expectShown(pageChannels[5]);
    EXPECT_TRUE(inStep());
}

}  // namespace
}  // namespace tessavo::test
