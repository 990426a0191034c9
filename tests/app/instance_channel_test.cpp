#include "app/instance_channel.h"

#include <QDir>
#include <QTest>
#include <chrono>
#include <future>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "app/instance_message.h"
#include "app/ui_file_dialogs.h"
#include "support/temporary_folder.h"

// What a second start says to the program that is open.

namespace tessavo::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Answer = InstanceChannel::Answer;
using std::chrono::milliseconds;

constexpr milliseconds longEnough{30000};

QString wholePath(const QString& name) {
    return QDir::toNativeSeparators(QDir::root().absoluteFilePath(name));
}

QByteArray lengthBytes(quint32 length) {
    QByteArray bytes;
    for (int i = 0; i < 4; ++i) {
        bytes.append(static_cast<char>(length >> (8 * i)));
    }
    return bytes;
}

QByteArray message(const QByteArray& text) {
    return lengthBytes(static_cast<quint32>(text.size())) + text;
}

// ---- the message

TEST(InstanceMessage, CarriesAPathAndNothingElse) {
    for (const QString& path :
         {QString(), wholePath(QStringLiteral("a.eqs")), wholePath(QStringLiteral("Grün & 声 %1 ~.eqs"))}) {
        const QByteArray bytes = messageWithPath(path);
        EXPECT_EQ(bytes, message(path.toUtf8()));
        const MessageReading reading = readMessage(bytes);
        EXPECT_EQ(reading.verdict, MessageVerdict::whole) << path.toStdString();
        EXPECT_EQ(reading.path, path);
        for (qsizetype size = 0; size < bytes.size(); ++size) {
            EXPECT_EQ(readMessage(bytes.left(size)).verdict, MessageVerdict::incomplete) << size;
        }
        EXPECT_EQ(readMessage(bytes + 'x').verdict, MessageVerdict::refused);
    }
}

TEST(InstanceMessage, HasAPathOfBoundedLength) {
    const QString root = QDir::rootPath();
    const QString longest = root + QString(longestHandedPath - root.size(), QLatin1Char('a'));
    ASSERT_EQ(longest.toUtf8().size(), longestHandedPath);
    EXPECT_EQ(readMessage(messageWithPath(longest)).path, longest);
    EXPECT_EQ(messageWithPath(longest + QLatin1Char('a')), QByteArray());
    for (const quint32 length : {quint32{longestHandedPath} + 1, 0x7FFFFFFFU, 0x80000000U, 0xFFFFFFFFU}) {
        EXPECT_EQ(readMessage(lengthBytes(length)).verdict, MessageVerdict::refused) << length;
    }
}

TEST(InstanceMessage, IsRefusedWhenItIsNoWholePath) {
    const QByteArray root = QDir::rootPath().toUtf8();
    const QByteArray zero(1, '\0');
    for (const QByteArray& text :
         {QByteArray("a.eqs"), QByteArray("./a.eqs"), QByteArray("../a.eqs"), QByteArray("--demo"),
          QByteArray(":/icons/tessavo-16.png"), QByteArray("file:///a.eqs"), zero, root + "a" + zero,
          root + zero + "a", root + "\xFF.eqs", root + "\xC3", root + "\xC0\xAF.eqs",
          root + "\xED\xA0\x80.eqs"}) {
        EXPECT_EQ(readMessage(message(text)).verdict, MessageVerdict::refused)
            << text.toPercentEncoding().constData();
    }
}

// ---- from one program to the other

class Channel : public ::testing::Test {
 protected:
    InstanceChannel::Taker taker() {
        return [this](const QString& path) {
            taken.push_back(path.toStdString());
            return takes;
        };
    }
    /// Hands over from another thread while this one serves the channel.
    Answer handOver(const QString& path, milliseconds limit = longEnough) {
        auto answer = std::async(std::launch::async, [this, path, limit] {
            return InstanceChannel::handOver(textOf(folder.path()), path, limit);
        });
        EXPECT_TRUE(
            QTest::qWaitFor([&] { return answer.wait_for(milliseconds(0)) == std::future_status::ready; },
                            static_cast<int>(longEnough.count())));
        return answer.get();
    }

