#include "target/target_device.h"

#include <algorithm>
#include <array>
#include <utility>

namespace tessavo {

namespace {

constexpr std::uint8_t junkByte = 0x2E;
constexpr std::uint8_t wrongRequestByte = 0x58;
constexpr std::uint8_t firstBlock = 1;

}  // namespace

TargetDevice::TargetDevice(TargetMemory memory, Options options, TargetLog log)
    : faults_(std::move(options.faults)),
      log_(log),
      processor_(std::move(memory), {.versions = options.versions, .faults = faults_, .files = options.files},
                 std::move(log)),
      collector_({.frame = [this](std::span<const std::uint8_t> frame) { handleFrame(frame); },
                  .disconnect = [this] { handleDisconnect(); },
                  .dropped =
                      [this](std::size_t count) {
                          note(log_, "dropped " + countOf(count, "byte") + " that made no frame");
                      }}),
      outgoing_(options.timePerByte) {}

void TargetDevice::startMessage() {
    messageType_ = 0;
    expectedBlock_ = firstBlock;
}

void TargetDevice::opened(TargetTime now) {
    if (cablePulled_) {
        return;
    }
    closed();
    open_ = true;
    now_ = now;
    note(log_, "port opened");
    sendRequestByte();
}

void TargetDevice::openedAgain(TargetTime now) {
    if (open_) {
        now_ = now;
        note(log_, "port opened once more while in use");
        sendRequestByte();
    }
}

void TargetDevice::sendRequestByte() {
    if (faults_.noRequest) {
        note(log_, "fault: no request byte");
    } else if (faults_.wrongRequests > 0) {
        const std::vector<std::uint8_t> wrong(faults_.wrongRequests, wrongRequestByte);
        outgoing_.push(wrong, now_);
        note(log_, "fault: sent " + countOf(wrong.size(), "wrong request byte"));
    } else {
        outgoing_.push(std::array{control_byte::request}, now_);
        note(log_, "sent the request byte");
    }
}

void TargetDevice::closed() {
    if (!open_) {
        return;
    }
    collector_.reset();
    const bool incomplete = processor_.dropSoftware();
    note(log_, incomplete ? "port closed before the software image was complete; dropped it" : "port closed");
    startMessage();
    framesSeen_ = 0;
    outgoing_.clear();
    open_ = false;
}

std::size_t TargetDevice::passable(std::size_t count) const {
    const auto& cable = faults_.cable;
    return cable ? std::min<std::uint64_t>(count, *cable - passed_) : count;
}

void TargetDevice::countPassed(std::size_t count) {
    passed_ += count;
    if (faults_.cable && passed_ >= *faults_.cable && !cablePulled_) {
        note(log_, "fault: cable pulled after " + countOf(passed_, "byte"));
        closed();
        cablePulled_ = true;
    }
}

void TargetDevice::receive(std::span<const std::uint8_t> bytes, TargetTime now) {
    if (!open_) {
        return;
    }
    now_ = now;
    const auto arrived = bytes.first(passable(bytes.size()));
    collector_.receive(arrived, now);
    countPassed(arrived.size());
}

std::optional<TargetTime> TargetDevice::nextDue() const {
    return outgoing_.nextDue();
}

std::vector<std::uint8_t> TargetDevice::takeDue(TargetTime now) {
    auto bytes = outgoing_.take(now, passable(SIZE_MAX));
    countPassed(bytes.size());
    return bytes;
}

void TargetDevice::answer(std::uint8_t byte) {
    const std::vector<std::uint8_t> junk(faults_.junkBytes, junkByte);
    outgoing_.push(junk, now_);
    outgoing_.push(std::array{byte}, now_);
}

void TargetDevice::handleFrame(std::span<const std::uint8_t> frame) {
    ++framesSeen_;
    const std::string block = "block " + std::to_string(framesSeen_);
    if (faults_.silentBlocks.contains(framesSeen_)) {
        note(log_, "fault: no answer to " + block);
        return;
    }
    if (faults_.negativeBlocks.contains(framesSeen_)) {
        note(log_, "fault: negative answer to " + block);
        answer(control_byte::negative);
        return;
    }
    XModemMessage message;
    if (!ParseFrame(frame, message)) {
        note(log_, "refused " + block + ": wrong CRC or complement");
        answer(control_byte::negative);
        return;
    }
    if (message.type == frame_type::block2k) {
        handleRequest(message);
    } else {
        handleBlock(message);
    }
}

void TargetDevice::handleBlock(const XModemMessage& message) {
    const bool transferRunning = messageType_ != 0;
    const auto before = static_cast<std::uint8_t>(expectedBlock_ - 1);
    if (transferRunning && message.type == messageType_ && message.blockNumber == before) {
        note(log_, "block number " + std::to_string(message.blockNumber) + " came again; not taken twice");
        answer(control_byte::positive);
        return;
    }
    if (message.blockNumber != expectedBlock_ || (transferRunning && message.type != messageType_)) {
        note(log_, "refused block number " + std::to_string(message.blockNumber) + " of type " +
                       std::to_string(message.type) + ": out of turn");
        answer(control_byte::negative);
        return;
    }
    if (!takeBlock(message)) {
        answer(control_byte::negative);
        return;
    }
    messageType_ = message.type;
    ++expectedBlock_;
    answer(control_byte::positive);
}

bool TargetDevice::takeBlock(const XModemMessage& message) {
    const auto payload = std::span{message.payload}.first(message.size);
    if (message.type == frame_type::block1k) {
        return processor_.takeSoftwareBlock(payload);
    }
    if (messageType_ != 0) {
        note(log_, "took a further block of a message; nothing in it is known");
        return true;
    }
    return message.type == frame_type::block4k ? processor_.takeLiveImage(payload)
                                               : processor_.takeCommand(payload);
}

void TargetDevice::handleDisconnect() {
    processor_.finishSoftware();
    startMessage();
    if (faults_.noDisconnect) {
        note(log_, "disconnected; fault: no answer");
        return;
    }
    note(log_, "disconnected");
    answer(control_byte::positive);
}

void TargetDevice::handleRequest(const XModemMessage& message) {
    if (message.blockNumber != firstBlock) {
        note(log_, "refused a request with block number " + std::to_string(message.blockNumber));
        answer(control_byte::negative);
        return;
    }
    const auto reply = processor_.replyTo(std::span{message.payload}.first(message.size));
    if (!reply) {
        answer(control_byte::negative);
        return;
    }
    answer(control_byte::positive);
    sendReply(*reply);
}

void TargetDevice::sendReply(std::span<const std::uint8_t> payload) {
    std::vector<std::uint8_t> frame(maximumFrameSize);
    frame.resize(BuildFrame(frame_type::block4k, firstBlock, payload, frame));
    if (faults_.damagedReply) {
        frame[frame.size() / 2] ^= 0x10;
        note(log_, "fault: damaged the reply");
    }
    if (faults_.wrongComplement) {
        frame[2] ^= 0x01;
        note(log_, "fault: wrong complement in the reply");
    }
    if (faults_.truncatedReply) {
        frame.resize(*faults_.truncatedReply);
        note(log_, "fault: reply ends after " + countOf(frame.size(), "byte"));
    }
    outgoing_.push(frame, now_ + faults_.late);
}

}  // namespace tessavo
