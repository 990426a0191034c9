#include <QTimer>
#include <algorithm>
#include <random>
#include <set>
#include <stdexcept>

#include "comm/page/line_bench_posix.h"
#include "comm/page/line_watcher.h"
#include "controls/bitmap_slider.h"
#include "controls/clip_light.h"
#include "controls/read_only_edit.h"
#include "controls/transfer_line.h"
#include "pages/input/audio_router.h"
#include "pages/input/input_eq.h"

// The whole window on a real line, in real time.

namespace tessavo::test {
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

/// One control of each page that shows parameters, and one of the header.
class SetsOnALine : public OnALine {
 protected:
    /// What the controls show.
    using Shown = std::vector<std::string>;

    template <typename Control>
    Control& on(Page page, int id) {
        return controlOf<Control>(*view().pages()[static_cast<std::size_t>(page)], id);
    }
    void typeOn(Page page, int id, int number) {
        view().showPage(page);
        auto& edit = on<QLineEdit>(page, id);
        type(edit, QString::number(number));
        QTest::keyClick(&edit, Qt::Key_Return);
        QCoreApplication::sendPostedEvents();
    }
    /// Enters values of this kind by hand on every page.
    void enter(int kind) {
        typeOn(Page::inputEqualizer, firstBand, 5 - 2 * kind);
        view().showPage(Page::channelConfig);
        choose(on<SkinComboBox>(Page::channelConfig, firstSource), kind + 1);
        typeOn(Page::outputEqualizer, volume, kind - 4);
        typeOn(Page::outputGroup, secondGroupGain, 9 - kind);
        if (flag(4).isChecked() != (kind % 2 == 0)) {
            QTest::mouseClick(&flag(4), Qt::LeftButton);
        }
        // A box shows a number as it was typed until it reads it again.
        view().refreshPages();
    }
    /// The image without the gain word of the channel that has a group gain: the word holds the sum, is read
    /// as the volume, and the group gain is added once more.
    static Bytes comparable(const void* image) {
        constexpr std::size_t channelOfTheSecondSlider = 4;
        Bytes bytes(imageSize);
        std::memcpy(bytes.data(), image, bytes.size());
        writeAt(bytes, imageBlockOffset(channelOfTheSecondSlider) + 4, std::uint32_t{0});
        return bytes;
    }
    Shown whatIsShown() {
        return {on<QLineEdit>(Page::inputEqualizer, firstBand).text().toStdString(),
                on<SkinComboBox>(Page::channelConfig, firstSource).currentText().toStdString(),
                on<QLineEdit>(Page::outputEqualizer, volume).text().toStdString(),
                on<QLineEdit>(Page::outputGroup, secondGroupGain).text().toStdString(),
                flag(4).isChecked() ? "on" : "off"};
    }

 private:
    static constexpr int firstBand = input_eq_id::firstBandEdit;
    static constexpr int firstSource = audio_router_id::firstSource;
    static constexpr int volume = 1081;
    static constexpr int secondGroupGain = 1399;
};

TEST_F(SetsOnALine, GoToTheTargetAndComeBackOntoEveryPage) {
    startTarget();
    std::vector<Shown> entered;
    std::vector<ImageBytes> images;
    auto expected = target->memory().sets;
    for (int set = 0; set <= 5; ++set) {
        enter(set);
        entered.push_back(whatIsShown());
        toggleLiveMode();
        ASSERT_TRUE(passEventsUntil(
            [&] { return light() == Light::confirmed && !tuning.updatePending() && targetHoldsTheImage(); }));
        images.push_back(target->memory().live);
        expected[static_cast<std::size_t>(set)] = images.back();
        click(comm_id::firstSave + set);
        EXPECT_EQ(target->memory().sets, expected) << set;
        const std::string name = set == 0 ? "default set" : "set " + std::to_string(set);
        EXPECT_THAT(words(), ::testing::MatchesRegex("confirmed ..:..:.., " + name + " saved ..:..:.."))
            << "saving does not change what plays";
        EXPECT_EQ(light(), Light::confirmed);
        toggleLiveMode();
    }
    for (std::size_t control = 0; control + 1 < entered[0].size(); ++control) {
        std::set<std::string> different;
        for (const Shown& each : entered) {
            different.insert(each[control]);
        }
        EXPECT_EQ(different.size(), 6U) << "each set has its own: " << control;
    }
    enter(6);
    for (int set = 0; set <= 5; ++set) {
        const auto index = static_cast<std::size_t>(set);
        ASSERT_NE(whatIsShown(), entered[index]);
        click(comm_id::firstLoad + set);
        EXPECT_EQ(whatIsShown(), entered[index]) << set;
        EXPECT_SAME_BYTES(comparable(&tuning.image()), comparable(images[index].data()));
        const std::string name = set == 0 ? "default set" : "set " + std::to_string(set);
        EXPECT_THAT(words(), ::testing::MatchesRegex(name + " read ..:..:.."));
        EXPECT_EQ(light(), Light::off);
    }
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
    EXPECT_THAT(words(), ::testing::MatchesRegex("versions read ..:..:.."));
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
    LineWatcher watcher(control<TransferLine>(comm_id::transferLine));
    click(comm_id::flashFile);
    timer.stop();
    std::vector<std::string> told = watcher.texts();
    ASSERT_FALSE(told.empty());
    if (told.front() == "No transfer") {
        told.erase(told.begin());
    }
    const auto withTimeLeft = [](const std::string& start) {
        return ::testing::AllOf(StartsWith(start + ", 0:0"), EndsWith(" left"));
    };
    EXPECT_THAT(told, ElementsAre("Block 0 of 6, 0 %", "Block 1 of 6, 16 %", "Block 2 of 6, 33 %",
                                  "Block 3 of 6, 50 %", withTimeLeft("Block 4 of 6, 66 %"),
                                  withTimeLeft("Block 5 of 6, 83 %"), withTimeLeft("Block 6 of 6, 100 %"),
                                  "Done, 6 blocks"));
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
    const int asked = timesSaid("sent the clip state");
    EXPECT_FALSE(QTest::qWaitFor([&] { return timesSaid("sent the clip state") > asked + 1; }, 4000))
        << "nothing is asked any more but for a poll that had begun";
    EXPECT_FALSE(shows(1387)) << "and its answer is dropped";
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
    const int asked = timesSaid("sent the clip state");
    const int closed = timesSaid("port closed");
    ASSERT_TRUE(passEventsUntil([&] {
        return timesSaid("sent the clip state") >= asked + 2 && timesSaid("port closed") >= closed + 2;
    }));
    timer.stop();
    EXPECT_GT(seen.size(), 5U);
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
    EXPECT_THAT(words(), ::testing::MatchesRegex("port not opened: versions not read ..:..:.."));
    startTarget();
    click(comm_id::update);
    EXPECT_EQ(shown.size(), 1U);
    EXPECT_EQ(light(), Light::off);
    EXPECT_THAT(words(), StartsWith("versions read "));
    toggleLiveMode();
    ASSERT_TRUE(becomesConfirmed());
}

TEST_F(OnALine, SilenceIsToldUntilAnAnswerComes) {
    startTarget({"no-request"});
    click(comm_id::update);
    EXPECT_EQ(light(), Light::trouble);
    EXPECT_THAT(words(), ::testing::MatchesRegex("no answer: versions not read ..:..:.."));
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
}  // namespace tessavo::test
