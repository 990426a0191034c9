#include "app/gesture_watch.h"

#include <QDialog>
#include <QMenu>
#include <QTest>
#include <QTimer>

#include "app/undo_fixture.h"
#include "pages/rows/audio_router_rows.h"
#include "pages/rows/input_eq_rows.h"
#include "pages/rows/output_eq_rows.h"
#include "pages/rows/output_group_rows.h"

// What a hand does, and what becomes one step of it.

namespace tessavo::test {
namespace {

constexpr int gain = output_eq_id::bands[2].sliders[1].slider;
constexpr int gainBox = output_eq_id::bands[2].sliders[1].edit;
constexpr int frequencyBox = output_eq_id::bands[2].sliders[0].edit;

class Gestures : public UndoTest {
 protected:
    CBitmapSlider& gainSlider() { return on<CBitmapSlider>(Page::outputEqualizer, gain); }
    NumberEdit& gainEdit() { return on<NumberEdit>(Page::outputEqualizer, gainBox); }
};

// ---- the mouse

TEST_F(Gestures, ADragWithManyMovesIsOneStepWhichUndoTakesBackWhole) {
    const auto before = state();
    CBitmapSlider& slider = gainSlider();
    hold(slider, -10);
    EXPECT_EQ(steps(), 0U) << "not before the button comes up";
    for (int i = 0; i < 5; ++i) {
        moveOn(slider, -3);
    }
    letGo(slider);
    ASSERT_EQ(steps(), 1U);
    const auto after = state();
    EXPECT_FALSE(same(*before, *after));
    undoKey();
    EXPECT_TRUE(same(*before, *state()));
    EXPECT_TRUE(pagesShowTheSet());
    redoKey();
    EXPECT_TRUE(same(*after, *state()));
    expectRoundTrip();
}

TEST_F(Gestures, AClickBesideTheCapWithADragBehindItIsOneStep) {
    CBitmapSlider& slider = gainSlider();
    const QPointF far(slider.width() / 2.0, 20);
    QTest::mousePress(&slider, Qt::LeftButton, {}, far.toPoint());
    settleEvents();
    QMouseEvent move(QEvent::MouseMove, far + QPointF(0, 40), slider.mapToGlobal(far + QPointF(0, 40)),
                     Qt::NoButton, Qt::LeftButton, {});
    QApplication::sendEvent(&slider, &move);
    settleEvents();
    QTest::mouseRelease(&slider, Qt::LeftButton, {}, (far + QPointF(0, 40)).toPoint());
    settleEvents();
    EXPECT_EQ(steps(), 1U);
}

TEST_F(Gestures, TwoDragsAreTwoStepsAlsoWhenTheWindowComesToThemLate) {
    CBitmapSlider& slider = gainSlider();
    const auto before = state();
    // All of it waits in one queue, as after a moment in which the window stood still.
    QTest::mousePress(&slider, Qt::LeftButton, {}, QPoint(14, 30));
    QTest::mouseRelease(&slider, Qt::LeftButton, {}, QPoint(14, 30));
    QTest::mousePress(&slider, Qt::LeftButton, {}, QPoint(14, 150));
    QTest::mouseRelease(&slider, Qt::LeftButton, {}, QPoint(14, 150));
    settleEvents();
    EXPECT_EQ(steps(), 2U);
    undoKey();
    undoKey();
    EXPECT_TRUE(same(*before, *state()));
}

TEST_F(Gestures, APressEndsWhereABoxOpensAsItsReleaseGetsLost) {
    hold(gainSlider(), 20);
    QDialog box(frame.get());
    QTimer::singleShot(0, &box, &QDialog::reject);
    box.exec();
    for (const int channel : {1, 2, 3}) {
        key(flag(channel), Qt::Key_Space);
    }
    EXPECT_EQ(steps(), 4U) << "what the keys do is no part of the drag";
}

TEST_F(Gestures, TheSecondPressOfADoubleClickIsItsOwn) {
    SkinCheckBox& box = on<SkinCheckBox>(Page::outputEqualizer, output_eq_id::bands[0].enabled);
    QTest::mouseClick(&box, Qt::LeftButton, {}, QPoint(10, 10));
    QTest::mouseDClick(&box, Qt::LeftButton, {}, QPoint(10, 10));
    QTest::mouseRelease(&box, Qt::LeftButton, {}, QPoint(10, 10));
    settleEvents();
    EXPECT_EQ(steps(), 2U);
    expectRoundTrip();
}

TEST_F(Gestures, AnotherButtonDuringADragDoesNotCutIt) {
    CBitmapSlider& slider = gainSlider();
    hold(slider, -20);
    QMouseEvent right(QEvent::MouseButtonPress, QPointF(5, 5), slider.mapToGlobal(QPointF(5, 5)),
                      Qt::RightButton, Qt::LeftButton | Qt::RightButton, {});
    QApplication::sendEvent(&slider, &right);
    moveOn(slider, -20);
    letGo(slider);
    EXPECT_EQ(steps(), 1U);
}

TEST_F(Gestures, AChangeWithoutAHandDuringADragDoesNotCutItEither) {
    CBitmapSlider& slider = gainSlider();
    commands().settle();
    tuning.setVolume(1.0F, true);
    // A press beside the cap moves it at once, before the other change has become a step.
    QTest::mousePress(&slider, Qt::LeftButton, {}, QPoint(14, 30));
    settleEvents();
    EXPECT_EQ(steps(), 1U);
    moveOn(slider, 60);
    QTest::mouseRelease(&slider, Qt::LeftButton, {}, QPoint(14, 90));
    settleEvents();
    EXPECT_EQ(steps(), 2U);
}

TEST_F(Gestures, TheArrowsOfASpinBoxAreOneStepForAsLongAsTheyAreHeld) {
    auto& spin = on<SpinEdit>(Page::channelConfig, audio_router_id::roomSize);
    spin.setRepeat(1, 1);
    const int before = spin.value();
    QTest::mousePress(&spin, Qt::LeftButton, {}, spin.buttonRect(true).center());
    ASSERT_TRUE(QTest::qWaitFor([&] { return spin.value() >= before + 3; }));
    QTest::mouseRelease(&spin, Qt::LeftButton, {}, spin.buttonRect(true).center());
    settleEvents();
    EXPECT_EQ(steps(), 1U);
    undoKey();
    EXPECT_EQ(spin.value(), before);
    EXPECT_EQ(tuning.currentParameterSet().roomSize, before);
}

TEST_F(Gestures, AnEntryChosenInAListIsOneStepWithTheMouseAndWithTheKeys) {
    auto& order = on<SkinComboBox>(Page::outputEqualizer, output_eq_id::crossovers[0].order);
    choose(order, order.currentIndex() == 0 ? 1 : 0);
    settleEvents();
    EXPECT_EQ(steps(), 1U);
    auto& group = on<SkinComboBox>(Page::outputGroup, groupRows[0].firstGroup);
    choose(group, 3);
    settleEvents();
    EXPECT_EQ(steps(), 2U);
    key(group, Qt::Key_Down);
    key(group, Qt::Key_Down);
    EXPECT_EQ(steps(), 2U) << "a run of one key goes on";
    key(group, Qt::Key_Up);
    EXPECT_EQ(steps(), 3U) << "another key ends it";
    expectRoundTrip();
}

TEST_F(Gestures, LinkedSlidersMoveBackTogether) {
    for (int column = 0; column < 3; ++column) {
        choose(on<SkinComboBox>(Page::outputGroup, groupRows[0].firstGroup + column), 2);
    }
    settleEvents();
    const std::size_t before = steps();
    const auto state0 = state();
    drag(on<CBitmapSlider>(Page::outputGroup, groupRows[0].firstSlider), -12);
    EXPECT_EQ(steps(), before + 1);
    for (const std::size_t slider : {0U, 1U, 2U}) {
        EXPECT_GT(tuning.currentParameterSet().channels[groupSliderMap[slider]].groupGainDb, 0.0F);
    }
    undoKey();
    EXPECT_TRUE(same(*state0, *state()));
    // The link itself is as it was: the next move starts from where the sliders stand.
    drag(on<CBitmapSlider>(Page::outputGroup, groupRows[0].firstSlider), -12);
    const auto& channels = tuning.currentParameterSet().channels;
    EXPECT_EQ(channels[groupSliderMap[0]].groupGainDb, channels[groupSliderMap[1]].groupGainDb);
    expectRoundTrip();
}

TEST_F(Gestures, AnEditOfSeveralChannelsIsOneStep) {
    answers = {BoxAnswer::ok};
    click(on<SkinCheckBox>(Page::outputEqualizer, selection_id::assign));
    for (const std::size_t position : {0U, 2U, 5U}) {
        click(on<SkinCheckBox>(Page::outputEqualizer, selection_id::checks[position]));
    }
    const std::size_t before = steps();
    const std::uint8_t mask = tuning.selectionMask();
    drag(gainSlider(), -25);
    EXPECT_EQ(steps(), before + 1);
    undoKey();
    EXPECT_EQ(tuning.selectionMask(), mask);
    EXPECT_TRUE(on<SkinCheckBox>(Page::outputEqualizer, selection_id::checks[2]).isChecked());
    expectRoundTrip();
}

TEST_F(Gestures, EveryButtonIsOneStepHoweverMuchItWrites) {
    // The filters of a fresh set are off: the first press changes nothing.
    click(on<CxSkinButton>(Page::outputEqualizer, selection_id::allFilters));
    EXPECT_EQ(steps(), 0U);
    click(on<CxSkinButton>(Page::outputEqualizer, selection_id::allFilters));
    EXPECT_EQ(steps(), 1U);
    answers = {BoxAnswer::ok};
    click(on<CxSkinButton>(Page::outputEqualizer, selection_id::resetChannel));
    EXPECT_EQ(steps(), 2U);
    click(on<CxSkinButton>(Page::inputEqualizer, input_eq_id::eqOn));
    EXPECT_EQ(steps(), 3U);
    drag(on<CBitmapSlider>(Page::inputEqualizer, input_eq_id::firstBandSlider), 30);
    drag(on<CBitmapSlider>(Page::inputEqualizer, input_eq_id::firstBandSlider + 4), -30);
    EXPECT_EQ(steps(), 5U);
    answers = {BoxAnswer::ok};
    // Its sliders post what they do.
    click(on<CxSkinButton>(Page::inputEqualizer, input_eq_id::reset));
    EXPECT_EQ(steps(), 6U);
    click(on<CxSkinButton>(Page::channelConfig, audio_router_id::surround));
    EXPECT_EQ(steps(), 7U);
    click(flag(3));
    EXPECT_EQ(steps(), 8U);
    expectRoundTrip();
}

// ---- keys and wheel

TEST_F(Gestures, ARunOfOneKeyIsOneStepAndAnotherKeyBeginsTheNext) {
    CBitmapSlider& slider = gainSlider();
    for (int i = 0; i < 4; ++i) {
        key(slider, Qt::Key_Up);
    }
    key(slider, Qt::Key_Down);
    key(slider, Qt::Key_PageUp);
    key(slider, Qt::Key_Home);
    commands().settle();
    EXPECT_EQ(steps(), 4U);
    expectRoundTrip();
}

TEST_F(Gestures, ARunDoesNotEndByTime) {
    CBitmapSlider& slider = gainSlider();
    slider.setWheelRest(0);
    key(slider, Qt::Key_Up);
    EXPECT_TRUE(letLoopRun());
    key(slider, Qt::Key_Up);
    commands().settle();
    EXPECT_EQ(steps(), 1U);
    turnWheel(slider, 1);
    EXPECT_TRUE(letLoopRun());
    turnWheel(slider, -3);
    EXPECT_TRUE(letLoopRun());
    commands().settle();
    EXPECT_EQ(steps(), 2U);
}

TEST_F(Gestures, ARunEndsWithTheFocusAndOnAnotherControl) {
    CBitmapSlider& slider = gainSlider();
    key(slider, Qt::Key_Up);
    QTest::keyClick(&slider, Qt::Key_Tab);
    settleEvents();
    EXPECT_EQ(steps(), 1U);
    key(slider, Qt::Key_Up);
    key(on<CBitmapSlider>(Page::outputEqualizer, output_eq_id::volume.slider), Qt::Key_Up);
    key(slider, Qt::Key_Up);
    commands().settle();
    EXPECT_EQ(steps(), 4U);
}

TEST_F(Gestures, ARunEndsWhereTheWindowIsLeft) {
    CBitmapSlider& slider = gainSlider();
    key(slider, Qt::Key_Up);
    QWidget other;
    other.show();
    other.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&other));
    ASSERT_TRUE(letLoopRun());
    EXPECT_EQ(steps(), 1U);
}

