#include <QTest>
#include <random>

#include "comm_page/page_bench.h"

namespace tessavo::testing {
namespace {

class Soak : public PageBench {
 protected:
    void edit(std::mt19937& random) {
        const auto at = [&](int low, int high) {
            return static_cast<float>(low + static_cast<int>(random() % static_cast<unsigned>(high - low)));
        };
        const bool final = random() % 4 != 0;
        TuningState& state = tuning.state;
        state.setSelectionMask(static_cast<std::uint8_t>(1U << (random() % 8)));
        switch (random() % 6) {
            case 0:
                state.setVolume(at(-60, 6), final);
                break;
            case 1:
                state.setBandFrequency(random() % 8, static_cast<std::uint16_t>(at(20, 20000)), final);
                break;
            case 2:
                state.setBandGainOrQ(random() % 8, BandValue::gain, at(-18, 18), final);
                break;
            case 3:
                state.setDelay(at(0, 20), final);
                break;
            case 4:
                state.setInputBandGain(random() % 13, at(-20, 20), final);
                break;
            default:
                state.setChannelFlag({static_cast<std::uint8_t>(random() % 8)}, random() % 2 == 0);
        }
    }
};

TEST_F(Soak, TwoThousandEditsWithRandomTroubleEndInStep) {
    const std::vector<std::string> troubles[]{{},
                                              {},
                                              {"no-request"},
                                              {"wrong-request=2"},
                                              {"negative=1"},
                                              {"silence=1"},
                                              {"junk=2"},
                                              {"damaged-reply"},
                                              {"truncated-reply=100"},
                                              {"late=11000"},
                                              {"wrong-confirmation"},
                                              {"no-disconnect"},
                                              {"cable=2000"},
                                              {"cable=5000"}};
    std::mt19937 random(2026);
    int confirmed = 0;
    int failed = 0;
    std::unique_ptr<LiveWorker> worker;
    const auto plug = [&](const std::vector<std::string>& faults) {
        worker.reset();
        plugIn(faults);
        worker =
            std::make_unique<LiveWorker>(tuning.state, *engine, clock, boxes, [&](LiveWorker::State result) {
                confirmed += result == LiveWorker::State::confirmed ? 1 : 0;
                failed += result == LiveWorker::State::noAnswer || result == LiveWorker::State::wrongSet;
            });
    };
    plug({});
    tuning.state.setLiveMode(true);
    for (int i = 0; i < 2000; ++i) {
        if (i % 25 == 0) {
            plug(troubles[random() % std::size(troubles)]);
        }
        edit(random);
        if (random() % 8 == 0) {
            worker->step();
        }
        if (random() % 100 == 0) {
            click(saveButton(static_cast<int>(random() % 6)));
        }
        if (random() % 100 == 0) {
            click(button(comm_id::update));
        }
    }
    EXPECT_GT(confirmed, 20);
    EXPECT_GT(failed, 20);
    plug({});
    tuning.state.setVolume(-1.0F, true);
    worker->step();
    EXPECT_EQ(memory().live, imageBytes());
    EXPECT_FALSE(tuning.state.updatePending());
    click(saveButton(5));
    EXPECT_EQ(memory().sets[5], imageBytes());
    tuning.state.setLiveMode(false);
    tuning.state.setVolume(-33.0F, true);
    click(loadButton(5));
    // What was saved comes back, but for the delays: they are read with a rounding of their own.
    const auto& back = memory().sets[5];
    Bytes expected(back.begin(), back.end());
    const Bytes image = tuning.image();
    for (std::size_t channel = 0; channel < 8; ++channel) {
        const std::size_t delay = imageBlockOffset(channel) + 12;
        std::copy_n(image.begin() + static_cast<std::ptrdiff_t>(delay), 4,
                    expected.begin() + static_cast<std::ptrdiff_t>(delay));
    }
    EXPECT_SAME_BYTES(image, expected);
}

TEST_F(Soak, AnEditDuringASendIsSentNext) {
    tuning.state.setLiveMode(true);
    int edits = 0;
    LiveWorker worker(tuning.state, *engine, clock, boxes, [&](LiveWorker::State state) {
        // The worker has taken the update by now: this edit comes while the image before it is under way.
        if (state == LiveWorker::State::sending && edits < 500) {
            ++edits;
            tuning.state.setVolume(static_cast<float>(-(edits % 60)), true);
        }
    });
    int rounds = 0;
    while (tuning.state.updatePending() && rounds < 1000) {
        worker.step();
        ++rounds;
    }
    EXPECT_EQ(edits, 500);
    EXPECT_EQ(rounds, 501);
    EXPECT_EQ(memory().live, imageBytes());
    EXPECT_TRUE(shown.empty());
}

}  // namespace
}  // namespace tessavo::testing
