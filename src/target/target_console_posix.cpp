#include "target/target_console_posix.h"

#include <array>
#include <csignal>
#include <poll.h>
#include <sys/signalfd.h>
#include <unistd.h>

namespace tessavo {

namespace {

constexpr std::size_t longestLine = 4096;
constexpr int roomLookMs = 50;

}  // namespace

TargetConsole::TargetConsole() {
    // A reader that is gone shows as a failed write.
    static_cast<void>(std::signal(SIGPIPE, SIG_IGN));
    sigset_t ending;
    sigemptyset(&ending);
    sigaddset(&ending, SIGINT);
    sigaddset(&ending, SIGTERM);
    sigaddset(&ending, SIGHUP);
    if (pthread_sigmask(SIG_BLOCK, &ending, nullptr) == 0) {
        signals_ = signalfd(-1, &ending, SFD_CLOEXEC);
    }
}

TargetConsole::~TargetConsole() {
    if (signals_ >= 0) {
        ::close(signals_);
    }
}

void TargetConsole::readInput(const std::function<void(std::string_view)>& line) {
    std::array<char, 1024> bytes{};
    const ssize_t size = ::read(STDIN_FILENO, bytes.data(), bytes.size());
    if (size <= 0) {
        inputEnded_ = true;
        if (!pending_.empty()) {
            line(pending_);
        }
        return;
    }
    for (const char character : std::string_view(bytes.data(), static_cast<std::size_t>(size))) {
        if (character == '\n' || pending_.size() == longestLine) {
            line(pending_);
            pending_.clear();
        }
        if (character != '\n') {
            pending_ += character;
        }
    }
}

void TargetConsole::wait(int endDescriptor, const std::function<void(std::string_view)>& line,
                         const std::function<bool()>& room) {
    while (true) {
        const bool listening = line && !inputEnded_;
        const bool reading = listening && room();
        // Descriptor -1 is skipped by poll().
        std::array<pollfd, 3> descriptors{
            {{.fd = signals_, .events = POLLIN, .revents = 0},
             {.fd = endDescriptor, .events = POLLIN, .revents = 0},
             {.fd = reading ? STDIN_FILENO : -1, .events = POLLIN, .revents = 0}}};
        poll(descriptors.data(), descriptors.size(), listening && !reading ? roomLookMs : -1);
        if (descriptors[0].revents != 0 || descriptors[1].revents != 0) {
            return;
        }
        if (descriptors[2].revents != 0) {
            readInput(line);
        }
    }
}

}  // namespace tessavo
