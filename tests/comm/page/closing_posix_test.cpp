#include <QElapsedTimer>
#include <QTimer>
#include <vector>

#include "comm/page/line_bench_posix.h"

// Closing the window while the line is in use.

namespace tessavo::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class ClosingOnALine : public OnALine {
 protected:
    /// Starts a command and asks the window to close once its exchange runs.
    void closeDuring(int command) {
        QTimer timer;
        QObject::connect(&timer, &QTimer::timeout, frame.get(), [&] {
            if (log().lineCount() >= 3) {
                timer.stop();
                closed_ = frame->close();
                sinceClose_.start();
            }
        });
        timer.start(1);
        click(command);
        commandTook_ = sinceClose_.elapsed();
    }
    void chooseImage(std::size_t size) {
        writeFile(folder / "software.bin", std::vector<std::uint8_t>(size, 0x5A));
        dialogs.answer = folder / "software.bin";
        click(comm_id::selectImage);
    }

    const std::string exchangeQuestion =
        "An exchange with the target is still running.\r\nDo you want to wait until it ends?";
    const std::string softwareQuestion =
        "The software image is still being sent!\r\n"
        "If you close now, the target may be left without software.\r\n"
        "Do you want to wait until it is sent?";
    const std::string saveQuestion = "The current settings will be lost!\r\n Do you want to save settings?";

    bool closed_ = false;
    QElapsedTimer sinceClose_;
    qint64 commandTook_ = 0;
};

TEST_F(ClosingOnALine, WaitsOnYesAndThenAsksTheOtherQuestion) {
    startTarget({"late=500"});
    answers = {BoxAnswer::yes, BoxAnswer::no};
    closeDuring(comm_id::update);
    EXPECT_THAT(shownTexts(), ElementsAre(exchangeQuestion));
    EXPECT_FALSE(closed_);
    EXPECT_TRUE(frame->isVisible());
    EXPECT_EQ(log().line(log().lineCount() - 1), QStringLiteral("ST-->    Disconnected from Target"))
        << "the exchange went on to its end";
    ASSERT_TRUE(passEventsUntil([&] { return !frame->isVisible(); }));
    EXPECT_THAT(shownTexts(), ElementsAre(exchangeQuestion, saveQuestion));
}

TEST_F(ClosingOnALine, WaitsOnYesOnceOnly) {
    startTarget({"late=500"});
    answers = {BoxAnswer::yes, BoxAnswer::cancel};
    closeDuring(comm_id::update);
    ASSERT_TRUE(passEventsUntil([&] { return shown.size() == 2; }));
    EXPECT_THAT(shownTexts(), ElementsAre(exchangeQuestion, saveQuestion));
    EXPECT_TRUE(frame->isVisible()) << "the second question was cancelled";
    click(comm_id::update);
    EXPECT_FALSE(QTest::qWaitFor([&] { return shown.size() > 2; }, 500)) << "and the wish to close with it";
}

TEST_F(ClosingOnALine, WaitsOnYesForAWholeFlash) {
    startTarget();
    chooseImage(6000);
    answers = {BoxAnswer::yes, BoxAnswer::no};
    closeDuring(comm_id::flashFile);
    ASSERT_TRUE(passEventsUntil([&] { return !frame->isVisible(); }));
    EXPECT_THAT(shownTexts(), ElementsAre(softwareQuestion, saveQuestion));
    EXPECT_GE(target->memory().software.size(), 6000U);
}

TEST_F(ClosingOnALine, ABoxClosedWithoutAnAnswerWaitsToo) {
    startTarget({"late=300"});
    closeDuring(comm_id::update);
    EXPECT_THAT(shownTexts(), ElementsAre(exchangeQuestion));
    EXPECT_TRUE(frame->isVisible());
    EXPECT_FALSE(QTest::qWaitFor([&] { return shown.size() > 1; }, 500)) << "the wish to close is taken back";
}

TEST_F(ClosingOnALine, StaysWhenTheSecondQuestionIsCancelledAndTheExchangeGoesOn) {
    startTarget({"late=500"});
    answers = {BoxAnswer::no, BoxAnswer::cancel};
    closeDuring(comm_id::update);
    EXPECT_THAT(shownTexts(), ElementsAre(exchangeQuestion, saveQuestion));
    EXPECT_TRUE(frame->isVisible());
    EXPECT_EQ(log().line(log().lineCount() - 1), QStringLiteral("ST-->    Disconnected from Target"));
}

