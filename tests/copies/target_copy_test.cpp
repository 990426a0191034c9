#include "copies/target_copy.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <set>

#include "comm/transfer_timing.h"
#include "copies/copy_target.h"
#include "target/fault_names.h"

namespace tessavo::test {
namespace {

using ::testing::Each;
using ::testing::ElementsAreArray;
using ::testing::IsEmpty;

std::size_t countOf(const TargetCopy& copy, SetState state) {
    return static_cast<std::size_t>(std::ranges::count(copy.sets, state, &SetCopy::state));
}

TEST(BackUpTarget, ReadsEachSetAsItArrivesAndTheVersions) {
    CopyTarget target;
    const BackUp backup = backUp(target.transfers());
    EXPECT_FALSE(backup.cancelled);
    EXPECT_TRUE(backup.copy.everySetSound());
    EXPECT_TRUE(backup.copy.everySetRead());
    ASSERT_TRUE(backup.copy.versions.has_value());
    EXPECT_EQ(backup.copy.versions->hardware, 0x00000102U);
    EXPECT_EQ(backup.copy.versions->software, 0x00010006U);
    for (const SetCopy& set : backup.copy.sets) {
        const ImageBytes image = memoryOf(10).sets.at(set.targetSet);
        EXPECT_EQ(bytesOf(set.image().value()), image) << targetSetText(set.targetSet);
        const Bytes digest(set.reply.begin() + 3404, set.reply.begin() + 3420);
        EXPECT_THAT(digest, ElementsAreArray(md5(image)));
    }
}

TEST(BackUpTarget, SendsThePrescribedExchangesAndNothingElse) {
    CopyTarget target;
    ASSERT_FALSE(backUp(target.transfers()).cancelled);
    std::vector<Bytes> expected;
    for (const Bytes& request :
         {Bytes{4, 1}, Bytes{4, 2}, Bytes{4, 3}, Bytes{4, 4}, Bytes{4, 5}, Bytes{4, 0}, Bytes{5}}) {
        expected.push_back(requestFrame(request));
        expected.push_back(disconnect);
    }
    EXPECT_THAT(target.written, ElementsAreArray(expected));
    EXPECT_THAT(target.pauses, IsEmpty());
    EXPECT_EQ(target.exchanges, 7U);
    EXPECT_EQ(target.memory().sets, memoryOf(10).sets);
    EXPECT_EQ(target.memory().live, memoryOf(10).live);
}

TEST(BackUpTarget, TakesTheTimeOfItsBytesAndOfThePrescribedQuietAndNoMore) {
    CopyTarget target({}, memoryOf(10), 115200);
    const Milliseconds start = target.now();
    ASSERT_TRUE(backUp(target.transfers()).copy.everySetSound());
    // Request byte, answer, reply and last answer; what the host writes takes no time on this line.
    const auto wire = byteTime(115200) * (7 * (1 + 1 + static_cast<int>(maximumFrameSize) + 1));
    const auto quiet = 7 * timing::flushWait;
    const auto took = target.now() - start;
    EXPECT_LE(took, std::chrono::ceil<Milliseconds>(wire + quiet));
    EXPECT_GE(took, std::chrono::floor<Milliseconds>(wire));
}

TEST(BackUpTarget, TellsOfEachExchangeBeforeIt) {
    CopyTarget target;
    std::vector<CopyProgress> steps;
    ASSERT_FALSE(backUp(target.transfers(), listing(steps)).cancelled);
    ASSERT_EQ(steps.size(), 7U);
    for (std::size_t i = 0; i < steps.size(); ++i) {
        EXPECT_EQ(steps[i].done, i);
        EXPECT_EQ(steps[i].all, 7U);
        EXPECT_EQ(steps[i].act, i < 6 ? CopyAct::readSet : CopyAct::readVersions);
        EXPECT_EQ(steps[i].targetSet, i < 6 ? targetSetNumbers.at(i) : 0);
    }
}

TEST(BackUpTarget, IsAskedBeforeEveryExchangeWhetherItGoesOn) {
    for (std::size_t exchanges = 0; exchanges <= 7; ++exchanges) {
        CopyTarget target;
        const BackUp backup = backUp(target.transfers(), endingAfter(exchanges));
        EXPECT_EQ(backup.cancelled, exchanges < 7);
        EXPECT_EQ(target.exchanges, exchanges);
        EXPECT_EQ(countOf(backup.copy, SetState::sound), std::min<std::size_t>(exchanges, 6));
        EXPECT_EQ(backup.copy.versions.has_value(), exchanges == 7);
        EXPECT_EQ(backup.copy.isEmpty(), exchanges == 0);
    }
}

/// Gives one set in another way than the target does.
class Spoiling final : public ITransfers {
 public:
    Spoiling(ITransfers& transfers, std::uint8_t spoiled, bool fails)
        : transfers_(transfers), spoiled_(spoiled), fails_(fails) {}
    bool SendToTarget(std::span<const std::uint8_t> data, MessageType type) override {
        return transfers_.SendToTarget(data, type);
    }
    bool ReceiveFromTarget(std::span<std::uint8_t> reply, std::span<const std::uint8_t> request) override {
        const bool answered = transfers_.ReceiveFromTarget(reply, request);
        if (request.size() != 2 || request[1] != spoiled_) {
            return answered;
        }
        reply[1000] ^= 0x40;
        return answered && !fails_;
    }

