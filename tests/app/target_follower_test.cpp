#include "app/target_follower.h"

#include <gtest/gtest.h>

// What the first pane says, event by event.

namespace tessavo::test {
namespace {

using Activity = ForegroundTransfers::Activity;
using Light = TargetStatus::Light;
using State = LiveWorker::State;

constexpr auto pending = true;

class Follower : public ::testing::Test {
 protected:
    struct Told {
        Light light;
        std::string words;
        friend bool operator==(const Told&, const Told&) = default;
        friend void PrintTo(const Told& told, std::ostream* out) {
            *out << static_cast<int>(told.light) << " \"" << told.words << '"';
        }
    };
    Told live(bool updatePending = false, bool asItStands = false) const {
        return told({.liveMode = true, .updatePending = updatePending, .confirmedAsItStands = asItStands});
    }
    Told off(bool updatePending = false) const { return told({.updatePending = updatePending}); }
    Told told(const TargetFollower::Context& now) const {
        const TargetStatus status = follower.status(now);
        EXPECT_EQ(status.liveMode, now.liveMode);
        return {status.light, status.state.toStdString()};
    }
    static QTime at(int second) { return {14, 32, second}; }
    /// An exchange from its begin to the end of its box, if it has one.
    void ended(LineUser user, ExchangeEnd end, QTime time) {
        if (end != ExchangeEnd::lineBusy) {
            follower.exchangeBegan(user);
        }
        follower.exchangeEnded(user, end, time);
        if (end == ExchangeEnd::portNotOpened) {
            follower.portBoxClosed(user);
        }
    }
    /// A whole command with its exchange.
    void command(Activity activity, const CommandReport& report, ExchangeEnd end, QTime time) {
        follower.commandStarted(activity);
        ended(LineUser::command, end, time);
        follower.commandEnded();
        follower.commandReported(report, time);
    }
    static CommandReport report(Command command, std::uint8_t set = 0,
                                CommandReport::Result result = CommandReport::Result::done) {
        return {.command = command, .targetSet = set, .result = result};
    }
    static CommandReport failedReport(Command command, std::uint8_t set = 0) {
        return report(command, set, CommandReport::Result::exchangeFailed);
    }

