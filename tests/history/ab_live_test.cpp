#include <cstring>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "comm/live_worker.h"
#include "comm/plain_image_gate.h"
#include "comm/played_copy.h"
#include "history/ab_memories.h"
#include "history/session.h"
#include "params/volume_gain_table.h"
#include "support/device_line.h"
#include "target/exchange_host.h"

// A and B with the simulated target at the other end of the line, in virtual time: what the target holds.

namespace tessavo::test {
namespace {

/// Live Mode is on. B is 2.5 dB louder than A, and heard.
class LevelMatched : public ::testing::Test, protected Session {
 protected:
    LevelMatched() {
        for (std::uint8_t c = 0; c < channelCount; ++c) {
            state.setRouterSource({c}, 1);
        }
        state.setSelectionMask(0xFF);
        stepTo(3);
        memories.store();
        switchSides();
        stepTo(5.5F);
        memories.store();
        state.setLiveMode(true);
        worker.step();
        rounds = 0;
    }
    void switchSides() {
        const AbSide to = otherSide(memories.heard());
        memories.switchSides([this, to](const TuningSnapshot& next) {
            const SemaphoreHold hold = played.hold();
            played.setLoweredSteps(matched ? memories.levelMatch(to).loweredSteps : 0);
            state.restore(next);
        });
    }
    void setMatched(bool on) {
        matched = on;
        played.setLoweredSteps(on ? memories.levelMatch(memories.heard()).loweredSteps : 0);
        state.raiseUpdatePending();
    }
    [[nodiscard]] Bytes held() const {
        const ImageBytes& live = device.device.memory().live;
        return {live.begin(), live.end()};
    }
    /// The image with this volume in every channel.
    [[nodiscard]] Bytes imageWith(float levelDb) const {
        ParameterImage image = state.image();
        for (ChannelImageBlock& channel : image.channels) {
            channel.gainWord = gainWordOf(levelDb, 0.0F);
        }
        return bytesOf(image);
    }

    bool matched = false;
    int rounds = 0;
    AbMemories memories{state, history};
    DeviceHost device;
    VirtualClock clock;
    ExchangeHost host{[this](const std::string& /*portName*/) {
                          return std::make_unique<DeviceLine>(device.device, clock);
                      },
                      "device", clock};
    PlayedCopy played;
    PlainImageGate gate;
    LiveWorker worker{state,
                      host.engine,
                      clock,
                      host.boxes,
                      [this](LiveWorker::State told, const ParameterImage& /*copy*/) {
                          gate.note(told, played.tookPlain());
                          rounds += told == LiveWorker::State::confirmed ? 1 : 0;
                      },
                      nullptr,
                      &played};
    TargetCommands commands{state, host.engine, host.boxes};
};

TEST_F(LevelMatched, WithoutMatchingTheTargetHoldsTheImageToTheByte) {
    EXPECT_SAME_BYTES(held(), image());
    for (int i = 0; i < 4; ++i) {
        switchSides();
        worker.step();
        EXPECT_SAME_BYTES(held(), image());
        EXPECT_FALSE(gate.isNeeded());
    }
    EXPECT_EQ(rounds, 4);
}

TEST_F(LevelMatched, TheLouderSideIsLoweredInTheTargetAndNowhereElse) {
    setMatched(true);
    const Bytes before = row();
    worker.step();
    EXPECT_SAME_BYTES(held(), imageWith(3.0F));
    EXPECT_SAME_BYTES(row(), before) << "the sets";
    switchSides();
    worker.step();
    EXPECT_SAME_BYTES(held(), image()) << "A is the softer one";
    switchSides();
    worker.step();
    EXPECT_SAME_BYTES(held(), imageWith(3.0F));
    EXPECT_SAME_BYTES(image(), imageWith(5.5F));
    setMatched(false);
    worker.step();
    EXPECT_SAME_BYTES(held(), image());
}

TEST_F(LevelMatched, ASwitchIsOneSend) {
    setMatched(true);
    worker.step();
    for (int i = 0; i < 4; ++i) {
        rounds = 0;
        switchSides();
        worker.step();
        worker.step();
        worker.step();
        EXPECT_EQ(rounds, 1);
        EXPECT_SAME_BYTES(held(), bytesOf(played.of(state.image())));
    }
}

TEST_F(LevelMatched, ALoweredCopyIsInTheWayOfSavingUntilTheImageItselfIsConfirmed) {
    EXPECT_FALSE(gate.isNeeded());
    setMatched(true);
    EXPECT_FALSE(gate.isNeeded()) << "not sent yet";
    worker.step();
    EXPECT_TRUE(gate.isNeeded());
    EXPECT_FALSE(commands.SaveSetToRam(2)) << "the target itself refuses another digest";
    setMatched(false);
    EXPECT_TRUE(gate.isNeeded()) << "not sent yet";
    const std::uint64_t before = gate.rounds();
    worker.step();
    EXPECT_TRUE(gate.wait(before, Milliseconds{0}));
    EXPECT_FALSE(gate.isNeeded());
    EXPECT_TRUE(commands.SaveSetToRam(2));
    const ImageBytes& saved = device.device.memory().sets[2];
    EXPECT_SAME_BYTES(Bytes(saved.begin(), saved.end()), image());
}

}  // namespace
}  // namespace tessavo::test
