#include <QImage>
#include <QProcess>
#include <QSettings>
#include <QStandardPaths>
#include <QSysInfo>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "app/instance_guard.h"
#include "app/profile.h"
#include "app/ui_file_dialogs.h"
#include "controls/theme.h"
#include "params/settings_file.h"
#include "support/harness.h"
#include "support/temporary_folder.h"

// The program as a person starts it.

namespace tessavo::test {
namespace {

using ::testing::HasSubstr;

class Program : public ::testing::Test {
 protected:
    struct Result {
        int code;
        std::string output;
        std::string error;
    };

    Program() : environment_(QProcessEnvironment::systemEnvironment()) {
        for (const char* name : {"QT_QPA_PLATFORM", "WAYLAND_DISPLAY", "DISPLAY"}) {
            environment_.remove(QLatin1String(name));
        }
        std::filesystem::permissions(folder.path(), std::filesystem::perms::owner_all);
        // Its profile and its lock file stay away from the person's own.
        for (const char* name : {"HOME", "XDG_CONFIG_HOME", "XDG_RUNTIME_DIR", "TESSAVO_DATA_FOLDER"}) {
            environment_.insert(QLatin1String(name), textOf(folder.path()));
        }
    }

    Result run(const QStringList& arguments) {
        QProcess process;
        process.setProcessEnvironment(environment_);
        process.start(QStringLiteral(TESSAVO_PROGRAM), arguments);
        const bool ended = process.waitForFinished(60000);
        EXPECT_TRUE(ended) << "it must end by itself";
        if (!ended) {
            process.kill();
            process.waitForFinished();
        }
        EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
        return {process.exitCode(), process.readAllStandardOutput().toStdString(),
                process.readAllStandardError().toStdString()};
    }

    TemporaryFolder folder;
    QProcessEnvironment environment_;
};

class ProgramOnALine : public Program {};

TEST_F(Program, TellsItsVersionWithoutADisplay) {
    const Result result = run({QStringLiteral("--version")});
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.output, "tessavo " TESSAVO_VERSION "\n");
    EXPECT_EQ(result.error, "");
}

TEST_F(Program, TellsItsOptionsWithoutADisplay) {
    const Result result = run({QStringLiteral("--help")});
    EXPECT_EQ(result.code, 0);
    for (const char* option : {"--version", "--help", "--demo", "--screenshots", "DIR", "file"}) {
        EXPECT_THAT(result.output, HasSubstr(option));
    }
    EXPECT_EQ(result.error, "");
}

TEST_F(Program, RefusesWhatItDoesNotKnow) {
    for (const QStringList& arguments : {QStringList{QStringLiteral("--wrong")},
                                         QStringList{QStringLiteral("a.eqs"), QStringLiteral("b.eqs")},
                                         QStringList{QStringLiteral("--screenshots")}}) {
        const Result result = run(arguments);
        EXPECT_EQ(result.code, 2) << arguments.join(QLatin1Char(' ')).toStdString();
        EXPECT_NE(result.error, "");
        EXPECT_EQ(result.output, "");
    }
}

TEST_F(Program, SaysThatThereIsNoDisplay) {
    for (const QStringList& arguments : {QStringList(), QStringList{QStringLiteral("--demo")}}) {
        const Result result = run(arguments);
        EXPECT_EQ(result.code, 1);
        EXPECT_EQ(result.error,
                  "tessavo: there is no display. Start it from a desktop session, or use tessavoctl.\n");
    }
}

TEST_F(Program, SaysThatTheDisplayCannotBeReached) {
    const std::pair<const char*, const char*> places[]{
        {"DISPLAY", ":7654"}, {"WAYLAND_DISPLAY", "wayland-none"}, {"QT_QPA_PLATFORM", "no-such-platform"}};
    for (const auto& [name, value] : places) {
        environment_.insert(QLatin1String(name), QLatin1String(value));
        const Result result = run({});
        EXPECT_EQ(result.code, 1) << name;
        EXPECT_THAT(result.error, HasSubstr("tessavo: the display cannot be used."));
        environment_.remove(QLatin1String(name));
    }
}

TEST_F(Program, DrawsItsPicturesAtBothScalesWithoutADisplay) {
    const QString pictures = textOf(folder / "new" / "pictures");
    const Result result = run({QStringLiteral("--screenshots"), pictures});
    EXPECT_EQ(result.code, 0) << result.error;
    for (const char* name : {"input_eq", "channel_config", "output_eq", "output_group", "clip_detection",
                             "communication", "output_eq_single", "output_eq_drag", "output_eq_multi",
                             "output_group_linked", "document_modified", "notice_muted", "notice"}) {
        const QString path = pictures + QLatin1Char('/') + QLatin1String(name);
        EXPECT_EQ(QImage(path + QStringLiteral(".png")).size(), QSize(1024, 736)) << name;
        EXPECT_EQ(QImage(path + QStringLiteral("@2x.png")).size(), QSize(2048, 1472)) << name;
    }
    EXPECT_EQ(QImage(pictures + QStringLiteral("/compare.png")).size(), QSize(940, 660));
    EXPECT_EQ(QImage(pictures + QStringLiteral("/plot.png")).size(), QSize(954, 496));
    EXPECT_EQ(QImage(pictures + QStringLiteral("/plot@2x.png")).size(), QSize(1908, 992));
}

TEST_F(Program, PicturesLeaveTheProfileOfThePersonAlone) {
    Tuning tuning;
    ASSERT_EQ(writeSettings(folder / "a.eqs", tuning.state.store()), SaveVerdict::saved);
    const QString pictures = textOf(folder / "pictures");
    const Result result = run({QStringLiteral("--screenshots"), pictures, textOf(folder / "a.eqs")});
    EXPECT_EQ(result.code, 0) << result.error;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder.path())) {
        EXPECT_NE(entry.path().extension(), ".conf") << entry.path();
    }
}

