#include <QAbstractButton>
#include <QTest>
#include <QTimer>
#include <chrono>
#include <cstring>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sstream>

#include "app/program_folder.h"
#include "app/status_line.h"
#include "app/tessavo_app.h"
#include "app/tessavo_view.h"
#include "comm/page/communication.h"
#include "controls/skin_button.h"
#include "controls/skin_combo_box.h"
#include "controls/skin_message_box.h"
#include "params/set_text.h"
#include "params/settings_file.h"
#include "support/harness.h"
#include "support/synthetic_events.h"

// The application object, which makes the toolkit's own: no other test of this program may have one.

namespace tessavo::test {
namespace {

class Application : public ::testing::Test {
 protected:
    Application() { start(); }
    ~Application() override { qunsetenv("TESSAVO_PORTS"); }

    /// Starts the program once more as main() does, with what it remembers.
    void start(Attendance attendance = Attendance::person,
               const std::function<bool(CommLink&)>& startWorker = &CommLink::startWorker) {
        app.reset();
        app = std::make_unique<CTessavoApp>(count_, arguments_.data(),
                                            std::make_unique<Profile>(textOf(folder / "profile.ini")),
                                            attendance, startWorker);
    }
    /// Makes the window and all its pages, with these ports besides those of the machine.
    void open(const char* ports) {
        qputenv("TESSAVO_PORTS", ports);
        ASSERT_TRUE(app->InitInstance({}));
        ASSERT_EQ(app->frame().view().pages().size(), pageCount);
    }
    /// Closes the window without saving and runs the program to its end.
    void end();
    [[nodiscard]] QString rememberedPort() const {
        return Profile(textOf(folder / "profile.ini")).lastPort();
    }
    SkinComboBox& portList() { return controlOf<SkinComboBox>(app->frame(), comm_id::portList); }
    /// Chooses a port as a person does, by the keyboard.
    void choosePort(const QString& name) {
        app->frame().view().showPage(Page::communication);
        const int index = portList().findText(name);
        ASSERT_GE(index, 0);
        portList().setFocus();
        QTest::keyClick(&portList(), Qt::Key_Home);
        for (int i = 0; i < index; ++i) {
            QTest::keyClick(&portList(), Qt::Key_Down);
        }
        ASSERT_EQ(portList().currentText(), name);
    }

    ProgramFolder folder;
    std::unique_ptr<CTessavoApp> app;

