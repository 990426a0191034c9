#include <QComboBox>
#include <QDateTime>
#include <QTest>
#include <QTimer>
#include <algorithm>
#include <cstring>
#include <thread>

#include "app/copies_commands.h"
#include "app/copies_fixture.h"
#include "app/copy_sources.h"
#include "app/disk_jobs.h"
#include "app/status_line.h"
#include "app/window_clock.h"
#include "controls/skin_button.h"
#include "copies/known_backups.h"
#include "copies/written_sets.h"
#include "params/image_conversion.h"
#include "params/tuning_snapshot.h"

// What is kept of the target's sets without being asked, and who else reads copies.

namespace tessavo::test {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

class WrittenIntoTheTarget : public CopiesTest {
 protected:
    void save(int set) {
        showCommunication();
        QTest::mouseClick(&pageButton(comm_id::firstSave + set), Qt::LeftButton);
    }
    [[nodiscard]] WrittenSets kept() const { return WrittenSets(writtenSetsFolder(data)); }
    bool keptBecome(std::size_t count) {
        return becomes([&] { return kept().list().sets.size() == count; });
    }
};

TEST_F(WrittenIntoTheTarget, IsKeptWithItsSetPortAndTheImageThatWasConfirmed) {
    goLive();
    const ParameterImage sent = tuning.image();
    save(4);
    ASSERT_TRUE(keptBecome(1));
    save(0);
    ASSERT_TRUE(keptBecome(2));
    const auto sets = kept().list().sets;
    EXPECT_EQ(sets[0].targetSet, 0);
    EXPECT_EQ(sets[1].targetSet, 4);
    for (const WrittenSet& set : sets) {
        EXPECT_EQ(set.port, "inside");
        EXPECT_TRUE(equalBytes(kept().read(set.id).value_or(ParameterImage{}), sent));
    }
    EXPECT_TRUE(equalBytes(imageOf(memory().sets.at(4)), sent));
    EXPECT_EQ(exchanges(), 4) << "image, confirmation and one command for each set: nothing more";
}

TEST_F(WrittenIntoTheTarget, IsNotKeptWhenTheTargetDidNotTakeIt) {
    goLive();
    breakExchange(3, "negative=1");
    save(2);
    save(3);
    ASSERT_TRUE(keptBecome(1));
    EXPECT_EQ(kept().list().sets[0].targetSet, 3);
}

TEST_F(WrittenIntoTheTarget, ThatCannotBeKeptIsToldOnce) {
    // A file stands where the folder would be.
    std::filesystem::create_directories(data);
    writeFile(writtenSetsFolder(data), std::vector<std::uint8_t>{1});
    std::vector<QString> told;
    QObject::connect(&frame->statusLine(), &StatusLine::noticeShown, frame.get(),
                     [&](const QString& text) { told.push_back(text); });
    goLive();
    save(1);
    ASSERT_TRUE(becomes([&] { return !told.empty(); }));
    save(2);
    // Whatever waits for the disk is done once a later job of the same thread has answered.
    showCommunication();
    ASSERT_FALSE(QTest::qWaitFor([&] { return told.size() > 1; }, 300));
    EXPECT_THAT(told, ElementsAre(QString::fromUtf8(writtenNotKeptText.data())));
    EXPECT_EQ(words().find("set 2 saved") != std::string::npos, true)
        << "the command itself is none the worse";
}

class OfferOfABackup : public CopiesTest {
 protected:
    OfferOfABackup() { dialogs.folderAnswer = folder / "copy"; }
    CxSkinButton& offer() { return pageButton(comm_id::backUpTarget); }
    bool isOffered() {
        return becomes([this] { return offer().isVisible(); });
    }
    bool isNotOffered() {
        return becomes([this] { return !offer().isVisible(); });
    }
    /// Whether it stays hidden after what was asked of the disk has been answered.
    bool staysHidden() {
        return !QTest::qWaitFor([this] { return offer().isVisible(); }, 300);
    }
};

TEST_F(OfferOfABackup, StandsBesideFlashFileUntilOneWasMadeToday) {
    showCommunication();
    ASSERT_TRUE(isOffered());
    EXPECT_EQ(offer().text(), QStringLiteral("Back Up Target..."));
    QTest::mouseClick(&offer(), Qt::LeftButton);
    EXPECT_EQ(notice(), QStringLiteral("Backed up to copy."));
    EXPECT_TRUE(isNotOffered());
    makeFrame();
    showCommunication();
    EXPECT_TRUE(staysHidden()) << "the next start knows it too";
}

TEST_F(OfferOfABackup, FlashingIsNeverForcedToWaitForIt) {
    showCommunication();
    ASSERT_TRUE(isOffered());
    writeFile(folder / "software.bin", std::vector<std::uint8_t>(2048, 0x5A));
    dialogs.answer = folder / "software.bin";
    QTest::mouseClick(&pageButton(comm_id::selectImage), Qt::LeftButton);
    QTest::mouseClick(&pageButton(comm_id::flashFile), Qt::LeftButton);
    EXPECT_GE(memory().software.size(), 2048U);
    EXPECT_THAT(shown, IsEmpty());
    EXPECT_TRUE(offer().isVisible());
}

TEST_F(OfferOfABackup, IsBackForAnotherPortAndForAnotherTarget) {
    showCommunication();
    clickTool(QStringLiteral("Back Up Target..."));
    ASSERT_TRUE(isNotOffered());
    link.setPortName("another");
    EXPECT_TRUE(isOffered());
    link.setPortName("inside");
    EXPECT_TRUE(isNotOffered());
    QTest::mouseClick(&pageButton(comm_id::update), Qt::LeftButton);
    EXPECT_TRUE(staysHidden()) << "the same hardware";
    hardware = 0x777;
    QTest::mouseClick(&pageButton(comm_id::update), Qt::LeftButton);
    EXPECT_TRUE(isOffered()) << "another target at the same port";
}

TEST_F(OfferOfABackup, ThatLacksASetDoesNotCount) {
    showCommunication();
    breakExchange(2, "damaged-reply");
    whenOpen(QStringLiteral("backUp"), [](QDialog& open) {
        const auto* button = open.findChild<QPushButton*>();
        const bool finished = button->text() == QStringLiteral("Close");
        if (finished) {
            click(open, QStringLiteral("Close"));
        }
        return finished;
    });
    clickTool(QStringLiteral("Back Up Target..."));
    ASSERT_TRUE(becomes([this] { return dialog(QStringLiteral("backUp")) == nullptr; }));
    EXPECT_TRUE(isOffered());
}

TEST_F(OfferOfABackup, OfYesterdayDoesNotCount) {
    clickTool(QStringLiteral("Back Up Target..."));
    const auto known = KnownBackups(knownBackupsFolder(data)).list();
    ASSERT_THAT(known, SizeIs(1));
    EXPECT_TRUE(KnownBackups(knownBackupsFolder(data))
                    .madeSince(known[0].time - std::chrono::hours(1), "inside", std::nullopt));
    StatusLine status;
    const WallTime tomorrow = known[0].time + std::chrono::hours(24);
    CopiesCommands commands(
        {tuning, link, boxes, dialogs, frame->view(), status, *frame, data, [tomorrow] { return tomorrow; }});
    Q_EMIT frame->view().firstPainted();
    showCommunication();
    EXPECT_TRUE(isOffered());
}

TEST_F(OfferOfABackup, GoesForTheTargetThatWasBackedUpAndNotForTheOneBeforeIt) {
    showCommunication();
    QTest::mouseClick(&pageButton(comm_id::update), Qt::LeftButton);
    hardware = 0x777;
    clickTool(QStringLiteral("Back Up Target..."));
    ASSERT_EQ(notice(), QStringLiteral("Backed up to copy."));
    EXPECT_TRUE(isNotOffered());
    EXPECT_TRUE(staysHidden());
}

TEST_F(OfferOfABackup, IsBackAtMidnightWhileThePageIsShown) {
    clickTool(QStringLiteral("Back Up Target..."));
    ASSERT_EQ(notice(), QStringLiteral("Backed up to copy."));
    const auto began = std::chrono::system_clock::now();
    const WallTime midnight(
        std::chrono::milliseconds(QDate::currentDate().addDays(1).startOfDay().toMSecsSinceEpoch()));
    StatusLine status;
    CopiesCommands commands({tuning, link, boxes, dialogs, frame->view(), status, *frame, data, [=] {
                                 return midnight - std::chrono::milliseconds(1500) +
                                        (std::chrono::system_clock::now() - began);
                             }});
    Q_EMIT frame->view().firstPainted();
    showCommunication();
    EXPECT_TRUE(staysHidden()) << "it is still the day of the backup";
    EXPECT_TRUE(isOffered());
}

class SourcesOfSets : public CopiesTest {
 protected:
    SourcesOfSets() { dialogs.folderAnswer = folder / "copy"; }
    [[nodiscard]] const ParameterSet& base() const { return tuning.store().sets[2]; }
    /// The image's volume of the program, so that it differs from the target's sets.
    [[nodiscard]] static std::vector<std::string> titles(const std::vector<CopySource>& sources) {
        std::vector<std::string> all;
        all.reserve(sources.size());
        for (const CopySource& source : sources) {
            all.push_back(source.title);
        }
        return all;
    }
    void expectSet(const CopySource& source, const ParameterImage& image) {
        const CopiedSet read = source.read();
        ASSERT_TRUE(read.set) << source.title << ": " << read.trouble;
        ParameterStore expected;
        expected.sets[0] = base();
        readImageFields(expected, 0, image);
        EXPECT_EQ(std::memcmp(&*read.set, &expected.sets[0], sizeof(ParameterSet)), 0) << source.title;
        EXPECT_EQ(read.trouble, "");
    }
};

TEST_F(SourcesOfSets, ReadEachSetOfTheTargetByItsOwnExchangeAndTouchNothing) {
    const auto before = state();
    const auto sources = targetSources(tuning, link.foreground(), base());
    EXPECT_THAT(titles(sources), ElementsAre("Set 1", "Set 2", "Set 3", "Set 4", "Set 5", "Default Set"));
    EXPECT_EQ(exchanges(), 0) << "listing reads nothing";
    for (std::size_t i = 0; i < sources.size(); ++i) {
        EXPECT_EQ(sources[i].group, "Target");
        expectSet(sources[i], imageOf(firstImage(targetSetNumbers.at(i))));
        EXPECT_EQ(exchanges(), static_cast<int>(i) + 1);
    }
    EXPECT_EQ(std::memcmp(before.get(), state().get(), sizeof(TuningSnapshot)), 0);
}

TEST_F(SourcesOfSets, OfTheTargetTellWhatWentWrong) {
    const auto sources = targetSources(tuning, link.foreground(), base());
    breakExchange(1, "wrong-digest");
    breakExchange(2, "damaged-reply");
    CopiedSet read = sources[2].read();
    EXPECT_FALSE(read.set);
    EXPECT_EQ(read.trouble, "Set 3 came with a wrong digest.");
    read = sources[5].read();
    EXPECT_FALSE(read.set);
    EXPECT_EQ(read.trouble, "Default Set could not be read; the communication log tells why.");
    tuning.setLiveMode(true);
    read = sources[0].read();
    EXPECT_FALSE(read.set);
    EXPECT_EQ(read.trouble, "Please turn off Live Mode");
    EXPECT_EQ(exchanges(), 2) << "with Live Mode on nothing is sent";
}

// Reading a set into the program never clears an inverted phase; a comparison would hide what the target plays.
TEST_F(SourcesOfSets, HaveThePhasesOfTheImageWhateverTheBaseHas) {
    for (std::size_t inverted = 0; inverted < channelCount; ++inverted) {
        ParameterImage image = tuning.image();
        ParameterSet inverse = base();
        for (std::size_t c = 0; c < channelCount; ++c) {
            image.channels.at(c).invertPhase = c == inverted ? 1 : 0;
            inverse.channels.at(c).invertPhase = c == inverted ? 0 : 1;
        }
        const ParameterSet set = setOfImage(image, inverse);
        for (std::size_t c = 0; c < channelCount; ++c) {
            EXPECT_EQ(set.channels.at(c).invertPhase, c == inverted ? 1 : 0) << c;
        }
    }
}

TEST(DiskJobsTest, RunInTheirOrderOnAnotherThreadAndAreDoneAtTheEnd) {
    std::vector<int> done;
    const auto here = std::this_thread::get_id();
    std::vector<bool> elsewhere;
    {
        DiskJobs jobs;
        for (int i = 0; i < 3; ++i) {
            jobs.run([&, i] {
                done.push_back(i);
                elsewhere.push_back(std::this_thread::get_id() != here);
            });
        }
        jobs.runAndWait([&] { done.push_back(3); });
        EXPECT_THAT(done, ElementsAre(0, 1, 2, 3));
        jobs.run([&] { done.push_back(4); });
    }
    EXPECT_THAT(done, ElementsAre(0, 1, 2, 3, 4));
    EXPECT_THAT(elsewhere, Each(true));
}

TEST(WindowClockTest, LetsEventsPassAndIsCutShort) {
    WindowClock clock;
    int ticks = 0;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&] { ++ticks; });
    timer.start(1);
    const Milliseconds start = clock.now();
    EXPECT_TRUE(clock.sleep(Milliseconds(60)));
    EXPECT_GE(clock.now() - start, Milliseconds(60));
    EXPECT_GT(ticks, 5);
    QTimer::singleShot(5, [&] { clock.interrupt(); });
    EXPECT_FALSE(clock.sleep(Milliseconds(20000)));
    EXPECT_FALSE(clock.sleep(Milliseconds(20000))) << "and every later one";
    EXPECT_LT(clock.now() - start, Milliseconds(10000));
    clock.reset();
    EXPECT_TRUE(clock.sleep(Milliseconds(1)));
}

}  // namespace
}  // namespace tessavo::test
