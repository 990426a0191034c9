#include <cerrno>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <sys/ioctl.h>
#include <unistd.h>
#include <vector>

#include "comm/serial.h"
#include "comm/serial_native_posix.h"
#include "support/pty_pair.h"

namespace tessavo::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// One call that drives modem lines.
struct Driven {
    std::string device;
    unsigned long request;
    int lines;

    bool operator==(const Driven&) const = default;
};

// A real port, but what it does to its modem lines goes to the test: a pseudo-terminal has none.
class PortWithLines final : public CSerial {
 public:
    explicit PortWithLines(std::vector<Driven>& driven)
        : CSerial(std::make_unique<Native>([&driven](int device, unsigned long request, const int* lines) {
              driven.push_back({::ttyname(device), request, *lines});
              return 0;
          })) {}
};

class SerialLines : public testing::Test {
 protected:
    void SetUp() override { ASSERT_EQ(port_.Open(line_.path(), 0, 0, true), serial_result::success); }

    [[nodiscard]] Driven raised(int lines) const { return {line_.file(), TIOCMBIS, lines}; }
    [[nodiscard]] Driven dropped(int lines) const { return {line_.file(), TIOCMBIC, lines}; }
    [[nodiscard]] std::uint32_t setUp(int dtrMode) {
        driven_.clear();
        return port_.Setup(115200, 8, serial_frame::parityNone, serial_frame::stopBitsOne, dtrMode);
    }

    const PtyPair line_;
    std::vector<Driven> driven_;
    PortWithLines port_{driven_};
};

TEST_F(SerialLines, DtrModeOneRaisesDtrAndDropsRts) {
    EXPECT_EQ(setUp(1), serial_result::success);
    EXPECT_THAT(driven_, ElementsAre(raised(TIOCM_DTR), dropped(TIOCM_RTS)));
}

TEST_F(SerialLines, OtherDtrModesLeaveBothLines) {
    for (const int mode : {0, 2, -1}) {
        EXPECT_EQ(setUp(mode), serial_result::success);
        EXPECT_THAT(driven_, IsEmpty()) << mode;
    }
}

TEST_F(SerialLines, RefusedSetupLeavesBothLines) {
    driven_.clear();
    EXPECT_EQ(port_.Setup(115200, 4, 0, 0, 1), serial_result::invalidParameter);
    EXPECT_EQ(port_.Setup(115200, 8, serial_frame::parityEven, 0, 1), serial_result::invalidParameter);
    EXPECT_THAT(driven_, IsEmpty());
}

TEST_F(SerialLines, HandshakingRaisesBothLinesOnlyInHardware) {
    driven_.clear();
    EXPECT_EQ(port_.SetupHandshaking(CSerial::handshakeHardware), serial_result::success);
    EXPECT_THAT(driven_, ElementsAre(raised(TIOCM_DTR | TIOCM_RTS)));
    for (const int mode : {CSerial::handshakeNone, CSerial::handshakeSoftware}) {
        driven_.clear();
        EXPECT_EQ(port_.SetupHandshaking(mode), serial_result::success);
        EXPECT_THAT(driven_, ElementsAre(dropped(TIOCM_DTR | TIOCM_RTS))) << mode;
    }
    driven_.clear();
    EXPECT_EQ(port_.SetupHandshaking(3), serial_result::invalidArgument);
    EXPECT_THAT(driven_, IsEmpty());
}

// TIOCMBIS has no lines to raise here; the number of bytes that wait is a request that every terminal
// answers.
TEST(LineControl, TheSystemsReachesTheDevice) {
    const PtyPair line;
    const int device = ::open(line.file().c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC | O_NONBLOCK);
    ASSERT_GE(device, 0);
    const tty::LineControl control = tty::systemLineControl();
    int nothing = 77;
    EXPECT_EQ(control(device, FIONREAD, &nothing), 0);
    ::close(device);
    EXPECT_EQ(control(device, FIONREAD, &nothing), -1);
    EXPECT_EQ(errno, EBADF);
}

}  // namespace
}  // namespace tessavo::test
