#include <CLI/CLI.hpp>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <QThread>
#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "app/demo_run.h"
#include "app/handed_files.h"
#include "app/instance_channel.h"
#include "app/instance_guard.h"
#include "app/screenshots.h"
#include "app/tessavo_app.h"
#include "app/tessavo_view.h"
#include "platform/data_folder.h"
#include "platform/desktop.h"
#include "platform/process.h"

namespace {

using tessavo::CTessavoApp;
using tessavo::StartOptions;

// Pictures at twice the scale come from a second run of the program: the scale is fixed at its start.
int picturesAtDoubleScale(const StartOptions& options) {
    QProcess process;
    QStringList arguments{QStringLiteral("--screenshots"), options.screenshots};
    if (options.demo) {
        arguments << QStringLiteral("--demo");
    }
    if (!options.file.isEmpty()) {
        arguments << QStringLiteral("--") << options.file;
    }
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("QT_SCALE_FACTOR"), QStringLiteral("2"));
    process.setProcessEnvironment(environment);
    process.setProcessChannelMode(QProcess::ForwardedChannels);
    process.start(QCoreApplication::applicationFilePath(), arguments);
    process.waitForFinished(-1);
    return process.exitStatus() == QProcess::NormalExit ? process.exitCode() : 1;
}

// The toolkit aborts where it cannot use the display; a person gets a sentence and an exit code instead.
void endWithoutDisplay(QtMsgType type, const QMessageLogContext&, const QString& text) {
    std::cerr << text.toStdString() << '\n';
    if (type == QtFatalMsg) {
        std::cerr
            << "tessavo: the display cannot be used. Start it from a desktop session, or use tessavoctl.\n";
        std::_Exit(1);
    }
}

int tellProblem(const QString& problem) {
    std::cerr << "tessavo: " << problem.toStdString() << '\n';
    return 1;
}

int takePictures(CTessavoApp& app, const StartOptions& options) {
    const bool doubled = qEnvironmentVariable("QT_SCALE_FACTOR") == QStringLiteral("2");
    if (options.demo) {
        const tessavo::DemoRun run = tessavo::sendCurrentSet(app.frame().view(), app.link());
        if (!run.problem.isEmpty()) {
            return tellProblem(run.problem);
        }
        if (!doubled) {
            std::cout << run.summary.toStdString() << '\n';
        }
    }
    const QString problem = tessavo::takeScreenshots(app.frame(), options.screenshots,
                                                     doubled ? QStringLiteral("@2x") : QString());
    if (!problem.isEmpty()) {
        return tellProblem(problem);
    }
    return doubled ? 0 : picturesAtDoubleScale(options);
}

// Pictures show the same for everyone, and leave no trace in the person's own profile.
std::unique_ptr<tessavo::Profile> profileIn(const std::optional<QTemporaryDir>& folder) {
    return folder ? std::make_unique<tessavo::Profile>(folder->filePath(QStringLiteral("profile.ini")))
                  : nullptr;
}

/// What becomes of this start.
enum class InstanceRole { only, handedOver, refused };

// A program that holds the place hears a second start when its window is there, and no longer when it ends.
InstanceRole findRole(std::unique_ptr<tessavo::InstanceGuard>& guard, const QString& file) {
    using Answer = tessavo::InstanceChannel::Answer;
    using Clock = std::chrono::steady_clock;
    constexpr std::chrono::milliseconds patience{5000};
    constexpr unsigned long pauseMs = 50;
    // The program that is open works in another folder.
    const QString path = file.isEmpty() ? file : QFileInfo(file).absoluteFilePath();
    const auto deadline = Clock::now() + patience;
    for (;;) {
        guard = std::make_unique<tessavo::InstanceGuard>();
        if (guard->isFirst()) {
            return InstanceRole::only;
        }
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now());
        const Answer answer = left.count() > 0 ? tessavo::InstanceChannel::handOver(
                                                     tessavo::InstanceGuard::usualFolder(), path, left)
                                               : Answer::refused;
        if (answer != Answer::nobody) {
            return answer == Answer::accepted ? InstanceRole::handedOver : InstanceRole::refused;
        }
        QThread::msleep(pauseMs);
    }
}

int runWindow(CTessavoApp& app) {
    tessavo::HandedFiles handedFiles(app.frame(), app.link());
    const tessavo::InstanceChannel channel(
        tessavo::InstanceGuard::usualFolder(),
        [&handedFiles](const QString& path) { return handedFiles.take(path); });
    return app.run();
}

// \param argc, argv as main() got them
int start(int& argc, char** argv, const StartOptions& options) {
    const bool pictures = !options.screenshots.isEmpty();
    if (!tessavo::hasDisplay()) {
        if (!pictures) {
            std::cerr
                << "tessavo: there is no display. Start it from a desktop session, or use tessavoctl.\n";
            return 1;
        }
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    QGuiApplication::setHighDpiScaleFactorRoundingPolicy(Qt::HighDpiScaleFactorRoundingPolicy::PassThrough);
    const QtMessageHandler usual = qInstallMessageHandler(endWithoutDisplay);
    // Pictures neither need the place nor keep a person from it.
    std::unique_ptr<tessavo::InstanceGuard> guard;
    StartOptions whole = options;
    if (!pictures) {
        whole.dataFolder = tessavo::dataFolder();
    }
    const InstanceRole role = pictures ? InstanceRole::only : findRole(guard, options.file);
    if (role == InstanceRole::handedOver) {
        std::cout << "The Tessavo that is open has taken over.\n";
        if (options.demo) {
            std::cout << "It goes on with the target that it has: --demo needs a start of its own.\n";
        }
        return 0;
    }
    std::optional<QTemporaryDir> folder;
    if (pictures) {
        folder.emplace();
    }
    CTessavoApp app(argc, argv, profileIn(folder),
                    pictures ? tessavo::Attendance::nobody : tessavo::Attendance::person);
    qInstallMessageHandler(usual);
    // A box would not be readable either.
    if (const QString problem = CTessavoApp::unusableDisplay(); !problem.isEmpty()) {
        return tellProblem(problem);
    }
    if (role == InstanceRole::refused) {
        tellProblem(QStringLiteral("another Tessavo is running; please use the window that is open."));
        app.boxes().showError("Tessavo is already running.\r\nPlease use the window that is open.");
        return 1;
    }
    if (!pictures) {
        tessavo::registerFileType();
    }
    if (!app.InitInstance(whole)) {
        return 1;
    }
    return pictures ? takePictures(app, options) : runWindow(app);
}

}  // namespace

int main(int argc, char** argv) {
    tessavo::attachConsole();
    CLI::App cli("Tuning tool for an eight-channel car-audio signal processor", "tessavo");
    std::string file;
    std::string screenshots;
    bool demo = false;
    cli.set_version_flag("--version", "tessavo " TESSAVO_VERSION);
    cli.add_option("file", file, "settings file to open, by the window that is open if there is one");
    cli.add_flag("--demo", demo, "work with a simulated target inside the program");
    cli.add_option("--screenshots", screenshots, "draw every page into PNG files of this folder, and end")
        ->type_name("DIR");
    cli.allow_extras(false);
    try {
        // The last argument first.
        std::vector<std::string> arguments = tessavo::programArguments(argc, argv);
        std::reverse(arguments.begin(), arguments.end());
        cli.parse(std::move(arguments));
    } catch (const CLI::ParseError& error) {
        return cli.exit(error) == 0 ? 0 : 2;
    }

    return start(argc, argv, {QString::fromStdString(file), demo, QString::fromStdString(screenshots)});
}
