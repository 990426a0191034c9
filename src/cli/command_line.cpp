#include "cli/command_line.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <exception>
#include <ostream>

#include "cli/arguments.h"
#include "cli/command_table.h"

namespace tessavo::cli {

namespace {

/// The program's commands and options, and the command that was chosen once parse() is through.
class Parser {
 public:
    Parser();

    /// Throws what the parser library throws.
    void parse(std::vector<std::string> arguments);

    [[nodiscard]] std::string help() const { return app_.help(); }
    [[nodiscard]] std::string version() const { return app_.version(); }
    [[nodiscard]] const Arguments& arguments() const { return arguments_; }
    [[nodiscard]] Command chosen() const { return command_; }
    [[nodiscard]] bool quiet() const { return quiet_; }

 private:
    void add(const CommandRow& row);

    CLI::App app_{"Edits, shows and exchanges the settings of the signal processor.", "tessavoctl"};
    Arguments arguments_;
    Command command_ = nullptr;
    bool quiet_ = false;
};

Parser::Parser() {
    app_.set_version_flag("--version", "tessavoctl " TESSAVO_VERSION);
    app_.add_flag("-q,--quiet", quiet_, "Print only errors on standard error");
    app_.require_subcommand(1);
    app_.fallthrough();
    app_.allow_windows_style_options(false);
    app_.footer(
        "Example:\n  tessavoctl new fresh.eqs\n\n'tessavoctl COMMAND --help' tells more. Exit codes: 0 done, "
        "1 refused or failed, 2 wrong usage.");
    for (const CommandRow& row : commandTable()) {
        add(row);
    }
}

void Parser::add(const CommandRow& row) {
    CLI::App* added = app_.add_subcommand(row.name, row.purpose);
    added->allow_windows_style_options(false);
    added->footer("Example:\n  tessavoctl " + row.example + (row.more.empty() ? "" : "\n\n" + row.more));
    added->callback([this, run = row.run] { command_ = run; });
    for (const Option& option : row.options) {
        option(*added, arguments_);
    }
}

void Parser::parse(std::vector<std::string> arguments) {
    std::reverse(arguments.begin(), arguments.end());
    app_.parse(std::move(arguments));
}

// What was printed counts only when it has left the program.
int codeAfterPrinting(int code, const Console& console, Reporter& reporter) {
    console.out.flush();
    if (console.out) {
        return code;
    }
    reporter.error("cannot write to standard output");
    return exit_code::failed;
}

int runCommand(const Parser& parser, const Console& console, Reporter& reporter) {
    reporter.setQuiet(parser.quiet());
    const int code = parser.chosen()(parser.arguments(), {console, reporter});
    return codeAfterPrinting(code, console, reporter);
}

}  // namespace

int runCommandLine(const std::vector<std::string>& arguments, const Console& console) {
    Reporter reporter(console);
    try {
        Parser parser;
        try {
            parser.parse(arguments);
        } catch (const CLI::CallForVersion&) {
            console.out << parser.version() << "\n";
            return codeAfterPrinting(exit_code::done, console, reporter);
        } catch (const CLI::CallForHelp&) {
            console.out << parser.help();
            return codeAfterPrinting(exit_code::done, console, reporter);
        } catch (const CLI::ParseError& error) {
            reporter.error(error.what());
            reporter.error("try 'tessavoctl --help'");
            return exit_code::wrongUsage;
        }
        return runCommand(parser, console, reporter);
    } catch (const std::exception& error) {
        reporter.error(error.what());
        return exit_code::failed;
    }
}

}  // namespace tessavo::cli
