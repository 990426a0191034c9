#include <gmock/gmock.h>

#include "cli/every_word.h"
#include "support/temporary_folder.h"

namespace tessavo::test {
namespace {

TEST(ScriptCorpus, HasAFileThatWritesEveryWordAndEveryFieldOfIt) {
    const auto bytes = readFile(TESSAVO_SCRIPT_CORPUS "/every-word");
    EXPECT_THAT(leftOutOf(std::string(bytes.begin(), bytes.end())), testing::IsEmpty());
}

}  // namespace
}  // namespace tessavo::test
