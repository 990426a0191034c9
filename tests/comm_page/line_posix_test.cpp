#include <QTimer>
#include <algorithm>
#include <random>

#include "comm_page/line_bench_posix.h"
#include "controls/bitmap_slider.h"
#include "controls/clip_light.h"
#include "controls/read_only_edit.h"
#include "controls/transfer_line.h"

// The whole window on a real line, in real time.

namespace tessavo::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::IsEmpty;
using ::testing::StartsWith;
using Light = TargetStatus::Light;

TEST_F(OnALine, ADragIsFollowedFromTheThumbToTheTarget) {
    startTarget();
    toggleLiveMode();
    ASSERT_TRUE(becomesConfirmed());
    EXPECT_THAT(words(), StartsWith("confirmed "));
    auto* slider = view().pages()[0]->findChild<CBitmapSlider*>();
    ASSERT_NE(slider, nullptr);
    ASSERT_TRUE(slider->isVertical());
    QPointF thumb(slider->width() / 2.0,
                  slider->track().pixelOf(slider->position(), slider->minimum(), slider->maximum()));
    const auto mouse = [&](QEvent::Type type, Qt::MouseButton button, Qt::MouseButtons down) {
        QMouseEvent event(type, thumb, slider->mapToGlobal(thumb), button, down, {});
        QApplication::sendEvent(slider, &event);
        QCoreApplication::sendPostedEvents();
    };
    mouse(QEvent::MouseButtonPress, Qt::LeftButton, Qt::LeftButton);
    thumb += QPointF(0, 15);
    mouse(QEvent::MouseMove, Qt::NoButton, Qt::LeftButton);
    ASSERT_FALSE(targetHoldsTheImage()) << "the drag has changed the set";
    EXPECT_EQ(words(), "not sent") << "confirmed has ended at once";
    EXPECT_EQ(light(), Light::sending);
    EXPECT_FALSE(tuning.updatePending()) << "nothing is sent before the thumb is let go";
    mouse(QEvent::MouseButtonRelease, Qt::LeftButton, Qt::NoButton);
    EXPECT_TRUE(words() == "waiting" || words() == "sending") << words();
    ASSERT_TRUE(passEventsUntil([&] { return words() == "sending"; }));
    ASSERT_TRUE(becomesConfirmed());
    EXPECT_TRUE(targetHoldsTheImage());
    EXPECT_THAT(shownTexts(), IsEmpty());
}

TEST_F(OnALine, AnotherSetIsNotConfirmedUntilAnEditHasSentIt) {
    startTarget();
    tuning.selectSet(2);
    tuning.setVolume(-20.0F, true);
    tuning.selectSet(0);
    toggleLiveMode();
    ASSERT_TRUE(becomesConfirmed());
    choose(setSelector(), 2);
    EXPECT_EQ(words(), "not sent");
    EXPECT_FALSE(targetHoldsTheImage());
    choose(setSelector(), 0);
    EXPECT_THAT(words(), StartsWith("confirmed ")) << "the target still holds this one";
}

TEST_F(OnALine, SetsGoToTheTargetAndComeBackOntoEveryPage) {
    startTarget();
    toggleLiveMode();
    tuning.setVolume(-7.0F, true);
    ASSERT_TRUE(becomesConfirmed());
    const ImageBytes saved = target->memory().live;
    click(comm_id::firstSave + 4);
    EXPECT_EQ(target->memory().sets[4], saved);
    EXPECT_THAT(words(), StartsWith("confirmed ")) << "saving does not change what plays";
    toggleLiveMode();
    tuning.setVolume(-30.0F, true);
    tuning.setInputBandGain(0, 12.0F, true);
    click(comm_id::firstLoad + 4);
    EXPECT_EQ(std::memcmp(&tuning.image(), saved.data(), saved.size()), 0);
    EXPECT_FLOAT_EQ(tuning.currentParameterSet().inputEqBands[0].gainDb, 0.0F);
    EXPECT_THAT(words(), StartsWith("last answer "));
    EXPECT_EQ(light(), Light::off);
    EXPECT_THAT(shownTexts(), IsEmpty());
}

TEST_F(OnALine, GuardsLeaveTheLineAlone) {
    startTarget();
    click(comm_id::firstSave + 1);
    EXPECT_THAT(shownTexts(), ElementsAre("Please turn on Live Mode"));
    EXPECT_EQ(log().lineCount(), 0);
}

