#include <QApplication>
#include <QClipboard>
#include <QMenu>
#include <QTest>
#include <QTimer>
#include <fstream>
#include <iterator>
#include <thread>

#include "comm/page/page_bench.h"
#include "comm/page/processor_time.h"
#include "support/synthetic_events.h"

namespace tessavo::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class Log : public PageBench {
 protected:
    void add(LogKind kind, const char* text) { page->Log(kind, QString::fromLatin1(text)); }
    /// Opens the context menu and chooses an item, with something that happens in between.
    void chooseItem(const QString& item, const std::function<void()>& whileOpen = {}) {
        QTimer::singleShot(0, &window, [&] {
            auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
            ASSERT_NE(menu, nullptr);
            if (whileOpen) {
                whileOpen();
                QCoreApplication::sendPostedEvents();
                ASSERT_EQ(QApplication::activePopupWidget(), menu);
            }
            for (QAction* action : menu->actions()) {
                if (action->text() == item) {
                    QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(action).center());
                    return;
                }
            }
            menu->close();
            ADD_FAILURE() << "no item " << item.toStdString();
        });
        QContextMenuEvent event(QContextMenuEvent::Mouse, {20, 20}, log().mapToGlobal(QPoint(20, 20)));
        QApplication::sendEvent(log().viewport(), &event);
    }
};

TEST_F(Log, EachKindHasItsPrefix) {
    add(LogKind::tx, "a");
    add(LogKind::rx, "b");
    add(LogKind::status, "c");
    add(LogKind::error, "d");
    EXPECT_THAT(logLines(), ElementsAre("TX-->    a", "RX-->    b", "ST-->    c", "ERR-->   d"));
}

TEST_F(Log, AFilterThatIsOffLeavesAnEmptyLine) {
    const std::pair<int, LogKind> filters[]{{comm_id::showSent, LogKind::tx},
                                            {comm_id::showReceived, LogKind::rx},
                                            {comm_id::showStatus, LogKind::status},
                                            {comm_id::showErrors, LogKind::error}};
    for (const auto& [id, kind] : filters) {
        click(button(comm_id::clearLog));
        click(filter(id));
        for (const LogKind each : {LogKind::tx, LogKind::rx, LogKind::status, LogKind::error}) {
            add(each, "text");
        }
        const LogLines lines = logLines();
        ASSERT_EQ(lines.size(), 4U);
        for (std::size_t i = 0; i < lines.size(); ++i) {
            EXPECT_EQ(lines[i].empty(), i == static_cast<std::size_t>(kind)) << i;
        }
        click(filter(id));
    }
}

TEST_F(Log, AReceiveWithoutItsReceivedLinesLeavesThemEmpty) {
    click(filter(comm_id::showReceived));
    click(button(comm_id::update));
    EXPECT_THAT(logLines(),
                ElementsAre("ST-->    Prepare XModem2k Message", "ST-->    Connecting to Target", "",
                            "ST-->    Connected to Target", "TX-->    Send XModem Message", "",
                            "ST-->    Answer received", "", "", "ST-->    Disconnect from Target",
                            "TX-->    Send Disconnect Command", "", "ST-->    Disconnected from Target"));
}

TEST_F(Log, AFilterChangesOnlyLinesToCome) {
    add(LogKind::rx, "before");
    click(filter(comm_id::showReceived));
    add(LogKind::rx, "after");
    click(filter(comm_id::showReceived));
    EXPECT_THAT(logLines(), ElementsAre("RX-->    before", ""));
}

TEST_F(Log, AKindBeyondTheFourAddsNothing) {
    add(static_cast<LogKind>(4), "nobody");
    EXPECT_EQ(log().lineCount(), 0);
}

TEST_F(Log, TheNewestLineIsSelectedAndInView) {
    for (int i = 0; i < 100; ++i) {
        add(LogKind::status, "line");
    }
    ASSERT_TRUE(passEventsUntil([&] { return log().currentIndex().row() == 99; }));
    EXPECT_TRUE(log().selectionModel()->isSelected(log().currentIndex()));
    const QRect newest = log().visualRect(log().currentIndex());
    EXPECT_TRUE(log().viewport()->rect().contains(newest));
    EXPECT_EQ(newest.height(), 18);
    EXPECT_EQ(log().indexAt({5, 0}).row(), 82) << "eighteen whole rows are in view";
    EXPECT_EQ(log().visualRect(log().indexAt({5, 0})).top(), 0);
}

