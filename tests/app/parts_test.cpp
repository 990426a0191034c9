#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QImage>
#include <QLineEdit>
#include <QScrollBar>
#include <QTest>
#include <QTimer>
#include <QTreeView>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <set>

#include "app/instance_guard.h"
#include "app/profile.h"
#include "app/tessavo_doc.h"
#include "app/ui_file_dialogs.h"
#include "controls/skin_button.h"
#include "controls/skin_message_box.h"
#include "params/settings_commands.h"
#include "support/harness.h"
#include "support/temporary_folder.h"

// What stands around the frame: profile, file dialogs, document, the guard against a second program.

namespace tessavo::test {
namespace {

class ProfileTest : public ::testing::Test {
 protected:
    void write(const QByteArray& bytes) {
        std::ofstream file(folder / "profile.ini", std::ios::binary);
        file.write(bytes.constData(), bytes.size());
    }
    QString path() { return textOf(folder / "profile.ini"); }
    // As this system writes a whole path.
    static QString whole(const QString& path) {
        return QDir::toNativeSeparators(QFileInfo(path).absoluteFilePath());
    }
    static QString absolute(int number) { return whole(QStringLiteral("/settings/%1.eqs").arg(number)); }

    TemporaryFolder folder;
};

TEST_F(ProfileTest, AMissingOneIsEmpty) {
    const Profile profile(path());
    EXPECT_TRUE(profile.recentFiles().isEmpty());
    EXPECT_TRUE(profile.lastPort().isEmpty());
    EXPECT_TRUE(profile.lastFolder().isEmpty());
    EXPECT_TRUE(profile.windowPlacement().isEmpty());
}

TEST_F(ProfileTest, KeepsEverythingForTheNextStart) {
    {
        Profile profile(path());
        profile.addRecentFile(QStringLiteral("/a, b; \"c\" = ü%.eqs"));
        profile.setLastPort(QStringLiteral("pts/3"));
        profile.setLastFolder(QStringLiteral("/some folder"));
        profile.setWindowPlacement(QByteArray("\0\xff\n,;", 5));
    }
    const Profile profile(path());
    EXPECT_EQ(profile.recentFiles(), QStringList{whole(QStringLiteral("/a, b; \"c\" = ü%.eqs"))});
    EXPECT_EQ(profile.lastPort(), QStringLiteral("pts/3"));
    EXPECT_EQ(profile.lastFolder(), QStringLiteral("/some folder"));
    EXPECT_EQ(profile.windowPlacement(), QByteArray("\0\xff\n,;", 5));
}

TEST_F(ProfileTest, KeepsFourFilesOnceEachNewestFirst) {
    Profile profile(path());
    for (const int number : {1, 2, 3, 2, 4, 5, 3}) {
        profile.addRecentFile(absolute(number));
    }
    EXPECT_EQ(profile.recentFiles(), (QStringList{absolute(3), absolute(5), absolute(4), absolute(2)}));
    profile.removeRecentFile(absolute(4));
    profile.removeRecentFile(absolute(77));
    EXPECT_EQ(profile.recentFiles(), (QStringList{absolute(3), absolute(5), absolute(2)}));
}

TEST_F(ProfileTest, ADamagedOneReadsAsEmptyAndCanBeWritten) {
    const QByteArray damaged[]{QByteArray("\xff\xfe\x00\x01[[[\n=%%%", 12), QByteArray(100000, '['),
                               QByteArray(4096, '\0'),
                               "[General]\nrecentFiles=@Variant(\\0\\0\\0\\x7f\\0\\0\nport=@Invalid()"
                               "\nfolder=@ByteArray(\nwindowPlace=1",
                               "[General]\nrecentFiles=@Invalid()\nport=@Rect(1 2 3 4)\n"};
    for (const QByteArray& bytes : damaged) {
        write(bytes);
        Profile profile(path());
        EXPECT_LE(profile.recentFiles().size(), Profile::recentFileLimit);
        EXPECT_TRUE(profile.lastPort().isEmpty());
        profile.addRecentFile(absolute(1));
        profile.setLastPort(QStringLiteral("COM3"));
        EXPECT_EQ(profile.recentFiles().value(0), absolute(1));
        EXPECT_EQ(profile.lastPort(), QStringLiteral("COM3"));
    }
}

TEST_F(ProfileTest, AListThatIsTooLongIsCut) {
    write("[General]\nrecentFiles=/1.eqs, , /2.eqs, /3.eqs, /4.eqs, /5.eqs, /6.eqs\n");
    EXPECT_EQ(Profile(path()).recentFiles(),
              (QStringList{QStringLiteral("/1.eqs"), QStringLiteral("/2.eqs"), QStringLiteral("/3.eqs"),
                           QStringLiteral("/4.eqs")}));
}

TEST_F(ProfileTest, APlaceThatCannotBeWrittenFailsNothing) {
    write("not a folder");
    Profile profile(path() + QStringLiteral("/inside.ini"));
    profile.addRecentFile(absolute(1));
    EXPECT_EQ(profile.recentFiles(), QStringList{absolute(1)});
}

// ---- file dialogs

TEST(NameFilters, TakeOneEntryForEachPair) {
    EXPECT_EQ(nameFilters(settingsFilter.filter),
              QStringList{QStringLiteral("Tessavo settings files (*.eqs)")});
    EXPECT_EQ(nameFilters(binaryFilter.filter), QStringList{QStringLiteral("Tessavo Binary files (*.bin)")});
    EXPECT_EQ(nameFilters("A (*.a)|*.a|B (*.b)|*.b||"),
              (QStringList{QStringLiteral("A (*.a)"), QStringLiteral("B (*.b)")}));
    EXPECT_EQ(nameFilters(""), QStringList());
    EXPECT_EQ(nameFilters("||"), QStringList());
}

TEST(PathOfText, GoesThereAndBack) {
    const QString text = QDir::toNativeSeparators(QString::fromUtf8("/tmp/ü 車 🚗.eqs"));
    EXPECT_EQ(textOf(pathOf(text)), text);
    EXPECT_TRUE(pathOf(QString()).empty());
}

TEST(PathOfText, TakesHalfASurrogatePair) {
    const QString half = QStringLiteral("car ") + QChar(0xD83D) + QStringLiteral(".eqs");
    std::filesystem::path path;
    ASSERT_NO_THROW(path = pathOf(half));
    EXPECT_EQ(textOf(path), QStringLiteral("car \uFFFD.eqs"));
    const QString otherHalf = QString(QChar(0xDE97)) + QStringLiteral("x");
    ASSERT_NO_THROW(path = pathOf(otherHalf));
    EXPECT_EQ(textOf(path), QStringLiteral("\uFFFDx"));
}

TEST(TextOfPath, TellsANameThatIsNoText) {
    EXPECT_EQ(textOf(nameThatIsNoText(".eqs")), QStringLiteral("\uFFFD.eqs"));
}

class FileDialogs : public ::testing::Test {
 protected:
    FileDialogs() : profile_(textOf(folder / "profile.ini")), dialogs_(nullptr, profile_) {
        QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
        window_.show();
        window_.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window_));
    }
    ~FileDialogs() override { QApplication::setAttribute(Qt::AA_DontUseNativeDialogs, false); }

