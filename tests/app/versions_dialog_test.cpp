#include "app/versions_dialog.h"

#include <QAccessible>
#include <QDateTime>
#include <QPushButton>
#include <QScrollBar>
#include <QTest>
#include <QTreeWidget>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>

#include "history/file_history.h"
#include "support/settings_fakes.h"
#include "support/temporary_folder.h"

namespace tessavo::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

class EarlierVersions : public ::testing::Test {
 protected:
    [[nodiscard]] std::filesystem::path file(const std::string& name) const { return folder_ / name; }
    /// Writes over a file that holds these bytes.
    void writeOver(const std::filesystem::path& path, const Bytes& bytes,
                   FileKind kind = FileKind::settings) {
        ASSERT_TRUE(writeFile(path, bytes));
        history_.willWrite(path, kind);
        ASSERT_TRUE(writeFile(path, {1, 2, 3}));
    }
    void show() {
        dialog_ = std::make_unique<VersionsDialog>(history_, menu_.dialogs);
        dialog_->show();
        dialog_->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(dialog_.get()));
    }
    [[nodiscard]] QTreeWidget& list() const { return *dialog_->findChild<QTreeWidget*>(); }
    [[nodiscard]] QPushButton& button(const QString& text) const {
        for (QPushButton* each : dialog_->findChildren<QPushButton*>()) {
            if (each->text() == text) {
                return *each;
            }
        }
        throw std::logic_error("no button " + text.toStdString());
    }
    void click(const QString& text) const { QTest::mouseClick(&button(text), Qt::LeftButton); }
    void clickRow(int row) const {
        QTest::mouseClick(list().viewport(), Qt::LeftButton, {},
                          list().visualItemRect(list().topLevelItem(row)).center());
    }
    [[nodiscard]] std::vector<std::string> texts(int row) const {
        std::vector<std::string> all;
        for (int column = 0; column < list().columnCount(); ++column) {
            all.push_back(list().topLevelItem(row)->text(column).toStdString());
        }
        return all;
    }
    [[nodiscard]] std::string message() const { return dialog_->message().toStdString(); }
    static std::string folderText(const std::filesystem::path& path) {
        return std::filesystem::path(path).make_preferred().string();
    }

    TemporaryFolder folder_;
    FileMenu menu_;
    // 2026-09-21 and later, one second after another.
    WallTime now_{std::chrono::seconds(1'790'000'000)};
    FileHistory history_{menu_.tuning.state, menu_.commands, folder_ / "data",
                         [this] { return now_ += std::chrono::seconds(1); }};
    std::unique_ptr<VersionsDialog> dialog_;
    std::mt19937_64 random_{5};
};

TEST_F(EarlierVersions, AreListedNewestFirstWithNameFolderTimeAndSize) {
    std::filesystem::create_directory(file("sub"));
    writeOver(file("car.eqs"), Bytes(10600, 1));
    const auto odd = folder_.path() / "sub" / std::filesystem::path(u"\u00E4\u20AC \U0001F600.bin");
    writeOver(odd, Bytes(3384, 2), FileKind::image);
    show();
    EXPECT_EQ(dialog_->windowTitle(), QStringLiteral("Earlier Versions"));
    ASSERT_EQ(list().topLevelItemCount(), 2);
    const auto timeText = [](int seconds) {
        return QDateTime::fromSecsSinceEpoch(1'790'000'000 + seconds)
            .toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"))
            .toStdString();
    };
    EXPECT_THAT(texts(0), ElementsAre("\u00E4\u20AC \U0001F600.bin", folderText(file("sub")), timeText(2),
                                      "3384 bytes"));
    EXPECT_THAT(texts(1), ElementsAre("car.eqs", folderText(folder_.path()), timeText(1), "10600 bytes"));
    EXPECT_EQ(message(), "");
    EXPECT_EQ(list().indexOfTopLevelItem(list().currentItem()), 0);
}

TEST_F(EarlierVersions, NoneIsSaidAndOnlyCloseCanBePressed) {
    show();
    EXPECT_EQ(list().topLevelItemCount(), 0);
    EXPECT_EQ(message(), "No file has been written over yet.");
    EXPECT_FALSE(button(QStringLiteral("Bring Back")).isEnabled());
    EXPECT_FALSE(button(QStringLiteral("Open")).isEnabled());
    click(QStringLiteral("Close"));
    EXPECT_FALSE(dialog_->isVisible());
}

TEST_F(EarlierVersions, BringBackWritesTheChosenOneToItsPlaceAndKeepsWhatStoodThere) {
    writeOver(file("car.eqs"), Bytes(300, 1));
    writeOver(file("car.eqs"), Bytes(400, 2));
    const Bytes sets = menu_.tuning.store();
    show();
    clickRow(1);
    click(QStringLiteral("Bring Back"));
    EXPECT_SAME_BYTES(readFile(file("car.eqs")), Bytes(300, 1));
    EXPECT_TRUE(dialog_->isVisible());
    EXPECT_EQ(message(), "car.eqs is as it was before " + texts(2)[2] + ".");
    ASSERT_EQ(list().topLevelItemCount(), 3) << "what stood there is in the list";
    EXPECT_EQ(texts(0)[3], "3 bytes");
    EXPECT_EQ(list().indexOfTopLevelItem(list().currentItem()), 2) << "the same one is chosen";
    EXPECT_SAME_BYTES(menu_.tuning.store(), sets);

    click(QStringLiteral("Bring Back"));
    EXPECT_EQ(message(), "car.eqs holds this already.");
    EXPECT_EQ(list().topLevelItemCount(), 3);
    clickRow(0);
    click(QStringLiteral("Bring Back"));
    EXPECT_SAME_BYTES(readFile(file("car.eqs")), (Bytes{1, 2, 3})) << "taken back";
    EXPECT_TRUE(menu_.dialogs.asked.empty());
}

TEST_F(EarlierVersions, ADoubleClickBringsBack) {
    writeOver(file("car.eqs"), Bytes(300, 1));
    writeOver(file("car.eqs"), Bytes(400, 2));
    show();
    const QPoint place = list().visualItemRect(list().topLevelItem(1)).center();
    QTest::mouseClick(list().viewport(), Qt::LeftButton, {}, place);
    QTest::mouseDClick(list().viewport(), Qt::LeftButton, {}, place);
    EXPECT_SAME_BYTES(readFile(file("car.eqs")), Bytes(300, 1));
}

TEST_F(EarlierVersions, TheKeyboardReachesEverything) {
    writeOver(file("car.eqs"), Bytes(300, 1));
    writeOver(file("car.eqs"), Bytes(400, 2));
    show();
    ASSERT_TRUE(list().hasFocus());
    QTest::keyClick(&list(), Qt::Key_Down);
    QTest::keyClick(&list(), Qt::Key_Return);
    EXPECT_SAME_BYTES(readFile(file("car.eqs")), Bytes(300, 1));
    ASSERT_TRUE(list().hasFocus());
    for (const char* name : {"Bring Back", "Open", "Close"}) {
        QTest::keyClick(dialog_->focusWidget(), Qt::Key_Tab);
        EXPECT_TRUE(button(QLatin1String(name)).hasFocus()) << name;
    }
    QTest::keyClick(dialog_->focusWidget(), Qt::Key_Backtab, Qt::ShiftModifier);
    QTest::keyClick(dialog_->focusWidget(), Qt::Key_Backtab, Qt::ShiftModifier);
    QTest::keyClick(dialog_->focusWidget(), Qt::Key_Space);
    EXPECT_EQ(message(), "car.eqs holds this already.");
    EXPECT_TRUE(button(QStringLiteral("Bring Back")).hasFocus()) << "although the list is new";
    QTest::keyClick(dialog_->focusWidget(), Qt::Key_Tab);
    QTest::keyClick(dialog_->focusWidget(), Qt::Key_Tab);
    writeFile(file("car.eqs"), Bytes(7, 7));
    QTest::keyClick(dialog_->focusWidget(), Qt::Key_Return);
    EXPECT_FALSE(dialog_->isVisible()) << "Enter presses the button that has the focus";
    EXPECT_SAME_BYTES(readFile(file("car.eqs")), Bytes(7, 7));
    show();
    QTest::keyClick(&list(), Qt::Key_Escape);
    EXPECT_FALSE(dialog_->isVisible());
}

TEST_F(EarlierVersions, OpenTakesTheSetsTouchesNoFileAndCloses) {
    const Bytes store = randomStore(random_);
    writeOver(file("car.eqs"), store);
    show();
    click(QStringLiteral("Open"));
    EXPECT_SAME_BYTES(menu_.tuning.store(), store);
    EXPECT_SAME_BYTES(readFile(file("car.eqs")), (Bytes{1, 2, 3}));
    EXPECT_TRUE(history_.document().path().empty());
    EXPECT_FALSE(dialog_->isVisible());
    EXPECT_THAT(menu_.texts(), IsEmpty());
}

TEST_F(EarlierVersions, OpenIsForSettingsOnlyAndABoxTellsWhereThereAreNone) {
    writeOver(file("car.eqs"), Bytes(10600, 1));
    writeOver(file("out.bin"), Bytes(3384, 1), FileKind::image);
    show();
    EXPECT_FALSE(button(QStringLiteral("Open")).isEnabled());
    clickRow(1);
    EXPECT_TRUE(button(QStringLiteral("Open")).isEnabled());
    click(QStringLiteral("Open"));
    EXPECT_THAT(menu_.texts(), ElementsAre("Incompatible .eqs file!\r\n"));
    EXPECT_TRUE(dialog_->isVisible());
}

TEST_F(EarlierVersions, WhatCannotBeBroughtBackIsTold) {
    std::filesystem::create_directory(file("sub"));
    writeOver(file("sub") / "car.eqs", Bytes(300, 1));
    std::filesystem::remove_all(file("sub"));
    show();
    click(QStringLiteral("Bring Back"));
    EXPECT_EQ(message(), "car.eqs could not be written. What it held is in the list.");
    std::filesystem::remove_all(folder_ / "data");
    click(QStringLiteral("Open"));
    EXPECT_EQ(message(), "This version is gone or damaged.");
    click(QStringLiteral("Bring Back"));
    EXPECT_EQ(message(), "This version is gone or damaged.");
    EXPECT_EQ(list().topLevelItemCount(), 0);
    EXPECT_FALSE(button(QStringLiteral("Bring Back")).isEnabled());
}

TEST_F(EarlierVersions, WithoutAKnownPlaceOneIsAskedFor) {
    writeOver(file("out.bin"), Bytes(300, 1), FileKind::image);
    for (const auto& entry : std::filesystem::directory_iterator(folder_ / "data")) {
        if (entry.path().extension() == ".txt") {
            writeFile(entry.path(), Bytes(10, 0));
        }
    }
    show();
    ASSERT_EQ(list().topLevelItemCount(), 1);
    EXPECT_EQ(texts(0)[0], "no longer known");
    menu_.dialogs.answer = std::nullopt;
    click(QStringLiteral("Bring Back"));
    EXPECT_EQ(message(), "");
    menu_.dialogs.answer = file("found.bin");
    click(QStringLiteral("Bring Back"));
    EXPECT_SAME_BYTES(readFile(file("found.bin")), Bytes(300, 1));
    ASSERT_THAT(menu_.dialogs.asked, SizeIs(2));
    EXPECT_TRUE(menu_.dialogs.asked[0].save);
    EXPECT_EQ(menu_.dialogs.asked[0].extension, "bin");
    EXPECT_EQ(menu_.dialogs.localeResets, 2);
}

TEST_F(EarlierVersions, AreReadByScreenReaders) {
    writeOver(file("car.eqs"), Bytes(300, 1));
    show();
    QAccessibleInterface* const seen = QAccessible::queryAccessibleInterface(&list());
    ASSERT_NE(seen, nullptr);
    EXPECT_EQ(seen->text(QAccessible::Name), QStringLiteral("Earlier Versions"));
    QAccessibleTableInterface* const table = seen->tableInterface();
    ASSERT_NE(table, nullptr);
    EXPECT_EQ(table->rowCount(), 1);
    EXPECT_EQ(table->columnDescription(2), QStringLiteral("Written over"));
    EXPECT_EQ(table->cellAt(0, 0)->text(QAccessible::Name).toStdString(),
              "car.eqs, " + texts(0)[2] + ", 300 bytes");
    for (const char* name : {"Bring Back", "Open", "Close"}) {
        EXPECT_EQ(
            QAccessible::queryAccessibleInterface(&button(QLatin1String(name)))->text(QAccessible::Name),
            QLatin1String(name));
    }
}

TEST_F(EarlierVersions, CutNothingOffWhatHasRoom) {
    for (int i = 0; i < 25; ++i) {
        writeOver(file("car.eqs"), Bytes(KeptVersions::largestFile / 1000, static_cast<std::uint8_t>(i)));
    }
    show();
    ASSERT_EQ(list().topLevelItemCount(), 20);
    EXPECT_FALSE(list().horizontalScrollBar()->isVisible());
    for (int column = 2; column < list().columnCount(); ++column) {
        const int needed = list().fontMetrics().horizontalAdvance(list().topLevelItem(0)->text(column));
        EXPECT_GE(list().columnWidth(column), needed + 8) << column;
    }
    for (const char* name : {"Bring Back", "Open", "Close"}) {
        QPushButton& each = button(QLatin1String(name));
        EXPECT_GE(each.width(), each.fontMetrics().horizontalAdvance(each.text()) + 16) << name;
        EXPECT_TRUE(dialog_->rect().contains(each.geometry())) << name;
    }
}

}  // namespace
}  // namespace tessavo::test