TEST_F(OnALine, VersionsAreReadWhileTheWindowLives) {
    startTarget({"late=300"});
    int ticks = 0;
    std::vector<std::string> seen;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, frame.get(), [&] {
        ++ticks;
        if (seen.empty() || seen.back() != words()) {
            seen.push_back(words());
        }
    });
    timer.start(5);
    click(comm_id::update);
    EXPECT_GT(ticks, 10);
    EXPECT_THAT(seen, ElementsAre("reading"));
    EXPECT_EQ(control<CReadOnlyEdit>(comm_id::hardwareVersion).text(), QStringLiteral("0x00000102"));
    EXPECT_THAT(words(), StartsWith("last answer "));
}

TEST_F(OnALine, AnImageIsFlashedWithItsBlocksInTheStatusBar) {
    startTarget();
    std::vector<std::uint8_t> image(6000, 0x5A);
    writeFile(folder / "software.bin", image);
    dialogs.answer = folder / "software.bin";
    click(comm_id::selectImage);
    std::vector<std::string> seen;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, frame.get(), [&] {
        EXPECT_FALSE(control<QWidget>(comm_id::flashFile).isEnabled());
        if (seen.empty() || seen.back() != words()) {
            seen.push_back(words());
        }
    });
    timer.start(5);
    click(comm_id::flashFile);
    timer.stop();
    EXPECT_THAT(seen, ::testing::IsSupersetOf(
                          {"sending image", "sending image, block 1 of 6", "sending image, block 5 of 6"}));
    EXPECT_EQ(control<TransferLine>(comm_id::transferLine).text(), QStringLiteral("Done, 6 blocks"));
    // The target keeps whole blocks: the message, its CRC and padding.
    const auto software = target->memory().software;
    ASSERT_GE(software.size(), image.size());
    EXPECT_TRUE(std::equal(image.begin(), image.end(), software.begin()));
    EXPECT_TRUE(control<QWidget>(comm_id::flashFile).isEnabled());
}

TEST_F(OnALine, ClipStatesLightTheLampsUntilSwitchedOff) {
    startTarget();
    ClipBytes state{};
    state[1] = 1;   // ADC, second row
    state[16] = 1;  // signal processing, first entry
    state[32] = 1;  // first amplifier
    target->holdClipState(state);
    click(clip_id::onOff);
    const auto shows = [&](int id) { return !control<ClipLight>(id).isHidden(); };
    ASSERT_TRUE(passEventsUntil([&] { return shows(1387); }));
    EXPECT_FALSE(shows(1393));
    EXPECT_TRUE(shows(1407)) << "Kanal 4";
    EXPECT_TRUE(shows(1376));
    EXPECT_FALSE(shows(1378));
    EXPECT_TRUE(shows(1377));
    EXPECT_THAT(words(), StartsWith("last answer "));
    target->holdClipState({});
    ASSERT_TRUE(passEventsUntil([&] { return shows(1393); }));
    click(clip_id::onOff);
    ASSERT_FALSE(frame->findChild<CClipDetectDlg*>()->isOn());
    target->holdClipState(state);
    QTest::qWait(100);
    const int lines = log().lineCount();
    QTest::qWait(1500);
    EXPECT_EQ(log().lineCount(), lines) << "nothing is asked any more";
    EXPECT_FALSE(shows(1387));
}

TEST_F(OnALine, PollingLeavesConfirmedAloneAndEditsGetThrough) {
    startTarget();
    click(clip_id::onOff);
    toggleLiveMode();
    ASSERT_TRUE(becomesConfirmed());
    const std::string confirmed = words();
    std::vector<std::string> seen;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, frame.get(), [&] { seen.push_back(words()); });
    timer.start(5);
    QTest::qWait(1300);
    timer.stop();
    EXPECT_THAT(seen, ::testing::Each(confirmed)) << "a poll asks about something else";
    tuning.setVolume(-9.0F, true);
    EXPECT_EQ(words(), "waiting");
    ASSERT_TRUE(becomesConfirmed());
    EXPECT_TRUE(targetHoldsTheImage());
    EXPECT_THAT(shownTexts(), IsEmpty());
}

