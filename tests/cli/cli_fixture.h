#pragma once

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

#include "cli/command_line.h"

namespace tessavo::cli {

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

/// A folder of its own for each test, gone afterwards.
class CommandTest : public testing::Test {
 protected:
    CommandTest() {
        const auto* info = testing::UnitTest::GetInstance()->current_test_info();
        const auto* seed = static_cast<const void*>(this);
        std::ostringstream name;
        name << "tessavo-" << info->test_suite_name() << "-" << info->name() << "-" << seed;
        std::string flat = name.str();
        for (char& character : flat) {
            character = character == '/' ? '_' : character;
        }
        folder_ = std::filesystem::temp_directory_path() / flat;
        std::filesystem::remove_all(folder_);
        std::filesystem::create_directories(folder_);
    }
    ~CommandTest() override {
        std::error_code error;
        std::filesystem::remove_all(folder_, error);
    }

    [[nodiscard]] std::string path(const std::string& name) const { return (folder_ / name).string(); }

    /// A fresh settings file.
    [[nodiscard]] std::string fresh(const std::string& name = "fresh.eqs") const {
        const CommandResult result = run({"new", "--force", path(name)});
        EXPECT_EQ(result.code, 0) << result.err;
        return path(name);
    }

    [[nodiscard]] static Bytes read(const std::string& file) {
        std::ifstream in(file, std::ios::binary);
        return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    }

    static void write(const std::string& file, const Bytes& bytes) {
        std::ofstream out(file, std::ios::binary | std::ios::trunc);
        out.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
        ASSERT_TRUE(out.flush().good());
    }

    /// Names of everything in the test's folder.
    [[nodiscard]] std::vector<std::string> files() const {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(folder_)) {
            names.push_back(entry.path().filename().string());
        }
        std::sort(names.begin(), names.end());
        return names;
    }

    std::filesystem::path folder_;
};

}  // namespace tessavo::cli
