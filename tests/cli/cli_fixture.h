#pragma once

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <gtest/gtest.h>
#include <sstream>
#include <string>
#include <vector>

#include "cli/command_line.h"
#include "support/temporary_folder.h"

namespace tessavo::test {

using namespace cli;

struct CommandResult {
    int code = -1;
    std::string out;
    std::string err;
};

inline CommandResult runWith(const std::string& input, const std::vector<std::string>& arguments) {
    std::istringstream in(input);
    std::ostringstream out;
    std::ostringstream err;
    const int code = runCommandLine(arguments, {out, err, in});
    return {code, out.str(), err.str()};
}

inline CommandResult run(const std::vector<std::string>& arguments) {
    return runWith("", arguments);
}

using Bytes = std::vector<std::uint8_t>;

/// Commands with a folder of their own.
class CommandTest : public testing::Test {
 protected:
    [[nodiscard]] std::string path(const std::string& name) const { return (folder_ / name).string(); }

    /// A fresh settings file.
    [[nodiscard]] std::string fresh(const std::string& name = "fresh.eqs") const {
        const CommandResult result = run({"new", "--force", path(name)});
        EXPECT_EQ(result.code, 0) << result.err;
        return path(name);
    }

    [[nodiscard]] static Bytes read(const std::string& file) { return readFile(file); }
    static void write(const std::string& file, const Bytes& bytes) { ASSERT_TRUE(writeFile(file, bytes)); }

    /// Names of everything in the test's folder.
    [[nodiscard]] std::vector<std::string> files() const {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(folder_)) {
            names.push_back(entry.path().filename().string());
        }
        std::sort(names.begin(), names.end());
        return names;
    }

    TemporaryFolder temporary_;
    std::filesystem::path folder_ = temporary_.path();
};

}  // namespace tessavo::test
