#pragma once

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <stdexcept>
#include <string>
#include <string_view>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

namespace tessavo::test {

/// A serial line without hardware: a program opens the device, the test plays the other end.
class PtyPair {
 public:
    using Milliseconds = std::chrono::milliseconds;
    /// Long enough for the slowest machine; nothing waits that long unless it fails.
    static constexpr Milliseconds patience{20000};

    PtyPair() : master_(::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC | O_NONBLOCK)) {
        int number = -1;
        int unlocked = 0;
        if (master_ < 0 || ::ioctl(master_, TIOCSPTLCK, &unlocked) != 0 ||
            ::ioctl(master_, TIOCGPTN, &number) != 0) {
            hangUp();
            throw std::runtime_error("no pseudo-terminal to be had");
        }
        name_ = "pts/" + std::to_string(number);
    }
    ~PtyPair() { hangUp(); }
    PtyPair(const PtyPair&) = delete;
    PtyPair& operator=(const PtyPair&) = delete;

    /// As listPorts() would name it.
    [[nodiscard]] const std::string& name() const { return name_; }
    /// The device's file.
    [[nodiscard]] std::string file() const { return "/dev/" + name_; }
    /// As CSerial::Open() takes it.
    [[nodiscard]] std::wstring path() const {
        const std::string narrow = file();
        return {narrow.begin(), narrow.end()};
    }

    /// Settings of the device, whoever has it open.
    [[nodiscard]] termios settings() const {
        termios now{};
        if (::tcgetattr(master_, &now) != 0) {
            throw std::runtime_error("no settings to be had");
        }
        return now;
    }
    void setSettings(const termios& settings) const {
        if (::tcsetattr(master_, TCSANOW, &settings) != 0) {
            throw std::runtime_error("settings refused");
        }
    }

    /// Sends to the device.
    /// \return false when it did not take everything in time
    [[nodiscard]] bool send(std::string_view bytes) const {
        const auto end = std::chrono::steady_clock::now() + patience;
        while (!bytes.empty()) {
            const ssize_t count = ::write(master_, bytes.data(), bytes.size());
            if (count > 0) {
                bytes.remove_prefix(static_cast<std::size_t>(count));
            } else if (!waitFor(POLLOUT, end)) {
                return false;
            }
        }
        return true;
    }

    /// What the device sent, up to `count` bytes; fewer when they do not come in time.
    [[nodiscard]] std::string receive(std::size_t count, Milliseconds limit = patience) const {
        const auto end = std::chrono::steady_clock::now() + limit;
        std::string bytes;
        while (bytes.size() < count) {
            char buffer[4096];
            const ssize_t got = ::read(master_, buffer, std::min(sizeof buffer, count - bytes.size()));
            if (got > 0) {
                bytes.append(buffer, static_cast<std::size_t>(got));
            } else if (!waitFor(POLLIN, end)) {
                break;
            }
        }
        return bytes;
    }

    /// Bytes that the device sent and nobody received yet.
    [[nodiscard]] int waiting() const {
        int count = 0;
        ::ioctl(master_, FIONREAD, &count);
        return count;
    }

    /// Whether a program opened the device and nobody has it open now.
    [[nodiscard]] bool wasOpened() const {
        pollfd watched{master_, POLLIN, 0};
        ::poll(&watched, 1, 0);
        return (watched.revents & POLLHUP) != 0;
    }

    /// The cable is pulled.
    void hangUp() {
        if (master_ >= 0) {
            ::close(master_);
            master_ = -1;
        }
    }

 private:
    // A device that nobody has open reports a hang-up for as long as that lasts: not ready, but no end
    // either.
    [[nodiscard]] bool waitFor(short events, std::chrono::steady_clock::time_point end) const {
        const auto left = std::chrono::ceil<Milliseconds>(end - std::chrono::steady_clock::now());
        if (left.count() <= 0) {
            return false;
        }
        pollfd watched{master_, events, 0};
        ::poll(&watched, 1, static_cast<int>(left.count()));
        if ((watched.revents & POLLHUP) != 0) {
            ::poll(nullptr, 0, 1);
        }
        return true;
    }

    int master_;
    std::string name_;
};

/// All settings of the device as one text.
inline std::string settingsText(const PtyPair& line) {
    const termios now = line.settings();
    std::string text(sizeof now, '\0');
    std::memcpy(text.data(), &now, sizeof now);
    return text;
}

}  // namespace tessavo::test
