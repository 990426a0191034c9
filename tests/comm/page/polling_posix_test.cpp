#include <QElapsedTimer>

#include "comm/page/line_bench_posix.h"

// Polls and edits on one line, counted by the target.

namespace tessavo::test {
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

TEST_F(PollingOnALine, ASaveThatDoesNotGetTheLineIsToldAndTheLogIsSilent) {
    startTarget();
    tuning.setVolume(-7.0F, true);
    toggleLiveMode();
    ASSERT_TRUE(becomesConfirmed());
    // The poll that comes now holds the line for longer than a command waits.
    startTarget({"late=9000"});
    click(clip_id::onOff);
    const QString polling = QStringLiteral("RX-->    Receiving XModem message");
    ASSERT_TRUE(passEventsUntil(
        [&] { return log().lineCount() > 0 && log().line(log().lineCount() - 1) == polling; }));
    const int lines = log().lineCount();
    QElapsedTimer clock;
    clock.start();
    click(comm_id::firstSave + 3);
    EXPECT_GE(clock.elapsed(), 4900);
    EXPECT_THAT(words(), ::testing::MatchesRegex("line busy: set 3 not saved ..:..:..(, .*)?"));
    EXPECT_EQ(light(), TargetStatus::Light::trouble);
    EXPECT_EQ(log().lineCount(), lines);
    EXPECT_THAT(shownTexts(), IsEmpty());
    EXPECT_NE(target->memory().sets[3], target->memory().live);
    const int polls = timesSaid(poll);
    ASSERT_TRUE(passEventsUntil([&] { return timesSaid(poll) > polls || log().lineCount() > lines; }));
    EXPECT_THAT(words(), ::testing::StartsWith("line busy: set 3 not saved "))
        << "the poll's own end does not take it away";
}

TEST_F(PollingOnALine, TheBarSaysWhatTheBoxAboutThePortSays) {
    startTarget();
    target->stop();
    std::vector<std::string> during;
    boxes.setPresenter([&](const QString& text, BoxIcon icon, BoxButtons buttons) {
        shown.push_back({text.toStdString(), icon, buttons});
        if (text == QStringLiteral("Cannot open COM port!")) {
            // One that is open for a while, with an edit meanwhile.
            tuning.setVolume(-static_cast<float>(shown.size()), true);
            EXPECT_FALSE(QTest::qWaitFor([&] { return light() != TargetStatus::Light::trouble; }, 300));
            during.push_back(words());
        }
        return answerWhenClosed(buttons);
    });
    click(comm_id::update);
    const auto notOpened = ::testing::MatchesRegex("port not opened ..:..:..");
    EXPECT_THAT(during, ::testing::ElementsAre(notOpened));
    EXPECT_THAT(words(), ::testing::MatchesRegex("port not opened: versions not read ..:..:.."));
    // The worker's two boxes, in front of the one about the set.
    during.clear();
    shown.clear();
    toggleLiveMode();
    ASSERT_TRUE(passEventsUntil([&] { return during.size() >= 2; }));
    EXPECT_THAT(during, ::testing::Each(notOpened));
}

}  // namespace
}  // namespace tessavo::test
