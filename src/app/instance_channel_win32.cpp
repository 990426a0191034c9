#include <windows.h>

#include <QCryptographicHash>
#include <QDir>
#include <QObject>
#include <QTimer>
#include <QWinEventNotifier>
#include <aclapi.h>
#include <algorithm>
#include <array>
#include <sddl.h>
#include <string>
#include <utility>
#include <vector>

#include "app/instance_channel.h"
#include "app/instance_message.h"
#include "base/handle_win32.h"

namespace tessavo {

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr DWORD pipeBuffer = 4096;

/// What the system gives to be freed with LocalFree.
template <typename Pointer>
class Local {
 public:
    Local() = default;
    ~Local() { LocalFree(pointer_); }
    Local(const Local&) = delete;
    Local& operator=(const Local&) = delete;

    [[nodiscard]] Pointer get() const { return pointer_; }
    [[nodiscard]] Pointer* address() { return &pointer_; }

 private:
    Pointer pointer_ = nullptr;
};

QString sidText(PSID identity) {
    Local<LPWSTR> text;
    return ConvertSidToStringSidW(identity, text.address()) != 0 ? QString::fromWCharArray(text.get())
                                                                 : QString();
}

// Owned by this user, and open to nobody else.
bool makeOwnersOnly(const QString& user, Local<PSECURITY_DESCRIPTOR>& descriptor) {
    const std::wstring owner = user.toStdWString();
    const std::wstring text = L"O:" + owner + L"D:P(A;;GA;;;" + owner + L")";
    return !owner.empty() && ConvertStringSecurityDescriptorToSecurityDescriptorW(
                                 text.c_str(), SDDL_REVISION_1, descriptor.address(), nullptr) != 0;
}

bool isOfUser(HANDLE pipe, const QString& user) {
    PSID owner = nullptr;
    Local<PSECURITY_DESCRIPTOR> descriptor;
    return !user.isEmpty() &&
           GetSecurityInfo(pipe, SE_KERNEL_OBJECT, OWNER_SECURITY_INFORMATION, &owner, nullptr, nullptr,
                           nullptr, descriptor.address()) == ERROR_SUCCESS &&
           sidText(owner) == user;
}

std::wstring nameOf(const QString& folder) {
    return InstanceChannel::endpoint(folder).toStdWString();
}

HANDLE makePipe(const QString& folder, const QString& user) {
    Local<PSECURITY_DESCRIPTOR> descriptor;
    if (!makeOwnersOnly(user, descriptor)) {
        return INVALID_HANDLE_VALUE;
    }
    SECURITY_ATTRIBUTES attributes{sizeof(SECURITY_ATTRIBUTES), descriptor.get(), FALSE};
    // The name is refused when somebody else has made a pipe of it before.
    return CreateNamedPipeW(nameOf(folder).c_str(),
                            PIPE_ACCESS_DUPLEX | FILE_FLAG_OVERLAPPED | FILE_FLAG_FIRST_PIPE_INSTANCE,
                            PIPE_TYPE_BYTE | PIPE_READMODE_BYTE | PIPE_WAIT | PIPE_REJECT_REMOTE_CLIENTS, 1,
                            pipeBuffer, pipeBuffer, 0, &attributes);
}

/// One operation on a pipe at a time, which a deadline or the end of this object cuts short.
class PipeOperation {
 public:
    explicit PipeOperation(HANDLE pipe) : pipe_(pipe), done_(CreateEventW(nullptr, TRUE, FALSE, nullptr)) {}
    ~PipeOperation() { cancel(); }
    PipeOperation(const PipeOperation&) = delete;
    PipeOperation& operator=(const PipeOperation&) = delete;

    [[nodiscard]] HANDLE done() const { return done_.get(); }
    OVERLAPPED* begin() {
        overlapped_ = {};
        overlapped_.hEvent = done_.get();
        ResetEvent(done_.get());
        return &overlapped_;
    }
    // Tells what the call that was made with begin() has answered.
    bool started(BOOL answered) {
        running_ = answered != 0 || GetLastError() == ERROR_IO_PENDING;
        return running_;
    }
    bool finish(DWORD& count) {
        running_ = false;
        return GetOverlappedResult(pipe_, &overlapped_, &count, TRUE) != 0;
    }
    void cancel() {
        if (running_) {
            CancelIoEx(pipe_, &overlapped_);
            DWORD count = 0;
            finish(count);
        }
    }

 private:
    HANDLE pipe_;
    win32::Handle done_;
    OVERLAPPED overlapped_{};
    bool running_ = false;
};

// The number of bytes that went through before the deadline, 0 for none.
DWORD inTime(PipeOperation& operation, BOOL answered, Clock::time_point deadline) {
    if (!operation.started(answered)) {
        return 0;
    }
    const auto left = std::chrono::ceil<milliseconds>(deadline - Clock::now());
    const auto wait = static_cast<DWORD>(std::max<milliseconds::rep>(left.count(), 0));
    DWORD count = 0;
    if (WaitForSingleObject(operation.done(), wait) != WAIT_OBJECT_0) {
        operation.cancel();
        return 0;
    }
    return operation.finish(count) ? count : 0;
}

// The pipe lets in one at a time.
HANDLE openPipe(const std::wstring& name, Clock::time_point deadline) {
    constexpr DWORD pauseMs = 20;
    for (;;) {
        // The program that listens may learn who this is, but not act for this user elsewhere.
        const HANDLE pipe =
            CreateFileW(name.c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING,
                        FILE_FLAG_OVERLAPPED | SECURITY_SQOS_PRESENT | SECURITY_IDENTIFICATION, nullptr);
        if (pipe != INVALID_HANDLE_VALUE || GetLastError() != ERROR_PIPE_BUSY || Clock::now() >= deadline) {
            return pipe;
        }
        WaitNamedPipeW(name.c_str(), pauseMs);
    }
}

}  // namespace

