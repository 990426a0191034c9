#pragma once

#include <cstdint>
#include <cstring>
#include <memory>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "copies/restore.h"
#include "copies/target_copy.h"
#include "support/device_host.h"
#include "target/exchange_host.h"

namespace tessavo::test {

inline ParameterImage parametersOf(const ImageBytes& bytes) {
    ParameterImage image;
    std::memcpy(&image, bytes.data(), sizeof image);
    return image;
}

inline ImageBytes bytesOf(const ParameterImage& image) {
    ImageBytes bytes{};
    std::memcpy(bytes.data(), &image, sizeof image);
    return bytes;
}

/// Images for all six sets, as a backup of another target would have them.
inline std::vector<SetToWrite> setsOf(const TargetMemory& memory) {
    std::vector<SetToWrite> sets;
    sets.reserve(targetSetNumbers.size());
    for (const std::uint8_t set : targetSetNumbers) {
        sets.push_back({.targetSet = set, .image = parametersOf(memory.sets.at(set))});
    }
    return sets;
}

/// A simulated target and an engine that talks to it, in virtual time; notes what goes over the line.
class CopyTarget {
 public:
    explicit CopyTarget(const std::vector<std::string>& faults = {}, TargetMemory memory = memoryOf(10),
                        std::uint32_t baud = 0)
        : device({.faults = faultsOf(faults), .timePerByte = byteTime(baud)}, std::move(memory)) {}

    [[nodiscard]] ITransfers& transfers() { return host_.engine; }
    [[nodiscard]] IClock& clock() { return notedClock_; }
    [[nodiscard]] const TargetMemory& memory() const { return device.device.memory(); }
    [[nodiscard]] Milliseconds now() { return time_.now(); }

    DeviceHost device;
    std::vector<Bytes> written;         ///< what the engine wrote, each call
    std::uint64_t passed = 0;           ///< bytes in both directions
    std::vector<std::int64_t> pauses;   ///< in ms
    std::size_t exchanges = 0;          ///< how often the port was opened
    bool opens = true;                  ///< false: there is no such port
    std::size_t pausesUntilCut = 1000;  ///< the pause behind these is cut short

 private:
    class NotedLine final : public DeviceLine {
     public:
        explicit NotedLine(CopyTarget& target)
            : DeviceLine(target.device.device, target.time_, target.opens), target_(target) {}
        std::uint32_t open() override {
            ++target_.exchanges;
            return DeviceLine::open();
        }
        LineRead read(std::span<std::uint8_t> bytes, Milliseconds timeout) override {
            const LineRead result = DeviceLine::read(bytes, timeout);
            target_.passed += result.count;
            return result;
        }
        std::uint32_t write(std::span<const std::uint8_t> bytes, Milliseconds timeout) override {
            target_.passed += bytes.size();
            target_.written.emplace_back(bytes.begin(), bytes.end());
            return DeviceLine::write(bytes, timeout);
        }

     private:
        CopyTarget& target_;
    };
    class NotedClock final : public IClock {
     public:
        explicit NotedClock(CopyTarget& target) : target_(target) {}
        Milliseconds now() override { return target_.time_.now(); }
        bool sleep(Milliseconds duration) override {
            if (target_.pausesUntilCut == 0) {
                return false;
            }
            --target_.pausesUntilCut;
            target_.pauses.push_back(duration.count());
            return target_.time_.sleep(duration);
        }

     private:
        CopyTarget& target_;
    };

    VirtualClock time_;
    NotedClock notedClock_{*this};
    ExchangeHost host_{[this](const std::string& /*portName*/) { return std::make_unique<NotedLine>(*this); },
                       "device", notedClock_};
};

/// Ends after so many exchanges.
inline CopyWatch endingAfter(std::size_t exchanges) {
    return {.progress = {}, .mayGoOn = [exchanges]() mutable { return exchanges-- > 0; }, .nothingSent = {}};
}

/// Lists each exchange as it begins.
inline CopyWatch listing(std::vector<CopyProgress>& steps) {
    return {.progress = [&steps](const CopyProgress& progress) { steps.push_back(progress); },
            .mayGoOn = {},
            .nothingSent = {}};
}

}  // namespace tessavo::test
