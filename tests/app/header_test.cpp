#include <QLabel>
#include <QTest>
#include <algorithm>
#include <cstring>

#include "params/image_digest.h"
#include "params/set_text.h"
#include "support/frame_fixture.h"

// The controls above the tabs.

namespace tessavo::test {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

using Header = FrameTest;

QStringList entriesOf(const QComboBox& list) {
    QStringList entries;
    for (int i = 0; i < list.count(); ++i) {
        entries << list.itemText(i);
    }
    return entries;
}

QStringList typeNames() {
    return {QStringLiteral("Type 1"), QStringLiteral("Type 2"), QStringLiteral("Type 3"),
            QStringLiteral("Type 4"), QStringLiteral("Type 5")};
}

// ---- as it starts

TEST_F(Header, EveryControlStandsWhereItsRowSays) {
    for (const ControlRow& row : headerRows()) {
        if (row.identifier >= 0) {
            const auto& one = control<QWidget>(row.identifier);
            EXPECT_EQ(QRect(one.mapTo(&view(), QPoint(0, 0)), one.size()), rectOf(row.bounds))
                << row.identifier;
        }
    }
}

TEST_F(Header, StartsWithTheFiveNamesAndTheFirstSet) {
    EXPECT_EQ(entriesOf(setSelector()), typeNames());
    EXPECT_EQ(setSelector().currentIndex(), 0);
    EXPECT_EQ(tuning.currentSet(), 0U);
    EXPECT_EQ(setName().text(), QStringLiteral("Type 1"));
}

TEST_F(Header, StartsWithTheThreeFilterMethods) {
    EXPECT_EQ(entriesOf(filterModes()),
              (QStringList{QStringLiteral("BZT"), QStringLiteral("MZT"), QStringLiteral("BZT/MZT")}));
    EXPECT_EQ(filterModes().currentIndex(), 0);
    QStringList labels;
    for (const QLabel* label : view().findChildren<QLabel*>(Qt::FindDirectChildrenOnly)) {
        labels << label->text();
    }
    EXPECT_TRUE(labels.contains(QStringLiteral("Switch Mode")));
}

TEST_F(Header, StartsWithLiveModeAndPlotOff) {
    EXPECT_EQ(eqMode().text(), QStringLiteral("EQ Mode Off"));
    EXPECT_EQ(showPlot().text(), QStringLiteral("Show Plot"));
    EXPECT_FALSE(tuning.liveMode());
    EXPECT_FALSE(tuning.liveTransferEnabled());
    EXPECT_FALSE(tuning.updatePending());
    EXPECT_THAT(shown, IsEmpty());
}

// ---- set selector

TEST_F(Header, ChoosingASetWithTheMouseMakesItCurrent) {
    choose(setSelector(), 3);
    EXPECT_EQ(tuning.currentSet(), 3U);
    EXPECT_EQ(setName().text(), QStringLiteral("Type 4"));
    EXPECT_EQ(setSelector().currentIndex(), 3);
}

TEST_F(Header, ChoosingASetWithTheKeyboardMakesItCurrent) {
    setSelector().setFocus(Qt::TabFocusReason);
    QTest::keyClick(&setSelector(), Qt::Key_Down);
    QTest::keyClick(&setSelector(), Qt::Key_Down);
    EXPECT_EQ(tuning.currentSet(), 2U);
    QTest::keyClick(&setSelector(), Qt::Key_End);
    EXPECT_EQ(tuning.currentSet(), 4U);
    EXPECT_EQ(setName().text(), QStringLiteral("Type 5"));
    QTest::keyClick(&setSelector(), Qt::Key_Home);
    EXPECT_EQ(tuning.currentSet(), 0U);
}

TEST_F(Header, ChoosingASetMovesEveryLaterEditThere) {
    const ParameterStore before = tuning.store();
    setSelector().setFocus(Qt::TabFocusReason);
    for (int i = 0; i < 3; ++i) {
        QTest::keyClick(&setSelector(), Qt::Key_Down);
    }
    tuning.setBandGainOrQ(2, BandValue::gain, 7.5F, true);
    QTest::mouseClick(&flag(1), Qt::LeftButton);
    type(setName(), QStringLiteral("Club"));
    for (const std::size_t untouched : {0U, 1U, 2U, 4U}) {
        EXPECT_EQ(std::memcmp(&tuning.store().sets[untouched], &before.sets[untouched], sizeof(ParameterSet)),
                  0)
            << untouched;
    }
    const ParameterSet& edited = tuning.store().sets[3];
    EXPECT_EQ(edited.channels[7].bands[2].gainDb, 7.5F);
    EXPECT_EQ(edited.channels[2].channelFlag, 1);
    EXPECT_EQ(readSetText(edited.setName), u"Club");
}

TEST_F(Header, ChoosingASetBringsTheImageInStep) {
    tuning.setBandGainOrQ(2, BandValue::gain, 7.5F, true);
    const float there = tuning.image().channels[7].bands[2].gainDb;
    setSelector().setFocus(Qt::TabFocusReason);
    QTest::keyClick(&setSelector(), Qt::Key_Down);
    EXPECT_EQ(there, 7.5F);
    EXPECT_EQ(tuning.image().channels[7].bands[2].gainDb, 0.0F);
    QTest::keyClick(&setSelector(), Qt::Key_Up);
    EXPECT_EQ(tuning.image().channels[7].bands[2].gainDb, 7.5F);
}

TEST_F(Header, ChoosingASetShowsItsChannelFlags) {
    tuning.setChannelFlag({2}, 1);
    tuning.selectSet(1);
    tuning.setChannelFlag({0}, 1);
    tuning.selectSet(0);
    setSelector().setFocus(Qt::TabFocusReason);
    QTest::keyClick(&setSelector(), Qt::Key_Down);
    EXPECT_FALSE(flag(1).isChecked());
    EXPECT_TRUE(flag(4).isChecked());
    QTest::keyClick(&setSelector(), Qt::Key_Up);
    EXPECT_TRUE(flag(1).isChecked());
    EXPECT_FALSE(flag(4).isChecked());
}

TEST_F(Header, ReadingTheSetAgainShowsItsChannelFlags) {
    tuning.setChannelFlag({0}, 1);
    EXPECT_FALSE(flag(4).isChecked());
    view().refreshPages();
    EXPECT_TRUE(flag(4).isChecked()) << "a received set brings its own flags";
}

TEST_F(Header, ChoosingTheCurrentSetAgainChangesNothing) {
    const ParameterImage before = tuning.image();
    choose(setSelector(), 0);
    EXPECT_EQ(md5Image(tuning.image()), md5Image(before));
    EXPECT_FALSE(tuning.updatePending());
}

// ---- set name

TEST_F(Header, EveryKeyGoesIntoTheSetsName) {
    type(setName(), QStringLiteral("Ab"));
    EXPECT_EQ(readSetText(tuning.store().sets[0].setName), u"Ab");
    QTest::keyClick(&setName(), Qt::Key_C);
    EXPECT_EQ(readSetText(tuning.store().sets[0].setName), u"Abc");
    QTest::keyClick(&setName(), Qt::Key_Backspace);
    EXPECT_EQ(readSetText(tuning.store().sets[0].setName), u"Ab");
    EXPECT_EQ(setSelector().itemText(0), QStringLiteral("Type 1")) << "the selector waits for the leaving";
    EXPECT_FALSE(tuning.updatePending());
}

TEST_F(Header, FortyCharactersLeaveThirtyOne) {
    const QString forty = QStringLiteral("0123456789012345678901234567890123456789");
    type(setName(), forty);
    const SetText& kept = tuning.store().sets[0].setName;
    EXPECT_EQ(readSetText(kept), forty.left(31).toStdU16String());
    EXPECT_TRUE(std::all_of(kept.begin() + 31, kept.end(), [](char16_t unit) { return unit == 0; }));
    EXPECT_EQ(readSetText(tuning.store().sets[1].setName), u"Type 2");
    QTest::keyClick(&setName(), Qt::Key_Tab);
    EXPECT_EQ(setSelector().itemText(0), forty.left(31));
}

TEST_F(Header, APastedNameCountsAsTyped) {
    setName().setFocus(Qt::TabFocusReason);
    setName().selectAll();
    QTest::keyClick(&setName(), Qt::Key_X, Qt::ControlModifier);
    EXPECT_EQ(readSetText(tuning.store().sets[0].setName), u"");
    QTest::keyClick(&setName(), Qt::Key_V, Qt::ControlModifier);
    QTest::keyClick(&setName(), Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(readSetText(tuning.store().sets[0].setName), u"Type 1Type 1");
}

TEST_F(Header, ANameMayHoldAnyCharacter) {
    const QString name = QString::fromUtf8("Bühne № 1 – 車 🚗");
    setName().setFocus(Qt::TabFocusReason);
    setName().selectAll();
    setName().insert(name);
    EXPECT_EQ(readSetText(tuning.store().sets[0].setName), name.toStdU16String());
}

TEST_F(Header, LeavingTheNameRefillsTheSelectorAndKeepsTheSet) {
    setSelector().setFocus(Qt::TabFocusReason);
    QTest::keyClick(&setSelector(), Qt::Key_Down);
    type(setName(), QStringLiteral("Rear seats"));
    QTest::keyClick(&setName(), Qt::Key_Tab);
    QStringList names = typeNames();
    names[1] = QStringLiteral("Rear seats");
    EXPECT_EQ(entriesOf(setSelector()), names);
    EXPECT_EQ(setSelector().currentIndex(), 1);
    EXPECT_EQ(tuning.currentSet(), 1U);
    EXPECT_TRUE(eqMode().hasFocus());
}

TEST_F(Header, AClickElsewhereLeavesTheNameToo) {
    type(setName(), QStringLiteral("New"));
    QTest::mouseClick(&eqMode(), Qt::LeftButton);
    showPlot().setFocus(Qt::MouseFocusReason);
    EXPECT_EQ(setSelector().itemText(0), QStringLiteral("New"));
}

TEST_F(Header, AnEmptyNameIsAName) {
    type(setName(), QString());
    QTest::keyClick(&setName(), Qt::Key_Tab);
    EXPECT_EQ(readSetText(tuning.store().sets[0].setName), u"");
    EXPECT_EQ(setSelector().count(), 5);
    EXPECT_EQ(setSelector().itemText(0), QString());
    EXPECT_EQ(setSelector().currentIndex(), 0);
}

// ---- "EQ Mode"

TEST_F(Header, EqModeTurnsLiveModeOnAndAsksForATransfer) {
    QTest::mouseClick(&eqMode(), Qt::LeftButton);
    EXPECT_TRUE(tuning.liveMode());
    EXPECT_TRUE(tuning.liveTransferEnabled());
    EXPECT_TRUE(tuning.updatePending());
    EXPECT_EQ(eqMode().text(), QStringLiteral("EQ Mode On"));
    EXPECT_TRUE(eqMode().isOn());
}

TEST_F(Header, EqModeTwiceLeavesLiveModeOff) {
    QTest::mouseClick(&eqMode(), Qt::LeftButton);
    settle();
    QTest::mouseClick(&eqMode(), Qt::LeftButton);
    EXPECT_FALSE(tuning.liveMode());
    EXPECT_FALSE(tuning.liveTransferEnabled());
    EXPECT_FALSE(tuning.updatePending()) << "switching off sends nothing";
    EXPECT_EQ(eqMode().text(), QStringLiteral("EQ Mode Off"));
    EXPECT_FALSE(eqMode().isOn());
}

TEST_F(Header, EqModeAnswersTheSpaceBar) {
    eqMode().setFocus(Qt::TabFocusReason);
    QTest::keyClick(&eqMode(), Qt::Key_Space);
    EXPECT_TRUE(tuning.liveMode());
    QTest::keyClick(&eqMode(), Qt::Key_Space);
    EXPECT_FALSE(tuning.liveMode());
    EXPECT_EQ(eqMode().text(), QStringLiteral("EQ Mode Off"));
}

// ---- filter methods

TEST_F(Header, AFilterMethodRecomputesNothingUntilTheNextEdit) {
    tuning.setBandGainOrQ(0, BandValue::gain, 6.0F, true);
    settle();
    const ParameterImage before = tuning.image();
    const BiquadWords words = tuning.bandWords({7}, 0);
    choose(filterModes(), 1);
    EXPECT_EQ(tuning.filterMode(), 1U);
    EXPECT_EQ(std::memcmp(&tuning.image(), &before, sizeof before), 0);
    EXPECT_EQ(tuning.bandWords({7}, 0), words);
    EXPECT_FALSE(tuning.updatePending());
    tuning.setBandGainOrQ(0, BandValue::gain, 6.0F, true);
    EXPECT_NE(tuning.bandWords({7}, 0), words);
}

TEST_F(Header, EveryFilterMethodCanBeChosen) {
    filterModes().setFocus(Qt::TabFocusReason);
    for (const std::uint32_t mode : {1U, 2U}) {
        QTest::keyClick(&filterModes(), Qt::Key_Down);
        EXPECT_EQ(tuning.filterMode(), mode);
    }
    QTest::keyClick(&filterModes(), Qt::Key_Down);
    EXPECT_EQ(tuning.filterMode(), 2U);
    QTest::keyClick(&filterModes(), Qt::Key_Home);
    EXPECT_EQ(tuning.filterMode(), 0U);
}

// ---- channel flags

constexpr std::array<int, 8> boxOfChannel{4, 8, 1, 5, 2, 6, 3, 7};

TEST_F(Header, AChannelFlagWritesSetAndImageOfItsRecordChannel) {
    for (std::size_t channel = 0; channel < boxOfChannel.size(); ++channel) {
        settle();
        ParameterStore store = tuning.store();
        ParameterImage image = tuning.image();
        QTest::mouseClick(&flag(boxOfChannel[channel]), Qt::LeftButton);
        EXPECT_TRUE(flag(boxOfChannel[channel]).isChecked());
        EXPECT_TRUE(tuning.updatePending());
        store.sets[0].channels[channel].channelFlag = 1;
        image.channels[channel].channelFlag = 1;
        EXPECT_EQ(std::memcmp(&tuning.store(), &store, sizeof store), 0) << channel;
        EXPECT_EQ(std::memcmp(&tuning.image(), &image, sizeof image), 0) << channel;
    }
    for (std::size_t channel = 0; channel < boxOfChannel.size(); ++channel) {
        settle();
        QTest::mouseClick(&flag(boxOfChannel[channel]), Qt::LeftButton);
        EXPECT_FALSE(flag(boxOfChannel[channel]).isChecked());
        EXPECT_TRUE(tuning.updatePending());
        EXPECT_EQ(tuning.store().sets[0].channels[channel].channelFlag, 0);
        EXPECT_EQ(tuning.image().channels[channel].channelFlag, 0);
    }
}

TEST_F(Header, AChannelFlagAnswersTheSpaceBar) {
    flag(8).setFocus(Qt::TabFocusReason);
    QTest::keyClick(&flag(8), Qt::Key_Space);
    EXPECT_EQ(tuning.store().sets[0].channels[1].channelFlag, 1);
}

TEST_F(Header, CheckingABoxFromOutsideWritesNothing) {
    for (int number = -1; number <= 9; ++number) {
        view().checkChannelBox(number, true);
    }
    for (int number = 1; number <= 8; ++number) {
        EXPECT_TRUE(flag(number).isChecked());
    }
    EXPECT_FALSE(tuning.updatePending());
    for (const OutputChannelParams& channel : tuning.store().sets[0].channels) {
        EXPECT_EQ(channel.channelFlag, 0);
    }
}

// ---- for those who do not see it, and for the keyboard

TEST_F(Header, EveryControlHasAName) {
    EXPECT_EQ(setSelector().accessibleName(), QStringLiteral("Parameter set"));
    EXPECT_EQ(setName().accessibleName(), QStringLiteral("Set name"));
    EXPECT_EQ(filterModes().accessibleName(), QStringLiteral("Switch Mode"));
    for (int number = 1; number <= 8; ++number) {
        const QString name = QStringLiteral("Channel flag %1").arg(number);
        EXPECT_EQ(flag(number).accessibleName(), name);
        EXPECT_EQ(flag(number).toolTip(), name);
    }
    EXPECT_EQ(setSelector().toolTip(), QStringLiteral("Parameter set"));
    EXPECT_EQ(setName().toolTip(), QStringLiteral("Set name"));
}

TEST_F(Header, TheTabKeyGoesThroughItFromLeftToRightAndBack) {
    std::vector<QWidget*> order{&setSelector(), &setName(), &eqMode(), &filterModes(), &showPlot()};
    for (int number = 1; number <= 8; ++number) {
        order.push_back(&flag(number));
    }
    order.push_back(&tabs());
    setSelector().setFocus(Qt::TabFocusReason);
    for (std::size_t i = 0; i + 1 < order.size(); ++i) {
        QTest::keyClick(order[i], Qt::Key_Tab);
        EXPECT_EQ(frame->focusWidget(), order[i + 1]) << i;
    }
    for (std::size_t i = order.size() - 1; i > 0; --i) {
        QTest::keyClick(order[i], Qt::Key_Backtab);
        EXPECT_EQ(frame->focusWidget(), order[i - 1]) << i;
    }
}

}  // namespace
}  // namespace tessavo::test
