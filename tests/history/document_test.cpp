#include "history/document.h"

#include <gtest/gtest.h>
#include <string>

#include "support/harness.h"
#include "support/temporary_folder.h"

namespace tessavo::test {
namespace {

class DocumentTest : public ::testing::Test {
 protected:
    DocumentTest() : store_(recordOf<ParameterStore>(randomStore(random_))) {}

    [[nodiscard]] std::filesystem::path path() const { return folder_ / "car.eqs"; }
    /// Loads the first bytes of the store from a file.
    void load(std::size_t size = storeSize) {
        Bytes bytes = bytesOf(store_);
        bytes.resize(size, 0);
        writeFile(path(), bytes);
        bytes.resize(storeSize, 0);
        store_ = recordOf<ParameterStore>(bytes);
        document_.loaded(path(), store_, size);
    }

    TemporaryFolder folder_;
    std::mt19937_64 random_{3};
    ParameterStore store_;
    Document document_;
};

TEST_F(DocumentTest, IsNoneAtFirst) {
    EXPECT_TRUE(document_.path().empty());
    EXPECT_EQ(document_.name(), "");
    EXPECT_FALSE(document_.differs(store_));
    EXPECT_FALSE(document_.changedOnDisk());
    EXPECT_EQ(document_.shortFileText(), "");
    document_.notSaved(path());
    EXPECT_TRUE(document_.path().empty());
}

TEST_F(DocumentTest, IsTheFileThatWasLoadedOrSavedLast) {
    load();
    EXPECT_EQ(document_.path(), path());
    EXPECT_EQ(document_.name(), "car.eqs");
    writeFile(folder_ / "other.eqs", bytesOf(store_));
    document_.saved(folder_ / "other.eqs", store_);
    EXPECT_EQ(document_.path(), folder_ / "other.eqs");
    EXPECT_EQ(document_.name(), "other.eqs");
    EXPECT_FALSE(document_.changedOnDisk());
}

TEST_F(DocumentTest, IsNoneAfterARunThatHadNone) {
    const auto file = folder_ / "car.eqs";
    writeFile(file, bytesOf(store_));
    document_.loaded(file, store_, 300);
    document_.resume({}, document_.memory(), store_);
    EXPECT_TRUE(document_.path().empty());
    EXPECT_EQ(document_.name(), "");
    EXPECT_EQ(document_.shortFileText(), "");
    EXPECT_FALSE(document_.differs(ParameterStore{}));
    EXPECT_FALSE(document_.changedOnDisk());
}

TEST_F(DocumentTest, TellsItsNameInUtf8) {
    const auto odd = folder_.path() / std::filesystem::path(u"\u00E4\u20AC \U0001F600.eqs");
    writeFile(odd, bytesOf(store_));
    document_.saved(odd, store_);
    EXPECT_EQ(document_.name(), "\u00E4\u20AC \U0001F600.eqs");
    document_.resume(folder_.path() / nameThatIsNoText(".eqs"), std::nullopt, store_);
    EXPECT_EQ(document_.name(), "\uFFFD.eqs");
}

TEST_F(DocumentTest, KnowsItsWholePathWhereverTheProgramGoes) {
    const auto here = std::filesystem::current_path();
    std::filesystem::current_path(folder_.path());
    writeFile("car.eqs", bytesOf(store_));
    document_.saved("car.eqs", store_);
    std::filesystem::current_path(here);
    EXPECT_TRUE(document_.path().is_absolute());
    EXPECT_FALSE(document_.changedOnDisk());
}

TEST_F(DocumentTest, SetsDifferWithAnyByte) {
    load();
    EXPECT_FALSE(document_.differs(store_));
    const Bytes same = bytesOf(store_);
    for (std::size_t i = 0; i < storeSize; ++i) {
        Bytes bytes = same;
        bytes[i] ^= 0x40U;
        ASSERT_TRUE(document_.differs(recordOf<ParameterStore>(bytes))) << i;
    }
    EXPECT_FALSE(document_.differs(store_));
}

TEST_F(DocumentTest, HasChangedOnTheDiskWithAnyByteMoreLessOrOther) {
    load();
    const Bytes same = readFile(path());
    EXPECT_FALSE(document_.changedOnDisk());
    for (const std::size_t at : {0U, 5000U, 10599U}) {
        Bytes other = same;
        other[at] ^= 1U;
        writeFile(path(), other);
        EXPECT_TRUE(document_.changedOnDisk()) << at;
    }
    Bytes other = same;
    other.push_back(0);
    writeFile(path(), other);
    EXPECT_TRUE(document_.changedOnDisk());
    other.resize(storeSize - 1);
    writeFile(path(), other);
    EXPECT_TRUE(document_.changedOnDisk());
    writeFile(path(), same);
    EXPECT_FALSE(document_.changedOnDisk()) << "the content counts, not its date";
    std::filesystem::remove(path());
    EXPECT_TRUE(document_.changedOnDisk());
    std::filesystem::create_directory(path());
    EXPECT_TRUE(document_.changedOnDisk());
}

TEST_F(DocumentTest, SeesChangesBehindTheSetsOfALongFile) {
    Bytes bytes = bytesOf(store_);
    bytes.resize(12000, 0xC3);
    writeFile(path(), bytes);
    document_.saved(path(), store_);
    EXPECT_FALSE(document_.changedOnDisk());
    bytes[11000] = 1;
    writeFile(path(), bytes);
    EXPECT_TRUE(document_.changedOnDisk());
}

TEST_F(DocumentTest, HasChangedWhenAnotherProgramWasQuickerThanTheLook) {
    writeFile(path(), Bytes(storeSize, 0x77));
    document_.saved(path(), store_);
    EXPECT_TRUE(document_.changedOnDisk());
    document_.loaded(path(), store_, storeSize);
    EXPECT_TRUE(document_.changedOnDisk());
    EXPECT_FALSE(document_.differs(store_));
}

TEST_F(DocumentTest, ASaveThatFailedHalfwayIsNoChangeByAnother) {
    load();
    Bytes half = Bytes(5000, 0x22);
    writeFile(path(), half);
    document_.notSaved(folder_ / "other.eqs");
    EXPECT_TRUE(document_.changedOnDisk()) << "another file's failure";
    document_.notSaved(path());
    EXPECT_FALSE(document_.changedOnDisk());
    half[0] = 1;
    writeFile(path(), half);
    EXPECT_TRUE(document_.changedOnDisk());
    std::filesystem::remove(path());
    document_.notSaved(path());
    EXPECT_TRUE(document_.changedOnDisk());
}

TEST_F(DocumentTest, TellsOfAShortFileUntilTheSetsAreSaved) {
    load(300);
    EXPECT_EQ(document_.shortFileText(), "car.eqs: 300 of 10600 bytes, the rest reads as zero");
    EXPECT_FALSE(document_.changedOnDisk());
    EXPECT_FALSE(document_.differs(store_));
    writeFile(path(), bytesOf(store_));
    document_.saved(path(), store_);
    EXPECT_EQ(document_.shortFileText(), "");
    load(10599);
    EXPECT_EQ(document_.shortFileText(), "car.eqs: 10599 of 10600 bytes, the rest reads as zero");
    load(10600);
    EXPECT_EQ(document_.shortFileText(), "");
    load(20000);
    EXPECT_EQ(document_.shortFileText(), "");
}

TEST_F(DocumentTest, WithoutAMemoryOfAnEarlierRunGoesOnWithWhatTheFileHoldsNow) {
    load();
    Document later;
    later.resume(path(), std::nullopt, ParameterStore{});
    EXPECT_EQ(later.path(), path());
    EXPECT_FALSE(later.differs(store_));
    EXPECT_FALSE(later.changedOnDisk());
    Bytes edited = bytesOf(store_);
    edited[9] ^= 1U;
    EXPECT_TRUE(later.differs(recordOf<ParameterStore>(edited)));
    writeFile(path(), edited);
    EXPECT_TRUE(later.changedOnDisk());

    later.resume(folder_ / "gone.eqs", std::nullopt, store_);
    EXPECT_EQ(later.name(), "gone.eqs");
    EXPECT_TRUE(later.differs(store_));
    EXPECT_TRUE(later.changedOnDisk());
}

TEST_F(DocumentTest, OfAnEarlierRunKnowsWhatItsFileHeldThen) {
    load(300);
    Bytes edited = bytesOf(store_);
    edited[9] ^= 1U;
    const auto left = recordOf<ParameterStore>(edited);
    Document later;
    later.resume(path(), document_.memory(), left);
    EXPECT_EQ(later.path(), path());
    EXPECT_FALSE(later.changedOnDisk());
    EXPECT_FALSE(later.differs(store_));
    EXPECT_TRUE(later.differs(left));
    EXPECT_EQ(later.shortFileText(), "car.eqs: 300 of 10600 bytes, the rest reads as zero");

    Bytes foreign = edited;
    foreign[5000] ^= 1U;
    writeFile(path(), foreign);
    later.resume(path(), document_.memory(), left);
    EXPECT_TRUE(later.changedOnDisk()) << "between the runs";
    EXPECT_FALSE(later.differs(store_)) << "what was loaded then";
    EXPECT_TRUE(later.differs(left));

    std::filesystem::remove(path());
    later.resume(path(), document_.memory(), left);
    EXPECT_TRUE(later.changedOnDisk());
    EXPECT_FALSE(later.differs(store_));
    EXPECT_TRUE(later.differs(left));
}

TEST_F(DocumentTest, OfARunThatEndedBetweenItsSaveAndItsNoteOfItIsSaved) {
    load(300);
    Bytes edited = bytesOf(store_);
    edited[9] ^= 1U;
    const auto left = recordOf<ParameterStore>(edited);
    writeFile(path(), edited);
    Document later;
    later.resume(path(), document_.memory(), left);
    EXPECT_FALSE(later.changedOnDisk());
    EXPECT_FALSE(later.differs(left));
    EXPECT_TRUE(later.differs(store_));
    EXPECT_EQ(later.shortFileText(), "");
}

TEST_F(DocumentTest, OfAnEarlierRunThatKnewNoStampCountsAsChanged) {
    writeFile(path(), Bytes(storeSize, 0x77));
    document_.saved(path(), store_);
    ASSERT_FALSE(document_.memory().stamp);
    Document later;
    later.resume(path(), document_.memory(), store_);
    EXPECT_TRUE(later.changedOnDisk());
    EXPECT_FALSE(later.differs(store_));
    writeFile(path(), bytesOf(store_));
    EXPECT_TRUE(later.changedOnDisk());
}

}  // namespace
}  // namespace tessavo::test
