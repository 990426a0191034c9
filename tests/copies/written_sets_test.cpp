#include "copies/written_sets.h"

#include <chrono>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <set>
#include <thread>

#include "copies/copy_target.h"
#include "support/temporary_folder.h"

namespace tessavo::test {
namespace {

using ::testing::IsEmpty;
using ::testing::SizeIs;

class Written : public ::testing::Test {
 protected:
    bool keep(std::uint8_t set, std::uint8_t seed) {
        return written_.keep(set, "ttyUSB0", parametersOf(imageOf(seed)));
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
    WrittenSets written_{folder_ / "data", [this] { return now_ += std::chrono::seconds(1); }};
};

TEST_F(Written, KeepSetTimePortAndImage) {
    const WallTime start = now_;
    const std::string port = "tty \xC3\xA4%\n\xFF";
    EXPECT_TRUE(written_.keep(3, "COM7", parametersOf(imageOf(1))));
    EXPECT_TRUE(written_.keep(0, port, parametersOf(imageOf(2))));
    const WrittenSetList list = written_.list();
    ASSERT_THAT(list.sets, SizeIs(2));
    EXPECT_EQ(list.damaged, 0U);
    EXPECT_EQ(list.sets[0].targetSet, 0);
    EXPECT_EQ(list.sets[0].port, port);
    EXPECT_EQ(list.sets[0].time, start + std::chrono::seconds(2));
    EXPECT_EQ(bytesOf(written_.read(list.sets[0].id).value()), imageOf(2));
    EXPECT_EQ(list.sets[1].targetSet, 3);
    EXPECT_EQ(list.sets[1].port, "COM7");
    EXPECT_EQ(bytesOf(written_.read(list.sets[1].id).value()), imageOf(1));
    // The image is a file that other programs take.
    const ImageBytes image = imageOf(1);
    EXPECT_EQ(readFile(stored(".bin").front()), Bytes(image.begin(), image.end()));
}

TEST_F(Written, TheLastFiftyStay) {
    for (std::uint8_t i = 0; i < 60; ++i) {
        ASSERT_TRUE(keep(i % 6, i));
    }
    const WrittenSetList list = written_.list();
    ASSERT_THAT(list.sets, SizeIs(50));
    for (std::uint8_t i = 0; i < 50; ++i) {
        EXPECT_EQ(bytesOf(written_.read(list.sets[i].id).value()),
                  imageOf(static_cast<std::uint8_t>(59 - i)));
        EXPECT_EQ(list.sets[i].targetSet, (59 - i) % 6);
    }
    EXPECT_THAT(stored(".bin"), SizeIs(50));
    EXPECT_THAT(stored(".txt"), SizeIs(50));
}

TEST_F(Written, OneOfWhichAByteIsMissingOrAlteredIsLeftOutAndCounted) {
    for (std::uint8_t i = 0; i < 3; ++i) {
        ASSERT_TRUE(keep(i, i));
    }
    for (const std::string suffix : {".bin", ".txt"}) {
        const std::filesystem::path path = stored(suffix)[1];
        const std::string id = path.stem().string();
        const Bytes bytes = readFile(path);
        std::vector<Bytes> damaged{{}, Bytes(bytes.begin(), bytes.end() - 1), bytes, bytes, bytes};
        damaged[2].push_back(0);
        damaged[3].front() ^= 1;
        damaged[4].back() ^= 1;
        for (std::size_t i = 0; i < bytes.size(); i += 97) {
            damaged.push_back(bytes);
            damaged.back()[i] ^= 0x04;
        }
        for (const Bytes& each : damaged) {
            ASSERT_TRUE(writeFile(path, each));
            const WrittenSetList list = written_.list();
            ASSERT_THAT(list.sets, SizeIs(2));
            EXPECT_EQ(list.damaged, 1U);
            EXPECT_EQ(list.sets[0].targetSet, 2);
            EXPECT_EQ(list.sets[1].targetSet, 0);
            EXPECT_FALSE(written_.read(id).has_value());
        }
        ASSERT_TRUE(writeFile(path, bytes));
    }
    EXPECT_THAT(written_.list().sets, SizeIs(3));
    std::filesystem::remove(stored(".txt")[1]);
    EXPECT_THAT(written_.list().sets, SizeIs(2));
    EXPECT_EQ(written_.list().damaged, 1U);
    std::filesystem::remove(stored(".bin")[1]);
    EXPECT_EQ(written_.list().damaged, 0U);
}

TEST_F(Written, OtherNamesAreNoIds) {
    ASSERT_TRUE(keep(1, 1));
    for (const std::string_view id : {"", "x", "../data/x", "0000000001", "0000000001-0000000g"}) {
        EXPECT_FALSE(written_.read(id).has_value()) << id;
    }
    ASSERT_TRUE(writeFile(folder_ / "data/notes.txt", {1}));
    ASSERT_TRUE(writeFile(folder_ / "data/image.bin", {1}));
    EXPECT_THAT(written_.list().sets, SizeIs(1));
    EXPECT_EQ(written_.list().damaged, 0U);
}

TEST_F(Written, WhatIsNoSetOrHasNoFolderIsNotKept) {
    EXPECT_FALSE(keep(6, 1));
    WrittenSets nowhere({});
    EXPECT_FALSE(nowhere.keep(1, "COM1", parametersOf(imageOf(1))));
    EXPECT_THAT(nowhere.list().sets, IsEmpty());
    EXPECT_TRUE(writtenSetsFolder({}).empty());
    EXPECT_FALSE(writtenSetsFolder("data").empty());
}

TEST_F(Written, ANoteThatAnEndInTheMiddleLeftGoesBehindTheOldestThatStays) {
    ASSERT_TRUE(keep(1, 1));
    std::filesystem::remove(stored(".bin").front());
    for (std::uint8_t i = 0; i < 51; ++i) {
        ASSERT_TRUE(keep(2, i));
    }
    EXPECT_THAT(stored(".bin"), SizeIs(50));
    EXPECT_THAT(stored(".txt"), SizeIs(50));
    EXPECT_THAT(written_.list().sets, SizeIs(50));
}

TEST_F(Written, OneThatAnotherProgramIsWritingIsLeftAlone) {
    // Its note stands and its image does not, and in the mark that tells the two apart it may come first.
    ASSERT_TRUE(keep(1, 1));
    const std::filesystem::path image = stored(".bin").front();
    const std::filesystem::path aside = folder_ / "aside";
    std::filesystem::rename(image, aside);
    for (std::uint8_t i = 2; i < 12; ++i) {
        ASSERT_TRUE(keep(2, i));
    }
    std::filesystem::rename(aside, image);
    EXPECT_EQ(written_.list().damaged, 0U);
    EXPECT_THAT(written_.list().sets, SizeIs(11));
}

TEST_F(Written, TwoProgramsThatKeepAtTheSameTimeLoseNothing) {
    constexpr std::uint8_t each = 20;
    const auto keepMany = [this](std::uint8_t first) {
        WrittenSets written(folder_ / "data");
        for (std::uint8_t i = 0; i < each; ++i) {
            EXPECT_TRUE(written.keep(1, "COM1", parametersOf(imageOf(static_cast<std::uint8_t>(first + i)))));
        }
    };
    std::thread other(keepMany, std::uint8_t{100});
    keepMany(0);
    other.join();
    const WrittenSetList list = written_.list();
    EXPECT_EQ(list.damaged, 0U);
    std::set<ImageBytes> kept;
    for (const WrittenSet& set : list.sets) {
        kept.insert(bytesOf(written_.read(set.id).value()));
    }
    EXPECT_THAT(kept, SizeIs(2 * each));
}

}  // namespace
}  // namespace tessavo::test
