#include "history/kept_versions.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "support/harness.h"
#include "support/temporary_folder.h"

namespace tessavo::test {
namespace {

using ::testing::IsEmpty;
using ::testing::SizeIs;

constexpr FileKind settings = FileKind::settings;

class Versions : public ::testing::Test {
 protected:
    [[nodiscard]] std::filesystem::path file(const std::string& name) const { return folder_ / name; }
    void keepAs(const std::string& name, const Bytes& bytes) {
        ASSERT_TRUE(writeFile(file(name), bytes));
        ASSERT_TRUE(versions_.keep(file(name), settings));
    }
    /// What the versions hold, newest first.
    [[nodiscard]] std::vector<Bytes> contents() const {
        std::vector<Bytes> all;
        for (const KeptVersion& version : versions_.list()) {
            all.push_back(versions_.read(version.id).value_or(Bytes{0xDE, 0xAD}));
        }
        return all;
    }
    [[nodiscard]] std::vector<std::filesystem::path> stored(const std::string& suffix) const {
        std::vector<std::filesystem::path> found;
        for (const auto& entry : std::filesystem::directory_iterator(folder_ / "data")) {
            if (entry.path().string().ends_with(suffix)) {
                found.push_back(entry.path());
            }
        }
        std::ranges::sort(found);
        return found;
    }

