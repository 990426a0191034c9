#include "app/import_filters_dialog.h"

#include <QAccessible>
#include <QDropEvent>
#include <QScrollBar>
#include <gmock/gmock.h>
#include <set>

#include "app/import_chart.h"
#include "app/import_filters_fixture.h"
#include "controls/color_control.h"
#include "controls/theme.h"

// What the dialog shows of a filter text, and what a person chooses in it.

namespace tessavo::test {
namespace {

using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::SizeIs;

class ImportDialog : public ImportTest {
 protected:
    static OutputChannelParams after(ImportFiltersDialog& dialog) {
        return dialog.record().channels.at(dialog.channel().value);
    }
    void dropOn(ImportFiltersDialog& dialog, const QMimeData& data, bool taken = true) {
        QDragEnterEvent enter(dialog.rect().center(), Qt::CopyAction, &data, Qt::LeftButton, {});
        enter.setAccepted(false);
        QApplication::sendEvent(&dialog, &enter);
        EXPECT_EQ(enter.isAccepted(), taken);
        if (taken) {
            QDropEvent drop(dialog.rect().center(), Qt::CopyAction, &data, Qt::LeftButton, {});
            QApplication::sendEvent(&dialog, &drop);
        }
    }
    static bool hasColor(const QImage& image, QRgb wanted) {
        const QColor color = QColor::fromRgb(wanted);
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                const QColor there = image.pixelColor(x, y);
                if (std::abs(there.red() - color.red()) + std::abs(there.green() - color.green()) +
                        std::abs(there.blue() - color.blue()) <
                    40) {
                    return true;
                }
            }
        }
        return false;
    }
    /// What a cell shows, or a part of it, in logical pixels.
    static QImage cellImage(ImportFiltersDialog& dialog, int row, int column, const QRect& part) {
        ImportView& view = dialog.view();
        view.scrollTo(view.model()->index(row, column));
        const QRect place = view.visualRect(view.model()->index(row, column));
        return view.viewport()->grab(part.translated(place.topLeft())).toImage();
    }
    static int lightest(const QImage& image) {
        int lightest = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                lightest = std::max(lightest, image.pixelColor(x, y).lightness());
            }
        }
        return lightest;
    }
};

TEST_F(ImportDialog, ShowsEveryLineWithItsVerdictAndItsPlace) {
    ImportFiltersDialog& dialog = showAlone();
    EXPECT_EQ(rows(dialog), 0);
    paste(dialog, everyVerdictText);
    const FilterText expected = readFilterText(everyVerdictText);
    ASSERT_EQ(rows(dialog), 9);
    ASSERT_THAT(expected.lines, SizeIs(9));
    const std::array<const char*, 9> discs{"", "1", "2", "3", "4", "", "", "X1", ""};
    std::set<Verdict> seen;
    for (int row = 0; row < 9; ++row) {
        const FilterLine& read = expected.lines[static_cast<std::size_t>(row)];
        EXPECT_EQ(cell(dialog, row, ImportList::lineColumn), QString::number(row + 1));
        EXPECT_EQ(cell(dialog, row, ImportList::textColumn).toStdString(), read.text);
        EXPECT_EQ(cell(dialog, row, ImportList::verdictColumn).toStdString(), verdictText(read));
        EXPECT_EQ(cellData(dialog, row, 0, ImportList::verdictRole).toInt(),
                  static_cast<int>(verdictOf(read)));
        EXPECT_EQ(cellData(dialog, row, 0, ImportList::placeRole).toString(),
                  QLatin1String(discs.at(static_cast<std::size_t>(row))));
        EXPECT_EQ(cellData(dialog, row, 0, ImportList::offRole).toBool(), row == 4);
        seen.insert(verdictOf(read));
    }
    EXPECT_THAT(seen, SizeIs(7)) << "every verdict occurs";
    EXPECT_THAT(dialog.message().toStdString(), HasSubstr(verdictCounts(expected) + " One step of undo."));
    EXPECT_TRUE(button(dialog, "Apply").isEnabled());
}

