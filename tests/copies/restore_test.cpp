#include "copies/restore.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <set>

#include "copies/copy_target.h"
#include "target/fault_names.h"

namespace tessavo::test {
namespace {

using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::IsEmpty;
using End = RestoreReport::End;
using Plays = PlaysNow::Kind;
using State = RestoredState;

std::vector<State> statesOf(const RestoreReport& report) {
    std::vector<State> states;
    for (const RestoreReport::Row& row : report.sets) {
        states.push_back(row.state);
    }
    return states;
}

std::vector<SetToWrite> firstSets(std::size_t count) {
    std::vector<SetToWrite> sets = setsOf(memoryOf(100));
    sets.resize(count);
    return sets;
}

TEST(RestoreSets, PutsEveryByteBackAndTheTargetPlaysTheLastOne) {
    CopyTarget target;
    std::vector<std::uint8_t> saved;
    const RestoreReport report =
        restoreSets(target.transfers(), target.clock(), setsOf(memoryOf(100)), {},
                    [&saved](const SetToWrite& set) { saved.push_back(set.targetSet); });
    EXPECT_EQ(report.end, End::done);
    EXPECT_FALSE(report.place.has_value());
    EXPECT_EQ(statesOf(report), std::vector<State>(6, State::done));
    EXPECT_EQ(target.memory().sets, memoryOf(100).sets);
    EXPECT_EQ(report.plays, (PlaysNow{Plays::image, 0}));
    EXPECT_EQ(target.memory().live, memoryOf(100).sets[0]);
    EXPECT_THAT(saved, ElementsAreArray(targetSetNumbers));
}

TEST(RestoreSets, LeavesTheSetsThatWereNotAskedFor) {
    CopyTarget target;
    const std::vector<SetToWrite> all = setsOf(memoryOf(100));
    const std::vector<SetToWrite> sets{all[3], all[1]};
    EXPECT_EQ(restoreSets(target.transfers(), target.clock(), sets).end, End::done);
    TargetMemory expected = memoryOf(10);
    expected.sets[4] = memoryOf(100).sets[4];
    expected.sets[2] = memoryOf(100).sets[2];
    EXPECT_EQ(target.memory().sets, expected.sets);
    EXPECT_EQ(target.memory().live, memoryOf(100).sets[2]);
}

TEST(RestoreSets, SendsThePrescribedExchangesAndNothingElse) {
    CopyTarget target;
    const ImageBytes image = memoryOf(100).sets[1];
    ASSERT_EQ(restoreSets(target.transfers(), target.clock(), firstSets(1)).end, End::done);
    EXPECT_THAT(target.written,
                ElementsAre(liveFrame(image), disconnect, requestFrame({8}), disconnect, saveFrame(1, image),
                            disconnect, requestFrame({4, 1}), disconnect));
    // Behind each block and its answer, and between the image and its confirmation.
    EXPECT_THAT(target.pauses, ElementsAre(200, 50, 1000, 200, 50));
}

TEST(RestoreSets, OfNoSetsDoesNothing) {
    CopyTarget target;
    const RestoreReport report = restoreSets(target.transfers(), target.clock(), {});
    EXPECT_EQ(report.end, End::done);
    EXPECT_EQ(report.plays.kind, Plays::asBefore);
    EXPECT_EQ(target.exchanges, 0U);
}

TEST(RestoreSets, TellsOfEachExchangeBeforeIt) {
    CopyTarget target;
    std::vector<CopyProgress> steps;
    ASSERT_EQ(restoreSets(target.transfers(), target.clock(), firstSets(2), listing(steps)).end, End::done);
    ASSERT_EQ(steps.size(), 8U);
    constexpr std::array acts{CopyAct::sendLive, CopyAct::confirm, CopyAct::save, CopyAct::readBack};
    for (std::size_t i = 0; i < steps.size(); ++i) {
        EXPECT_EQ(steps[i].done, i);
        EXPECT_EQ(steps[i].all, 8U);
        EXPECT_EQ(steps[i].act, acts.at(i % 4));
        EXPECT_EQ(steps[i].targetSet, i / 4 + 1);
    }
}

TEST(RestoreSets, CancelledBeforeAnyExchangeTellsWhatEachSetHoldsAndWhatIsPlayed) {
    for (std::size_t exchanges = 0; exchanges < 8; ++exchanges) {
        CopyTarget target;
        const RestoreReport report =
            restoreSets(target.transfers(), target.clock(), firstSets(2), endingAfter(exchanges));
        EXPECT_EQ(report.end, End::cancelled);
        EXPECT_EQ(target.exchanges, exchanges);
        ASSERT_TRUE(report.place.has_value());
        EXPECT_EQ(report.place->targetSet, exchanges / 4 + 1);
        const std::size_t within = exchanges % 4;
        EXPECT_EQ(report.sets[0].state, exchanges >= 4 ? State::done
                                        : within == 3  ? State::notCompared
                                                       : State::untouched);
        EXPECT_EQ(report.sets[1].state, exchanges == 7 ? State::notCompared : State::untouched);
        if (exchanges == 0) {
            EXPECT_EQ(report.plays.kind, Plays::asBefore);
        } else if (within == 1) {
            EXPECT_EQ(report.plays.kind, Plays::unknown);
        } else {
            const std::uint8_t played = exchanges > 5 ? 2 : 1;
            EXPECT_EQ(report.plays, (PlaysNow{Plays::image, played})) << exchanges;
            EXPECT_EQ(target.memory().live, memoryOf(100).sets.at(played));
        }
    }
}

TEST(RestoreSets, APauseThatIsCutShortCancels) {
    CopyTarget target;
    target.pausesUntilCut = 2;  // those of the live image
    const RestoreReport report = restoreSets(target.transfers(), target.clock(), firstSets(2));
    EXPECT_EQ(report.end, End::cancelled);
    EXPECT_EQ(report.plays.kind, Plays::unknown);
    EXPECT_EQ(statesOf(report), std::vector<State>(2, State::untouched));
    EXPECT_EQ(target.exchanges, 1U);
}

TEST(RestoreSets, APortThatIsNotThereLeavesTheTargetPlayingWhatItPlayed) {
    CopyTarget target;
    target.opens = false;
    const CopyWatch watch{.progress = {}, .mayGoOn = {}, .nothingSent = [] { return true; }};
    const RestoreReport report = restoreSets(target.transfers(), target.clock(), firstSets(2), watch);
    EXPECT_EQ(report.end, End::failed);
    EXPECT_EQ(report.plays.kind, Plays::asBefore);
    EXPECT_EQ(statesOf(report), std::vector<State>(2, State::untouched));
    EXPECT_EQ(target.exchanges, 1U);
    // Whoever cannot tell must fear that something went out.
    EXPECT_EQ(restoreSets(target.transfers(), target.clock(), firstSets(2)).plays.kind, Plays::unknown);
}

TEST(CompareSets, NamesTheSetsThatDifferAndCountsTheirBytes) {
    TargetMemory memory = memoryOf(100);
    memory.sets[3][0] ^= 1;
    memory.sets[3][3383] ^= 0x80;
    memory.sets[0][1700] ^= 1;
    CopyTarget target({}, memory);
    const std::vector<Comparison> rows = compareSets(target.transfers(), setsOf(memoryOf(100)));
    ASSERT_EQ(rows.size(), 6U);
    for (const Comparison& row : rows) {
        const std::size_t differing = row.targetSet == 3 ? 2 : row.targetSet == 0 ? 1 : 0;
        EXPECT_EQ(row.differingBytes, differing);
        EXPECT_EQ(row.result, differing > 0 ? Comparison::Result::differs : Comparison::Result::equal);
    }
    EXPECT_EQ(target.memory().sets, memory.sets);
    EXPECT_EQ(target.memory().live, memory.live);
    ASSERT_EQ(target.written.size(), 12U);
    EXPECT_EQ(target.written[0], requestFrame({4, 1}));
    EXPECT_EQ(target.written[10], requestFrame({4, 0}));
}

TEST(CompareSets, WhatCannotBeReadDoesNotStopTheOthersAndCancelDoes) {
    CopyTarget wrong({"wrong-digest"}, memoryOf(100));
    for (const Comparison& row : compareSets(wrong.transfers(), setsOf(memoryOf(100)))) {
        EXPECT_EQ(row.result, Comparison::Result::wrongDigest);
    }
    CopyTarget silent({"no-request"}, memoryOf(100));
    for (const Comparison& row : compareSets(silent.transfers(), setsOf(memoryOf(100)))) {
        EXPECT_EQ(row.result, Comparison::Result::failed);
    }
    CopyTarget target({}, memoryOf(100));
    const auto rows = compareSets(target.transfers(), setsOf(memoryOf(100)), endingAfter(2));
    for (std::size_t i = 0; i < rows.size(); ++i) {
        EXPECT_EQ(rows[i].result, i < 2 ? Comparison::Result::equal : Comparison::Result::notRead);
    }
}

}  // namespace
}  // namespace tessavo::test