    TemporaryFolder folder_;
    WallTime now_{std::chrono::seconds(1'790'000'000)};
    KeptVersions versions_{folder_ / "data", [this] { return now_ += std::chrono::seconds(1); }};
};

TEST_F(Versions, KeepTheWholeContentWithPathTimeKindAndSize) {
    Bytes longer(12000);
    std::ranges::generate(longer, [i = 0]() mutable { return static_cast<std::uint8_t>(i++ * 7); });
    writeFile(file("car.eqs"), longer);
    EXPECT_TRUE(versions_.keep(file("car.eqs"), FileKind::settings));
    writeFile(file("set.bin"), Bytes(3384, 2));
    EXPECT_TRUE(versions_.keep(file("set.bin"), FileKind::image));

    const auto list = versions_.list();
    ASSERT_THAT(list, SizeIs(2));
    EXPECT_EQ(list[0].path, file("set.bin"));
    EXPECT_EQ(list[0].kind, FileKind::image);
    EXPECT_EQ(list[0].size, 3384U);
    EXPECT_EQ(list[0].time, now_);
    EXPECT_EQ(list[1].path, file("car.eqs"));
    EXPECT_EQ(list[1].kind, FileKind::settings);
    EXPECT_EQ(list[1].size, 12000U);
    EXPECT_EQ(list[1].time, now_ - std::chrono::seconds(1));
    EXPECT_EQ(versions_.read(list[1].id), longer);
    EXPECT_SAME_BYTES(readFile(file("car.eqs")), longer);
}

TEST_F(Versions, AreListedAndDroppedInOrderBehindAFileThatHasTheLargestNumber) {
    const std::filesystem::path planted = folder_ / "data" / "9999999999-80000000.eqs";
    std::filesystem::create_directory(folder_ / "data");
    ASSERT_TRUE(writeFile(planted, Bytes(10, 0xEE)));
    using FileClock = std::filesystem::file_time_type::clock;
    std::filesystem::last_write_time(
        planted, std::chrono::time_point_cast<FileClock::duration>(FileClock::from_sys(now_)));
    std::vector<Bytes> expected{Bytes(10, 0xEE)};
    for (std::uint8_t i = 0; i < 30; ++i) {
        keepAs("car.eqs", Bytes(100, i));
        expected.insert(expected.begin(), Bytes(100, i));
        expected.resize(std::min(expected.size(), KeptVersions::mostVersions));
        ASSERT_EQ(contents(), expected) << int{i};
    }
    EXPECT_THAT(stored(".eqs"), SizeIs(20));
    EXPECT_THAT(stored(".txt"), SizeIs(20));
}

TEST_F(Versions, AreThereForALaterRun) {
    keepAs("car.eqs", Bytes(100, 1));
    keepAs("car.eqs", Bytes(100, 2));
    const KeptVersions later(folder_ / "data");
    const auto list = later.list();
    ASSERT_THAT(list, SizeIs(2));
    EXPECT_EQ(list[0].path, file("car.eqs"));
    EXPECT_EQ(later.read(list[0].id), Bytes(100, 2));
}

TEST_F(Versions, HaveNothingToKeepWhereNoFileStands) {
    std::filesystem::create_directory(file("folder.eqs"));
    EXPECT_TRUE(versions_.keep(file("missing.eqs"), settings));
    EXPECT_TRUE(versions_.keep(file("no folder") / "missing.eqs", settings));
    EXPECT_TRUE(versions_.keep(file("folder.eqs"), settings));
    EXPECT_TRUE(versions_.keep({}, settings));
    EXPECT_THAT(versions_.list(), IsEmpty());
    EXPECT_FALSE(std::filesystem::exists(folder_ / "data")) << "the folder is made when it is needed";
}

TEST_F(Versions, KeepTheSameContentOnceInARow) {
    keepAs("car.eqs", Bytes(100, 1));
    keepAs("car.eqs", Bytes(100, 1));
    EXPECT_THAT(versions_.list(), SizeIs(1));
    keepAs("car.eqs", Bytes(100, 2));
    keepAs("car.eqs", Bytes(100, 1));
    EXPECT_THAT(contents(), ::testing::ElementsAre(Bytes(100, 1), Bytes(100, 2), Bytes(100, 1)));
    keepAs("other.eqs", Bytes(100, 1));
    EXPECT_THAT(versions_.list(), SizeIs(4)) << "another file is another matter";
    keepAs("car.eqs", Bytes(100, 1));
    EXPECT_THAT(versions_.list(), SizeIs(4)) << "also when another file was kept in between";
    keepAs("car.eqs", Bytes(101, 1));
    EXPECT_THAT(versions_.list(), SizeIs(5));
}

TEST_F(Versions, KeepTheSameContentAgainWhenTheOneThatIsKeptIsDamaged) {
    keepAs("car.eqs", Bytes(100, 1));
    writeFile(stored(".eqs").front(), Bytes(100, 9));
    keepAs("car.eqs", Bytes(100, 1));
    ASSERT_THAT(versions_.list(), SizeIs(2));
    EXPECT_EQ(contents().front(), Bytes(100, 1));
}

TEST_F(Versions, AreTheLastTwentyOverAllFiles) {
    for (int i = 0; i < 25; ++i) {
        keepAs(i % 3 == 0   ? "a.eqs"
               : i % 3 == 1 ? "b.eqs"
                            : "c.eqs",
               Bytes(50, static_cast<std::uint8_t>(i)));
    }
    const auto all = contents();
    ASSERT_THAT(all, SizeIs(20));
    for (std::size_t i = 0; i < all.size(); ++i) {
        EXPECT_SAME_BYTES(all[i], Bytes(50, static_cast<std::uint8_t>(24 - i)));
    }
    EXPECT_THAT(stored(".eqs"), SizeIs(20));
    EXPECT_THAT(stored(""), SizeIs(40)) << "nothing is left of those that went";
}

TEST_F(Versions, StandInTheOrderInWhichTheyWereKeptWhateverTheClockSays) {
    keepAs("car.eqs", Bytes(10, 1));
    now_ -= std::chrono::hours(1000);
    keepAs("car.eqs", Bytes(10, 2));
    EXPECT_THAT(contents(), ::testing::ElementsAre(Bytes(10, 2), Bytes(10, 1)));
}

TEST_F(Versions, AreWhatTheFilesOfTheFolderHoldByteForByte) {
    keepAs("car.eqs", Bytes(777, 5));
    ASSERT_THAT(stored(".eqs"), SizeIs(1));
    EXPECT_SAME_BYTES(readFile(stored(".eqs").front()), Bytes(777, 5));
}

TEST_F(Versions, LoseNoContentWithADamagedOrMissingNote) {
    keepAs("a.eqs", Bytes(300, 1));
    keepAs("b.eqs", Bytes(300, 2));
    const auto notes = stored(".txt");
    ASSERT_THAT(notes, SizeIs(2));
    Bytes text = readFile(notes[0]);
    text[text.size() / 2] ^= 4U;
    writeFile(notes[0], text);
    std::filesystem::remove(notes[1]);

    const auto list = versions_.list();
    ASSERT_THAT(list, SizeIs(2));
    for (const KeptVersion& version : list) {
        EXPECT_TRUE(version.path.empty());
        EXPECT_EQ(version.size, 300U);
        EXPECT_EQ(version.kind, FileKind::settings);
        EXPECT_GT(version.time, WallTime{}) << "the date of the file";
        EXPECT_EQ(versions_.bringBack(version.id), BroughtBack::noPlace);
    }
    EXPECT_THAT(contents(), ::testing::ElementsAre(Bytes(300, 2), Bytes(300, 1)));
    EXPECT_EQ(versions_.bringBack(list[1].id, file("c.eqs")), BroughtBack::done);
    EXPECT_SAME_BYTES(readFile(file("c.eqs")), Bytes(300, 1));
    keepAs("b.eqs", Bytes(300, 3));
    EXPECT_THAT(contents(), ::testing::ElementsAre(Bytes(300, 3), Bytes(300, 2), Bytes(300, 1)));
}

TEST_F(Versions, NeverGiveOtherBytesThanThoseThatWereKept) {
    keepAs("car.eqs", Bytes(300, 1));
    const std::string id = versions_.list().front().id;
    writeFile(stored(".eqs").front(), Bytes(300, 7));
    EXPECT_EQ(versions_.read(id), std::nullopt);
    writeFile(stored(".eqs").front(), Bytes(299, 1));
    EXPECT_EQ(versions_.read(id), std::nullopt);
    writeFile(file("car.eqs"), Bytes(10, 3));
    EXPECT_EQ(versions_.bringBack(id), BroughtBack::damaged);
    EXPECT_SAME_BYTES(readFile(file("car.eqs")), Bytes(10, 3));
}

TEST_F(Versions, PassByWhatElseLiesInTheFolder) {
    keepAs("car.eqs", Bytes(10, 1));
    const std::string id = versions_.list().front().id;
    writeFile(folder_ / "data" / "readme.eqs", Bytes(10, 2));
    writeFile(folder_ / "data" / "0000000003-5e1f00ab.eqs", Bytes(10, 2));
    writeFile(folder_ / "data" / "-000000003-5E1F00AB.eqs", Bytes(10, 2));
    writeFile(folder_ / "data" / "0000000003-5E1F00AB.exe", Bytes(10, 2));
    writeFile(folder_.path() / "data" / nameThatIsNoText(".eqs"), Bytes(10, 2));
    std::filesystem::create_directory(folder_ / "data" / "0000000004-5E1F00AB.eqs");
    ASSERT_THAT(versions_.list(), SizeIs(1));
    EXPECT_EQ(versions_.list().front().id, id);
    for (const char* bad : {"", "..", "../car", "0000000009-00000000", "readme", "0000000004-5E1F00AB"}) {
        EXPECT_EQ(versions_.read(bad), std::nullopt) << bad;
        EXPECT_EQ(versions_.bringBack(bad, file("out.eqs")), BroughtBack::unknown) << bad;
    }
    EXPECT_FALSE(std::filesystem::exists(file("out.eqs")));
    keepAs("car.eqs", Bytes(10, 4));
    EXPECT_TRUE(std::filesystem::exists(folder_ / "data" / "readme.eqs")) << "not ours";
}

TEST_F(Versions, ClearAwayWhatAnEndInTheMiddleLeft) {
    keepAs("car.eqs", Bytes(10, 1));
    keepAs("car.eqs", Bytes(10, 2));
    writeFile(folder_ / "data" / "0000000001-00000001.txt", Bytes(10, 2));
    writeFile(folder_ / "data" / "0000000001-00000001.eqs.part-77", Bytes(10, 2));
    keepAs("car.eqs", Bytes(10, 3));
    EXPECT_THAT(stored(""), SizeIs(6));
    EXPECT_THAT(versions_.list(), SizeIs(3));
}

TEST_F(Versions, TakeFilesUpToTheirLimitAndSayThatALargerOneIsNotKept) {
    Bytes large(KeptVersions::largestFile, 0x5A);
    large.back() = 1;
    const auto write = [&] {
        std::ofstream out(file("large.eqs"), std::ios::binary | std::ios::trunc);
        out.write(reinterpret_cast<const char*>(large.data()), static_cast<std::streamsize>(large.size()));
    };
    write();
    EXPECT_TRUE(versions_.keep(file("large.eqs"), settings));
    ASSERT_THAT(versions_.list(), SizeIs(1));
    EXPECT_TRUE(versions_.read(versions_.list().front().id) == large);
    large.push_back(2);
    write();
    EXPECT_FALSE(versions_.keep(file("large.eqs"), settings));
    EXPECT_THAT(versions_.list(), SizeIs(1));
}

TEST_F(Versions, KeepNamesBeyondAscii) {
    const auto path = folder_.path() / std::filesystem::path(u"\u00E4\u20AC \U0001F600 100%.eqs");
    writeFile(path, Bytes(20, 6));
    EXPECT_TRUE(versions_.keep(path, settings));
    ASSERT_THAT(versions_.list(), SizeIs(1));
    EXPECT_EQ(versions_.list().front().path, path);
    writeFile(path, Bytes(30, 7));
    EXPECT_EQ(versions_.bringBack(versions_.list().front().id), BroughtBack::done);
    EXPECT_SAME_BYTES(readFile(path), Bytes(20, 6));
}

TEST_F(Versions, KnowTheWholePathOfAFileThatWasNamedFromHere) {
    const auto here = std::filesystem::current_path();
    std::filesystem::current_path(folder_.path());
    writeFile("near.eqs", Bytes(20, 6));
    EXPECT_TRUE(versions_.keep("near.eqs", settings));
    std::filesystem::current_path(here);
    ASSERT_THAT(versions_.list(), SizeIs(1));
    EXPECT_TRUE(std::filesystem::equivalent(versions_.list().front().path, file("near.eqs")));
}

TEST_F(Versions, BroughtBackMakeTheFileExactlyWhatItWasAndKeepWhatStoodThere) {
    for (const std::size_t size : {0U, 300U, 10600U, 12000U}) {
        keepAs("car.eqs", Bytes(size, 1));
        writeFile(file("car.eqs"), Bytes(11000, 2));
        const std::string id = versions_.list().front().id;
        EXPECT_EQ(versions_.bringBack(id), BroughtBack::done);
        EXPECT_SAME_BYTES(readFile(file("car.eqs")), Bytes(size, 1));
        EXPECT_SAME_BYTES(contents().front(), Bytes(11000, 2));

        EXPECT_EQ(versions_.bringBack(versions_.list().front().id), BroughtBack::done) << "and back again";
        EXPECT_SAME_BYTES(readFile(file("car.eqs")), Bytes(11000, 2));
        EXPECT_SAME_BYTES(contents().front(), Bytes(size, 1));
    }
}

TEST_F(Versions, BroughtBackWhereTheyStandAnywayChangeNothing) {
    keepAs("car.eqs", Bytes(50, 1));
    keepAs("car.eqs", Bytes(60, 2));
    const auto before = versions_.list();
    const auto written = std::filesystem::last_write_time(file("car.eqs"));
    EXPECT_EQ(versions_.bringBack(before[0].id), BroughtBack::alreadyThere);
    EXPECT_THAT(versions_.list(), SizeIs(2));
    EXPECT_EQ(std::filesystem::last_write_time(file("car.eqs")), written);
}

TEST_F(Versions, BringBackAFileThatIsGoneAndWriteToAnotherPlace) {
    keepAs("car.eqs", Bytes(50, 1));
    std::filesystem::remove(file("car.eqs"));
    const std::string id = versions_.list().front().id;
    EXPECT_EQ(versions_.bringBack(id), BroughtBack::done);
    EXPECT_SAME_BYTES(readFile(file("car.eqs")), Bytes(50, 1));
    EXPECT_THAT(versions_.list(), SizeIs(1)) << "nothing stood there";

    writeFile(file("other.eqs"), Bytes(70, 3));
    EXPECT_EQ(versions_.bringBack(id, file("other.eqs")), BroughtBack::done);
    EXPECT_SAME_BYTES(readFile(file("other.eqs")), Bytes(50, 1));
    ASSERT_THAT(versions_.list(), SizeIs(2));
    EXPECT_EQ(versions_.list().front().path, file("other.eqs"));
    EXPECT_EQ(versions_.bringBack(id, file("no folder") / "a.eqs"), BroughtBack::notWritten);
    EXPECT_EQ(versions_.bringBack(id, folder_.path()), BroughtBack::notWritten);
}

TEST_F(Versions, TheOldestOfTwentyIsNotDroppedWhileItIsBroughtBack) {
    for (int i = 0; i < 20; ++i) {
        keepAs("car.eqs", Bytes(40, static_cast<std::uint8_t>(i)));
    }
    writeFile(file("car.eqs"), Bytes(40, 99));
    const std::string oldest = versions_.list().back().id;
    ASSERT_SAME_BYTES(contents().back(), Bytes(40, 0));
    EXPECT_EQ(versions_.bringBack(oldest), BroughtBack::done);
    const auto all = contents();
    ASSERT_THAT(all, SizeIs(20));
    EXPECT_SAME_BYTES(all.front(), Bytes(40, 99));
    EXPECT_SAME_BYTES(all.back(), Bytes(40, 0)) << "had the write failed, it would be there still";
    EXPECT_SAME_BYTES(all[18], Bytes(40, 2)) << "the next older one went";
}

TEST_F(Versions, WithoutAFolderKeepNothingAndSaySo) {
    KeptVersions none({});
    writeFile(file("car.eqs"), Bytes(50, 1));
    EXPECT_FALSE(none.keep(file("car.eqs"), settings));
    EXPECT_TRUE(none.keep(file("missing.eqs"), settings));
    EXPECT_THAT(none.list(), IsEmpty());
    writeFile(file("data"), Bytes(5, 5));
    EXPECT_FALSE(versions_.keep(file("car.eqs"), settings)) << "a file in the place of the folder";
    EXPECT_THAT(versions_.list(), IsEmpty());
}

}  // namespace
}  // namespace tessavo::test