TEST_F(Gestures, ARunEndsWithAShortcut) {
    CBitmapSlider& slider = gainSlider();
    key(slider, Qt::Key_Up);
    press(Qt::Key_E, Qt::ControlModifier);
    EXPECT_EQ(dialogs.asked.size(), 1U);
    key(slider, Qt::Key_Up);
    commands().settle();
    EXPECT_EQ(steps(), 2U);
}

TEST_F(Gestures, TheSpaceBarIsAStepEachTime) {
    SkinCheckBox& box = on<SkinCheckBox>(Page::outputEqualizer, output_eq_id::bands[0].enabled);
    key(box, Qt::Key_Space);
    key(box, Qt::Key_Space);
    EXPECT_EQ(steps(), 2U);
}

TEST_F(Gestures, AScreenReadersChangesAreAStepEach) {
    CBitmapSlider& slider = gainSlider();
    slider.stepValueByUser(2);
    EXPECT_TRUE(letLoopRun());
    slider.stepValueByUser(2);
    EXPECT_TRUE(letLoopRun());
    EXPECT_EQ(steps(), 2U);
}

// ---- texts

TEST_F(Gestures, ATypedNumberIsOneStepWhetherItIsEnteredOrLeft) {
    typeInto(gainEdit(), QStringLiteral("4.5"));
    EXPECT_EQ(steps(), 0U);
    key(gainEdit(), Qt::Key_Return);
    EXPECT_EQ(steps(), 1U);
    typeInto(gainEdit(), QStringLiteral("-3"));
    key(gainEdit(), Qt::Key_Tab);
    EXPECT_EQ(steps(), 2U);
    // On this page a text is taken while it is typed.
    auto& delay = on<NumberEdit>(Page::channelConfig, audio_router_id::delaySize1);
    typeInto(delay, QStringLiteral("12"));
    key(delay, Qt::Key_Return);
    EXPECT_EQ(steps(), 3U);
    auto& spin = on<SpinEdit>(Page::channelConfig, audio_router_id::surroundMode);
    spin.setFocus(Qt::TabFocusReason);
    spin.selectAll();
    QTest::keyClicks(&spin, QStringLiteral("2"));
    key(spin, Qt::Key_Return);
    EXPECT_EQ(steps(), 4U);
    expectRoundTrip();
}

