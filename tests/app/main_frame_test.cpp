#include <QApplication>
#include <QGuiApplication>
#include <QLabel>
#include <QMenuBar>
#include <QPushButton>
#include <QRegularExpression>
#include <QScreen>
#include <QTest>
#include <QTimer>
#include <QWheelEvent>
#include <QWindow>
#include <cstring>

#include "app/status_line.h"
#include "controls/control_id.h"
#include "plot/chart/plot_dlg.h"
#include "support/frame_fixture.h"
#include "support/synthetic_events.h"

// The window itself: its frame, menus, status bar, place and end.

namespace tessavo::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

using MainFrame = FrameTest;

const ShownBox exitQuestion{"The current settings will be lost!\r\n Do you want to save settings?",
                            BoxIcon::error, BoxButtons::yesNoCancel};

/// Does something with the dialog that opens next, once it is there.
template <typename Act>
void onNextDialog(Act act) {
    auto* timer = new QTimer(qApp);
    QObject::connect(timer, &QTimer::timeout, qApp, [timer, act] {
        if (QWidget* dialog = QApplication::activeModalWidget()) {
            timer->deleteLater();
            timer->stop();
            act(*dialog);
        }
    });
    timer->start(1);
}

// ---- the frame

TEST_F(MainFrame, HasItsTitleAndSize) {
    EXPECT_EQ(frame->windowTitle(), QStringLiteral("Tessavo Velmira"));
    EXPECT_EQ(frame->size(), QSize(1024, 736));
}

TEST_F(MainFrame, CannotBeResizedOrMaximised) {
    EXPECT_EQ(frame->minimumSize(), frame->maximumSize());
    frame->resize(1200, 900);
    EXPECT_EQ(frame->size(), QSize(1024, 736));
    frame->resize(10, 10);
    EXPECT_EQ(frame->size(), QSize(1024, 736));
    EXPECT_EQ(frame->windowHandle()->minimumSize(), frame->windowHandle()->maximumSize());
}

TEST_F(MainFrame, HasCaptionSystemMenuAndMinimiseBoxOnly) {
    const Qt::WindowFlags flags = frame->windowFlags();
    EXPECT_TRUE(flags.testFlag(Qt::WindowTitleHint));
    EXPECT_TRUE(flags.testFlag(Qt::WindowSystemMenuHint));
    EXPECT_TRUE(flags.testFlag(Qt::WindowMinimizeButtonHint));
    EXPECT_TRUE(flags.testFlag(Qt::WindowCloseButtonHint));
    EXPECT_FALSE(flags.testFlag(Qt::WindowMaximizeButtonHint));
    EXPECT_FALSE(flags.testFlag(Qt::WindowFullscreenButtonHint));
    EXPECT_TRUE(flags.testFlag(Qt::CustomizeWindowHint));
    frame->showMinimized();
    EXPECT_TRUE(frame->isMinimized());
}

TEST_F(MainFrame, FitsOnAScreenThatIsTooLowAndKeepsItsBars) {
    EXPECT_EQ(CMainFrame::heightFor(1080), 736);
    EXPECT_EQ(CMainFrame::heightFor(768), 736);
    EXPECT_EQ(CMainFrame::heightFor(728), 696);
    EXPECT_EQ(CMainFrame::heightFor(0), 320);
    EXPECT_EQ(CMainFrame::heightFor(-5), 320);
}

