#include "comm/transfer_engine.h"

#include <algorithm>
#include <array>
#include <optional>
#include <utility>
#include <vector>

#include "comm/port_list.h"
#include "comm/transfer_timing.h"

namespace tessavo {

namespace {

constexpr int attemptLimit = 5;
constexpr int lastAttempt = attemptLimit - 1;
constexpr std::uint32_t baudRate = 115200;
constexpr std::uint8_t dataBits = 8;
constexpr std::uint8_t firstBlock = 1;

struct BlockPlan {
    std::uint8_t frameType;
    std::string_view preparation;
    bool appendsCrc;
};

constexpr BlockPlan requestPlan{frame_type::block2k, "Prepare XModem2k Message", false};

std::optional<BlockPlan> planOf(MessageType type) {
    switch (type) {
        case MessageType::blocks128:
            return BlockPlan{frame_type::block128, "Prepare XModem128 Message", false};
        case MessageType::blocks1kWithCrc:
            return BlockPlan{frame_type::block1k, "Prepare XModem1k Message", true};
        case MessageType::blocks4k:
            return BlockPlan{frame_type::block4k, "Prepare XModem4k Message", false};
    }
    return std::nullopt;
}

std::size_t blocksIn(std::size_t messageSize, std::size_t blockSize) {
    return (messageSize + blockSize - 1) / blockSize;
}

// Every block can be cut from it whole: what lies behind the message is padding.
std::vector<std::uint8_t> workBuffer(std::span<const std::uint8_t> data, const BlockPlan& plan) {
    const std::size_t crcSize = plan.appendsCrc ? 2 : 0;
    std::vector<std::uint8_t> work(data.size() + maximumPayloadSize + crcSize, control_byte::padding);
    std::copy(data.begin(), data.end(), work.begin());
    if (plan.appendsCrc) {
        const std::uint16_t crc = Crc16(data);
        work[data.size()] = static_cast<std::uint8_t>(crc >> 8);
        work[data.size() + 1] = static_cast<std::uint8_t>(crc & 0xFF);
    }
    return work;
}

// The steps between taking and releasing the lock. Each answers whether the exchange goes on.
class Exchange {
 public:
    explicit Exchange(const TransferEngine::Outside& outside) : outside_(outside) {}

    bool openPort();
    bool connect();
    bool sendBlocks(std::span<const std::uint8_t> work, std::size_t length, std::uint8_t frameType);
    bool request(std::span<const std::uint8_t> command, std::span<std::uint8_t> reply);
    bool disconnect();
    /// Why the step that failed has failed.
    [[nodiscard]] ExchangeEnd failure() const { return failure_; }

 private:
    bool failed(ExchangeEnd why) {
        failure_ = why;
        return false;
    }
    void log(LogKind kind, std::string_view text) { outside_.log.log(kind, text); }
    // The target's silence tells of a write that failed.
    void write(std::span<const std::uint8_t> bytes);
    std::optional<std::uint8_t> readByte(Milliseconds timeout);
    void flushInput();
    bool blockTaken();
    bool requestTaken();
    bool receiveReply(std::span<std::uint8_t> reply);