 private:
    ITransfers& transfers_;
    std::uint8_t spoiled_;
    bool fails_;
};

TEST(BackUpTarget, ADamagedSetOrOneThatFailsIsNamedAndTheOthersAreRead) {
    for (const bool fails : {false, true}) {
        for (const std::uint8_t spoiled : targetSetNumbers) {
            CopyTarget target;
            Spoiling transfers(target.transfers(), spoiled, fails);
            const TargetCopy copy = backUp(transfers).copy;
            EXPECT_EQ(countOf(copy, SetState::sound), 5U);
            EXPECT_EQ(copy.set(spoiled).state, fails ? SetState::failed : SetState::wrongDigest);
            EXPECT_EQ(copy.set(spoiled).image().has_value(), false);
            EXPECT_EQ(copy.everySetRead(), !fails);
            EXPECT_FALSE(copy.everySetSound());
            EXPECT_TRUE(copy.versions.has_value());
            // A damaged set stays as it arrived, a failed one leaves nothing.
            const ImageBytes image = memoryOf(10).sets.at(spoiled);
            EXPECT_EQ(copy.set(spoiled).reply[1000], fails ? 0 : image[1000] ^ 0x40);
        }
    }
}

TEST(BackUpTarget, EveryFaultOfTheTargetIsTold) {
    struct Case {
        std::string fault;
        SetState sets;
        bool versions;
    };
    const std::vector<Case> cases{
        {"no-request", SetState::failed, false},
        {"wrong-request=4", SetState::failed, false},
        {"negative=1", SetState::failed, false},
        {"silence=1", SetState::failed, false},
        {"junk=4", SetState::sound, true},
        {"junk=5", SetState::failed, false},
        {"damaged-reply", SetState::failed, false},
        {"truncated-reply", SetState::failed, false},
        {"wrong-complement", SetState::failed, false},
        {"late=9999", SetState::sound, true},
        {"wrong-confirmation", SetState::sound, true},
        {"wrong-digest", SetState::wrongDigest, true},
        {"no-disconnect", SetState::failed, false},
        {"cable=1", SetState::failed, false},
    };
    std::set<std::string> tried;
    for (const Case& each : cases) {
        tried.insert(faultName(each.fault));
        CopyTarget target({each.fault});
        const BackUp backup = backUp(target.transfers());
        EXPECT_EQ(countOf(backup.copy, each.sets), 6U) << each.fault;
        EXPECT_EQ(backup.copy.versions.has_value(), each.versions) << each.fault;
        EXPECT_FALSE(backup.cancelled) << each.fault;
        EXPECT_EQ(backup.copy.isEmpty(), each.sets == SetState::failed) << each.fault;
    }
    for (const std::string& form : faultForms()) {
        EXPECT_TRUE(tried.contains(faultName(form))) << form << " has no row here";
    }
}

TEST(ReadTargetSet, ReadsOneSetThroughItsOwnExchange) {
    for (const std::uint8_t number : targetSetNumbers) {
        CopyTarget target;
        const SetCopy set = readTargetSet(target.transfers(), number);
        EXPECT_EQ(set.targetSet, number);
        EXPECT_EQ(set.state, SetState::sound);
        EXPECT_EQ(bytesOf(set.image().value()), memoryOf(10).sets.at(number));
        EXPECT_THAT(target.written, ElementsAreArray({requestFrame({4, number}), disconnect}));
    }
    CopyTarget wrong({"wrong-digest"});
    EXPECT_EQ(readTargetSet(wrong.transfers(), 2).state, SetState::wrongDigest);
    CopyTarget silent({"no-request"});
    const SetCopy set = readTargetSet(silent.transfers(), 2);
    EXPECT_EQ(set.state, SetState::failed);
    EXPECT_THAT(set.reply, Each(0));
}

}  // namespace
}  // namespace tessavo::test