TEST_F(MainFrame, OnlyThePageScrollsInALowFrame) {
    frame->setFixedSize(CMainFrame::clientWidth, 500);
    ASSERT_TRUE(letLoopRun());
    EXPECT_EQ(frame->statusLine().geometry(), QRect(0, 472, 1024, 28));
    EXPECT_EQ(tabs().mapTo(frame.get(), QPoint()), QPoint(20, 78));
    const QWidget* page = view().pages()[0];
    EXPECT_EQ(page->size(), QSize(984, 596));
    EXPECT_LT(page->visibleRegion().boundingRect().height(), 500);
    // The wheel brings up what is below, and nothing else moves.
    const QPoint middle = page->rect().center();
    for (int turn = 0; turn < 40; ++turn) {
        QWheelEvent wheel(middle, page->mapToGlobal(middle), {}, QPoint(0, -120), Qt::NoButton,
                          Qt::NoModifier, Qt::NoScrollPhase, false);
        // As if it came from the system: only such a turn goes on to whoever is around the page.
        QSpontaneKeyEvent::setSpontaneous(&wheel);
        qApp->notify(view().pages()[0], &wheel);
    }
    const QRect seen = page->visibleRegion().boundingRect();
    EXPECT_EQ(seen.bottom(), page->rect().bottom());
    EXPECT_GT(seen.top(), 0);
    EXPECT_EQ(page->mapTo(frame.get(), page->rect().bottomLeft()), QPoint(20, 471));
    EXPECT_EQ(frame->statusLine().geometry(), QRect(0, 472, 1024, 28));
    EXPECT_EQ(tabs().mapTo(frame.get(), QPoint()), QPoint(20, 78));
}

TEST_F(MainFrame, ItsControlsStandWhereTheyAreDrawn) {
    const auto place = [this](QWidget& control) {
        return QRect(control.mapTo(frame.get(), QPoint()), control.size());
    };
    EXPECT_EQ(place(setSelector()), QRect(20, 38, 132, 28));
    EXPECT_EQ(place(setName()), QRect(160, 38, 188, 28));
    EXPECT_EQ(place(eqMode()), QRect(374, 38, 124, 28));
    EXPECT_EQ(place(filterModes()), QRect(596, 38, 96, 28));
    EXPECT_EQ(place(showPlot()), QRect(702, 38, 92, 28));
    EXPECT_EQ(place(tabs()), QRect(20, 78, 776, 34));
    for (int i = 0; i < 8; ++i) {
        EXPECT_EQ(place(flag(i + 1)), QRect(817 + 24 * i, 35, 22, 22));
    }
    EXPECT_EQ(place(*view().pages()[0]), QRect(20, 112, 984, 596));
    EXPECT_EQ(place(frame->statusLine()), QRect(0, 708, 1024, 28));
}

// ---- dragging the background

class Background : public FrameTest {
 protected:
    /// Presses at a place of the window, moves the pointer and lets go; the events go the way of the
    /// screen's.
    QPoint drag(const QPoint& from, Qt::MouseButton button = Qt::LeftButton) {
        QWindow* window = frame->windowHandle();
        const QPoint before = frame->pos();
        const QPoint grabbed = frame->mapToGlobal(from);
        QTest::mousePress(window, button, {}, from);
        QTest::mouseMove(window, window->mapFromGlobal(grabbed + QPoint(7, 5)));
        QTest::mouseMove(window, window->mapFromGlobal(grabbed + QPoint(30, 20)));
        QTest::mouseRelease(window, button, {}, window->mapFromGlobal(grabbed + QPoint(30, 20)));
        return frame->pos() - before;
    }
};

TEST_F(Background, MovesTheWindowFromAnyPlaceThatIsNoControl) {
    frame->move(40, 20);
    for (const QPoint& place : {QPoint(500, 400), QPoint(8, 300), QPoint(550, 52), QPoint(365, 50),
                                QPoint(900, 100), QPoint(500, 722)}) {
        EXPECT_EQ(drag(place), QPoint(30, 20)) << place.x() << ' ' << place.y();
        frame->move(40, 20);
    }
}

TEST_F(Background, AClickOfATremblingHandLeavesTheWindowWhereItIs) {
    frame->move(40, 20);
    QWindow* window = frame->windowHandle();
    const QPoint grabbed = frame->mapToGlobal(QPoint(500, 400));
    const auto moveTo = [&](QPoint way) { QTest::mouseMove(window, window->mapFromGlobal(grabbed + way)); };
    QTest::mousePress(window, Qt::LeftButton, {}, QPoint(500, 400));
    for (const QPoint way : {QPoint(1, 0), QPoint(-2, 1), QPoint(0, 0), QPoint(3, -3)}) {
        moveTo(way);
        EXPECT_EQ(frame->pos(), QPoint(40, 20)) << way.x() << ' ' << way.y();
    }
    QTest::mouseRelease(window, Qt::LeftButton, {}, window->mapFromGlobal(grabbed + QPoint(3, -3)));
    EXPECT_EQ(frame->pos(), QPoint(40, 20));
    QTest::mouseMove(window, QPoint(600, 500));
    EXPECT_EQ(frame->pos(), QPoint(40, 20)) << "the click is over";
}

