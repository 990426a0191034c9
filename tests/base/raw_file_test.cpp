#include "base/raw_file.h"

#include <gtest/gtest.h>
#include <iterator>
#include <vector>

#include "support/temporary_folder.h"

namespace tessavo::test {
namespace {

using Bytes = std::vector<std::uint8_t>;

class ReplacedFile : public testing::Test {
 protected:
    [[nodiscard]] std::ptrdiff_t fileCount() const {
        return std::distance(std::filesystem::directory_iterator(folder_.path()), {});
    }

    TemporaryFolder folder_;
    std::filesystem::path file_ = folder_ / "state.bin";
};

TEST_F(ReplacedFile, IsMadeWhereNoneIs) {
    EXPECT_FALSE(replaceFile(file_, Bytes(1000, 7)));
    EXPECT_EQ(readFile(file_), Bytes(1000, 7));
    EXPECT_EQ(fileCount(), 1);
}

TEST_F(ReplacedFile, HoldsTheNewBytesAndNoMore) {
    for (const std::size_t size : {5000U, 10U, 0U, 300000U}) {
        const Bytes bytes(size, static_cast<std::uint8_t>(size / 10));
        ASSERT_FALSE(replaceFile(file_, bytes));
        EXPECT_EQ(readFile(file_), bytes) << "nothing of a longer one stays";
        EXPECT_EQ(fileCount(), 1);
    }
}

TEST_F(ReplacedFile, InAMissingFolderIsAnError) {
    EXPECT_TRUE(replaceFile(folder_ / "none" / "state.bin", Bytes(10, 1)));
    EXPECT_EQ(fileCount(), 0);
}

TEST_F(ReplacedFile, AFolderStaysWhatItIs) {
    std::filesystem::create_directory(file_);
    EXPECT_TRUE(replaceFile(file_, Bytes(10, 1)));
    EXPECT_TRUE(std::filesystem::is_directory(file_));
    EXPECT_EQ(fileCount(), 1) << "nothing is left beside it";
}

TEST_F(ReplacedFile, GoesForGood) {
    ASSERT_FALSE(replaceFile(file_, Bytes(10, 1)));
    EXPECT_FALSE(removeFile(file_));
    EXPECT_EQ(fileCount(), 0);
    EXPECT_FALSE(removeFile(file_)) << "one that is gone is no error";
    EXPECT_FALSE(removeFile(folder_ / "none" / "state.bin"));
}

TEST_F(ReplacedFile, AFolderIsNotRemoved) {
    std::filesystem::create_directory(file_);
    EXPECT_TRUE(removeFile(file_));
    EXPECT_TRUE(std::filesystem::is_directory(file_));
}

}  // namespace
}  // namespace tessavo::test