TEST_F(ClosingOnALine, EndsASilentExchangeAtOnceOnNo) {
    startTarget({"silence=1"});
    answers = {BoxAnswer::no, BoxAnswer::no};
    closeDuring(comm_id::update);
    EXPECT_LT(commandTook_, 2000) << "not the whole time-out of 2.5 s";
    ASSERT_TRUE(passEventsUntil([&] { return !frame->isVisible(); }));
    EXPECT_THAT(shownTexts(), ElementsAre(exchangeQuestion, saveQuestion));
}

TEST_F(ClosingOnALine, AsksNothingWithNothingToLose) {
    startTarget({"silence=1"});
    frame->setNothingToLose([] { return true; });
    closeDuring(comm_id::update);
    EXPECT_LT(commandTook_, 2000) << "not the whole time-out of 2.5 s";
    ASSERT_TRUE(passEventsUntil([&] { return !frame->isVisible(); }));
    EXPECT_THAT(shownTexts(), IsEmpty());
}

TEST_F(ClosingOnALine, BreaksALiveTransferOffOnNo) {
    startTarget({"silence=1"});
    const ImageBytes before = target->memory().live;
    tuning.setVolume(-5.0F, true);
    toggleLiveMode();
    const QString waiting = QStringLiteral("RX-->    Wait for answer");
    ASSERT_TRUE(passEventsUntil(
        [&] { return log().lineCount() > 0 && log().line(log().lineCount() - 1) == waiting; }));
    answers = {BoxAnswer::no, BoxAnswer::no};
    frame->close();
    ASSERT_TRUE(passEventsUntil([&] { return !frame->isVisible(); }));
    link.shutDown();
    QCoreApplication::sendPostedEvents();
    EXPECT_THAT(shownTexts(), ElementsAre(exchangeQuestion, saveQuestion))
        << "no box about the transfer that was broken off";
    EXPECT_EQ(log().line(log().lineCount() - 1), waiting) << "its time-out has not been waited for";
    EXPECT_EQ(target->memory().live, before);
    EXPECT_EQ(timesSaid("port opened"), 1) << "the confirmation is not asked for";
    EXPECT_FALSE(link.confirmedImage().has_value());
}

TEST_F(ClosingOnALine, SaysDuringAFlashWhatTheTargetMayBeLeftWithout) {
    startTarget();
    chooseImage(200 * 1024);
    answers = {BoxAnswer::no, BoxAnswer::no};
    closeDuring(comm_id::flashFile);
    EXPECT_LT(commandTook_, 2000);
    ASSERT_TRUE(passEventsUntil([&] { return !frame->isVisible(); }));
    EXPECT_THAT(shownTexts(), ElementsAre(softwareQuestion, saveQuestion));
    EXPECT_THAT(target->memory().software, IsEmpty()) << "a half image is not taken";
}

TEST_F(ClosingOnALine, WaitsOnYesForALiveTransferToo) {
    startTarget();
    toggleLiveMode();
    ASSERT_TRUE(passEventsUntil([&] { return words() == "sending"; }));
    answers = {BoxAnswer::yes, BoxAnswer::cancel, BoxAnswer::no};
    EXPECT_FALSE(frame->close());
    EXPECT_THAT(shownTexts(), ElementsAre(exchangeQuestion));
    ASSERT_TRUE(passEventsUntil([&] { return shown.size() == 2; }));
    EXPECT_THAT(shownTexts(), ElementsAre(exchangeQuestion, saveQuestion));
    EXPECT_EQ(light(), TargetStatus::Light::confirmed) << "asked once the target has it";
    EXPECT_TRUE(targetHoldsTheImage());
    EXPECT_TRUE(frame->isVisible());
    EXPECT_TRUE(frame->close());
    EXPECT_EQ(shownTexts().back(), saveQuestion);
    EXPECT_EQ(shown.size(), 3U) << "an idle line asks nothing";
}

TEST_F(ClosingOnALine, AsksTheOtherQuestionAtOnceWhenTheExchangeEndedMeanwhile) {
    startTarget();
    toggleLiveMode();
    ASSERT_TRUE(passEventsUntil([&] { return words() == "sending"; }));
    boxes.setPresenter([&](const QString& text, BoxIcon icon, BoxButtons buttons) {
        shown.push_back({text.toStdString(), icon, buttons});
        if (text.toStdString() == exchangeQuestion) {
            EXPECT_TRUE(becomesConfirmed());
            return BoxAnswer::yes;
        }
        return BoxAnswer::no;
    });
    EXPECT_FALSE(frame->close());
    ASSERT_TRUE(passEventsUntil([&] { return !frame->isVisible(); }));
    EXPECT_THAT(shownTexts(), ElementsAre(exchangeQuestion, saveQuestion));
}

