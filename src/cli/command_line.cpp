#include "cli/command_line.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <exception>
#include <map>
#include <memory>
#include <ostream>

#include "base/number_text.h"
#include "cli/arguments.h"
#include "cli/edit_script.h"
#include "cli/file_commands.h"
#include "cli/port_commands.h"
#include "dsp/filter_methods.h"
#include "params/channels.h"

namespace tessavo::cli {

namespace {

std::string wordList() {
    std::string text = "Its words are:";
    for (const ScriptWord& word : scriptWords()) {
        text.append("\n  ").append(word.usage);
    }
    return text +
           "\n\nselect takes channels 1 to 8 as the pages number them; elsewhere CHANNEL is the record's, "
           "BAND and CROSSOVER\ncount from 0.";
}

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
    CLI::App* add(const std::string& name, Command command, const std::string& what,
                  const std::string& example);
    void addFileCommands();
    void addPortCommands();
    CLI::Option* addFile(CLI::App* command, const std::string& what);
    void addSet(CLI::App* command, bool required);
    void addFilterMode(CLI::App* command);
    void addInputEq(CLI::App* command);
    void addOutput(CLI::App* command, const std::string& what);
    void addPort(CLI::App* command);
    void addTargetSet(CLI::App* command);

    CLI::App app_{"Edits, shows and exchanges the settings of the signal processor.", "tessavoctl"};
    Arguments arguments_;
    std::string filterMode_;
    std::string inputEq_;
    std::string targetSet_;
    Command command_ = nullptr;
    bool inputCurve_ = false;
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
    addFileCommands();
    addPortCommands();
}

CLI::App* Parser::add(const std::string& name, Command command, const std::string& what,
                      const std::string& example) {
    CLI::App* added = app_.add_subcommand(name, what);
    added->allow_windows_style_options(false);
    added->footer("Example:\n  tessavoctl " + example);
    added->callback([this, command] { command_ = command; });
    return added;
}

CLI::Option* Parser::addFile(CLI::App* command, const std::string& what) {
    return command->add_option("FILE", arguments_.file, what)->required();
}

void Parser::addSet(CLI::App* command, bool required) {
    command->add_option("--set", arguments_.set, "Set of the file, 1 to 5")
        ->check(CLI::Range(1, static_cast<int>(setCount)))
        ->type_name("N")
        ->required(required);
}

void Parser::addFilterMode(CLI::App* command) {
    const std::vector<std::string> names(filterMethodNames.begin(), filterMethodNames.end());
    command
        ->add_option("--filter-mode", filterMode_,
                     "Filter method: " + names[0] + " (the default), " + names[1] + " or " + names[2])
        ->check(CLI::IsMember(names))
        ->type_name("M");
}

void Parser::addInputEq(CLI::App* command) {
    command
        ->add_option("--input-eq", inputEq_,
                     "Input equalizer in the image: on (the default), off, or stored, as the set says")
        ->check(CLI::IsMember({"on", "off", "stored"}))
        ->type_name("on|off|stored");
}

void Parser::addOutput(CLI::App* command, const std::string& what) {
    command->add_option("-o,--output", arguments_.output, what)->type_name("FILE")->required();
}

void Parser::addPort(CLI::App* command) {
    command->add_option("--port", arguments_.port, "Serial port, as 'tessavoctl ports' names it")
        ->type_name("PORT")
        ->required();
}

void Parser::addTargetSet(CLI::App* command) {
    command->add_option("TARGET", targetSet_, "Set of the target: 1 to 5 or default")
        ->check(CLI::IsMember({"1", "2", "3", "4", "5", "default"}))
        ->type_name("N|default")
        ->required();
}

void Parser::addFileCommands() {
    CLI::App* command = add("new", runNew, "Write a settings file that holds the defaults", "new fresh.eqs");
    addFile(command, "Settings file to write; an existing one is left alone");
    command->add_flag("--force", arguments_.force, "Write over an existing file");

    command = add("show", runShow, "Show the sets of a settings file", "show car.eqs --set 1");
    addFile(command, "Settings file");
    addSet(command, false);
    command->add_flag("--json", arguments_.json, "Print everything as JSON");

    command = add("diff", runDiff, "Name every field in which two settings files differ (exit code 1 if any)",
                  "diff before.eqs after.eqs");
    addFile(command, "Settings file");
    command->add_option("OTHER", arguments_.secondFile, "Settings file to compare with")->required();

    command = add(
        "edit", runEdit, "Run an edit script on a settings file",
        "edit car.eqs --script tuning.txt --output tuned.eqs\n\nA script has one operation a line:\n"
        "  set 1\n  select 1 2\n  setVolume -3.5\n  setCrossover 0 hp 4 1\n  setCrossoverFrequency 0 80\n\n" +
            wordList());
    addFile(command, "Settings file");
    command->add_option("--script", arguments_.script, "Script, or - for standard input")
        ->type_name("FILE")
        ->required();
    addFilterMode(command);
    command->add_option("-o,--output", arguments_.output, "Settings file to write")->type_name("FILE");
    command->add_option("--image", arguments_.image, "Parameter image of the current set to write")
        ->type_name("FILE");

    command = add("export", runExport, "Write a set as a parameter image",
                  "export car.eqs --set 1 --output set1.bin");
    addFile(command, "Settings file");
    addSet(command, true);
    addFilterMode(command);
    addInputEq(command);
    addOutput(command, "Parameter image to write");

    command = add("import", runImport, "Take a parameter image into a set",
                  "import set1.bin --into car.eqs --set 2 --output both.eqs");
    command->add_option("IMAGE", arguments_.image, "Parameter image")->required();
    command->add_option("--into", arguments_.file, "Settings file")->type_name("FILE")->required();
    addSet(command, true);
    addOutput(command, "Settings file to write");

    command = add("curve", runCurve, "Print a response: 1000 lines of frequency in Hz and magnitude in dB",
                  "curve car.eqs --set 1 --channel 3");
    addFile(command, "Settings file");
    addSet(command, true);
    addFilterMode(command);
    CLI::Option_group* which = command->add_option_group("curve");
    which->add_option("--channel", arguments_.channel, "Output channel, 1 to 8")
        ->check(CLI::Range(1, static_cast<int>(channelCount)))
        ->type_name("C");
    which->add_flag("--input", inputCurve_, "Input equalizer");
    which->require_option(1);
}

void Parser::addPortCommands() {
    add("ports", runPorts, "List the serial ports", "ports");

    CLI::App* command = add("versions", runVersions, "Read the target's versions", "versions --port ttyUSB0");
    addPort(command);

    command = add("clip", runClip, "Read which stages of the target clip now", "clip --port ttyUSB0");
    addPort(command);

    command =
        add("live", runLive, "Send a set to the target's live memory", "live car.eqs --set 1 --port ttyUSB0");
    addFile(command, "Settings file");
    addSet(command, true);
    addFilterMode(command);
    addInputEq(command);
    addPort(command);

    command = add("write-set", runWriteSet, "Send a set and save it as one of the target's sets",
                  "write-set 3 car.eqs --set 1 --port ttyUSB0");
    addTargetSet(command);
    addFile(command, "Settings file");
    addSet(command, true);
    addFilterMode(command);
    addInputEq(command);
    addPort(command);

    command = add("read-set", runReadSet, "Read one of the target's sets into a settings file",
                  "read-set 3 --into car.eqs --set 2 --output read.eqs --port ttyUSB0");
    addTargetSet(command);
    command->add_option("--into", arguments_.file, "Settings file that the set is put into")
        ->type_name("FILE")
        ->required();
    addSet(command, true);
    addOutput(command, "Settings file to write");
    addPort(command);

    command =
        add("flash", runFlash, "Send a software image to the target", "flash software.bin --port ttyUSB0");
    command->add_option("IMAGE", arguments_.image, "Software image, at most 524288 bytes")->required();
    addPort(command);
}

void Parser::parse(std::vector<std::string> arguments) {
    std::reverse(arguments.begin(), arguments.end());
    app_.parse(std::move(arguments));
    const auto mode = std::find(filterMethodNames.begin(), filterMethodNames.end(), filterMode_);
    arguments_.filterMode =
        mode == filterMethodNames.end() ? 0 : static_cast<std::uint32_t>(mode - filterMethodNames.begin());
    if (!inputEq_.empty()) {
        arguments_.inputEq = inputEq_ == "on"    ? InputEq::on
                             : inputEq_ == "off" ? InputEq::off
                                                 : InputEq::stored;
    }
    // "default" is no number.
    arguments_.targetSet = wholeNumber<std::uint8_t>(targetSet_).value_or(0);
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
