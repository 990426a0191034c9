#include <QDir>
#include <QFile>
#include <QList>
#include <QObject>
#include <QSocketNotifier>
#include <QTimer>
#include <array>
#include <cerrno>
#include <cstring>
#include <optional>
#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>
#include <utility>

#include "app/instance_channel.h"
#include "app/instance_message.h"
#include "base/descriptor_posix.h"

namespace tessavo {

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr int mostVisitors = 8;
// When no more files can be opened, nobody can be let in for a while.
constexpr milliseconds pauseWithoutFiles{1000};

int makeSocket() {
    return ::socket(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
}

// Nothing when the name is longer than the system takes.
std::optional<sockaddr_un> addressOf(const QString& folder) {
    const QByteArray path = QFile::encodeName(InstanceChannel::endpoint(folder));
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (static_cast<std::size_t>(path.size()) >= sizeof address.sun_path) {
        return std::nullopt;
    }
    std::memcpy(address.sun_path, path.constData(), static_cast<std::size_t>(path.size()));
    return address;
}

const sockaddr* generic(const sockaddr_un& address) {
    return reinterpret_cast<const sockaddr*>(&address);
}

bool isOfUser(int fd, const QString& user) {
    ucred other{};
    socklen_t size = sizeof other;
    return ::getsockopt(fd, SOL_SOCKET, SO_PEERCRED, &other, &size) == 0 &&
           QString::number(other.uid) == user;
}

/// Somebody who has come in.
class Visitor : public QObject {
 public:
    Visitor(int fd, const InstanceChannel::Taker& take, milliseconds patience, QObject* parent)
        : QObject(parent), socket_(fd), take_(take), notifier_(fd, QSocketNotifier::Read) {
        connect(&notifier_, &QSocketNotifier::activated, this, [this] { receive(); });
        QTimer::singleShot(patience, this, [this] { leave(); });
    }

    [[nodiscard]] bool isHere() const { return socket_.valid(); }

    void leave() {
        notifier_.setEnabled(false);
        socket_.close();
        deleteLater();
    }

 private:
    void receive() {
        std::array<char, 4096> bytes{};
        while (socket_.valid()) {
            const ssize_t count = ::recv(socket_.get(), bytes.data(), bytes.size(), 0);
            if (count < 0 && errno == EINTR) {
                continue;
            }
            if (count < 0 && errno == EAGAIN) {
                return;
            }
            if (count <= 0) {
                leave();
                return;
            }
            received_.append(bytes.data(), count);
            judge();
        }
    }

    void judge() {
        const MessageReading reading = readMessage(received_);
        if (reading.verdict == MessageVerdict::incomplete) {
            return;
        }
        // Nothing more is heard while the path is taken.
        notifier_.setEnabled(false);
        if (reading.verdict == MessageVerdict::whole && take_(reading.path)) {
            ::send(socket_.get(), &pathTaken, 1, MSG_NOSIGNAL);
        }
        leave();
    }

    Descriptor socket_;
    const InstanceChannel::Taker& take_;
    QSocketNotifier notifier_;
    QByteArray received_;
};

bool waitFor(int fd, short events, Clock::time_point deadline) {
    for (;;) {
        const auto left = std::chrono::ceil<milliseconds>(deadline - Clock::now());
        pollfd one{fd, events, 0};
        const int ready = ::poll(&one, 1, static_cast<int>(std::max<milliseconds::rep>(left.count(), 0)));
        if (ready > 0) {
            return true;
        }
        if (ready == 0 || errno != EINTR) {
            return false;
        }
    }
}

bool sendAll(int fd, const QByteArray& message, Clock::time_point deadline) {
    qsizetype sent = 0;
    while (sent < message.size() && waitFor(fd, POLLOUT, deadline)) {
        const ssize_t count = ::send(fd, message.constData() + sent,
                                     static_cast<std::size_t>(message.size() - sent), MSG_NOSIGNAL);
        if (count < 0 && errno != EINTR && errno != EAGAIN) {
            return false;
        }
        sent += std::max<ssize_t>(count, 0);
    }
    return sent == message.size();
}

}  // namespace

struct InstanceChannel::Native : QObject {
    Native(const QString& folder, Taker taker, milliseconds visitorsPatience, QString whose)
        : take(std::move(taker)), patience(visitorsPatience), user(std::move(whose)), listener(makeSocket()) {
        const auto address = addressOf(folder);
        if (!address || !listener.valid()) {
            return;
        }
        // A program that was killed leaves its socket behind. Whoever holds the place may take it away.
        struct stat status {};
        if (::lstat(address->sun_path, &status) == 0 && S_ISSOCK(status.st_mode)) {
            ::unlink(address->sun_path);
        }
        ::fchmod(listener.get(), S_IRUSR | S_IWUSR);
        if (::bind(listener.get(), generic(*address), sizeof *address) != 0) {
            return;
        }
        if (::listen(listener.get(), mostVisitors) != 0) {
            ::unlink(address->sun_path);
            return;
        }
        path = address->sun_path;
        notifier.emplace(listener.get(), QSocketNotifier::Read);
        connect(&*notifier, &QSocketNotifier::activated, this, [this] { acceptVisitors(); });
    }

