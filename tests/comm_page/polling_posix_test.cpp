#include "comm_page/line_bench_posix.h"

// Polls and edits on one line, counted by the target.

namespace tessavo::testing {
namespace {

using ::testing::IsEmpty;

class PollingOnALine : public OnALine {
 protected:
    static constexpr const char* poll = "sent the clip state";

    /// Polls from a line of the target's on, up to the first line with this text.
    static int pollsUntil(const std::vector<std::string>& lines, std::size_t from, const std::string& text) {
        const auto start = lines.begin() + static_cast<std::ptrdiff_t>(from);
        return static_cast<int>(std::count(start, std::find(start, lines.end(), text), poll));
    }
};

TEST_F(PollingOnALine, AnEditWaitsForOnePollAtMostUntilItIsSentAndConfirmed) {
    // Slow answers: a poll takes half of the time between two of them.
    startTarget({"late=400"});
    toggleLiveMode();
    ASSERT_TRUE(becomesConfirmed());
    click(clip_id::onOff);
    int beganDuringAPoll = 0;
    for (int round = 0; round < 4; ++round) {
        const int before = timesSaid(poll);
        ASSERT_TRUE(passEventsUntil([&] { return timesSaid(poll) > before; })) << "polls go on";
        const std::vector<std::string> untilNow = said();
        const bool pollRuns = untilNow.back() == poll;
        beganDuringAPoll += pollRuns ? 1 : 0;
        tuning.setVolume(static_cast<float>(round - 5), true);
        ASSERT_TRUE(becomesConfirmed());
        ASSERT_TRUE(targetHoldsTheImage());
        const std::vector<std::string> lines = said();
        const std::size_t edit = untilNow.size();
        EXPECT_LE(pollsUntil(lines, edit, "took a live image") + (pollRuns ? 1 : 0), 1);
        EXPECT_LE(pollsUntil(lines, edit, "confirmed the live image") + (pollRuns ? 1 : 0), 1);
    }
    EXPECT_GT(beganDuringAPoll, 0);
    EXPECT_THAT(shownTexts(), IsEmpty());
}

}  // namespace
}  // namespace tessavo::testing
