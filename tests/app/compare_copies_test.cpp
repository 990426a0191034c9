#include "app/compare_copies.h"

#include <QListView>
#include <QTest>
#include <array>
#include <cstring>

#include "app/copies_fixture.h"
#include "app/copy_sources.h"
#include "copies/backup_folder.h"
#include "copies/written_sets.h"
#include "params/image_digest.h"

// What the lists of a comparison offer of the target and of its copies.

namespace tessavo::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

const QString choiceName = QStringLiteral("choice");
constexpr std::int64_t madeAt = 1'790'000'000;

class CopiesToCompare : public CopiesTest {
 protected:
    CopiesToCompare() {
        for (std::size_t set = 0; set < images.size(); ++set) {
            tuning.setVolume(-1.0F - static_cast<float>(set), true);
            images.at(set) = tuning.image();
        }
        copies = std::make_unique<CompareCopies>(dependencies());
    }
    ~CopiesToCompare() override { copies.reset(); }

    [[nodiscard]] CompareCopies::Dependencies dependencies() {
        return {tuning, link.foreground(), dialogs, *frame, data};
    }

    /// A backup of `images`.
    /// \param damaged a set that came with a wrong digest; 9 for none
    void makeBackup(const std::string& name, std::int64_t second, std::size_t damaged = 9) {
        TargetCopy copy;
        for (SetCopy& set : copy.sets) {
            const ParameterImage& image = images.at(set.targetSet);
            const Md5Digest digest = md5Image(image);
            std::memcpy(set.reply.data(), &image, parameterImageSize);
            std::memcpy(set.reply.data() + reply_layout::imageDigest, digest.data(), digest.size());
            set.reply[reply_layout::imageDigest] ^= set.targetSet == damaged ? 1 : 0;
            set.state = set.targetSet == damaged ? SetState::wrongDigest : SetState::sound;
        }
        copy.versions = TargetVersions{};
        copy.port = "inside";
        copy.time = WallTime(std::chrono::seconds(second));
        ASSERT_EQ(writeBackup(folder / name, copy), "");
    }
    void makeKnown(const std::string& name, std::int64_t second, std::size_t damaged = 9) {
        makeBackup(name, second, damaged);
        ASSERT_TRUE(KnownBackups(knownBackupsFolder(data)).add(folder / name));
    }
    [[nodiscard]] std::vector<std::string> titles() {
        std::vector<std::string> all;
        for (const CompareSource& source : copies->sources()) {
            all.push_back(source.title.toStdString());
        }
        return all;
    }
    /// Waits until this many entries are offered.
    void expectOffered(std::size_t count) {
        EXPECT_TRUE(becomes([&] { return titles().size() == count; })) << count;
    }
    [[nodiscard]] CompareReading read(const QString& start) {
        for (const CompareSource& source : copies->sources()) {
            if (source.title.startsWith(start)) {
                return source.read(base);
            }
        }
        throw std::logic_error("no entry " + start.toStdString());
    }
    /// Answers the next question for one of several by this row; a negative one cancels it.
    void choose(int row) {
        whenOpen(choiceName, [this, row](QDialog& open) {
            asked = open.windowTitle().toStdString();
            auto& list = *open.findChild<QListView*>();
            offered.clear();
            for (int i = 0; i < list.model()->rowCount(); ++i) {
                offered.push_back(list.model()->index(i, 0).data().toString().toStdString());
            }
            if (row >= 0) {
                QTest::mouseClick(list.viewport(), Qt::LeftButton, {},
                                  list.visualRect(list.model()->index(row, 0)).center());
            }
            QTest::keyClick(&list, row >= 0 ? Qt::Key_Return : Qt::Key_Escape);
            return true;
        });
    }
    void expectSet(const CompareReading& reading, const ParameterImage& image) {
        ASSERT_TRUE(reading.set) << reading.trouble.toStdString();
        const ParameterSet expected = setOfImage(image, base);
        EXPECT_EQ(std::memcmp(&*reading.set, &expected, sizeof expected), 0);
        EXPECT_TRUE(reading.trouble.isEmpty());
    }

    /// The set that the other side shows, which has another name than the current one.
    const ParameterSet base = tuning.store().sets[4];
    /// By number of the target's set; each sounds different.
    std::array<ParameterImage, 6> images{};
    std::string asked;
    std::vector<std::string> offered;
    std::unique_ptr<CompareCopies> copies;
};

TEST_F(CopiesToCompare, ListTheNewestBackupsWhichAnotherThreadLooksFor) {
    EXPECT_THAT(titles(), ElementsAre("Target...", "Other backup...", "Written by Tessavo..."));
    for (int i = 0; i < 5; ++i) {
        makeKnown("copy" + std::to_string(i), madeAt + i);
    }
    EXPECT_EQ(titles().size(), 3U) << "a list that drops down waits for no disk";
    expectOffered(3 + CompareCopies::listedBackups);
    const std::vector<std::string> all = titles();
    EXPECT_THAT(all[1], ::testing::StartsWith("Backup 2026-09-"));
    EXPECT_GT(all[1], all[2]) << "the newest first";
    EXPECT_GT(all[2], all[3]);
    EXPECT_EQ(exchanges(), 0);
}