TEST_F(ImportDialog, EveryVerdictHasItsColourAndABandThatIsOffAHollowDisc) {
    ImportFiltersDialog& dialog = showAlone();
    paste(dialog, everyVerdictText);
    const std::array<QRgb, 9> colors{theme::text3,   theme::live,      theme::lightBlue,
                                     theme::target,  theme::text2,     theme::text3,
                                     theme::trouble, theme::lightBlue, theme::trouble};
    for (int row = 0; row < 9; ++row) {
        const QImage sign = cellImage(dialog, row, ImportList::verdictColumn, {8, 4, 16, 16});
        const QRgb expected = colors.at(static_cast<std::size_t>(row));
        for (const QRgb color : {theme::live, theme::lightBlue, theme::target, theme::trouble}) {
            EXPECT_EQ(hasColor(sign, color), expected == color) << row;
        }
        // A line that lies between two pixels is paler than its colour.
        EXPECT_TRUE(expected == theme::text3 ? lightest(sign) > 50 : hasColor(sign, expected)) << row;
        const QImage inDisc = cellImage(dialog, row, ImportList::placeColumn, {row == 7 ? 31 : 35, 11, 2, 2});
        EXPECT_EQ(hasColor(inDisc, theme::disc), (row >= 1 && row <= 3) || row == 7) << row;
        const QImage words = cellImage(dialog, row, ImportList::verdictColumn, {32, 0, 200, 24});
        EXPECT_EQ(hasColor(words, theme::trouble), row == 6 || row == 8) << row;
    }
    EXPECT_TRUE(hasColor(cellImage(dialog, 4, ImportList::placeColumn, {30, 0, 22, 24}), theme::mark));
}

TEST_F(ImportDialog, EveryBandsBoxDecidesWhetherTheBandIsWritten) {
    ImportFiltersDialog& dialog = showAlone();
    paste(dialog, peaks(8));
    const OutputChannelParams before = set().channels.at(dialog.channel().value);
    auto& count = named<CColorControl>(dialog, QStringLiteral("8 filters, 8 bands"));
    for (std::size_t band = 0; band < bandCount; ++band) {
        SkinCheckBox& box = bandBox(dialog, band);
        ASSERT_TRUE(box.isChecked()) << band;
        QTest::mouseClick(&box, Qt::LeftButton, {}, box.rect().center());
        EXPECT_EQ(count.text(), QStringLiteral("8 filters, 7 bands"));
        const OutputChannelParams planned = after(dialog);
        for (std::size_t other = 0; other < bandCount; ++other) {
            const bool stays =
                std::memcmp(&planned.bands[other], &before.bands[other], sizeof(EqBandParams)) == 0;
            EXPECT_EQ(stays, other == band) << band << ' ' << other;
        }
        // The first does least.
        EXPECT_TRUE(cell(dialog, 0, ImportList::verdictColumn).startsWith(QStringLiteral("left out: more")))
            << cell(dialog, 0, ImportList::verdictColumn).toStdString();
        EXPECT_EQ(cellData(dialog, 0, 0, ImportList::verdictRole).toInt(),
                  static_cast<int>(Verdict::notPossible));
        EXPECT_THAT(dialog.message().toStdString(), HasSubstr("1 left out."));
        for (int row = 1; row < 8; ++row) {
            const int place = row <= static_cast<int>(band) ? row : row + 1;
            EXPECT_EQ(cellData(dialog, row, 0, ImportList::placeRole).toString(), QString::number(place));
        }
        QTest::keyClick(&box, Qt::Key_Space);
        EXPECT_EQ(count.text(), QStringLiteral("8 filters, 8 bands"));
        EXPECT_THAT(dialog.message().toStdString(), Not(HasSubstr("left out")));
    }
}

TEST_F(ImportDialog, ChoosesAsManyBandsAsThereAreFilters) {
    ImportFiltersDialog& dialog = showAlone();
    for (const int filters : {1, 3, 8, 11}) {
        paste(dialog, peaks(filters));
        for (std::size_t band = 0; band < bandCount; ++band) {
            EXPECT_EQ(bandBox(dialog, band).isChecked(), static_cast<int>(band) < filters) << filters;
        }
    }
    EXPECT_THAT(dialog.message().toStdString(), HasSubstr("3 left out."));
    auto& count = named<CColorControl>(dialog, QStringLiteral("11 filters, 8 bands"));
    EXPECT_EQ(count.textColor(), QColor::fromRgb(theme::target));
}

