#pragma once

#include <algorithm>
#include <cstdint>
#include <gtest/gtest.h>
#include <string>

#include "comm/serial.h"
#include "comm/serial_line.h"
#include "comm/serial_overlapped.h"
#include "comm/watched_port.h"

namespace tessavo::test {

/// In milliseconds; no test waits that long unless it fails.
inline constexpr std::uint32_t longWait = 20000;

/// Reads from a port that is open for overlapped I/O, with blocking read time-outs.
inline std::string readText(CSerial& port, std::size_t size) {
    std::string text(size, '\0');
    std::uint32_t count = 0;
    EXPECT_EQ(port.Read(text.data(), size, &count, nullptr, longWait), serial_result::success);
    text.resize(std::min<std::size_t>(count, size));
    return text;
}

/// A port that is open on a line, with blocking read time-outs.
class OpenSerialTest : public testing::Test {
 protected:
    void SetUp() override {
        ASSERT_EQ(port_.Open(line_.path(), 0, 0, true), serial_result::success);
        ASSERT_EQ(port_.SetupReadTimeouts(CSerial::blocking), serial_result::success);
    }

    SerialLine line_;
    WatchedPort port_;
    SerialOverlapped overlapped_;
    std::uint32_t count_ = 77;
};

}  // namespace tessavo::test