TEST_F(Background, ADragThatComesBackBringsTheWindowBack) {
    frame->move(40, 20);
    QWindow* window = frame->windowHandle();
    const QPoint grabbed = frame->mapToGlobal(QPoint(500, 400));
    const auto moveTo = [&](QPoint way) { QTest::mouseMove(window, window->mapFromGlobal(grabbed + way)); };
    QTest::mousePress(window, Qt::LeftButton, {}, QPoint(500, 400));
    for (const QPoint way : {QPoint(40, 30), QPoint(2, 1), QPoint(0, 0), QPoint(-1, 0)}) {
        moveTo(way);
        EXPECT_EQ(frame->pos(), QPoint(40, 20) + way) << way.x() << ' ' << way.y();
    }
    QTest::mouseRelease(window, Qt::LeftButton, {}, window->mapFromGlobal(grabbed + QPoint(-1, 0)));
}

TEST_F(Background, ControlsDoNotMoveTheWindow) {
    frame->move(40, 20);
    for (QWidget* control : std::initializer_list<QWidget*>{&setName(), &eqMode(), &showPlot(), &flag(3)}) {
        EXPECT_EQ(drag(control->mapTo(frame.get(), control->rect().center())), QPoint())
            << controlId(*control);
    }
    EXPECT_EQ(drag(QPoint(100, 95)), QPoint()) << "a tab";
}

TEST_F(Background, OtherButtonsDoNotMoveTheWindow) {
    frame->move(40, 20);
    EXPECT_EQ(drag({500, 400}, Qt::RightButton), QPoint());
    EXPECT_EQ(drag({500, 400}, Qt::MiddleButton), QPoint());
}

TEST_F(Background, MovingWithoutAButtonDoesNotMoveTheWindow) {
    drag({500, 400});
    const QPoint before = frame->pos();
    QTest::mouseMove(frame->windowHandle(), QPoint(300, 300));
    QTest::mouseMove(frame->windowHandle(), QPoint(600, 500));
    EXPECT_EQ(frame->pos(), before);
}

// ---- menus

TEST_F(MainFrame, HasItsMenus) {
    QStringList titles;
    for (const QAction* action : frame->findChild<QMenuBar*>()->actions()) {
        titles << action->text().remove(QLatin1Char('&'));
    }
    EXPECT_EQ(titles, (QStringList{QStringLiteral("File"), QStringLiteral("Edit"), QStringLiteral("Tools"),
                                   QStringLiteral("Help")}));
    EXPECT_EQ(itemsOf(QStringLiteral("File")),
              (QStringList{QStringLiteral("Open"), QStringLiteral("Save"), QStringLiteral("Export"),
                           QStringLiteral("-"), QStringLiteral("Exit"), QStringLiteral("-"),
                           QStringLiteral("Save Again"), QStringLiteral("Earlier Versions...")}));
    EXPECT_EQ(itemsOf(QStringLiteral("Edit")).first(4),
              (QStringList{QStringLiteral("Undo"), QStringLiteral("Redo"), QStringLiteral("History..."),
                           QStringLiteral("Channel Names...")}));
    EXPECT_EQ(
        itemsOf(QStringLiteral("Tools")),
        (QStringList{QStringLiteral("Compare..."), QStringLiteral("-"), QStringLiteral("Import Filters..."),
                     QStringLiteral("Export Filters..."), QStringLiteral("Align..."), QStringLiteral("-"),
                     QStringLiteral("Back Up Target..."), QStringLiteral("Restore Target..."),
                     QStringLiteral("-"), QStringLiteral("Store A"), QStringLiteral("Switch to B"),
                     QStringLiteral("Level Matched")}));
    EXPECT_EQ(itemsOf(QStringLiteral("Help")), QStringList{QStringLiteral("About")});
}

