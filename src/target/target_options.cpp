#include "target/target_options.h"

#include <CLI/CLI.hpp>
#include <string_view>
#include <vector>

#include "base/number_text.h"

namespace tessavo {

namespace {

constexpr const char* description =
    "Plays a target on a pseudo-terminal. The first line on standard output is the port's path;\n"
    "Ctrl-C ends the target.";

constexpr const char* examples = R"(
Examples:
  tessavo-target
      A fresh target at full speed.
  tessavo-target --state ~/target --baud 115200 --verbose
      Keeps its sets between runs, is as slow as the real line, tells what happens.
  tessavo-target --fault junk=2 --fault negative=3
      Sends two junk bytes before each answer and refuses the third block.
  echo 1000000010000000100000001000000000 | tessavo-target --clip -
      Shows the first channel of each stage clipping.
)";

CLI::Option* addVersion(CLI::App& program, const std::string& name, std::uint32_t& version,
                        const std::string& what) {
    return program
        .add_option_function<std::string>(
            name,
            [&version, name](const std::string& text) {
                const auto value = prefixedNumber<std::uint32_t>(text);
                if (!value) {
                    throw CLI::ValidationError(
                        name, "\"" + text + "\" is no number of 32 bits, decimal or like 0x00010006");
                }
                version = *value;
            },
            what + " (" + versionText(version) + ")")
        ->type_name("NUMBER");
}

void addFaults(CLI::App& program, FaultPlan& plan) {
    program
        .add_option_function<std::vector<std::string>>(
            "--fault",
            [&plan](const std::vector<std::string>& texts) {
                for (const std::string& text : texts) {
                    const std::string problem = addFault(plan, text);
                    if (!problem.empty()) {
                        throw CLI::ValidationError("--fault", problem);
                    }
                }
            },
            "Makes trouble; see below. May be given several times")
        ->type_name("NAME[=N]")
        ->allow_extra_args(false);
}

}  // namespace

std::variant<TargetOptions, TargetUsage> parseTargetOptions(int count, const char* const* arguments) {
    constexpr std::uint32_t slowest = 50;
    constexpr std::uint32_t fastest = 4000000;
    TargetOptions options;
    CLI::App program{description, "tessavo-target"};
    program.set_version_flag("--version", "tessavo-target " TESSAVO_VERSION, "Prints the version and ends");
    program.set_help_flag("-h,--help", "Prints this help and ends");
    program.footer("\nFaults, in every connection (N where it may be left out in brackets):\n" + faultHelp() +
                   examples);

    program.add_option("--state", options.stateDirectory, "Keeps the sets and the software image in DIR")
        ->type_name("DIR");
    program
        .add_option_function<std::string>(
            "--clip",
            [&options](const std::string& text) {
                if (text != "random" && text != "-") {
                    throw CLI::ValidationError("--clip", "\"" + text + R"(" is neither "random" nor "-")");
                }
                options.clip = text == "-" ? ClipChoice::standardInput : ClipChoice::random;
            },
            "Clip states: random, or patterns of 34 characters 0 or 1 from standard input (-), spaces\n"
            "ignored, one line for each request; the last one stays")
        ->type_name("random|-");
    program.add_option("--baud", options.baud, "Paces both directions like a line of this speed (no pace)")
        ->type_name("BIT/S")
        ->check(CLI::Range(slowest, fastest));
    addFaults(program, options.faults);
    addVersion(program, "--hardware-version", options.versions.hardware, "Hardware version to report");
    addVersion(program, "--software-version", options.versions.software, "Software version to report");
    program.add_flag("--verbose", options.verbose, "Tells on standard error what happens");

    try {
        program.parse(count, arguments);
    } catch (const CLI::ParseError& error) {
        std::ostringstream output;
        std::ostringstream errors;
        const int code = program.exit(error, output, errors);
        return TargetUsage{.wrong = code != 0, .text = output.str() + errors.str()};
    }
    return options;
}

}  // namespace tessavo