    /// Does something with the file dialog that opens next.
    template <typename Act>
    void whenOpen(Act act) {
        auto* timer = new QTimer(&window_);
        QObject::connect(timer, &QTimer::timeout, timer, [timer, act] {
            if (auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget())) {
                timer->stop();
                act(*dialog);
            }
        });
        timer->start(1);
    }
    static void typeName(QFileDialog& dialog, const QString& name) {
        auto* field = dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
        // Set at once: typed names bring up a list of completions that takes the keys.
        field->setText(name);
        QTest::keyClick(field, Qt::Key_Return);
    }

    TemporaryFolder folder;
    Profile profile_;
    UiFileDialogs dialogs_;
    QWidget window_;
};

TEST_F(FileDialogs, AskForAnExistingSettingsFile) {
    writeFile(folder / "a.eqs", {1});
    profile_.setLastFolder(textOf(folder.path()));
    bool seen = false;
    whenOpen([&](QFileDialog& dialog) {
        seen = true;
        EXPECT_EQ(dialog.acceptMode(), QFileDialog::AcceptOpen);
        EXPECT_EQ(dialog.fileMode(), QFileDialog::ExistingFile);
        EXPECT_EQ(dialog.nameFilters(), QStringList{QStringLiteral("Tessavo settings files (*.eqs)")});
        EXPECT_EQ(dialog.defaultSuffix(), QStringLiteral("eqs"));
        EXPECT_EQ(dialog.parentWidget(), &window_);
        EXPECT_TRUE(dialog.isModal());
        typeName(dialog, QStringLiteral("a.eqs"));
    });
    EXPECT_EQ(dialogs_.askOpenPath(settingsFilter), folder / "a.eqs");
    EXPECT_TRUE(seen);
}

