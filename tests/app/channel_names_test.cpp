#include "app/channel_names.h"

#include <QAbstractButton>
#include <QApplication>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>
#include <QTextDocument>
#include <QTimer>
#include <functional>

#include "app/channel_names_dialog.h"
#include "app/session_fixture.h"
#include "app/ui_file_dialogs.h"
#include "controls/skin_group_box.h"
#include "history/notes_file.h"
#include "pages/form/channel_titles.h"
#include "pages/rows/output_eq_rows.h"
#include "pages/rows/output_group_rows.h"

// Naming channels in the window: the dialog, what the pages tell, the files and the steps.

namespace tessavo::test {
namespace {

using ::testing::ElementsAre;

/// By page position, and the numbers of the flags and output groups beside it.
constexpr std::array<int, 8> flagNumbers{7, 5, 4, 2, 8, 6, 1, 3};

QString nameFor(int position) {
    return QStringLiteral("Speaker <b>%1</b> & more").arg(position);
}

class NamesInWindow : public Sessions {
 protected:
    NamesInWindow() { start(); }

    /// Opens the dialog from the menu with the mouse and does this in it.
    void inDialog(const std::function<void(ChannelNamesDialog&)>& act) {
        bool wasThere = false;
        QTimer soon;
        QObject::connect(&soon, &QTimer::timeout, run->frame.get(), [&] {
            auto* dialog = qobject_cast<ChannelNamesDialog*>(QApplication::activeModalWidget());
            if (dialog == nullptr || !dialog->isActiveWindow()) {
                return;
            }
            soon.stop();
            wasThere = true;
            act(*dialog);
            if (dialog->isVisible()) {
                dialog->reject();
            }
        });
        soon.start(0);
        run->frame->action(QStringLiteral("Channel Names..."))->trigger();
        // No window manager does it here.
        run->frame->activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(run->frame.get()));
        run->settleEvents();
        EXPECT_TRUE(wasThere);
    }
    static std::vector<TextEditBox*> boxesIn(const ChannelNamesDialog& dialog) {
        const auto found = dialog.findChildren<TextEditBox*>();
        return {found.begin(), found.end()};
    }
    static QPlainTextEdit& noteIn(const ChannelNamesDialog& dialog) {
        return *dialog.findChild<QPlainTextEdit*>();
    }
    static void type(QWidget& box, const QString& text) {
        QTest::mouseClick(&box, Qt::LeftButton);
        box.setFocus();
        QTest::keyClick(&box, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClick(&box, Qt::Key_Delete);
        QTest::keyClicks(&box, text);
    }
    static void clickButton(const ChannelNamesDialog& dialog, const QString& text) {
        for (QPushButton* each : dialog.findChildren<QPushButton*>()) {
            if (each->text() == text) {
                QTest::mouseClick(each, Qt::LeftButton);
                return;
            }
        }
        FAIL() << text.toStdString();
    }
    /// Names every channel through the dialog.
    void nameAll() {
        inDialog([](ChannelNamesDialog& dialog) {
            const auto boxes = boxesIn(dialog);
            ASSERT_EQ(boxes.size(), 8U);
            for (int position = 0; position < 8; ++position) {
                type(*boxes[static_cast<std::size_t>(position)], nameFor(position));
            }
            clickButton(dialog, QStringLiteral("OK"));
        });
    }
    static RecordChannel channelAt(int position) {
        return recordChannelAt({static_cast<std::uint8_t>(position)});
    }
    /// Whether all tooltips tell these names and no others.
    void expectTold(const std::function<QString(int position)>& name) {
        for (int position = 0; position < 8; ++position) {
            const RecordChannel channel = channelAt(position);
            const int number = flagNumbers.at(static_cast<std::size_t>(position));
            const QString own = name(position);
            const QString numbers = QStringLiteral("Channel %1, Ch %2").arg(position + 1).arg(number);
            const QString line = own.isEmpty() ? QString() : QLatin1Char('\n') + own;
            const QString told = own.isEmpty() ? QString() : numbers + line;
            EXPECT_EQ(run->flag(number).toolTip(),
                      QStringLiteral("Channel flag %1").arg(number) +
                          (own.isEmpty() ? QString() : QStringLiteral("\n") + told));
            for (const int id : {selection_id::radios[static_cast<std::size_t>(position)],
                                 selection_id::checks[static_cast<std::size_t>(position)]}) {
                auto& button = run->on<QAbstractButton>(Page::outputEqualizer, id);
                EXPECT_EQ(button.toolTip(), QStringLiteral("Silenced") + line);
                EXPECT_EQ(
                    button.accessibleDescription(),
                    QStringLiteral("Silenced") + (own.isEmpty() ? QString() : QStringLiteral(". ") + own));
            }
            for (const GroupRow& row : groupRows) {
                auto& slider = run->on<CBitmapSlider>(Page::outputGroup, row.firstSlider + number - 1);
                EXPECT_EQ(stripOf(slider).toolTip(), told) << position;
            }
            EXPECT_EQ(channelName(run->tuning.notes(), channel), own.toStdU16String());
        }
    }
    static QWidget& stripOf(const QWidget& slider) {
        for (auto* box : slider.window()->findChildren<SkinGroupBox*>()) {
            const QRect area(box->mapToGlobal(QPoint()), box->size());
            if (box->isVisible() && box->width() < 200 &&
                area.contains(slider.mapToGlobal(slider.rect().center()))) {
                return *box;
            }
        }
        throw std::logic_error("no strip");
    }
};

TEST_F(NamesInWindow, DialogHasARowForEachChannelWithBothNumbersAndItsSource) {
    for (int position = 0; position < 8; ++position) {
        run->tuning.setRouterSource(channelAt(position), static_cast<std::uint8_t>(position + 1));
    }
    const QStringList sources{QStringLiteral("FrontLeft"), QStringLiteral("FrontRight"),
                              QStringLiteral("Center"),    QStringLiteral("RearLeft"),
                              QStringLiteral("RearRight"), QStringLiteral("Subwoofer")};
    inDialog([&](ChannelNamesDialog& dialog) {
        EXPECT_EQ(dialog.windowTitle(), QStringLiteral("Channel Names"));
        const auto boxes = boxesIn(dialog);
        ASSERT_EQ(boxes.size(), 8U);
        for (int position = 0; position < 8; ++position) {
            TextEditBox& box = *boxes[static_cast<std::size_t>(position)];
            EXPECT_EQ(box.maxLength(), 24);
            QStringList words;
            for (auto* label : dialog.findChildren<CColorControl*>()) {
                if (label->parentWidget() == box.parentWidget() &&
                    std::abs(label->geometry().center().y() - box.geometry().center().y()) < 4) {
                    words << label->text();
                }
            }
            EXPECT_EQ(words.value(0), QStringLiteral("Channel %1").arg(position + 1));
            EXPECT_EQ(words.value(1),
                      QStringLiteral("Ch %1").arg(flagNumbers.at(static_cast<std::size_t>(position))));
            if (position < sources.size()) {
                EXPECT_EQ(words.value(2), sources[position]);
            }
            EXPECT_EQ(words.size(), 3);
            EXPECT_EQ(box.accessibleName(), QStringLiteral("Name of ") + words.join(QStringLiteral(", ")));
        }
    });
}

TEST_F(NamesInWindow, OkIsOneStepThatNamesEveryPlaceAndCanBeUndone) {
    expectTold([](int) { return QString(); });
    run->tuning.takeUpdate();
    const auto before = run->state();
    nameAll();
    ASSERT_EQ(run->steps(), 1U);
    EXPECT_EQ(run->history->undoText(), "8 channels named");
    EXPECT_FALSE(run->tuning.updatePending());
    expectTold(nameFor);
    const auto after = run->state();
    run->undoKey();
    expectTold([](int) { return QString(); });
    EXPECT_TRUE(run->same(*run->state(), *before));
    run->redoKey();
    expectTold(nameFor);
    EXPECT_TRUE(run->same(*run->state(), *after));
}

TEST_F(NamesInWindow, EachChannelAloneIsNamedAndTheOthersStay) {
    for (int named = 0; named < 8; ++named) {
        inDialog([&](ChannelNamesDialog& dialog) {
            type(*boxesIn(dialog)[static_cast<std::size_t>(named)], nameFor(named));
            QTest::keyClick(boxesIn(dialog)[static_cast<std::size_t>(named)], Qt::Key_Return);
        });
        EXPECT_EQ(run->history->undoText(),
                  QStringLiteral("Channel %1 named %2").arg(named + 1).arg(nameFor(named)).toStdString());
        EXPECT_EQ(run->steps(), static_cast<std::size_t>(named) + 1);
        expectTold([&](int position) { return position <= named ? nameFor(position) : QString(); });
    }
}

TEST_F(NamesInWindow, NamesLookingLikeMarkUpAreToldAsTheyStand) {
    nameAll();
    for (int position = 0; position < 8; ++position) {
        const int number = flagNumbers.at(static_cast<std::size_t>(position));
        EXPECT_FALSE(Qt::mightBeRichText(run->flag(number).toolTip()));
        EXPECT_FALSE(Qt::mightBeRichText(
            run->on<QAbstractButton>(Page::outputEqualizer,
                                     selection_id::radios[static_cast<std::size_t>(position)])
                .toolTip()));
        EXPECT_FALSE(Qt::mightBeRichText(
            stripOf(run->on<CBitmapSlider>(Page::outputGroup, groupRows[0].firstSlider + number - 1))
                .toolTip()));
    }
}

TEST_F(NamesInWindow, TextsOfTheChannelSelectionStayAsTheyAre) {
    const auto shownWords = [&] {
        QStringList words;
        for (auto* label : run->on<QAbstractButton>(Page::outputEqualizer, selection_id::radios[0])
                               .parentWidget()
                               ->findChildren<QLabel*>()) {
            words << label->text();
        }
        for (const int id : selection_id::radios) {
            words << run->on<QAbstractButton>(Page::outputEqualizer, id).text();
        }
        return words;
    };
    const QStringList before = shownWords();
    ASSERT_GT(before.size(), 15);
    nameAll();
    EXPECT_EQ(shownWords(), before);
}

TEST_F(NamesInWindow, CancelAndEscapeAndNothingChangedAreNoStep) {
    for (const bool escapes : {false, true}) {
        inDialog([&](ChannelNamesDialog& dialog) {
            type(*boxesIn(dialog)[3], QStringLiteral("x"));
            if (escapes) {
                QTest::keyClick(&dialog, Qt::Key_Escape);
            } else {
                clickButton(dialog, QStringLiteral("Cancel"));
            }
        });
    }
    inDialog([](ChannelNamesDialog& dialog) { clickButton(dialog, QStringLiteral("OK")); });
    EXPECT_EQ(run->steps(), 0U);
    EXPECT_TRUE(isEmpty(run->tuning.notes()));
}

TEST_F(NamesInWindow, ANameEndsAfter24UnitsAndNeverInsideACharacter) {
    inDialog([](ChannelNamesDialog& dialog) {
        type(*boxesIn(dialog)[0], QString(30, QLatin1Char('x')));
        type(*boxesIn(dialog)[1], {});
        boxesIn(dialog)[1]->insert(QString(23, QLatin1Char('y')) + QStringLiteral("\U0001F50A"));
        clickButton(dialog, QStringLiteral("OK"));
    });
    EXPECT_EQ(channelName(run->tuning.notes(), channelAt(0)), std::u16string(24, u'x'));
    EXPECT_EQ(channelName(run->tuning.notes(), channelAt(1)), std::u16string(23, u'y'));
}

TEST_F(NamesInWindow, TheNoteHasLinesAndATooLongOneIsNotTaken) {
    inDialog([](ChannelNamesDialog& dialog) {
        type(noteIn(dialog), QStringLiteral("driver's seat"));
        QTest::keyClick(&noteIn(dialog), Qt::Key_Return);
        QTest::keyClicks(&noteIn(dialog), QStringLiteral("windows shut"));
        clickButton(dialog, QStringLiteral("OK"));
    });
    EXPECT_EQ(noteText(run->tuning.notes()), u"driver's seat\nwindows shut");
    EXPECT_EQ(run->history->undoText(), "Note changed");
    inDialog([](ChannelNamesDialog& dialog) {
        EXPECT_EQ(noteIn(dialog).toPlainText(), QStringLiteral("driver's seat\nwindows shut"));
        noteIn(dialog).setPlainText(QString(1025, QLatin1Char('x')));
        clickButton(dialog, QStringLiteral("OK"));
        EXPECT_TRUE(dialog.isVisible());
        EXPECT_EQ(noteIn(dialog).accessibleDescription(), QStringLiteral("1025 of 1024 characters"));
        QTest::keyClick(&noteIn(dialog), Qt::Key_End, Qt::ControlModifier);
        QTest::keyClick(&noteIn(dialog), Qt::Key_Backspace);
        clickButton(dialog, QStringLiteral("OK"));
        EXPECT_FALSE(dialog.isVisible());
    });
    EXPECT_EQ(noteText(run->tuning.notes()), std::u16string(1024, u'x'));
}

TEST_F(NamesInWindow, TypingInTheDialogIsUndoneThereAndNowhereElse) {
    run->click(run->flag(1));
    ASSERT_EQ(run->steps(), 1U);
    inDialog([](ChannelNamesDialog& dialog) {
        type(*boxesIn(dialog)[0], QStringLiteral("abc"));
        QTest::keyClick(boxesIn(dialog)[0], Qt::Key_Z, Qt::ControlModifier);
        EXPECT_NE(boxesIn(dialog)[0]->text(), QStringLiteral("abc"));
    });
    EXPECT_EQ(run->history->position(), 1U);
}

TEST_F(NamesInWindow, EverythingInTheDialogIsReachedByTabAndNothingIsCutOff) {
    inDialog([](ChannelNamesDialog& dialog) {
        EXPECT_TRUE(boxesIn(dialog)[0]->hasFocus());
        std::vector<QWidget*> visited;
        for (int i = 0; i < 11; ++i) {
            visited.push_back(dialog.focusWidget());
            QTest::keyClick(dialog.focusWidget(), Qt::Key_Tab);
        }
        EXPECT_EQ(dialog.focusWidget(), boxesIn(dialog)[0]) << "eight names, the note, two buttons";
        for (TextEditBox* box : boxesIn(dialog)) {
            EXPECT_EQ(std::ranges::count(visited, static_cast<QWidget*>(box)), 1);
            EXPECT_GE(box->width(), box->fontMetrics().horizontalAdvance(QString(24, QLatin1Char('n'))));
        }
        for (auto* label : dialog.findChildren<CColorControl*>()) {
            EXPECT_GE(label->width(), label->fontMetrics().horizontalAdvance(label->text()))
                << label->text().toStdString();
        }
        for (QPushButton* button : dialog.findChildren<QPushButton*>()) {
            EXPECT_TRUE(dialog.rect().contains(button->geometry()));
        }
    });
}

// --- files

TEST_F(NamesInWindow, AreSavedAndOpenedWithTheSettings) {
    nameAll();
    run->dialogs.answer = folder / "car.eqs";
    run->frame->action(QStringLiteral("Save"))->trigger();
    EXPECT_FALSE(run->status().document().modified);
    EXPECT_TRUE(std::filesystem::exists(folder / "car.notes.json"));
    const auto plain = pathOf(run->settingsFileNamed("plain.eqs"));
    ASSERT_TRUE(run->frame->openFile(textOf(plain)));
    expectTold([](int) { return QString(); });
    const std::size_t before = run->steps();
    ASSERT_TRUE(run->frame->openFile(textOf(folder / "car.eqs")));
    run->settleEvents();
    expectTold(nameFor);
    EXPECT_EQ(run->steps(), before + 1) << "names and sets are one step";
    EXPECT_EQ(run->history->undoText(), "Opened car.eqs");
    run->undoKey();
    expectTold([](int) { return QString(); });
}

TEST_F(NamesInWindow, AloneMarkTheDocumentAsModified) {
    const auto plain = pathOf(run->settingsFileNamed("plain.eqs"));
    ASSERT_TRUE(run->frame->openFile(textOf(plain)));
    EXPECT_FALSE(run->status().document().modified);
    nameAll();
    EXPECT_TRUE(run->status().document().modified);
    run->undoKey();
    EXPECT_FALSE(run->status().document().modified);
    run->redoKey();
    run->press(Qt::Key_S, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_FALSE(run->status().document().modified);
}

TEST_F(NamesInWindow, ADamagedFileIsToldAndTheSettingsAreOpen) {
    const auto plain = pathOf(run->settingsFileNamed("car.eqs", u"From file"));
    const auto notes = notesPathOf(plain);
    const std::vector<std::pair<std::string, QString>> cases{
        {"{", QStringLiteral("car.notes.json is damaged and was not read")},
        {"{\"version\": 2}",
         QStringLiteral("car.notes.json is of a later version of Tessavo and was not read")}};
    for (const auto& [text, told] : cases) {
        ASSERT_TRUE(writeFile(notes, Bytes(text.begin(), text.end())));
        ASSERT_TRUE(run->frame->openFile(textOf(plain)));
        EXPECT_EQ(run->notice(), told);
        EXPECT_EQ(run->setName().text(), QStringLiteral("From file"));
        EXPECT_TRUE(isEmpty(run->tuning.notes()));
    }
    std::filesystem::remove(notes);
    std::filesystem::create_directory(notes);
    ASSERT_TRUE(run->frame->openFile(textOf(plain)));
    EXPECT_EQ(run->notice(), QStringLiteral("car.notes.json cannot be read; the channels have no names"));
    nameAll();
    run->press(Qt::Key_S, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(run->notice(), QStringLiteral("car.notes.json was not saved; the settings were"));
    EXPECT_TRUE(run->status().document().modified);
}

TEST_F(NamesInWindow, ComeBackAfterAPowerCut) {
    nameAll();
    run->click(run->flag(1));
    ASSERT_TRUE(run->becomesKept());
    cutPower();
    start();
    expectTold([](int) { return QString(); });
    run->answerNotice(QStringLiteral("Restore"));
    run->settleEvents();
    expectTold(nameFor);
    run->undoKey();
    run->undoKey();
    expectTold([](int) { return QString(); });
}

}  // namespace
}  // namespace tessavo::test