    const TransferEngine::Outside& outside_;
    ExchangeEnd failure_ = ExchangeEnd::noAnswer;
    std::array<std::uint8_t, maximumFrameSize> frame_{};
};

constexpr std::uint32_t inMilliseconds(Milliseconds duration) {
    return static_cast<std::uint32_t>(duration.count());
}

void Exchange::write(std::span<const std::uint8_t> bytes) {
    outside_.port.Write(bytes.data(), bytes.size(), nullptr, nullptr, inMilliseconds(timing::writeWait));
}

std::optional<std::uint8_t> Exchange::readByte(Milliseconds timeout) {
    std::uint8_t byte = 0;
    std::uint32_t count = 0;
    const std::uint32_t result = outside_.port.Read(&byte, 1, &count, nullptr, inMilliseconds(timeout));
    if (result != serial_result::success || count != 1) {
        return std::nullopt;
    }
    return byte;
}

void Exchange::flushInput() {
    for (std::size_t count = 0; count < flushLimit && readByte(timing::flushWait); ++count) {
    }
}

bool Exchange::openPort() {
    CSerial& port = outside_.port;
    const std::uint32_t opened = port.Open(devicePath(outside_.portName()), 0, 0, true);
    if (opened == serial_result::success) {
        if (port.Setup(baudRate, dataBits, serial_frame::parityNone, serial_frame::stopBitsOne, 0) !=
            serial_result::success) {
            return failed(ExchangeEnd::portNotOpened);
        }
    } else if (opened != serial_result::alreadyInitialised) {
        return failed(ExchangeEnd::portNotOpened);
    }
    port.SetupReadTimeouts(CSerial::blocking);
    return true;
}

bool Exchange::connect() {
    log(LogKind::status, "Connecting to Target");
    for (int attempt = 0; attempt < attemptLimit; ++attempt) {
        log(LogKind::rx, "Wait for REQ");
        const auto byte = readByte(timing::requestWait);
        if (!byte) {
            log(LogKind::error, "Can't connect to Target");
            return false;
        }
        if (*byte == control_byte::request) {
            log(LogKind::status, "Connected to Target");
            return true;
        }
    }
    log(LogKind::error, "No REQ received");
    return false;
}

bool Exchange::sendBlocks(std::span<const std::uint8_t> work, std::size_t length, std::uint8_t frameType) {
    const std::size_t blockSize = payloadSize(frameType);
    const std::size_t blocks = blocksIn(length, blockSize);
    std::uint8_t blockNumber = firstBlock;
    for (std::size_t block = 0; block < blocks; ++block) {
        const std::size_t frameSize =
            BuildFrame(frameType, blockNumber, work.subspan(block * blockSize, blockSize), frame_);
        flushInput();
        log(LogKind::tx, "Send XModem Message");
        write(std::span(frame_).first(frameSize));
        if (!outside_.clock.sleep(timing::pauseAfterBlock) || !blockTaken()) {
            return false;
        }
        ++blockNumber;
        if (outside_.progress) {
            outside_.progress(block + 1, blocks);
        }
    }
    return true;
}

bool Exchange::blockTaken() {
    for (int attempt = 0; attempt < attemptLimit; ++attempt) {
        log(LogKind::rx, "Wait for answer");
        const auto answer = readByte(timing::answerWait);
        if (!outside_.clock.sleep(timing::pauseAfterAnswer)) {
            return false;
        }
        if (!answer) {
            log(LogKind::error, "Wait for answer");
            return false;
        }
        if (*answer == control_byte::positive) {
            log(LogKind::rx, "Answer received");
            return true;
        }
        if (*answer == control_byte::negative) {
            log(LogKind::rx, "Negative answer received");
            return failed(ExchangeEnd::refused);
        }
    }
    log(LogKind::error, "No answer received");
    return false;
}

bool Exchange::request(std::span<const std::uint8_t> command, std::span<std::uint8_t> reply) {
    std::array<std::uint8_t, payloadSize(frame_type::block2k)> payload{};
    std::copy(command.begin(), command.end(), payload.begin());
    const std::size_t frameSize = BuildFrame(frame_type::block2k, firstBlock, payload, frame_);
    flushInput();
    log(LogKind::tx, "Send XModem Message");
    write(std::span(frame_).first(frameSize));
    return requestTaken() && receiveReply(reply);
}

bool Exchange::requestTaken() {
    for (int attempt = 0; attempt < attemptLimit; ++attempt) {
        log(LogKind::rx, "Wait for answer");
        const auto answer = readByte(timing::answerWait);
        if (!answer) {
            log(LogKind::error, "Can't connect to Target");
            return false;
        }
        if (*answer == control_byte::positive) {
            log(LogKind::status, "Answer received");
            return true;
        }
        // A target that refused the request may still answer it; only the last attempt decides.
        if (*answer == control_byte::negative) {
            failure_ = ExchangeEnd::refused;
            if (attempt != lastAttempt) {
                log(LogKind::rx, "Negative answer received");
            }
        }
    }
    log(LogKind::error, "No answer received");
    return false;
}

bool Exchange::receiveReply(std::span<std::uint8_t> reply) {
    log(LogKind::rx, "Receiving XModem message");
    std::uint32_t count = 0;
    const std::uint32_t result =
        outside_.port.Read(frame_.data(), frame_.size(), &count, nullptr, inMilliseconds(timing::replyWait));
    if (result != serial_result::success) {
        log(LogKind::error, "Can't connect to Target");
        // A refusal that came before the request was taken is over by now.
        return failed(count > 0 ? ExchangeEnd::damagedAnswer : ExchangeEnd::noAnswer);
    }
    XModemMessage message;
    if (!ParseFrame(std::span(frame_).first(std::min<std::size_t>(count, frame_.size())), message)) {
        log(LogKind::error, "Invalid message received");
        return failed(ExchangeEnd::damagedAnswer);
    }
    log(LogKind::rx, "Message received");
    std::copy_n(message.payload.begin(), std::min<std::size_t>(message.size, reply.size()), reply.begin());
    return true;
}

bool Exchange::disconnect() {
    log(LogKind::status, "Disconnect from Target");
    for (int attempt = 0; attempt < attemptLimit; ++attempt) {
        log(LogKind::tx, "Send Disconnect Command");
        write(std::span(&control_byte::disconnect, 1));
        log(LogKind::rx, "Wait for answer");
        const auto answer = readByte(timing::answerWait);
        if (!answer) {
            log(LogKind::error, "Disconnecting failed");
            return failed(ExchangeEnd::notDisconnected);
        }
        if (*answer == control_byte::positive) {
            log(LogKind::status, "Disconnected from Target");
            return true;
        }
    }
    log(LogKind::error, "No answer received");
    return failed(ExchangeEnd::notDisconnected);
}

struct ClosedAtEnd {
    explicit ClosedAtEnd(const TransferEngine::Outside& what) : outside(what) {}
    ~ClosedAtEnd() {
        outside.port.Close();
        outside.lock.release();
    }
    ClosedAtEnd(const ClosedAtEnd&) = delete;
    ClosedAtEnd& operator=(const ClosedAtEnd&) = delete;

