#include <QDataStream>
#include <QTest>
#include <QTimer>
#include <array>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <iostream>
#include <random>
#include <sstream>

#include "app/program_folder.h"
#include "app/tessavo_app.h"
#include "app/tessavo_view.h"
#include "app/ui_file_dialogs.h"
#include "controls/skin_button.h"
#include "controls/skin_message_box.h"

// The whole application with profiles that are of no use.

namespace tessavo::test {
namespace {

using ::testing::HasSubstr;
using ::testing::IsEmpty;

class DamagedProfile : public ::testing::Test {
 protected:
    [[nodiscard]] QString path() const { return textOf(folder / "profile.ini"); }
    void write(const QByteArray& bytes) const {
        std::ofstream(folder / "profile.ini", std::ios::binary).write(bytes.constData(), bytes.size());
    }

    /// Starts with the profile at this path and closes by No.
    /// \return what was told on standard error
    std::string startAndClose(const QString& profile) {
        std::array<char, 8> name{"tessavo"};
        std::array<char*, 2> arguments{name.data(), nullptr};
        int count = 1;
        const std::ostringstream told;
        std::streambuf* before = std::cerr.rdbuf(told.rdbuf());
        {
            CTessavoApp app(count, arguments.data(), std::make_unique<Profile>(profile));
            EXPECT_TRUE(app.InitInstance({}));
            CMainFrame& frame = app.frame();
            EXPECT_TRUE(frame.isVisible());
            EXPECT_EQ(frame.size(), QSize(1024, 736));
            // Its caption can be reached.
            EXPECT_TRUE(frame.screen()->geometry().contains(frame.frameGeometry().topLeft()))
                << frame.pos().x() << ", " << frame.pos().y();
            EXPECT_EQ(frame.view().pages().size(), pageCount);
            recent = frame.action(QStringLiteral("1 /gone/a.eqs")) != nullptr;
            QTimer answer;
            QObject::connect(&answer, &QTimer::timeout, [] {
                if (auto* box = qobject_cast<SkinMessageBox*>(QApplication::activeModalWidget())) {
                    QTest::mouseClick(box->buttons().at(1), Qt::LeftButton);
                }
            });
            answer.start(1);
            QTimer::singleShot(0, &frame, [&frame] { frame.close(); });
            EXPECT_EQ(app.run(), 0);
        }
        std::cerr.rdbuf(before);
        return told.str();
    }

    ProgramFolder folder;
    bool recent = false;  ///< whether the menu offered the file /gone/a.eqs
};

TEST_F(DamagedProfile, RandomBytesAreForgotten) {
    std::mt19937 random(7);
    for (const int size : {1, 300, 20000}) {
        QByteArray bytes(size, '\0');
        for (char& byte : bytes) {
            byte = static_cast<char>(random());
        }
        write(bytes);
        EXPECT_THAT(startAndClose(path()), IsEmpty()) << size;
    }
}

TEST_F(DamagedProfile, OneOfManyMegabytesIsTaken) {
    write("[General]\n" + QByteArray(20'000'000, 'a') + "=1\nrecentFiles=/gone/a.eqs\n");
    EXPECT_THAT(startAndClose(path()), IsEmpty());
    EXPECT_TRUE(recent);
}

TEST_F(DamagedProfile, ValuesOfOtherTypesAreForgotten) {
    write(
        "[General]\nrecentFiles=@Rect(1 2 3 4)\nport=@Size(1 2)\nfolder=@Invalid()\nwindowPlace=@Point(1 "
        "2)\n");
    EXPECT_THAT(startAndClose(path()), IsEmpty());
}

TEST_F(DamagedProfile, FilesFoldersAndPortsThatAreGoneDoNoHarm) {
    write("[General]\nrecentFiles=/gone/a.eqs, /gone/b.eqs\nport=gone7\nfolder=/gone\n");
    EXPECT_THAT(startAndClose(path()), IsEmpty());
    EXPECT_TRUE(recent);
}

TEST_F(DamagedProfile, APlaceFarFromEveryScreenIsBroughtBack) {
    // As the toolkit writes it: its mark and version, frame and normal geometry, screen, states, width,
    // geometry.
    for (const QRect& bounds : {QRect(50000, 40000, 1024, 736), QRect(-50000, -40000, 1024, 736),
                                QRect(QPoint(2147483000, 5), QPoint(2147483600, 700)), QRect(10, 10, 0, 0),
                                QRect(10, 10, 100000, 100000)}) {
        QByteArray bytes;
        QDataStream stream(&bytes, QIODevice::WriteOnly);
        stream.setVersion(QDataStream::Qt_4_0);
        stream << quint32{0x1D9D0CB} << quint16{3} << quint16{0} << bounds << bounds << qint32{7} << quint8{0}
               << quint8{0} << qint32{1920} << bounds;
        Profile(path()).setWindowPlacement(bytes);
        EXPECT_THAT(startAndClose(path()), IsEmpty());
    }
}

TEST_F(DamagedProfile, AFolderInItsPlaceIsToldAtTheEnd) {
    std::filesystem::create_directory(folder / "profile.ini");
    EXPECT_THAT(startAndClose(path()), HasSubstr("profile.ini cannot be written"));
}

TEST_F(DamagedProfile, AHomeThatCannotBeWrittenIsToldAtTheEnd) {
    write("this is no folder");
    const std::string told = startAndClose(path() + QStringLiteral("/home/profile.ini"));
    EXPECT_THAT(told, ::testing::StartsWith("tessavo: "));
    EXPECT_THAT(told, ::testing::EndsWith(
                          "cannot be written: recent files, port and window place are not remembered.\n"));
}

}  // namespace
}  // namespace tessavo::test