/// The pipe has one end, so visitors come one after another; a second start asks again until it is let in.
struct InstanceChannel::Native : QObject {
    Native(const QString& folder, Taker taker, milliseconds visitorsPatience, const QString& user)
        : take(std::move(taker)),
          patience(visitorsPatience),
          pipe(makePipe(folder, user)),
          operation(pipe.get()),
          notifier(operation.done()) {
        connect(&notifier, &QWinEventNotifier::activated, this, [this] { goOn(); });
        limit.setSingleShot(true);
        connect(&limit, &QTimer::timeout, this, [this] { waitForNext(); });
        if (pipe.valid()) {
            waitForNext();
        }
    }

    void waitForNext() {
        limit.stop();
        operation.cancel();
        DisconnectNamedPipe(pipe.get());
        received.clear();
        state = State::alone;
        const BOOL answered = ConnectNamedPipe(pipe.get(), operation.begin());
        if (answered == 0 && GetLastError() == ERROR_PIPE_CONNECTED) {
            // Somebody was there already.
            startVisit();
        } else if (!operation.started(answered)) {
            limit.start(patience);
        }
    }

    void startVisit() {
        state = State::reading;
        limit.start(patience);
        startReading();
    }

    void startReading() {
        if (!operation.started(ReadFile(pipe.get(), bytes.data(), pipeBuffer, nullptr, operation.begin()))) {
            waitForNext();
        }
    }

    // Called when the operation under way has ended.
    void goOn() {
        DWORD count = 0;
        const bool good = operation.finish(count);
        switch (state) {
            case State::alone:
                good ? startVisit() : waitForNext();
                break;
            case State::reading:
                if (good && count > 0) {
                    received.append(bytes.data(), static_cast<qsizetype>(count));
                    judge();
                } else {
                    waitForNext();
                }
                break;
            case State::answering:
                // Its other end is closed once the answer has been read; closed from here it would be lost.
                state = State::parting;
                startReading();
                break;
            case State::parting:
                waitForNext();
                break;
        }
    }

    void judge() {
        const MessageReading reading = readMessage(received);
        if (reading.verdict == MessageVerdict::incomplete) {
            startReading();
        } else if (reading.verdict == MessageVerdict::whole && take(reading.path)) {
            state = State::answering;
            if (!operation.started(WriteFile(pipe.get(), &pathTaken, 1, nullptr, operation.begin()))) {
                waitForNext();
            }
        } else {
            waitForNext();
        }
    }

    enum class State { alone, reading, answering, parting };

    Taker take;
    milliseconds patience;
    std::array<char, pipeBuffer> bytes{};
    QByteArray received;
    State state = State::alone;
    win32::Handle pipe;
    PipeOperation operation;
    QWinEventNotifier notifier;
    QTimer limit;
};

QString InstanceChannel::thisUser() {
    HANDLE opened = nullptr;
    if (OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &opened) == 0) {
        return {};
    }
    const win32::Handle token(opened);
    DWORD size = 0;
    GetTokenInformation(token.get(), TokenUser, nullptr, 0, &size);
    // Aligned for what the system writes into it.
    std::vector<std::uint64_t> user(size / sizeof(std::uint64_t) + 1);
    if (GetTokenInformation(token.get(), TokenUser, user.data(), size, &size) == 0) {
        return {};
    }
    return sidText(reinterpret_cast<const TOKEN_USER*>(user.data())->User.Sid);
}

InstanceChannel::InstanceChannel(const QString& folder, Taker take, milliseconds patience,
                                 const QString& user)
    : native_(std::make_unique<Native>(folder, std::move(take), patience, user)) {}

InstanceChannel::~InstanceChannel() = default;

bool InstanceChannel::isOpen() const {
    return native_->pipe.valid();
}

QString InstanceChannel::endpoint(const QString& folder) {
    // All users of a machine share the names of pipes; the folder is one user's own.
    const QByteArray own = QCryptographicHash::hash(QDir(folder).absolutePath().toCaseFolded().toUtf8(),
                                                    QCryptographicHash::Sha256);
    return QStringLiteral(R"(\\.\pipe\tessavo-)") + QString::fromLatin1(own.toHex());
}

InstanceChannel::Answer InstanceChannel::handOver(const QString& folder, const QString& path,
                                                  milliseconds limit, const QString& user) {
    const auto deadline = Clock::now() + limit;
    const QByteArray message = messageWithPath(path);
    const win32::Handle pipe(openPipe(nameOf(folder), deadline));
    if (!pipe.valid() || !isOfUser(pipe.get(), user)) {
        return Answer::nobody;
    }
    // Only the program that the person has just started may let another one come to the front.
    AllowSetForegroundWindow(ASFW_ANY);
    PipeOperation operation(pipe.get());
    DWORD sent = 0;
    while (sent < static_cast<DWORD>(message.size())) {
        const DWORD count =
            inTime(operation,
                   WriteFile(pipe.get(), message.constData() + sent,
                             static_cast<DWORD>(message.size()) - sent, nullptr, operation.begin()),
                   deadline);
        if (count == 0) {
            return Answer::refused;
        }
        sent += count;
    }
    char answer = 0;
    const DWORD heard =
        message.isEmpty()
            ? 0
            : inTime(operation, ReadFile(pipe.get(), &answer, 1, nullptr, operation.begin()), deadline);
    return heard == 1 && answer == pathTaken ? Answer::accepted : Answer::refused;
}

}  // namespace tessavo