TEST_F(ImportDialog, TheOtherBandsStayOrAreSwitchedOff) {
    ImportFiltersDialog& dialog = showAlone();
    paste(dialog, peaks(2));
    const OutputChannelParams before = set().channels.at(dialog.channel().value);
    OutputChannelParams planned = after(dialog);
    for (std::size_t band = 2; band < bandCount; ++band) {
        EXPECT_EQ(std::memcmp(&planned.bands[band], &before.bands[band], sizeof(EqBandParams)), 0) << band;
    }
    clickEntry(combo(dialog, "Other bands"), 1);
    planned = after(dialog);
    for (std::size_t band = 0; band < bandCount; ++band) {
        EXPECT_EQ(planned.bands[band].off, band < 2 ? 0 : 1) << band;
    }
    for (std::size_t band = 2; band < bandCount; ++band) {
        EqBandParams switched = before.bands[band];
        switched.off = 1;
        EXPECT_EQ(std::memcmp(&planned.bands[band], &switched, sizeof switched), 0) << band;
    }
}

TEST_F(ImportDialog, APreampGoesIntoTheVolumeIfItMay) {
    ImportFiltersDialog& dialog = showAlone();
    paste(dialog, peaks(1));
    EXPECT_FALSE(preampBox(dialog)->isVisible());
    paste(dialog, "Preamp: -4.3 dB\n" + peaks(1));
    SkinCheckBox& box = *preampBox(dialog);
    ASSERT_TRUE(box.isVisible());
    EXPECT_EQ(box.text(), QStringLiteral("Preamp -4.3 dB into the volume"));
    EXPECT_TRUE(box.isChecked());
    EXPECT_FLOAT_EQ(after(dialog).volumeDb, -4.3F);
    QTest::mouseClick(&box, Qt::LeftButton, {}, QPoint(10, 11));
    EXPECT_FLOAT_EQ(after(dialog).volumeDb, 0.0F);
    EXPECT_THAT(dialog.message().toStdString(), Not(HasSubstr("preamp")));
    QTest::mouseClick(&box, Qt::LeftButton, {}, QPoint(10, 11));
    paste(dialog, "Preamp: -200 dB\n" + peaks(1));
    const ImportPlan plan = planImport(readFilterText("Preamp: -200 dB\n" + peaks(1)),
                                       set().channels.at(dialog.channel().value), {.keepOthers = true});
    ASSERT_NE(plan.preampLeftDb, 0);
    EXPECT_THAT(dialog.message().toStdString(),
                HasSubstr(signedDecibels(plan.preampLeftDb).toStdString() + " of the preamp are left."));
}

TEST_F(ImportDialog, AsksWhichOfTheTextsChannelsIsRead) {
    ImportFiltersDialog& dialog = showAlone();
    paste(dialog, peaks(1));
    EXPECT_FALSE(combo(dialog, "Channel of the text").isVisible());
    const std::string text =
        "Channel: L\nPreamp: -1 dB\n" + peaks(1) + "Channel: R\nPreamp: -2 dB\n" + peaks(3);
    paste(dialog, text);
    SkinComboBox& which = combo(dialog, "Channel of the text");
    ASSERT_TRUE(which.isVisible());
    ASSERT_EQ(which.count(), 2);
    EXPECT_EQ(after(dialog).bands[0].frequencyHz, 100);
    EXPECT_EQ(after(dialog).bands[1].frequencyHz, 1000);
    EXPECT_FLOAT_EQ(after(dialog).volumeDb, -1.0F);
    clickEntry(which, 1);
    EXPECT_EQ(which.currentIndex(), 1);
    EXPECT_EQ(after(dialog).bands[2].frequencyHz, 300);
    EXPECT_FLOAT_EQ(after(dialog).volumeDb, -2.0F);
    EXPECT_EQ(preampBox(dialog)->text(), QStringLiteral("Preamp -2 dB into the volume"));
    clickEntry(which, 0);
    EXPECT_FLOAT_EQ(after(dialog).volumeDb, -1.0F);
}

