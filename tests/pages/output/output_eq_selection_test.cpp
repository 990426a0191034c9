#include <QLabel>
#include <QTest>

#include "pages/output/output_eq_fixture.h"

namespace tessavo::test {
namespace {

const ShownBox question{"Are you sure?\r\nThe current channel settings will be lost!", BoxIcon::error,
                        BoxButtons::okCancel};

class OutputEqSelectionTest : public OutputEqTest {
 protected:
    SkinRadioButton& radio(std::size_t position) { return control<SkinRadioButton>(channelRadios[position]); }
    SkinCheckBox& box(std::size_t position) { return check(channelChecks[position]); }
    CxSkinButton& allFilters() { return control<CxSkinButton>(allFiltersButton); }
    CxSkinButton& reset() { return control<CxSkinButton>(resetButton); }
};

TEST_F(OutputEqSelectionTest, ARadioButtonSelectsItsChannelAlone) {
    loadRandom(11);
    page->refresh();
    for (const std::size_t position : {3U, 0U, 7U, 1U, 6U, 2U, 5U, 4U}) {
        selectChannel(position);
        EXPECT_EQ(actual.state.selectionMask(), 0x80 >> position);
        for (std::size_t other = 0; other < 8; ++other) {
            EXPECT_EQ(radio(other).isChecked(), other == position);
        }
        expectShown(pageChannels[position]);
        EXPECT_TRUE(inStep());
    }
}

TEST_F(OutputEqSelectionTest, RadiosAreReachedByTheArrowKeys) {
    radio(0).setFocus(Qt::TabFocusReason);
    // Rows from top to bottom: positions 6, 3, 7, 2, 1, 5, 0, 4.
    QTest::keyClick(&radio(0), Qt::Key_Up);
    deliver();
    EXPECT_TRUE(radio(5).isChecked());
    EXPECT_EQ(actual.state.selectionMask(), 0x80 >> 5);
    QTest::keyClick(&radio(5), Qt::Key_Down);
    QTest::keyClick(&radio(0), Qt::Key_Down);
    deliver();
    EXPECT_EQ(actual.state.selectionMask(), 0x80 >> 4);
}

TEST_F(OutputEqSelectionTest, EditsGoIntoTheSelectedChannelOnly) {
    for (std::size_t position = 0; position < 8; ++position) {
        selectChannel(position);
        typeAndEnter(bandControls[2].gain.edit, QStringLiteral("%1").arg(position + 1));
        twinBand(2, Column::gain, -10 * (static_cast<int>(position) + 1), true);
        typeAndEnter(volumeControls.edit, QStringLiteral("1.5"));
        twin.state.setVolume(1.5F, true);
        EXPECT_TRUE(inStep());
        EXPECT_EQ(floatAt(actual, recordChannelOffset(pageChannels[position]) + 36),
                  static_cast<float>(position + 1));
    }
}

TEST_F(OutputEqSelectionTest, ChoosingAChannelShowsItsCurveAtOnce) {
    loadRandom(12);
    page->refresh();
    for (const std::size_t position : {5U, 2U, 0U}) {
        actual.display.curves.clear();
        selectChannel(position);
        ASSERT_FALSE(actual.display.curves.empty());
        const ResponseCurve shown = actual.display.curves.back();
        actual.state.showOutputCurve({static_cast<std::uint8_t>(pageChannels[position])});
        EXPECT_EQ(shown, actual.display.curves.back());
    }
}

TEST_F(OutputEqSelectionTest, ACurveIsShownEvenForATypeThatTheListDoesNotKnow) {
    Bytes store = actual.store();
    store[recordChannelOffset(pageChannels[3]) + 16 * 7] = 9;
    actual.load(store);
    twin.load(store);
    page->refresh();
    click(radio(3));
    EXPECT_FALSE(actual.display.curves.empty());
    EXPECT_TRUE(inStep()) << "the unknown type stays";
}

TEST_F(OutputEqSelectionTest, OnScreenTheRowsHaveTheirOrder) {
    constexpr std::array<std::size_t, 8> rows{6, 3, 7, 2, 1, 5, 0, 4};
    constexpr std::array<int, 8> names{1267, 1268, 1265, 1264, 1263, 1262, 1261, 1260};
    for (std::size_t row = 0; row < 8; ++row) {
        const std::size_t position = rows[row];
        const int top = 40 + 27 * static_cast<int>(row);
        EXPECT_EQ(radio(position).mapTo(page, QPoint(0, 0)), QPoint(855, top));
        EXPECT_EQ(box(position).mapTo(page, QPoint(0, 0)), QPoint(855, top));
        auto& name = control<QLabel>(names[position]);
        EXPECT_EQ(name.text(), QStringLiteral("Channel %1").arg(position + 1));
        EXPECT_EQ(name.mapTo(page, QPoint(0, 0)).y(), top);
        EXPECT_TRUE(radio(position).text().isEmpty());
    }
}

TEST_F(OutputEqSelectionTest, AClickOnAChannelsNameSelectsIt) {
    const QPoint onName = control<QLabel>(1264).mapTo(page, QPoint(20, 12));
    QWidget* hit = page->childAt(onName);
    ASSERT_EQ(hit, &radio(3));
    QTest::mouseClick(hit, Qt::LeftButton, {}, hit->mapFrom(page, onName));
    EXPECT_EQ(actual.state.selectionMask(), 0x10);
}

TEST_F(OutputEqSelectionTest, TheRoutedSourceStandsBesideTheName) {
    const auto textsInRow = [&](std::size_t position) {
        QStringList texts;
        for (const QLabel* label : page->findChildren<QLabel*>()) {
            if (label->mapTo(page, QPoint(0, 0)).y() == radio(position).mapTo(page, QPoint(0, 0)).y() &&
                label->mapTo(page, QPoint(0, 0)).x() > 900) {
                texts += label->text();
            }
        }
        return texts;
    };
    for (std::uint8_t position = 0; position < 8; ++position) {
        actual.state.setRouterSource(recordChannelAt({position}), static_cast<std::uint8_t>(position + 1));
    }
    page->refresh();
    constexpr std::array<const char*, 8> sources{"FL", "FR", "C", "RL", "RR", "Sub", "FLC", "FRC"};
    for (std::size_t position = 0; position < 8; ++position) {
        EXPECT_EQ(textsInRow(position), QStringList{QString::fromLatin1(sources[position])});
    }
    EXPECT_EQ(radio(5).toolTip(), QStringLiteral("Subwoofer"));
    // Routed anew on another page.
    page->hide();
    actual.state.setRouterSource(recordChannelAt({0}), 10);
    page->show();
    EXPECT_EQ(textsInRow(0), QStringList{QStringLiteral("RT")});
    actual.state.setRouterSource(recordChannelAt({0}), 200);
    page->refresh();
    EXPECT_EQ(textsInRow(0), QStringList{QStringLiteral("200")});
}

// ---- several channels

TEST_F(OutputEqSelectionTest, CancelKeepsTheSingleChannel) {
    boxes.answers = {BoxAnswer::cancel};
    click(check(assignBox));
    EXPECT_EQ(boxes.shown, std::vector{question});
    EXPECT_FALSE(check(assignBox).isChecked());
    EXPECT_TRUE(radio(0).isVisible());
    EXPECT_FALSE(box(0).isVisible());
    EXPECT_EQ(actual.state.selectionMask(), 0x80);
    EXPECT_TRUE(inStep());
}

TEST_F(OutputEqSelectionTest, SeveralChannelsBeginWithNone) {
    selectSeveral({});
    EXPECT_EQ(boxes.shown, std::vector{question});
    EXPECT_EQ(actual.state.selectionMask(), 0);
    for (std::size_t position = 0; position < 8; ++position) {
        EXPECT_FALSE(radio(position).isVisible());
        EXPECT_FALSE(radio(position).isEnabled());
        EXPECT_TRUE(box(position).isVisible());
        EXPECT_TRUE(box(position).isEnabled());
        EXPECT_FALSE(box(position).isChecked());
    }
}

TEST_F(OutputEqSelectionTest, WithNoneTickedEditsChangeNothing) {
    selectSeveral({});
    const Bytes store = actual.store();
    const Bytes image = actual.image();
    drag(bandControls[1].gain.slider, -20);
    release(bandControls[1].gain.slider);
    typeAndEnter(bandControls[2].frequency.edit, QStringLiteral("900"));
    click(check(bandControls[3].enabled));
    chooseByKeys(bandControls[4].type, 2);
    chooseByKeys(bandControls[7].type, 0);
    click(check(crossoverControls[0].enabled));
    chooseByKeys(crossoverControls[1].order, 1);
    typeAndEnter(volumeControls.edit, QStringLiteral("3"));
    click(check(invertPhaseBox));
    click(check(limiterDisabledBox));
    typeAndEnter(1358, QStringLiteral("9"));
    click(allFilters());
    boxes.answers = {BoxAnswer::ok};
    click(reset());
    EXPECT_SAME_BYTES(actual.store(), store);
    EXPECT_SAME_BYTES(actual.image(), image);
}

TEST_F(OutputEqSelectionTest, AnEditGoesIntoEveryTickedChannel) {
    loadRandom(13);
    page->refresh();
    selectSeveral({0, 2, 7});
    EXPECT_EQ(actual.state.selectionMask(), 0b10100001);
    typeAndEnter(bandControls[4].gain.edit, QStringLiteral("-4.5"));
    twinBand(4, Column::gain, 45, true);
    EXPECT_TRUE(inStep());
    typeAndEnter(1359, QStringLiteral("77"));
    twin.state.setLimiter(LimiterField::release, 77, true);
    click(check(invertPhaseBox));
    twin.state.setInvertPhase(true, check(invertPhaseBox).isChecked() ? 1 : 0);
    EXPECT_TRUE(inStep());
    for (const std::size_t position : {0U, 2U, 7U}) {
        EXPECT_EQ(floatAt(actual, recordChannelOffset(pageChannels[position]) + 16 * 4 + 4), -4.5F);
    }
    click(box(2));
    tick(2);
    EXPECT_EQ(actual.state.selectionMask(), 0b10000001);
    typeAndEnter(volumeControls.edit, QStringLiteral("2.5"));
    twin.state.setVolume(2.5F, true);
    EXPECT_TRUE(inStep());
}

TEST_F(OutputEqSelectionTest, TickingAChannelReloadsNothingButGivesItBandEightsType) {
    loadRandom(14);
    page->refresh();
    const std::string before = textOf(bandControls[0].frequency.edit);
    selectSeveral({4});
    EXPECT_EQ(textOf(bandControls[0].frequency.edit), before);
    constexpr std::array<std::uint8_t, 3> codes{1, 2, 0};
    EXPECT_EQ(actual.store()[recordChannelOffset(pageChannels[4]) + 16 * 7],
              codes.at(static_cast<std::size_t>(list(bandControls[7].type).currentIndex())));
    EXPECT_TRUE(inStep());
}

TEST_F(OutputEqSelectionTest, EveryTickedChannelTakesBandEightsTypeFromItsList) {
    constexpr std::array<std::uint8_t, 3> codes{1, 2, 0};
    constexpr std::size_t band = 16 * 7;
    const auto typeOf = [&](std::size_t position) {
        return actual.store()[recordChannelOffset(pageChannels[position]) + band];
    };
    for (const int entry : {0, 1, 2}) {
        const std::uint8_t listed = codes.at(static_cast<std::size_t>(entry));
        // Every channel but the shown one has another type than the list will have.
        Bytes store = actual.store();
        for (std::size_t position = 0; position < 8; ++position) {
            store[recordChannelOffset(pageChannels[position]) + band] =
                position == 0 ? listed : static_cast<std::uint8_t>((listed + 1) % 3);
        }
        for (Tuning* tuning : {&actual, &twin}) {
            tuning->load(store);
        }
        page->refresh();
        ASSERT_EQ(list(bandControls[7].type).currentIndex(), entry);
        selectSeveral({2, 5});
        for (std::size_t position = 0; position < 8; ++position) {
            const bool takes = position == 0 || position == 2 || position == 5;
            EXPECT_EQ(typeOf(position) == listed, takes) << position;
        }
        EXPECT_TRUE(inStep());
        click(check(assignBox));
        twin.state.setSelectionMask(0x80);
        twin.state.setBandType(7, listed);
        severalMask_ = 0;
    }
}

TEST_F(OutputEqSelectionTest, ChoosingASingleChannelWritesItsBandEightAnewWithTheFilterMethodInUse) {
    loadRandom(19);
    page->refresh();
    for (Tuning* tuning : {&actual, &twin}) {
        tuning->state.setFilterMode(1);
    }
    takePending();
    const auto before = bytesOf(actual.state.bandWords({0}, 7));
    selectChannel(2);
    EXPECT_NE(difference(bytesOf(actual.state.bandWords({0}, 7)), before), "");
    EXPECT_TRUE(inStep());
    EXPECT_TRUE(takePending());
}

TEST_F(OutputEqSelectionTest, LeavingSeveralChannelsAsksNothingAndShowsTheSingleOne) {
    loadRandom(15);
    page->refresh();
    selectChannel(6);
    selectSeveral({1, 2});
    boxes.shown.clear();
    click(check(assignBox));
    EXPECT_TRUE(boxes.shown.empty());
    EXPECT_EQ(actual.state.selectionMask(), 0x80 >> 6);
    EXPECT_TRUE(radio(6).isChecked());
    for (std::size_t position = 0; position < 8; ++position) {
        EXPECT_TRUE(radio(position).isVisible() && radio(position).isEnabled());
        EXPECT_FALSE(box(position).isVisible());
        EXPECT_FALSE(box(position).isEnabled());
    }
    expectShown(pageChannels[6]);
    EXPECT_TRUE(inStep());
    // Ticks are not remembered.
    selectSeveral({});
    EXPECT_EQ(actual.state.selectionMask(), 0);
}

// ---- all filters

TEST_F(OutputEqSelectionTest, AllFiltersAreSwitchedOffAndOn) {
    EXPECT_EQ(allFilters().text(), QStringLiteral("Disable All Filters"));
    click(check(bandControls[3].enabled));
    twin.state.setBandOff(3, 0);
    takePending();
    for (const bool off : {true, false, true}) {
        click(allFilters());
        for (std::size_t band = 0; band < 8; ++band) {
            twin.state.setBandOff(band, off ? 1 : 0);
            EXPECT_EQ(check(bandControls[band].enabled).isChecked(), !off);
        }
        EXPECT_TRUE(inStep());
        EXPECT_TRUE(takePending());
        EXPECT_EQ(allFilters().text(),
                  off ? QStringLiteral("Enable All Filters") : QStringLiteral("Disable All Filters"));
    }
}

TEST_F(OutputEqSelectionTest, AllFiltersOfEveryTickedChannelAreSwitched) {
    selectSeveral({1, 5});
    click(allFilters());
    click(allFilters());
    for (std::size_t band = 0; band < 8; ++band) {
        twin.state.setBandOff(band, 0);
    }
    EXPECT_TRUE(inStep());
}

// ---- reset

class OutputEqResetTest : public OutputEqSelectionTest {
 protected:
    OutputEqResetTest() {
        loadRandom(16);
        // Random switches may happen to be as a reset leaves them.
        for (Tuning* tuning : {&actual, &twin}) {
            tuning->state.setSelectionMask(0xFF);
            tuning->state.setInvertPhase(true, 1);
            tuning->state.setLimiter(LimiterField::disable, 0, true);
            for (std::size_t k = 0; k < 2; ++k) {
                tuning->state.setCrossover(k, k == 0 ? 1 : 0, 4, 1);
            }
            for (std::size_t band = 0; band < 8; ++band) {
                tuning->state.setBandOff(band, 0);
            }
            tuning->state.setSelectionMask(0x80);
            tuning->settle();
        }
        page->refresh();
    }

