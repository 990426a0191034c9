#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <gtest/gtest.h>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "history/history.h"
#include "history/recovery_file.h"
#include "support/harness.h"

namespace tessavo::test {

/// Somebody who tunes, with a clock of his own.
class RecoverySession {
 public:
    explicit RecoverySession(std::uint64_t seed = 1) : random_(seed) {}

    /// One step: another volume of one channel, now and then in another set.
    void edit() {
        if (random_() % 4 == 0) {
            tuning.state.selectSet(static_cast<std::uint32_t>(random_() % setCount));
        }
        now += std::chrono::milliseconds(1 + random_() % 5000);
        const std::size_t channel = random_() % channelCount;
        tuning.state.edit(FieldId::volume, {channel, 0}, static_cast<double>(++edits_) / 100, true);
        history.commit("Volume " + std::to_string(edits_) + " \u2212 \u00e4");
    }
    void edit(std::size_t times) {
        for (std::size_t i = 0; i < times; ++i) {
            edit();
        }
    }
    /// A step that changes every byte of every set.
    void load() {
        tuning.state.replaceStore(recordOf<ParameterStore>(randomStore(random_)));
        history.commit("Opened random.eqs");
    }

    [[nodiscard]] RecoveryState state() const {
        RecoveryState state;
        state.trail = history.trail(recoveryStepLimit);
        state.filterMode = 2;
        state.documentPath = std::filesystem::path(u8"/somewhere/K\u00e4fer.eqs");
        state.documentMemory = {recordOf<ParameterStore>(Bytes(storeSize, 0x5A)),
                                FileStamp{10601, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16}},
                                300};
        state.time = now;
        state.process = 4711;
        return state;
    }
    [[nodiscard]] std::shared_ptr<const RecoveryState> shared() const {
        return std::make_shared<const RecoveryState>(state());
    }

    WallTime now{std::chrono::milliseconds(1795342867123)};
    Tuning tuning;
    History history{tuning.state, [this] { return now; }};

 private:
    std::mt19937_64 random_;
    std::size_t edits_ = 0;
};

inline bool isSame(const TuningSnapshot& one, const TuningSnapshot& other) {
    return std::memcmp(&one, &other, sizeof one) == 0;
}

inline void expectSameSteps(const Steps& actual, const Steps& expected) {
    ASSERT_EQ(actual.size(), expected.size());
    const auto same = [](const ByteDiff& one, const ByteDiff& other) {
        return std::ranges::equal(one.bytes(), other.bytes());
    };
    for (std::size_t i = 0; i < actual.size(); ++i) {
        EXPECT_EQ(actual[i]->text, expected[i]->text) << i;
        EXPECT_EQ(actual[i]->time, expected[i]->time) << i;
        EXPECT_EQ(actual[i]->set, expected[i]->set) << i;
        EXPECT_TRUE(same(actual[i]->lead, expected[i]->lead)) << i;
        EXPECT_TRUE(same(actual[i]->change, expected[i]->change)) << i;
    }
}

inline void expectSameMemory(const std::optional<DocumentMemory>& actual,
                             const std::optional<DocumentMemory>& expected) {
    ASSERT_EQ(actual.has_value(), expected.has_value());
    if (!actual) {
        return;
    }
    EXPECT_EQ(actual->stamp, expected->stamp);
    EXPECT_EQ(actual->bytesInFile, expected->bytesInFile);
    ASSERT_EQ(actual->store.has_value(), expected->store.has_value());
    if (actual->store) {
        EXPECT_SAME_BYTES(bytesOf(*actual->store), bytesOf(*expected->store));
    }
}

inline void expectSameState(const RecoveryState& actual, const RecoveryState& expected) {
    EXPECT_TRUE(isSame(actual.trail->state, expected.trail->state));
    EXPECT_TRUE(isSame(actual.trail->begun, expected.trail->begun));
    EXPECT_TRUE(isSame(actual.trail->settled, expected.trail->settled));
    expectSameSteps(actual.trail->done, expected.trail->done);
    expectSameSteps(actual.trail->undone, expected.trail->undone);
    EXPECT_EQ(actual.filterMode, expected.filterMode);
    EXPECT_EQ(actual.documentPath, expected.documentPath);
    expectSameMemory(actual.documentMemory, expected.documentMemory);
    EXPECT_EQ(actual.time, expected.time);
    EXPECT_EQ(actual.process, expected.process);
    EXPECT_EQ(actual.isSaved, expected.isSaved);
}

/// Whether a result is this trouble.
inline bool isTrouble(const std::variant<RecoveryState, RecoveryTrouble>& result, RecoveryTrouble trouble) {
    const auto* found = std::get_if<RecoveryTrouble>(&result);
    return found != nullptr && *found == trouble;
}

}  // namespace tessavo::test