TEST_F(ClosingOnALine, LetsAClipPollComeToItsEnd) {
    startTarget({"late=700"});
    click(clip_id::onOff);
    ASSERT_TRUE(passEventsUntil([&] { return log().lineCount() >= 3; }));
    answers = {BoxAnswer::no};
    sinceClose_.start();
    EXPECT_FALSE(frame->close());
    EXPECT_TRUE(frame->isVisible()) << "the poll is under way";
    EXPECT_FALSE(frame->close()) << "asking again changes nothing";
    int ticks = 0;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, frame.get(), [&] { ++ticks; });
    timer.start(5);
    ASSERT_TRUE(passEventsUntil([&] { return !frame->isVisible(); }));
    EXPECT_LT(sinceClose_.elapsed(), 2000);
    EXPECT_GT(ticks, 10) << "the window lives meanwhile";
    EXPECT_EQ(log().line(log().lineCount() - 1), QStringLiteral("ST-->    Disconnected from Target"));
    EXPECT_THAT(shownTexts(), ElementsAre(saveQuestion)) << "nobody has started that exchange";
}

TEST_F(ClosingOnALine, DoesNotWaitLongForAPollThatGetsNoAnswer) {
    startTarget({"late=9000"});
    click(clip_id::onOff);
    ASSERT_TRUE(passEventsUntil([&] { return log().lineCount() >= 3; }));
    answers = {BoxAnswer::no};
    sinceClose_.start();
    EXPECT_FALSE(frame->close());
    click(comm_id::update);
    EXPECT_EQ(log().allText().count(QStringLiteral("Prepare XModem")), 1)
        << "nothing can be started any more";
    EXPECT_TRUE(frame->isVisible());
    ASSERT_TRUE(passEventsUntil([&] { return !frame->isVisible(); }));
    EXPECT_LT(sinceClose_.elapsed(), 4000) << "not the whole time-out of 10 s";
    EXPECT_THAT(log().allText().toStdString(), ::testing::Not(::testing::HasSubstr("ERR-->")));
    EXPECT_THAT(shownTexts(), ElementsAre(saveQuestion));
}

TEST_F(ClosingOnALine, StaysAfterAPollWhenTheQuestionIsCancelled) {
    startTarget({"late=700"});
    click(clip_id::onOff);
    ASSERT_TRUE(passEventsUntil([&] { return log().lineCount() >= 3; }));
    answers = {BoxAnswer::cancel};
    EXPECT_FALSE(frame->close());
    ASSERT_TRUE(passEventsUntil([&] {
        return log().line(log().lineCount() - 1) == QStringLiteral("ST-->    Disconnected from Target");
    }));
    EXPECT_TRUE(frame->isVisible());
    click(clip_id::onOff);
    EXPECT_FALSE(frame->findChild<CClipDetectDlg*>()->isOn()) << "the window takes input";
}

TEST_F(ClosingOnALine, AsksForALiveTransferThatBeganDuringTheOtherQuestion) {
    startTarget();
    toggleLiveMode();
    ASSERT_TRUE(becomesConfirmed());
    int edits = 0;
    boxes.setPresenter([&](const QString& text, BoxIcon icon, BoxButtons buttons) {
        shown.push_back({text.toStdString(), icon, buttons});
        if (text.toStdString() == exchangeQuestion) {
            return BoxAnswer::yes;
        }
        if (edits++ == 0) {
            tuning.setVolume(-9.0F, true);
            EXPECT_TRUE(passEventsUntil([&] { return words() == "sending"; }));
        }
        return BoxAnswer::no;
    });
    EXPECT_FALSE(frame->close());
    EXPECT_TRUE(frame->isVisible());
    EXPECT_THAT(shownTexts(), ElementsAre(saveQuestion, exchangeQuestion));
    ASSERT_TRUE(passEventsUntil([&] { return !frame->isVisible(); }));
    EXPECT_TRUE(targetHoldsTheImage());
    EXPECT_THAT(shownTexts(), ElementsAre(saveQuestion, exchangeQuestion, saveQuestion));
}

}  // namespace
}  // namespace tessavo::test