 private:
    std::array<char, 8> name_{"tessavo"};
    std::array<char*, 2> arguments_{name_.data(), nullptr};
    int count_ = 1;
};

/// Answers the program's own message box that opens next by a click on one of its buttons.
void clickNextBox(int button, QString& text, QString& title) {
    auto* timer = new QTimer(qApp);
    QObject::connect(timer, &QTimer::timeout, qApp, [timer, button, &text, &title] {
        if (auto* box = qobject_cast<SkinMessageBox*>(QApplication::activeModalWidget())) {
            timer->stop();
            timer->deleteLater();
            text = box->text();
            title = box->windowTitle();
            QTest::mouseClick(box->buttons().at(button), Qt::LeftButton);
        }
    });
    timer->start(1);
}

void Application::end() {
    QString text;
    QString title;
    clickNextBox(1, text, title);
    QTimer::singleShot(0, &app->frame(), [this] { app->frame().close(); });
    EXPECT_EQ(app->run(), 0);
}

TEST_F(Application, StartsWithTheStateThatAConstructionGives) {
    EXPECT_EQ(app->tuning().currentSet(), 0U);
    EXPECT_EQ(app->tuning().filterMode(), 0U);
    EXPECT_FALSE(app->tuning().liveMode());
    EXPECT_FALSE(app->tuning().liveTransferEnabled());
    EXPECT_FALSE(app->tuning().updatePending());
    EXPECT_EQ(app->tuning().image().imageSize, 3384U);
    for (const ParameterSet& set : app->tuning().store().sets) {
        EXPECT_EQ(set.recordSize, 2120U);
    }
}

TEST_F(Application, ShowsItsWindow) {
    ASSERT_TRUE(app->InitInstance({}));
    EXPECT_TRUE(app->frame().isVisible());
    EXPECT_EQ(app->frame().windowTitle(), QStringLiteral("Tessavo Velmira"));
    EXPECT_FALSE(QApplication::quitOnLastWindowClosed());
    EXPECT_EQ(readSetText(app->tuning().store().sets[4].setName), u"Type 5");
}

TEST_F(Application, LoadsTheFileOfTheCommandLine) {
    Tuning other;
    other.state.setName(u"From outside");
    ASSERT_EQ(writeSettings(folder / "a.eqs", other.state.store()), SaveVerdict::saved);
    StartOptions options;
    options.file = textOf(folder / "a.eqs");
    ASSERT_TRUE(app->InitInstance(options));
    EXPECT_EQ(readSetText(app->tuning().store().sets[0].setName), u"From outside");
}

TEST_F(Application, TellsOfAFileThatItCannotLoadAndEnds) {
    writeFile(folder / "bad.eqs", Bytes(10600, 7));
    const std::pair<const char*, const char*> files[]{{"missing.eqs", "Error opening configuration file!"},
                                                      {"bad.eqs", "Incompatible .eqs file!\r\n"}};
    for (const auto& [file, message] : files) {
        QString text;
        QString title;
        clickNextBox(0, text, title);
        StartOptions options;
        options.file = textOf(folder / file);
        EXPECT_FALSE(app->InitInstance(options)) << file;
        EXPECT_EQ(text, QLatin1String(message));
        EXPECT_EQ(title, QStringLiteral("Tessavo Velmira"));
        EXPECT_FALSE(app->frame().isVisible());
    }
}

TEST_F(Application, GoesOnWithoutItsWorker) {
    app.reset();
    QString text;
    QString title;
    start(Attendance::person, [&](CommLink&) {
        clickNextBox(0, text, title);
        return false;
    });
    EXPECT_EQ(text, QStringLiteral("Couldn't create progressThread!"));
    ASSERT_TRUE(app->InitInstance({}));
    EXPECT_TRUE(app->frame().isVisible());
    app->tuning().setLiveMode(true);
    EXPECT_TRUE(app->tuning().updatePending()) << "nobody sends it";
}

TEST_F(Application, WithNobodyThereABoxIsALineOfStandardError) {
    app.reset();
    ::testing::internal::CaptureStderr();
    start(Attendance::nobody, [](CommLink&) { return false; });
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "tessavo: Couldn't create progressThread!\n");
}

TEST_F(Application, OffersTheDemosPortFirstAndDoesNotRememberItWhenAPersonChoosesIt) {
    Profile(textOf(folder / "profile.ini")).setLastPort(QStringLiteral("ttyUSB7"));
    StartOptions options;
    options.demo = true;
    ASSERT_TRUE(app->InitInstance(options));
    app->frame().view().showPage(Page::communication);
    SkinComboBox* const ports = &portList();
    ASSERT_GE(ports->count(), 1);
    EXPECT_EQ(ports->currentIndex(), 0);
    EXPECT_EQ(ports->itemText(0).toStdString(), app->link().portName());
    EXPECT_EQ(ports->findText(ports->itemText(0), Qt::MatchExactly), 0);
    for (int other = 1; other < ports->count(); ++other) {
        EXPECT_NE(ports->itemText(other), ports->itemText(0)) << "it stands in the list once";
    }
    emit ports->activated(0);
    EXPECT_EQ(rememberedPort(), QStringLiteral("ttyUSB7"));
}

TEST_F(Application, RemembersItsPortWhenItEndsAndNoneIsRememberedYet) {
    open("");
    app->link().setPortName("ttyUSB7");
    end();
    EXPECT_EQ(rememberedPort(), QStringLiteral("ttyUSB7"));
    start();
    open("");
    app->link().setPortName("ttyUSB8");
    end();
    EXPECT_EQ(rememberedPort(), QStringLiteral("ttyUSB7")) << "nobody has chosen the other one";
}

TEST_F(Application, RemembersNoPortWhenThereIsNone) {
    open("");
    app->link().setPortName("");
    end();
    EXPECT_EQ(rememberedPort(), QString());
}

TEST_F(Application, TheChosenPortOutlastsAStartWithoutIt) {
    open("COM71,COM72");
    choosePort(QStringLiteral("COM72"));
    end();
    EXPECT_EQ(rememberedPort(), QStringLiteral("COM72"));
    start();
    open("COM71");
    const std::string other = app->link().portName();
    EXPECT_EQ(other, portList().itemText(0).toStdString()) << "the first of those that are there";
    EXPECT_NE(other, "COM72");
    end();
    EXPECT_EQ(rememberedPort(), QStringLiteral("COM72")) << "nobody has chosen another one";
    start();
    open("COM71,COM72");
    EXPECT_EQ(app->link().portName(), "COM72");
    EXPECT_EQ(portList().currentText(), QStringLiteral("COM72"));
    choosePort(QStringLiteral("COM71"));
    end();
    start();
    open("COM71,COM72");
    EXPECT_EQ(app->link().portName(), "COM71") << "until another one is chosen";
}

TEST_F(Application, LookingForPortsAgainDoesNotForgetTheChosenOne) {
    open("COM71,COM72");
    choosePort(QStringLiteral("COM72"));
    QTest::mouseClick(app->frame().findChild<CxSkinButton*>(QStringLiteral("id%1").arg(comm_id::refresh)),
                      Qt::LeftButton);
    ASSERT_NE(app->link().portName(), "COM72");
    end();
    EXPECT_EQ(rememberedPort(), QStringLiteral("COM72"));
}

TEST_F(Application, DoesNotRememberThePortOfADemo) {
    Profile(textOf(folder / "profile.ini")).setLastPort(QStringLiteral("ttyUSB7"));
    StartOptions options;
    options.demo = true;
    ASSERT_TRUE(app->InitInstance(options));
    QString text;
    QString title;
    clickNextBox(1, text, title);
    QTimer::singleShot(0, &app->frame(), [this] { app->frame().close(); });
    EXPECT_EQ(app->run(), 0);
    EXPECT_EQ(Profile(textOf(folder / "profile.ini")).lastPort(), QStringLiteral("ttyUSB7"));
}

TEST_F(Application, EndsWhenItsFrameIsClosed) {
    ASSERT_TRUE(app->InitInstance({}));
    QString text;
    QString title;
    clickNextBox(1, text, title);
    QTimer::singleShot(0, &app->frame(), [this] { app->frame().close(); });
    EXPECT_EQ(app->run(), 0);
    EXPECT_EQ(text, QStringLiteral("The current settings will be lost!\r\n Do you want to save settings?"));
    EXPECT_FALSE(app->frame().isVisible());
}

TEST_F(Application, ABoxGivesTheAnswerOfItsButton) {
    ASSERT_TRUE(app->InitInstance({}));
    const BoxAnswer answers[]{BoxAnswer::yes, BoxAnswer::no, BoxAnswer::cancel};
    QString text;
    QString title;
    for (int button = 0; button < 3; ++button) {
        clickNextBox(button, text, title);
        EXPECT_EQ(app->boxes().show("x", BoxIcon::error, BoxButtons::yesNoCancel), answers[button]);
    }
    clickNextBox(0, text, title);
    EXPECT_EQ(app->boxes().show("x", BoxIcon::none, BoxButtons::ok), BoxAnswer::ok);
    clickNextBox(1, text, title);
    EXPECT_EQ(app->boxes().show("x", BoxIcon::none, BoxButtons::okCancel), BoxAnswer::cancel);
}

TEST_F(Application, ABoxBelongsToTheWindowAlsoWhenNoneIsActive) {
    ASSERT_TRUE(app->InitInstance({}));
    QApplication::setActiveWindow(nullptr);
    QWidget* owner = nullptr;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, &timer, [&] {
        if (auto* box = qobject_cast<SkinMessageBox*>(QApplication::activeModalWidget())) {
            owner = box->parentWidget();
            QTest::mouseClick(box->buttons().at(0), Qt::LeftButton);
        }
    });
    timer.start(1);
    app->boxes().showError("x");
    EXPECT_EQ(owner, &app->frame());
}

