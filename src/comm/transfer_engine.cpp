#include "comm/transfer_engine.h"

#include <algorithm>
#include <array>
#include <optional>
#include <utility>
#include <vector>

#include "comm/transfer_timing.h"

namespace tessavo {

namespace {

constexpr int attemptLimit = 5;
constexpr int lastAttempt = attemptLimit - 1;
constexpr LineSettings lineSettings{.baudRate = 115200,
                                    .dataBits = 8,
                                    .parity = serial_frame::parityNone,
                                    .stopBits = serial_frame::stopBitsOne};
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
    Exchange(const TransferEngine::Dependencies& dependencies, ILine& line)
        : dependencies_(dependencies), line_(line) {}

    bool openLine();
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
    void log(LogKind kind, std::string_view text) { dependencies_.log.log(kind, text); }
    // The target's silence tells of a write that failed.
    void write(std::span<const std::uint8_t> bytes);
    std::optional<std::uint8_t> readByte(Milliseconds timeout);
    void flushInput();
    bool blockTaken();
    bool requestTaken();
    bool receiveReply(std::span<std::uint8_t> reply);

    const TransferEngine::Dependencies& dependencies_;
    ILine& line_;
    ExchangeEnd failure_ = ExchangeEnd::noAnswer;
    std::array<std::uint8_t, maximumFrameSize> frame_{};
};

void Exchange::write(std::span<const std::uint8_t> bytes) {
    line_.write(bytes, timing::writeWait);
}

std::optional<std::uint8_t> Exchange::readByte(Milliseconds timeout) {
    std::uint8_t byte = 0;
    const LineRead read = line_.read(std::span(&byte, 1), timeout);
    if (read.result != serial_result::success || read.count != 1) {
        return std::nullopt;
    }
    return byte;
}

void Exchange::flushInput() {
    for (std::size_t count = 0; count < flushLimit && readByte(timing::flushWait); ++count) {
    }
}

bool Exchange::openLine() {
    const bool ready =
        line_.open() == serial_result::success && line_.setUp(lineSettings) == serial_result::success;
    return ready || failed(ExchangeEnd::portNotOpened);
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
        if (!dependencies_.clock.sleep(timing::pauseAfterBlock) || !blockTaken()) {
            return false;
        }
        ++blockNumber;
        if (dependencies_.progress) {
            dependencies_.progress(block + 1, blocks);
        }
    }
    return true;
}

bool Exchange::blockTaken() {
    for (int attempt = 0; attempt < attemptLimit; ++attempt) {
        log(LogKind::rx, "Wait for answer");
        const auto answer = readByte(timing::answerWait);
        if (!dependencies_.clock.sleep(timing::pauseAfterAnswer)) {
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
    const LineRead read = line_.read(frame_, timing::replyWait);
    if (read.result != serial_result::success) {
        log(LogKind::error, "Can't connect to Target");
        // A refusal that came before the request was taken is over by now.
        return failed(read.count > 0 ? ExchangeEnd::damagedAnswer : ExchangeEnd::noAnswer);
    }
    XModemMessage message;
    if (!ParseFrame(std::span(frame_).first(std::min(read.count, frame_.size())), message)) {
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

}  // namespace

/// Makes the line of an exchange that has the lock; at its end closes the line and gives the lock back.
class TransferEngine::LineInUse {
 public:
    explicit LineInUse(TransferEngine& engine) : engine_(engine) {}
    ~LineInUse() {
        if (line_) {
            line_->close();
            const std::lock_guard guard(engine_.mutex_);
            engine_.line_ = nullptr;
        }
        line_.reset();
        engine_.dependencies_.lock.release();
    }
    LineInUse(const LineInUse&) = delete;
    LineInUse& operator=(const LineInUse&) = delete;

    ILine& make() {
        line_ = engine_.dependencies_.makeLine(engine_.dependencies_.portName());
        const std::lock_guard guard(engine_.mutex_);
        engine_.line_ = line_.get();
        if (engine_.cancelled_) {
            line_->cancel();
        }
        return *line_;
    }

 private:
    TransferEngine& engine_;
    std::unique_ptr<ILine> line_;
};

void TransferEngine::tellEnd(ExchangeEnd end) const {
    if (dependencies_.ended) {
        dependencies_.ended(end);
    }
}

template <typename Body>
ExchangeEnd TransferEngine::runWithLock(std::string_view preparation, Body body) {
    LineInUse line(*this);
    dependencies_.log.log(LogKind::status, preparation);
    Exchange exchange(dependencies_, line.make());
    const bool done = exchange.openLine() && exchange.connect() && body(exchange) && exchange.disconnect();
    return done ? ExchangeEnd::answered : exchange.failure();
}

template <typename Body>
bool TransferEngine::run(std::string_view preparation, Body body) {
    if (!dependencies_.lock.take(timing::lockWait)) {
        tellEnd(ExchangeEnd::lineBusy);
        return false;
    }
    if (dependencies_.began) {
        dependencies_.began();
    }
    const ExchangeEnd end = runWithLock(preparation, body);
    tellEnd(end);
    if (end == ExchangeEnd::portNotOpened) {
        // The lock is free by now: while the box waits for the user, other exchanges go on.
        dependencies_.boxes.showPlain(cannotOpenPortText);
        if (dependencies_.portBoxClosed) {
            dependencies_.portBoxClosed();
        }
    }
    return end == ExchangeEnd::answered;
}

std::size_t blockCount(std::size_t messageSize, MessageType type) {
    const auto plan = planOf(type);
    return plan ? blocksIn(messageSize, payloadSize(plan->frameType)) : 0;
}

TransferEngine::TransferEngine(Dependencies dependencies) : dependencies_(std::move(dependencies)) {}

void TransferEngine::cancel() {
    const std::lock_guard guard(mutex_);
    cancelled_ = true;
    if (line_ != nullptr) {
        line_->cancel();
    }
}

bool TransferEngine::SendToTarget(std::span<const std::uint8_t> data, MessageType type) {
    const auto plan = planOf(type);
    if (!plan) {
        return false;
    }
    const std::vector<std::uint8_t> work = workBuffer(data, *plan);
    return run(plan->preparation,
               [&](Exchange& exchange) { return exchange.sendBlocks(work, data.size(), plan->frameType); });
}

bool TransferEngine::ReceiveFromTarget(std::span<std::uint8_t> reply, std::span<const std::uint8_t> request) {
    if (request.size() > payloadSize(requestPlan.frameType)) {
        return false;
    }
    return run(requestPlan.preparation, [&](Exchange& exchange) { return exchange.request(request, reply); });
}

}  // namespace tessavo