    TargetFollower follower;
};

TEST_F(Follower, StartsWithNothingToTell) {
    EXPECT_EQ(off(), (Told{Light::off, ""}));
    EXPECT_EQ(off(pending), (Told{Light::off, ""})) << "without Live Mode no edit waits";
    follower.setPort(QStringLiteral("COM3"));
    EXPECT_EQ(follower.status({}).port, QStringLiteral("COM3"));
}

TEST_F(Follower, AnotherPortStartsWithoutAPast) {
    follower.setPort(QStringLiteral("COM3"));
    ended(LineUser::clipPoll, ExchangeEnd::portNotOpened, at(1));
    follower.setPort(QStringLiteral("COM3"));
    EXPECT_EQ(off(), (Told{Light::trouble, "port not opened 14:32:01"})) << "the same port again";
    follower.setPort(QStringLiteral("COM4"));
    EXPECT_EQ(off(), (Told{Light::off, ""}));
    follower.workerState(State::confirmed, at(7));
    follower.setPort(QStringLiteral("COM3"));
    EXPECT_EQ(off(), (Told{Light::off, ""})) << "the answer was the other port's";
}

TEST_F(Follower, AnEditWaitsIsSentAndConfirmed) {
    follower.liveModeChanged(true);
    EXPECT_EQ(live(pending), (Told{Light::sending, "waiting"}));
    follower.workerState(State::sending, at(1));
    EXPECT_EQ(live(), (Told{Light::sending, "sending"}));
    EXPECT_EQ(live(pending), (Told{Light::sending, "sending"})) << "another edit meanwhile";
    ended(LineUser::clipPoll, ExchangeEnd::answered, at(2));
    EXPECT_EQ(live(), (Told{Light::sending, "sending"})) << "until its confirmation is read";
    ended(LineUser::clipPoll, ExchangeEnd::answered, at(3));
    follower.workerState(State::confirmed, at(7));
    EXPECT_EQ(live(false, true), (Told{Light::confirmed, "confirmed 14:32:07"}));
    EXPECT_EQ(live(pending, true), (Told{Light::sending, "waiting"})) << "the next edit ends it at once";
    EXPECT_EQ(live(false, false), (Told{Light::sending, "not sent"})) << "so does a drag";
}

TEST_F(Follower, AWrongSetStaysUntilALiveTransferSucceeds) {
    follower.workerState(State::sending, at(1));
    ended(LineUser::clipPoll, ExchangeEnd::answered, at(2));
    follower.workerState(State::wrongSet, at(3));
    EXPECT_EQ(live(), (Told{Light::trouble, "wrong set 14:32:03"}));
    ended(LineUser::clipPoll, ExchangeEnd::answered, at(4));
    EXPECT_EQ(live(), (Told{Light::trouble, "wrong set 14:32:03"})) << "a poll says nothing about the set";
    ended(LineUser::clipPoll, ExchangeEnd::noAnswer, at(4));
    EXPECT_EQ(live(), (Told{Light::trouble, "no answer 14:32:04"})) << "the newest trouble stands in front";
    ended(LineUser::clipPoll, ExchangeEnd::portNotOpened, at(4));
    EXPECT_EQ(live(), (Told{Light::trouble, "port not opened 14:32:04"}));
    ended(LineUser::clipPoll, ExchangeEnd::answered, at(5));
    EXPECT_EQ(live(), (Told{Light::trouble, "wrong set 14:32:03"})) << "nor does one that failed before it";
    EXPECT_EQ(live(pending), (Told{Light::sending, "waiting"}));
    follower.workerState(State::sending, at(5));
    EXPECT_EQ(live(), (Told{Light::sending, "sending"}));
    follower.workerState(State::confirmed, at(6));
    EXPECT_EQ(live(false, true), (Told{Light::confirmed, "confirmed 14:32:06"}));
}

TEST_F(Follower, AWrongSetIsForgottenWithWhateverMakesItVoid) {
    const auto wrong = [this] {
        follower.workerState(State::wrongSet, at(3));
        EXPECT_EQ(live(), (Told{Light::trouble, "wrong set 14:32:03"}));
    };
    wrong();
    follower.workerState(State::sending, at(4));
    follower.workerState(State::failed, at(5));
    ended(LineUser::clipPoll, ExchangeEnd::answered, at(6));
    EXPECT_EQ(live(), (Told{Light::sending, "not sent"})) << "a later transfer has failed otherwise";
    wrong();
    follower.liveModeChanged(true);
    EXPECT_EQ(live(), (Told{Light::sending, "not sent"}));
    wrong();
    follower.setPort(QStringLiteral("COM4"));
    EXPECT_EQ(live(), (Told{Light::sending, "not sent"}));
    wrong();
    follower.commandStarted(Activity::reading);
    follower.commandEnded();
    EXPECT_EQ(live(), (Told{Light::trouble, "wrong set 14:32:03"})) << "no other command says anything";
    follower.commandStarted(Activity::sendingSoftware);
    follower.commandEnded();
    EXPECT_EQ(live(), (Told{Light::sending, "not sent"})) << "a new software holds no set of before";
}

TEST_F(Follower, AConfirmationEndsWithTheNextExchangeThatFails) {
    const auto confirm = [this] {
        follower.workerState(State::confirmed, at(1));
        EXPECT_EQ(live(false, true), (Told{Light::confirmed, "confirmed 14:32:01"}));
    };
    for (const ExchangeEnd failure : {ExchangeEnd::noAnswer, ExchangeEnd::refused, ExchangeEnd::damagedAnswer,
                                      ExchangeEnd::notDisconnected, ExchangeEnd::portNotOpened}) {
        confirm();
        ended(LineUser::clipPoll, failure, at(2));
        EXPECT_EQ(live(false, true).light, Light::trouble);
        ended(LineUser::clipPoll, ExchangeEnd::answered, at(3));
        EXPECT_EQ(live(false, true), (Told{Light::sending, "not sent"})) << "it may have been without power";
    }
    confirm();
    ended(LineUser::clipPoll, ExchangeEnd::lineBusy, at(4));
    EXPECT_EQ(live(false, true), (Told{Light::confirmed, "confirmed 14:32:01"})) << "nothing was asked";
    follower.commandStarted(Activity::sendingSoftware);
    follower.commandEnded();
    EXPECT_EQ(live(false, true), (Told{Light::sending, "not sent"}));
}

TEST_F(Follower, SilenceIsToldAsSoonAsItIsKnown) {
    follower.workerState(State::sending, at(1));
    ended(LineUser::liveMode, ExchangeEnd::noAnswer, at(2));
    EXPECT_EQ(live(), (Told{Light::trouble, "no answer 14:32:02"}));
    ended(LineUser::liveMode, ExchangeEnd::noAnswer, at(9));
    follower.workerState(State::failed, at(9));
    EXPECT_EQ(live(), (Told{Light::trouble, "no answer 14:32:09"}));
    ended(LineUser::clipPoll, ExchangeEnd::answered, at(10));
    EXPECT_EQ(live(), (Told{Light::sending, "not sent"})) << "it answers again, but the edit is lost";
}

TEST_F(Follower, EveryOutcomeOfALiveTransferHasItsOwnWords) {
    const std::vector<std::pair<ExchangeEnd, std::string>> ends{
        {ExchangeEnd::noAnswer, "no answer 14:32:02"},
        {ExchangeEnd::refused, "refused 14:32:02"},
        {ExchangeEnd::damagedAnswer, "damaged answer 14:32:02"},
        {ExchangeEnd::notDisconnected, "not disconnected 14:32:02"},
        {ExchangeEnd::portNotOpened, "port not opened 14:32:02"},
        {ExchangeEnd::lineBusy, "line busy: set not sent 14:32:02"}};
    for (const auto& [end, words] : ends) {
        follower.workerState(State::sending, at(1));
        ended(LineUser::liveMode, end, at(2));
        // Whatever was heard in between, and though the target answered the second exchange.
        ended(LineUser::clipPoll, ExchangeEnd::answered, at(3));
        ended(LineUser::liveMode, ExchangeEnd::answered, at(4));
        follower.workerState(State::failed, at(4));
        EXPECT_EQ(live(false, true), (Told{Light::trouble, words}));
        // The later of two failures is the one that the log ends with.
        follower.workerState(State::sending, at(5));
        ended(LineUser::liveMode, ExchangeEnd::refused, at(6));
        ended(LineUser::liveMode, end, at(2));
        follower.workerState(State::failed, at(8));
        EXPECT_EQ(live(), (Told{Light::trouble, words}));
    }
    follower.workerState(State::sending, at(1));
    follower.workerState(State::wrongSet, at(2));
    EXPECT_EQ(live(), (Told{Light::trouble, "wrong set 14:32:02"}));
}

TEST_F(Follower, WhileABoxAboutThePortIsOpenNothingElseIsTold) {
    const Told notOpened{Light::trouble, "port not opened 14:32:02"};
    follower.commandStarted(Activity::reading);
    follower.exchangeBegan(LineUser::command);
    follower.exchangeEnded(LineUser::command, ExchangeEnd::portNotOpened, at(2));
    EXPECT_EQ(off(), notOpened) << "the command has not returned yet";
    follower.portBoxClosed(LineUser::command);
    follower.commandEnded();
    follower.commandReported(failedReport(Command::readVersions), at(4));
    EXPECT_EQ(off(), (Told{Light::trouble, "port not opened: versions not read 14:32:04"}));
    follower.setPort(QStringLiteral("COM4"));
    follower.workerState(State::sending, at(1));
    follower.exchangeBegan(LineUser::liveMode);
    follower.exchangeEnded(LineUser::liveMode, ExchangeEnd::portNotOpened, at(2));
    EXPECT_EQ(live(), notOpened);
    EXPECT_EQ(live(pending), notOpened) << "though an edit waits";
    ended(LineUser::clipPoll, ExchangeEnd::answered, at(3));
    EXPECT_EQ(live(pending), notOpened) << "though another exchange succeeds";
    follower.portBoxClosed(LineUser::liveMode);
    EXPECT_EQ(live(pending), (Told{Light::sending, "sending"}));
}

TEST_F(Follower, CommandsTellWhatTheyDo) {
    follower.commandStarted(Activity::reading);
    EXPECT_EQ(off(), (Told{Light::sending, "reading"}));
    ended(LineUser::command, ExchangeEnd::answered, at(3));
    EXPECT_EQ(off(), (Told{Light::sending, "reading"})) << "its report follows";
    for (const LineUser next : {LineUser::clipPoll, LineUser::liveMode}) {
        follower.exchangeBegan(next);
        EXPECT_EQ(off(), (Told{Light::sending, "reading"})) << "it waits for nobody any more";
    }
    follower.commandEnded();
    EXPECT_EQ(off(), (Told{Light::off, "last answer 14:32:03"}));
    follower.commandStarted(Activity::sendingSoftware);
    follower.exchangeBegan(LineUser::command);
    EXPECT_EQ(off(), (Told{Light::sending, "sending image"}));
    follower.blockSent(LineUser::command, 37, 512);
    EXPECT_EQ(off(), (Told{Light::sending, "sending image, block 37 of 512"}));
    EXPECT_EQ(live(pending), (Told{Light::sending, "sending image, block 37 of 512"}));
    follower.exchangeEnded(LineUser::command, ExchangeEnd::noAnswer, at(8));
    follower.commandEnded();
    EXPECT_EQ(off(), (Told{Light::trouble, "no answer 14:32:08"}));
    follower.commandStarted(Activity::sending);
    EXPECT_EQ(off(), (Told{Light::sending, "sending"}));
    ended(LineUser::command, ExchangeEnd::answered, at(9));
    follower.commandEnded();
    EXPECT_EQ(off(), (Told{Light::off, "last answer 14:32:09"}));
    follower.commandStarted(Activity::sendingSoftware);
    EXPECT_EQ(off(), (Told{Light::sending, "sending image"})) << "blocks of the image before are forgotten";
}

TEST_F(Follower, ALiveBlockCountedWhileAFlashWaitsIsNoBlockOfTheImage) {
    follower.workerState(State::sending, at(1));
    follower.exchangeBegan(LineUser::liveMode);
    follower.commandStarted(Activity::sendingSoftware);
    EXPECT_EQ(live(), (Told{Light::sending, "sending"}));
    follower.blockSent(LineUser::liveMode, 1, 1);
    EXPECT_EQ(live(), (Told{Light::sending, "sending"}));
    follower.exchangeEnded(LineUser::liveMode, ExchangeEnd::answered, at(2));
    follower.exchangeBegan(LineUser::command);
    EXPECT_EQ(live(), (Told{Light::sending, "sending image"})) << "none of its own has gone out yet";
    follower.blockSent(LineUser::command, 1, 512);
    EXPECT_EQ(live(), (Told{Light::sending, "sending image, block 1 of 512"}));
    follower.exchangeEnded(LineUser::command, ExchangeEnd::answered, at(3));
    follower.commandEnded();
    follower.workerState(State::confirmed, at(4));
    follower.exchangeBegan(LineUser::clipPoll);
    follower.commandStarted(Activity::reading);
    EXPECT_EQ(live(), (Told{Light::sending, "waiting"})) << "a poll has the line";
}

TEST_F(Follower, ACommandThatWorkedIsTold) {
    const std::vector<std::pair<CommandReport, std::string>> done{
        {report(Command::saveSet, 3), "set 3 saved 14:32:05"},
        {report(Command::saveSet, 0), "default set saved 14:32:05"},
        {report(Command::readSet, 5), "set 5 read 14:32:05"},
        {report(Command::readSet, 0), "default set read 14:32:05"},
        {report(Command::readVersions), "versions read 14:32:05"},
        {report(Command::sendSoftware), "software image sent 14:32:05"}};
    for (const auto& [what, words] : done) {
        follower.workerState(State::confirmed, at(1));
        command(Activity::reading, what, ExchangeEnd::answered, at(5));
        EXPECT_EQ(off(), (Told{Light::off, words}));
        EXPECT_EQ(live(false, true), (Told{Light::confirmed, "confirmed 14:32:01, " + words}));
        EXPECT_EQ(live(false, false), (Told{Light::sending, "not sent, " + words}));
        EXPECT_EQ(live(pending), (Told{Light::sending, "waiting"}));
        ended(LineUser::clipPoll, ExchangeEnd::answered, at(6));
        EXPECT_EQ(off(), (Told{Light::off, words})) << "a poll says nothing about it";
        ended(LineUser::clipPoll, ExchangeEnd::noAnswer, at(7));
        EXPECT_EQ(off(), (Told{Light::trouble, "no answer 14:32:07, " + words}));
        follower.workerState(State::sending, at(8));
        follower.workerState(State::confirmed, at(9));
        EXPECT_EQ(live(false, true), (Told{Light::confirmed, "confirmed 14:32:09"}))
            << "until the next edit is sent";
    }
}

TEST_F(Follower, ACommandThatFailedStaysUntilAPersonDoesSomethingElse) {
    const auto saveInVain = [this] {
        follower.workerState(State::confirmed, at(1));
        command(Activity::sending, failedReport(Command::saveSet, 3), ExchangeEnd::lineBusy, at(6));
        EXPECT_EQ(live(false, true),
                  (Told{Light::trouble, "line busy: set 3 not saved 14:32:06, confirmed 14:32:01"}));
    };
    saveInVain();
    ended(LineUser::clipPoll, ExchangeEnd::answered, at(7));
    follower.workerState(State::sending, at(8));
    EXPECT_EQ(live(), (Told{Light::trouble, "line busy: set 3 not saved 14:32:06, sending"}));
    follower.workerState(State::confirmed, at(9));
    EXPECT_EQ(live(false, true),
              (Told{Light::trouble, "line busy: set 3 not saved 14:32:06, confirmed 14:32:09"}))
        << "what plays is confirmed, but the save is lost all the same";
    follower.commandStarted(Activity::sending);
    EXPECT_EQ(live(false, true), (Told{Light::sending, "sending"}));
    follower.commandEnded();
    EXPECT_EQ(live(false, true), (Told{Light::confirmed, "confirmed 14:32:09"}));
    saveInVain();
    follower.liveModeChanged(false);
    EXPECT_EQ(off(), (Told{Light::off, "last answer 14:32:01"}));
    saveInVain();
    follower.setPort(QStringLiteral("COM9"));
    EXPECT_EQ(off(), (Told{Light::off, ""}));
}

TEST_F(Follower, ASoftwareImageOfWhichBlocksWereTakenIsNotCalledNotSent) {
    follower.commandStarted(Activity::sendingSoftware);
    follower.exchangeBegan(LineUser::command);
    follower.blockSent(LineUser::command, 200, 512);
    follower.exchangeEnded(LineUser::command, ExchangeEnd::refused, at(6));
    follower.commandEnded();
    follower.commandReported(failedReport(Command::sendSoftware), at(6));
    EXPECT_EQ(off(), (Told{Light::trouble, "refused: software image may be incomplete 14:32:06"}));
    command(Activity::sendingSoftware, failedReport(Command::sendSoftware), ExchangeEnd::refused, at(7));
    EXPECT_EQ(off().words, "refused: software image not sent 14:32:07") << "the first block of another try";
}

TEST_F(Follower, ACommandThatFailedTellsNoMoreThanIsKnown) {
    using End = ExchangeEnd;
    const auto words = [this](Command what, std::uint8_t set, ExchangeEnd end) {
        command(Activity::sending, failedReport(what, set), end, at(6));
        EXPECT_EQ(off().light, Light::trouble);
        return off().words;
    };
    for (const auto& [end, reason] :
         std::vector<std::pair<End, std::string>>{{End::lineBusy, "line busy: "},
                                                  {End::portNotOpened, "port not opened: "},
                                                  {End::refused, "refused: "}}) {
        EXPECT_EQ(words(Command::saveSet, 2, end), reason + "set 2 not saved 14:32:06");
        EXPECT_EQ(words(Command::saveSet, 0, end), reason + "default set not saved 14:32:06");
        EXPECT_EQ(words(Command::readSet, 2, end), reason + "set 2 not read 14:32:06");
        EXPECT_EQ(words(Command::readVersions, 0, end), reason + "versions not read 14:32:06");
        EXPECT_EQ(words(Command::sendSoftware, 0, end), reason + "software image not sent 14:32:06");
    }
    for (const auto& [end, reason] :
         std::vector<std::pair<End, std::string>>{{End::noAnswer, "no answer: "},
                                                  {End::damagedAnswer, "damaged answer: "},
                                                  {End::notDisconnected, "not disconnected: "}}) {
        EXPECT_EQ(words(Command::saveSet, 2, end), reason + "set 2 may not be saved 14:32:06");
        EXPECT_EQ(words(Command::readSet, 0, end), reason + "default set not read 14:32:06");
        EXPECT_EQ(words(Command::readVersions, 0, end), reason + "versions not read 14:32:06");
        EXPECT_EQ(words(Command::sendSoftware, 0, end), reason + "software image may be incomplete 14:32:06");
    }
    command(Activity::reading, report(Command::readSet, 4, CommandReport::Result::wrongDigest), End::answered,
            at(7));
    EXPECT_EQ(off(), (Told{Light::trouble, "checksum failed: set 4 not read 14:32:07"}));
}

TEST_F(Follower, ALineInUseByAnotherExchangeIsNoTroubleOfAPoll) {
    ended(LineUser::clipPoll, ExchangeEnd::answered, at(3));
    ended(LineUser::clipPoll, ExchangeEnd::lineBusy, at(5));
    EXPECT_EQ(off(), (Told{Light::off, "last answer 14:32:03"}));
    // An edit that has waited in vain.
    follower.workerState(State::sending, at(6));
    ended(LineUser::liveMode, ExchangeEnd::lineBusy, at(11));
    ended(LineUser::liveMode, ExchangeEnd::lineBusy, at(17));
    follower.workerState(State::failed, at(17));
    EXPECT_EQ(live(), (Told{Light::trouble, "line busy: set not sent 14:32:17"}));
    ended(LineUser::clipPoll, ExchangeEnd::answered, at(20));
    EXPECT_EQ(live(), (Told{Light::sending, "not sent"}));
}

TEST_F(Follower, SwitchingLiveModeOffEndsTheTalkOfSets) {
    follower.workerState(State::wrongSet, at(3));
    follower.liveModeChanged(false);
    EXPECT_EQ(off(), (Told{Light::off, ""}));
    ended(LineUser::clipPoll, ExchangeEnd::noAnswer, at(4));
    follower.liveModeChanged(true);
    EXPECT_EQ(live(), (Told{Light::trouble, "no answer 14:32:04"})) << "silence is no matter of sets";
}

TEST_F(Follower, ATransferUnderWayWhenLiveModeEndsIsFollowedToItsEnd) {
    follower.workerState(State::sending, at(1));
    follower.liveModeChanged(false);
    EXPECT_EQ(off(), (Told{Light::sending, "sending"}));
    follower.workerState(State::confirmed, at(2));
    EXPECT_EQ(off(), (Told{Light::off, "last answer 14:32:02"}));
}

TEST_F(Follower, APortThatIsGoneStandsBeforeEverythingElse) {
    follower.setPort(QStringLiteral("COM3"));
    follower.workerState(State::confirmed, at(1));
    follower.portGone(at(2));
    const Told gone{Light::trouble, "port gone 14:32:02"};
    EXPECT_EQ(off(), gone);
    EXPECT_EQ(live(false, true), gone) << "what was confirmed is out of reach";
    EXPECT_EQ(live(pending), gone);
    for (const ExchangeEnd end : {ExchangeEnd::portNotOpened, ExchangeEnd::noAnswer, ExchangeEnd::lineBusy}) {
        follower.commandStarted(Activity::sending);
        EXPECT_EQ(off(), gone);
        ended(LineUser::clipPoll, end, at(3));
        follower.commandEnded();
        EXPECT_EQ(off(), gone);
        follower.workerState(State::sending, at(4));
        EXPECT_EQ(live(), gone);
        follower.workerState(State::failed, at(5));
        EXPECT_EQ(live(), gone);
    }
    follower.setPort(QStringLiteral("COM4"));
    EXPECT_EQ(off(), (Told{Light::off, ""})) << "it was the other port";
}

TEST_F(Follower, APortThatComesBackIsToldUntilSomethingElseIs) {
    const auto replug = [this] {
        follower.portGone(at(2));
        follower.portBack(at(3));
    };
    replug();
    EXPECT_EQ(off(), (Told{Light::off, "port back 14:32:03"}));
    ended(LineUser::clipPoll, ExchangeEnd::answered, at(4));
    EXPECT_EQ(off(), (Told{Light::off, "port back 14:32:03, last answer 14:32:04"})) << "a poll";
    follower.commandStarted(Activity::reading);
    EXPECT_EQ(off(), (Told{Light::sending, "port back 14:32:03, reading"}));
    follower.commandEnded();
    EXPECT_EQ(off(), (Told{Light::off, "last answer 14:32:04"}));
    replug();
    EXPECT_EQ(live(pending), (Told{Light::sending, "port back 14:32:03, waiting"}));
    follower.workerState(State::sending, at(5));
    EXPECT_EQ(live(), (Told{Light::sending, "port back 14:32:03, sending"}));
    ended(LineUser::liveMode, ExchangeEnd::answered, at(6));
    EXPECT_EQ(live(), (Told{Light::sending, "port back 14:32:03, sending"}));
    follower.workerState(State::confirmed, at(7));
    EXPECT_EQ(live(false, true), (Told{Light::confirmed, "confirmed 14:32:07"}));
    replug();
    EXPECT_EQ(live(false, true), (Told{Light::confirmed, "port back 14:32:03, confirmed 14:32:07"}));
    ended(LineUser::clipPoll, ExchangeEnd::noAnswer, at(8));
    EXPECT_EQ(live(), (Told{Light::trouble, "no answer 14:32:08"}));
}

TEST_F(Follower, TheTroubleOfAPortGoesWithItsReturn) {
    for (const ExchangeEnd end : {ExchangeEnd::portNotOpened, ExchangeEnd::noAnswer}) {
        follower.portGone(at(1));
        ended(LineUser::clipPoll, end, at(2));
        follower.portBack(at(3));
        EXPECT_EQ(off(), (Told{Light::off, "port back 14:32:03"}));
    }
    follower.portGone(at(4));
    follower.workerState(State::sending, at(4));
    follower.exchangeEnded(LineUser::liveMode, ExchangeEnd::portNotOpened, at(5));
    follower.portBack(at(6));
    EXPECT_EQ(live(), (Told{Light::trouble, "port back 14:32:06, port not opened 14:32:05"}))
        << "the box about it may still be open";
}

TEST_F(Follower, AnotherDeviceUnderTheSameNameIsTroubleUntilItHasBeenSpokenTo) {
    const Told another{Light::trouble, "another device 14:32:03"};
    for (const ExchangeEnd end : {ExchangeEnd::answered, ExchangeEnd::portNotOpened, ExchangeEnd::noAnswer}) {
        ended(LineUser::clipPoll, ExchangeEnd::answered, at(1));
        follower.portGone(at(2));
        follower.portReplaced(at(3));
        EXPECT_EQ(off(), another);
        EXPECT_EQ(live(false, true), another);
        EXPECT_EQ(live(pending), (Told{Light::sending, "waiting"}));
        ended(LineUser::clipPoll, ExchangeEnd::lineBusy, at(4));
        EXPECT_EQ(off(), another);
        ended(LineUser::clipPoll, end, at(5));
        EXPECT_NE(off(), another);
    }
}

TEST_F(Follower, RepeatedBoxesOfTheClipDetectionAreALineWithACount) {
    follower.boxRepeated(2);
    EXPECT_EQ(off(), (Told{Light::off, ""})) << "it stands beside the trouble";
    ended(LineUser::clipPoll, ExchangeEnd::portNotOpened, at(1));
    EXPECT_EQ(off(), (Told{Light::trouble,
                           "port not opened 14:32:01, clip detection: "
                           "\"Cannot open COM port!\" 2 times"}));
    follower.portGone(at(2));
    follower.boxRepeated(130);
    EXPECT_EQ(off(), (Told{Light::trouble,
                           "port gone 14:32:02, clip detection: "
                           "\"Cannot open COM port!\" 130 times"}));
    follower.boxRepeated(0);
    EXPECT_EQ(off(), (Told{Light::trouble, "port gone 14:32:02"}));
}

}  // namespace
}  // namespace tessavo::test
