#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <thread>
#include <unistd.h>
#include <utility>

#include "platform/process.h"

namespace tessavo {

std::vector<std::string> programArguments(int argc, char** argv) {
    return argc > 1 ? std::vector<std::string>(argv + 1, argv + argc) : std::vector<std::string>{};
}

void prepareStandardStreams() {}

bool standardErrorIsTerminal() {
    return ::isatty(STDERR_FILENO) == 1;
}

void attachConsole() {}

namespace {

constexpr std::array<int, 3> endingSignals{SIGINT, SIGTERM, SIGHUP};
constexpr char wakeForSignal = 's';
constexpr char wakeForEnd = 'e';

// The end of the pipe that the signal handler writes to. A handler has no argument that could tell it.
std::atomic<int> wakeEnd{-1};
static_assert(std::atomic<int>::is_always_lock_free);

void wake(int end, char reason) {
    while (::write(end, &reason, 1) < 0 && errno == EINTR) {
    }
}

extern "C" void tessavoEndingSignal(int /*signal*/) {
    const int savedErrno = errno;
    const int end = wakeEnd;
    if (end >= 0) {
        wake(end, wakeForSignal);
    }
    errno = savedErrno;
}

}  // namespace

struct Interruption::Native {
    std::array<int, 2> pipe{-1, -1};
    std::array<struct sigaction, endingSignals.size()> former{};
    std::atomic<bool> happened = false;
    std::function<void()> stop;
    std::thread thread;

    void watch() {
        for (;;) {
            char reason = 0;
            const ssize_t count = ::read(pipe[0], &reason, 1);
            if (count < 0 && errno == EINTR) {
                continue;
            }
            if (count != 1 || reason == wakeForEnd) {
                return;
            }
            if (!happened.exchange(true)) {
                stop();
            }
        }
    }
};

Interruption::Interruption(std::function<void()> stop) : native_(std::make_unique<Native>()) {
    native_->stop = std::move(stop);
    if (::pipe2(native_->pipe.data(), O_CLOEXEC) != 0) {
        return;
    }
    native_->thread = std::thread(&Native::watch, native_.get());
    wakeEnd = native_->pipe[1];
    for (std::size_t i = 0; i < endingSignals.size(); ++i) {
        struct sigaction action {};
        action.sa_handler = tessavoEndingSignal;
        action.sa_flags = static_cast<int>(SA_RESTART | SA_RESETHAND);
        ::sigemptyset(&action.sa_mask);
        ::sigaction(endingSignals[i], &action, &native_->former[i]);
        // A signal that the parent has set to be ignored stays ignored: so a shell protects background
        // programs.
        if (native_->former[i].sa_handler == SIG_IGN) {
            ::sigaction(endingSignals[i], &native_->former[i], nullptr);
        }
    }
}

Interruption::~Interruption() {
    if (!native_->thread.joinable()) {
        return;
    }
    for (std::size_t i = 0; i < endingSignals.size(); ++i) {
        ::sigaction(endingSignals[i], &native_->former[i], nullptr);
    }
    wakeEnd = -1;
    wake(native_->pipe[1], wakeForEnd);
    native_->thread.join();
    ::close(native_->pipe[0]);
    ::close(native_->pipe[1]);
}

bool Interruption::happened() const {
    return native_->happened;
}

void lowerThreadPriority() {
    // On this system setpriority() takes a thread's number like a process's. The scheduling class for idle
    // times would be lower still, but a busy machine might not let the thread run while it holds the line.
    constexpr int lowest = 19;
    setpriority(PRIO_PROCESS, static_cast<id_t>(syscall(SYS_gettid)), lowest);
}

}  // namespace tessavo