TEST_F(ImportDialog, TellsHowFarAnotherMethodIsOffTheText) {
    const std::string text = "Filter 1: ON PK Fc 15000 Hz Gain 12.0 dB Q 1.00\n";
    for (std::uint32_t mode = 0; mode < filterMethodNames.size(); ++mode) {
        tuning.setFilterMode(mode);
        ImportFiltersDialog& dialog = showAlone();
        paste(dialog, text);
        const FilterText read = readFilterText(text);
        const auto deviation = importDeviation(
            read, planImport(read, set().channels.at(dialog.channel().value), {.keepOthers = true}),
            tuning.generator());
        ASSERT_TRUE(deviation);
        const std::string told = "With " + std::string(filterMethodNames.at(mode)) + " up to " +
                                 signedDecibels(deviation->db).toStdString() + " off the text";
        if (std::abs(deviation->db) >= 0.05) {
            EXPECT_THAT(dialog.message().toStdString(), HasSubstr(told));
        } else {
            EXPECT_THAT(dialog.message().toStdString(), Not(HasSubstr("off the text")));
        }
        EXPECT_EQ(std::abs(deviation->db) > 0.5, mode != 0) << "the bilinear method is exact";
    }
}

TEST_F(ImportDialog, TheChartHasTheChannelsFiltersBeforeAndAfter) {
    ImportFiltersDialog& dialog = showAlone();
    paste(dialog, peaks(4));
    CurveMaker curves;
    SkinComboBox& channels = combo(dialog, "Channel");
    for (std::uint8_t position = 0; position < channelCount; ++position) {
        clickEntry(channels, position);
        ASSERT_EQ(dialog.channel().value, recordChannelAt({position}).value);
        ASSERT_TRUE(dialog.chart().before() && dialog.chart().after());
        EXPECT_EQ(*dialog.chart().before(), curves.curveOf(set(), dialog.channel(), 0));
        EXPECT_EQ(*dialog.chart().after(), curves.curveOf(dialog.record(), dialog.channel(), 0));
        EXPECT_NE(*dialog.chart().before(), *dialog.chart().after());
        EXPECT_TRUE(hasColor(dialog.chart().grab().toImage(), theme::channels.at(position)));
    }
    EXPECT_THAT(dialog.chart().accessibleName().toStdString(), HasSubstr("Filters alone: before"));
}

TEST_F(ImportDialog, TakesFilesAndTextsByButtonByKeyAndByDrop) {
    ImportFiltersDialog& dialog = showAlone();
    auto& file = named<CReadOnlyEdit>(dialog, QStringLiteral("File"));
    dialogs.answer = textFile("one.txt", peaks(1));
    QTest::mouseClick(&button(dialog, "Open..."), Qt::LeftButton);
    EXPECT_EQ(rows(dialog), 1);
    EXPECT_EQ(file.text(), textOf(*dialogs.answer));
    EXPECT_EQ(dialogs.localeResets, 1);
    dialogs.answer = textFile("two.txt", peaks(2));
    QTest::keyClick(&dialog, Qt::Key_O, Qt::ControlModifier);
    EXPECT_EQ(rows(dialog), 2);
    dialogs.answer.reset();
    QTest::keyClick(&dialog, Qt::Key_O, Qt::ControlModifier);
    EXPECT_EQ(rows(dialog), 2) << "cancelled";
    EXPECT_THAT(dialogs.asked, SizeIs(3));
    // The keys paste wherever the focus is.
    int count = 3;
    for (QWidget* const focus : {static_cast<QWidget*>(&file), static_cast<QWidget*>(&dialog.view()),
                                 static_cast<QWidget*>(&combo(dialog, "Channel"))}) {
        clipboard().setText(QString::fromStdString(peaks(count)));
        focus->setFocus();
        QTest::keyClick(focus, Qt::Key_V, Qt::ControlModifier);
        EXPECT_EQ(rows(dialog), count++);
    }
    EXPECT_EQ(file.text(), QStringLiteral("Clipboard"));
    QMimeData dropped;
    dropped.setUrls({QUrl::fromLocalFile(textOf(textFile("seven.txt", peaks(7))))});
    dropOn(dialog, dropped);
    EXPECT_EQ(rows(dialog), 7);
    EXPECT_TRUE(file.text().endsWith(QStringLiteral("seven.txt")));
    QMimeData words;
    words.setText(QString::fromStdString(peaks(8)));
    dropOn(dialog, words);
    EXPECT_EQ(rows(dialog), 8);
    QMimeData picture;
    picture.setData(QStringLiteral("image/png"), "x");
    dropOn(dialog, picture, false);
}

