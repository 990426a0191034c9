#include "pages/output/output_group.h"

#include <QApplication>
#include <QTest>

#include "controls/slider_event.h"
#include "controls/theme.h"
#include "support/page_fixture.h"

namespace tessavo::test {
namespace {

constexpr std::array<int, 8> gainSliders{1364, 1365, 1366, 1367, 1368, 1369, 1370, 1371};
constexpr std::array<int, 8> gainEdits{1398, 1399, 1397, 1396, 1400, 1395, 1401, 1404};
constexpr std::array<int, 8> gainGroups{1157, 1158, 1159, 1160, 1161, 1162, 1163, 1164};
constexpr std::array<int, 8> delaySliders{1372, 1373, 1374, 1375, 1376, 1377, 1378, 1379};
constexpr std::array<int, 8> delayEdits{1405, 1406, 1407, 1408, 1409, 1410, 1411, 1412};
constexpr std::array<int, 8> distanceEdits{1413, 1414, 1415, 1416, 1417, 1418, 1419, 1420};
constexpr std::array<int, 8> delayGroups{1165, 1166, 1167, 1168, 1169, 1170, 1171, 1172};
constexpr std::array<std::uint8_t, 8> sliderChannels{2, 4, 6, 0, 3, 5, 7, 1};

class OutputGroupTest : public PageTest {
 protected:
    OutputGroupTest() { showPage(std::make_unique<COutputGroup>(actual.state)); }

