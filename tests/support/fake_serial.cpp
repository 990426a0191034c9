#include "support/fake_serial.h"

#include <algorithm>
#include <array>
#include <utility>

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

std::uint32_t FakeSerial::Open(const std::wstring& deviceName, std::uint32_t inQueue, std::uint32_t outQueue,
                               bool overlapped) {
    std::string line = "open ";
    for (const wchar_t letter : deviceName) {
        line += static_cast<char>(letter);
    }
    transcript_.add(line + ' ' + std::to_string(inQueue) + ' ' + std::to_string(outQueue) +
                    (overlapped ? " overlapped" : " plain"));
    return openResult;
}

std::uint32_t FakeSerial::Close() {
    transcript_.add("close");
    return serial_result::success;
}

std::uint32_t FakeSerial::Setup(std::uint32_t baudRate, std::uint8_t dataBits, int parity,
                                std::uint8_t stopBits, int dtrMode) {
    std::string line = "setup";
    for (const std::uint32_t value : {baudRate, std::uint32_t{dataBits}, static_cast<std::uint32_t>(parity),
                                      std::uint32_t{stopBits}, static_cast<std::uint32_t>(dtrMode)}) {
        line += ' ' + std::to_string(value);
    }
    transcript_.add(line);
    return setupResult;
}

std::uint32_t FakeSerial::SetupReadTimeouts(int mode) {
    transcript_.add("read time-outs " + std::to_string(mode));
    return serial_result::success;
}

std::uint32_t FakeSerial::Write(const void* data, std::size_t size, std::uint32_t* count,
                                SerialOverlapped* overlapped, std::uint32_t timeoutMs) {
    const auto* first = static_cast<const std::uint8_t*>(data);
    written.emplace_back(first, first + size);
    transcript_.add("write " + std::to_string(size) + " in " + std::to_string(timeoutMs) +
                    (overlapped != nullptr ? " by the caller" : ""));
    if (count != nullptr) {
        *count = writeResult == serial_result::success ? static_cast<std::uint32_t>(size) : 0;
    }
    return writeResult;
}

std::uint32_t FakeSerial::Read(void* data, std::size_t size, std::uint32_t* count,
                               SerialOverlapped* overlapped, std::uint32_t timeoutMs) {
    if (onRead) {
        onRead();
    }
    const bool flushing = timeoutMs == 1;
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
        transcript_.add("read " + std::to_string(size) + " in " + std::to_string(timeoutMs) +
                        (overlapped != nullptr ? " by the caller: " : ": ") + outcomeText(outcome));
    }
    if (outcome.result == serial_result::timeout) {
        clock_.advance(Milliseconds{timeoutMs});
    }
    const std::size_t given = std::min(size, outcome.bytes.size());
    std::copy_n(outcome.bytes.begin(), given, static_cast<std::uint8_t*>(data));
    if (count != nullptr) {
        *count = static_cast<std::uint32_t>(given);
    }
    return outcome.result;
}

void FakeSerial::answer(std::initializer_list<std::uint8_t> bytes) {
    for (const std::uint8_t byte : bytes) {
        answers.push_back({serial_result::success, {byte}});
    }
}

void FakeSerial::answer(Bytes bytes) {
    answers.push_back({serial_result::success, std::move(bytes)});
}

void FakeSerial::answerError(std::uint32_t result) {
    answers.push_back({result, {}});
}

}  // namespace tessavo::test
