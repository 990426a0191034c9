#include "app/handed_files.h"

#include <QMenu>
#include <QTest>
#include <future>
#include <thread>

#include "controls/bitmap_slider.h"
#include "controls/skin_message_box.h"
#include "params/set_text.h"
#include "support/frame_fixture.h"
#include "support/synthetic_events.h"
#include "target/in_process_line.h"

// What becomes of the files of second starts.

namespace tessavo::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr int patienceMs = 30000;

class Handed : public FrameTest {
 protected:
    [[nodiscard]] std::u16string firstName() const { return readSetText(tuning.store().sets[0].setName); }
    bool becomes(std::u16string_view name) {
        return QTest::qWaitFor([&] { return firstName() == name; }, patienceMs);
    }
    /// Lets the loop run for several of the looks that a waiting file takes.
    bool staysUnloaded() {
        for (int i = 0; i < 8; ++i) {
            if (!letLoopRun() || firstName() != u"Type 1") {
                return false;
            }
        }
        return true;
    }

    std::unique_ptr<HandedFiles> handed = std::make_unique<HandedFiles>(*frame, link);
};

TEST_F(Handed, AFileIsLoadedLikeByOpen) {
    ASSERT_TRUE(handed->take(settingsFileNamed("a.eqs", u"Garage")));
    EXPECT_EQ(firstName(), u"Type 1") << "whoever hands it over is answered first";
    ASSERT_TRUE(becomes(u"Garage"));
    EXPECT_EQ(setName().text(), QStringLiteral("Garage"));
    EXPECT_EQ(setSelector().itemText(0), QStringLiteral("Garage"));
    EXPECT_EQ(recentItems(), QStringList{QStringLiteral("1 ") + pathIn("a.eqs")});
    EXPECT_THAT(shown, IsEmpty());
    EXPECT_EQ(dialogs.localeResets, 1);
}

TEST_F(Handed, AFileThatCannotBeLoadedIsTold) {
    ASSERT_TRUE(handed->take(pathIn("missing.eqs")));
    ASSERT_TRUE(QTest::qWaitFor([&] { return !shown.empty(); }, patienceMs));
    EXPECT_THAT(shown, ElementsAre(errorBox("Error opening configuration file!")));
    EXPECT_EQ(firstName(), u"Type 1");
}

TEST_F(Handed, FilesComeInTheirOrder) {
    std::vector<std::u16string> names;
    QObject::connect(&view(), &CTessavoView::currentSetChanged, frame.get(),
                     [&] { names.push_back(firstName()); });
    ASSERT_TRUE(handed->take(settingsFileNamed("a.eqs", u"One")));
    ASSERT_TRUE(handed->take(settingsFileNamed("b.eqs", u"Two")));
    ASSERT_TRUE(handed->take(settingsFileNamed("c.eqs", u"Three")));
    ASSERT_TRUE(becomes(u"Three"));
    EXPECT_THAT(names, ElementsAre(u"One", u"Two", u"Three"));
}

TEST_F(Handed, AnEmptyPathLoadsNothing) {
    ASSERT_TRUE(handed->take({}));
    EXPECT_TRUE(staysUnloaded());
    EXPECT_THAT(shown, IsEmpty());
    EXPECT_EQ(recentItems(), QStringList());
}

TEST_F(Handed, OnlySoManyMayWait) {
    const QString file = settingsFileNamed("a.eqs", u"Garage");
    QTest::mousePress(view().pages()[0], Qt::LeftButton, {}, QPoint(2, 2));
    for (std::size_t i = 0; i < HandedFiles::mostWaiting; ++i) {
        EXPECT_TRUE(handed->take(file)) << i;
    }
    EXPECT_FALSE(handed->take(file));
    QTest::mouseRelease(view().pages()[0], Qt::LeftButton, {}, QPoint(2, 2));
    ASSERT_TRUE(becomes(u"Garage"));
    ASSERT_TRUE(QTest::qWaitFor([&] { return handed->take(file); }, patienceMs));
}

// ---- coming to the front

TEST_F(Handed, TheWindowComesToTheFront) {
    for (const bool minimised : {false, true}) {
        QWidget other;
        other.show();
        other.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&other));
        if (minimised) {
            frame->showMinimized();
            ASSERT_TRUE(frame->isMinimized());
        }
        ASSERT_FALSE(frame->isActiveWindow());
        ASSERT_TRUE(handed->take({}));
        EXPECT_TRUE(QTest::qWaitForWindowActive(frame.get())) << minimised;
        EXPECT_FALSE(frame->isMinimized());
    }
}

