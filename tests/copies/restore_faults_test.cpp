#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <random>
#include <set>
#include <utility>

#include "copies/copy_target.h"
#include "target/fault_names.h"

// What a restore says of a target that fails, beside what that target then holds.

namespace tessavo::test {
namespace {

using End = RestoreReport::End;
using Plays = PlaysNow::Kind;
using State = RestoredState;

const TargetMemory oldMemory = memoryOf(10);
const TargetMemory newMemory = memoryOf(100);

/// Every set is wholly old or wholly new, and what the report says of each set and of what is played is so.
void expectTrueReport(const RestoreReport& report, const TargetMemory& memory, const std::string& where) {
    for (const RestoreReport::Row& row : report.sets) {
        const ImageBytes& held = memory.sets.at(row.targetSet);
        const bool isOld = held == oldMemory.sets.at(row.targetSet);
        const bool isNew = held == newMemory.sets.at(row.targetSet);
        EXPECT_NE(isOld, isNew) << where << ", set " << int{row.targetSet};
        switch (row.state) {
            case State::untouched:
                EXPECT_TRUE(isOld) << where << ", set " << int{row.targetSet};
                break;
            case State::notCompared:
            case State::done:
                EXPECT_TRUE(isNew) << where << ", set " << int{row.targetSet};
                break;
            case State::differs:
                ADD_FAILURE() << where << ": no target here changes what it has saved";
                break;
            case State::oldOrNew:
                break;
        }
    }
    if (report.plays.kind == Plays::image) {
        EXPECT_EQ(memory.live, newMemory.sets.at(report.plays.targetSet)) << where;
    } else if (report.plays.kind == Plays::asBefore) {
        EXPECT_EQ(memory.live, oldMemory.live) << where;
    }
}

/// What is found when the cable is in again.
void expectVerifyTells(const RestoreReport& report, const TargetMemory& memory, const std::string& where) {
    CopyTarget again({}, memory);
    for (const Comparison& row : compareSets(again.transfers(), setsOf(newMemory))) {
        const bool isNew = memory.sets.at(row.targetSet) == newMemory.sets.at(row.targetSet);
        EXPECT_EQ(row.result, isNew ? Comparison::Result::equal : Comparison::Result::differs) << where;
    }
    EXPECT_EQ(report.sets.size(), 6U);
}

TEST(RestoreFaults, EveryFaultOfTheTargetStopsAtTheFirstSetAndIsTold) {
    struct Case {
        std::string fault;
        End end;
        CopyAct act;  ///< at which it ends
        State first;
        Plays plays;
    };
    const std::vector<Case> cases{
        {"no-request", End::failed, CopyAct::sendLive, State::untouched, Plays::unknown},
        {"wrong-request=5", End::failed, CopyAct::sendLive, State::untouched, Plays::unknown},
        {"negative=1", End::failed, CopyAct::sendLive, State::untouched, Plays::unknown},
        {"silence=1", End::failed, CopyAct::sendLive, State::untouched, Plays::unknown},
        {"junk=5", End::failed, CopyAct::sendLive, State::untouched, Plays::unknown},
        {"no-disconnect", End::failed, CopyAct::sendLive, State::untouched, Plays::unknown},
        {"damaged-reply", End::failed, CopyAct::confirm, State::untouched, Plays::unknown},
        {"truncated-reply", End::failed, CopyAct::confirm, State::untouched, Plays::unknown},
        {"wrong-complement", End::failed, CopyAct::confirm, State::untouched, Plays::unknown},
        {"late=10001", End::failed, CopyAct::confirm, State::untouched, Plays::unknown},
        {"wrong-confirmation", End::failed, CopyAct::confirm, State::untouched, Plays::unknown},
        {"wrong-digest", End::failed, CopyAct::readBack, State::notCompared, Plays::image},
        {"cable=9000", End::failed, CopyAct::confirm, State::untouched, Plays::unknown},
        {"junk=4", End::done, CopyAct::readBack, State::done, Plays::image},
        {"late=9999", End::done, CopyAct::readBack, State::done, Plays::image},
    };
    std::set<std::string> tried;
    for (const Case& each : cases) {
        tried.insert(faultName(each.fault));
        CopyTarget target({each.fault}, oldMemory);
        const RestoreReport report = restoreSets(target.transfers(), target.clock(), setsOf(newMemory));
        EXPECT_EQ(report.end, each.end) << each.fault;
        EXPECT_EQ(report.plays.kind, each.plays) << each.fault;
        EXPECT_EQ(report.sets[0].state, each.first) << each.fault;
        for (std::size_t i = 1; i < report.sets.size(); ++i) {
            EXPECT_EQ(report.sets[i].state, each.end == End::done ? State::done : State::untouched)
                << each.fault;
        }
        EXPECT_EQ(report.place.has_value(), each.end == End::failed) << each.fault;
        if (report.place) {
            EXPECT_EQ(report.place->act, each.act) << each.fault;
            EXPECT_EQ(report.place->targetSet, 1) << each.fault;
        }
        expectTrueReport(report, target.memory(), each.fault);
    }
    for (const std::string& form : faultForms()) {
        EXPECT_TRUE(tried.contains(faultName(form))) << form << " has no row here";
    }
}

/// Where each exchange of a restore without faults begins and ends, in bytes that have passed.
std::vector<std::uint64_t> exchangeEnds() {
    CopyTarget target({}, oldMemory);
    std::vector<std::uint64_t> ends;
    const CopyWatch watch{.progress = [&](const CopyProgress&) { ends.push_back(target.passed); },
                          .mayGoOn = {},
                          .nothingSent = {}};
    EXPECT_EQ(restoreSets(target.transfers(), target.clock(), setsOf(newMemory), watch).end, End::done);
    ends.push_back(target.passed);
    return ends;
}

TEST(RestoreFaults, TheCablePulledWithinAnyExchangeLeavesEachSetOldOrNewAndTheReportSaysWhich) {
    const std::vector<std::uint64_t> ends = exchangeEnds();
    ASSERT_EQ(ends.size(), 25U);
    std::mt19937 random(20261122);
    for (std::size_t exchange = 0; exchange + 1 < ends.size(); ++exchange) {
        for (int cut = 0; cut < 20; ++cut) {
            const auto bytes =
                std::uniform_int_distribution<std::uint64_t>(ends[exchange] + 1, ends[exchange + 1])(random);
            const std::string where =
                "exchange " + std::to_string(exchange) + ", byte " + std::to_string(bytes);
            CopyTarget target({"cable=" + std::to_string(bytes)}, oldMemory);
            const RestoreReport report = restoreSets(target.transfers(), target.clock(), setsOf(newMemory));
            // Without its last byte the last exchange has failed too.
            EXPECT_EQ(report.end == End::done, bytes == ends.back()) << where;
            expectTrueReport(report, target.memory(), where);
            expectVerifyTells(report, target.memory(), where);
            // Those before the one under way are done, those behind it untouched, and no more than one is
            // open.
            for (std::size_t i = 0; i < report.sets.size(); ++i) {
                if (i < exchange / 4) {
                    EXPECT_EQ(report.sets[i].state, State::done) << where;
                } else if (i > exchange / 4 + 1) {
                    EXPECT_EQ(report.sets[i].state, State::untouched) << where;
                }
            }
        }
    }
}

TEST(RestoreFaults, ABackupThroughACableThatIsPulledHoldsWholeSetsOnly) {
    CopyTarget whole({}, oldMemory);
    ASSERT_FALSE(backUp(whole.transfers()).cancelled);
    const std::uint64_t perExchange = whole.passed / 7;
    std::mt19937 random(7);
    for (std::uint64_t exchange = 0; exchange < 7; ++exchange) {
        for (int cut = 0; cut < 20; ++cut) {
            const std::uint64_t bytes = exchange * perExchange + std::uniform_int_distribution<std::uint64_t>(
                                                                     1, perExchange - 1)(random);
            CopyTarget target({"cable=" + std::to_string(bytes)}, oldMemory);
            const TargetCopy copy = backUp(target.transfers()).copy;
            for (std::size_t i = 0; i < copy.sets.size(); ++i) {
                ASSERT_EQ(copy.sets.at(i).state, i < exchange ? SetState::sound : SetState::failed) << bytes;
                if (i < exchange) {
                    EXPECT_EQ(bytesOf(copy.sets.at(i).image().value()),
                              oldMemory.sets.at(targetSetNumbers.at(i)));
                }
            }
            EXPECT_FALSE(copy.versions.has_value());
        }
    }
}

TEST(VerifyFaults, EveryFaultOfTheTargetIsToldOfEverySetAndNothingChanges) {
    using Result = Comparison::Result;
    const std::vector<std::pair<std::string, Result>> cases{
        {"no-request", Result::failed},
        {"wrong-request=5", Result::failed},
        {"negative=1", Result::failed},
        {"silence=1", Result::failed},
        {"junk=5", Result::failed},
        {"no-disconnect", Result::failed},
        {"damaged-reply", Result::failed},
        {"truncated-reply", Result::failed},
        {"wrong-complement", Result::failed},
        {"late=10001", Result::failed},
        {"wrong-digest", Result::wrongDigest},
        {"cable=100", Result::failed},
        {"wrong-confirmation", Result::equal},
        {"junk=4", Result::equal},
        {"late=9999", Result::equal},
    };
    std::set<std::string> tried;
    for (const auto& [fault, result] : cases) {
        tried.insert(faultName(fault));
        CopyTarget target({fault}, oldMemory);
        const std::vector<Comparison> rows = compareSets(target.transfers(), setsOf(oldMemory));
        ASSERT_EQ(rows.size(), 6U);
        for (const Comparison& row : rows) {
            EXPECT_EQ(row.result, result) << fault << ", set " << int{row.targetSet};
        }
        EXPECT_EQ(target.memory().sets, oldMemory.sets) << fault;
        EXPECT_EQ(target.memory().live, oldMemory.live) << fault;
    }
    for (const std::string& form : faultForms()) {
        EXPECT_TRUE(tried.contains(faultName(form))) << form << " has no row here";
    }
}

TEST(VerifyFaults, ThroughACableThatIsPulledOnlyWhatWasReadIsCompared) {
    using Result = Comparison::Result;
    TargetMemory memory = newMemory;
    memory.sets[2] = oldMemory.sets[2];
    CopyTarget whole({}, memory);
    ASSERT_EQ(compareSets(whole.transfers(), setsOf(newMemory)).size(), 6U);
    const std::uint64_t perExchange = whole.passed / 6;
    std::mt19937 random(8);
    for (std::uint64_t exchange = 0; exchange < 6; ++exchange) {
        for (int cut = 0; cut < 20; ++cut) {
            const std::uint64_t bytes = exchange * perExchange + std::uniform_int_distribution<std::uint64_t>(
                                                                     1, perExchange - 1)(random);
            CopyTarget target({"cable=" + std::to_string(bytes)}, memory);
            const std::vector<Comparison> rows = compareSets(target.transfers(), setsOf(newMemory));
            for (std::size_t i = 0; i < rows.size(); ++i) {
                const Result read = rows[i].targetSet == 2 ? Result::differs : Result::equal;
                EXPECT_EQ(rows[i].result, i < exchange ? read : Result::failed) << bytes << ", row " << i;
            }
            EXPECT_EQ(target.memory().sets, memory.sets) << bytes;
        }
    }
}

/// Loses the answer of the target to one message: what was sent has arrived.
class Deaf final : public ITransfers {
 public:
    Deaf(ITransfers& transfers, MessageType lost, bool arrives)
        : transfers_(transfers), lost_(lost), arrives_(arrives) {}
    bool SendToTarget(std::span<const std::uint8_t> data, MessageType type) override {
        if (type != lost_) {
            return transfers_.SendToTarget(data, type);
        }
        if (arrives_) {
            EXPECT_TRUE(transfers_.SendToTarget(data, type));
        }
        return false;
    }
    bool ReceiveFromTarget(std::span<std::uint8_t> reply, std::span<const std::uint8_t> request) override {
        return transfers_.ReceiveFromTarget(reply, request);
    }