    TemporaryFolder folder;
    bool takes = true;
    std::vector<std::string> taken;
};

TEST_F(Channel, HandsPathsOverOneAfterAnother) {
    const InstanceChannel channel(textOf(folder.path()), taker());
    ASSERT_TRUE(channel.isOpen());
    const QString first = wholePath(QStringLiteral("Grün 声.eqs"));
    const QString second = wholePath(QStringLiteral("b.eqs"));
    EXPECT_EQ(handOver(first), Answer::accepted);
    EXPECT_EQ(handOver({}), Answer::accepted);
    EXPECT_EQ(handOver(second), Answer::accepted);
    EXPECT_THAT(taken, ElementsAre(first.toStdString(), "", second.toStdString()));
}

TEST_F(Channel, HandsALongPathOverInSeveralParts) {
    const InstanceChannel channel(textOf(folder.path()), taker());
    const QString path = wholePath(QString(20000, QLatin1Char('a')));
    EXPECT_EQ(handOver(path), Answer::accepted);
    EXPECT_THAT(taken, ElementsAre(path.toStdString()));
    EXPECT_EQ(handOver(wholePath(QString(longestHandedPath, QLatin1Char('a')))), Answer::refused);
    EXPECT_EQ(taken.size(), 1U);
}

TEST_F(Channel, TellsWhenThePathIsNotTaken) {
    const InstanceChannel channel(textOf(folder.path()), taker());
    takes = false;
    EXPECT_EQ(handOver(wholePath(QStringLiteral("a.eqs"))), Answer::refused);
    EXPECT_EQ(taken.size(), 1U);
}

TEST_F(Channel, RefusesAPathThatDependsOnAFolder) {
    const InstanceChannel channel(textOf(folder.path()), taker());
    EXPECT_EQ(handOver(QStringLiteral("a.eqs")), Answer::refused);
    EXPECT_THAT(taken, IsEmpty());
}

TEST_F(Channel, FindsNobodyWhereNoProgramListens) {
    EXPECT_EQ(handOver(wholePath(QStringLiteral("a.eqs"))), Answer::nobody);
    std::make_unique<InstanceChannel>(textOf(folder.path()), taker()).reset();
    EXPECT_EQ(handOver(wholePath(QStringLiteral("a.eqs"))), Answer::nobody);
    const InstanceChannel next(textOf(folder.path()), taker());
    EXPECT_TRUE(next.isOpen());
    EXPECT_EQ(handOver({}), Answer::accepted);
}

TEST_F(Channel, ASecondStartDoesNotWaitForAProgramThatHangs) {
    const InstanceChannel channel(textOf(folder.path()), taker());
    // Nobody serves the channel meanwhile.
    EXPECT_EQ(InstanceChannel::handOver(textOf(folder.path()), wholePath(QStringLiteral("a.eqs")),
                                        milliseconds(50)),
              Answer::refused);
    EXPECT_THAT(taken, IsEmpty());
}

TEST_F(Channel, ManyStartsAtOnceAreAllHeard) {
    const InstanceChannel channel(textOf(folder.path()), taker());
    constexpr int starts = 6;
    std::vector<std::future<Answer>> answers;
    for (int i = 0; i < starts; ++i) {
        answers.push_back(std::async(std::launch::async, [this, i] {
            const QString path = wholePath(QStringLiteral("%1.eqs").arg(i));
            const auto deadline = std::chrono::steady_clock::now() + longEnough;
            Answer answer = Answer::nobody;
            // As the program does it: a busy pipe is asked again.
            while (answer == Answer::nobody && std::chrono::steady_clock::now() < deadline) {
                answer = InstanceChannel::handOver(textOf(folder.path()), path, longEnough);
            }
            return answer;
        }));
    }
    for (auto& answer : answers) {
        EXPECT_TRUE(
            QTest::qWaitFor([&] { return answer.wait_for(milliseconds(0)) == std::future_status::ready; },
                            static_cast<int>(longEnough.count())));
        EXPECT_EQ(answer.get(), Answer::accepted);
    }
    EXPECT_EQ(taken.size(), starts);
}

}  // namespace
}  // namespace tessavo::test
