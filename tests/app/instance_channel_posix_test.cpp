#include <QFile>
#include <QTest>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>
#include <vector>

#include "app/instance_channel.h"
#include "app/instance_message.h"
#include "app/ui_file_dialogs.h"
#include "support/temporary_folder.h"

// Those who come to the socket and want something else.

namespace tessavo::test {
namespace {

using std::chrono::milliseconds;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr milliseconds never{3600000};
const QString somePath = QStringLiteral("/some/where.eqs");

sockaddr_un addressIn(const std::filesystem::path& folder) {
    const QByteArray path = QFile::encodeName(InstanceChannel::endpoint(textOf(folder)));
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::memcpy(address.sun_path, path.constData(), static_cast<std::size_t>(path.size()));
    return address;
}

/// Somebody who connects by hand.
class Stranger {
 public:
    explicit Stranger(const std::filesystem::path& folder)
        : fd_(::socket(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0)) {
        const sockaddr_un address = addressIn(folder);
        connected_ = ::connect(fd_, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    }
    ~Stranger() { ::close(fd_); }
    Stranger(const Stranger&) = delete;
    Stranger& operator=(const Stranger&) = delete;

    [[nodiscard]] bool connected() const { return connected_; }
    void say(const QByteArray& bytes) const {
        ::send(fd_, bytes.constData(), static_cast<std::size_t>(bytes.size()), MSG_NOSIGNAL);
    }
    /// Waits until the other end is closed.
    /// \return whether it was, and what it has said
    std::pair<bool, QByteArray> hearToTheEnd() const {
        QByteArray heard;
        const bool closed = QTest::qWaitFor(
            [&] {
                std::array<char, 64> bytes{};
                const ssize_t count = ::recv(fd_, bytes.data(), bytes.size(), 0);
                if (count > 0) {
                    heard.append(bytes.data(), count);
                }
                return count == 0 || (count < 0 && errno == ECONNRESET);
            },
            30000);
        return {closed, heard};
    }
    /// Whether the other end is still there.
    [[nodiscard]] bool isHeard() const {
        char byte = 0;
        return ::recv(fd_, &byte, 1, MSG_PEEK) < 0 && errno == EAGAIN;
    }

 private:
    int fd_;
    bool connected_ = false;
};

class ChannelPosix : public ::testing::Test {
 protected:
    void open(milliseconds patience = never, const QString& user = InstanceChannel::thisUser()) {
        channel = std::make_unique<InstanceChannel>(
            textOf(folder.path()),
            [this](const QString& path) {
                taken.push_back(path.toStdString());
                return true;
            },
            patience, user);
        ASSERT_TRUE(channel->isOpen());
    }
    [[nodiscard]] std::filesystem::path socketPath() const { return folder / "tessavo.socket"; }
    /// A start that does everything right.
    void expectOthersAreHeard() {
        const std::size_t before = taken.size();
        const Stranger good(folder.path());
        good.say(messageWithPath(somePath));
        EXPECT_EQ(good.hearToTheEnd(), std::pair(true, QByteArray(1, pathTaken)));
        EXPECT_EQ(taken.size(), before + 1);
    }

