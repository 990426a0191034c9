#pragma once

#include <chrono>
#include <cstdint>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "base/md5.h"
#include "comm/framing.h"
#include "target/target_device.h"

namespace tessavo::test {

using Bytes = std::vector<std::uint8_t>;

/// A frame as a host sends it: padded, or filled with zeros as requests are.
inline Bytes frameOf(std::uint8_t type, std::uint8_t block, Bytes payload) {
    if (type == frame_type::block2k) {
        payload.resize(payloadSize(type), 0);
    }
    Bytes frame(maximumFrameSize);
    frame.resize(BuildFrame(type, block, payload, frame));
    return frame;
}

inline ImageBytes imageOf(std::uint8_t seed) {
    ImageBytes image{};
    for (std::size_t i = 0; i < image.size(); ++i) {
        image[i] = static_cast<std::uint8_t>((i * 31 + seed * 7U) & 0xFF);
    }
    return image;
}

/// A target of which no two sets are alike, and whose images begin with other words than 3384.
inline TargetMemory memoryOf(std::uint8_t seed) {
    TargetMemory memory;
    memory.live = imageOf(static_cast<std::uint8_t>(seed + 9));
    for (std::size_t set = 0; set < memory.sets.size(); ++set) {
        memory.sets.at(set) = imageOf(static_cast<std::uint8_t>(seed + set));
    }
    return memory;
}

inline Bytes liveMessage(const ImageBytes& image) {
    Bytes message(image.begin(), image.end());
    const auto digest = md5(image);
    message.insert(message.end(), digest.begin(), digest.end());
    return message;
}

inline Bytes liveFrame(const ImageBytes& image) {
    return frameOf(frame_type::block4k, 1, liveMessage(image));
}

inline Bytes saveFrame(std::uint8_t set, const ImageBytes& image) {
    Bytes message{command_code::saveSet, set};
    const auto digest = md5(image);
    message.insert(message.end(), digest.begin(), digest.end());
    return frameOf(frame_type::block128, 1, message);
}

inline Bytes requestFrame(Bytes request) {
    return frameOf(frame_type::block2k, 1, std::move(request));
}

inline const Bytes requestByte{control_byte::request};
inline const Bytes positive{control_byte::positive};
inline const Bytes negative{control_byte::negative};
inline const Bytes disconnect{control_byte::disconnect};
inline const Bytes silence{};

/// A host at the other end of a device, in virtual time.
class DeviceHost {
 public:
    explicit DeviceHost(TargetDevice::Options options = {},
                        TargetMemory memory = TargetMemory::holding(imageOf(0)))
        : device(std::move(memory), std::move(options),
                 [this](TargetLogKind kind, std::string_view text) { lines.emplace_back(kind, text); }) {}

    /// Opens the port and returns what the device sends within a second.
    Bytes open() {
        device.opened(now);
        return readFromDevice();
    }
    void close() { device.closed(); }

    /// Sends bytes and returns what the device sends within `wait`.
    Bytes exchange(std::span<const std::uint8_t> bytes, TargetTime wait = std::chrono::seconds(1)) {
        device.receive(bytes, now);
        return readFromDevice(wait);
    }

    Bytes readFromDevice(TargetTime wait = std::chrono::seconds(1)) {
        now += wait;
        return device.takeDue(now);
    }

    /// Opens the port and pushes one frame; returns its answer.
    Bytes push(std::span<const std::uint8_t> frame) {
        close();
        open();
        return exchange(frame);
    }

    /// Opens the port and asks; returns the reply's payload, empty unless answer and reply are right.
    Bytes ask(Bytes request) {
        const Bytes heard = push(requestFrame(std::move(request)));
        XModemMessage message;
        if (heard.size() != 1 + maximumFrameSize || heard[0] != control_byte::positive ||
            !ParseFrame(std::span{heard}.subspan(1), message) || message.type != frame_type::block4k) {
            return {};
        }
        return {message.payload.begin(), message.payload.end()};
    }

    bool logged(std::string_view part) const {
        for (const auto& line : lines) {
            if (line.second.find(part) != std::string::npos) {
                return true;
            }
        }
        return false;
    }

    TargetTime now = std::chrono::seconds(5);
    std::vector<std::pair<TargetLogKind, std::string>> lines;
    TargetDevice device;
};

}  // namespace tessavo::test