TEST_F(FileDialogs, ASavedNameGetsTheExtensionAndItsFolderIsRemembered) {
    std::filesystem::create_directory(folder / "sub");
    whenOpen([&](QFileDialog& dialog) {
        EXPECT_EQ(dialog.acceptMode(), QFileDialog::AcceptSave);
        EXPECT_EQ(dialog.nameFilters(), QStringList{QStringLiteral("Tessavo Binary files (*.bin)")});
        typeName(dialog, textOf(folder / "sub" / "image"));
    });
    EXPECT_EQ(dialogs_.askSavePath(binaryFilter), folder / "sub" / "image.bin");
    EXPECT_EQ(profile_.lastFolder(), textOf(folder / "sub"));
    QString opened;
    whenOpen([&](QFileDialog& dialog) {
        opened = dialog.directory().absolutePath();
        dialog.reject();
    });
    EXPECT_EQ(dialogs_.askOpenPath(settingsFilter), std::nullopt);
    EXPECT_EQ(pathOf(opened), folder / "sub");
}

TEST_F(FileDialogs, AskBeforeAFileIsOverwritten) {
    writeFile(folder / "a.eqs", {1});
    profile_.setLastFolder(textOf(folder.path()));
    for (const bool replace : {false, true}) {
        QString asked;
        bool open = false;
        whenOpen([&](QFileDialog& dialog) {
            QTimer::singleShot(0, &dialog, [&] {
                // The program's own box stands above the dialog; what it has in hand at first is "Cancel".
                auto* const question = qobject_cast<SkinMessageBox*>(QApplication::activeModalWidget());
                asked = question != nullptr ? question->text() : QString();
                if (question == nullptr) {
                    dialog.reject();
                } else if (replace) {
                    QTest::mouseClick(question->buttons().front(), Qt::LeftButton);
                } else {
                    QTest::keyClick(question, Qt::Key_Return);
                }
            });
            typeName(dialog, QStringLiteral("a.eqs"));
            open = dialog.isVisible();
            if (open) {
                dialog.reject();
            }
        });
        const auto path = dialogs_.askSavePath(settingsFilter);
        EXPECT_EQ(asked, QStringLiteral("\"a.eqs\" exists already.\r\nDo you want to replace it?"));
        EXPECT_EQ(open, !replace) << "who does not want that may choose another name";
        EXPECT_EQ(path, replace ? std::optional(folder / "a.eqs") : std::nullopt);
    }
}