TEST_F(CopiesToCompare, ReadsTheChosenSetOfTheTargetAndNothingElse) {
    const auto before = state();
    for (std::size_t row = 0; row < targetSetNumbers.size(); ++row) {
        choose(static_cast<int>(row));
        const CompareReading reading = read(QStringLiteral("Target"));
        EXPECT_EQ(reading.title.toStdString(), "Target: " + offered.at(row));
        expectSet(reading, imageOf(firstImage(targetSetNumbers.at(row))));
        EXPECT_EQ(exchanges(), static_cast<int>(row) + 1);
    }
    EXPECT_THAT(offered, ElementsAre("Set 1", "Set 2", "Set 3", "Set 4", "Set 5", "Default Set"));
    choose(-1);
    const CompareReading none = read(QStringLiteral("Target"));
    EXPECT_FALSE(none.set);
    EXPECT_TRUE(none.trouble.isEmpty()) << "a person has thought better of it";
    EXPECT_EQ(exchanges(), 6);
    EXPECT_EQ(std::memcmp(before.get(), state().get(), sizeof(TuningSnapshot)), 0);
    tuning.setLiveMode(true);
    EXPECT_EQ(read(QStringLiteral("Target")).trouble, QStringLiteral("Please turn off Live Mode"));
    EXPECT_EQ(exchanges(), 6);
    tuning.setLiveMode(false);
}

TEST_F(CopiesToCompare, ReadsASetOfABackupAndTellsWhatIsMissing) {
    makeKnown("copy", madeAt, 3);
    expectOffered(4);
    choose(4);
    const CompareReading reading = read(QStringLiteral("Backup "));
    EXPECT_EQ(asked, "Sets of copy");
    EXPECT_THAT(offered, ElementsAre("Set 1", "Set 2", "Set 4", "Set 5", "Default Set",
                                     "Set 3 is damaged or missing in this backup."));
    EXPECT_TRUE(reading.title.startsWith(QStringLiteral("Backup 2026-09-")));
    EXPECT_TRUE(reading.title.endsWith(QStringLiteral(": Default Set")));
    expectSet(reading, images[0]);
    choose(5);
    EXPECT_EQ(read(QStringLiteral("Backup ")).trouble,
              QStringLiteral("Set 3 is damaged or missing in this backup."));
    std::filesystem::remove_all(folder / "copy");
    const CompareReading gone = read(QStringLiteral("Backup "));
    EXPECT_FALSE(gone.set);
    EXPECT_TRUE(gone.trouble.startsWith(QStringLiteral("copy: "))) << gone.trouble.toStdString();
}

TEST_F(CopiesToCompare, ReadsABackupOfAnyFolder) {
    makeBackup("elsewhere", madeAt);
    dialogs.folderAnswer = folder / "elsewhere";
    choose(1);
    expectSet(read(QStringLiteral("Other backup")), images[2]);
    EXPECT_EQ(dialogs.folderTitles.size(), 1U) << "none is known, so the folder is asked for at once";
    EXPECT_EQ(dialogs.localeResets, 1);
    makeKnown("known", madeAt + 60);
    choose(-1);
    EXPECT_FALSE(read(QStringLiteral("Other backup")).set);
    ASSERT_EQ(offered.size(), 2U);
    EXPECT_THAT(offered[0], ::testing::EndsWith(", known, inside"));
    EXPECT_EQ(offered[1], "Other folder...");
    dialogs.folderAnswer = folder / "empty";
    choose(1);
    EXPECT_FALSE(read(QStringLiteral("Other backup")).trouble.isEmpty()) << "no backup";
    dialogs.folderAnswer.reset();
    choose(1);
    EXPECT_TRUE(read(QStringLiteral("Other backup")).trouble.isEmpty());
}

TEST_F(CopiesToCompare, ReadsWhatTheProgramHasWritten) {
    EXPECT_EQ(read(QStringLiteral("Written")).trouble,
              QStringLiteral("No set is kept that Tessavo has written into the target."));
    WrittenSets written(writtenSetsFolder(data));
    ASSERT_TRUE(written.keep(4, "inside", images[4]));
    ASSERT_TRUE(written.keep(0, "inside", images[0]));
    choose(1);
    const CompareReading reading = read(QStringLiteral("Written"));
    ASSERT_EQ(offered.size(), 2U);
    EXPECT_THAT(offered[0], ::testing::EndsWith(", Default Set, inside"));
    EXPECT_TRUE(reading.title.endsWith(QStringLiteral(": Set 4")));
    expectSet(reading, images[4]);
}

TEST_F(CopiesToCompare, OffersNoneThatNeedADataFolderWhereThereIsNone) {
    CompareCopies::Dependencies without = dependencies();
    without.dataFolder.clear();
    CompareCopies none(without);
    std::vector<std::string> all;
    for (const CompareSource& source : none.sources()) {
        all.push_back(source.title.toStdString());
    }
    EXPECT_THAT(all, ElementsAre("Target...", "Other backup..."));
}

}  // namespace
}  // namespace tessavo::test
