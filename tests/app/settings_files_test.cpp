#include <QApplication>
#include <QDir>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QMimeData>
#include <QTest>
#include <QUrl>
#include <cstring>
#include <functional>

#include "app/file_news_display.h"
#include "app/ui_file_dialogs.h"
#include "controls/bitmap_slider.h"
#include "params/set_text.h"
#include "support/frame_fixture.h"
#include "support/synthetic_events.h"

// Open, Save, Export, the recent files, files from outside.

namespace tessavo::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class SettingsFiles : public FrameTest {
 protected:
    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::ControlModifier) {
        QTest::keyClick(frame.get(), key, modifiers);
    }
    std::u16string firstName() { return readSetText(tuning.store().sets[0].setName); }

    /// The widget that takes what is dragged over a place, as the toolkit looks for it.
    QWidget* dragTargetAt(const QPoint& point) {
        QWidget* target = frame->childAt(point);
        target = target == nullptr ? frame.get() : target;
        while (!target->acceptDrops() && !target->isWindow()) {
            target = target->parentWidget();
        }
        return target;
    }
    /// Drags over a place and lets go when it is taken there.
    bool drop(QMimeData& data, const QPoint& point = {500, 300}) {
        QWidget* target = dragTargetAt(point);
        const QPoint there = target->mapFrom(frame.get(), point);
        QDragEnterEvent enter(there, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        enter.ignore();
        QApplication::sendEvent(target, &enter);
        if (!enter.isAccepted()) {
            return false;
        }
        QDropEvent dropped(there, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(target, &dropped);
        if (atOnce) {
            atOnce();
        }
        QCoreApplication::sendPostedEvents(frame.get(), QEvent::MetaCall);
        return true;
    }
    std::function<void()> atOnce;  ///< looks at what the drop itself has done
    static QUrl urlOf(const QString& path) { return QUrl::fromLocalFile(path); }
};

// ---- Open

TEST_F(SettingsFiles, OpenAsksForASettingsFileAndLoadsIt) {
    dialogs.answer = pathOf(settingsFileNamed("a.eqs", u"Garage"));
    key(Qt::Key_O);
    ASSERT_EQ(dialogs.asked.size(), 1U);
    EXPECT_FALSE(dialogs.asked[0].save);
    EXPECT_EQ(dialogs.asked[0].filter, "Tessavo settings files (*.eqs)|*.eqs||");
    EXPECT_EQ(dialogs.asked[0].extension, "eqs");
    EXPECT_EQ(firstName(), u"Garage");
    EXPECT_EQ(setName().text(), QStringLiteral("Garage"));
    EXPECT_EQ(recentItems(), QStringList{QStringLiteral("1 ") + pathIn("a.eqs")});
    EXPECT_THAT(shown, IsEmpty());
}

TEST_F(SettingsFiles, OpenFromTheMenu) {
    dialogs.answer = pathOf(settingsFileNamed("a.eqs", u"Garage"));
    clickMenu(QStringLiteral("File"), QStringLiteral("Open"));
    EXPECT_EQ(firstName(), u"Garage");
}

TEST_F(SettingsFiles, OpenCancelledChangesNothing) {
    const ParameterStore before = tuning.store();
    key(Qt::Key_O);
    EXPECT_EQ(std::memcmp(&tuning.store(), &before, sizeof before), 0);
    EXPECT_EQ(recentItems(), QStringList());
    EXPECT_THAT(shown, IsEmpty());
}

TEST_F(SettingsFiles, OpenTellsWhatItCannotRead) {
    const ParameterStore before = tuning.store();
    dialogs.answer = folder / "missing.eqs";
    key(Qt::Key_O);
    writeFile(folder / "bad.eqs", Bytes(10600, 7));
    dialogs.answer = folder / "bad.eqs";
    key(Qt::Key_O);
    EXPECT_THAT(shown, ElementsAre(errorBox("Error opening configuration file!"),
                                   errorBox("Incompatible .eqs file!\r\n")));
    EXPECT_EQ(std::memcmp(&tuning.store(), &before, sizeof before), 0);
    EXPECT_EQ(recentItems(), QStringList());
}

TEST_F(SettingsFiles, TheCurrentSetsRecordDecides) {
    tuning.selectSet(0);
    Bytes file(10600, 9);
    writeAt<std::uint32_t>(file, 2 * setSize, 2120);
    writeFile(folder / "third.eqs", file);
    frame->openFile(pathIn("third.eqs"));
    EXPECT_THAT(shown, ElementsAre(errorBox("Incompatible .eqs file!\r\n")));
    choose(setSelector(), 2);
    frame->openFile(pathIn("third.eqs"));
    EXPECT_EQ(shown.size(), 1U);
    EXPECT_EQ(tuning.currentSet(), 2U);
    EXPECT_EQ(tuning.store().sets[0].recordSize, 0x09090909U);
}

TEST_F(SettingsFiles, LoadingChecksTheFlagsAndSendsNothing) {
    constexpr std::array<int, 8> boxOfChannel{4, 8, 1, 5, 2, 6, 3, 7};
    for (std::size_t channel = 0; channel < channelCount; ++channel) {
        ParameterStore store = tuning.store();
        for (OutputChannelParams& params : store.sets[0].channels) {
            params.channelFlag = 0;
        }
        store.sets[0].channels[channel].channelFlag = 0x40;
        writeFile(folder / "flags.eqs", bytesOf(store));
        frame->openFile(pathIn("flags.eqs"));
        for (int number = 1; number <= 8; ++number) {
            EXPECT_EQ(flag(number).isChecked(), number == boxOfChannel[channel]) << channel;
        }
        EXPECT_EQ(tuning.image().channels[channel].channelFlag, 0x40);
    }
    EXPECT_FALSE(tuning.updatePending());
    EXPECT_FALSE(tuning.liveMode());
}

TEST_F(SettingsFiles, LoadingLeavesSetMethodAndLiveModeAlone) {
    choose(setSelector(), 1);
    choose(filterModes(), 2);
    QTest::mouseClick(&eqMode(), Qt::LeftButton);
    frame->openFile(settingsFileNamed("a.eqs"));
    EXPECT_EQ(tuning.currentSet(), 1U);
    EXPECT_EQ(setSelector().currentIndex(), 1);
    EXPECT_EQ(tuning.filterMode(), 2U);
    EXPECT_TRUE(tuning.liveMode());
    EXPECT_EQ(eqMode().text(), QStringLiteral("EQ Mode On"));
}

TEST_F(SettingsFiles, ASetChosenInTheSelectorTakesThePagesEditsAndDecidesOnFiles) {
    makeFrame(realPages());
    choose(setSelector(), 3);
    const ParameterStore before = tuning.store();
    clickTab(static_cast<int>(Page::outputEqualizer));
    QTest::mouseClick(&control<SkinCheckBox>(1088), Qt::LeftButton);
    auto& volume = control<CBitmapSlider>(1076);
    volume.setFocus(Qt::TabFocusReason);
    QTest::keyClick(&volume, Qt::Key_Up);
    ASSERT_TRUE(letLoopRun());
    ParameterStore expected = before;
    OutputChannelParams& edited = expected.sets[3].channels[7];
    edited.invertPhase = edited.invertPhase == 0 ? 1 : 0;
    edited.volumeDb += 0.1F;
    EXPECT_EQ(tuning.store().sets[3].channels[7].invertPhase, edited.invertPhase);
    EXPECT_FLOAT_EQ(tuning.store().sets[3].channels[7].volumeDb, edited.volumeDb);
    for (const std::size_t other : {0U, 1U, 2U, 4U}) {
        EXPECT_EQ(std::memcmp(&tuning.store().sets[other], &before.sets[other], setSize), 0) << other;
    }

    Bytes file(10600, 9);
    writeAt<std::uint32_t>(file, 3 * setSize, 2120);
    writeFile(folder / "fourth.eqs", file);
    frame->openFile(pathIn("fourth.eqs"));
    EXPECT_THAT(shown, IsEmpty()) << "the set that was chosen is sound";
    file = Bytes(10600, 9);
    writeAt<std::uint32_t>(file, 0, 2120);
    writeFile(folder / "first.eqs", file);
    frame->openFile(pathIn("first.eqs"));
    EXPECT_THAT(shown, ElementsAre(errorBox("Incompatible .eqs file!\r\n")));
}

// ---- Save and Export

TEST_F(SettingsFiles, SaveWritesTheStore) {
    tuning.setVolume(3.5F, true);
    dialogs.answer = folder / "saved.eqs";
    key(Qt::Key_S);
    ASSERT_EQ(dialogs.asked.size(), 1U);
    EXPECT_TRUE(dialogs.asked[0].save);
    EXPECT_EQ(dialogs.asked[0].filter, "Tessavo settings files (*.eqs)|*.eqs||");
    EXPECT_EQ(dialogs.asked[0].extension, "eqs");
    EXPECT_EQ(readFile(folder / "saved.eqs"), bytesOf(tuning.store()));
    EXPECT_EQ(recentItems(), QStringList{QStringLiteral("1 ") + pathIn("saved.eqs")});
    EXPECT_THAT(shown, IsEmpty());
}

TEST_F(SettingsFiles, SaveTellsBothThatItCannotOpenAndWrite) {
    dialogs.answer = folder / "no folder" / "a.eqs";
    key(Qt::Key_S);
    EXPECT_THAT(shown,
                ElementsAre(errorBox("Error opening configuration file!"), errorBox("Error writing data!")));
    EXPECT_EQ(recentItems(), QStringList());
}

TEST_F(SettingsFiles, SaveWritesTheNameThatIsBeingTyped) {
    type(setName(), QStringLiteral("Half typ"));
    dialogs.answer = folder / "typed.eqs";
    QTest::keyClick(&setName(), Qt::Key_S, Qt::ControlModifier);
    const auto saved = recordOf<ParameterStore>(readFile(folder / "typed.eqs"));
    EXPECT_EQ(readSetText(saved.sets[0].setName), u"Half typ");
}

TEST_F(SettingsFiles, TheSetsOfARunWithoutADocumentAreNotSavedOverTheFileThatWasOpenedBefore) {
    ASSERT_TRUE(frame->openFile(settingsFileNamed("car.eqs")));
    ASSERT_EQ(frame->statusLine().document().name, QStringLiteral("car.eqs"));
    frame->fileNews().resumeDocument({}, std::nullopt);
    EXPECT_EQ(frame->statusLine().document().name, QString());
    EXPECT_FALSE(frame->action(QStringLiteral("Save Again"))->isEnabled());
}

TEST_F(SettingsFiles, ExportWritesTheImage) {
    tuning.setVolume(3.5F, true);
    dialogs.answer = folder / "image.bin";
    key(Qt::Key_E);
    ASSERT_EQ(dialogs.asked.size(), 1U);
    EXPECT_TRUE(dialogs.asked[0].save);
    EXPECT_EQ(dialogs.asked[0].filter, "Tessavo Binary files (*.bin)|*.bin||");
    EXPECT_EQ(dialogs.asked[0].extension, "bin");
    EXPECT_EQ(readFile(folder / "image.bin"), bytesOf(tuning.image()));
    EXPECT_EQ(recentItems(), QStringList()) << "an image is no settings file";
}

TEST_F(SettingsFiles, ExportTellsBothThatItCannotOpenAndWrite) {
    dialogs.answer = folder / "no folder" / "a.bin";
    clickMenu(QStringLiteral("File"), QStringLiteral("Export"));
    EXPECT_THAT(shown, ElementsAre(errorBox("Error opening binary file!"), errorBox("Error writing data!")));
}

// ---- recent files

TEST_F(SettingsFiles, FourRecentFilesStandInTheMenuNewestFirst) {
    for (const char* name : {"a.eqs", "b.eqs", "c.eqs", "d.eqs", "e.eqs"}) {
        dialogs.answer = pathOf(settingsFileNamed(name));
        key(Qt::Key_O);
    }
    dialogs.answer = folder / "c.eqs";
    key(Qt::Key_O);
    const QStringList files{QStringLiteral("1 ") + pathIn("c.eqs"), QStringLiteral("2 ") + pathIn("e.eqs"),
                            QStringLiteral("3 ") + pathIn("d.eqs"), QStringLiteral("4 ") + pathIn("b.eqs")};
    EXPECT_EQ(recentItems(), files);
    QStringList items{QStringLiteral("Open"), QStringLiteral("Save"), QStringLiteral("Export"),
                      QStringLiteral("-")};
    items << files << QStringLiteral("-") << QStringLiteral("Exit") << QStringLiteral("-")
          << QStringLiteral("Save Again") << QStringLiteral("Earlier Versions...");
    EXPECT_EQ(itemsOf(QStringLiteral("File")), items);
}

TEST_F(SettingsFiles, ARecentFileIsOpenedFromTheMenuAndMovesUp) {
    frame->openFile(settingsFileNamed("a.eqs", u"First"));
    frame->openFile(settingsFileNamed("b.eqs", u"Second"));
    clickMenu(QStringLiteral("File"), QStringLiteral("2 ") + pathIn("a.eqs"));
    EXPECT_EQ(firstName(), u"First");
    EXPECT_EQ(recentItems().value(0), QStringLiteral("1 ") + pathIn("a.eqs"));
    EXPECT_THAT(dialogs.asked, IsEmpty());
}

TEST_F(SettingsFiles, ARecentFileThatIsGoneIsToldAndRemoved) {
    frame->openFile(settingsFileNamed("a.eqs"));
    frame->openFile(settingsFileNamed("b.eqs"));
    std::filesystem::remove(folder / "a.eqs");
    clickMenu(QStringLiteral("File"), QStringLiteral("2 ") + pathIn("a.eqs"));
    EXPECT_THAT(shown, ElementsAre(errorBox("Error opening configuration file!")));
    EXPECT_EQ(recentItems(), QStringList{QStringLiteral("1 ") + pathIn("b.eqs")});
    EXPECT_EQ(profile->recentFiles(), QStringList{pathIn("b.eqs")});
}

TEST_F(SettingsFiles, RecentFilesOutliveTheProgram) {
    frame->openFile(settingsFileNamed("one, two & three.eqs"));
    profile = std::make_unique<Profile>(pathIn("profile.ini"));
    makeFrame();
    clickMenu(QStringLiteral("File"), QStringLiteral("1 ") + pathIn("one, two  three.eqs"));
    EXPECT_THAT(shown, IsEmpty());
    EXPECT_EQ(profile->recentFiles(), QStringList{pathIn("one, two & three.eqs")});
}

// ---- files from outside

TEST_F(SettingsFiles, AFileOfTheCommandLineIsRememberedByItsWholePath) {
    const QString path = settingsFileNamed("a.eqs", u"Given");
    frame->openFile(QDir::current().relativeFilePath(path));
    EXPECT_EQ(firstName(), u"Given");
    EXPECT_EQ(profile->recentFiles(), QStringList{path});
}

TEST_F(SettingsFiles, AFileOfTheCommandLineThatIsGoneLeavesTheRecentFiles) {
    const QString path = settingsFileNamed("a.eqs");
    frame->openFile(path);
    std::filesystem::remove(pathOf(path));
    frame->openFile(QDir::current().relativeFilePath(path));
    EXPECT_THAT(shown, ElementsAre(errorBox("Error opening configuration file!")));
    EXPECT_EQ(profile->recentFiles(), QStringList());
}

TEST_F(SettingsFiles, ADroppedFileIsLoaded) {
    QMimeData data;
    data.setUrls({urlOf(settingsFileNamed("a b ü.eqs", u"Dropped"))});
    EXPECT_TRUE(drop(data));
    EXPECT_EQ(firstName(), u"Dropped");
    EXPECT_EQ(profile->recentFiles(), QStringList{pathIn("a b ü.eqs")});
    EXPECT_THAT(dialogs.asked, IsEmpty());
}

TEST_F(SettingsFiles, ADropEndsBeforeItsFileIsLoadedOrABoxAppears) {
    QMimeData data;
    data.setUrls({urlOf(pathIn("missing.eqs"))});
    atOnce = [this] { EXPECT_THAT(shown, IsEmpty()); };
    EXPECT_TRUE(drop(data));
    EXPECT_THAT(shown, ElementsAre(errorBox("Error opening configuration file!")));
}

TEST_F(SettingsFiles, AFileMayBeDroppedOnAnyPlaceOfTheWindow) {
    const QString path = settingsFileNamed("a.eqs", u"Dropped");
    QMimeData data;
    data.setUrls({urlOf(path)});
    data.setText(path);
    for (QWidget* child : frame->findChildren<QWidget*>()) {
        if (child->isVisible() && !child->isWindow()) {
            tuning.setName(u"Before");
            EXPECT_TRUE(drop(data, child->mapTo(frame.get(), child->rect().center())));
            EXPECT_EQ(firstName(), u"Dropped") << child->metaObject()->className();
        }
    }
}

TEST_F(SettingsFiles, AFileMayBeDroppedOnAnyControlOfThePages) {
    makeFrame(realPages());
    const QString path = settingsFileNamed("a.eqs", u"Dropped");
    QMimeData data;
    data.setUrls({urlOf(path)});
    data.setText(path);
    std::size_t places = 0;
    for (int page = 0; page < static_cast<int>(pageCount); ++page) {
        clickTab(page);
        for (QLineEdit* edit : frame->findChildren<QLineEdit*>()) {
            if (!edit->isVisible()) {
                continue;
            }
            ++places;
            tuning.setName(u"Before");
            EXPECT_TRUE(drop(data, edit->mapTo(frame.get(), edit->rect().center())));
            EXPECT_EQ(firstName(), u"Dropped") << edit->objectName().toStdString();
            EXPECT_NE(edit->text(), path);
        }
    }
    EXPECT_GT(places, 80U);
}

TEST_F(SettingsFiles, ADroppedFileThatIsNoneIsTold) {
    QMimeData data;
    data.setUrls({urlOf(pathIn("missing.eqs"))});
    EXPECT_TRUE(drop(data));
    data.setUrls({urlOf(textOf(folder.path()))});
    EXPECT_TRUE(drop(data));
    EXPECT_THAT(shown, ElementsAre(errorBox("Error opening configuration file!"),
                                   errorBox("Error opening configuration file!")));
}

TEST_F(SettingsFiles, NothingElseCanBeDropped) {
    const ParameterStore before = tuning.store();
    const QUrl file = urlOf(settingsFileNamed("a.eqs"));
    QMimeData empty;
    QMimeData text;
    text.setText(QStringLiteral("a.eqs"));
    QMimeData web;
    web.setUrls({QUrl(QStringLiteral("https://example.org/a.eqs"))});
    QMimeData two;
    two.setUrls({file, file});
    QMimeData none;
    none.setUrls({});
    for (QMimeData* data : {&empty, &text, &web, &two, &none}) {
        EXPECT_FALSE(drop(*data));
    }
    EXPECT_EQ(std::memcmp(&tuning.store(), &before, sizeof before), 0);
    EXPECT_THAT(shown, IsEmpty());
}

}  // namespace
}  // namespace tessavo::test
