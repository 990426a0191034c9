#include <algorithm>
#include <array>
#include <chrono>
#include <ctime>
#include <optional>
#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include "comm/port_list.h"
#include "comm/port_list_posix.h"
#include "target/pseudo_terminal_posix.h"
#include "target/pty_target.h"

namespace tessavo {

namespace {

constexpr std::string_view devicePrefix = "/dev/";
/// A paced line takes no more than this off the host ahead of time, so that the host feels the pace.
constexpr std::size_t readAhead = 64;
/// No exchange is silent for longer while the host still waits.
constexpr TargetTime longestSilence = std::chrono::seconds(3);
constexpr std::size_t unpacedRead = 8192;

TargetTime monotonicNow() {
    return std::chrono::duration_cast<TargetTime>(std::chrono::steady_clock::now().time_since_epoch());
}

timespec asTimespec(TargetTime duration) {
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(duration);
    return {.tv_sec = seconds.count(), .tv_nsec = static_cast<long>((duration - seconds).count())};
}

}  // namespace

struct PtyTarget::Native {
    PseudoTerminal terminal;
    std::optional<AnnouncedPort> announced;
    std::size_t readLimit = unpacedRead;
    int stopRequest = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    int ended = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);

    Native() = default;
    ~Native() {
        ::close(stopRequest);
        ::close(ended);
    }
    Native(const Native&) = delete;
    Native& operator=(const Native&) = delete;
};

PtyTarget::PtyTarget(TargetMemory memory, Options options, TargetLog log)
    : log_(std::move(log)),
      device_(std::move(memory),
              {.faults = std::move(options.faults),
               .versions = options.versions,
               .timePerByte = byteTime(options.baud),
               .files = options.files},
              [this](TargetLogKind kind, std::string_view text) { lines_.emplace_back(kind, text); }),
      arriving_(byteTime(options.baud)),
      native_(std::make_unique<Native>()) {
    if (options.baud != 0) {
        native_->readLimit = readAhead;
    }
}

PtyTarget::~PtyTarget() {
    stop();
}

std::string PtyTarget::start() {
    if (native_->stopRequest < 0 || native_->ended < 0) {
        return "cannot make an event descriptor";
    }
    if (std::string problem = native_->terminal.open(); !problem.empty()) {
        return problem;
    }
    native_->announced.emplace(portName());
    running_ = true;
    thread_ = std::thread([this] { run(); });
    return {};
}

void PtyTarget::stop() {
    if (!thread_.joinable()) {
        return;
    }
    eventfd_write(native_->stopRequest, 1);
    thread_.join();
}

const std::string& PtyTarget::path() const {
    return native_->terminal.path();
}

std::string PtyTarget::portName() const {
    return path().substr(std::min(path().size(), devicePrefix.size()));
}

int PtyTarget::endDescriptor() const {
    return native_->ended;
}

void PtyTarget::run() {
    const PseudoTerminal& terminal = native_->terminal;
    while (!failed_ && !device_.cablePulled()) {
        std::optional<TargetTime> due = arriving_.nextDue();
        if (const auto leaving = device_.nextDue(); leaving && leaving_.empty()) {
            due = std::min(due.value_or(*leaving), *leaving);
        }
        short wanted = leaving_.empty() ? 0 : POLLOUT;
        if (device_.isOpen() && arriving_.size() < native_->readLimit) {
            wanted |= POLLIN;
        }
        std::array<pollfd, 3> descriptors{
            {{.fd = native_->stopRequest, .events = POLLIN, .revents = 0},
             {.fd = terminal.visitDescriptor(), .events = POLLIN, .revents = 0},
             {.fd = terminal.byteDescriptor(), .events = wanted, .revents = 0}}};
        const timespec wait =
            asTimespec(std::max(due.value_or(TargetTime{0}) - monotonicNow(), TargetTime{0}));
        ppoll(descriptors.data(), descriptors.size(), due ? &wait : nullptr, nullptr);
        if (descriptors[0].revents != 0) {
            break;
        }
        {
            const std::lock_guard guard(mutex_);
            handleVisits();
            takeBytes();
            sendBytes();
            if (((descriptors[1].revents | descriptors[2].revents) & (POLLERR | POLLHUP | POLLNVAL)) != 0) {
                lines_.emplace_back(TargetLogKind::trouble, "the port has failed");
                failed_ = true;
            }
        }
        passOnLines();
    }
    endLine();
}

