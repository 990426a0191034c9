#include <benchmark/benchmark.h>
#include <chrono>
#include <string>
#include <string_view>

#include "comm/framing.h"
#include "comm/serial_port_line.h"
#include "comm/transfer_engine.h"
#include "comm/transfer_timing.h"
#include "copies/target_copy.h"
#include "target/paced_queue.h"
#include "target/pty_target.h"

// A backup of the simulated target at the pace of its line, in units of what the line and the protocol take.

namespace tessavo::bench {
namespace {

constexpr std::uint32_t baud = 115200;
constexpr int exchanges = 7;
// Of each exchange: the request byte, the request, its answer, the reply, and the disconnect with its answer.
constexpr int bytesOfExchange = 1 + static_cast<int>(payloadSize(frame_type::block2k) + frameOverhead) + 1 +
                                static_cast<int>(maximumFrameSize) + 1 + 1;

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

void backup(benchmark::State& state) {
    PtyTarget::Options options;
    options.baud = baud;
    PtyTarget target(TargetMemory::holding(factoryImage()), options);
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
    for ([[maybe_unused]] auto _ : state) {
        const TargetCopy copy = backUp(engine).copy;
        if (!copy.everySetSound() || !copy.versions) {
            state.SkipWithError("the backup failed");
            break;
        }
    }
}
BENCHMARK(backup)->Name("backup")->Iterations(1)->Repetitions(3)->UseRealTime()->Unit(
    benchmark::kMillisecond);

/// What the bytes take on the line, and the quiet in front of each request.
void line(benchmark::State& state) {
    constexpr auto prescribed =
        exchanges * (bytesOfExchange * byteTime(baud) + TargetTime(timing::flushWait));
    for ([[maybe_unused]] auto _ : state) {
        state.SetIterationTime(std::chrono::duration<double>(prescribed).count());
    }
}
BENCHMARK(line)
    ->Name("line of a backup")
    ->Iterations(1)
    ->Repetitions(3)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace tessavo::bench
