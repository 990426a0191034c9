#include "pages/input/input_eq.h"

#include <QLabel>

#include "controls/slider_event.h"
#include "pages/input/slider_rows.h"
#include "support/page_fixture.h"

namespace tessavo::test {
namespace {

using namespace std::string_literals;

const ShownBox question{"Are you sure?\r\nThe current settings will be lost!", BoxIcon::error,
                        BoxButtons::okCancel};

/// Writes down which slider told the page what.
class SliderSpy : public QObject {
 public:
    explicit SliderSpy(QWidget& page) { page.installEventFilter(this); }
    bool eventFilter(QObject*, QEvent* event) override {
        if (SliderEvent::isSliderEvent(*event)) {
            const auto& moved = static_cast<const SliderEvent&>(*event);
            told.emplace_back(moved.controlId(), moved.position());
        }
        return false;
    }
    std::vector<std::pair<int, int>> told;
};

class InputEq : public PageTest {
 protected:
    InputEq() { open(); }

    void open() {
        showPage(std::make_unique<CInputEQ>(actual.state, boxes));
        actual.settle();
    }
    CInputEQ& inputEq() { return static_cast<CInputEQ&>(*page); }
    CxSkinButton& eqOn() { return control<CxSkinButton>(4041); }
    CxSkinButton& resetButton() { return control<CxSkinButton>(4042); }
    SkinGroupBox& group(const char* title) {
        for (auto* box : page->findChildren<SkinGroupBox*>()) {
            if (box->title() == QLatin1String(title)) {
                return *box;
            }
        }
        throw std::logic_error(title);
    }
    void expectEqualizer(bool on) {
        EXPECT_EQ(eqOn().text(), on ? QStringLiteral("EQ On") : QStringLiteral("EQ Off"));
        EXPECT_EQ(eqOn().isOn(), on);
        EXPECT_EQ(actual.image()[6], on ? 0 : 1);
        EXPECT_EQ(actual.image()[22], on ? 0 : 1);
        EXPECT_EQ(group("Equalizer").bar().isValid(), on);
        EXPECT_EQ(group("Tone").bar().isValid(), on);
    }
    /// Every slider somewhere off its zero, with the record in step.
    void detune() {
        for (const InputRow& row : equalizerRows()) {
            typeAndEnter(row.edit, QString::fromStdString(row.text((row.low + 2 * row.high) / 3 - 1)));
        }
        actual.settle();
    }
};

TEST_F(InputEq, AFreshStoreShowsEveryBandAtZeroAndTheFixedFrequencies) {
    for (int band = 0; band < 13; ++band) {
        EXPECT_EQ(textOf(4021 + band), "0.0");
        EXPECT_EQ(slider(4001 + band).position(), 0);
    }
    constexpr std::array<std::uint16_t, 10> frequencies{60,   170,  310,   600,   1000,
                                                        3000, 6000, 12000, 14000, 16000};
    for (std::size_t set = 0; set < 5; ++set) {
        for (std::size_t band = 0; band < 10; ++band) {
            const std::size_t offset = setSize * set + inputBandOffset(band);
            EXPECT_EQ(actual.store()[offset], 2);
            EXPECT_EQ(readAt<std::uint16_t>(actual.store(), offset + 2), frequencies[band]);
            EXPECT_EQ(readAt<float>(actual.store(), offset + 8), 10.0F);
        }
    }
}

TEST_F(InputEq, ShowsTheDefaultsOfTheCompressor) {
    const std::pair<int, const char*> expected[]{{4081, "120"}, {4082, "-10.0"}, {4083, "-30.0"},
                                                 {4084, "8.0"}, {4085, "-50.0"}, {4086, "-20.0"},
                                                 {4092, "10"},  {4093, "10"}};
    for (const auto& [id, text] : expected) {
        EXPECT_EQ(textOf(id), text);
    }
    EXPECT_FALSE(check(4091).isChecked());
}

TEST_F(InputEq, CarriesTheLabelsOfTheTarget) {
    QStringList texts;
    for (const auto* label : page->findChildren<QLabel*>()) {
        texts << label->text();
    }
    for (const char* text : {"60",
                             "170",
                             "310",
                             "600",
                             "1K",
                             "3K",
                             "6K",
                             "12K",
                             "14K",
                             "16K",
                             "20 dB",
                             "-20 dB",
                             "Bass",
                             "Mid",
                             "Treble",
                             "Hz",
                             "dB",
                             "ms",
                             "Level",
                             "Crossover",
                             "PONE",
                             "Compressor\nLower Limit",
                             "Gain",
                             "Expander\nUpper Limit",
                             "Expander\nFactor",
                             "Attacktime",
                             "Releasetime"}) {
        EXPECT_TRUE(texts.contains(QLatin1String(text))) << text;
    }
    for (const char* title : {"Equalizer", "Tone", "Gain", "Preamp", "Poweramp", "Line-In Gain",
                              "Suppression", "Gain Detection", "Compressor"}) {
        EXPECT_NO_THROW(group(title)) << title;
    }
    EXPECT_EQ(check(4091).text(), QStringLiteral("Disable"));
    EXPECT_EQ(resetButton().text(), QStringLiteral("Reset"));
}

TEST_F(InputEq, TheTopOfABandIsPlusTwentyAndTheBottomMinusTwenty) {
    key(slider(4001), Qt::Key_Home);
    EXPECT_EQ(slider(4001).position(), -200);
    EXPECT_EQ(textOf(4021), "20.0");
    EXPECT_EQ(floatAt(actual, 60), 20.0F);
    key(slider(4001), Qt::Key_End);
    EXPECT_EQ(slider(4001).position(), 200);
    EXPECT_EQ(floatAt(actual, 60), -20.0F);
}

TEST_F(InputEq, ABandIsTruncatedTowardsZeroInTheImageAndDrawnAtOnce) {
    actual.display.curves.clear();
    typeAndEnter(4033, QStringLiteral("-3.9"));
    EXPECT_EQ(floatAt(actual, 44), -3.9F);
    EXPECT_EQ(static_cast<std::int8_t>(actual.image()[9]), -3);
    EXPECT_EQ(static_cast<std::int8_t>(actual.image()[25]), -3);
    EXPECT_EQ(actual.display.curves.size(), 1U);
    // The words are those of the generator in use.
    BiquadWords words{};
    ASSERT_TRUE(bandWordsOf(0, actual.store(), 40, words));
    EXPECT_SAME_BYTES(bytesOf(actual.state.inputWords(12)), bytesOf(words));
}

TEST_F(InputEq, EditsOnlyTheCurrentSet) {
    actual.state.selectSet(3);
    page->changeSet(3);
    actual.settle();
    Bytes expected = actual.store();
    typeAndEnter(4021, QStringLiteral("5"));
    writeAt(expected, 3 * setSize + 60, 5.0F);
    EXPECT_SAME_BYTES(actual.store(), expected);
    actual.state.selectSet(0);
    page->changeSet(0);
    EXPECT_EQ(textOf(4021), "0.0");
}

TEST_F(InputEq, ABoxShowsWhatIsInForceOnceItIsLeft) {
    for (const auto& [typed, shown, value] : {std::tuple{"25", "20.0", 20.0F},
                                              {"3.57", "3.5", 3.5F},
                                              {"word", "0.0", 0.0F},
                                              {"-4 dB", "-4.0", -4.0F}}) {
        typeAndLeave(4021, QLatin1String(typed));
        EXPECT_EQ(textOf(4021), shown);
        EXPECT_EQ(floatAt(actual, 60), value);
    }
}

TEST_F(InputEq, LevelsHaveOneDecimal) {
    for (int level = 0; level < 6; ++level) {
        EXPECT_EQ(textOf(4061 + level), "0.0");
        typeAndLeave(4061 + level, QStringLiteral("6"));
        EXPECT_EQ(textOf(4061 + level), "6.0");
        typeAndLeave(4061 + level, QStringLiteral("7.9"));
        EXPECT_EQ(textOf(4061 + level), "7.0") << "steps stay whole";
        key(slider(4051 + level), Qt::Key_Up);
        EXPECT_EQ(textOf(4061 + level), "8.0");
        EXPECT_EQ(edit(4061 + level).mark(), QString());
    }
}

TEST_F(InputEq, EveryBandIsMarkedWhereTheTargetPlaysAnotherGain) {
    for (int band = 0; band < 13; ++band) {
        for (const auto& [typed, mark] : {std::pair{"3.5", "Plays 3.0 dB"},
                                          {"3.0", ""},
                                          {"-3.9", "Plays -3.0 dB"},
                                          {"0.9", "Plays 0.0 dB"},
                                          {"-20", ""}}) {
            typeAndEnter(4021 + band, QLatin1String(typed));
            EXPECT_EQ(edit(4021 + band).mark(), QLatin1String(mark)) << band << " " << typed;
        }
        drag(4001 + band, -5);
        release(4001 + band);
        const int tenths = -slider(4001 + band).position();
        EXPECT_EQ(edit(4021 + band).mark().isEmpty(), tenths % 10 == 0) << tenths;
        for (int other = band + 1; other < 13; ++other) {
            EXPECT_EQ(edit(4021 + other).mark(), QString());
        }
    }
    actual.state.setInputBandGain(4, 1.25F, true);
    page->refresh();
    EXPECT_EQ(edit(4025).mark(), QStringLiteral("In force: 1.25 dB. Plays 1.0 dB"));
    EXPECT_EQ(edit(4025).toolTip(), edit(4025).mark());
    EXPECT_EQ(edit(4025).accessibleDescription(), QStringLiteral("dB. ") + edit(4025).mark());
}

TEST_F(InputEq, AFrequencyTakesItsUnits) {
    for (const auto& [typed, shown] : {std::pair{"0.2k", "200"},
                                       {"0k25", "250"},
                                       {"0,3 kHz", "300"},
                                       {"400 Hz", "400"},
                                       {"0.4999K", "499"},
                                       {".12khz", "120"},
                                       {"99hz", "99"}}) {
        typeOnly(4081, QLatin1String(typed));
        EXPECT_EQ(edit(4081).warning(), QString()) << typed;
        key(edit(4081), Qt::Key_Return);
        EXPECT_EQ(textOf(4081), shown) << typed;
    }
}

TEST_F(InputEq, TheCrossoverBoxReformatsItsText) {
    typeAndLeave(4081, QStringLiteral(" 250.9 Hz"));
    EXPECT_EQ(textOf(4081), "250");
    EXPECT_EQ(slider(4071).position(), -250);
    typeAndLeave(4081, QStringLiteral("7"));
    EXPECT_EQ(textOf(4081), "20");
    EXPECT_EQ(readAt<std::uint16_t>(actual.store(), 1920), 20);
    EXPECT_EQ(readAt<std::uint16_t>(actual.image(), 3104), 20);
}

TEST_F(InputEq, ATimeIsClampedAndRewritten) {
    struct Time {
        int id;
        std::size_t record, image;
    };
    for (const Time& time : {Time{4092, 1916, 2994}, Time{4093, 1918, 2996}}) {
        Bytes store = actual.store();
        Bytes image = actual.image();
        for (const auto& [typed, taken] : {std::pair<const char*, std::uint16_t>{"250", 250},
                                           {"1001", 1000},
                                           {"-4", 0},
                                           {"12.9", 12},
                                           {"soon", 0}}) {
            typeAndLeave(time.id, QString::fromLatin1(typed));
            EXPECT_EQ(textOf(time.id), std::to_string(taken)) << typed;
            writeAt(store, time.record, taken);
            writeAt(image, time.image, taken);
            EXPECT_SAME_BYTES(actual.store(), store);
            EXPECT_SAME_BYTES(actual.image(), image);
            EXPECT_TRUE(takePending());
        }
        key(edit(time.id), Qt::Key_Up);
        key(edit(time.id), Qt::Key_Up, Qt::ShiftModifier);
        EXPECT_EQ(textOf(time.id), "11");
        EXPECT_EQ(readAt<std::uint16_t>(actual.store(), time.record), 11);
    }
}

TEST_F(InputEq, DisableWritesItsByteAndTakesTheGroupOutOfTheCircuit) {
    EXPECT_TRUE(group("Compressor").bar().isValid());
    for (const std::uint8_t expected : std::initializer_list<std::uint8_t>{1, 0}) {
        Bytes store = actual.store();
        Bytes image = actual.image();
        click(check(4091));
        store[1922] = expected;
        image[3040] = expected;
        EXPECT_SAME_BYTES(actual.store(), store);
        EXPECT_SAME_BYTES(actual.image(), image);
        EXPECT_TRUE(takePending());
        EXPECT_EQ(group("Compressor").bar().isValid(), expected == 0);
    }
}

TEST_F(InputEq, EqOnTogglesWhatTheImageSays) {
    expectEqualizer(true);
    Bytes store = actual.store();
    click(eqOn());
    expectEqualizer(false);
    EXPECT_SAME_BYTES(actual.store(), store);  // a fresh record says off already
    EXPECT_TRUE(takePending());
    click(eqOn());
    expectEqualizer(true);
    store[4] = 1;
    EXPECT_SAME_BYTES(actual.store(), store);
    EXPECT_TRUE(takePending());
    key(eqOn(), Qt::Key_Space);
    expectEqualizer(false);
    EXPECT_EQ(actual.store()[4], 0);
}

TEST_F(InputEq, TheToggleStaysWhenAFileIsOpenedOrASetChosenAndFollowsAReceivedImage) {
    for (const bool on : {true, false}) {
        actual.state.setInputEqOn(on);
        for (const std::uint8_t stored : std::initializer_list<std::uint8_t>{0, 1, 0}) {
            Bytes store = actual.store();
            store[4] = store[setSize + 4] = stored;
            actual.load(store);
            page->refresh();
            expectEqualizer(on);
            actual.state.selectSet(1, [this] { page->changeSet(1); });
            expectEqualizer(on);
            actual.state.selectSet(0);
        }
    }
    for (const std::uint8_t bypass : std::initializer_list<std::uint8_t>{0, 1, 0}) {
        Bytes image = actual.image();
        image[6] = image[22] = bypass;
        actual.state.replaceImage(recordOf<ParameterImage>(image));
        actual.state.imageToSet();
        page->refresh();
        expectEqualizer(bypass == 0);
    }
}

TEST_F(InputEq, AppliesAllBandsAtOnce) {
    Bytes store = actual.store();
    Bytes image = actual.image();
    for (const InputRow& row : equalizerRows()) {
        // A program's move writes nothing.
        slider(row.slider).setPosition(slider(row.slider).minimum());
        if (row.slider <= 4013) {
            applyPatches(store, row.record(row.steps(slider(row.slider).minimum())));
            applyPatches(image, row.image(row.steps(slider(row.slider).minimum())));
        }
    }
    deliver();
    ASSERT_FALSE(takePending());
    actual.display.curves.clear();
    inputEq().applyAll();
    EXPECT_SAME_BYTES(actual.store(), store);
    EXPECT_SAME_BYTES(actual.image(), image);
    EXPECT_TRUE(takePending());
    EXPECT_FALSE(actual.display.curves.empty());
}

TEST_F(InputEq, AppliesAllBandsBeforeItAsksForSending) {
    Bytes store = actual.store();
    for (const InputRow& row : equalizerRows()) {
        if (row.slider <= 4013) {
            slider(row.slider).setPosition(slider(row.slider).minimum());
            applyPatches(store, row.record(row.steps(slider(row.slider).minimum())));
        }
    }
    deliver();
    ASSERT_FALSE(takePending());
    int writes = 0;
    int pendingWrites = 0;
    actual.state.setChangeListener([&] {
        ++writes;
        if (actual.state.updatePending()) {
            ++pendingWrites;
            EXPECT_SAME_BYTES(actual.store(), store);
        }
    });
    inputEq().applyAll();
    actual.state.setChangeListener({});
    EXPECT_GE(writes, 13);
    EXPECT_EQ(pendingWrites, 1);
}

TEST_F(InputEq, ARefusedResetMovesNoSlider) {
    detune();
    const auto stands = [&] {
        std::vector<std::pair<int, std::string>> all;
        for (const InputRow& row : equalizerRows()) {
            all.emplace_back(slider(row.slider).position(), textOf(row.edit));
        }
        return all;
    };
    const auto before = stands();
    ASSERT_EQ(before.size(), 25U);
    for (const InputRow& row : equalizerRows()) {
        ASSERT_NE(slider(row.slider).position(), 0) << row.name;
    }
    SliderSpy spy(*page);
    actual.state.setLiveMode(true);
    click(resetButton());
    ASSERT_EQ(boxes.shown.size(), 1U);
    EXPECT_EQ(stands(), before);
    EXPECT_EQ(spy.told, (std::vector<std::pair<int, int>>{}));
}

TEST_F(InputEq, ResetIsRefusedInLiveMode) {
    detune();
    const Bytes store = actual.store();
    const Bytes image = actual.image();
    actual.state.setLiveMode(true);
    actual.state.takeUpdate();
    click(resetButton());
    EXPECT_EQ(boxes.shown,
              (std::vector<ShownBox>{{"Please turn off Live Mode", BoxIcon::none, BoxButtons::ok}}));
    EXPECT_SAME_BYTES(actual.store(), store);
    EXPECT_SAME_BYTES(actual.image(), image);
    EXPECT_FALSE(actual.state.updatePending());
    EXPECT_NE(slider(4001).position(), 0);
}

TEST_F(InputEq, ACancelledResetChangesNothing) {
    detune();
    const Bytes store = actual.store();
    const Bytes image = actual.image();
    boxes.answers = {BoxAnswer::cancel};
    click(resetButton());
    EXPECT_EQ(boxes.shown, std::vector<ShownBox>{question});
    EXPECT_SAME_BYTES(actual.store(), store);
    EXPECT_SAME_BYTES(actual.image(), image);
    EXPECT_FALSE(takePending());
}

TEST_F(InputEq, ResetPutsEverySliderToZeroWithinItsRange) {
    detune();
    typeAndEnter(4092, QStringLiteral("77"));
    Bytes store = actual.store();
    Bytes image = actual.image();
    std::vector<std::pair<int, int>> order;
    for (const InputRow& row : equalizerRows()) {
        const int steps = std::clamp(0, row.low, row.high);
        order.emplace_back(row.slider, row.position(steps));
        applyPatches(store, row.record(steps));
        applyPatches(image, row.image(steps));
    }
    SliderSpy spy(*page);
    boxes.answers = {BoxAnswer::ok};
    click(resetButton());
    EXPECT_EQ(boxes.shown, std::vector<ShownBox>{question});
    EXPECT_EQ(spy.told, order);
    EXPECT_SAME_BYTES(actual.store(), store);
    EXPECT_SAME_BYTES(actual.image(), image);
    for (const InputRow& row : equalizerRows()) {
        EXPECT_EQ(textOf(row.edit), row.text(std::clamp(0, row.low, row.high))) << row.name;
    }
    EXPECT_EQ(textOf(4081), "20");
    EXPECT_EQ(textOf(4092), "77");
    EXPECT_TRUE(takePending());
}

}  // namespace
}  // namespace tessavo::test
