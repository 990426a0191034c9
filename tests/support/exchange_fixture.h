#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "comm/transfer_engine.h"
#include "support/fake_line.h"
#include "support/transcript.h"
#include "support/virtual_clock.h"
#include "support/waiting.h"

namespace tessavo::test {

class NotedLog final : public ICommLog {
 public:
    explicit NotedLog(Transcript& transcript) : transcript_(transcript) {}
    void log(LogKind kind, std::string_view text) override;

 private:
    Transcript& transcript_;
};

class NotedBoxes final : public IMessageBox {
 public:
    explicit NotedBoxes(Transcript& transcript) : transcript_(transcript) {}
    BoxAnswer show(std::string_view text, BoxIcon icon, BoxButtons buttons) override;

 private:
    Transcript& transcript_;
};

class NotedLock final : public CSemaphore {
 public:
    explicit NotedLock(Transcript& transcript) : transcript_(transcript) {}
    bool take(std::chrono::milliseconds limit) override;
    void release() override;

    bool available = true;

 private:
    Transcript& transcript_;
};

/// An engine whose outside is noted, step by step, in one transcript.
class ExchangeTest : public testing::Test {
 protected:
    Transcript transcript;
    VirtualClock clock{transcript};
    FakeLine port{transcript, clock};
    NotedLog log{transcript};
    NotedBoxes boxes{transcript};
    NotedLock lock{transcript};
    std::string portName = "COM3";
    std::vector<std::pair<std::size_t, std::size_t>> progress;
    TransferEngine engine{{port.maker(), clock, log, boxes, lock, [this] { return portName; },
                           [this](std::size_t done, std::size_t all) { progress.emplace_back(done, all); }}};

    /// The transcript must be these stretches and nothing else, and every scripted answer must be used up.
    void expectTranscript(const std::vector<Lines>& parts) const;

    // Stretches that every exchange is made of.
    [[nodiscard]] Lines opened(const std::string& preparation) const;
    static Lines connected();
    static Lines flushed();
    static Lines blockWritten(std::size_t frameSize);
    /// One attempt of the send path's answer loop.
    static Lines answerRead(const std::string& outcome);
    static Lines blockTaken();
    /// One attempt of the disconnect.
    static Lines disconnectTry(const std::string& outcome);
    static Lines disconnected();
    static Lines closed();
    /// The parts of an exchange up to the reply of a receive.
    static Lines requestWritten();
    static Lines requestTaken();
};

/// CRC by its definition, a bit at a time.
std::uint16_t bitwiseCrc(std::span<const std::uint8_t> bytes);

/// A frame put together by hand.
Bytes frameOf(std::uint8_t type, std::uint8_t blockNumber, std::span<const std::uint8_t> payload);

/// A reply frame as the target sends it: type 5, padded with zeros to 4096 bytes.
Bytes replyFrame(std::span<const std::uint8_t> start);

Bytes concatenated(std::span<const std::uint8_t> first, std::span<const std::uint8_t> second);

/// Bytes without a visible pattern, the same for the same seed.
Bytes randomBytes(std::size_t size, std::uint32_t seed);

}  // namespace tessavo::test