    TemporaryFolder folder;
    std::vector<std::string> taken;
    std::unique_ptr<InstanceChannel> channel;
};

TEST_F(ChannelPosix, TheSocketIsOpenToItsOwnerOnlyAndGoesWithTheProgram) {
    open();
    struct stat status {};
    ASSERT_EQ(::lstat(socketPath().c_str(), &status), 0);
    EXPECT_TRUE(S_ISSOCK(status.st_mode));
    EXPECT_EQ(status.st_mode & 0777U, 0600U);
    channel.reset();
    EXPECT_NE(::lstat(socketPath().c_str(), &status), 0);
}

TEST_F(ChannelPosix, DamagedAndOversizedMessagesAreSentAwayAtOnce) {
    open();
    const QByteArray good = messageWithPath(somePath);
    for (const QByteArray& bytes :
         {QByteArray("GET / HTTP/1.1\r\n\r\n"), QByteArray(100000, 'x'), QByteArray(4, '\xFF'),
          good + QByteArray(1, '\0'), good + good, messageWithPath(QStringLiteral("relative.eqs"))}) {
        const Stranger stranger(folder.path());
        ASSERT_TRUE(stranger.connected());
        stranger.say(bytes);
        EXPECT_EQ(stranger.hearToTheEnd(), std::pair(true, QByteArray())) << bytes.left(20).constData();
        EXPECT_THAT(taken, IsEmpty());
    }
    expectOthersAreHeard();
}

TEST_F(ChannelPosix, APathMayComeByteByByte) {
    open();
    const Stranger stranger(folder.path());
    const QByteArray message = messageWithPath(somePath);
    for (const char byte : message.chopped(1)) {
        stranger.say(QByteArray(1, byte));
        QCoreApplication::processEvents();
        ASSERT_TRUE(stranger.isHeard());
    }
    EXPECT_THAT(taken, IsEmpty());
    stranger.say(message.right(1));
    EXPECT_EQ(stranger.hearToTheEnd(), std::pair(true, QByteArray(1, pathTaken)));
    EXPECT_THAT(taken, ElementsAre(somePath.toStdString()));
}

TEST_F(ChannelPosix, WhoSaysNothingIsSentAwayAndKeepsNobodyOut) {
    open(milliseconds(50));
    const Stranger silent(folder.path());
    const Stranger slow(folder.path());
    slow.say(messageWithPath(somePath).left(7));
    ASSERT_TRUE(silent.connected() && slow.connected());
    EXPECT_EQ(silent.hearToTheEnd(), std::pair(true, QByteArray()));
    EXPECT_EQ(slow.hearToTheEnd(), std::pair(true, QByteArray()));
    EXPECT_THAT(taken, IsEmpty());
    expectOthersAreHeard();
}

TEST_F(ChannelPosix, ManyWhoSayNothingKeepNobodyOut) {
    open();
    std::vector<std::unique_ptr<Stranger>> silent;
    for (int i = 0; i < 40; ++i) {
        silent.push_back(std::make_unique<Stranger>(folder.path()));
        ASSERT_TRUE(silent.back()->connected()) << i;
        expectOthersAreHeard();
    }
    EXPECT_TRUE(silent.back()->isHeard()) << "the last one is still waited for";
    EXPECT_EQ(silent.front()->hearToTheEnd(), std::pair(true, QByteArray()));
}

TEST_F(ChannelPosix, WhoLeavesEarlyDoesNoHarm) {
    open();
    for (const qsizetype size : {0, 3, 4, 9}) {
        const Stranger gone(folder.path());
        gone.say(messageWithPath(somePath).left(size));
    }
    {
        const Stranger impatient(folder.path());
        impatient.say(messageWithPath(somePath));
    }
    // The impatient one has said all that it had to.
    ASSERT_TRUE(QTest::qWaitFor([&] { return !taken.empty(); }, 30000));
    expectOthersAreHeard();
    EXPECT_THAT(taken, ElementsAre(somePath.toStdString(), somePath.toStdString()));
}

TEST_F(ChannelPosix, ASocketThatAKilledProgramLeftIsReplaced) {
    const int left = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const sockaddr_un address = addressIn(folder.path());
    ASSERT_EQ(::bind(left, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    ::close(left);
    EXPECT_EQ(InstanceChannel::handOver(textOf(folder.path()), somePath, milliseconds(1000)),
              InstanceChannel::Answer::nobody);
    open();
    expectOthersAreHeard();
}

TEST_F(ChannelPosix, AFileOfThatNameIsLeftAlone) {
    ASSERT_GE(::close(::open(socketPath().c_str(), O_CREAT | O_WRONLY | O_CLOEXEC, 0600)), 0);
    const InstanceChannel closed(textOf(folder.path()), [](const QString&) { return true; });
    EXPECT_FALSE(closed.isOpen());
    EXPECT_TRUE(std::filesystem::is_regular_file(socketPath()));
}

TEST_F(ChannelPosix, AFolderWithTooLongANameLeavesNobodyThere) {
    const QString deep = textOf(folder.path()) + QLatin1Char('/') + QString(200, QLatin1Char('d'));
    ASSERT_TRUE(std::filesystem::create_directory(pathOf(deep)));
    const InstanceChannel closed(deep, [](const QString&) { return true; });
    EXPECT_FALSE(closed.isOpen());
    EXPECT_EQ(InstanceChannel::handOver(deep, somePath, milliseconds(1000)), InstanceChannel::Answer::nobody);
}

TEST_F(ChannelPosix, AnotherUserIsSentAwayUnheard) {
    open(never, QStringLiteral("4294967294"));
    // Whoever comes is this user, and so another one than the channel's.
    const Stranger stranger(folder.path());
    ASSERT_TRUE(stranger.connected()) << "the files let it in";
    stranger.say(messageWithPath(somePath));
    EXPECT_EQ(stranger.hearToTheEnd(), std::pair(true, QByteArray()));
    EXPECT_THAT(taken, IsEmpty());
    channel.reset();
    open(never, QString::number(::geteuid()));
    expectOthersAreHeard();
}

TEST_F(ChannelPosix, AnotherUsersProgramIsToldNothing) {
    open();
    EXPECT_EQ(InstanceChannel::handOver(textOf(folder.path()), somePath, milliseconds(5000),
                                        QStringLiteral("4294967294")),
              InstanceChannel::Answer::nobody);
    // The visit that was broken off comes first.
    expectOthersAreHeard();
    EXPECT_THAT(taken, ElementsAre(somePath.toStdString())) << "from the good one only";
}

TEST_F(ChannelPosix, AUserWithoutANameLetsNobodyIn) {
    open(never, QString());
    const Stranger stranger(folder.path());
    stranger.say(messageWithPath(somePath));
    EXPECT_EQ(stranger.hearToTheEnd(), std::pair(true, QByteArray()));
    EXPECT_THAT(taken, IsEmpty());
}

TEST_F(ChannelPosix, ThisUserIsTheOneThatTheSystemTells) {
    EXPECT_EQ(InstanceChannel::thisUser(), QString::number(::geteuid()));
}

}  // namespace
}  // namespace tessavo::test
