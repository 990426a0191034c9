#include <benchmark/benchmark.h>
#include <chrono>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "comm/serial_port_line.h"
#include "comm/transfer_engine.h"
#include "comm/transfer_timing.h"
#include "target/pty_target.h"

// A whole exchange with the simulated target, in units of the pauses that the protocol asks for.

namespace tessavo::bench {
namespace {

constexpr std::size_t blockSize = 1024;
constexpr std::size_t blockCount = 8;

class NoLog final : public ICommLog {
 public:
    void log(LogKind /*kind*/, std::string_view /*text*/) override {}
};

class NoBoxes final : public IMessageBox {
 public:
    BoxAnswer show(std::string_view /*text*/, BoxIcon /*icon*/, BoxButtons /*buttons*/) override {
        return BoxAnswer::ok;
    }
};

void exchange(benchmark::State& state) {
    PtyTarget target(TargetMemory::holding(factoryImage()), {});
    if (const std::string failure = target.start(); !failure.empty()) {
        state.SkipWithError(failure.c_str());
    }
    SystemClock clock;
    NoLog log;
    NoBoxes boxes;
    CSemaphore lock;
    TransferEngine engine({.makeLine = makeSerialPortLine,
                           .clock = clock,
                           .log = log,
                           .boxes = boxes,
                           .lock = lock,
                           .portName = [&] { return target.portName(); },
                           .progress = {}});
    // Whole blocks together with the checksum that is appended to the message.
    const std::vector<std::uint8_t> message(blockCount * blockSize - 2, 0xA5);
    for ([[maybe_unused]] auto _ : state) {
        if (!engine.SendToTarget(message, MessageType::blocks1kWithCrc)) {
            state.SkipWithError("the exchange failed");
            break;
        }
    }
}
BENCHMARK(exchange)
    ->Name("exchange")
    ->Iterations(1)
    ->Repetitions(5)
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);

/// The pauses of the same exchange: behind each block and behind each answer to one.
void pauses(benchmark::State& state) {
    constexpr auto prescribed = blockCount * (timing::pauseAfterBlock + timing::pauseAfterAnswer);
    for ([[maybe_unused]] auto _ : state) {
        state.SetIterationTime(std::chrono::duration<double>(prescribed).count());
    }
}
BENCHMARK(pauses)->Name("pauses")->Iterations(1)->Repetitions(5)->UseManualTime()->Unit(
    benchmark::kMillisecond);

}  // namespace
}  // namespace tessavo::bench