TEST_F(MainFrame, ItsCommandsHaveTheirKeys) {
    const std::pair<const char*, const char*> keys[]{{"Open", "Ctrl+O"},   {"Save", "Ctrl+S"},
                                                     {"Export", "Ctrl+E"}, {"About", "F1"},
                                                     {"Exit", "Ctrl+Q"},   {"Compare...", "Ctrl+D"}};
    for (const auto& [text, key] : keys) {
        const QAction* action = frame->action(QLatin1String(text));
        ASSERT_NE(action, nullptr) << text;
        EXPECT_EQ(action->shortcut().toString(QKeySequence::PortableText), QLatin1String(key));
        EXPECT_TRUE(action->isEnabled());
    }
    EXPECT_EQ(frame->action(QStringLiteral("Print")), nullptr);
}

TEST_F(MainFrame, AboutTellsNameVersionAndDate) {
    for (const bool byKey : {true, false}) {
        QStringList lines;
        QString title;
        double opacity = 0;
        QString button;
        QImage icon;
        QPixmap red(64, 64);
        red.fill(Qt::red);
        QApplication::setWindowIcon(red);
        onNextDialog([&](QWidget& dialog) {
            title = dialog.windowTitle();
            opacity = dialog.windowOpacity();
            for (const QLabel* label : dialog.findChildren<QLabel*>()) {
                lines << label->text();
                if (!label->pixmap().isNull()) {
                    icon = label->pixmap().toImage();
                }
            }
            auto* ok = dialog.findChild<QPushButton*>();
            button = ok->text();
            QTest::mouseClick(ok, Qt::LeftButton);
        });
        if (byKey) {
            QTest::keyClick(frame.get(), Qt::Key_F1);
        } else {
            clickMenu(QStringLiteral("Help"), QStringLiteral("About"));
        }
        EXPECT_EQ(title, QStringLiteral("About"));
        EXPECT_TRUE(lines.contains(QStringLiteral("Tessavo Velmira ")));
        EXPECT_TRUE(lines.contains(QStringLiteral("Version 1.0.6")));
        EXPECT_TRUE(lines.contains(QStringLiteral("Date 2013-04-18")));
        EXPECT_EQ(lines.filter(QStringLiteral("Copyright")).size(), 1);
        EXPECT_EQ(button, QStringLiteral("OK"));
        EXPECT_EQ(opacity, 1.0);
        ASSERT_EQ(icon.size(), red.size());
        EXPECT_EQ(icon.pixelColor(32, 32), QColor(Qt::red)) << "the program's own icon";
        QApplication::setWindowIcon({});
        EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
        frame->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(frame.get()));
    }
}

// ---- the end

TEST_F(MainFrame, AsksBeforeItClosesAndStaysOnCancel) {
    tuning.setVolume(2.0F, true);
    const ParameterStore before = tuning.store();
    answers = {BoxAnswer::cancel};
    EXPECT_FALSE(frame->close());
    EXPECT_TRUE(frame->isVisible());
    EXPECT_THAT(shown, ElementsAre(exitQuestion));
    EXPECT_THAT(dialogs.asked, IsEmpty());
    EXPECT_EQ(std::memcmp(&tuning.store(), &before, sizeof before), 0);
}

TEST_F(MainFrame, ClosesWithoutSavingOnNo) {
    answers = {BoxAnswer::no};
    EXPECT_TRUE(frame->close());
    EXPECT_FALSE(frame->isVisible());
    EXPECT_THAT(dialogs.asked, IsEmpty());
    EXPECT_THAT(shown, ElementsAre(exitQuestion));
}

TEST_F(MainFrame, SavesAndClosesOnYes) {
    tuning.setVolume(2.0F, true);
    answers = {BoxAnswer::yes};
    dialogs.answer = folder / "exit.eqs";
    EXPECT_TRUE(frame->close());
    ASSERT_EQ(dialogs.asked.size(), 1U);
    EXPECT_TRUE(dialogs.asked[0].save);
    EXPECT_EQ(dialogs.asked[0].filter, "Tessavo settings files (*.eqs)|*.eqs||");
    EXPECT_EQ(readFile(folder / "exit.eqs"), bytesOf(tuning.store()));
    EXPECT_EQ(frame->commands().settingsPath(), std::filesystem::path()) << "this path is not remembered";
    EXPECT_THAT(shown, ElementsAre(exitQuestion));
}

