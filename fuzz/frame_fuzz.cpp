#include <algorithm>
#include <array>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "check.h"
#include "comm/framing.h"
#include "target/frame_collector.h"

// Received bytes as a frame, as a payload that goes out and comes back, and as a stream that arrives in
// pieces.

namespace {

using namespace tessavo;

void parseReceived(std::span<const std::uint8_t> bytes) {
    const auto message = std::make_unique<XModemMessage>();
    if (!ParseFrame(bytes, *message)) {
        return;
    }
    const std::size_t size = payloadSize(message->type);
    fuzz::check(message->size == size, "a valid frame has its type's payload size");
    fuzz::check(message->complement == static_cast<std::uint8_t>(~message->blockNumber),
                "a valid frame's complement matches its block number");
    if (size == 0) {
        return;
    }
    std::array<std::uint8_t, maximumFrameSize> rebuilt{};
    const std::size_t built =
        BuildFrame(message->type, message->blockNumber, std::span(message->payload).first(size), rebuilt);
    fuzz::check(built == size + frameOverhead && built <= bytes.size(), "a valid frame has its whole length");
    fuzz::check(std::memcmp(rebuilt.data(), bytes.data(), built) == 0,
                "a valid frame is built again byte by byte");
}

void sendAndReceive(std::span<const std::uint8_t> bytes) {
    if (bytes.size() < 4) {
        return;
    }
    constexpr std::array<std::uint8_t, 4> types{frame_type::block128, frame_type::block1k,
                                                frame_type::block2k, frame_type::block4k};
    const std::uint8_t type = types.at(bytes[0] % types.size());
    const std::uint8_t number = bytes[1];
    const std::size_t damage = bytes[2] * 256U + bytes[3];
    const std::span<const std::uint8_t> payload = bytes.subspan(4);
    const std::size_t size = payloadSize(type);

    std::array<std::uint8_t, maximumFrameSize> frame{};
    const std::size_t built = BuildFrame(type, number, payload, frame);
    const auto message = std::make_unique<XModemMessage>();
    fuzz::check(built == size + frameOverhead, "a frame has its type's size");
    fuzz::check(ParseFrame(std::span(frame).first(built), *message), "a built frame is valid");
    fuzz::check(!ParseFrame(std::span(frame).first(built - 1), *message), "a frame cut short is not");

    // One wrong bit anywhere behind the type byte never passes.
    const std::size_t place = 1 + damage / 8 % (built - 1);
    frame.at(place) ^= static_cast<std::uint8_t>(1U << (damage % 8));
    fuzz::check(!ParseFrame(std::span(frame).first(built), *message), "a damaged frame is not valid");
    fuzz::check(BuildFrame(type, number, payload, std::span(frame).first(built - 1)) == 0,
                "a frame that does not fit is not built");
}

/// What a collector made of a stream.
struct Collected {
    std::vector<std::uint8_t> frames;
    std::size_t dropped = 0;
    std::size_t disconnects = 0;

    friend bool operator==(const Collected&, const Collected&) = default;
};

/// Collects the whole stream, in pieces of one length, and ends the connection.
Collected collect(std::span<const std::uint8_t> bytes, std::size_t piece) {
    Collected all;
    FrameCollector collector({.frame =
                                  [&](std::span<const std::uint8_t> frame) {
                                      fuzz::check(!frame.empty() && payloadSize(frame[0]) != 0 &&
                                                      frame.size() == payloadSize(frame[0]) + frameOverhead,
                                                  "a collected frame is as long as its type asks");
                                      all.frames.insert(all.frames.end(), frame.begin(), frame.end());
                                  },
                              .disconnect = [&] { ++all.disconnects; },
                              .dropped = [&](std::size_t count) { all.dropped += count; }});
    for (; !bytes.empty(); bytes = bytes.subspan(std::min(piece, bytes.size()))) {
        collector.receive(bytes.first(std::min(piece, bytes.size())), TargetTime{0});
    }
    collector.reset();
    return all;
}

void receiveStream(std::span<const std::uint8_t> bytes) {
    if (bytes.empty()) {
        return;
    }
    const auto stream = bytes.subspan(1);
    const Collected whole = collect(stream, stream.size());
    fuzz::check(whole.frames.size() + whole.dropped + whole.disconnects == stream.size(),
                "every byte of a stream ends up somewhere");
    fuzz::check(collect(stream, 1 + bytes[0] % 64) == whole,
                "it does not matter in what pieces bytes arrive");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::span<const std::uint8_t> bytes(data, size);
    parseReceived(bytes);
    sendAndReceive(bytes);
    receiveStream(bytes);
    return 0;
}
