#include "target/pty_target.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <termios.h>
#include <thread>
#include <unistd.h>

#include "comm/port_list.h"
#include "comm/serial_port_line.h"
#include "support/environment.h"
#include "support/waiting.h"
#include "target/exchange_host.h"

// The real thing: pseudo-terminal, serial port and transfer engine. Only the engine's pauses are left out.

namespace tessavo::test {
namespace {

using testing::Contains;
using testing::Not;

/// Long enough for a byte that should not come, were it on its way.
constexpr Milliseconds quiet{30};

/// A target that counts what it tells.
struct Target {
    explicit Target(PtyTarget::Options options = {})
        : pty(TargetMemory::holding(imageOf(0)), std::move(options),
              [this](TargetLogKind kind, std::string_view text) {
                  closings += text.starts_with("port closed") ? 1 : 0;
                  openings += text.starts_with("port opened") ? 1 : 0;
                  troubles += kind == TargetLogKind::trouble ? 1 : 0;
              }) {
        EXPECT_EQ(pty.start(), "");
    }

    std::atomic<int> openings = 0;
    std::atomic<int> closings = 0;
    std::atomic<int> troubles = 0;
    PtyTarget pty;
};

struct Host : ExchangeHost {
    explicit Host(const PtyTarget& target) : ExchangeHost(makeSerialPortLine, target.portName()) {}
};

TEST(PtyTarget, IsAnnouncedWhileItRuns) {
    const OwnRunFolder folder;
    Target target;
    const std::string name = target.pty.portName();
    EXPECT_EQ("/dev/" + name, target.pty.path());
    EXPECT_TRUE(target.pty.running());
    EXPECT_THAT(listPorts(), Contains(name));
    target.pty.stop();
    EXPECT_FALSE(target.pty.running());
    EXPECT_FALSE(target.pty.failed());
    EXPECT_THAT(listPorts(), Not(Contains(name)));
    target.pty.stop();
}

TEST(PtyTarget, NeedNotBeStarted) {
    PtyTarget target(TargetMemory::holding(imageOf(0)), {});
    EXPECT_FALSE(target.running());
    EXPECT_EQ(target.portName(), "");
    target.stop();
}

TEST(PtyTarget, SeveralRunAtOnce) {
    Target one;
    Target other;
    EXPECT_NE(one.pty.path(), other.pty.path());
    EXPECT_TRUE(Host(one.pty).sendLive(imageOf(1)));
    EXPECT_TRUE(Host(other.pty).sendLive(imageOf(2)));
    EXPECT_EQ(one.pty.memory().live, imageOf(1));
    EXPECT_EQ(other.pty.memory().live, imageOf(2));
}

TEST(PtyTarget, GivesOneRequestByteForEachOpening) {
    Target target;
    Host host(target.pty);
    for (int i = 0; i < 500; ++i) {
        ASSERT_EQ(host.open(), serial_result::success) << i;
        ASSERT_EQ(host.read(1), requestByte) << i;
        host.line->close();
    }
    ASSERT_EQ(host.open(), serial_result::success);
    EXPECT_EQ(host.read(2, quiet), requestByte) << "and not one more";
    EXPECT_EQ(target.openings, 501);
}

TEST(PtyTarget, WhatOneHostLeftUnreadDoesNotReachTheNext) {
    Target target;
    Host host(target.pty);
    for (int i = 1; i <= 20; ++i) {
        ASSERT_EQ(host.open(), serial_result::success);
        const Bytes frame = requestFrame({5});
        host.write(frame);
        ASSERT_TRUE(eventually([&] { return target.openings == i; }));
        host.line->close();
        ASSERT_TRUE(eventually([&] { return target.closings == i; }));
    }
    ASSERT_EQ(host.open(), serial_result::success);
    EXPECT_EQ(host.read(2, quiet), requestByte);
}

TEST(PtyTarget, TheMainJob) {
    Target target;
    Host host(target.pty);
    const ImageBytes image = imageOf(123);
    EXPECT_FALSE(host.confirmed());
    EXPECT_TRUE(host.sendLive(image));
    EXPECT_TRUE(host.confirmed());
    for (std::uint8_t set = 0; set < targetSetCount; ++set) {
        EXPECT_TRUE(host.save(set, image)) << host.log.lastError;
        host.reply.fill(0);
        EXPECT_TRUE(host.ask({command_code::readSet, set})) << host.log.lastError;
        EXPECT_TRUE(std::equal(image.begin(), image.end(), host.reply.begin()));
        EXPECT_EQ(target.pty.memory().sets[set], image);
    }
    EXPECT_EQ(host.log.lastError, "");
}

TEST(PtyTarget, VersionsAndClipStates) {
    Target target({.versions = {.hardware = 0x11223344, .software = 0x55667788}});
    Host host(target.pty);
    ASSERT_TRUE(host.ask({command_code::readVersions}));
    EXPECT_EQ(Bytes(host.reply.begin() + 12, host.reply.begin() + 20),
              (Bytes{0x44, 0x33, 0x22, 0x11, 0x88, 0x77, 0x66, 0x55}));
    ClipBytes state{};
    state[33] = 1;
    target.pty.enqueueClipState(state);
    EXPECT_EQ(target.pty.queuedClipStates(), 1U);
    ASSERT_TRUE(host.ask({command_code::readClipState}));
    EXPECT_TRUE(std::equal(state.begin(), state.end(), host.reply.begin()));
    EXPECT_EQ(target.pty.queuedClipStates(), 0U);
    target.pty.holdClipState({});
    ASSERT_TRUE(host.ask({command_code::readClipState}));
    EXPECT_EQ(host.reply[33], 0);
    target.pty.randomiseClipStates(7);
    ASSERT_TRUE(host.ask({command_code::readClipState}));
    EXPECT_NE(std::count(host.reply.begin(), host.reply.begin() + 34, 1), 0);
}

TEST(PtyTarget, ASoftwareImageArrivesWhole) {
    Target target;
    Host host(target.pty);
    Bytes image(9000);
    for (std::size_t i = 0; i < image.size(); ++i) {
        image[i] = static_cast<std::uint8_t>((i * 2654435761U) >> 24);
    }
    EXPECT_TRUE(host.engine.SendToTarget(image, MessageType::blocks1kWithCrc)) << host.log.lastError;
    EXPECT_EQ(target.pty.memory().software, image);
}

TEST(PtyTarget, ASecondProgramDoesNotDisturbAnExchange) {
    Target target;
    Host host(target.pty);
    Host intruder(target.pty);
    ASSERT_EQ(host.open(), serial_result::success);
    ASSERT_EQ(host.read(1), requestByte);
    const Bytes first = frameOf(frame_type::block1k, 1, Bytes(1024, 1));
    host.write(first);
    ASSERT_EQ(host.read(1), positive);
    EXPECT_EQ(intruder.open(), serial_result::accessDenied);
    const Bytes second = frameOf(frame_type::block1k, 2, Bytes(1024, 2));
    host.write(second);
    Bytes answer = host.read(1);
    if (answer == requestByte) {
        // The superuser's second opening is seen by the target; the exchange must survive it.
        answer = host.read(1);
    }
    EXPECT_EQ(answer, positive);
    host.write(disconnect);
    EXPECT_EQ(host.read(1), positive);
    EXPECT_EQ(target.pty.memory().software.size(), 2048U);
}

TEST(PtyTarget, LineEditingThatAHostLeftBehindIsUndone) {
    Target target;
    const int descriptor = ::open(target.pty.path().c_str(), O_RDWR | O_NOCTTY);
    ASSERT_GE(descriptor, 0);
    termios settings{};
    ASSERT_EQ(tcgetattr(descriptor, &settings), 0);
    settings.c_lflag |= ECHO | ICANON | ISIG;
    settings.c_iflag |= ICRNL | IXON;
    settings.c_oflag |= OPOST | ONLCR;
    ASSERT_EQ(tcsetattr(descriptor, TCSANOW, &settings), 0);
    ::close(descriptor);
    ASSERT_TRUE(eventually([&] { return target.closings == 1; }));

    const int next = ::open(target.pty.path().c_str(), O_RDWR | O_NOCTTY);
    ASSERT_GE(next, 0);
    std::uint8_t byte = 0;
    pollfd readable{.fd = next, .events = POLLIN, .revents = 0};
    ASSERT_EQ(poll(&readable, 1, static_cast<int>(ExchangeHost::longWait.count())), 1)
        << "not held back for a line's end";
    ASSERT_EQ(::read(next, &byte, 1), 1);
    EXPECT_EQ(byte, control_byte::request);
    const Bytes frame = liveFrame(imageOf(1));
    ASSERT_EQ(::write(next, frame.data(), frame.size()), static_cast<ssize_t>(frame.size()));
    ASSERT_EQ(::read(next, &byte, 1), 1);
    EXPECT_EQ(byte, control_byte::positive);
    ::close(next);
    EXPECT_EQ(target.pty.memory().live, imageOf(1));
}

TEST(PtyTarget, ThePulledCableIsAVanishedDevice) {
    const OwnRunFolder folder;
    Target target({.faults = faultsOf({"cable=2000"})});
    Host host(target.pty);
    EXPECT_FALSE(host.sendLive(imageOf(1)));
    pollfd ended{.fd = target.pty.endDescriptor(), .events = POLLIN, .revents = 0};
    EXPECT_EQ(poll(&ended, 1, static_cast<int>(ExchangeHost::longWait.count())), 1);
    EXPECT_FALSE(target.pty.running());
    EXPECT_FALSE(target.pty.failed());
    EXPECT_THAT(listPorts(), Not(Contains(target.pty.portName())));
    EXPECT_EQ(target.pty.memory().live, imageOf(0));
    EXPECT_EQ(target.troubles, 0);
}

TEST(PtyTarget, EveryByteBeforeThePulledCableArrives) {
    Target target({.faults = faultsOf({"cable=2154"})});
    Host host(target.pty);
    ASSERT_EQ(host.open(), serial_result::success);
    ASSERT_EQ(host.read(1), requestByte);
    const Bytes request = requestFrame({5});
    host.write(request);
    EXPECT_EQ(host.read(101).size(), 2154U - 1U - request.size());
    EXPECT_EQ(host.readResult(), serial_result::ioDevice);
}

TEST(PtyTarget, StoppingVanishesUnderAHost) {
    Target target;
    Host host(target.pty);
    ASSERT_EQ(host.open(), serial_result::success);
    ASSERT_EQ(host.read(1), requestByte);
    std::thread stopper([&] { target.pty.stop(); });
    EXPECT_EQ(host.readResult(), serial_result::ioDevice);
    stopper.join();
    host.line->close();
    EXPECT_NE(host.open(), serial_result::success);
}

TEST(PtyTarget, PacesBothDirections) {
    Target target({.baud = 115200});
    Host host(target.pty);
    ASSERT_EQ(host.open(), serial_result::success);
    ASSERT_EQ(host.read(1), requestByte);
    const Bytes request = requestFrame({5});
    const auto start = std::chrono::steady_clock::now();
    host.write(request);
    ASSERT_EQ(host.read(1), positive);
    const auto answered = std::chrono::steady_clock::now();
    EXPECT_GE(answered - start, byteTime(115200) * static_cast<int>(request.size()));
    ASSERT_EQ(host.read(maximumFrameSize).size(), maximumFrameSize);
    const auto replied = std::chrono::steady_clock::now();
    // The first bytes of the reply may have come with the answer.
    EXPECT_GE(replied - answered, byteTime(115200) * static_cast<int>(maximumFrameSize - 256));
}

TEST(PtyTarget, TheLogMayCallBack) {
    std::atomic<int> lines = 0;
    PtyTarget* running = nullptr;
    PtyTarget target(TargetMemory::holding(imageOf(0)), {}, [&](TargetLogKind, std::string_view) {
        EXPECT_EQ(running->memory().sets[0], imageOf(0));
        running->holdClipState({});
        ++lines;
    });
    running = &target;
    ASSERT_EQ(target.start(), "");
    EXPECT_TRUE(Host(target).ask({command_code::readClipState}));
    EXPECT_TRUE(eventually([&] { return lines > 3; }));
}

TEST(PtyTarget, ClipStatesMayBeSetDuringExchanges) {
    Target target;
    std::atomic<bool> stop = false;
    std::thread setter([&] {
        ClipBytes state{};
        while (!stop) {
            state[0] ^= 1;
            target.pty.holdClipState(state);
            EXPECT_EQ(target.pty.queuedClipStates(), 0U);
            EXPECT_TRUE(target.pty.running());
        }
    });
    Host host(target.pty);
    for (int i = 0; i < 10; ++i) {
        EXPECT_TRUE(host.ask({command_code::readClipState})) << host.log.lastError;
        EXPECT_LE(host.reply[0], 1);
    }
    stop = true;
    setter.join();
}

}  // namespace
}  // namespace tessavo::test
