#include <QTest>
#include <limits>

#include "controls/slider_event.h"
#include "pages/output/output_eq_fixture.h"

namespace tessavo::test {
namespace {

class OutputEqBandsTest : public OutputEqTest {};

TEST_F(OutputEqBandsTest, AFreshPageShowsTheDefaultsAndHasWrittenNothing) {
    EXPECT_TRUE(inStep());
    EXPECT_FALSE(actual.state.updatePending());
    EXPECT_EQ(actual.state.selectionMask(), 0x80);
    constexpr std::array<const char*, 8> frequencies{"60",   "170",  "500",   "1000",
                                                     "2500", "6000", "12000", "16000"};
    for (std::size_t band = 0; band < 8; ++band) {
        const BandControls& controls = bandControls[band];
        EXPECT_FALSE(check(controls.enabled).isChecked());
        EXPECT_EQ(list(controls.type).currentText(), QStringLiteral("Peak"));
        EXPECT_EQ(textOf(controls.frequency.edit), frequencies[band]);
        EXPECT_EQ(textOf(controls.gain.edit), "0.0");
        EXPECT_EQ(textOf(controls.q.edit), "1.0");
    }
}

TEST_F(OutputEqBandsTest, SlidersHoldTheNegatedValue) {
    for (const BandControls& controls : bandControls) {
        for (const auto& [id, minimum, maximum] : {std::tuple{controls.frequency.slider, -20000, -20},
                                                   {controls.gain.slider, -180, 180},
                                                   {controls.q.slider, -200, -1}}) {
            EXPECT_TRUE(slider(id).isVertical());
            EXPECT_EQ(slider(id).minimum(), minimum);
            EXPECT_EQ(slider(id).maximum(), maximum);
        }
        EXPECT_EQ(slider(controls.gain.slider).position(), 0);
        EXPECT_EQ(slider(controls.q.slider).position(), -10);
    }
}

TEST_F(OutputEqBandsTest, ADragWritesRecordImageAndCurveAtEveryStepAndItsEndRaisesTheUpdate) {
    for (std::size_t band = 0; band < 8; ++band) {
        for (const Column column : columns) {
            const SliderWithEdit ids = controlsOf(band, column);
            const int first = slider(ids.slider).position();
            for (const int pixels : {-20, -3, 9}) {
                const int before = slider(ids.slider).position();
                const std::size_t curves = actual.display.curves.size();
                drag(ids.slider, pixels);
                const int position = slider(ids.slider).position();
                ASSERT_NE(position, before);
                twinBand(band, column, position, false);
                EXPECT_TRUE(inStep()) << "band " << band;
                EXPECT_EQ(actual.display.curves.size(), curves + 1);
                EXPECT_EQ(actual.display.curves.back(), twin.display.curves.back());
                EXPECT_FALSE(actual.state.updatePending());
                const QString text = column == Column::frequency ? QString::number(-position)
                                                                 : QString::number(-position / 10.0, 'f', 1);
                EXPECT_EQ(edit(ids.edit).text(), text);
            }
            release(ids.slider);
            twinBand(band, column, slider(ids.slider).position(), true);
            EXPECT_TRUE(inStep());
            EXPECT_TRUE(takePending());
            EXPECT_NE(slider(ids.slider).position(), first);
        }
    }
}

TEST_F(OutputEqBandsTest, TheEndsOfTheSlidersAreTheLimits) {
    for (std::size_t band = 0; band < 8; ++band) {
        for (const Column column : columns) {
            const SliderWithEdit ids = controlsOf(band, column);
            dragToEnd(ids.slider, true);
            EXPECT_EQ(textOf(ids.edit), column == Column::frequency ? "20000"
                                        : column == Column::gain    ? "18.0"
                                                                    : "20.0");
            twinBand(band, column, slider(ids.slider).minimum(), true);
            EXPECT_TRUE(inStep());
            dragToEnd(ids.slider, false);
            EXPECT_EQ(textOf(ids.edit), column == Column::frequency ? "20"
                                        : column == Column::gain    ? "-18.0"
                                                                    : "0.1");
            twinBand(band, column, slider(ids.slider).maximum(), true);
            EXPECT_TRUE(inStep());
        }
    }
}

TEST_F(OutputEqBandsTest, AKeyOnASliderIsOneFinalEdit) {
    for (std::size_t band = 0; band < 8; ++band) {
        for (const Column column : columns) {
            const SliderWithEdit ids = controlsOf(band, column);
            const int before = slider(ids.slider).position();
            key(slider(ids.slider), Qt::Key_Up);
            EXPECT_EQ(slider(ids.slider).position(), before - 1);
            twinBand(band, column, before - 1, true);
            EXPECT_TRUE(inStep());
            EXPECT_TRUE(takePending());
        }
    }
}

struct Typed {
    const char* text;
    int position;
};

// Every kind of text, and the slider position that it stands for.
constexpr Typed typedFrequencies[]{
    {"25000", -20000}, {"20000", -20000}, {"20", -20},     {"19", -20},     {"0", -20},
    {"-440", -20},     {"440", -440},     {"440.9", -440}, {"1e3", -20},    {"1000 Hz", -1000},
    {"", -20},         {"-", -20},        {"Hz", -20},     {"1.2.3", -20},  {"123.4.5", -123},
    {"--5", -20},      {"+500", -20},     {"nan", -20},    {"inf", -20},    {"9999999999999999", -20000},
    {" 777", -777},    {"0x100", -20},    {"00300", -300}, {"300,7", -300}, {"5 00", -20},
};
constexpr Typed typedGains[]{
    {"-30", 180}, {"30", -180},  {"-18.0", 180},      {"18.05", -180}, {"0.7", -7},
    {"-0.7", 7},  {"3.27", -32}, {"-3.27", 32},       {"-0.05", 0},    {"0.05", 0},
    {".5", -5},   {"-.5", 5},    {"5.", -50},         {"abc", 0},      {"", 0},
    {"-", 0},     {"1-2", -10},  {"1e1", -10},        {"2,5", -25},    {"4 dB", -40},
    {"- 4", 0},   {"+4", 0},     {"0.29", -2},        {"1.1", -11},    {"-00.1", 1},
    {".", 0},     {"-.", 0},     {"4.99999999", -49},
};
constexpr Typed typedQs[]{
    {"0.05", -1}, {"0.1", -1}, {"0", -1},    {"-3", -1}, {"20", -200},  {"20.1", -200},
    {"99", -200}, {"0.7", -7}, {"1.4", -14}, {"x", -1},  {"3.27", -32}, {"0,71", -7},
};

TEST_F(OutputEqBandsTest, TypedTextsAreReadClampedAndFinal) {
    for (std::size_t band = 0; band < 8; ++band) {
        for (const Column column : columns) {
            const std::span<const Typed> texts = column == Column::frequency
                                                     ? std::span<const Typed>(typedFrequencies)
                                                 : column == Column::gain ? std::span<const Typed>(typedGains)
                                                                          : std::span<const Typed>(typedQs);
            const SliderWithEdit ids = controlsOf(band, column);
            for (const Typed& typed : texts) {
                typeAndEnter(ids.edit, QString::fromLatin1(typed.text));
                twinBand(band, column, typed.position, true);
                ASSERT_TRUE(inStep()) << "band " << band << ": " << typed.text;
                EXPECT_EQ(slider(ids.slider).position(), typed.position) << typed.text;
                EXPECT_EQ(textOf(ids.edit), typed.text) << "stays until the next refresh";
                EXPECT_TRUE(takePending());
            }
        }
    }
}

TEST_F(OutputEqBandsTest, LeavingABoxTakesItsTextLikeEnter) {
    for (std::size_t band = 0; band < 8; ++band) {
        for (const auto& [column, text, position] : {std::tuple{Column::frequency, "25000", -20000},
                                                     {Column::gain, "-30", 180},
                                                     {Column::q, "0.05", -1}}) {
            const SliderWithEdit ids = controlsOf(band, column);
            const std::size_t curves = actual.display.curves.size();
            typeAndLeave(ids.edit, QString::fromLatin1(text));
            twinBand(band, column, position, true);
            EXPECT_TRUE(inStep());
            EXPECT_TRUE(takePending());
            EXPECT_EQ(actual.display.curves.size(), curves + 1);
            EXPECT_EQ(textOf(ids.edit), text);
        }
    }
    page->refresh();
    for (const BandControls& controls : bandControls) {
        EXPECT_EQ(textOf(controls.frequency.edit), "20000");
        EXPECT_EQ(textOf(controls.gain.edit), "-18.0");
        EXPECT_EQ(textOf(controls.q.edit), "0.1");
    }
}

TEST_F(OutputEqBandsTest, TypingAloneChangesNothing) {
    for (const BandControls& controls : bandControls) {
        for (const int id : {controls.frequency.edit, controls.gain.edit, controls.q.edit}) {
            typeOnly(id, QStringLiteral("7"));
            EXPECT_TRUE(inStep());
            EXPECT_FALSE(actual.state.updatePending());
            QTest::keyClick(&edit(id), Qt::Key_Escape);
        }
    }
    page->setFocus();
    deliver();
    EXPECT_TRUE(inStep());
    EXPECT_FALSE(actual.state.updatePending());
}

TEST_F(OutputEqBandsTest, EscapeBringsBackTheTextAppliedLast) {
    const SliderWithEdit ids = bandControls[4].gain;
    typeAndEnter(ids.edit, QStringLiteral("3.3"));
    typeOnly(ids.edit, QStringLiteral("-9"));
    QTest::keyClick(&edit(ids.edit), Qt::Key_Escape);
    EXPECT_EQ(textOf(ids.edit), "3.3");
    EXPECT_TRUE(edit(ids.edit).hasFocus());
    twinBand(4, Column::gain, -33, true);
    EXPECT_TRUE(inStep());
}

TEST_F(OutputEqBandsTest, ABoxThatWasOnlyPassedThroughLeavesFinerValuesAlone) {
    for (Tuning* tuning : {&actual, &twin}) {
        tuning->state.setBandGainOrQ(2, BandValue::gain, 1.2345F, true);
        tuning->state.setBandGainOrQ(2, BandValue::q, 0.7071F, true);
    }
    page->refresh();
    takePending();
    EXPECT_EQ(textOf(bandControls[2].gain.edit), "1.2");
    EXPECT_EQ(textOf(bandControls[2].q.edit), "0.7");
    for (const int id : {bandControls[2].frequency.edit, bandControls[2].gain.edit, bandControls[2].q.edit}) {
        key(edit(id), Qt::Key_Tab);
    }
    EXPECT_TRUE(inStep());
    EXPECT_FALSE(actual.state.updatePending());
}

TEST_F(OutputEqBandsTest, UpAndDownStepTheBoxes) {
    for (std::size_t band = 0; band < 8; ++band) {
        for (const Column column : columns) {
            const SliderWithEdit ids = controlsOf(band, column);
            int position = slider(ids.slider).position();
            for (const auto& [code, step] :
                 {std::pair{Qt::Key_Up, -1}, {Qt::Key_Up, -1}, {Qt::Key_Down, 1}}) {
                key(edit(ids.edit), code);
                position += step;
                EXPECT_EQ(slider(ids.slider).position(), position);
                twinBand(band, column, position, true);
                EXPECT_TRUE(inStep());
                EXPECT_TRUE(takePending());
                EXPECT_TRUE(edit(ids.edit).hasFocus());
            }
            EXPECT_EQ(edit(ids.edit).text(), column == Column::frequency
                                                 ? QString::number(-position)
                                                 : QString::number(-position / 10.0, 'f', 1));
        }
    }
}

TEST_F(OutputEqBandsTest, ShiftStepsAFrequencyByAThirdOfAnOctave) {
    const SliderWithEdit ids = bandControls[3].frequency;
    for (const auto& [code, text] : {std::pair{Qt::Key_Up, "1260"},
                                     {Qt::Key_Up, "1588"},
                                     {Qt::Key_Up, "2001"},
                                     {Qt::Key_Down, "1588"}}) {
        key(edit(ids.edit), code, Qt::ShiftModifier);
        EXPECT_EQ(textOf(ids.edit), text);
        EXPECT_EQ(std::to_string(-slider(ids.slider).position()), text);
    }
    typeAndEnter(ids.edit, QStringLiteral("19000"));
    key(edit(ids.edit), Qt::Key_Up, Qt::ShiftModifier);
    EXPECT_EQ(textOf(ids.edit), "20000");
    typeAndEnter(ids.edit, QStringLiteral("21"));
    key(edit(ids.edit), Qt::Key_Down, Qt::ShiftModifier);
    EXPECT_EQ(textOf(ids.edit), "20");
}

TEST_F(OutputEqBandsTest, StepsStopAtTheLimits) {
    typeAndEnter(bandControls[0].gain.edit, QStringLiteral("17.95"));
    for (int i = 0; i < 3; ++i) {
        key(edit(bandControls[0].gain.edit), Qt::Key_Up);
    }
    EXPECT_EQ(textOf(bandControls[0].gain.edit), "18.0");
    typeAndEnter(bandControls[0].q.edit, QStringLiteral("0.2"));
    for (int i = 0; i < 3; ++i) {
        key(edit(bandControls[0].q.edit), Qt::Key_Down);
    }
    EXPECT_EQ(textOf(bandControls[0].q.edit), "0.1");
}

TEST_F(OutputEqBandsTest, AStepStartsFromATextThatIsNotAppliedYet) {
    typeOnly(bandControls[1].gain.edit, QStringLiteral("6"));
    key(edit(bandControls[1].gain.edit), Qt::Key_Down);
    EXPECT_EQ(textOf(bandControls[1].gain.edit), "5.9");
    twinBand(1, Column::gain, -59, true);
    EXPECT_TRUE(inStep());
}

TEST_F(OutputEqBandsTest, EnabledClearsTheOffFlagAndDrawsNoCurve) {
    for (std::size_t band = 0; band < 8; ++band) {
        const std::size_t curves = actual.display.curves.size();
        for (const std::uint8_t off : {std::uint8_t{0}, std::uint8_t{1}}) {
            if (off == 0) {
                click(check(bandControls[band].enabled));
            } else {
                key(check(bandControls[band].enabled), Qt::Key_Space);
            }
            twin.state.setBandOff(band, off);
            EXPECT_TRUE(inStep());
            EXPECT_EQ(actual.store()[recordChannelOffset(7) + 16 * band + 12], off);
            EXPECT_TRUE(takePending());
        }
        EXPECT_EQ(actual.display.curves.size(), curves);
    }
}

TEST_F(OutputEqBandsTest, TypesHaveTheirCodes) {
    constexpr std::array<std::uint8_t, 3> codes{1, 2, 0};
    for (std::size_t band = 0; band < 8; ++band) {
        SkinComboBox& types = list(bandControls[band].type);
        ASSERT_EQ(types.count(), 3);
        EXPECT_EQ(types.itemText(0), QStringLiteral("Low Shelf"));
        EXPECT_EQ(types.itemText(1), QStringLiteral("Peak"));
        EXPECT_EQ(types.itemText(2), QStringLiteral("High Shelf"));
        for (const int entry : {0, 1, 2, 1}) {
            const std::size_t curves = actual.display.curves.size();
            chooseByKeys(bandControls[band].type, entry);
            const std::uint8_t code = codes[static_cast<std::size_t>(entry)];
            EXPECT_EQ(actual.store()[recordChannelOffset(7) + 16 * band], code);
            twin.state.setBandType(band, code);
            EXPECT_TRUE(inStep());
            EXPECT_TRUE(takePending());
            EXPECT_GT(actual.display.curves.size(), curves);
        }
    }
}

TEST_F(OutputEqBandsTest, ATypeIsChosenWithTheMouseAndByItsLetter) {
    choose(bandControls[5].type, 2);
    EXPECT_EQ(actual.store()[recordChannelOffset(7) + 16 * 5], 0) << "high shelf";
    key(list(bandControls[6].type), Qt::Key_L);
    EXPECT_EQ(actual.store()[recordChannelOffset(7) + 16 * 6], 1) << "low shelf";
}

TEST_F(OutputEqBandsTest, ABypassedBandStaysEditable) {
    typeAndEnter(bandControls[0].gain.edit, QStringLiteral("6"));
    EXPECT_EQ(floatAt(actual, recordChannelOffset(7) + 4), 6.0F);
    EXPECT_EQ(actual.store()[recordChannelOffset(7) + 12], 1);
}

TEST_F(OutputEqBandsTest, TheInCircuitBarFollowsTheBand) {
    auto* group = static_cast<SkinGroupBox*>(check(bandControls[3].enabled).parentWidget());
    EXPECT_FALSE(group->bar().isValid());
    click(check(bandControls[3].enabled));
    EXPECT_TRUE(group->bar().isValid());
    page->refresh();
    EXPECT_TRUE(group->bar().isValid());
    click(check(bandControls[3].enabled));
    EXPECT_FALSE(group->bar().isValid());
}

/// While a curve is taken over, sends further slider events to the page.
class MeddlingDisplay : public ICurveDisplay {
 public:
    MeddlingDisplay(QWidget& page, int id, int position) : page_(page), id_(id), position_(position) {}
    void setCurve(const ResponseCurve&) override {
        if (++calls_ < 5) {
            SliderEvent event(type, id_, position_);
            QCoreApplication::sendEvent(&page_, &event);
        }
    }
    int calls() const { return calls_; }
    QEvent::Type type = SliderEvent::moved;