TEST_F(Gestures, ANumberThatAClickElsewhereTakesIsNoPartOfThatClick) {
    CBitmapSlider& slider = on<CBitmapSlider>(Page::outputEqualizer, output_eq_id::volume.slider);
    const auto before = state();
    typeInto(gainEdit(), QStringLiteral("4.5"));
    drag(slider, 40);
    ASSERT_EQ(steps(), 2U);
    undoKey();
    EXPECT_NEAR(tuning.currentParameterSet().channels[7].bands[2].gainDb, 4.5, 1e-6);
    undoKey();
    EXPECT_TRUE(same(*before, *state()));
}

TEST_F(Gestures, TwoNumbersTypedIntoOneBoxAreTwoStepsAlsoInOneQueue) {
    auto& delay = on<NumberEdit>(Page::channelConfig, audio_router_id::delaySize2);
    delay.setFocus(Qt::TabFocusReason);
    for (const QString& text : {QStringLiteral("12"), QStringLiteral("13")}) {
        delay.selectAll();
        QTest::keyClicks(&delay, text);
        QTest::keyClick(&delay, Qt::Key_Return);
    }
    settleEvents();
    EXPECT_EQ(steps(), 2U);
}

TEST_F(Gestures, ATypedTextThatIsTakenBackIsNoStep) {
    auto& delay = on<NumberEdit>(Page::channelConfig, audio_router_id::delaySize2);
    const auto before = state();
    typeInto(delay, QStringLiteral("7"));
    key(delay, Qt::Key_Escape);
    commands().settle();
    EXPECT_EQ(steps(), 0U);
    EXPECT_TRUE(same(*before, *state()));
}

