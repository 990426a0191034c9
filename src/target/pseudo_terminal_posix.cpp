#include "target/pseudo_terminal_posix.h"

#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <sys/inotify.h>
#include <sys/ioctl.h>
#include <system_error>
#include <termios.h>
#include <unistd.h>

namespace tessavo {

namespace {

std::string failure(const std::string& what) {
    return what + ": " + std::generic_category().message(errno);
}

void closeDescriptor(int& descriptor) {
    if (descriptor >= 0) {
        ::close(descriptor);
        descriptor = -1;
    }
}

bool isRaw(const termios& settings) {
    constexpr tcflag_t cooking = ECHO | ECHONL | ICANON | ISIG | IEXTEN;
    constexpr tcflag_t changing = ISTRIP | INLCR | IGNCR | ICRNL | IXON | IXOFF;
    return (settings.c_lflag & cooking) == 0 && (settings.c_iflag & changing) == 0 &&
           (settings.c_oflag & OPOST) == 0;
}

}  // namespace

std::string PseudoTerminal::open() {
    close();
    master_ = posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
    if (master_ < 0 || grantpt(master_) != 0 || unlockpt(master_) != 0 ||
        fcntl(master_, F_SETFL, O_NONBLOCK) != 0) {
        std::string problem = failure("cannot make a pseudo-terminal");
        close();
        return problem;
    }
    std::array<char, 64> name{};
    if (ptsname_r(master_, name.data(), name.size()) == 0) {
        path_ = name.data();
        slave_ = ::open(name.data(), O_RDWR | O_NOCTTY | O_CLOEXEC);
    }
    if (slave_ < 0) {
        std::string problem = failure("cannot open the pseudo-terminal");
        close();
        return problem;
    }
    termios settings{};
    tcgetattr(slave_, &settings);
    cfmakeraw(&settings);
    cfsetspeed(&settings, B115200);
    tcsetattr(slave_, TCSANOW, &settings);

    watch_ = inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
    if (watch_ < 0 || inotify_add_watch(watch_, path_.c_str(), IN_OPEN | IN_CLOSE) < 0) {
        std::string problem = failure("cannot watch " + path_);
        close();
        return problem;
    }
    return {};
}

void PseudoTerminal::close() {
    closeDescriptor(watch_);
    closeDescriptor(slave_);
    closeDescriptor(master_);
}

std::vector<PseudoTerminal::Visit> PseudoTerminal::visits() {
    std::vector<Visit> visits;
    alignas(inotify_event) std::array<char, 4096> buffer{};
    ssize_t size = 0;
    while ((size = ::read(watch_, buffer.data(), buffer.size())) > 0) {
        for (std::size_t at = 0; at < static_cast<std::size_t>(size);) {
            inotify_event event{};
            std::memcpy(&event, buffer.data() + at, sizeof event);
            at += sizeof event + event.len;
            if ((event.mask & IN_OPEN) != 0) {
                visits.push_back(Visit::opened);
            } else if ((event.mask & IN_CLOSE) != 0) {
                visits.push_back(Visit::closed);
            }
        }
    }
    return visits;
}

std::vector<std::uint8_t> PseudoTerminal::read(std::size_t limit) {
    std::vector<std::uint8_t> bytes(limit);
    const ssize_t size = ::read(master_, bytes.data(), bytes.size());
    bytes.resize(size > 0 ? static_cast<std::size_t>(size) : 0);
    return bytes;
}

std::size_t PseudoTerminal::write(std::span<const std::uint8_t> bytes) {
    const ssize_t size = ::write(master_, bytes.data(), bytes.size());
    return size > 0 ? static_cast<std::size_t>(size) : 0;
}

void PseudoTerminal::linger() const {
    constexpr int tries = 50;
    constexpr int pauseMs = 2;
    int unread = 1;
    for (int i = 0; i < tries && unread > 0; ++i) {
        // Bytes show up at the other end a little after they have been written, so pause before looking.
        poll(nullptr, 0, pauseMs);
        if (ioctl(slave_, FIONREAD, &unread) != 0) {
            return;
        }
    }
}

void PseudoTerminal::drain() {
    tcflush(master_, TCIFLUSH);
    while (!read(4096).empty()) {
    }
    tcflush(slave_, TCIFLUSH);
}

void PseudoTerminal::restore() {
    termios settings{};
    if (tcgetattr(slave_, &settings) == 0 && !isRaw(settings)) {
        cfmakeraw(&settings);
        tcsetattr(slave_, TCSANOW, &settings);
    }
    ioctl(slave_, TIOCNXCL);
}

}  // namespace tessavo