TEST_F(OnALine, APortThatVanishesIsToldAndItsReturnNeedsNoRestart) {
    startTarget();
    click(comm_id::update);
    target->stop();
    click(comm_id::update);
    EXPECT_THAT(shownTexts(), ElementsAre("Cannot open COM port!"));
    EXPECT_EQ(light(), Light::trouble);
    EXPECT_THAT(words(), StartsWith("port not opened "));
    startTarget();
    click(comm_id::update);
    EXPECT_EQ(shown.size(), 1U);
    EXPECT_EQ(light(), Light::off);
    EXPECT_THAT(words(), StartsWith("last answer "));
    toggleLiveMode();
    ASSERT_TRUE(becomesConfirmed());
}

TEST_F(OnALine, SilenceIsToldUntilAnAnswerComes) {
    startTarget({"no-request"});
    click(comm_id::update);
    EXPECT_EQ(light(), Light::trouble);
    EXPECT_THAT(words(), StartsWith("no answer "));
    EXPECT_EQ(log().line(log().lineCount() - 1), QStringLiteral("ERR-->   Can't connect to Target"));
    startTarget();
    EXPECT_EQ(light(), Light::trouble) << "it stays until an exchange succeeds";
    click(comm_id::update);
    EXPECT_EQ(light(), Light::off);
}

TEST_F(OnALine, FiveHundredEditsDuringSendingLoseNothing) {
    startTarget();
    toggleLiveMode();
    ASSERT_TRUE(passEventsUntil([&] { return words() == "sending"; }));
    std::mt19937 random(500);
    int edits = 0;
    bool everConfirmedWrongly = false;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, frame.get(), [&] {
        for (int i = 0; i < 2 && edits < 500; ++i, ++edits) {
            tuning.setSelectionMask(static_cast<std::uint8_t>(1U << (random() % 8)));
            tuning.setVolume(static_cast<float>(-static_cast<int>(random() % 60)), true);
            tuning.setBandGainOrQ(random() % 8, BandValue::gain, static_cast<float>(random() % 18),
                                  random() % 2 == 0);
        }
        everConfirmedWrongly =
            everConfirmedWrongly || (light() == Light::confirmed && !targetHoldsTheImage());
        if (edits == 500) {
            timer.stop();
        }
    });
    timer.start(4);
    ASSERT_TRUE(passEventsUntil([&] { return edits == 500; }));
    tuning.setVolume(-5.0F, true);
    ASSERT_TRUE(passEventsUntil([&] { return light() == Light::confirmed; }));
    EXPECT_TRUE(targetHoldsTheImage());
    EXPECT_FALSE(tuning.updatePending());
    EXPECT_FALSE(everConfirmedWrongly);
    EXPECT_THAT(shownTexts(), IsEmpty());
}

TEST_F(OnALine, TheCablePulledAtRandomBytesNeverHangsTheWindow) {
    std::mt19937 random(99);
    startTarget();
    for (int i = 0; i < 20; ++i) {
        startTarget({"cable=" + std::to_string(random() % 6160)});
        const std::size_t before = shown.size();
        QElapsedTimer timer;
        timer.start();
        click(comm_id::update);
        EXPECT_LT(timer.elapsed(), 4000);
        EXPECT_EQ(shown.size(), before) << "only the log tells";
        EXPECT_THAT(log().line(log().lineCount() - 1).toStdString(), StartsWith("ERR-->   "));
        EXPECT_EQ(light(), Light::trouble);
        EXPECT_TRUE(frame->isVisible());
    }
    startTarget();
    click(comm_id::update);
    EXPECT_EQ(light(), Light::off);
}

TEST_F(OnALine, TheChosenPortIsRememberedForTheNextStart) {
    startTarget();
    auto& ports = control<SkinComboBox>(comm_id::portList);
    const QString first = ports.currentText();
    view().showPage(Page::communication);
    ports.addItem(QStringLiteral("ttyUSB7"));
    choose(ports, 1);
    EXPECT_EQ(profile->lastPort(), QStringLiteral("ttyUSB7"));
    EXPECT_EQ(link.portName(), "ttyUSB7");
    EXPECT_THAT(sentence(), StartsWith("ttyUSB7, "));
    makeFrame(pageFactory({tuning, boxes, dialogs, *profile, link,
                           [&] {
                               return std::vector<std::string>{first.toStdString(), "ttyUSB7"};
                           },
                           profile->lastPort().toStdString(), [] {}}));
    ASSERT_EQ(view().pages().size(), pageCount);
    EXPECT_EQ(link.portName(), "ttyUSB7");
    EXPECT_EQ(control<SkinComboBox>(comm_id::portList).currentIndex(), 1);
}

}  // namespace
}  // namespace tessavo::testing