 private:
    QWidget& page_;
    int id_;
    int position_;
    int calls_ = 0;
};

TEST_F(OutputEqBandsTest, SlidersThatMoveWhileTheGuardIsSetAreIgnored) {
    for (const int id : {bandControls[0].gain.slider, bandControls[5].gain.slider}) {
        MeddlingDisplay display(*page, id, -99);
        actual.state.setCurveDisplay(&display);
        drag(bandControls[0].gain.slider, -5);
        twinBand(0, Column::gain, slider(bandControls[0].gain.slider).position(), false);
        EXPECT_TRUE(inStep()) << id;
        EXPECT_EQ(display.calls(), 1);
        actual.state.setCurveDisplay(nullptr);
        release(bandControls[0].gain.slider);
        EXPECT_TRUE(inStep());
    }
}

TEST_F(OutputEqBandsTest, AReleaseGetsThroughTheGuard) {
    MeddlingDisplay display(*page, bandControls[5].gain.slider, -99);
    display.type = SliderEvent::released;
    actual.state.setCurveDisplay(&display);
    drag(bandControls[0].gain.slider, -5);
    actual.state.setCurveDisplay(nullptr);
    EXPECT_EQ(floatAt(actual, recordChannelOffset(7) + 16 * 5 + 4), 9.9F);
    EXPECT_TRUE(actual.state.updatePending());
}

TEST_F(OutputEqBandsTest, SliderEventsWithForeignNumbersOrPlacesAreHarmless) {
    for (const int id : {0, -1, 1, 9999, 1023, 1024, 1025, 1029, 1030, 1031}) {
        QCoreApplication::postEvent(page, new SliderEvent(SliderEvent::released, id, 100));
    }
    deliver();
    EXPECT_TRUE(inStep());
    QCoreApplication::postEvent(page, new SliderEvent(SliderEvent::released, bandControls[0].gain.slider,
                                                      std::numeric_limits<int>::min()));
    deliver();
    twinBand(0, Column::gain, -180, true);
    EXPECT_TRUE(inStep());
}

TEST_F(OutputEqBandsTest, ARefreshWritesNothingHoweverOddTheSet) {
    for (std::uint64_t seed = 1; seed <= 20; ++seed) {
        loadRandom(seed);
        page->refresh();
        EXPECT_TRUE(inStep());
        EXPECT_FALSE(actual.state.updatePending());
        deliver();
        EXPECT_TRUE(inStep());
        EXPECT_EQ(actual.display.curves.size(), 0U);
    }
}

TEST_F(OutputEqBandsTest, ValuesOutsideTheRangesAreShownClamped) {
    Bytes store = actual.store();
    const std::size_t band = recordChannelOffset(7);
    writeAt(store, band + 2, std::uint16_t{65535});
    writeAt(store, band + 4, std::numeric_limits<float>::quiet_NaN());
    writeAt(store, band + 8, std::numeric_limits<float>::infinity());
    store[band] = 7;
    actual.load(store);
    twin.load(store);
    page->refresh();
    EXPECT_EQ(textOf(bandControls[0].frequency.edit), "20000");
    EXPECT_EQ(textOf(bandControls[0].gain.edit), "0.0");
    EXPECT_EQ(textOf(bandControls[0].q.edit), "20.0");
    EXPECT_EQ(list(bandControls[0].type).currentIndex(), -1);
    EXPECT_TRUE(inStep());
}

}  // namespace
}  // namespace tessavo::test
