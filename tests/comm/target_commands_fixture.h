#pragma once

#include <cstring>

#include "comm/target_commands.h"
#include "params/image_digest.h"
#include "support/exchange_fixture.h"

namespace tessavo::test {

/// The bytes that a record holds.
template <typename Record>
Bytes bytesOf(const Record& record) {
    Bytes bytes(sizeof record);
    std::memcpy(bytes.data(), &record, sizeof record);
    return bytes;
}

/// The commands over the exchange of a target that gives scripted answers.
class TargetCommandsTest : public ExchangeTest {
 protected:
    TuningState tuning{boxes};
    TargetCommands commands{tuning, engine, boxes};
    int refreshes = 0;

    void SetUp() override {
        tuning.start();
        transcript.clear();
    }
    void targetTakes(std::size_t blocks) {
        port.answer({0x43});
        for (std::size_t i = 0; i <= blocks; ++i) {
            port.answer({0x06});
        }
    }
    void targetReplies(const Bytes& start) {
        port.answer({0x43, 0x06});
        port.answer(replyFrame(start));
        port.answer({0x06});
    }
    static Bytes requestFrame(const Bytes& command) {
        Bytes payload = command;
        payload.resize(2048);
        return frameOf(3, 1, payload);
    }
    // The image, 20 bytes that mean nothing, and the digest.
    static Bytes setReply(const ParameterImage& image) {
        Bytes reply = bytesOf(image);
        reply.resize(3404, 0xA7);
        return concatenated(reply, md5Image(image));
    }
    // The image of a set unlike the fresh one.
    ParameterImage otherImage() {
        TuningState other(boxes);
        other.start();
        other.setSelectionMask(0xFF);
        other.setVolume(4.5F, true);
        other.setBandFrequency(2, 1234, true);
        other.setRouterSource(RecordChannel{3}, 5);
        return other.image();
    }
    bool load(std::uint8_t targetSet) {
        return commands.LoadSetFromRam(targetSet, [this] { ++refreshes; });
    }
    void expectNothingSent(const Lines& expected = {}) const {
        EXPECT_THAT(transcript.lines(), testing::ElementsAreArray(expected));
        EXPECT_TRUE(port.written.empty());
    }
};

}  // namespace tessavo::test