TEST_F(Program, PicturesAreDrawnBesideARunningProgram) {
    const InstanceGuard running(textOf(folder.path()));
    ASSERT_TRUE(running.isFirst());
    const Result result = run({QStringLiteral("--screenshots"), textOf(folder / "pictures")});
    EXPECT_EQ(result.code, 0) << result.error;
}

TEST_F(Program, PicturesDoNotTakeThePlaceOfAProgramThatAPersonStarts) {
    // Whoever takes the place clears away what a killed program has left there.
    const std::string left = "2147483646\ntessavo\n" + QSysInfo::machineHostName().toStdString() + "\n";
    std::ofstream(folder / "tessavo.lock") << left;
    const Result result = run({QStringLiteral("--screenshots"), textOf(folder / "pictures")});
    EXPECT_EQ(result.code, 0) << result.error;
    const Bytes now = readFile(folder / "tessavo.lock");
    EXPECT_EQ(std::string(now.begin(), now.end()), left);
}

TEST_F(Program, ItsProfileIsThatOfTheMakersTool) {
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, textOf(folder.path()));
    {
        Profile profile;
        profile.setLastPort(QStringLiteral("ttyUSB7"));
    }
    EXPECT_TRUE(std::filesystem::exists(folder / "Velmira" / "Velmira Audio Systems Equalizing Tool.conf"));
    EXPECT_EQ(Profile().lastPort(), QStringLiteral("ttyUSB7"));
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope,
                       QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation));
}

TEST_F(Program, APictureNeedsNobodyToAnswerABox) {
    const Result result =
        run({QStringLiteral("--screenshots"), textOf(folder / "pictures"), textOf(folder / "missing.eqs")});
    EXPECT_EQ(result.code, 1);
    EXPECT_FALSE(std::filesystem::exists(folder / "pictures"));
    EXPECT_THAT(result.error, HasSubstr("tessavo: Error opening configuration file!"));
}

TEST_F(ProgramOnALine, SendsToItsDemoTargetAndDrawsThatItWasConfirmed) {
    const QString pictures = textOf(folder / "pictures");
    const Result result = run({QStringLiteral("--demo"), QStringLiteral("--screenshots"), pictures});
    EXPECT_EQ(result.code, 0) << result.error;
    EXPECT_THAT(result.output, HasSubstr("Live Mode sent the image of the current set to "));
    EXPECT_THAT(result.output, HasSubstr(" (1 of 1 blocks); the target has confirmed it.\n"));
    const QImage picture(pictures + QStringLiteral("/input_eq.png"));
    ASSERT_EQ(picture.size(), QSize(1024, 736));
    // The light of the first pane is a green disc with a tick.
    int green = 0;
    for (int x = 19; x < 31; ++x) {
        for (int y = 716; y < 728; ++y) {
            green += picture.pixelColor(x, y) == QColor::fromRgb(theme::live) ? 1 : 0;
        }
    }
    EXPECT_GT(green, 30);
}

TEST_F(Program, SaysThatThereIsNoFont) {
    std::filesystem::create_directory(folder / "empty");
    const std::string empty = (folder / "empty").string();
    std::ofstream(folder / "fonts.conf")
        << "<fontconfig><dir>" << empty << "</dir><cachedir>" << empty << "</cachedir></fontconfig>";
    environment_.insert(QStringLiteral("FONTCONFIG_FILE"), textOf(folder / "fonts.conf"));
    const Result result = run({QStringLiteral("--screenshots"), textOf(folder / "pictures")});
    EXPECT_EQ(result.code, 1);
    EXPECT_EQ(result.error,
              "tessavo: there is no font to write with. Install one; on Debian and Ubuntu: sudo apt install "
              "fonts-dejavu-core\n");
    EXPECT_FALSE(std::filesystem::exists(folder / "pictures"));
}

TEST_F(Program, SaysThatItsPicturesCannotBeWritten) {
    writeFile(folder / "file", {1});
    const Result result = run({QStringLiteral("--screenshots"), textOf(folder / "file" / "pictures")});
    EXPECT_EQ(result.code, 1);
    EXPECT_THAT(result.error, HasSubstr("could not be made"));
}

}  // namespace
}  // namespace tessavo::test