TEST_F(FileDialogs, TellThatThereIsNoSuchFile) {
    profile_.setLastFolder(textOf(folder.path()));
    QString told;
    whenOpen([&](QFileDialog& dialog) {
        QTimer::singleShot(0, &dialog, [&] {
            auto* const box = qobject_cast<SkinMessageBox*>(QApplication::activeModalWidget());
            if (box != nullptr) {
                told = box->text();
                box->reject();
            }
            dialog.reject();
        });
        typeName(dialog, QStringLiteral("none.eqs"));
    });
    EXPECT_EQ(dialogs_.askOpenPath(settingsFilter), std::nullopt);
    EXPECT_EQ(told, QStringLiteral("There is no file \"none.eqs\"."));
}

TEST_F(FileDialogs, ANameWithoutAnExtensionGetsThatOfTheChosenForm) {
    profile_.setLastFolder(textOf(folder.path()));
    constexpr FileFilter forms{"A (*.a)|*.a|B (*.b)|*.b|Both (*.a *.b)|*.a;*.b||", "a"};
    const char* const expected[]{"x.a", "x.b", "x.b"};
    for (int down = 0; down < 3; ++down) {
        whenOpen([&](QFileDialog& dialog) {
            auto* const list = dialog.findChild<QComboBox*>(QStringLiteral("fileTypeCombo"));
            for (int i = 0; i < down; ++i) {
                QTest::keyClick(list, Qt::Key_Down);
            }
            typeName(dialog, QStringLiteral("x"));
        });
        EXPECT_EQ(dialogs_.askSavePath(forms), folder / expected[down]) << down;
    }
}