TEST_F(Log, ClearEmptiesIt) {
    add(LogKind::status, "line");
    click(button(comm_id::clearLog));
    EXPECT_EQ(log().lineCount(), 0);
    add(LogKind::status, "next");
    EXPECT_THAT(logLines(), ElementsAre("ST-->    next"));
}

TEST_F(Log, LinesOfOtherThreadsKeepTheirOrder) {
    std::thread other([&] {
        for (int i = 0; i < 1000; ++i) {
            page->Log(LogKind::tx, QString::number(i));
        }
    });
    ASSERT_TRUE(passEventsUntil([&] { return log().lineCount() == 1000; }));
    other.join();
    for (int i = 0; i < 1000; ++i) {
        ASSERT_EQ(log().line(i), QStringLiteral("TX-->    %1").arg(i));
    }
}

TEST_F(Log, HoldsAHundredThousandLinesAndThenForgetsTheOldest) {
    for (int i = 0; i < LogModel::lineLimit + 5; ++i) {
        page->Log(LogKind::status, QString::number(i));
    }
    EXPECT_EQ(log().lineCount(), 100000);
    EXPECT_EQ(log().line(0), QStringLiteral("ST-->    5"));
    EXPECT_EQ(log().line(99999), QStringLiteral("ST-->    100004"));
    EXPECT_EQ(log().currentIndex().row(), 99999);
}

TEST_F(Log, AFullLogIsNoSlowerThanAShortOne) {
    // One line at a time, each drawn, as in a transfer. Processor time, which other programs do not lengthen.
    constexpr int lines = 200;
    const auto timePerLine = [&](const char* name) {
        EXPECT_TRUE(letLoopRun());
        const double start = processorSeconds();
        for (int i = 0; i < lines; ++i) {
            page->Log(LogKind::status, QStringLiteral("more"));
            QApplication::processEvents();
        }
        const double microseconds = 1e6 * (processorSeconds() - start) / lines;
        RecordProperty(name, static_cast<int>(microseconds));
        return microseconds;
    };
    for (int i = 0; i < 20; ++i) {
        page->Log(LogKind::status, QStringLiteral("x"));
    }
    const double onShort = timePerLine("microseconds_per_line_on_a_short_log");
    for (int i = 0; i < LogModel::lineLimit; ++i) {
        page->Log(LogKind::status, QStringLiteral("x"));
    }
    const double onFull = timePerLine("microseconds_per_line_on_a_full_log");
    EXPECT_LT(onFull, 3 * onShort);
}

TEST_F(Log, CopiesSelectedLinesOrAll) {
    add(LogKind::tx, "one");
    add(LogKind::rx, "two");
    add(LogKind::error, "three");
    ASSERT_TRUE(passEventsUntil([&] { return log().currentIndex().row() == 2; }));
    chooseItem(QStringLiteral("Copy Whole Log"));
    EXPECT_EQ(QApplication::clipboard()->text(),
              QStringLiteral("TX-->    one\nRX-->    two\nERR-->   three\n"));
    chooseItem(QStringLiteral("Copy Selected Lines"));
    EXPECT_EQ(QApplication::clipboard()->text(), QStringLiteral("ERR-->   three\n"));
    QTest::mouseClick(log().viewport(), Qt::LeftButton, {}, {30, 9});
    QTest::mouseClick(log().viewport(), Qt::LeftButton, Qt::ShiftModifier, {30, 27});
    QTest::keyClick(&log(), Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QApplication::clipboard()->text(), QStringLiteral("TX-->    one\nRX-->    two\n"));
}