TEST_F(MainFrame, ClosesOnYesWhenTheDialogIsCancelled) {
    answers = {BoxAnswer::yes};
    EXPECT_TRUE(frame->close());
    EXPECT_FALSE(frame->isVisible());
    EXPECT_EQ(dialogs.asked.size(), 1U);
    EXPECT_THAT(shown, ElementsAre(exitQuestion));
}

TEST_F(MainFrame, ClosesOnYesWhenTheSaveFailsAndTellsIt) {
    answers = {BoxAnswer::yes};
    dialogs.answer = folder / "no folder" / "exit.eqs";
    EXPECT_TRUE(frame->close());
    EXPECT_FALSE(frame->isVisible());
    EXPECT_THAT(shown, ElementsAre(exitQuestion, errorBox("Error opening configuration file!"),
                                   errorBox("Error writing data!")));
}

TEST_F(MainFrame, ClosesAtOnceWithNothingToLose) {
    bool nothingToLose = false;
    frame->setNothingToLose([&] { return nothingToLose; });
    EXPECT_FALSE(frame->close());
    EXPECT_EQ(shown.size(), 1U);
    nothingToLose = true;
    EXPECT_TRUE(frame->close());
    EXPECT_EQ(shown.size(), 1U);
}

TEST_F(MainFrame, ExitAndItsKeyAskToo) {
    QTest::keyClick(frame.get(), Qt::Key_Q, Qt::ControlModifier);
    EXPECT_THAT(shown, ElementsAre(exitQuestion));
    clickMenu(QStringLiteral("File"), QStringLiteral("Exit"));
    EXPECT_THAT(shown, ElementsAre(exitQuestion, exitQuestion));
    EXPECT_TRUE(frame->isVisible());
}

TEST_F(MainFrame, ClosingItEndsTheProgramWithOneQuestionAndHidesThePlot) {
    QApplication::setQuitOnLastWindowClosed(false);
    QTest::mouseClick(&showPlot(), Qt::LeftButton);
    answers = {BoxAnswer::no};
    QTimer::singleShot(0, frame.get(), [this] { frame->close(); });
    bool tooLate = false;
    QTimer::singleShot(10000, frame.get(), [&tooLate] {
        tooLate = true;
        QApplication::exit(1);
    });
    EXPECT_EQ(QApplication::exec(), 0);
    EXPECT_FALSE(tooLate);
    EXPECT_FALSE(frame->isVisible());
    EXPECT_FALSE(view().plot().isVisible());
    EXPECT_THAT(shown, ElementsAre(exitQuestion));
}

// ---- place

TEST_F(MainFrame, ComesBackWhereItWas) {
    frame->move(33, 21);
    answers = {BoxAnswer::no};
    frame->close();
    makeFrame();
    EXPECT_EQ(frame->pos(), QPoint(33, 21));
    EXPECT_EQ(frame->size(), QSize(1024, 736));
}

TEST_F(MainFrame, APlaceOfAMaximisedWindowDoesNotMaximiseIt) {
    QWidget other;
    other.showMaximized();
    profile->setWindowPlacement(other.saveGeometry());
    makeFrame();
    EXPECT_FALSE(frame->isMaximized());
    EXPECT_FALSE(frame->isFullScreen());
    EXPECT_EQ(frame->size(), QSize(1024, 736));
    EXPECT_EQ(frame->minimumSize(), frame->maximumSize());
}

TEST_F(MainFrame, ADamagedPlaceIsForgotten) {
    for (const QByteArray& place : {QByteArray("garbage"), QByteArray(500, '\xff'), QByteArray(1, '\0')}) {
        profile->setWindowPlacement(place);
        makeFrame();
        EXPECT_EQ(frame->size(), QSize(1024, 736));
        EXPECT_TRUE(QGuiApplication::primaryScreen()->geometry().intersects(frame->geometry()));
    }
}

// ---- status bar