TEST_F(FileDialogs, CutNothingOff) {
    writeFile(folder / "a.eqs", std::vector<std::uint8_t>(123'456));
    profile_.setLastFolder(textOf(folder.path()));
    whenOpen([&](QFileDialog& dialog) {
        EXPECT_TRUE(dialog.testOption(QFileDialog::DontUseNativeDialog));
        dialog.setViewMode(QFileDialog::Detail);
        auto* const details = dialog.findChild<QTreeView*>(QStringLiteral("treeView"));
        ASSERT_TRUE(
            QTest::qWaitFor([&] { return details->model()->rowCount(details->rootIndex()) == 1; }, 5000));
        ASSERT_TRUE(QTest::qWaitFor([&] { return details->columnWidth(3) > 0; }, 5000));
        QCoreApplication::processEvents();
        for (int column = 0; column < details->model()->columnCount(); ++column) {
            const QModelIndex cell = details->model()->index(0, column, details->rootIndex());
            const int needed = details->fontMetrics().horizontalAdvance(cell.data().toString());
            EXPECT_GE(details->columnWidth(column), needed + 4)
                << column << ' ' << cell.data().toString().toStdString();
        }
        EXPECT_FALSE(details->horizontalScrollBar()->isVisible());
        dialog.reject();
    });
    EXPECT_EQ(dialogs_.askOpenPath(settingsFilter), std::nullopt);
}

TEST_F(FileDialogs, ACancelledDialogRemembersNothing) {
    whenOpen([](QFileDialog& dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); });
    EXPECT_EQ(dialogs_.askSavePath(settingsFilter), std::nullopt);
    EXPECT_EQ(profile_.lastFolder(), QString());
}

// ---- document

TEST(Document, WritesAndReadsTheStoreInItsFile) {
    const TemporaryFolder folder;
    Tuning tuning;
    tuning.state.setVolume(4.5F, true);
    ParameterStore store = tuning.state.store();
    EXPECT_TRUE(CTessavoDoc::serialize(store, true, folder / "EQSettings.set"));
    EXPECT_EQ(readFile(folder / "EQSettings.set"), bytesOf(tuning.state.store()));
    ParameterStore read{};
    EXPECT_TRUE(CTessavoDoc::serialize(read, false, folder / "EQSettings.set"));
    EXPECT_SAME_BYTES(bytesOf(read), bytesOf(store));
}

TEST(Document, ItsFileIsAlwaysTheSame) {
    EXPECT_EQ(CTessavoDoc::serializedFile().string(),
              "C:\\Dokumente und Einstellungen\\Windows User\\Desktop\\EQSettings.set");
}

TEST(Document, AMissingOrShortFileLeavesTheStore) {
    const TemporaryFolder folder;
    Tuning tuning;
    ParameterStore store = tuning.state.store();
    EXPECT_FALSE(CTessavoDoc::serialize(store, false, folder / "missing.set"));
    writeFile(folder / "short.set", Bytes(10599, 7));
    EXPECT_FALSE(CTessavoDoc::serialize(store, false, folder / "short.set"));
    EXPECT_FALSE(CTessavoDoc::serialize(store, true, folder / "no folder" / "a.set"));
    EXPECT_SAME_BYTES(bytesOf(store), tuning.store());
}

// ---- icon

TEST(ProgramIcon, IsAPictureInEverySize) {
    for (const int size : {16, 24, 32, 48, 64, 128, 256, 512}) {
        const QImage icon(QStringLiteral(TESSAVO_ICONS "/tessavo-%1.png").arg(size), "PNG");
        ASSERT_EQ(icon.size(), QSize(size, size)) << "cannot be read";
        ASSERT_TRUE(icon.hasAlphaChannel()) << size;
        // It has a shape of its own, filled with more than one colour.
        EXPECT_EQ(icon.pixelColor(0, 0).alpha(), 0) << size;
        std::set<QRgb> colours;
        int opaque = 0;
        for (int y = 0; y < size; ++y) {
            for (int x = 0; x < size; ++x) {
                if (const QColor colour = icon.pixelColor(x, y); colour.alpha() == 255) {
                    colours.insert(colour.rgb());
                    ++opaque;
                }
            }
        }
        EXPECT_GT(opaque, size * size / 2) << size;
        EXPECT_GT(colours.size(), 4U) << size;
    }
}

// ---- second program

TEST(InstanceGuardTest, LetsOneIn) {
    const TemporaryFolder folder;
    {
        const InstanceGuard first(textOf(folder.path()));
        EXPECT_TRUE(first.isFirst());
        const InstanceGuard second(textOf(folder.path()));
        EXPECT_FALSE(second.isFirst());
        const InstanceGuard elsewhere(textOf(folder.path()) + QStringLiteral("/none"));
        EXPECT_TRUE(elsewhere.isFirst()) << "a place that cannot be written is free";
    }
    const InstanceGuard next(textOf(folder.path()));
    EXPECT_TRUE(next.isFirst());
}

TEST(InstanceGuardTest, TheFileOfAProgramThatWasKilledIsNoHindrance) {
    const TemporaryFolder folder;
    std::string contents;
    {
        const InstanceGuard running(textOf(folder.path()));
        const auto bytes = readFile(folder / "tessavo.lock");
        contents.assign(bytes.begin(), bytes.end());
    }
    const auto endOfNumber = contents.find('\n');
    ASSERT_NE(endOfNumber, std::string::npos);
    // No process has this number: it is beyond what the system gives.
    std::ofstream(folder / "tessavo.lock", std::ios::binary) << "2147483646" << contents.substr(endOfNumber);
    const InstanceGuard guard(textOf(folder.path()));
    EXPECT_TRUE(guard.isFirst());
}

TEST(InstanceGuardTest, NeitherIsThatOfAKilledProgramWhoseNumberThisOneHasNow) {
    const TemporaryFolder folder;
    std::string contents;
    {
        const InstanceGuard running(textOf(folder.path()));
        const auto bytes = readFile(folder / "tessavo.lock");
        contents.assign(bytes.begin(), bytes.end());
    }
    EXPECT_FALSE(std::filesystem::exists(folder / "tessavo.lock"));
    std::ofstream(folder / "tessavo.lock", std::ios::binary) << contents;
    const InstanceGuard guard(textOf(folder.path()));
    EXPECT_TRUE(guard.isFirst());
    const InstanceGuard second(textOf(folder.path()));
    EXPECT_FALSE(second.isFirst());
}

}  // namespace
}  // namespace tessavo::test