void PtyTarget::endConnection() {
    device_.closed();
    arriving_.clear();
    leaving_.clear();
    native_->terminal.drain();
}

void PtyTarget::handleOpening() {
    const TargetTime now = monotonicNow();
    // Somebody who finds the port in use must not disturb the exchange. Closings at the same moment are told
    // as one, though, so the count alone is no proof that the other host is still there.
    const bool inUse = device_.isOpen() && hosts_ > 0 && now - lastByte_ < longestSilence;
    if (inUse) {
        ++hosts_;
        device_.openedAgain(now);
        return;
    }
    if (device_.isOpen()) {
        endConnection();
    }
    hosts_ = 1;
    lastByte_ = now;
    device_.opened(now);
}

void PtyTarget::handleVisits() {
    const auto visits = native_->terminal.visits();
    for (const PseudoTerminal::Visit visit : visits) {
        if (visit == PseudoTerminal::Visit::opened) {
            handleOpening();
        } else if (hosts_ > 0 && --hosts_ == 0) {
            endConnection();
        }
    }
    if (!visits.empty() && hosts_ == 0) {
        native_->terminal.restore();
    }
}

void PtyTarget::takeBytes() {
    if (!device_.isOpen()) {
        return;
    }
    if (arriving_.size() < native_->readLimit) {
        const auto bytes = native_->terminal.read(native_->readLimit - arriving_.size());
        if (!bytes.empty()) {
            lastByte_ = monotonicNow();
            arriving_.push(bytes, lastByte_);
        }
    }
    const TargetTime now = monotonicNow();
    device_.receive(arriving_.take(now), now);
}

void PtyTarget::sendBytes() {
    if (leaving_.empty()) {
        leaving_ = device_.takeDue(monotonicNow());
    }
    if (!leaving_.empty()) {
        const std::size_t sent = native_->terminal.write(leaving_);
        if (sent > 0) {
            lastByte_ = monotonicNow();
        }
        leaving_.erase(leaving_.begin(), leaving_.begin() + static_cast<std::ptrdiff_t>(sent));
    }
}

void PtyTarget::passOnLines() {
    std::vector<std::pair<TargetLogKind, std::string>> lines;
    {
        const std::lock_guard guard(mutex_);
        lines.swap(lines_);
    }
    if (log_) {
        for (const auto& [kind, text] : lines) {
            log_(kind, text);
        }
    }
}

void PtyTarget::endLine() {
    native_->announced.reset();
    if (device_.cablePulled()) {
        native_->terminal.linger();
    }
    native_->terminal.close();
    running_ = false;
    eventfd_write(native_->ended, 1);
}

void PtyTarget::holdClipState(const ClipBytes& state) {
    const std::lock_guard guard(mutex_);
    device_.clip().hold(state);
}

void PtyTarget::enqueueClipState(const ClipBytes& state) {
    const std::lock_guard guard(mutex_);
    device_.clip().enqueue(state);
}

void PtyTarget::randomiseClipStates(std::uint32_t seed) {
    const std::lock_guard guard(mutex_);
    device_.clip().randomise(seed);
}

std::size_t PtyTarget::queuedClipStates() const {
    const std::lock_guard guard(mutex_);
    return device_.clip().queued();
}

TargetMemory PtyTarget::memory() const {
    const std::lock_guard guard(mutex_);
    return device_.memory();
}

}  // namespace tessavo