    static void resetDirectly(TuningState& state) {
        constexpr std::array<std::uint16_t, 8> frequencies{60, 170, 500, 1000, 2500, 6000, 12000, 16000};
        for (std::size_t band = 0; band < 8; ++band) {
            state.setBandOff(band, 1);
            state.setBandType(band, 2);
            state.setBandFrequency(band, frequencies[band], true);
            state.setBandGainOrQ(band, BandValue::gain, 0.0F, true);
            state.setBandGainOrQ(band, BandValue::q, 1.0F, true);
        }
        state.setCrossoverFrequency(0, 20, true);
        state.setCrossover(0, 0, 2, 0);
        state.setCrossoverFrequency(1, 20000, true);
        state.setCrossover(1, 1, 2, 0);
        state.setInvertPhase(true, 0);
        state.setLimiter(LimiterField::gain, -60, true);
        state.setLimiter(LimiterField::activateLevel, -70, true);
        state.setLimiter(LimiterField::deactivateLevel, -210, true);
        state.setLimiter(LimiterField::attack, 50, true);
        state.setLimiter(LimiterField::release, 120, true);
        state.setLimiter(LimiterField::enable, 0, true);
    }
};

TEST_F(OutputEqResetTest, IsRefusedInLiveMode) {
    actual.state.setLiveMode(true);
    actual.state.takeUpdate();
    click(reset());
    EXPECT_EQ(boxes.shown,
              (std::vector{ShownBox{"Please turn off Live Mode", BoxIcon::none, BoxButtons::ok}}));
    EXPECT_FALSE(actual.state.updatePending());
    EXPECT_TRUE(inStep());
}

TEST_F(OutputEqResetTest, ARefusedResetMovesNoControl) {
    const auto stands = [&] {
        std::vector<std::pair<QString, QString>> all;
        for (const auto* one : page->findChildren<CBitmapSlider*>()) {
            all.emplace_back(one->objectName(), QString::number(one->position()));
        }
        for (const auto* one : page->findChildren<NumberEdit*>()) {
            all.emplace_back(one->objectName(), one->text());
        }
        for (const auto* one : page->findChildren<SkinComboBox*>()) {
            all.emplace_back(one->objectName(), one->currentText());
        }
        for (const auto* one : page->findChildren<SkinCheckBox*>()) {
            all.emplace_back(one->objectName(), QString::number(one->isChecked() ? 1 : 0));
        }
        return all;
    };
    const auto before = stands();
    actual.state.setLiveMode(true);
    click(reset());
    ASSERT_EQ(boxes.shown.size(), 1U);
    EXPECT_EQ(stands(), before);
}

TEST_F(OutputEqResetTest, CancelChangesNothing) {
    boxes.answers = {BoxAnswer::cancel};
    click(reset());
    EXPECT_EQ(boxes.shown, std::vector{question});
    EXPECT_FALSE(actual.state.updatePending());
    EXPECT_TRUE(inStep());
}

TEST_F(OutputEqResetTest, RestoresTheChannelButItsVolumeAndDelay) {
    selectChannel(2);
    const float volume = floatAt(actual, recordChannelOffset(0) + 140);
    const float delay = floatAt(actual, recordChannelOffset(0) + 156);
    takePending();
    boxes.answers = {BoxAnswer::ok};
    click(reset());
    resetDirectly(twin.state);
    EXPECT_TRUE(inStep());
    EXPECT_TRUE(takePending());
    EXPECT_EQ(floatAt(actual, recordChannelOffset(0) + 140), volume);
    EXPECT_EQ(floatAt(actual, recordChannelOffset(0) + 156), delay);
    expectShown(0);
    for (const auto& [id, text] :
         {std::pair{1347, "-6.0"}, {1356, "-7.0"}, {1354, "-21.0"}, {1358, "50"}, {1359, "120"}}) {
        EXPECT_EQ(textOf(id), text);
    }
}

TEST_F(OutputEqResetTest, RestoresEveryTickedChannel) {
    selectSeveral({0, 3, 4});
    boxes.answers = {BoxAnswer::ok};
    click(reset());
    resetDirectly(twin.state);
    EXPECT_TRUE(inStep());
}

TEST_F(OutputEqResetTest, WorksWithTheKeyboard) {
    boxes.answers = {BoxAnswer::ok};
    key(reset(), Qt::Key_Space);
    resetDirectly(twin.state);
    EXPECT_TRUE(inStep());
}

}  // namespace
}  // namespace tessavo::test
