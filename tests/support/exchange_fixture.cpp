#include "support/exchange_fixture.h"

#include <algorithm>
#include <random>

namespace tessavo::test {

void NotedLog::log(LogKind kind, std::string_view text) {
    constexpr std::string_view names[] = {"TX ", "RX ", "ST ", "ERR "};
    transcript_.add(std::string(names[static_cast<std::size_t>(kind)]).append(text));
}

BoxAnswer NotedBoxes::show(std::string_view text, BoxIcon icon, BoxButtons buttons) {
    EXPECT_EQ(buttons, BoxButtons::ok);
    transcript_.add(std::string(icon == BoxIcon::error ? "error box: " : "box: ").append(text));
    return BoxAnswer::ok;
}

bool NotedLock::take(std::chrono::milliseconds limit) {
    transcript_.add("lock " + std::to_string(limit.count()) + (available ? "" : ": time-out"));
    return available;
}

void NotedLock::release() {
    transcript_.add("unlock");
}

void ExchangeTest::expectTranscript(const std::vector<Lines>& parts) const {
    EXPECT_THAT(transcript.lines(), testing::ElementsAreArray(joined(parts)));
    EXPECT_TRUE(port.answers.empty()) << port.answers.size() << " answers were not read";
}

Lines ExchangeTest::opened(const std::string& preparation) const {
    return {"lock 5000", "ST " + preparation, "open " + portName, "set up 115200 8 0 0",
            "ST Connecting to Target"};
}

Lines ExchangeTest::connected() {
    return {"RX Wait for REQ", "read 1 in 2500: 43", "ST Connected to Target"};
}

Lines ExchangeTest::flushed() {
    return {"read 1 in 1: time-out"};
}

Lines ExchangeTest::blockWritten(std::size_t frameSize) {
    return joined(
        {flushed(),
         {"TX Send XModem Message", "write " + std::to_string(frameSize) + " in 800", "pause 200"}});
}

Lines ExchangeTest::answerRead(const std::string& outcome) {
    return {"RX Wait for answer", "read 1 in 2500: " + outcome, "pause 50"};
}

Lines ExchangeTest::blockTaken() {
    return joined({answerRead("06"), {"RX Answer received"}});
}

Lines ExchangeTest::disconnectTry(const std::string& outcome) {
    return {"TX Send Disconnect Command", "write 1 in 800", "RX Wait for answer",
            "read 1 in 2500: " + outcome};
}

Lines ExchangeTest::disconnected() {
    return joined({{"ST Disconnect from Target"}, disconnectTry("06"), {"ST Disconnected from Target"}});
}

Lines ExchangeTest::closed() {
    return {"close", "unlock"};
}

Lines ExchangeTest::requestWritten() {
    return joined({flushed(), {"TX Send XModem Message", "write 2053 in 800"}});
}

Lines ExchangeTest::requestTaken() {
    return {"RX Wait for answer", "read 1 in 2500: 06", "ST Answer received"};
}

std::uint16_t bitwiseCrc(std::span<const std::uint8_t> bytes) {
    unsigned crc = 0xFFFF;
    for (const std::uint8_t byte : bytes) {
        crc ^= unsigned{byte} << 8;
        for (int step = 0; step < 8; ++step) {
            crc <<= 1;
            if ((crc & 0x10000U) != 0) {
                crc ^= 0x11021U;
            }
        }
    }
    return static_cast<std::uint16_t>(crc);
}

Bytes frameOf(std::uint8_t type, std::uint8_t blockNumber, std::span<const std::uint8_t> payload) {
    Bytes frame(payload.size() + 5);
    frame[0] = type;
    frame[1] = blockNumber;
    frame[2] = static_cast<std::uint8_t>(0xFF - blockNumber);
    std::ranges::copy(payload, frame.begin() + 3);
    const std::uint16_t crc = bitwiseCrc(payload);
    frame[frame.size() - 2] = static_cast<std::uint8_t>(crc / 256);
    frame[frame.size() - 1] = static_cast<std::uint8_t>(crc % 256);
    return frame;
}

Bytes replyFrame(std::span<const std::uint8_t> start) {
    Bytes payload(4096);
    std::ranges::copy(start, payload.begin());
    return frameOf(5, 1, payload);
}

Bytes concatenated(std::span<const std::uint8_t> first, std::span<const std::uint8_t> second) {
    Bytes all(first.size() + second.size());
    std::ranges::copy(second, std::ranges::copy(first, all.begin()).out);
    return all;
}

Bytes randomBytes(std::size_t size, std::uint32_t seed) {
    std::mt19937 generator(seed);
    Bytes bytes(size);
    std::ranges::generate(bytes, [&] { return static_cast<std::uint8_t>(generator() >> 24); });
    return bytes;
}

}  // namespace tessavo::test
