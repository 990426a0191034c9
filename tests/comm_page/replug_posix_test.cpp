#include <filesystem>

#include "comm_page/line_bench_posix.h"
#include "controls/clip_light.h"

// A port that keeps its name while what is at its other end changes.

namespace tessavo::testing {
namespace {

using ::testing::Each;
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

 private:
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
    EXPECT_THAT(words(), StartsWith("no answer "));
    plugIn();
    click(comm_id::update);
    EXPECT_EQ(words(), "not sent");
    EXPECT_THAT(shownTexts(), IsEmpty());
}

TEST_F(ReplugOnALine, AWrongSetIsStillToldAfterACommandThatFails) {
    plugIn({"wrong-confirmation"});
    toggleLiveMode();
    ASSERT_TRUE(says("wrong set "));
    const std::string wrong = words();
    plugIn({"no-request"});
    click(comm_id::update);
    EXPECT_THAT(words(), StartsWith("no answer "));
    plugIn();
    click(comm_id::update);
    EXPECT_EQ(words(), wrong);
    EXPECT_EQ(light(), Light::trouble);
}

TEST_F(ReplugOnALine, ClipDetectionTellsEachPollWithoutAPortAndGoesOnWhenItIsBack) {
    plugIn();
    ClipBytes state{};
    state[0] = 1;
    target->holdClipState(state);
    click(clip_id::onOff);
    ASSERT_TRUE(passEventsUntil([&] { return shows(1386); }));
    unplug();
    target->stop();
    ASSERT_TRUE(passEventsUntil([&] { return shown.size() >= 2; }));
    EXPECT_THAT(shownTexts(), Each("Cannot open COM port!"));
    EXPECT_THAT(words(), StartsWith("port not opened "));
    EXPECT_TRUE(shows(1386)) << "the lights keep their last state";
    EXPECT_FALSE(shows(1392));
    plugIn();
    target->holdClipState({});
    ASSERT_TRUE(passEventsUntil([&] { return shows(1392); })) << "without a restart and without a click";
    EXPECT_FALSE(shows(1386));
    EXPECT_THAT(words(), StartsWith("last answer "));
    unplug();
    click(clip_id::onOff);
    // A poll that was under way may still tell its failure.
    QTest::qWait(100);
    const std::size_t told = shown.size();
    QTest::qWait(1500);
    EXPECT_EQ(shown.size(), told) << "switched off, nothing is tried any more";
}

}  // namespace
}  // namespace tessavo::testing