TEST_F(Gestures, ANameIsOneStepAndTheNextNameAnother) {
    typeInto(setName(), QStringLiteral("Front"));
    key(setName(), Qt::Key_Return);
    EXPECT_EQ(steps(), 1U);
    typeInto(setName(), QStringLiteral("Rear"));
    key(setName(), Qt::Key_Tab);
    EXPECT_EQ(steps(), 2U);
    undoKey();
    EXPECT_EQ(setName().text(), QStringLiteral("Front"));
    EXPECT_EQ(setSelector().currentText(), QStringLiteral("Front"));
    expectRoundTrip();
}

TEST_F(Gestures, TwoBoxesAreTwoSteps) {
    typeInto(gainEdit(), QStringLiteral("2"));
    typeInto(on<NumberEdit>(Page::outputEqualizer, frequencyBox), QStringLiteral("900"));
    key(on<NumberEdit>(Page::outputEqualizer, frequencyBox), Qt::Key_Return);
    EXPECT_EQ(steps(), 2U);
}

TEST_F(Gestures, TheKeysOfABoxStepItsValueInOneRun) {
    NumberEdit& box = gainEdit();
    const QString before = box.text();
    for (int i = 0; i < 3; ++i) {
        key(box, Qt::Key_Up);
    }
    commands().settle();
    EXPECT_EQ(steps(), 1U);
    undoKey();
    EXPECT_EQ(box.text(), before);
}

}  // namespace
}  // namespace tessavo::test
