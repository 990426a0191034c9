#include "comm/tty_device_posix.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <fcntl.h>
#include <poll.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <unistd.h>
#include <utility>

#include "comm/serial.h"
#include "comm/tty_settings_posix.h"

namespace tessavo::tty {

namespace {

template <typename Call>
int retried(Call call) {
    int result = call();
    while (result < 0 && errno == EINTR) {
        result = call();
    }
    return result;
}

std::uint32_t openingResult(int error) {
    // A node whose device is not plugged in.
    return error == ENXIO || error == ENODEV ? serial_result::fileNotFound : resultOf(error);
}

}  // namespace

std::uint32_t resultOf(int error) {
    switch (error) {
        case 0:
            return serial_result::success;
        case ENOENT:
        case ENOTDIR:
            return serial_result::fileNotFound;
        case EACCES:
        case EPERM:
        case EBUSY:
        case EROFS:
        case EWOULDBLOCK:
            return serial_result::accessDenied;
        case EBADF:
            return serial_result::invalidHandle;
        case EMFILE:
        case ENFILE:
            return serial_result::tooManyOpenFiles;
        case ENOMEM:
            return serial_result::notEnoughMemory;
        case EINVAL:
            return serial_result::invalidParameter;
        case ENAMETOOLONG:
            return serial_result::nameTooLong;
        case ENOTTY:
        case EISDIR:
            return serial_result::badDevice;
        case EIO:
        case ENXIO:
        case ENODEV:
        case EPIPE:
            return serial_result::ioDevice;
        case ETIMEDOUT:
            return serial_result::timeout;
        default:
            return serial_result::generalFailure;
    }
}

std::uint32_t openDevice(const std::string& path, Descriptor& device) {
    Descriptor opened(
        retried([&] { return ::open(path.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC); }));
    if (!opened.valid()) {
        return openingResult(errno);
    }
    termios settings{};
    if (const std::uint32_t result = readSettings(opened.get(), settings); result != serial_result::success) {
        return result;
    }
    // The exclusive mode does not hold against the superuser, the lock not against programs that ask for
    // none.
    if (retried([&] { return ::flock(opened.get(), LOCK_EX | LOCK_NB); }) != 0) {
        return openingResult(errno);
    }
    if (::ioctl(opened.get(), TIOCEXCL) != 0) {
        return openingResult(errno);
    }
    makeRaw(settings);
    if (const std::uint32_t result = writeSettings(opened.get(), settings);
        result != serial_result::success) {
        ::ioctl(opened.get(), TIOCNXCL);
        return result;
    }
    device = std::move(opened);
    return serial_result::success;
}

void closeDevice(Descriptor& device, bool discardOutput) {
    if (!device.valid()) {
        return;
    }
    if (discardOutput) {
        ::tcflush(device.get(), TCOFLUSH);
    }
    ::ioctl(device.get(), TIOCNXCL);
    // A child process may have inherited the descriptor and would keep the lock.
    ::flock(device.get(), LOCK_UN);
    device.close();
}

std::uint32_t readSettings(int device, termios& settings) {
    return retried([&] { return ::tcgetattr(device, &settings); }) == 0 ? serial_result::success
                                                                        : resultOf(errno);
}

std::uint32_t writeSettings(int device, const termios& settings) {
    return retried([&] { return ::tcsetattr(device, TCSANOW, &settings); }) == 0 ? serial_result::success
                                                                                 : resultOf(errno);
}

LineControl systemLineControl() {
    return
        [](int device, unsigned long request, const int* lines) { return ::ioctl(device, request, lines); };
}

void driveLines(const LineControl& control, int device, int raised, int dropped) {
    if (raised != 0) {
        control(device, TIOCMBIS, &raised);
    }
    if (dropped != 0) {
        control(device, TIOCMBIC, &dropped);
    }
}

Deadline::Deadline(std::uint32_t timeoutMs)
    : endless_(timeoutMs == CSerial::infinite),
      end_(std::chrono::steady_clock::now() + std::chrono::milliseconds(endless_ ? 0 : timeoutMs)) {}

int Deadline::remaining() const {
    if (endless_) {
        return -1;
    }
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(end_ - std::chrono::steady_clock::now());
    return static_cast<int>(std::clamp<std::int64_t>(left.count(), 0, INT_MAX));
}

Waited waitFor(int device, short events, int cancel, const Deadline& deadline) {
    for (;;) {
        std::array<pollfd, 2> watched{pollfd{device, events, 0}, pollfd{cancel, POLLIN, 0}};
        const int remaining = deadline.remaining();
        const int ready = ::poll(watched.data(), watched.size(), remaining);
        if (ready < 0) {
            if (errno == EINTR) {
                continue;
            }
            return Waited::failed;
        }
        if (watched[1].revents != 0) {
            return Waited::cancelled;
        }
        if ((watched[0].revents & (POLLHUP | POLLERR | POLLNVAL)) != 0) {
            return Waited::hungUp;
        }
        if ((watched[0].revents & events) != 0) {
            return Waited::ready;
        }
        if (deadline.remaining() == 0) {
            return Waited::timedOut;
        }
    }
}

}  // namespace tessavo::tty