    ~Native() override {
        if (!path.isEmpty()) {
            ::unlink(path.constData());
        }
    }
    Native(const Native&) = delete;
    Native& operator=(const Native&) = delete;

    void acceptVisitors() {
        for (;;) {
            const int fd = ::accept4(listener.get(), nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC);
            if (fd < 0) {
                if (errno == EINTR || errno == ECONNABORTED) {
                    continue;
                }
                if (errno != EAGAIN) {
                    notifier->setEnabled(false);
                    QTimer::singleShot(pauseWithoutFiles, this, [this] { notifier->setEnabled(true); });
                }
                return;
            }
            if (!isOfUser(fd, user)) {
                ::close(fd);
                continue;
            }
            sendAwayTheOldest();
            new Visitor(fd, take, patience, this);
        }
    }

    // Those who say nothing must not keep the others out.
    void sendAwayTheOldest() const {
        QList<Visitor*> here;
        for (QObject* child : children()) {
            auto* visitor = dynamic_cast<Visitor*>(child);
            if (visitor != nullptr && visitor->isHere()) {
                here.append(visitor);
            }
        }
        if (here.size() >= mostVisitors) {
            here.constFirst()->leave();
        }
    }

    Taker take;
    milliseconds patience;
    QString user;
    QByteArray path;
    Descriptor listener;
    std::optional<QSocketNotifier> notifier;
};

QString InstanceChannel::thisUser() {
    return QString::number(::geteuid());
}

InstanceChannel::InstanceChannel(const QString& folder, Taker take, milliseconds patience,
                                 const QString& user)
    : native_(std::make_unique<Native>(folder, std::move(take), patience, user)) {}

InstanceChannel::~InstanceChannel() = default;

bool InstanceChannel::isOpen() const {
    return native_->notifier.has_value();
}

QString InstanceChannel::endpoint(const QString& folder) {
    return QDir(folder).filePath(QStringLiteral("tessavo.socket"));
}

InstanceChannel::Answer InstanceChannel::handOver(const QString& folder, const QString& path,
                                                  milliseconds limit, const QString& user) {
    const auto deadline = Clock::now() + limit;
    const QByteArray message = messageWithPath(path);
    const auto address = addressOf(folder);
    const Descriptor socket(makeSocket());
    if (!address || !socket.valid() || ::connect(socket.get(), generic(*address), sizeof *address) != 0 ||
        !isOfUser(socket.get(), user)) {
        return Answer::nobody;
    }
    if (message.isEmpty() || !sendAll(socket.get(), message, deadline) ||
        !waitFor(socket.get(), POLLIN, deadline)) {
        return Answer::refused;
    }
    char answer = 0;
    return ::recv(socket.get(), &answer, 1, 0) == 1 && answer == pathTaken ? Answer::accepted
                                                                           : Answer::refused;
}

}  // namespace tessavo
