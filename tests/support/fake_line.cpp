#include "support/fake_line.h"

#include <algorithm>
#include <array>
#include <utility>

#include "support/borrowed_line.h"

namespace tessavo::test {

namespace {

std::string hex(std::uint8_t byte) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    return {digits[byte >> 4], digits[byte & 0xF]};
}

std::string outcomeText(const ReadOutcome& outcome) {
    if (outcome.result == serial_result::timeout) {
        return "time-out";
    }
    if (outcome.result != serial_result::success) {
        return "error " + std::to_string(outcome.result);
    }
    return outcome.bytes.size() == 1 ? hex(outcome.bytes.front())
                                     : std::to_string(outcome.bytes.size()) + " bytes";
}

}  // namespace

std::uint32_t FakeLine::open() {
    transcript_.add("open " + portName_);
    return openResult;
}

std::uint32_t FakeLine::setUp(const LineSettings& settings) {
    std::string line = "set up";
    for (const std::uint32_t value :
         {settings.baudRate, std::uint32_t{settings.dataBits}, static_cast<std::uint32_t>(settings.parity),
          std::uint32_t{settings.stopBits}}) {
        line += ' ' + std::to_string(value);
    }
    transcript_.add(line);
    return setupResult;
}

void FakeLine::close() {
    transcript_.add("close");
}

void FakeLine::cancel() {
    transcript_.add("cancel");
}

std::uint32_t FakeLine::write(std::span<const std::uint8_t> bytes, Milliseconds timeout) {
    written.emplace_back(bytes.begin(), bytes.end());
    transcript_.add("write " + std::to_string(bytes.size()) + " in " + std::to_string(timeout.count()));
    return writeResult;
}

LineRead FakeLine::read(std::span<std::uint8_t> bytes, Milliseconds timeout) {
    if (onRead) {
        onRead();
    }
    const bool flushing = timeout == Milliseconds{1};
    ReadOutcome outcome{serial_result::timeout, {}};
    if (flushing && chatters) {
        outcome = {serial_result::success, {0x55}};
    } else if (flushing && !stale.empty()) {
        outcome = {serial_result::success, {stale.front()}};
        stale.pop_front();
    } else if (!flushing && !answers.empty()) {
        outcome = std::move(answers.front());
        answers.pop_front();
    }
    if (!(flushing && chatters)) {
        transcript_.add("read " + std::to_string(bytes.size()) + " in " + std::to_string(timeout.count()) +
                        ": " + outcomeText(outcome));
    }
    if (outcome.result == serial_result::timeout) {
        clock_.advance(timeout);
    }
    const std::size_t given = std::min(bytes.size(), outcome.bytes.size());
    std::copy_n(outcome.bytes.begin(), given, bytes.begin());
    return {outcome.result, given};
}

LineMaker FakeLine::maker() {
    return [this](const std::string& portName) {
        portName_ = portName;
        return std::make_unique<BorrowedLine>(*this);
    };
}

void FakeLine::answer(std::initializer_list<std::uint8_t> bytes) {
    for (const std::uint8_t byte : bytes) {
        answers.push_back({serial_result::success, {byte}});
    }
}

void FakeLine::answer(Bytes bytes) {
    answers.push_back({serial_result::success, std::move(bytes)});
}

void FakeLine::answerError(std::uint32_t result) {
    answers.push_back({result, {}});
}

}  // namespace tessavo::test
