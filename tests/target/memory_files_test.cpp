#include "target/memory_files.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/device_host.h"
#include "support/temporary_folder.h"

namespace tessavo::test {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::IsEmpty;

/// A directory of the test's own, and a log.
class MemoryFilesTest : public testing::Test {
 protected:
    void write(const std::string& name, const Bytes& bytes) const { writeFile(directory / name, bytes); }
    Bytes read(const std::string& name) const { return readFile(directory / name); }
    TargetMemory load() {
        TargetMemory memory = TargetMemory::holding(imageOf(0));
        MemoryFiles(directory).load(memory, [this](TargetLogKind kind, std::string_view text) {
            EXPECT_EQ(kind, TargetLogKind::trouble);
            troubles.emplace_back(text);
        });
        return memory;
    }
    std::size_t fileCount() const {
        return static_cast<std::size_t>(
            std::distance(fs::directory_iterator(directory), fs::directory_iterator()));
    }

    TemporaryFolder folder;
    fs::path directory = folder.path();
    std::vector<std::string> troubles;
};

TEST_F(MemoryFilesTest, AnEmptyDirectoryIsAFreshTarget) {
    const TargetMemory memory = load();
    EXPECT_EQ(memory.sets, TargetMemory::holding(imageOf(0)).sets);
    EXPECT_TRUE(memory.software.empty());
    EXPECT_THAT(troubles, IsEmpty());
}

TEST_F(MemoryFilesTest, WhatIsSavedIsThereInTheNextRun) {
    const MemoryFiles files(directory);
    for (std::size_t set = 0; set < targetSetCount; ++set) {
        EXPECT_EQ(files.saveSet(set, imageOf(static_cast<std::uint8_t>(set + 1))), "");
    }
    EXPECT_EQ(files.saveSoftware(Bytes{1, 2, 3}), "");
    const TargetMemory memory = load();
    for (std::size_t set = 0; set < targetSetCount; ++set) {
        EXPECT_EQ(memory.sets[set], imageOf(static_cast<std::uint8_t>(set + 1)));
    }
    EXPECT_EQ(memory.live, memory.sets[0]);
    EXPECT_EQ(memory.software, (Bytes{1, 2, 3}));
    EXPECT_THAT(troubles, IsEmpty());
    EXPECT_EQ(fileCount(), targetSetCount + 1) << "no temporary files stay";
}

TEST_F(MemoryFilesTest, FilesAreRawImages) {
    EXPECT_EQ(MemoryFiles(directory).saveSet(0, imageOf(7)), "");
    EXPECT_EQ(MemoryFiles(directory).saveSet(5, imageOf(8)), "");
    const ImageBytes seven = imageOf(7);
    EXPECT_EQ(read("default.bin"), Bytes(seven.begin(), seven.end()));
    EXPECT_EQ(read("set5.bin").size(), 3384U);
}

TEST_F(MemoryFilesTest, FilesOfAnotherSizeAreToldAndLeftOut) {
    write("set1.bin", {});
    write("set2.bin", Bytes(3383, 1));
    write("set3.bin", Bytes(3385, 1));
    write("set4.bin", Bytes(100000, 1));
    write("set5.bin", Bytes(3384, 1));
    const TargetMemory memory = load();
    for (std::size_t set = 0; set < 5; ++set) {
        EXPECT_EQ(memory.sets[set], imageOf(0)) << set;
    }
    EXPECT_EQ(memory.sets[5][3383], 1) << "the whole one is taken";
    ASSERT_EQ(troubles.size(), 4U);
    EXPECT_THAT(troubles[0], testing::AllOf(HasSubstr("set1.bin"), HasSubstr("0 bytes")));
    EXPECT_THAT(troubles[1], HasSubstr("3383 bytes"));
    EXPECT_THAT(troubles[2], HasSubstr("3385 bytes"));
    EXPECT_THAT(troubles[3], HasSubstr("100000 bytes"));
    EXPECT_EQ(read("set2.bin").size(), 3383U) << "nothing is lost before the set is saved";
}

TEST_F(MemoryFilesTest, DirectoriesInTheFilesPlaceAreTold) {
    fs::create_directory(directory / "set1.bin");
    fs::create_directory(directory / "software.bin");
    const TargetMemory memory = load();
    EXPECT_EQ(memory.sets[1], imageOf(0));
    EXPECT_EQ(troubles.size(), 2U);
    write("set1.bin/inside", {1});
    EXPECT_THAT(MemoryFiles(directory).saveSet(1, imageOf(1)), HasSubstr("set1.bin"));
    EXPECT_EQ(fileCount(), 2U) << "a failed save leaves nothing behind";
}

TEST_F(MemoryFilesTest, SoftwareTooLargeIsTold) {
    write("software.bin", Bytes(524288, 3));
    EXPECT_EQ(load().software.size(), 524288U);
    EXPECT_THAT(troubles, IsEmpty());
    write("software.bin", Bytes(524289, 3));
    EXPECT_TRUE(load().software.empty());
    EXPECT_EQ(troubles.size(), 1U);
}

TEST_F(MemoryFilesTest, AnOlderLongerFileIsReplacedAsAWhole) {
    write("set1.bin", Bytes(9000, 1));
    write("set1.bin.new", Bytes(9000, 2));
    write("software.bin", Bytes(9000, 1));
    const MemoryFiles files(directory);
    EXPECT_EQ(files.saveSet(1, imageOf(4)), "");
    EXPECT_EQ(files.saveSoftware(Bytes(10, 9)), "");
    EXPECT_EQ(load().sets[1], imageOf(4));
    EXPECT_EQ(read("software.bin"), Bytes(10, 9));
    EXPECT_THAT(troubles, IsEmpty());
}

TEST_F(MemoryFilesTest, ADirectoryThatCannotBeIsRefused) {
    write("file", {1});
    EXPECT_EQ(MemoryFiles(directory / "new" / "deeper").prepare(), "");
    EXPECT_TRUE(fs::is_directory(directory / "new" / "deeper"));
    EXPECT_EQ(MemoryFiles(directory).prepare(), "");
    EXPECT_THAT(MemoryFiles(directory / "file").prepare(), HasSubstr("cannot use"));
    EXPECT_THAT(MemoryFiles(directory / "file" / "below").prepare(), HasSubstr("cannot use"));
}

TEST_F(MemoryFilesTest, TheDeviceKeepsWhatItSaves) {
    const MemoryFiles files(directory);
    DeviceHost host({.files = &files});
    host.push(liveFrame(imageOf(6)));
    EXPECT_EQ(host.push(saveFrame(3, imageOf(6))), positive);
    host.push(frameOf(frame_type::block1k, 1, Bytes(1024, 8)));
    host.exchange(disconnect);
    const TargetMemory memory = load();
    EXPECT_EQ(memory.sets[3], imageOf(6));
    EXPECT_EQ(memory.software, Bytes(1024, 8));
}

TEST_F(MemoryFilesTest, ASetThatCannotBeKeptIsRefused) {
    const MemoryFiles files(directory);
    DeviceHost host({.files = &files});
    host.push(liveFrame(imageOf(6)));
    fs::remove_all(directory);
    EXPECT_EQ(host.push(saveFrame(3, imageOf(6))), negative);
    EXPECT_EQ(host.device.memory().sets[3], imageOf(0));
    host.push(frameOf(frame_type::block1k, 1, Bytes(1024, 8)));
    EXPECT_EQ(host.exchange(disconnect), positive);
    EXPECT_EQ(host.device.memory().software.size(), 1024U);
    const auto told = std::count_if(host.lines.begin(), host.lines.end(),
                                    [](const auto& line) { return line.first == TargetLogKind::trouble; });
    EXPECT_EQ(told, 2);
}

}  // namespace
}  // namespace tessavo::test