TEST_F(ImportDialog, WhatCannotBeUsedLeavesTheListAndIsToldInTheDialog) {
    ImportFiltersDialog& dialog = showAlone();
    EXPECT_FALSE(button(dialog, "Apply").isEnabled());
    EXPECT_EQ(button(dialog, "Apply").toolTip(), QStringLiteral("Open or paste a filter text first."));
    paste(dialog, peaks(3));
    std::filesystem::create_directory(folder / "folder.txt");
    const std::vector<std::filesystem::path> bad{
        folder / "missing.txt",
        folder / "folder.txt",
        textFile("empty.txt", ""),
        textFile("letter.txt", "Dear engineer,\nno numbers here.\n"),
        textFile("binary.txt", std::string_view("\0\1\2\0PK", 6)),
        textFile("large.txt", std::string(mostFilterTextBytes + 1, ' ')),
        textFile("coefficients.txt", "biquad1,\nb0=1.0,\nb1=0.5,\nb2=0.1,\na1=0.1,\na2=0.2,\n")};
    for (const std::filesystem::path& each : bad) {
        QMimeData dropped;
        dropped.setUrls({QUrl::fromLocalFile(textOf(each))});
        dropOn(dialog, dropped);
        const std::string told = dialog.message().toStdString();
        EXPECT_THAT(told, HasSubstr(each.filename().string())) << each;
        EXPECT_THAT(told, HasSubstr(": ")) << each;
        EXPECT_EQ(rows(dialog), 3) << each;
        EXPECT_FALSE(button(dialog, "Apply").isEnabled()) << each;
        EXPECT_EQ(button(dialog, "Apply").toolTip(), dialog.message()) << each;
        // Enter does not go round the button.
        QTest::keyClick(&dialog.view(), Qt::Key_Return);
        EXPECT_TRUE(dialog.isVisible());
    }
    clipboard().clear();
    QTest::keyClick(&dialog, Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(dialog.message(), QStringLiteral("The clipboard holds no text."));
    EXPECT_THAT(shown, IsEmpty()) << "no box";
    EXPECT_EQ(QApplication::activeModalWidget(), &dialog);
    paste(dialog, peaks(2));
    EXPECT_EQ(rows(dialog), 2);
    EXPECT_TRUE(button(dialog, "Apply").isEnabled());
    EXPECT_EQ(button(dialog, "Apply").toolTip(), QString());
    // A text of which nothing can be had.
    paste(dialog, "Filter 1: ON NO Fc 4800 Hz Q 8.00\n");
    EXPECT_FALSE(button(dialog, "Apply").isEnabled());
    EXPECT_THAT(dialog.message().toStdString(), HasSubstr("No line of the text goes into the channel."));
}

TEST_F(ImportDialog, TheKeyboardReachesEverything) {
    ImportFiltersDialog& dialog = showAlone();
    paste(dialog, "Preamp: -1 dB\nChannel: L\n" + peaks(2) + "Channel: R\n" + peaks(1));
    std::vector<QWidget*> order{&named<CReadOnlyEdit>(dialog, QStringLiteral("File")),
                                &button(dialog, "Open..."), &button(dialog, "Paste"), &dialog.view()};
    for (QWidget* const each : dialog.into().controls()) {
        order.push_back(each);
    }
    order.push_back(&button(dialog, "Apply"));
    order.push_back(&button(dialog, "Cancel"));
    order.front()->setFocus(Qt::TabFocusReason);
    for (std::size_t i = 0; i < order.size(); ++i) {
        EXPECT_EQ(QApplication::focusWidget(), order[i]) << i;
        EXPECT_FALSE(order[i]->accessibleName().isEmpty() && order[i]->property("text").toString().isEmpty());
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    }
    EXPECT_EQ(QApplication::focusWidget(), order.front()) << "round again";
    dialog.view().setFocus();
    QTest::keyClick(&dialog.view(), Qt::Key_Down);
    EXPECT_EQ(dialog.view().currentIndex().row(), 1);
    QTest::keyClick(&dialog.view(), Qt::Key_Return);
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
    EXPECT_FALSE(dialog.isVisible());
    ImportFiltersDialog& other = showAlone();
    paste(other, peaks(1));
    QTest::keyClick(&other.view(), Qt::Key_Escape);
    EXPECT_EQ(other.result(), QDialog::Rejected);
    EXPECT_FALSE(other.isVisible());
}

TEST_F(ImportDialog, IsReadByScreenReaders) {
    ImportFiltersDialog& dialog = showAlone();
    paste(dialog, everyVerdictText);
    QAccessibleInterface* const seen = QAccessible::queryAccessibleInterface(&dialog.view());
    ASSERT_NE(seen, nullptr);
    EXPECT_EQ(seen->text(QAccessible::Name), QStringLiteral("Lines of the filter text"));
    QAccessibleTableInterface* const table = seen->tableInterface();
    ASSERT_NE(table, nullptr);
    EXPECT_EQ(table->columnDescription(2), QStringLiteral("Verdict"));
    const FilterText text = readFilterText(everyVerdictText);
    const std::array<const char*, 9> places{"", ", band 1", ", band 2",      ", band 3", ", band 4, off",
                                            "", "",         ", crossover 1", ""};
    for (int row = 0; row < 9; ++row) {
        const auto at = static_cast<std::size_t>(row);
        EXPECT_EQ(table->cellAt(row, 0)->text(QAccessible::Name).toStdString(),
                  "Line " + std::to_string(row + 1) + ", " + text.lines[at].text + ": " +
                      verdictText(text.lines[at]) + places.at(at));
    }
    SkinComboBox& channels = combo(dialog, "Channel");
    for (int position = 0; position < 8; ++position) {
        EXPECT_TRUE(channels.itemData(position, Qt::AccessibleTextRole)
                        .toString()
                        .startsWith(QString::number(position + 1) + QLatin1Char(' ')));
    }
}

TEST_F(ImportDialog, CutsNothingOff) {
    ImportFiltersDialog& dialog = showAlone();
    paste(dialog, "Preamp: -12.34 dB\nChannel: L\n" + peaks(9) + "Channel: R\n");
    clipboard().clear();
    for (const QSize size :
         {ImportFiltersDialog::usualSize, ImportFiltersDialog::leastSize, QSize(1200, 700)}) {
        dialog.resize(size);
        settleEvents();
        ASSERT_EQ(dialog.size(), size);
        for (QAbstractButton* each : dialog.findChildren<QAbstractButton*>()) {
            if (!each->isVisible()) {
                continue;
            }
            const int marks = qobject_cast<SkinCheckBox*>(each) != nullptr ? 22 : 16;
            const int needed =
                each->text().isEmpty() ? marks : each->fontMetrics().horizontalAdvance(each->text()) + marks;
            EXPECT_GE(each->width(), needed) << each->text().toStdString();
        }
        for (SkinComboBox* each : dialog.findChildren<SkinComboBox*>()) {
            EXPECT_GE(each->width(), each->neededWidth()) << each->accessibleName().toStdString();
        }
        for (CColorControl* each : dialog.findChildren<CColorControl*>()) {
            const QRect needed = each->fontMetrics().boundingRect(
                QRect(0, 0, each->width(), 1000), each->wordWrap() ? Qt::TextWordWrap : 0, each->text());
            EXPECT_LE(needed.width(), each->width()) << each->text().toStdString();
            EXPECT_LE(needed.height(), each->height()) << each->text().toStdString();
        }
        for (QWidget* each : dialog.findChildren<QWidget*>(Qt::FindDirectChildrenOnly)) {
            if (!each->isWindow()) {
                EXPECT_TRUE(dialog.rect().contains(each->geometry()));
            }
        }
    }
    // Twelve rows have room; more of them scroll, and the text has what the window has more.
    dialog.resize(ImportFiltersDialog::usualSize);
    paste(dialog, peaks(12));
    settleEvents();
    EXPECT_FALSE(dialog.view().verticalScrollBar()->isVisible());
    const int usual = dialog.view().columnWidth(ImportList::textColumn);
    dialog.resize(ImportFiltersDialog::usualSize + QSize(100, 0));
    settleEvents();
    EXPECT_EQ(dialog.view().columnWidth(ImportList::textColumn), usual + 100);
    paste(dialog, peaks(13));
    settleEvents();
    EXPECT_TRUE(dialog.view().verticalScrollBar()->isVisible());
}

}  // namespace
}  // namespace tessavo::test
