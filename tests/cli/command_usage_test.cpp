#include <algorithm>
#include <array>
#include <gmock/gmock.h>

#include "cli/cli_fixture.h"
#include "cli/command_table.h"
#include "cli/edit_script.h"

namespace tessavo::test {

using namespace cli;

namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

constexpr std::array commands{
    "new",     "show",           "diff",           "edit",        "export", "import",  "curve",   "response",
    "filters", "import-filters", "export-filters", "measurement", "align",  "recover", "ports",   "versions",
    "clip",    "live",           "write-set",      "read-set",    "flash",  "backup",  "restore", "verify"};

TEST(CommandUsage, VersionNamesTheProgram) {
    const CommandResult result = run({"--version"});
    EXPECT_EQ(result.code, 0);
    const std::string name = "tessavoctl ";
    ASSERT_TRUE(result.out.starts_with(name)) << result.out;
    const std::string version = result.out.substr(name.size());
    EXPECT_EQ(std::ranges::count(version, '.'), 2) << version;
    EXPECT_EQ(version.find_first_not_of("0123456789."), version.size() - 1) << version;
    EXPECT_TRUE(version.ends_with('\n')) << version;
    EXPECT_THAT(result.err, IsEmpty());
}

TEST(CommandUsage, HelpListsEveryCommand) {
    const CommandResult result = run({"--help"});
    EXPECT_EQ(result.code, 0);
    for (const char* command : commands) {
        EXPECT_THAT(result.out, HasSubstr(std::string("\n  ") + command)) << command;
    }
    EXPECT_THAT(result.out, HasSubstr("Example:\n  tessavoctl "));
}

TEST(CommandUsage, EveryCommandHasHelpWithAnExampleOfItself) {
    for (const std::string command : commands) {
        const CommandResult result = run({command, "--help"});
        EXPECT_EQ(result.code, 0) << command;
        EXPECT_THAT(result.out, HasSubstr("Example:\n  tessavoctl " + command)) << command;
        EXPECT_THAT(result.err, IsEmpty()) << command;
    }
}

TEST(CommandUsage, TheTableHoldsEveryCommandInTheOrderOfTheHelp) {
    ASSERT_EQ(commandTable().size(), commands.size());
    for (std::size_t i = 0; i < commands.size(); ++i) {
        EXPECT_EQ(commandTable()[i].name, commands.at(i));
    }
    const std::string help = run({"--help"}).out;
    std::size_t position = 0;
    for (const CommandRow& row : commandTable()) {
        position = help.find("\n  " + row.name + " ", position);
        ASSERT_NE(position, std::string::npos) << row.name;
        EXPECT_EQ(help.find(row.purpose, position), help.find_first_not_of(' ', help.find(' ', position + 3)))
            << row.name;
    }
}

class CommandExamples : public CommandTest {};

TEST_F(CommandExamples, AreCallsThatTheParserTakes) {
    for (const CommandRow& row : commandTable()) {
        std::vector<std::string> words;
        std::istringstream example(row.example);
        for (std::string word; example >> word;) {
            // Nothing may be written outside the folder, and no real target be asked.
            words.push_back(word.find('.') == std::string::npos ? word : path(word));
        }
        ASSERT_FALSE(words.empty()) << row.name;
        EXPECT_EQ(words.front(), row.name);
        std::ranges::replace(words, "ttyUSB0", path("no-port"));
        const CommandResult result = run(words);
        EXPECT_NE(result.code, exit_code::wrongUsage) << row.example << "\n" << result.err;
    }
}

TEST(CommandUsage, TheHelpOfEditListsEveryWordOfAScript) {
    const CommandResult result = run({"edit", "--help"});
    for (const ScriptWord& word : scriptWords()) {
        EXPECT_THAT(result.out, HasSubstr("\n  " + word.usage + "\n"));
    }
}

using WrongUsage = std::vector<std::string>;

class CommandWrongUsage : public testing::TestWithParam<WrongUsage> {};

TEST_P(CommandWrongUsage, EndsWithTwoAndSaysWhy) {
    const CommandResult result = run(GetParam());
    EXPECT_EQ(result.code, 2);
    EXPECT_THAT(result.out, IsEmpty());
    EXPECT_THAT(result.err, StartsWith("tessavoctl: "));
    EXPECT_THAT(result.err, HasSubstr("--help"));
}

INSTANTIATE_TEST_SUITE_P(
    Files, CommandWrongUsage,
    testing::Values(WrongUsage{}, WrongUsage{"paint"}, WrongUsage{"--loud"}, WrongUsage{""},
                    WrongUsage{"new"}, WrongUsage{"new", "a", "b"}, WrongUsage{"show"},
                    WrongUsage{"show", "a", "--set", "0"}, WrongUsage{"show", "a", "--set", "6"},
                    WrongUsage{"show", "a", "--set", "one"}, WrongUsage{"show", "a", "--set"},
                    WrongUsage{"show", "a", "--xml"}, WrongUsage{"diff", "a"},
                    WrongUsage{"diff", "a", "b", "c"}, WrongUsage{"edit", "a"},
                    WrongUsage{"edit", "--script", "s"},
                    WrongUsage{"edit", "a", "--script", "s", "--filter-mode", "FIR"},
                    WrongUsage{"edit", "a", "--script", "s", "--filter-mode", "0"},
                    WrongUsage{"export", "a", "--set", "1", "-o", "b", "--input-eq", "ON"},
                    WrongUsage{"export", "a", "--set", "1", "-o", "b", "--input-eq", ""},
                    WrongUsage{"live", "a", "--set", "1", "--port", "p", "--input-eq", "1"},
                    WrongUsage{"edit", "a", "--script", "s", "--input-eq", "on"},
                    WrongUsage{"export", "a", "--output", "b"}, WrongUsage{"export", "a", "--set", "1"},
                    WrongUsage{"import", "a", "--set", "1", "--output", "b"},
                    WrongUsage{"import", "--into", "a", "--set", "1", "--output", "b"},
                    WrongUsage{"curve", "a", "--set", "1"}, WrongUsage{"curve", "a", "--channel", "1"},
                    WrongUsage{"curve", "a", "--set", "1", "--channel", "0"},
                    WrongUsage{"curve", "a", "--set", "1", "--channel", "9"},
                    WrongUsage{"curve", "a", "--set", "1", "--channel", "1", "--input"}));

INSTANTIATE_TEST_SUITE_P(Measurements, CommandWrongUsage,
                         testing::Values(WrongUsage{"measurement"}, WrongUsage{"measurement", "--json"},
                                         WrongUsage{"measurement", "a", "--smoothing", "1/0"},
                                         WrongUsage{"measurement", "a", "--smoothing", "1/96"},
                                         WrongUsage{"measurement", "a", "--smoothing", "1/49"},
                                         WrongUsage{"measurement", "a", "--smoothing", "2/3"},
                                         WrongUsage{"measurement", "a", "--smoothing", ""},
                                         WrongUsage{"measurement", "a", "--smoothing"},
                                         WrongUsage{"measurement", "a", "--columns", "0,1"},
                                         WrongUsage{"measurement", "a", "--columns", "1,1"},
                                         WrongUsage{"measurement", "a", "--columns", "1"},
                                         WrongUsage{"measurement", "a", "--columns", "1,2,3"},
                                         WrongUsage{"measurement", "a", "--columns", "f,l"},
                                         WrongUsage{"measurement", "a", "--calibration"},
                                         WrongUsage{"measurement", "a", "--set", "1"}));

INSTANTIATE_TEST_SUITE_P(
    Responses, CommandWrongUsage, testing::ValuesIn([] {
        std::vector<WrongUsage> wrong{
            {"response"},
            {"response", "a"},
            {"response", "a", "--set", "1"},
            {"response", "a", "--channel", "1"},
            {"response", "a", "--sum", "1,2"},
            {"response", "--set", "1", "--channel", "1"},
            {"response", "a", "b", "--set", "1", "--channel", "1"},
            {"response", "a", "--set", "0", "--channel", "1"},
            {"response", "a", "--set", "6", "--channel", "1"},
            {"response", "a", "--set", "1", "--channel", "1", "--sum", "1,2"},
            {"response", "a", "--set", "1", "--channel", "1", "--filter-mode", "FIR"},
            {"response", "a", "--set", "1", "--channel", "1", "--input"},
            {"response", "a", "--set", "1", "--channel", "1", "--output", "b"},
            {"response", "a", "--set", "1", "--channel", "1", "--at", "100", "--points", "10"}};
        for (const char* channel : {"0", "9", "-1", "1.5", "one", "", "1,2"}) {
            wrong.push_back({"response", "a", "--set", "1", "--channel", channel});
        }
        for (const char* sum :
             {"", ",", "1,", ",1", "1,,2", "0", "9", "1,9", "1,1", "-1", "1.0", "1 2", "all"}) {
            wrong.push_back({"response", "a", "--set", "1", "--sum", sum});
        }
        for (const char* at : {"", ",", "100,", ",100", "100,,200", "-1", "100,-0.001", "inf", "nan", "1e999",
                               "0x10", "1k", "100 200", "100;200", "+100", " 100", "1,5.5.5"}) {
            wrong.push_back({"response", "a", "--set", "1", "--channel", "1", "--at", at});
        }
        for (const char* points : {"", "0", "1", "-5", "2.5", "100001", "99999999999999999999", "many"}) {
            wrong.push_back({"response", "a", "--set", "1", "--channel", "1", "--points", points});
        }
        return wrong;
    }()));

INSTANTIATE_TEST_SUITE_P(
    Ports, CommandWrongUsage,
    testing::Values(WrongUsage{"ports", "x"}, WrongUsage{"versions"}, WrongUsage{"versions", "--port"},
                    WrongUsage{"clip", "x", "--port", "p"}, WrongUsage{"live", "a", "--set", "1"},
                    WrongUsage{"live", "a", "--port", "p"}, WrongUsage{"live", "--set", "1", "--port", "p"},
                    WrongUsage{"write-set", "0", "a", "--set", "1", "--port", "p"},
                    WrongUsage{"write-set", "6", "a", "--set", "1", "--port", "p"},
                    WrongUsage{"write-set", "Default", "a", "--set", "1", "--port", "p"},
                    WrongUsage{"write-set", "a", "--set", "1", "--port", "p"},
                    WrongUsage{"write-set", "1", "a", "--port", "p"},
                    WrongUsage{"read-set", "1", "--set", "1", "--output", "o", "--port", "p"},
                    WrongUsage{"read-set", "1", "--into", "a", "--output", "o", "--port", "p"},
                    WrongUsage{"read-set", "1", "--into", "a", "--set", "1", "--port", "p"},
                    WrongUsage{"read-set", "7", "--into", "a", "--set", "1", "--output", "o", "--port", "p"},
                    WrongUsage{"flash", "--port", "p"}, WrongUsage{"flash", "a"}));

}  // namespace
}  // namespace tessavo::test