    float gain(std::size_t column) {
        return floatAt(actual, recordChannelOffset(sliderChannels[column]) + 144);
    }
    float delay(std::size_t column) {
        return floatAt(actual, recordChannelOffset(sliderChannels[column]) + 160);
    }
    /// Sets the record of both states and lets the page read it.
    void give(std::size_t column, float gainDb, float delayMs) {
        for (Tuning* tuning : {&actual, &twin}) {
            tuning->state.setGroupGain({sliderChannels[column]}, gainDb);
            tuning->state.setGroupDelay({sliderChannels[column]}, delayMs);
        }
        page->refresh();
        takePending();
    }
    void twinGain(std::size_t column, float gainDb) {
        twin.state.setGroupGain({sliderChannels[column]}, gainDb);
    }
    void twinDelay(std::size_t column, float delayMs) {
        twin.state.setGroupDelay({sliderChannels[column]}, delayMs);
    }
    /// Puts all channels of a row into one group.
    void linkAll(const std::array<int, 8>& lists) {
        for (std::size_t column = 0; column < 8; ++column) {
            chooseByKeys(lists[column], 0);
            if (lists == gainGroups) {
                twin.state.setGainGroup({sliderChannels[column]}, 0);
            } else {
                twin.state.setDelayGroup({sliderChannels[column]}, 0);
            }
        }
        takePending();
        ASSERT_TRUE(inStep());
    }
};

TEST_F(OutputGroupTest, StartsWithoutLinksAndWithoutAnEdit) {
    EXPECT_TRUE(inStep());
    EXPECT_FALSE(actual.state.updatePending());
    for (int column = 0; column < 8; ++column) {
        const auto at = static_cast<std::size_t>(column);
        EXPECT_EQ(list(gainGroups[at]).currentIndex(), column);
        EXPECT_EQ(list(delayGroups[at]).currentIndex(), column);
        EXPECT_EQ(textOf(gainEdits[at]), "0.0");
        EXPECT_EQ(textOf(delayEdits[at]), "0.0");
        EXPECT_EQ(textOf(distanceEdits[at]), "0.0");
    }
}

TEST_F(OutputGroupTest, RangesAreTenthsWithTheHighestAtTheTop) {
    for (const int id : gainSliders) {
        EXPECT_TRUE(slider(id).isVertical());
        EXPECT_EQ(slider(id).minimum(), -180);
        EXPECT_EQ(slider(id).maximum(), 60);
    }
    for (const int id : delaySliders) {
        EXPECT_TRUE(slider(id).isVertical());
        EXPECT_EQ(slider(id).minimum(), -20);
        EXPECT_EQ(slider(id).maximum(), 0);
    }
}

TEST_F(OutputGroupTest, EveryListHoldsTheLettersWithTheirColours) {
    for (const auto& lists : {gainGroups, delayGroups}) {
        for (const int id : lists) {
            ASSERT_EQ(list(id).count(), 8);
            for (int entry = 0; entry < 8; ++entry) {
                EXPECT_EQ(list(id).itemText(entry).toStdString(),
                          std::string(1, static_cast<char>('A' + entry)));
            }
        }
    }
}

TEST_F(OutputGroupTest, EverySliderStoresIntoItsOwnChannelWhateverIsSelected) {
    loadRandom(61);
    actual.state.setSelectionMask(0);
    page->refresh();
    EXPECT_TRUE(inStep());
    for (std::size_t column = 0; column < 8; ++column) {
        // Alone in a group that nobody else can have: without a selection.
        actual.state.setGainGroup({sliderChannels[column]}, 99);
        twin.state.setGainGroup({sliderChannels[column]}, 99);
        actual.state.setDelayGroup({sliderChannels[column]}, 0xFFFFFFFF);
        twin.state.setDelayGroup({sliderChannels[column]}, 0xFFFFFFFF);
    }
    page->refresh();
    takePending();
    for (std::size_t column = 0; column < 8; ++column) {
        EXPECT_EQ(list(gainGroups[column]).currentIndex(), -1);
        EXPECT_EQ(list(delayGroups[column]).currentIndex(), -1);
        slider(gainSliders[column]).setFocus();
        key(slider(gainSliders[column]), Qt::Key_End);
        key(slider(gainSliders[column]), Qt::Key_Home);
        twinGain(column, 18.0F);
        EXPECT_TRUE(inStep()) << column;
        EXPECT_TRUE(takePending());
        key(slider(delaySliders[column]), Qt::Key_Home);
        key(slider(delaySliders[column]), Qt::Key_Down);
        twinDelay(column, 1.9F);
        EXPECT_TRUE(inStep()) << column;
        EXPECT_TRUE(takePending());
        EXPECT_EQ(textOf(gainEdits[column]), "18.0");
        EXPECT_EQ(textOf(delayEdits[column]), "1.9");
        EXPECT_EQ(textOf(distanceEdits[column]), "65.2");
    }
    EXPECT_EQ(actual.display.curves.size(), 0U) << "no filter has changed";
}

TEST_F(OutputGroupTest, ADragWritesAtEveryStep) {
    const int id = gainSliders[0];
    for (const int pixels : {-10, -7, 30}) {
        drag(id, pixels);
        const int position = slider(id).position();
        twinGain(0, static_cast<float>(-position) / 10.0F);
        EXPECT_TRUE(inStep());
        EXPECT_EQ(textOf(gainEdits[0]), QString::number(-position / 10.0, 'f', 1).toStdString());
        EXPECT_TRUE(takePending());
    }
    release(id);
    EXPECT_TRUE(inStep());
    EXPECT_TRUE(takePending());
}

TEST_F(OutputGroupTest, LinkedSlidersFollowByTheSameAmount) {
    give(1, 5.0F, 0.0F);
    give(6, -3.0F, 0.0F);
    chooseByKeys(gainGroups[1], 0);
    chooseByKeys(gainGroups[6], 0);
    twin.state.setGainGroup({sliderChannels[1]}, 0);
    twin.state.setGainGroup({sliderChannels[6]}, 0);
    for (int i = 0; i < 12; ++i) {
        key(slider(gainSliders[0]), Qt::Key_Up);
    }
    twinGain(0, 1.2F);
    twinGain(1, 6.2F);
    twinGain(6, -1.8F);
    EXPECT_TRUE(inStep());
    EXPECT_EQ(slider(gainSliders[1]).position(), -62);
    EXPECT_EQ(textOf(gainEdits[1]), "6.2");
    EXPECT_EQ(textOf(gainEdits[6]), "-1.8");
    // The followers lead just as well.
    key(slider(gainSliders[6]), Qt::Key_PageDown);
    twinGain(0, 0.2F);
    twinGain(1, 5.2F);
    twinGain(6, -2.8F);
    EXPECT_TRUE(inStep());
    EXPECT_EQ(slider(gainSliders[2]).position(), 0);
}

TEST_F(OutputGroupTest, ARefusedMoveSnapsBackAndLeavesAllAsTheyWere) {
    give(1, 17.0F, 0.0F);
    chooseByKeys(gainGroups[1], 0);
    twin.state.setGainGroup({sliderChannels[1]}, 0);
    takePending();
    drag(gainSliders[0], -60);
    EXPECT_EQ(slider(gainSliders[0]).position(), 0);
    EXPECT_EQ(slider(gainSliders[1]).position(), -170);
    EXPECT_EQ(textOf(gainEdits[0]), "0.0");
    EXPECT_TRUE(inStep());
    release(gainSliders[0]);
    EXPECT_EQ(slider(gainSliders[0]).position(), 0);
    EXPECT_TRUE(inStep());
    // Up to the bound they go.
    key(slider(gainSliders[0]), Qt::Key_PageUp);
    EXPECT_EQ(slider(gainSliders[1]).position(), -180);
    key(slider(gainSliders[0]), Qt::Key_Up);
    EXPECT_EQ(slider(gainSliders[0]).position(), -10);
    twinGain(0, 1.0F);
    twinGain(1, 18.0F);
    EXPECT_TRUE(inStep());
}

TEST_F(OutputGroupTest, ADragBackIntoReachWorksAgain) {
    give(1, 17.0F, 0.0F);
    chooseByKeys(gainGroups[1], 0);
    drag(gainSliders[0], -60);
    drag(gainSliders[0], 80);
    release(gainSliders[0]);
    const int position = slider(gainSliders[0]).position();
    EXPECT_GT(position, 0);
    EXPECT_EQ(slider(gainSliders[1]).position(), position - 170);
    EXPECT_EQ(gain(0), static_cast<float>(-position) / 10.0F);
    EXPECT_EQ(gain(1), static_cast<float>(170 - position) / 10.0F);
}

TEST_F(OutputGroupTest, EventsOfAPutBackSliderThatAreLateChangeNothing) {
    give(1, 17.0F, 0.0F);
    chooseByKeys(gainGroups[1], 0);
    twin.state.setGainGroup({sliderChannels[1]}, 0);
    for (const int position : {-40, -90, -180}) {
        QCoreApplication::postEvent(page, new SliderEvent(SliderEvent::moved, gainSliders[0], position));
    }
    deliver();
    EXPECT_EQ(slider(gainSliders[0]).position(), 0);
    EXPECT_TRUE(inStep());
}

TEST_F(OutputGroupTest, RowsAreNotLinkedWithEachOther) {
    linkAll(gainGroups);
    key(slider(gainSliders[4]), Qt::Key_PageUp);
    for (std::size_t column = 0; column < 8; ++column) {
        twinGain(column, 1.0F);
    }
    EXPECT_TRUE(inStep());
    key(slider(delaySliders[4]), Qt::Key_PageUp);
    twinDelay(4, 1.0F);
    EXPECT_TRUE(inStep());
}

TEST_F(OutputGroupTest, LinkedDelaysMoveTheirDistancesToo) {
    linkAll(delayGroups);
    typeAndEnter(delayEdits[2], QStringLiteral("1.3"));
    for (std::size_t column = 0; column < 8; ++column) {
        twinDelay(column, 1.3F);
        EXPECT_EQ(textOf(delayEdits[column]), "1.3");
        EXPECT_EQ(textOf(distanceEdits[column]), "44.6");
        EXPECT_EQ(slider(delaySliders[column]).position(), -13);
    }
    EXPECT_TRUE(inStep());
    typeAndEnter(distanceEdits[7], QStringLiteral("20"));
    EXPECT_EQ(textOf(distanceEdits[7]), "20");
    EXPECT_EQ(textOf(delayEdits[7]), "0.5");
    EXPECT_EQ(textOf(distanceEdits[0]), "17.1");
    for (std::size_t column = 0; column < 8; ++column) {
        twinDelay(column, 0.5F);
    }
    EXPECT_TRUE(inStep());
}

struct Typed {
    const char* text;
    float value;
    const char* shown;
};

TEST_F(OutputGroupTest, TypedGainsAreTakenOnEnterAndOnLeaving) {
    for (std::size_t column = 0; column < 8; ++column) {
        for (const Typed& typed : {Typed{"3.27", 3.2F, "3.27"},
                                   {"-3.27", -3.2F, "-3.27"},
                                   {"25", 18.0F, "18.0"},
                                   {"-25", -6.0F, "-6.0"},
                                   {"0.7", 0.7F, "0.7"},
                                   {"word", 0.0F, "word"},
                                   {"", 0.0F, ""},
                                   {"nan", 0.0F, "nan"},
                                   {"1e5", 18.0F, "18.0"}}) {
            typeAndEnter(gainEdits[column], QString::fromLatin1(typed.text));
            EXPECT_TRUE(edit(gainEdits[column]).hasFocus());
            twinGain(column, typed.value);
            EXPECT_TRUE(inStep()) << column << " " << typed.text;
            EXPECT_EQ(textOf(gainEdits[column]), typed.shown);
            EXPECT_TRUE(takePending());
            typeAndLeave(gainEdits[column], QStringLiteral("1.1"));
            twinGain(column, 1.1F);
            EXPECT_TRUE(inStep());
            EXPECT_TRUE(takePending());
        }
    }
}

TEST_F(OutputGroupTest, TypedDelaysAndDistancesHaveTheirTwoFactors) {
    for (std::size_t column = 0; column < 8; ++column) {
        typeAndLeave(delayEdits[column], QStringLiteral("2.0"));
        EXPECT_EQ(delay(column), 2.0F);
        EXPECT_EQ(textOf(distanceEdits[column]), "68.6");
        for (const char* distance : {"34", "34.3"}) {
            typeAndEnter(distanceEdits[column], QString::fromLatin1(distance));
            EXPECT_EQ(delay(column), 1.0F);
            EXPECT_EQ(textOf(delayEdits[column]), "1.0");
            EXPECT_EQ(textOf(distanceEdits[column]), distance);
        }
        typeAndEnter(distanceEdits[column], QStringLiteral("100"));
        EXPECT_EQ(delay(column), 2.0F);
        EXPECT_EQ(textOf(delayEdits[column]), "2.0");
        EXPECT_EQ(textOf(distanceEdits[column]), "100");
        typeAndEnter(distanceEdits[column], QStringLiteral("-4"));
        EXPECT_EQ(delay(column), 0.0F);
        key(slider(delaySliders[column]), Qt::Key_Up);
        EXPECT_EQ(textOf(delayEdits[column]), "0.1");
        EXPECT_EQ(textOf(distanceEdits[column]), "3.4");
        EXPECT_EQ(imageWordAt(actual, 3336 + 4 * std::size_t{sliderChannels[column]}), 1U);
    }
}

TEST_F(OutputGroupTest, ARefusedTextIsReplacedByWhatHolds) {
    give(1, 17.0F, 1.9F);
    chooseByKeys(gainGroups[1], 0);
    chooseByKeys(delayGroups[1], 0);
    twin.state.setGainGroup({sliderChannels[1]}, 0);
    twin.state.setDelayGroup({sliderChannels[1]}, 0);
    typeAndEnter(gainEdits[0], QStringLiteral("2"));
    EXPECT_EQ(textOf(gainEdits[0]), "0.0");
    typeAndEnter(delayEdits[0], QStringLiteral("0.2"));
    EXPECT_EQ(textOf(delayEdits[0]), "0.0");
    EXPECT_EQ(textOf(distanceEdits[0]), "0.0");
    typeAndEnter(distanceEdits[0], QStringLiteral("34"));
    EXPECT_EQ(textOf(delayEdits[0]), "0.0");
    EXPECT_EQ(textOf(distanceEdits[0]), "0.0");
    EXPECT_TRUE(inStep());
}

TEST_F(OutputGroupTest, EscapeBringsBackTheText) {
    typeAndEnter(gainEdits[3], QStringLiteral("4.4"));
    takePending();
    typeOnly(gainEdits[3], QStringLiteral("9"));
    key(edit(gainEdits[3]), Qt::Key_Escape);
    EXPECT_EQ(textOf(gainEdits[3]), "4.4");
    EXPECT_EQ(gain(3), 4.4F);
    EXPECT_FALSE(takePending());
}

TEST_F(OutputGroupTest, UpAndDownStepByATenth) {
    linkAll(gainGroups);
    key(edit(gainEdits[5]), Qt::Key_Up);
    EXPECT_EQ(textOf(gainEdits[5]), "0.1");
    EXPECT_EQ(gain(0), 0.1F);
    key(edit(gainEdits[5]), Qt::Key_Down);
    key(edit(gainEdits[5]), Qt::Key_Down);
    EXPECT_EQ(textOf(gainEdits[2]), "-0.1");
    key(edit(gainEdits[5]), Qt::Key_Up, Qt::ShiftModifier);
    EXPECT_EQ(gain(7), 0.9F);
    // A text that was typed but not applied is where the step starts.
    typeOnly(gainEdits[5], QStringLiteral("2"));
    key(edit(gainEdits[5]), Qt::Key_Up);
    EXPECT_EQ(textOf(gainEdits[5]), "2.1");
    EXPECT_EQ(gain(1), 2.1F);
    key(edit(delayEdits[5]), Qt::Key_Up);
    key(edit(distanceEdits[5]), Qt::Key_Up);
    EXPECT_EQ(delay(5), 0.2F);
    EXPECT_EQ(textOf(distanceEdits[5]), "6.9");
}

TEST_F(OutputGroupTest, StepsEndAtTheBounds) {
    typeAndEnter(gainEdits[5], QStringLiteral("17.95"));
    key(edit(gainEdits[5]), Qt::Key_Up);
    key(edit(gainEdits[5]), Qt::Key_Up);
    EXPECT_EQ(gain(5), 18.0F);
    key(edit(delayEdits[5]), Qt::Key_Down);
    EXPECT_EQ(delay(5), 0.0F);
    EXPECT_EQ(textOf(delayEdits[5]), "0.0");
}

TEST_F(OutputGroupTest, ABoxThatWasOnlyPassedThroughWritesNothing) {
    give(0, 1.25F, 0.44F);
    for (const int id : {gainEdits[0], delayEdits[0], distanceEdits[0]}) {
        key(edit(id), Qt::Key_Tab);
    }
    EXPECT_TRUE(inStep());
    EXPECT_FALSE(takePending());
    EXPECT_EQ(gain(0), 1.25F);
}

TEST_F(OutputGroupTest, GroupsAreStoredInRecordAndImage) {
    for (std::size_t column = 0; column < 8; ++column) {
        const int index = static_cast<int>(7 - column);
        chooseByKeys(gainGroups[column], index);
        EXPECT_TRUE(takePending());
        chooseByKeys(delayGroups[column], static_cast<int>((column + 3) % 8));
        EXPECT_TRUE(takePending());
        twin.state.setGainGroup({sliderChannels[column]}, static_cast<std::uint32_t>(index));
        twin.state.setDelayGroup({sliderChannels[column]}, static_cast<std::uint32_t>((column + 3) % 8));
        EXPECT_TRUE(inStep());
        EXPECT_EQ(actual.image()[3368 + sliderChannels[column]], index);
        EXPECT_EQ(actual.image()[3376 + sliderChannels[column]], static_cast<int>((column + 3) % 8));
    }
}

TEST_F(OutputGroupTest, AGroupIsChosenWithTheMouse) {
    choose(gainGroups[2], 6);
    EXPECT_EQ(readAt<std::uint32_t>(actual.store(), recordChannelOffset(6) + 148), 6U);
    choose(delayGroups[7], 0);
    EXPECT_EQ(readAt<std::uint32_t>(actual.store(), recordChannelOffset(1) + 164), 0U);
}

TEST_F(OutputGroupTest, TheBoxOfAChannelWearsTheColourOfItsGroup) {
    const auto barOf = [&](int listId) {
        return static_cast<SkinGroupBox*>(list(listId).parentWidget())->bar();
    };
    EXPECT_EQ(barOf(gainGroups[3]), QColor::fromRgb(theme::groups[3]));
    chooseByKeys(gainGroups[3], 5);
    EXPECT_EQ(barOf(gainGroups[3]), QColor::fromRgb(theme::groups[5]));
    EXPECT_EQ(barOf(delayGroups[3]), QColor::fromRgb(theme::groups[3]));
    actual.state.setDelayGroup({sliderChannels[3]}, 8);
    page->refresh();
    EXPECT_FALSE(barOf(delayGroups[3]).isValid());
}

TEST_F(OutputGroupTest, ARefreshShowsTheSetAndWritesNothing) {
    for (std::uint64_t seed = 1; seed <= 20; ++seed) {
        loadRandom(seed);
        page->refresh();
        EXPECT_TRUE(inStep());
        EXPECT_FALSE(actual.state.updatePending());
        for (std::size_t column = 0; column < 8; ++column) {
            const float gainDb = std::clamp(gain(column), -6.0F, 18.0F);
            EXPECT_EQ(textOf(gainEdits[column]), QString::number(double{gainDb}, 'f', 1).toStdString());
            const float delayMs = std::clamp(delay(column), 0.0F, 2.0F);
            EXPECT_EQ(textOf(delayEdits[column]), QString::number(double{delayMs}, 'f', 1).toStdString());
        }
    }
}

TEST_F(OutputGroupTest, TheNextMoveAfterARefreshStartsFromTheNewValues) {
    linkAll(gainGroups);
    key(slider(gainSliders[0]), Qt::Key_Home);
    give(0, 2.0F, 0.0F);
    give(1, 17.5F, 0.0F);
    for (std::size_t column = 2; column < 8; ++column) {
        give(column, 0.0F, 0.0F);
    }
    key(slider(gainSliders[0]), Qt::Key_Down);
    twinGain(0, 1.9F);
    twinGain(1, 17.4F);
    for (std::size_t column = 2; column < 8; ++column) {
        twinGain(column, -0.1F);
    }
    EXPECT_TRUE(inStep());
}

TEST_F(OutputGroupTest, AnotherSetIsShownWhenItBecomesCurrent) {
    typeAndEnter(gainEdits[0], QStringLiteral("5"));
    actual.state.selectSet(3, [&] { page->changeSet(3); });
    EXPECT_EQ(textOf(gainEdits[0]), "0.0");
    typeAndEnter(gainEdits[0], QStringLiteral("7"));
    EXPECT_EQ(floatAt(actual, 3 * setSize + recordChannelOffset(2) + 144), 7.0F);
    EXPECT_EQ(floatAt(actual, recordChannelOffset(2) + 144), 5.0F);
}

TEST_F(OutputGroupTest, ValuesThatAreNoNumbersAreShownAsZero) {
    give(0, std::numeric_limits<float>::quiet_NaN(), std::numeric_limits<float>::infinity());
    EXPECT_EQ(textOf(gainEdits[0]), "0.0");
    EXPECT_EQ(textOf(delayEdits[0]), "2.0");
}

TEST_F(OutputGroupTest, TheSumWithTheVolumeIsClampedForTheGainWord) {
    actual.state.setSelectionMask(selectionBit({2}));  // record channel 0, slider position 3
    actual.state.setVolume(18.0F, true);
    typeAndEnter(gainEdits[3], QStringLiteral("1"));
    EXPECT_EQ(imageWordAt(actual, imageBlockOffset(0) + 4), 0x07F17AF4U);
    EXPECT_EQ(imageWordAt(actual, 3304), 10U);
    EXPECT_EQ(floatAt(actual, recordChannelOffset(0) + 140), 18.0F);
}

}  // namespace
}  // namespace tessavo::test