TEST_F(Handed, AWindowThatClosesTakesNothing) {
    frame->hide();
    EXPECT_FALSE(handed->take(settingsFileNamed("a.eqs", u"Garage")));
    EXPECT_FALSE(frame->isVisible());
}

// ---- what a file waits for

TEST_F(Handed, AFileWaitsForTheEndOfABox) {
    SkinMessageBox box(QStringLiteral("Title"), QStringLiteral("Text"), SkinMessageBox::Icon::none,
                       SkinMessageBox::Buttons::ok, frame.get());
    box.open();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&box));
    ASSERT_TRUE(handed->take(settingsFileNamed("a.eqs", u"Garage")));
    EXPECT_TRUE(staysUnloaded());
    EXPECT_TRUE(box.isActiveWindow()) << "the box comes to the front, for the window takes no input";
    QTest::mouseClick(box.buttons().at(0), Qt::LeftButton);
    EXPECT_TRUE(becomes(u"Garage"));
}

TEST_F(Handed, AFileWaitsForTheEndOfAMenu) {
    QMenu* opened = menu(QStringLiteral("Help"));
    opened->popup(frame->mapToGlobal(QPoint(50, 28)));
    ASSERT_TRUE(QTest::qWaitFor([&] { return opened->isVisible(); }, patienceMs));
    ASSERT_TRUE(handed->take(settingsFileNamed("a.eqs", u"Garage")));
    EXPECT_TRUE(staysUnloaded());
    QTest::keyClick(opened, Qt::Key_Escape);
    EXPECT_TRUE(becomes(u"Garage"));
}

TEST_F(Handed, AFileWaitsForTheEndOfADrag) {
    makeFrame(realPages());
    handed = std::make_unique<HandedFiles>(*frame, link);
    auto* slider = view().pages()[0]->findChild<CBitmapSlider*>();
    ASSERT_NE(slider, nullptr);
    const QPoint from = slider->rect().center();
    QTest::mousePress(slider, Qt::LeftButton, {}, from);
    QTest::mouseMove(slider, from + QPoint(0, 5));
    ASSERT_TRUE(handed->take(settingsFileNamed("a.eqs", u"Garage")));
    EXPECT_TRUE(staysUnloaded());
    QTest::mouseRelease(slider, Qt::LeftButton, {}, from + QPoint(0, 5));
    EXPECT_TRUE(becomes(u"Garage"));
}

TEST_F(Handed, AFileWaitsForTheEndOfAnExchange) {
    std::promise<void> mayGoOn;
    std::promise<void> talks;
    std::atomic<bool> first = true;
    InProcessTarget target("inside", TargetMemory::holding(factoryImage()), TargetDevice::Options{},
                           [&](TargetLogKind, std::string_view) {
                               if (first.exchange(false)) {
                                   talks.set_value();
                                   mayGoOn.get_future().wait();
                               }
                           });
    CommLink line(tuning, boxes, linesTo(target, makeSerialPortLine));
    line.setPortName(target.portName());
    HandedFiles files(*frame, line);
    std::thread poll([&] { EXPECT_TRUE(line.background().ReadClipState().has_value()); });
    talks.get_future().wait();
    ASSERT_TRUE(line.exchangeRuns());
    EXPECT_TRUE(files.take(settingsFileNamed("a.eqs", u"Garage")));
    EXPECT_TRUE(staysUnloaded());
    mayGoOn.set_value();
    poll.join();
    EXPECT_TRUE(becomes(u"Garage"));
    line.shutDown();
}

TEST_F(Handed, TheNextFileWaitsForTheBoxAboutTheOneBefore) {
    bool open = false;
    boxes.setPresenter([&](const QString&, BoxIcon, BoxButtons buttons) {
        // A box keeps the loop running.
        open = true;
        EXPECT_TRUE(staysUnloaded());
        open = false;
        return answerWhenClosed(buttons);
    });
    ASSERT_TRUE(handed->take(pathIn("missing.eqs")));
    ASSERT_TRUE(handed->take(settingsFileNamed("a.eqs", u"Garage")));
    ASSERT_TRUE(becomes(u"Garage"));
    EXPECT_FALSE(open);
}

}  // namespace
}  // namespace tessavo::test
