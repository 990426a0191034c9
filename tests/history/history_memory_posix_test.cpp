#include <gtest/gtest.h>
#include <malloc.h>

#include "history/long_history.h"

// What the allocator gave out for a history, against what the history says of itself.

namespace tessavo::test {
namespace {

constexpr std::size_t mebibyte = std::size_t{1024} * 1024;

std::size_t givenOut() {
    const struct mallinfo2 info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

// Whether the numbers are those of the allocator in use.
bool isAsked() {
    const std::size_t before = givenOut();
    const std::vector<char> bytes(4 * mebibyte);
    return givenOut() >= before + bytes.size();
}

TEST(HistoryMemory, IsWhatTheAllocatorGaveOut) {
    ASSERT_TRUE(isAsked()) << "another allocator is in use";
    const SessionFiles files(1);
    std::mt19937_64 random(2);
    auto session = std::make_unique<Tuning>();
    const std::size_t before = givenOut();
    auto history = std::make_unique<History>(session->state);
    for (int step = 0; history->steps().size() < 10000; ++step) {
        makeUsualStep(session->state, files, random, step);
        history->commit();
        session->display.curves = {};
        session->lock.asked = {};
    }
    // As in a long session in Live Mode: each step was confirmed.
    const std::size_t ofSteps = givenOut() - before;
    for (int step = 0; step < 10000; ++step) {
        history->markNotice("The target has confirmed the image");
    }
    const std::size_t all = givenOut() - before;
    RecordProperty("bytes of the history", std::to_string(history->memory()));
    RecordProperty("bytes of the allocator", std::to_string(ofSteps));
    RecordProperty("bytes with marks", std::to_string(all));
    EXPECT_LE(ofSteps, history->memory() + 3 * sizeof(TuningSnapshot) + sizeof(History) + 10000)
        << "three states beside the steps";
    EXPECT_GE(2 * ofSteps, history->memory()) << "and it does not exaggerate";
    EXPECT_LT(all, 30 * mebibyte);
}

TEST(HistoryMemory, StaysBelowThirtyMebibytesWhateverHappens) {
    ASSERT_TRUE(isAsked()) << "another allocator is in use";
    std::mt19937_64 random(4);
    const std::array stores{recordOf<ParameterStore>(randomStore(random)),
                            recordOf<ParameterStore>(randomStore(random))};
    Tuning tuning;
    const std::size_t before = givenOut();
    History history(tuning.state);
    for (int step = 0; history.dropped() < 100; ++step) {
        // Small steps among large ones, as many as fit.
        if (step % 20 == 0) {
            tuning.state.replaceStore(stores.at(static_cast<std::size_t>(step / 20 % 2)));
        } else {
            tuning.state.setVolume(static_cast<float>(step % 20) / 10, true);
        }
        history.commit();
        history.markConfirmed(tuning.state.image(), "The target has confirmed the image");
        tuning.display.curves = {};
        tuning.lock.asked = {};
        ASSERT_LT(givenOut() - before, 30 * mebibyte) << step;
        ASSERT_LT(step, 200000);
    }
}

}  // namespace
}  // namespace tessavo::test
