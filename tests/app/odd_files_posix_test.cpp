#include <QApplication>
#include <QTest>
#include <QTimer>
#include <array>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <iostream>
#include <sstream>
#include <sys/stat.h>
#include <unistd.h>

#include "app/instance_guard.h"
#include "app/program_folder.h"
#include "app/tessavo_app.h"
#include "app/ui_file_dialogs.h"
#include "controls/skin_button.h"
#include "controls/skin_message_box.h"

// Pipes in the places of files that a start reads. A pipe that is opened in the usual way waits for its other
// end; the alarm ends such a test instead of the patience of whoever runs it.

namespace tessavo::test {
namespace {

using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::Not;

class OddFiles : public ::testing::Test {
 protected:
    OddFiles() {
        constexpr unsigned hangSeconds = 60;
        ::alarm(hangSeconds);
    }
    ~OddFiles() override {
        ::alarm(0);
        qunsetenv("XDG_CONFIG_HOME");
    }

    [[nodiscard]] std::filesystem::path makePipe(const std::filesystem::path& path) const {
        std::filesystem::create_directories(path.parent_path());
        EXPECT_EQ(::mkfifo(path.c_str(), 0600), 0) << path;
        return path;
    }
    /// Starts with a profile, the user's own when empty, and closes by No.
    /// \return what was told on standard error
    static std::string startAndClose(std::unique_ptr<Profile> profile) {
        std::array<char, 8> name{"tessavo"};
        std::array<char*, 2> arguments{name.data(), nullptr};
        int count = 1;
        const std::ostringstream told;
        std::streambuf* before = std::cerr.rdbuf(told.rdbuf());
        {
            CTessavoApp app(count, arguments.data(), std::move(profile));
            EXPECT_TRUE(app.InitInstance({}));
            QTimer answer;
            QObject::connect(&answer, &QTimer::timeout, [] {
                if (auto* box = qobject_cast<SkinMessageBox*>(QApplication::activeModalWidget())) {
                    QTest::mouseClick(box->buttons().at(1), Qt::LeftButton);
                }
            });
            answer.start(1);
            QTimer::singleShot(0, &app.frame(), [&app] { app.frame().close(); });
            EXPECT_EQ(app.run(), 0);
        }
        std::cerr.rdbuf(before);
        return told.str();
    }

    ProgramFolder folder;
};

TEST_F(OddFiles, AProfileThatIsAPipeReadsAsEmptyAndIsToldAtTheEnd) {
    const auto pipe = makePipe(folder / "profile.ini");
    EXPECT_THAT(startAndClose(std::make_unique<Profile>(textOf(pipe))),
                EndsWith("profile.ini cannot be written: recent files, port and window place are not "
                         "remembered.\n"));
    EXPECT_TRUE(std::filesystem::is_fifo(pipe));
}

TEST_F(OddFiles, SoDoesTheUsersOwn) {
    qputenv("XDG_CONFIG_HOME", QByteArray::fromStdString(folder.path().string()));
    for (const char* name : {"Velmira/Velmira Audio Systems Equalizing Tool.conf", "Velmira.conf"}) {
        const auto pipe = makePipe(folder / name);
        EXPECT_THAT(startAndClose(nullptr), HasSubstr(pipe.string() + " cannot be written")) << name;
        EXPECT_TRUE(std::filesystem::is_fifo(pipe));
        std::filesystem::remove(pipe);
        EXPECT_THAT(startAndClose(nullptr), Not(HasSubstr("cannot be written"))) << name;
    }
}

TEST_F(OddFiles, AnEndlessProfileReadsAsEmpty) {
    std::filesystem::create_symlink("/dev/zero", folder / "profile.ini");
    EXPECT_EQ(Profile(textOf(folder / "profile.ini")).recentFiles(), QStringList());
}

TEST_F(OddFiles, APipeInThePlaceOfTheLockCountsAsFree) {
    const auto pipe = makePipe(folder / "tessavo.lock");
    EXPECT_TRUE(InstanceGuard(textOf(folder.path())).isFirst());
    EXPECT_TRUE(std::filesystem::is_fifo(pipe));
}

TEST_F(OddFiles, AFileOfTheCommandLineThatIsAPipeCannotBeOpened) {
    const auto pipe = makePipe(folder / "a.eqs");
    std::array<char, 8> name{"tessavo"};
    std::array<char*, 2> arguments{name.data(), nullptr};
    int count = 1;
    ::testing::internal::CaptureStderr();
    {
        CTessavoApp app(count, arguments.data(), std::make_unique<Profile>(textOf(folder / "profile.ini")),
                        Attendance::nobody);
        StartOptions options;
        options.file = textOf(pipe);
        EXPECT_FALSE(app.InitInstance(options));
    }
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "tessavo: Error opening configuration file!\n");
}

}  // namespace
}  // namespace tessavo::test