TEST_F(Application, ADemoHasItsPortAndConfirms) {
    StartOptions options;
    options.demo = true;
    ASSERT_TRUE(app->InitInstance(options));
    EXPECT_NE(app->link().portName(), "");
    auto* eqMode = app->frame().findChild<CxSkinButton*>(QStringLiteral("id%1").arg(view_id::eqMode));
    QTest::mouseClick(eqMode, Qt::LeftButton);
    EXPECT_TRUE(QTest::qWaitFor(
        [&] { return app->frame().statusLine().target().light == TargetStatus::Light::confirmed; }, 30000));
}

TEST_F(Application, TheSetsOfADemoHoldTheDefaults) {
    StartOptions options;
    options.demo = true;
    ASSERT_TRUE(app->InitInstance(options));
    TuningState& tuning = app->tuning();
    RecordingBoxes boxes;
    TargetCommands commands(tuning, app->link().foreground(), boxes);
    for (int set = 0; set < 6; ++set) {
        // What is lost by reading zeros.
        tuning.setVolume(-12.0F, true);
        ASSERT_TRUE(commands.LoadSetFromRam(static_cast<std::uint8_t>(set))) << set;
        Tuning fresh;
        for (std::size_t channel = 0; channel < channelCount; ++channel) {
            const OutputChannelParams& read = tuning.currentParameterSet().channels[channel];
            const OutputChannelParams& usual = fresh.state.store().sets[0].channels[channel];
            EXPECT_EQ(read.volumeDb, usual.volumeDb) << set << ' ' << channel;
            for (std::size_t band = 0; band < read.bands.size(); ++band) {
                EXPECT_EQ(read.bands[band].frequencyHz, usual.bands[band].frequencyHz)
                    << set << ' ' << channel << ' ' << band;
            }
        }
    }
    EXPECT_TRUE(boxes.shown.empty());
}

