#include <QTest>

#include "controls/slider_event.h"
#include "pages/output/output_eq_fixture.h"

namespace tessavo::test {
namespace {

struct LimiterSlider {
    LimiterField field;
    SliderWithEdit controls;
    int maximum;
    std::size_t offset;  ///< in the limiter block
};

constexpr std::array<LimiterSlider, 3> limiterSliders{{
    {LimiterField::gain, {1346, 1347}, 200, 8},
    {LimiterField::activateLevel, {1355, 1356}, 400, 12},
    {LimiterField::deactivateLevel, {1353, 1354}, 400, 16},
}};

struct LimiterTime {
    LimiterField field;
    int edit;
    std::size_t offset;
    const char* fresh;
};

constexpr std::array<LimiterTime, 2> limiterTimes{
    {{LimiterField::attack, 1358, 0, "50"}, {LimiterField::release, 1359, 4, "120"}}};

class OutputEqChannelTest : public OutputEqTest {
 protected:
    void twinCrossover(std::size_t k, std::uint8_t kind, std::uint8_t order, std::uint8_t enabled) {
        twin.state.setCrossover(k, kind, order, enabled);
    }
    /// Shows the group of the delay, which the program never does, so that its controls take events.
    void revealDelay() {
        QWidget* group = slider(1243).parentWidget();
        group->setEnabled(true);
        group->raise();
        group->show();
    }
};

// ---- crossovers

TEST_F(OutputEqChannelTest, CrossoversStartAsTheDefaults) {
    for (std::size_t k = 0; k < 2; ++k) {
        const CrossoverControls& controls = crossoverControls[k];
        EXPECT_FALSE(check(controls.enabled).isChecked());
        EXPECT_EQ(list(controls.kind).currentText(), k == 0 ? QStringLiteral("HP") : QStringLiteral("LP"));
        EXPECT_EQ(list(controls.order).currentText(), QStringLiteral("2"));
        EXPECT_EQ(textOf(controls.frequency.edit), k == 0 ? "20" : "20000");
        CBitmapSlider& frequency = slider(controls.frequency.slider);
        EXPECT_FALSE(frequency.isVertical());
        EXPECT_EQ(frequency.minimum(), 20);
        EXPECT_EQ(frequency.maximum(), 20000);
        EXPECT_EQ(list(controls.kind).count(), 2);
        EXPECT_EQ(list(controls.kind).itemText(0), QStringLiteral("HP"));
        EXPECT_EQ(list(controls.kind).itemText(1), QStringLiteral("LP"));
        EXPECT_EQ(list(controls.order).count(), 2);
        EXPECT_EQ(list(controls.order).itemText(0), QStringLiteral("2"));
        EXPECT_EQ(list(controls.order).itemText(1), QStringLiteral("4"));
    }
}

TEST_F(OutputEqChannelTest, ACrossoverFrequencyIsDraggedAndReleased) {
    for (std::size_t k = 0; k < 2; ++k) {
        const SliderWithEdit ids = crossoverControls[k].frequency;
        for (const int pixels : {k == 0 ? 40 : -40, 7, -3}) {
            const std::size_t curves = actual.display.curves.size();
            drag(ids.slider, pixels);
            const int position = slider(ids.slider).position();
            twin.state.setCrossoverFrequency(k, static_cast<std::uint16_t>(position), false);
            EXPECT_TRUE(inStep());
            EXPECT_EQ(textOf(ids.edit), std::to_string(position));
            EXPECT_EQ(actual.display.curves.size(), curves + 1);
            EXPECT_FALSE(actual.state.updatePending());
        }
        release(ids.slider);
        EXPECT_TRUE(inStep());
        EXPECT_TRUE(takePending());
    }
}

TEST_F(OutputEqChannelTest, ACrossoverFrequencyIsTyped) {
    for (std::size_t k = 0; k < 2; ++k) {
        const SliderWithEdit ids = crossoverControls[k].frequency;
        for (const auto& [text, frequency] : {std::pair{"25000", 20000},
                                              {"5", 20},
                                              {"-100", 20},
                                              {"", 20},
                                              {"word", 20},
                                              {"99.9", 99},
                                              {"80", 80}}) {
            typeAndEnter(ids.edit, QString::fromLatin1(text));
            twin.state.setCrossoverFrequency(k, static_cast<std::uint16_t>(frequency), true);
            EXPECT_TRUE(inStep()) << text;
            EXPECT_EQ(slider(ids.slider).position(), frequency);
            EXPECT_EQ(textOf(ids.edit), text);
            EXPECT_TRUE(takePending());
        }
        key(edit(ids.edit), Qt::Key_Up);
        EXPECT_EQ(textOf(ids.edit), "81");
        key(edit(ids.edit), Qt::Key_Up, Qt::ShiftModifier);
        EXPECT_EQ(textOf(ids.edit), "102");
        key(slider(ids.slider), Qt::Key_Left);
        EXPECT_EQ(textOf(ids.edit), "101");
        twin.state.setCrossoverFrequency(k, 101, true);
        EXPECT_TRUE(inStep());
    }
}

TEST_F(OutputEqChannelTest, KindOrderAndSwitchOfACrossoverRecomputeItAndDrawTheCurve) {
    for (std::size_t k = 0; k < 2; ++k) {
        const CrossoverControls& controls = crossoverControls[k];
        typeAndEnter(controls.frequency.edit, QStringLiteral("700"));
        twin.state.setCrossoverFrequency(k, 700, true);
        takePending();
        std::uint8_t kind = static_cast<std::uint8_t>(k);
        std::uint8_t order = 2;
        std::uint8_t enabled = 0;
        const auto expectTaken = [&](std::size_t curvesBefore) {
            twinCrossover(k, kind, order, enabled);
            EXPECT_TRUE(inStep());
            EXPECT_GT(actual.display.curves.size(), curvesBefore);
            EXPECT_EQ(actual.display.curves.back(), twin.display.curves.back());
            EXPECT_TRUE(takePending());
        };
        for (const std::uint8_t on : {std::uint8_t{1}, std::uint8_t{0}, std::uint8_t{1}}) {
            const std::size_t curves = actual.display.curves.size();
            click(check(controls.enabled));
            enabled = on;
            expectTaken(curves);
            EXPECT_EQ(static_cast<SkinGroupBox*>(check(controls.enabled).parentWidget())->bar().isValid(),
                      on != 0);
        }
        for (const int entry : {1, 0, 1}) {
            if (list(controls.kind).currentIndex() != entry) {
                const std::size_t curves = actual.display.curves.size();
                chooseByKeys(controls.kind, entry);
                kind = static_cast<std::uint8_t>(entry);
                expectTaken(curves);
            }
        }
        for (const int entry : {1, 0, 1}) {
            const std::size_t curves = actual.display.curves.size();
            chooseByKeys(controls.order, entry);
            order = static_cast<std::uint8_t>(2 * entry + 2);
            expectTaken(curves);
            EXPECT_EQ(actual.store()[recordChannelOffset(7) + 128 + 6 * k + 4], order);
        }
    }
}

TEST_F(OutputEqChannelTest, AnOrderShowsTheFrequencyAgain) {
    const CrossoverControls& controls = crossoverControls[1];
    typeAndEnter(controls.frequency.edit, QStringLiteral("30000"));
    EXPECT_EQ(textOf(controls.frequency.edit), "30000");
    choose(controls.order, 1);
    EXPECT_EQ(textOf(controls.frequency.edit), "20000");
    EXPECT_EQ(readAt<std::uint16_t>(actual.store(), recordChannelOffset(7) + 136), 20000);
}

/// Counts the slider messages that reach the page.
class SliderMessages : public QObject {
 public:
    explicit SliderMessages(QWidget& page) { page.installEventFilter(this); }
    bool eventFilter(QObject*, QEvent* event) override {
        if (SliderEvent::isSliderEvent(*event)) {
            ids.push_back(static_cast<const SliderEvent&>(*event).controlId());
        }
        return false;
    }
    std::vector<int> ids;
};

TEST_F(OutputEqChannelTest, AnOrderIsWrittenBeforeItsSliderMessageIsPosted) {
    for (const CrossoverControls& controls : crossoverControls) {
        SliderMessages messages(*page);
        std::size_t writes = 0;
        // What is posted by now is delivered while the write is still under way.
        actual.state.setChangeListener([&] {
            ++writes;
            if (messages.ids.empty()) {
                QCoreApplication::sendPostedEvents(page);
                EXPECT_TRUE(messages.ids.empty()) << "posted before write " << writes << " was done";
            }
        });
        chooseByKeys(controls.order, 1);
        actual.state.setChangeListener({});
        EXPECT_GE(writes, 2U);
        EXPECT_EQ(messages.ids, std::vector{controls.frequency.slider});
    }
}

TEST_F(OutputEqChannelTest, CodesThatNoListHasStayUntilSomebodyChoosesAnother) {
    for (Tuning* tuning : {&actual, &twin}) {
        tuning->state.setCrossover(0, 5, 9, 0);
    }
    page->refresh();
    EXPECT_EQ(list(crossoverControls[0].kind).currentIndex(), -1);
    EXPECT_EQ(list(crossoverControls[0].order).currentIndex(), -1);
    click(check(crossoverControls[0].enabled));
    twinCrossover(0, 5, 9, 1);
    EXPECT_TRUE(inStep());
}

// ---- volume and phase

TEST_F(OutputEqChannelTest, TheVolumeIsDraggedTypedAndStepped) {
    CBitmapSlider& volume = slider(volumeControls.slider);
    EXPECT_FALSE(volume.isVertical());
    EXPECT_EQ(volume.minimum(), -60);
    EXPECT_EQ(volume.maximum(), 180);
    for (const int pixels : {33, -60, 11}) {
        drag(volumeControls.slider, pixels);
        twin.state.setVolume(static_cast<float>(volume.position()) / 10.0F, false);
        EXPECT_TRUE(inStep());
        EXPECT_EQ(textOf(volumeControls.edit),
                  QString::number(volume.position() / 10.0, 'f', 1).toStdString());
        EXPECT_FALSE(actual.state.updatePending());
    }
    release(volumeControls.slider);
    EXPECT_TRUE(inStep());
    EXPECT_TRUE(takePending());
    for (const auto& [text, value] : {std::pair{"20", 18.0F},
                                      {"-20", -6.0F},
                                      {"0.3", 0.3F},
                                      {"-0.39", -0.3F},
                                      {"loud", 0.0F},
                                      {"17.99", 17.9F}}) {
        typeAndEnter(volumeControls.edit, QString::fromLatin1(text));
        twin.state.setVolume(value, true);
        EXPECT_TRUE(inStep()) << text;
        EXPECT_TRUE(takePending());
        EXPECT_EQ(textOf(volumeControls.edit), text);
    }
    key(edit(volumeControls.edit), Qt::Key_Up);
    EXPECT_EQ(textOf(volumeControls.edit), "18.0");
    key(volume, Qt::Key_Left);
    EXPECT_EQ(textOf(volumeControls.edit), "17.9");
    EXPECT_EQ(actual.display.curves.size(), 0U);
}

TEST_F(OutputEqChannelTest, TheGainWordIsThatOfTheSumBelowIt) {
    typeAndEnter(volumeControls.edit, QStringLiteral("0.3"));
    EXPECT_EQ(imageWordAt(actual, imageBlockOffset(7) + 4), 0x01000000U);
    actual.state.setGroupGain({7}, 1.0F);
    typeAndEnter(volumeControls.edit, QStringLiteral("18"));
    EXPECT_EQ(imageWordAt(actual, imageBlockOffset(7) + 4), 0x07F17AF4U);
    typeAndEnter(volumeControls.edit, QStringLiteral("-6"));
    EXPECT_EQ(imageWordAt(actual, imageBlockOffset(7) + 4), gainWordByFormula(-6.0F, 1.0F));
}

TEST_F(OutputEqChannelTest, ThePhaseIsWrittenAsChecked) {
    for (const std::uint8_t value : {std::uint8_t{1}, std::uint8_t{0}}) {
        click(check(invertPhaseBox));
        twin.state.setInvertPhase(true, value);
        EXPECT_TRUE(inStep());
        EXPECT_EQ(actual.store()[377 + 168 * 7], value);
        EXPECT_TRUE(takePending());
    }
}

// ---- limiter

TEST_F(OutputEqChannelTest, LimiterSlidersHoldTheNegatedTenths) {
    constexpr std::array<const char*, 3> fresh{"-6.0", "-7.0", "-21.0"};
    for (std::size_t i = 0; i < 3; ++i) {
        const LimiterSlider& row = limiterSliders[i];
        CBitmapSlider& level = slider(row.controls.slider);
        EXPECT_TRUE(level.isVertical());
        EXPECT_EQ(level.minimum(), 0);
        EXPECT_EQ(level.maximum(), row.maximum);
        EXPECT_EQ(textOf(row.controls.edit), fresh[i]);
    }
}

TEST_F(OutputEqChannelTest, LimiterLevelsAreDraggedAndReleased) {
    for (const LimiterSlider& row : limiterSliders) {
        for (const int pixels : {20, -4}) {
            drag(row.controls.slider, pixels);
            const int position = slider(row.controls.slider).position();
            twin.state.setLimiter(row.field, -position, false);
            EXPECT_TRUE(inStep());
            EXPECT_EQ(readAt<std::int32_t>(actual.store(), recordLimiterOffset(7) + row.offset), -position);
            EXPECT_EQ(textOf(row.controls.edit), QString::number(-position / 10.0, 'f', 1).toStdString());
            EXPECT_FALSE(actual.state.updatePending());
        }
        release(row.controls.slider);
        EXPECT_TRUE(inStep());
        EXPECT_TRUE(takePending());
        dragToEnd(row.controls.slider, true);
        EXPECT_EQ(textOf(row.controls.edit), "0.0");
        dragToEnd(row.controls.slider, false);
        twin.state.setLimiter(row.field, -row.maximum, true);
        EXPECT_TRUE(inStep());
        takePending();
    }
}

TEST_F(OutputEqChannelTest, TypedLimiterLevelsAreClampedToTheSliders) {
    for (const LimiterSlider& row : limiterSliders) {
        for (const auto& [text, tenths] : {std::pair{"-99", -row.maximum},
                                           {"3", 0},
                                           {"-12.34", -123},
                                           {"-0.05", 0},
                                           {"x", 0},
                                           {"-19.9", -199}}) {
            typeAndEnter(row.controls.edit, QString::fromLatin1(text));
            twin.state.setLimiter(row.field, tenths, true);
            EXPECT_TRUE(inStep()) << text;
            EXPECT_TRUE(takePending());
            EXPECT_EQ(textOf(row.controls.edit), text);
        }
        key(edit(row.controls.edit), Qt::Key_Up);
        twin.state.setLimiter(row.field, -198, true);
        EXPECT_TRUE(inStep());
        EXPECT_EQ(textOf(row.controls.edit), "-19.8");
        key(slider(row.controls.slider), Qt::Key_Down);
        EXPECT_EQ(textOf(row.controls.edit), "-19.9");
        twin.state.setLimiter(row.field, -199, true);
        EXPECT_TRUE(inStep());
    }
}

TEST_F(OutputEqChannelTest, LimiterTimesAreWholeMillisecondsAndRewritten) {
    for (const LimiterTime& row : limiterTimes) {
        EXPECT_EQ(textOf(row.edit), row.fresh);
        for (const auto& [text, milliseconds] : {std::pair{"250", 200},
                                                 {"-5", 0},
                                                 {"7.9", 7},
                                                 {"-0.9", 0},
                                                 {"abc", 0},
                                                 {"", 0},
                                                 {"200.9", 200},
                                                 {"12 ms", 12},
                                                 {"9999999999999999", 200}}) {
            typeAndEnter(row.edit, QString::fromLatin1(text));
            twin.state.setLimiter(row.field, milliseconds, true);
            EXPECT_TRUE(inStep()) << text;
            EXPECT_EQ(textOf(row.edit), std::to_string(milliseconds));
            EXPECT_TRUE(takePending());
            EXPECT_EQ(readAt<std::int32_t>(actual.store(), recordLimiterOffset(7) + row.offset),
                      milliseconds);
        }
        typeAndLeave(row.edit, QStringLiteral("33"));
        key(edit(row.edit), Qt::Key_Up);
        EXPECT_EQ(textOf(row.edit), "34");
        key(edit(row.edit), Qt::Key_Down);
        key(edit(row.edit), Qt::Key_Down);
        twin.state.setLimiter(row.field, 32, true);
        EXPECT_TRUE(inStep());
        typeOnly(row.edit, QStringLiteral("5"));
        QTest::keyClick(&edit(row.edit), Qt::Key_Escape);
        EXPECT_EQ(textOf(row.edit), "32");
        takePending();
    }
}

TEST_F(OutputEqChannelTest, DisabledSwitchesTheLimiterOff) {
    EXPECT_FALSE(check(limiterDisabledBox).isChecked());
    for (const LimiterField field : {LimiterField::disable, LimiterField::enable}) {
        click(check(limiterDisabledBox));
        twin.state.setLimiter(field, 0, true);
        EXPECT_TRUE(inStep());
        EXPECT_EQ(actual.store()[recordLimiterOffset(7) + 20], field == LimiterField::enable ? 1 : 0);
        EXPECT_TRUE(takePending());
    }
}

// ---- what stays hidden

TEST_F(OutputEqChannelTest, HiddenControlsAreThereButCannotBeReached) {
    for (const int id : {1023, 1024, 1025, 1029, 1030, 1031, 1135, 1136, 1137, 1052, 1059, 1071, 1038, 1039,
                         1243, 1244, 1041, 1254}) {
        auto* hidden = page->findChild<QWidget*>(QStringLiteral("id%1").arg(id));
        ASSERT_NE(hidden, nullptr) << id;
        EXPECT_FALSE(hidden->isVisible()) << id;
        EXPECT_FALSE(hidden->isEnabled()) << id;
        hidden->setFocus(Qt::TabFocusReason);
        EXPECT_FALSE(hidden->hasFocus()) << id;
    }
    for (const int id : {1038, 1039}) {
        EXPECT_EQ(check(id).text(), QStringLiteral("Disabled"));
    }
    EXPECT_EQ(static_cast<SkinGroupBox*>(slider(1023).parentWidget())->title(),
              QStringLiteral("Filter 9 Properties"));
    EXPECT_EQ(static_cast<SkinGroupBox*>(slider(1029).parentWidget())->title(),
              QStringLiteral("Filter 10 Properties"));
    EXPECT_EQ(control<CxSkinButton>(1254).text(), QStringLiteral("Calibrate"));
}

TEST_F(OutputEqChannelTest, ClicksAllOverThePageReachNoHiddenControl) {
    for (int x = 3; x < 984; x += 9) {
        for (int y = 3; y < 596; y += 9) {
            for (QWidget* at = page->childAt(x, y); at != nullptr && at != page; at = at->parentWidget()) {
                ASSERT_TRUE(at->isEnabled()) << x << "," << y << " " << at->objectName().toStdString();
            }
        }
    }
}

TEST_F(OutputEqChannelTest, HiddenControlsStayHiddenWhateverHappens) {
    boxes.answers = {BoxAnswer::ok, BoxAnswer::ok};
    click(check(assignBox));
    click(check(assignBox));
    click(control<CxSkinButton>(allFiltersButton));
    click(control<CxSkinButton>(resetButton));
    page->refresh();
    page->hide();
    page->show();
    for (const int id : {1023, 1030, 1135, 1038, 1039, 1243, 1244, 1041, 1254}) {
        EXPECT_FALSE(page->findChild<QWidget*>(QStringLiteral("id%1").arg(id))->isVisible()) << id;
    }
}

TEST_F(OutputEqChannelTest, CalibrateDoesNothing) {
    auto& calibrate = control<CxSkinButton>(1254);
    calibrate.setEnabled(true);
    calibrate.click();
    deliver();
    EXPECT_TRUE(inStep());
    EXPECT_FALSE(actual.state.updatePending());
    EXPECT_TRUE(boxes.shown.empty());
}

// ---- delay, on its hidden group made visible

TEST_F(OutputEqChannelTest, TheDelayIsDraggedAndShownAsADistance) {
    revealDelay();
    EXPECT_EQ(slider(1243).minimum(), 0);
    EXPECT_EQ(slider(1243).maximum(), 20);
    for (const int pixels : {100, -20}) {
        drag(1243, pixels);
        const int position = slider(1243).position();
        twin.state.setDelay(static_cast<float>(position) / 10.0F, false);
        EXPECT_TRUE(inStep());
        EXPECT_FALSE(actual.state.updatePending());
        EXPECT_EQ(textOf(1244), QString::number(position / 10.0, 'f', 1).toStdString());
        EXPECT_EQ(textOf(1041), QString::number(position / 10.0 * 34.3, 'f', 1).toStdString());
    }
    release(1243);
    EXPECT_TRUE(inStep());
    EXPECT_TRUE(takePending());
}

TEST_F(OutputEqChannelTest, ATypedDelayRewritesBothBoxes) {
    revealDelay();
    for (const auto& [text, value, time, distance] : {std::tuple{"2.0", 2.0F, "2.0", "68.6"},
                                                      {"1.09", 1.0F, "1.0", "34.3"},
                                                      {"9", 2.0F, "2.0", "68.6"},
                                                      {"-1", 0.0F, "0.0", "0.0"},
                                                      {"x", 0.0F, "0.0", "0.0"}}) {
        typeAndEnter(1244, QString::fromLatin1(text));
        twin.state.setDelay(value, true);
        EXPECT_TRUE(inStep());
        EXPECT_EQ(textOf(1244), time);
        EXPECT_EQ(textOf(1041), distance);
        EXPECT_TRUE(takePending());
    }
}

TEST_F(OutputEqChannelTest, ATypedDistanceIsDividedByThirtyFourAndRewritesTheTimeAlone) {
    revealDelay();
    for (const auto& [text, value, time] : {std::tuple{"34", 1.0F, "1.0"},
                                            {"34.3", 1.0F, "1.0"},
                                            {"100", 2.0F, "2.0"},
                                            {"33.9", 0.9F, "0.9"},
                                            {"-7", 0.0F, "0.0"},
                                            {"68", 2.0F, "2.0"},
                                            {"x", 0.0F, "0.0"}}) {
        typeAndEnter(1041, QString::fromLatin1(text));
        twin.state.setDelay(value, true);
        EXPECT_TRUE(inStep()) << text;
        EXPECT_EQ(textOf(1244), time);
        EXPECT_EQ(textOf(1041), text);
        EXPECT_TRUE(takePending());
    }
    EXPECT_EQ(imageWordAt(actual, imageBlockOffset(7) + 12), 0U);
    typeAndLeave(1041, QStringLiteral("34"));
    EXPECT_EQ(imageWordAt(actual, imageBlockOffset(7) + 12), 50U);
}

}  // namespace
}  // namespace tessavo::test
