#pragma once

#include <algorithm>
#include <array>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "support/device_line.h"
#include "target/fault_plan.h"

namespace tessavo::test {

inline FaultPlan faultsOf(const std::vector<std::string>& texts) {
    FaultPlan plan;
    for (const std::string& text : texts) {
        EXPECT_EQ(addFault(plan, text), "");
    }
    return plan;
}

/// The machine's clock; only pauses are left out.
class NoPauses final : public IClock {
 public:
    Milliseconds now() override { return clock_.now(); }
    bool sleep(Milliseconds /*duration*/) override { return true; }

 private:
    SystemClock clock_;
};

/// A host at the end of a line: with a transfer engine, and with a line of its own to use by hand.
class ExchangeHost {
 public:
    static constexpr Milliseconds longWait{5000};

    ExchangeHost(LineMaker makeLine, std::string portName)
        : ExchangeHost(std::move(makeLine), std::move(portName), noPauses_) {}
    ExchangeHost(LineMaker makeLine, std::string portName, IClock& clock)
        : name(std::move(portName)),
          line(makeLine(name)),
          engine({.makeLine = std::move(makeLine),
                  .clock = clock,
                  .log = log,
                  .boxes = boxes,
                  .lock = lock_,
                  .portName = [this] { return name; },
                  .progress = {}}) {}

    // By hand.
    std::uint32_t open() {
        const std::uint32_t result = line->open();
        return result == serial_result::success ? line->setUp({.baudRate = 115200}) : result;
    }
    Bytes read(std::size_t size, Milliseconds timeout = longWait) {
        Bytes bytes(size);
        bytes.resize(line->read(bytes, timeout).count);
        return bytes;
    }
    std::uint32_t readResult(Milliseconds timeout = longWait) {
        std::uint8_t byte = 0;
        return line->read(std::span(&byte, 1), timeout).result;
    }
    std::uint32_t write(const Bytes& bytes) { return line->write(bytes, longWait); }

    // Whole exchanges.
    bool sendLive(const ImageBytes& image) {
        return engine.SendToTarget(liveMessage(image), MessageType::blocks4k);
    }
    bool save(std::uint8_t set, const ImageBytes& image) {
        Bytes message{command_code::saveSet, set};
        const auto digest = md5(image);
        message.insert(message.end(), digest.begin(), digest.end());
        return engine.SendToTarget(message, MessageType::blocks128);
    }
    /// The payload of the answer is kept in `reply`.
    bool ask(const Bytes& request) { return engine.ReceiveFromTarget(reply, request); }
    bool confirmed() {
        return ask({command_code::confirmLiveSet}) &&
               std::all_of(reply.begin(), reply.begin() + 10, [](std::uint8_t byte) { return byte == 0x11; });
    }

 private:
    NoPauses noPauses_;
    CSemaphore lock_;

 public:
    std::string name;
    std::unique_ptr<ILine> line;
    ErrorLog log;
    NoBoxes boxes;
    TransferEngine engine;
    std::array<std::uint8_t, maximumFrameSize> reply{};
};

}  // namespace tessavo::test