    const TransferEngine::Outside& outside;
};

void tellEnd(const TransferEngine::Outside& outside, ExchangeEnd end) {
    if (outside.ended) {
        outside.ended(end);
    }
}

template <typename Body>
ExchangeEnd runWithLock(const TransferEngine::Outside& outside, std::string_view preparation, Body body) {
    const ClosedAtEnd closed(outside);
    outside.log.log(LogKind::status, preparation);
    Exchange exchange(outside);
    const bool done = exchange.openPort() && exchange.connect() && body(exchange) && exchange.disconnect();
    return done ? ExchangeEnd::answered : exchange.failure();
}

template <typename Body>
bool run(const TransferEngine::Outside& outside, std::string_view preparation, Body body) {
    if (!outside.lock.take(timing::lockWait)) {
        tellEnd(outside, ExchangeEnd::lineBusy);
        return false;
    }
    if (outside.began) {
        outside.began();
    }
    const ExchangeEnd end = runWithLock(outside, preparation, body);
    tellEnd(outside, end);
    if (end == ExchangeEnd::portNotOpened) {
        // The lock is free by now: while the box waits for the user, other exchanges go on.
        outside.boxes.showPlain(cannotOpenPortText);
        if (outside.portBoxClosed) {
            outside.portBoxClosed();
        }
    }
    return end == ExchangeEnd::answered;
}

}  // namespace

std::size_t blockCount(std::size_t messageSize, MessageType type) {
    const auto plan = planOf(type);
    return plan ? blocksIn(messageSize, payloadSize(plan->frameType)) : 0;
}

TransferEngine::TransferEngine(Outside outside) : outside_(std::move(outside)) {}

bool TransferEngine::SendToTarget(std::span<const std::uint8_t> data, MessageType type) {
    const auto plan = planOf(type);
    if (!plan) {
        return false;
    }
    const std::vector<std::uint8_t> work = workBuffer(data, *plan);
    return run(outside_, plan->preparation,
               [&](Exchange& exchange) { return exchange.sendBlocks(work, data.size(), plan->frameType); });
}

bool TransferEngine::ReceiveFromTarget(std::span<std::uint8_t> reply, std::span<const std::uint8_t> request) {
    if (request.size() > payloadSize(requestPlan.frameType)) {
        return false;
    }
    return run(outside_, requestPlan.preparation,
               [&](Exchange& exchange) { return exchange.request(request, reply); });
}

}  // namespace tessavo