TEST_F(Application, NothingIsWrittenBehindTheTitlesOfItsWindows) {
    ASSERT_TRUE(app->InitInstance({}));
    // The toolkit writes a name to display that is set behind every title that does not end with it.
    EXPECT_EQ(QGuiApplication::applicationDisplayName(), QCoreApplication::applicationName());
}

TEST_F(Application, EndsInTheMiddleOfAnExchangeWithinASecond) {
    StartOptions options;
    options.demo = true;
    ASSERT_TRUE(app->InitInstance(options));
    bool talking = false;
    QObject::connect(&app->link(), &CommLink::lineLogged, &app->link(), [&] { talking = true; });
    QTest::mouseClick(app->frame().findChild<CxSkinButton*>(QStringLiteral("id%1").arg(view_id::eqMode)),
                      Qt::LeftButton);
    ASSERT_TRUE(QTest::qWaitFor([&] { return talking; }, 30000));
    const auto start = std::chrono::steady_clock::now();
    app.reset();
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(1));
}

// ---- serialisation

TEST_F(Application, SerialisesItsFlagAndTheStore) {
    app->tuning().start();
    app->tuning().setVolume(4.5F, true);
    std::ostringstream archive;
    ASSERT_TRUE(std::as_const(*app).serialize(archive));
    const std::string bytes = archive.str();
    ASSERT_EQ(bytes.size(), 10601U);
    EXPECT_EQ(bytes[0], '\0');
    EXPECT_EQ(std::memcmp(bytes.data() + 1, &app->tuning().store(), 10600), 0);
}

TEST_F(Application, LoadsWhatItHasStored) {
    app->tuning().start();
    app->tuning().setVolume(4.5F, true);
    std::ostringstream out;
    ASSERT_TRUE(std::as_const(*app).serialize(out));
    std::string bytes = out.str();
    bytes[0] = '\1';
    app->tuning().setVolume(-3.0F, true);
    std::istringstream in(bytes);
    ASSERT_TRUE(app->serialize(in));
    EXPECT_EQ(app->tuning().store().sets[0].channels[7].volumeDb, 4.5F);
    std::ostringstream again;
    ASSERT_TRUE(std::as_const(*app).serialize(again));
    EXPECT_EQ(again.str(), bytes);
}

TEST_F(Application, AShortArchiveChangesNothing) {
    app->tuning().start();
    std::ostringstream before;
    ASSERT_TRUE(std::as_const(*app).serialize(before));
    for (const std::size_t size : {0U, 1U, 5000U, 10600U}) {
        std::istringstream in(std::string(size, '\1'));
        EXPECT_FALSE(app->serialize(in)) << size;
    }
    std::ostringstream after;
    ASSERT_TRUE(std::as_const(*app).serialize(after));
    EXPECT_EQ(after.str(), before.str());
}

TEST_F(Application, AnArchiveThatTakesNothingIsTold) {
    std::ostringstream closed;
    closed.setstate(std::ios::badbit);
    EXPECT_FALSE(std::as_const(*app).serialize(closed));
}

}  // namespace
}  // namespace tessavo::test
