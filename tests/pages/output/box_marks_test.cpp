#include <QTest>

#include "pages/output/output_eq_fixture.h"
#include "pages/output/output_group.h"

namespace tessavo::test {
namespace {

class OutputEqMarks : public OutputEqTest {
 protected:
    QString mark(int id) { return edit(id).mark(); }
};

TEST_F(OutputEqMarks, AFreshPageWearsNone) {
    for (const auto* box : page->findChildren<NumberEdit*>()) {
        EXPECT_EQ(box->mark(), QString()) << box->objectName().toStdString();
    }
}

TEST_F(OutputEqMarks, AKeptTextTellsWhatIsInForceUntilTheNextRefresh) {
    for (const BandControls& band : bandControls) {
        for (const auto& [id, text, expected] :
             {std::tuple{band.frequency.edit, "25000", "In force: 20000 Hz"},
              {band.frequency.edit, "440.9", "In force: 440 Hz"},
              {band.gain.edit, "3.27", "In force: 3.2 dB"},
              {band.gain.edit, "word", "In force: 0.0 dB"},
              {band.gain.edit, "4 dB", "In force: 4.0 dB"},
              {band.q.edit, "0.05", "In force: 0.1"}}) {
            typeAndLeave(id, QLatin1String(text));
            EXPECT_EQ(textOf(id), text);
            EXPECT_EQ(mark(id), QLatin1String(expected));
            EXPECT_EQ(edit(id).warning(), QString());
            EXPECT_TRUE(edit(id).toolTip() == mark(id) &&
                        edit(id).accessibleDescription().endsWith(mark(id)));
        }
        typeAndEnter(band.frequency.edit, QStringLiteral("3k2"));
        EXPECT_EQ(mark(band.frequency.edit), QString()) << "the text says what is in force";
        EXPECT_EQ(textOf(band.frequency.edit), "3k2");
        EXPECT_EQ(slider(band.frequency.slider).position(), -3200);
    }
    page->refresh();
    for (const BandControls& band : bandControls) {
        for (const int id : {band.frequency.edit, band.gain.edit, band.q.edit}) {
            EXPECT_EQ(mark(id), QString());
        }
    }
}

TEST_F(OutputEqMarks, EveryTextIsTakenAndWarnedOfWhileItIsTyped) {
    const SliderWithEdit gain = bandControls[2].gain;
    for (const auto& [text, warning] : {std::pair{"30", "Out of range: counts as 18.0 dB"},
                                        {"-18.1", "Out of range: counts as -18.0 dB"},
                                        {"abc", "Not a number: counts as 0.0 dB"},
                                        {"-", "Not a number: counts as 0.0 dB"},
                                        {"", "Not a number: counts as 0.0 dB"},
                                        {"4 dB", "Not wholly a number: counts as 4.0 dB"},
                                        {"1.2.3", "Not wholly a number: counts as 1.2 dB"},
                                        {"+4", "Not a number: counts as 0.0 dB"},
                                        {"4,5", ""},
                                        {" 4.5 ", ""},
                                        {"-18", ""},
                                        {".5", ""}}) {
        typeOnly(gain.edit, QLatin1String(text));
        EXPECT_EQ(textOf(gain.edit), text);
        EXPECT_EQ(edit(gain.edit).warning(), QLatin1String(warning)) << text;
        EXPECT_TRUE(inStep()) << "typing alone writes nothing";
    }
    QTest::keyClick(&edit(gain.edit), Qt::Key_Escape);
    EXPECT_EQ(edit(gain.edit).warning(), QString());
}

TEST_F(OutputEqMarks, VolumeOffTheGridTellsWhatPlays) {
    for (const auto& [text, expected] : {std::pair{"0.3", "Plays 0.0 dB"},
                                         {"0.5", ""},
                                         {"-0.1", "Plays -0.5 dB"},
                                         {"18", ""},
                                         {"-6", ""},
                                         {"0.37", "In force: 0.3 dB. Plays 0.0 dB"},
                                         {"99", "In force: 18.0 dB"}}) {
        typeAndLeave(volumeControls.edit, QLatin1String(text));
        EXPECT_EQ(mark(volumeControls.edit), QLatin1String(expected)) << text;
    }
    // The group's gain may make it whole, and the page learns of it when it comes to the front.
    typeAndLeave(volumeControls.edit, QStringLiteral("0.3"));
    actual.state.setGroupGain({7}, 0.2F);
    page->hide();
    page->show();
    EXPECT_EQ(mark(volumeControls.edit), QString());
    actual.state.setGroupGain({7}, 1.0F);
    page->hide();
    page->show();
    EXPECT_EQ(mark(volumeControls.edit), QStringLiteral("Plays 1.0 dB, together with the group gain"));
}

TEST_F(OutputEqMarks, ARetypedNumberGoesIntoEveryTickedChannel) {
    selectSeveral({0, 3, 6});
    for (Tuning* tuning : {&actual, &twin}) {
        tuning->state.setSelectionMask(0x10);
        tuning->state.setVolume(5.0F, true);
        tuning->state.setBandGainOrQ(2, BandValue::gain, 7.0F, true);
        tuning->state.setLimiter(LimiterField::attack, 99, true);
        tuning->state.setSelectionMask(0x92);
    }
    takePending();
    for (const auto& [id, text] :
         {std::pair{volumeControls.edit, "0.0"}, {bandControls[2].gain.edit, "0.0"}, {1358, "50"}}) {
        ASSERT_EQ(textOf(id), text);
        edit(id).setFocus(Qt::TabFocusReason);
        key(edit(id), Qt::Key_Tab);
        EXPECT_TRUE(inStep()) << "only passed through";
        EXPECT_FALSE(takePending());
    }
    typeAndLeave(volumeControls.edit, QStringLiteral("0.0"));
    twin.state.setVolume(0.0F, true);
    typeAndLeave(bandControls[2].gain.edit, QStringLiteral("0.0"));
    twin.state.setBandGainOrQ(2, BandValue::gain, 0.0F, true);
    typeAndLeave(1358, QStringLiteral("50"));
    twin.state.setLimiter(LimiterField::attack, 50, true);
    EXPECT_TRUE(inStep());
    EXPECT_TRUE(takePending());
}

TEST_F(OutputEqMarks, AWholeSetThatTheBoxesCannotShowIsMarkedEverywhere) {
    for (std::uint64_t seed = 1; seed <= 4; ++seed) {
        loadRandom(seed);
        page->refresh();
        EXPECT_TRUE(inStep());
        EXPECT_FALSE(takePending());
        for (const BandControls& band : bandControls) {
            const double hertz = readAt<std::uint16_t>(
                actual.store(),
                recordChannelOffset(7) + 16 * static_cast<std::size_t>(&band - bandControls.data()) + 2);
            EXPECT_EQ(mark(band.frequency.edit).isEmpty(), hertz >= 20 && hertz <= 20000) << hertz;
        }
    }
}

class OutputGroupMarks : public PageTest {
 protected:
    OutputGroupMarks() { showPage(std::make_unique<COutputGroup>(actual.state)); }
    QString mark(int id) { return edit(id).mark(); }
};

TEST_F(OutputGroupMarks, AGainOffTheGridTellsWhatPlays) {
    constexpr std::array<int, 8> gains{1398, 1399, 1397, 1396, 1400, 1395, 1401, 1404};
    for (const int id : gains) {
        for (const auto& [text, expected] : {std::pair{"0.3", "Plays 0.0 dB"},
                                             {"1.5", ""},
                                             {"-3.9", "Plays -4.0 dB"},
                                             {"3.27", "In force: 3.2 dB. Plays 3.0 dB"},
                                             {"word", "In force: 0.0 dB"},
                                             {"25", ""},
                                             {"1e1", ""}}) {
            typeAndEnter(id, QLatin1String(text));
            EXPECT_EQ(mark(id), QLatin1String(expected)) << text;
        }
    }
}

TEST_F(OutputGroupMarks, ADelayTellsItsSamples) {
    typeAndEnter(1405, QStringLiteral("0.1"));
    EXPECT_EQ(mark(1405), QStringLiteral("Plays 5 samples, 0.101 ms"));
    EXPECT_EQ(mark(1413), mark(1405));
    typeAndEnter(1405, QStringLiteral("2.0"));
    EXPECT_EQ(mark(1405), QString());
    EXPECT_EQ(mark(1413), QString());
    typeAndEnter(1413, QStringLiteral("100"));
    EXPECT_EQ(mark(1405), QString());
    EXPECT_EQ(mark(1413), QStringLiteral("In force: 68.6 cm"));
    typeAndEnter(1405, QStringLiteral("1.27"));
    EXPECT_EQ(mark(1405), QStringLiteral("In force: 1.2 ms. Plays 59 samples, 1.192 ms"));
    EXPECT_EQ(textOf(1413), "43.6");
    EXPECT_EQ(mark(1413), QStringLiteral("In force: 41.2 cm. Plays 59 samples, 1.192 ms"));
    page->refresh();
    EXPECT_EQ(mark(1413), QStringLiteral("Plays 59 samples, 1.192 ms"));
}

TEST_F(OutputGroupMarks, BoxesReadTheirOwnWayAndWarnByIt) {
    for (const auto& [text, warning] : {std::pair{"1e1", ""},
                                        {"+5", ""},
                                        {"19", "Out of range: counts as 18.0 dB"},
                                        {"nan", "Not a number: counts as 0.0 dB"},
                                        {"5 dB", "Not wholly a number: counts as 5.0 dB"},
                                        {"3k2", "Not wholly a number: counts as 3.0 dB"},
                                        {"2,5", ""},
                                        {"", "Not a number: counts as 0.0 dB"}}) {
        typeOnly(1398, QLatin1String(text));
        EXPECT_EQ(textOf(1398), text);
        EXPECT_EQ(edit(1398).warning(), QLatin1String(warning)) << text;
    }
    for (const auto& [text, warning] : {std::pair{"34", ""},
                                        {"68.6", ""},
                                        {"100", "Out of range: counts as 2.0 ms"},
                                        {"34 cm", "Not wholly a number: counts as 1.0 ms"},
                                        {"x", "Not a number: counts as 0.0 ms"}}) {
        typeOnly(1413, QLatin1String(text));
        EXPECT_EQ(edit(1413).warning(), QLatin1String(warning)) << text;
    }
    EXPECT_EQ(actual.store(), twin.store()) << "typing alone writes nothing";
}

TEST_F(OutputGroupMarks, TheShownNumberTypedAgainReplacesADamagedOne) {
    for (Tuning* tuning : {&actual, &twin}) {
        tuning->state.setGroupGain({2}, 25.0F);
    }
    page->refresh();
    takePending();
    EXPECT_EQ(textOf(1398), "18.0");
    EXPECT_EQ(mark(1398), QStringLiteral("In force: 25.0 dB. Plays 18.0 dB"));
    key(edit(1398), Qt::Key_Tab);
    EXPECT_TRUE(inStep());
    typeAndLeave(1398, QStringLiteral("18.0"));
    twin.state.setGroupGain({2}, 18.0F);
    EXPECT_TRUE(inStep());
    EXPECT_TRUE(takePending());
    EXPECT_EQ(mark(1398), QString());
}

}  // namespace
}  // namespace tessavo::test