TEST_F(MainFrame, ItsStatusBarHasFourPanes) {
    StatusLine& status = frame->statusLine();
    EXPECT_TRUE(status.isVisible());
    EXPECT_EQ(status.paneText(0), QStringLiteral("no port, Live Mode off"));
    EXPECT_EQ(status.paneText(1), QStringLiteral("CAP"));
    EXPECT_EQ(status.paneText(2), QStringLiteral("NUM"));
    EXPECT_EQ(status.paneText(3), QStringLiteral("SCRL"));
    EXPECT_EQ(status.paneText(4), QString());
    EXPECT_EQ(status.paneText(-1), QString());
}

TEST_F(MainFrame, ItsStatusBarTellsThePort) {
    link.setPortName("ttyUSB3");
    ASSERT_TRUE(letLoopRun());
    EXPECT_EQ(frame->statusLine().paneText(0), QStringLiteral("ttyUSB3, Live Mode off"));
    makeFrame();
    EXPECT_EQ(frame->statusLine().paneText(0), QStringLiteral("ttyUSB3, Live Mode off"));
    link.setPortName("");
    EXPECT_EQ(frame->statusLine().paneText(0), QStringLiteral("no port, Live Mode off"));
}

TEST_F(MainFrame, ItsStatusBarTellsLiveModeAndHowTheTransfersGo) {
    using Light = TargetStatus::Light;
    using State = LiveWorker::State;
    StatusLine& status = frame->statusLine();
    EXPECT_EQ(status.target().light, Light::off);
    QTest::mouseClick(&eqMode(), Qt::LeftButton);
    EXPECT_EQ(status.paneText(0), QStringLiteral("no port, Live Mode on, waiting"));
    EXPECT_EQ(status.target().light, Light::sending);
    settle();
    struct Case {
        State state;
        Light light;
        const char* pattern;
    };
    for (const Case& step : {Case{State::sending, Light::sending, "sending"},
                             Case{State::wrongSet, Light::trouble, "wrong set \\d\\d:\\d\\d:\\d\\d"},
                             Case{State::sending, Light::sending, "sending"},
                             Case{State::failed, Light::trouble, "no answer \\d\\d:\\d\\d:\\d\\d"}}) {
        emit link.workerState(step.state);
        EXPECT_EQ(status.target().light, step.light);
        const QString sentence =
            QLatin1String("^no port, Live Mode on, ") + QLatin1String(step.pattern) + QLatin1Char('$');
        EXPECT_TRUE(QRegularExpression(sentence).match(status.paneText(0)).hasMatch())
            << status.paneText(0).toStdString();
        EXPECT_EQ(status.accessibleDescription(), status.paneText(0));
    }
    emit link.workerState(State::wrongSet);
    QTest::mouseClick(&eqMode(), Qt::LeftButton);
    EXPECT_EQ(status.paneText(0), QStringLiteral("no port, Live Mode off"));
    EXPECT_EQ(status.target().light, Light::off);
}

TEST_F(MainFrame, ItsStatusBarShowsTheKeyStates) {
    StatusLine& status = frame->statusLine();
    status.setKeyStates({});
    const QImage dark = status.grab().toImage();
    for (int pane = 1; pane <= 3; ++pane) {
        status.setKeyStates({pane == 1, pane == 2, pane == 3});
        for (int other = 0; other < 4; ++other) {
            EXPECT_EQ(status.keyLit(other), other == pane);
        }
        EXPECT_NE(status.grab().toImage(), dark);
    }
    EXPECT_FALSE(status.keyLit(7));
}

TEST_F(MainFrame, ALockKeyMakesTheStatusBarLookAtTheKeyboard) {
    StatusLine& status = frame->statusLine();
    const KeyStates now = readKeyStates();
    for (const Qt::Key key : {Qt::Key_CapsLock, Qt::Key_NumLock, Qt::Key_ScrollLock}) {
        status.setKeyStates({!now.capsLock, !now.numLock, !now.scrollLock});
        QTest::keyClick(&setName(), key);
        EXPECT_EQ(status.keyLit(1), now.capsLock);
        EXPECT_EQ(status.keyLit(2), now.numLock);
        EXPECT_EQ(status.keyLit(3), now.scrollLock);
    }
}

}  // namespace
}  // namespace tessavo::test