TEST_F(Log, CopiesWhatWasSelectedWhenItsMenuOpened) {
    for (const char* text : {"one", "two", "three"}) {
        add(LogKind::tx, text);
    }
    QTest::mouseClick(log().viewport(), Qt::LeftButton, {}, {30, 9});
    QTest::mouseClick(log().viewport(), Qt::LeftButton, Qt::ShiftModifier, {30, 27});
    chooseItem(QStringLiteral("Copy Selected Lines"), [&] {
        add(LogKind::error, "four");
        std::thread([&] { page->Log(LogKind::rx, QStringLiteral("five")); }).join();
    });
    EXPECT_EQ(QApplication::clipboard()->text(), QStringLiteral("TX-->    one\nTX-->    two\n"));
    EXPECT_EQ(log().lineCount(), 5);
    QTest::mouseClick(log().viewport(), Qt::LeftButton, {}, {30, 9});
    chooseItem(QStringLiteral("Copy Selected Lines"), [&] { log().clear(); });
    EXPECT_EQ(QApplication::clipboard()->text(), QStringLiteral("TX-->    one\n"))
        << "even when the log has been emptied since";
}

TEST_F(Log, WithNothingSelectedItsMenuCopiesOnlyTheWhole) {
    add(LogKind::tx, "one");
    log().selectionModel()->clear();
    QApplication::clipboard()->setText(QStringLiteral("before"));
    bool enabled = true;
    chooseItem(QStringLiteral("Copy Whole Log"), [&] {
        for (const QAction* action : qobject_cast<QMenu*>(QApplication::activePopupWidget())->actions()) {
            if (action->text() == QStringLiteral("Copy Selected Lines")) {
                enabled = action->isEnabled();
            }
        }
        add(LogKind::tx, "two");
    });
    EXPECT_FALSE(enabled);
    EXPECT_EQ(QApplication::clipboard()->text(), QStringLiteral("TX-->    one\nTX-->    two\n"));
}

TEST_F(Log, TheNewestLineAloneIsSelectedWhateverKeyIsHeld) {
    const std::pair<Qt::Key, Qt::KeyboardModifier> keys[]{{Qt::Key_Shift, Qt::ShiftModifier},
                                                          {Qt::Key_Control, Qt::ControlModifier}};
    add(LogKind::tx, "first");
    for (const auto& [key, modifier] : keys) {
        QTest::keyPress(&log(), key, modifier);
        ASSERT_EQ(QApplication::keyboardModifiers(), modifier);
        for (int i = 0; i < 3; ++i) {
            add(LogKind::status, "line");
            EXPECT_EQ(log().selectedText(), QStringLiteral("ST-->    line\n"));
            EXPECT_EQ(log().currentIndex().row(), log().lineCount() - 1);
        }
        QTest::keyRelease(&log(), key);
        ASSERT_EQ(QApplication::keyboardModifiers(), Qt::NoModifier);
    }
}

TEST_F(Log, IsSavedAsAText) {
    add(LogKind::tx, "one");
    click(filter(comm_id::showReceived));
    add(LogKind::rx, "two");
    add(LogKind::error, "three");
    dialogs.answer = folder / "log.txt";
    chooseItem(QStringLiteral("Save As Text File..."));
    ASSERT_EQ(dialogs.asked.size(), 1U);
    EXPECT_TRUE(dialogs.asked[0].save);
    EXPECT_EQ(dialogs.asked[0].extension, "txt");
    EXPECT_EQ(dialogs.localeResets, 1);
    // A text as the system has it, with its line ends.
    std::ifstream saved(folder / "log.txt");
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(saved), {}), "TX-->    one\n\nERR-->   three\n");
    EXPECT_THAT(shown, IsEmpty());
}

TEST_F(Log, TellsThatItCouldNotBeSavedAndDoesNothingWhenCancelled) {
    add(LogKind::tx, "one");
    chooseItem(QStringLiteral("Save As Text File..."));
    EXPECT_THAT(shown, IsEmpty());
    dialogs.answer = folder / "missing" / "log.txt";
    chooseItem(QStringLiteral("Save As Text File..."));
    EXPECT_THAT(shown, ElementsAre("The log could not be saved."));
}

}  // namespace
}  // namespace tessavo::test