 private:
    ITransfers& transfers_;
    MessageType lost_;
    bool arrives_;
};

TEST(RestoreFaults, AfterACommandToSaveThatFailedTheSetItselfTellsWhatItHolds) {
    for (const bool arrives : {true, false}) {
        CopyTarget target({}, oldMemory);
        Deaf transfers(target.transfers(), MessageType::blocks128, arrives);
        std::vector<std::uint8_t> saved;
        const RestoreReport report =
            restoreSets(transfers, target.clock(), setsOf(newMemory), {},
                        [&saved](const SetToWrite& set) { saved.push_back(set.targetSet); });
        EXPECT_EQ(report.end, End::failed);
        EXPECT_EQ(report.place->act, CopyAct::save);
        EXPECT_EQ(report.sets[0].state, arrives ? State::done : State::untouched);
        EXPECT_EQ(saved.size(), arrives ? 1U : 0U);
        EXPECT_EQ(report.plays, (PlaysNow{Plays::image, 1}));
        expectTrueReport(report, target.memory(), arrives ? "arrives" : "does not");
    }
}

/// Saves something else than it was told to.
class Forgetful final : public ITransfers {
 public:
    explicit Forgetful(ITransfers& transfers) : transfers_(transfers) {}
    bool SendToTarget(std::span<const std::uint8_t> data, MessageType type) override {
        return type == MessageType::blocks128 || transfers_.SendToTarget(data, type);
    }
    bool ReceiveFromTarget(std::span<std::uint8_t> reply, std::span<const std::uint8_t> request) override {
        return transfers_.ReceiveFromTarget(reply, request);
    }

 private:
    ITransfers& transfers_;
};

TEST(RestoreFaults, ASetThatComesBackAsSomethingElseIsNamed) {
    CopyTarget target({}, oldMemory);
    Forgetful transfers(target.transfers());
    const RestoreReport report = restoreSets(transfers, target.clock(), setsOf(newMemory));
    EXPECT_EQ(report.end, End::failed);
    EXPECT_EQ(report.place->act, CopyAct::readBack);
    EXPECT_TRUE(report.place->answered);
    EXPECT_EQ(report.sets[0].state, State::differs);
    EXPECT_EQ(report.sets[1].state, State::untouched);
}

}  // namespace
}  // namespace tessavo::test
