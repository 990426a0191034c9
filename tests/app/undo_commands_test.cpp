#include "app/undo_commands.h"

#include <QDeadlineTimer>
#include <QMenu>
#include <QScrollBar>
#include <QTest>
#include <QTimer>
#include <functional>
#include <thread>

#include "app/undo_fixture.h"
#include "controls/skin_message_box.h"
#include "pages/rows/communication_rows.h"
#include "pages/rows/input_eq_rows.h"
#include "pages/rows/output_eq_rows.h"
#include "plot/chart/plot_dlg.h"

// What a step brings back, what it leaves alone, and when nothing may be undone.

namespace tessavo::test {
namespace {

using ::testing::IsEmpty;

constexpr int patienceMs = 30000;
// No method has stable coefficients for it.
constexpr std::uint16_t unstableHz = 65535;
const QString whileOpen =
    QStringLiteral("Nothing is undone or redone while a question, a dialog or a list is open");
const QString whileTheLineIsTaken =
    QStringLiteral("Nothing is undone or redone while a command has the line");

class Undoing : public UndoTest {
 protected:
    CBitmapSlider& volume() { return on<CBitmapSlider>(Page::outputEqualizer, output_eq_id::volume.slider); }
    std::string undoText() { return std::string(history->undoText()); }
    /// Text of the notice that stands; "" without one.
    QString notice() {
        const Notice* const standing = frame->statusLine().noticeLine().standing();
        return standing != nullptr ? standing->text : QString();
    }
    /// Tries every way to undo, and expects that none does anything, and that each tells why.
    void expectRefused(const QString& reason) {
        const auto before = state();
        const std::size_t position = history->position();
        EXPECT_FALSE(commands().mayMove());
        const auto undoInMenu = [this] {
            menu(QStringLiteral("Edit"))->actions().constFirst()->trigger();
            return false;
        };
        for (const std::function<bool()>& act : {std::function<bool()>([this] { return commands().undo(); }),
                                                 std::function<bool()>([this] { return commands().redo(); }),
                                                 std::function<bool()>([this] { return commands().goTo(0); }),
                                                 std::function<bool()>(undoInMenu)}) {
            frame->statusLine().showNotice({.text = QStringLiteral("-")});
            EXPECT_FALSE(act());
            EXPECT_EQ(notice(), reason);
        }
        EXPECT_EQ(history->position(), position);
        EXPECT_TRUE(same(*before, *state()));
    }
};

// ---- sets, tabs and channels

TEST_F(Undoing, AnEditOfAnotherSetChoosesThatSetFirst) {
    choose(setSelector(), 2);
    typeInto(setName(), QStringLiteral("Third"));
    drag(volume(), 30);
    const auto edited = state();
    choose(setSelector(), 4);
    settleEvents();
    int chosen = 0;
    QObject::connect(&view(), &CTessavoView::currentSetChanged, frame.get(), [&] { ++chosen; });
    undoKey();
    EXPECT_GT(chosen, 0);
    EXPECT_EQ(tuning.currentSet(), 2U);
    EXPECT_EQ(setSelector().currentIndex(), 2);
    EXPECT_EQ(setName().text(), QStringLiteral("Third"));
    EXPECT_TRUE(pagesShowTheSet());
    redoKey();
    EXPECT_TRUE(same(*edited, *state()));
    expectRoundTrip();
}

TEST_F(Undoing, ChoosingASetIsNoStep) {
    choose(setSelector(), 2);
    choose(setSelector(), 0);
    settleEvents();
    EXPECT_EQ(steps(), 0U);
}

TEST_F(Undoing, TabChannelsAndScrollPositionsStay) {
    answers = {BoxAnswer::ok};
    click(on<SkinCheckBox>(Page::outputEqualizer, selection_id::assign));
    click(on<SkinCheckBox>(Page::outputEqualizer, selection_id::checks[1]));
    click(on<SkinCheckBox>(Page::outputEqualizer, selection_id::checks[6]));
    drag(volume(), 30);
    const std::uint8_t mask = tuning.selectionMask();
    frame->setFixedSize(CMainFrame::clientWidth, 500);
    ASSERT_TRUE(letLoopRun());
    for (const Page which :
         {Page::communication, Page::inputEqualizer, Page::outputGroup, Page::outputEqualizer}) {
        view().showPage(which);
        std::vector<QScrollBar*> bars;
        for (auto* bar : view().findChildren<QScrollBar*>()) {
            if (bar->isVisible() && bar->maximum() > 0) {
                bar->setValue(bar->maximum() / 2);
                bars.push_back(bar);
            }
        }
        ASSERT_FALSE(bars.empty());
        std::vector<int> places;
        for (const QScrollBar* bar : bars) {
            places.push_back(bar->value());
        }
        ASSERT_TRUE(commands().undo());
        ASSERT_TRUE(commands().redo());
        EXPECT_EQ(tabs().currentIndex(), static_cast<int>(which));
        EXPECT_EQ(tuning.selectionMask(), mask);
        EXPECT_TRUE(
            controlOf<SkinCheckBox>(page(Page::outputEqualizer), selection_id::checks[6]).isChecked());
        EXPECT_TRUE(controlOf<SkinCheckBox>(page(Page::outputEqualizer), selection_id::assign).isChecked());
        for (std::size_t i = 0; i < bars.size(); ++i) {
            EXPECT_EQ(bars[i]->value(), places[i]);
        }
    }
}

TEST_F(Undoing, TheCurveFollows) {
    volume();
    drag(on<CBitmapSlider>(Page::outputEqualizer, output_eq_id::bands[2].sliders[1].slider), -1);
    const auto curve = [this] {
        const CChartData* data = view().plot().chart().dataSet(view().plot().curveIdentifier());
        return data == nullptr ? std::vector<double>()
                               : std::vector<double>(data->yValues().begin(), data->yValues().end());
    };
    click(on<SkinCheckBox>(Page::outputEqualizer, output_eq_id::bands[2].enabled));
    const auto before = curve();
    drag(on<CBitmapSlider>(Page::outputEqualizer, output_eq_id::bands[2].sliders[1].slider), -60);
    const auto after = curve();
    ASSERT_NE(before, after);
    undoKey();
    EXPECT_EQ(curve(), before);
    redoKey();
    EXPECT_EQ(curve(), after);
}

// ---- drags and posted moves

TEST_F(Undoing, DuringADragTheDragEndsFirst) {
    const auto before = state();
    CBitmapSlider& slider = volume();
    hold(slider, 30);
    undoKey();
    EXPECT_FALSE(slider.isDragging());
    EXPECT_TRUE(same(*before, *state()));
    EXPECT_EQ(steps(), 1U);
    EXPECT_TRUE(pagesShowTheSet());
    // The hand goes on, and moves nothing any more.
    moveOn(slider, 30);
    letGo(slider);
    EXPECT_TRUE(same(*before, *state()));
    EXPECT_TRUE(history->canRedo());
    redoKey();
    EXPECT_FALSE(same(*before, *state()));
}

TEST_F(Undoing, AValueThatNoSliderReachesComesBackAlsoWhileKeyOrWheelAreStillAtWork) {
    tuning.setVolume(3.14159F, true);
    settleEvents();
    view().refreshPages();
    const auto before = state();
    volume().setWheelRest(1);
    turnWheel(volume(), 2);
    undoKey();
    EXPECT_TRUE(letLoopRun());
    EXPECT_TRUE(same(*before, *state())) << "after the wheel has rested";
    QTest::keyPress(&volume(), Qt::Key_Up);
    settleEvents();
    undoKey();
    QTest::keyRelease(&volume(), Qt::Key_Up);
    settleEvents();
    EXPECT_TRUE(same(*before, *state()));
    EXPECT_TRUE(history->canRedo());
}

// ---- what stands in the way

TEST_F(Undoing, IsRefusedWhileABoxIsOpen) {
    click(flag(1));
    SkinMessageBox box(QStringLiteral("Tessavo"), QStringLiteral("?"), SkinMessageBox::Icon::none,
                       SkinMessageBox::Buttons::okCancel, frame.get());
    bool tried = false;
    QTimer::singleShot(0, frame.get(), [&] {
        expectRefused(whileOpen);
        QTest::keyClick(&box, Qt::Key_Z, Qt::ControlModifier);
        EXPECT_EQ(history->position(), 1U);
        tried = true;
        box.reject();
    });
    box.ask();
    EXPECT_TRUE(tried);
    EXPECT_TRUE(commands().undo());
}

TEST_F(Undoing, IsRefusedWhileAListIsOpen) {
    click(flag(1));
    auto& type = on<SkinComboBox>(Page::outputEqualizer, output_eq_id::bands[0].type);
    type.showPopup();
    ASSERT_TRUE(QTest::qWaitFor([&] { return type.view()->isVisible(); }));
    expectRefused(whileOpen);
    type.hidePopup();
    EXPECT_TRUE(commands().undo());
}

TEST_F(Undoing, IsRefusedWhileTheWarningOfAGeneratorWaits) {
    click(flag(1));
    bool tried = false;
    boxes.setPresenter([&](const QString&, BoxIcon, BoxButtons buttons) {
        expectRefused(whileOpen);
        // What was posted to end the step comes while the box is open.
        settleEvents();
        tried = true;
        return answerWhenClosed(buttons);
    });
    tuning.setCrossoverFrequency(0, unstableHz, true);
    settleEvents();
    ASSERT_TRUE(tried);
    EXPECT_EQ(steps(), 2U);
    EXPECT_EQ(history->gesture(), Gesture::none);
    EXPECT_TRUE(commands().undo());
    expectRoundTrip();
}

TEST_F(Undoing, AWarningInTheMiddleOfAnUndoHoldsUpThatOneAndLetsInNoOther) {
    ParameterStore store = tuning.store();
    store.sets[1].channels[0].crossovers[0].frequencyHz = unstableHz;
    tuning.replaceStore(store);
    choose(setSelector(), 1);
    const auto before = state();
    click(flag(1));
    const auto after = state();
    choose(setSelector(), 0);
    // Each method warns once.
    tuning.setFilterMode(1);
    int tried = 0;
    boxes.setPresenter([&](const QString&, BoxIcon, BoxButtons buttons) {
        expectRefused(whileOpen);
        settleEvents();
        ++tried;
        return answerWhenClosed(buttons);
    });
    EXPECT_TRUE(commands().undo());
    EXPECT_EQ(tried, 1);
    EXPECT_TRUE(same(*before, *state()));
    EXPECT_TRUE(pagesShowTheSet());
    EXPECT_TRUE(commands().redo());
    EXPECT_TRUE(same(*after, *state()));
}

TEST_F(Undoing, IsRefusedWhileACommandHasTheLine) {
    click(flag(1));
    int tried = 0;
    QObject::connect(&line, &CommLink::exchangeBegan, frame.get(), [&] {
        expectRefused(whileTheLineIsTaken);
        const auto keys = {Qt::ControlModifier | Qt::KeyboardModifiers(),
                           Qt::ControlModifier | Qt::ShiftModifier};
        for (const Qt::KeyboardModifiers modifiers : keys) {
            frame->statusLine().showNotice({.text = QStringLiteral("-")});
            press(Qt::Key_Z, modifiers);
            EXPECT_EQ(notice(), whileTheLineIsTaken);
        }
        EXPECT_EQ(history->position(), 1U);
        ++tried;
    });
    click(on<CxSkinButton>(Page::communication, comm_id::update));
    EXPECT_EQ(tried, 1);
    undoKey();
    EXPECT_EQ(history->position(), 0U);
    EXPECT_TRUE(notice().startsWith(QStringLiteral("Undone: Channel flag 1 "))) << notice().toStdString();
}

// ---- files and the target

TEST_F(Undoing, AnOpenedFileIsOneStepThatTellsItsName) {
    click(flag(1));
    const auto before = state();
    ASSERT_TRUE(frame->openFile(settingsFileNamed("car.eqs")));
    EXPECT_EQ(undoText(), "Opened car.eqs");
    EXPECT_EQ(steps(), 2U);
    ASSERT_FALSE(history->marks().empty());
    EXPECT_EQ(history->marks().back().text, "same as car.eqs");
    const auto after = state();
    undoKey();
    EXPECT_TRUE(same(*before, *state()));
    EXPECT_TRUE(pagesShowTheSet());
    redoKey();
    EXPECT_TRUE(same(*after, *state()));
    dialogs.answer = pathOf(settingsFileNamed("van.eqs", u"Van"));
    frame->action(QStringLiteral("Open"))->trigger();
    EXPECT_EQ(undoText(), "Opened van.eqs");
    EXPECT_FALSE(frame->openFile(pathIn("none.eqs")));
    EXPECT_EQ(steps(), 3U);
}

TEST_F(Undoing, ATypedNameIsAStepBeforeTheFileThatReplacesIt) {
    typeInto(setName(), QStringLiteral("Typed"));
    ASSERT_TRUE(frame->openFile(settingsFileNamed("car.eqs")));
    ASSERT_EQ(steps(), 2U);
    undoKey();
    EXPECT_EQ(setName().text(), QStringLiteral("Typed"));
}

TEST_F(Undoing, NothingMergesAcrossASave) {
    dialogs.answer = folder / "car.eqs";
    key(volume(), Qt::Key_Up);
    frame->action(QStringLiteral("Save"))->trigger();
    key(volume(), Qt::Key_Up);
    commands().settle();
    ASSERT_EQ(steps(), 2U);
    ASSERT_EQ(history->marks().size(), 1U);
    EXPECT_EQ(history->marks()[0].text, "saved car.eqs");
    EXPECT_EQ(history->marks()[0].number, 1U);
}

TEST_F(Undoing, AReadSetIsOneStepWithItsImage) {
    drag(volume(), 30);
    const auto before = state();
    click(on<CxSkinButton>(Page::communication, comm_id::firstLoad + 2));
    EXPECT_THAT(shown, IsEmpty());
    ASSERT_EQ(steps(), 2U);
    EXPECT_EQ(undoText(), "Read set 2 of the target");
    const auto after = state();
    EXPECT_EQ(after->received[0].isPresent, 1U);
    undoKey();
    EXPECT_TRUE(same(*before, *state()));
    redoKey();
    EXPECT_TRUE(same(*after, *state()));
    click(on<CxSkinButton>(Page::communication, comm_id::firstLoad));
    drag(volume(), -10);
    expectRoundTrip();
}

TEST_F(Undoing, ADamagedSetChangesWhatPlaysAndIsAStepToo) {
    const auto before = state();
    ParameterImage damaged = tuning.image();
    damaged.channels[3].delaySamples += 5;
    tuning.replaceImage(damaged);
    Q_EMIT line.commandReported({Command::readSet, 2, CommandReport::Result::wrongDigest});
    ASSERT_EQ(steps(), 1U);
    EXPECT_EQ(undoText(), "Damaged set 2 of the target plays");
    settleEvents();
    undoKey();
    EXPECT_TRUE(same(*before, *state()));
    ASSERT_EQ(moves.size(), 1U);
    EXPECT_FALSE(moves[0].second) << "no control shows it";
}

TEST_F(Undoing, InLiveModeAStepIsSentAndTheConfirmationMarksIt) {
    ASSERT_TRUE(line.startWorker());
    click(eqMode());
    const auto targetHolds = [this] {
        const ImageBytes live = target.memory().live;
        return std::memcmp(live.data(), &tuning.image(), live.size()) == 0 && line.imageIsConfirmed();
    };
    ASSERT_TRUE(QTest::qWaitFor(targetHolds, patienceMs));
    drag(volume(), 30);
    ASSERT_TRUE(QTest::qWaitFor(targetHolds, patienceMs));
    for (const bool undoes : {true, false, true}) {
        // While the transfer of the step before may still run.
        ASSERT_TRUE(undoes ? commands().undo() : commands().redo());
        ASSERT_TRUE(QTest::qWaitFor(targetHolds, patienceMs)) << undoes;
    }
    ASSERT_TRUE(QTest::qWaitFor(
        [this] { return !history->marks().empty() && history->marks().back().kind == MarkKind::confirmed; },
        patienceMs));
    // A run does not go on behind a confirmed send.
    key(volume(), Qt::Key_PageUp);
    ASSERT_TRUE(QTest::qWaitFor(targetHolds, patienceMs));
    settleEvents();
    key(volume(), Qt::Key_PageUp);
    commands().settle();
    EXPECT_EQ(steps(), 2U);
    EXPECT_THAT(shown, IsEmpty());
}

// The window hears of a transfer only after the key that is being handled.
TEST_F(Undoing, InLiveModeARunOfKeysIsPartedWhereTheTargetConfirmed) {
    ASSERT_TRUE(line.startWorker());
    CBitmapSlider& slider = volume();
    click(eqMode());
    ASSERT_TRUE(QTest::qWaitFor([this] { return line.imageIsConfirmed(); }, patienceMs));
    slider.setFocus(Qt::TabFocusReason);
    settleEvents();
    const auto start = state();
    QTest::keyClick(&slider, Qt::Key_PageDown);
    settleEvents();
    const auto sent = state();
    ASSERT_FALSE(same(*start, *sent));
    // Without the event loop: the window has not been told when the next key comes.
    const QDeadlineTimer patience(patienceMs);
    while (!line.liveTransferRuns() && !patience.hasExpired()) {
        std::this_thread::yield();
    }
    ASSERT_TRUE(line.liveTransferRuns());
    QTest::keyClick(&slider, Qt::Key_PageDown);
    QTest::keyClick(&slider, Qt::Key_PageDown);
    ASSERT_TRUE(QTest::qWaitFor([this] { return steps() > 0; }, patienceMs));
    EXPECT_EQ(history->marks().back().number, 1U);
    EXPECT_EQ(history->marks().back().kind, MarkKind::confirmed);
    EXPECT_EQ(history->gesture(), Gesture::run);
    QTest::keyClick(&slider, Qt::Key_PageDown);
    commands().settle();
    const auto end = state();
    ASSERT_EQ(steps(), 2U);
    undoKey();
    EXPECT_TRUE(same(*sent, *state())) << "what the target has confirmed";
    undoKey();
    EXPECT_TRUE(same(*start, *state()));
    ASSERT_TRUE(commands().goTo(2));
    EXPECT_TRUE(same(*end, *state()));
    EXPECT_THAT(shown, IsEmpty());
}

TEST_F(Undoing, AnUndoDuringAPollActsAtOnce) {
    const auto before = state();
    click(flag(1));
    bool undone = false;
    QObject::connect(&line, &CommLink::exchangeBegan, frame.get(), [&](LineUser user) {
        EXPECT_EQ(user, LineUser::clipPoll);
        undone = commands().undo();
    });
    std::thread poll([this] { line.background().ReadClipState(); });
    EXPECT_TRUE(QTest::qWaitFor([&] { return undone; }, patienceMs));
    poll.join();
    EXPECT_TRUE(same(*before, *state()));
}

TEST_F(Undoing, AnUndoDuringALiveExchangeActsAtOnce) {
    ASSERT_TRUE(line.startWorker());
    drag(volume(), 30);
    const auto after = state();
    bool undone = false;
    QObject::connect(&line, &CommLink::exchangeBegan, frame.get(), [&] {
        if (!undone) {
            undone = true;
            EXPECT_TRUE(commands().undo());
        }
    });
    click(eqMode());
    const auto targetHolds = [this] {
        const ImageBytes live = target.memory().live;
        return std::memcmp(live.data(), &tuning.image(), live.size()) == 0 && line.imageIsConfirmed();
    };
    ASSERT_TRUE(QTest::qWaitFor([&] { return undone && targetHolds(); }, patienceMs));
    EXPECT_FALSE(same(*after, *state()));
}

}  // namespace
}  // namespace tessavo::test
