#include <filesystem>

#include "comm/page/line_bench_posix.h"
#include "controls/clip_light.h"

// A port that keeps its name while what is at its other end changes.

namespace tessavo::test {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::StartsWith;
using Light = TargetStatus::Light;

class ReplugOnALine : public OnALine {
 protected:
    /// A target with these faults comes to the port.
    void plugIn(const std::vector<std::string>& faults = {}) {
        startTarget(faults);
        unplug();
        std::filesystem::create_symlink(target->path(), plug_);
    }
    void unplug() { std::filesystem::remove(plug_); }
    [[nodiscard]] std::string lineName() const override { return "../" + plug_.relative_path().string(); }
    bool says(const std::string& start) {
        return passEventsUntil([&] { return words().starts_with(start); });
    }
    bool shows(int id) { return !control<ClipLight>(id).isHidden(); }

    const std::filesystem::path plug_ = folder / "line";
};

TEST_F(ReplugOnALine, AConfirmationDoesNotOutlastAPollWithoutAPort) {
    plugIn();
    toggleLiveMode();
    ASSERT_TRUE(becomesConfirmed());
    unplug();
    click(clip_id::onOff);
    ASSERT_TRUE(says("port not opened "));
    EXPECT_FALSE(link.confirmedImage().has_value());
    plugIn();
    ASSERT_TRUE(passEventsUntil([&] { return light() != Light::trouble; }));
    EXPECT_EQ(words(), "not sent") << "it may have been without power meanwhile";
    EXPECT_EQ(light(), Light::sending);
    tuning.setVolume(-9.0F, true);
    ASSERT_TRUE(becomesConfirmed());
    EXPECT_TRUE(targetHoldsTheImage());
}

TEST_F(ReplugOnALine, AConfirmationDoesNotOutlastAPollWithoutAnAnswer) {
    plugIn();
    toggleLiveMode();
    click(clip_id::onOff);
    ASSERT_TRUE(becomesConfirmed());
    plugIn({"no-request"});
    ASSERT_TRUE(says("no answer "));
    plugIn();
    ASSERT_TRUE(passEventsUntil([&] { return light() != Light::trouble; }));
    EXPECT_EQ(words(), "not sent");
    EXPECT_THAT(shownTexts(), Each("Cannot open COM port!")) << "only a poll between two plugs";
}

TEST_F(ReplugOnALine, AConfirmationDoesNotOutlastACommandThatFails) {
    plugIn();
    toggleLiveMode();
    ASSERT_TRUE(becomesConfirmed());
    plugIn({"no-disconnect"});
    click(comm_id::firstSave + 2);
    EXPECT_THAT(words(),
                ::testing::MatchesRegex("not disconnected: set 2 may not be saved ..:..:.., not sent"));
    EXPECT_EQ(light(), TargetStatus::Light::trouble);
    plugIn();
    click(comm_id::update);
    EXPECT_THAT(words(), ::testing::MatchesRegex("not sent, versions read ..:..:.."));
    EXPECT_THAT(shownTexts(), IsEmpty());
}

TEST_F(ReplugOnALine, AWrongSetIsStillToldAfterACommandThatFails) {
    plugIn({"wrong-confirmation"});
    toggleLiveMode();
    ASSERT_TRUE(says("wrong set "));
    const std::string wrong = words();
    plugIn({"no-request"});
    click(comm_id::update);
    EXPECT_THAT(words(), StartsWith("no answer: versions not read "));
    plugIn();
    click(comm_id::update);
    EXPECT_THAT(words(), StartsWith(wrong + ", versions read "));
    EXPECT_EQ(light(), Light::trouble);
}

TEST_F(ReplugOnALine, ClipDetectionTellsAPortThatDoesNotOpenOnceAndCountsTheOtherTimes) {
    plugIn();
    ClipBytes state{};
    state[0] = 1;
    target->holdClipState(state);
    click(clip_id::onOff);
    ASSERT_TRUE(passEventsUntil([&] { return shows(1386); }));
    unplug();
    target->stop();
    const std::string line = "clip detection: \"Cannot open COM port!\" ";
    ASSERT_TRUE(passEventsUntil([&] { return words().ends_with(line + "3 times"); })) << words();
    EXPECT_THAT(shownTexts(), ElementsAre("Cannot open COM port!"));
    EXPECT_THAT(words(), StartsWith("port not opened "));
    EXPECT_TRUE(shows(1386)) << "the lights keep their last state";
    EXPECT_FALSE(shows(1392));
    click(comm_id::update);
    EXPECT_THAT(shownTexts(), ElementsAre("Cannot open COM port!", "Cannot open COM port!"))
        << "a command tells each time";
    plugIn();
    target->holdClipState({});
    ASSERT_TRUE(passEventsUntil([&] { return shows(1392); })) << "without a restart and without a click";
    EXPECT_FALSE(shows(1386));
    EXPECT_THAT(words(), StartsWith("port not opened: versions not read "))
        << "an answer to a poll is none to the command";
    EXPECT_EQ(words().find(line), std::string::npos) << words();
    unplug();
    ASSERT_TRUE(passEventsUntil([&] { return shown.size() == 3; })) << "between the two it has opened";
    click(clip_id::onOff);
    EXPECT_EQ(words().find(line), std::string::npos) << words();
    // A poll that was under way may still tell its failure.
    QTest::qWait(100);
    const std::size_t told = shown.size();
    QTest::qWait(1500);
    EXPECT_EQ(shown.size(), told) << "switched off, nothing is tried any more";
    click(clip_id::onOff);
    EXPECT_TRUE(passEventsUntil([&] { return shown.size() == told + 1; })) << "switched on it is new again";
}

TEST_F(ReplugOnALine, AnotherPortThatDoesNotOpenIsToldAnew) {
    plugIn();
    unplug();
    click(clip_id::onOff);
    ASSERT_TRUE(passEventsUntil([&] { return words().ends_with(" 2 times"); })) << words();
    link.setPortName("nowhere");
    EXPECT_EQ(words().find("times"), std::string::npos) << words();
    ASSERT_TRUE(passEventsUntil([&] { return words().ends_with(" 2 times"); })) << words();
    EXPECT_THAT(shownTexts(), ElementsAre("Cannot open COM port!", "Cannot open COM port!"));
    click(clip_id::onOff);
}

/// The machine's own ports tell what is there.
class ReplugSeenOnALine : public ReplugOnALine {
 protected:
    ReplugSeenOnALine() { portSystem = systemPorts(); }
    /// As the status bar has to tell it, in time.
    bool saysInTime(const std::string& start) {
        return QTest::qWaitFor([&] { return words().starts_with(start); }, 2000);
    }
    /// \param taken live images that the target took until then
    void confirmAndUnplug(int& taken) {
        plugIn();
        toggleLiveMode();
        ASSERT_TRUE(becomesConfirmed());
        taken = timesSaid("took a live image");
        unplug();
        ASSERT_TRUE(saysInTime("port gone ")) << words();
    }
};

TEST_F(ReplugSeenOnALine, AnEditWhileThePortIsGoneIsSentWhenItComesBack) {
    int taken = 0;
    ASSERT_NO_FATAL_FAILURE(confirmAndUnplug(taken));
    EXPECT_EQ(light(), Light::trouble);
    EXPECT_THAT(shownTexts(), IsEmpty()) << "nothing was opened to find it out";
    tuning.setVolume(-9.0F, true);
    bool failed = false;
    QObject::connect(&link, &CommLink::workerState, frame.get(),
                     [&](LiveWorker::State state) { failed |= state == LiveWorker::State::failed; });
    ASSERT_TRUE(passEventsUntil([&] { return failed; }));
    EXPECT_THAT(shownTexts(), ElementsAre("Cannot open COM port!", "Cannot open COM port!"))
        << "the worker's boxes come as ever";
    EXPECT_THAT(words(), StartsWith("port gone "));
    std::filesystem::create_symlink(target->path(), plug_);
    ASSERT_TRUE(saysInTime("port back ")) << words();
    ASSERT_TRUE(becomesConfirmed());
    EXPECT_TRUE(targetHoldsTheImage());
    EXPECT_EQ(timesSaid("took a live image"), taken + 1);
    EXPECT_EQ(shown.size(), 2U);
}

TEST_F(ReplugSeenOnALine, AnImageThatIsConfirmedIsNotSentAgain) {
    int taken = 0;
    ASSERT_NO_FATAL_FAILURE(confirmAndUnplug(taken));
    std::filesystem::create_symlink(target->path(), plug_);
    ASSERT_TRUE(saysInTime("port back ")) << words();
    EXPECT_EQ(light(), Light::confirmed);
    EXPECT_NE(words().find(", confirmed "), std::string::npos) << words();
    EXPECT_FALSE(tuning.updatePending());
    EXPECT_EQ(timesSaid("took a live image"), taken);
    EXPECT_THAT(shownTexts(), IsEmpty());
}

}  // namespace
}  // namespace tessavo::test
