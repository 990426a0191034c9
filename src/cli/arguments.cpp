#include "cli/arguments.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <vector>

#include "base/number_text.h"
#include "cli/number_lists.h"
#include "copies/target_sets.h"
#include "dsp/filter_methods.h"
#include "measure/alignment.h"
#include "measure/smoothing.h"
#include "params/channels.h"

namespace tessavo::cli::option {

namespace {

constexpr std::size_t mostPoints = 100000;

// An argument without a name, which must be given.
Option positional(const std::string& name, const std::string& what, std::string Arguments::*member) {
    return [=](CLI::App& command, Arguments& arguments) {
        command.add_option(name, arguments.*member, what)->required();
    };
}

Option namedFile(const std::string& names, const std::string& what, std::string Arguments::*member,
                 bool required) {
    return [=](CLI::App& command, Arguments& arguments) {
        command.add_option(names, arguments.*member, what)->type_name("FILE")->required(required);
    };
}

Option set(bool required) {
    return [=](CLI::App& command, Arguments& arguments) {
        command.add_option("--set", arguments.set, "Set of the file, 1 to 5")
            ->check(CLI::Range(1, static_cast<int>(setCount)))
            ->type_name("N")
            ->required(required);
    };
}

Option flag(const std::string& name, const std::string& what, bool Arguments::*member) {
    return [=](CLI::App& command, Arguments& arguments) { command.add_flag(name, arguments.*member, what); };
}

/// A value that an option has by the word that stands for it.
template <typename Value>
struct Word {
    std::string word;
    Value value;
};

// The value of one of these words.
template <typename Value>
CLI::Option* addWord(CLI::App& command, const std::string& name, Value& value, const std::string& what,
                     const std::vector<Word<Value>>& words) {
    std::vector<std::string> names(words.size());
    std::ranges::transform(words, names.begin(), &Word<Value>::word);
    const auto take = [&value, words](const std::string& given) {
        value = std::ranges::find(words, given, &Word<Value>::word)->value;
    };
    return command.add_option_function<std::string>(name, take, what)->check(CLI::IsMember(names));
}

void addChannel(CLI::App& command, Arguments& arguments, const std::string& typeName) {
    command.add_option("--channel", arguments.channel, "Output channel, 1 to 8")
        ->check(CLI::Range(1, static_cast<int>(channelCount)))
        ->type_name(typeName);
}

// What `read` takes out of a text; it gives nothing for a wrong one.
template <typename Value, typename Member>
CLI::Option* addRead(CLI::App& command, const std::string& name, const std::string& what,
                     std::optional<Value> (*read)(std::string_view), const std::string& rule,
                     Member& member) {
    const auto known = [read, rule](const std::string& text) {
        return read(text) ? std::string() : "\"" + text + "\"" + rule;
    };
    const auto take = [read, &member](const std::string& text) { member = read(text).value_or(Value()); };
    return command.add_option_function<std::string>(name, take, what)->check(CLI::Validator(known, ""));
}

}  // namespace

Option file(const std::string& what) {
    return positional("FILE", what, &Arguments::file);
}

Option otherFile(const std::string& what) {
    return positional("OTHER", what, &Arguments::secondFile);
}

Option image(const std::string& what) {
    return positional("IMAGE", what, &Arguments::image);
}

Option targetSet() {
    return [](CLI::App& command, Arguments& arguments) {
        std::vector<Word<std::uint8_t>> words;
        for (std::uint8_t number = 1; number <= setCount; ++number) {
            words.push_back({std::to_string(number), number});
        }
        words.push_back({"default", 0});
        addWord(command, "TARGET", arguments.targetSet, "Set of the target: 1 to 5 or default", words)
            ->type_name("N|default")
            ->required();
    };
}

Option targetSets(const std::string& what) {
    return [=](CLI::App& command, Arguments& arguments) {
        addRead(command, "--sets", what, targetSetsOf, ": sets are 1 to 5 and default, each once",
                arguments.targetSets)
            ->type_name("N,...|default");
    };
}

Option folder(const std::string& what) {
    return positional("DIR", what, &Arguments::file);
}

Option outputFolder(const std::string& what) {
    return [=](CLI::App& command, Arguments& arguments) {
        command.add_option("-o,--output", arguments.output, what)->type_name("DIR")->required();
    };
}

Option into(const std::string& what) {
    return namedFile("--into", what, &Arguments::file, true);
}

Option output(const std::string& what) {
    return namedFile("-o,--output", what, &Arguments::output, true);
}

Option anyOutput(const std::string& what) {
    return namedFile("-o,--output", what, &Arguments::output, false);
}

Option editedFiles() {
    return [](CLI::App& command, Arguments& arguments) {
        namedFile("-o,--output", "Settings file to write", &Arguments::output, false)(command, arguments);
        namedFile("--image", "Parameter image of the current set to write", &Arguments::image, false)(
            command, arguments);
    };
}

Option script() {
    return namedFile("--script", "Script, or - for standard input", &Arguments::script, true);
}

Option anySet() {
    return set(false);
}

Option oneSet() {
    return set(true);
}

Option filterMode() {
    return [](CLI::App& command, Arguments& arguments) {
        std::vector<Word<std::uint32_t>> words;
        std::string list;
        for (const std::string_view name : filterMethodNames) {
            const bool last = words.size() + 1 == filterMethodNames.size();
            list.append(words.empty() ? "" : last ? " or " : ", ").append(name);
            list.append(words.empty() ? " (the default)" : "");
            words.push_back({std::string(name), static_cast<std::uint32_t>(words.size())});
        }
        addWord(command, "--filter-mode", arguments.filterMode, "Filter method: " + list, words)
            ->type_name("M");
    };
}

Option inputEq() {
    return [](CLI::App& command, Arguments& arguments) {
        addWord<InputEq>(command, "--input-eq", arguments.inputEq,
                         "Input equalizer in the image: on (the default), off, or stored, as the set says",
                         {{"on", InputEq::on}, {"off", InputEq::off}, {"stored", InputEq::stored}})
            ->type_name("on|off|stored");
    };
}

Option curve() {
    return [](CLI::App& command, Arguments& arguments) {
        CLI::Option_group* which = command.add_option_group("curve");
        addChannel(*which, arguments, "C");
        const std::string inputCurve = "Input equalizer";
        which->add_flag("--input", inputCurve);
        which->require_option(1);
    };
}

Option foreignFile(const std::string& what) {
    return positional("FILE", what, &Arguments::secondFile);
}

Option oneChannel() {
    return [](CLI::App& command, Arguments& arguments) {
        addChannel(command, arguments, "P");
        command.get_option("--channel")->required();
    };
}

Option channels() {
    return [](CLI::App& command, Arguments& arguments) {
        addRead(command, "--channel", "Output channels that get the filters", channelList,
                ": channels are 1 to 8, each once", arguments.channels)
            ->type_name("P,P,...")
            ->required();
    };
}

Option bands() {
    return [](CLI::App& command, Arguments& arguments) {
        addRead(command, "--bands", "Bands that may be written, as 1-8 or 1,3,5; all unless told", bandList,
                ": bands are 1 to 8, each once", arguments.bands)
            ->type_name("B-B,B,...");
    };
}

Option channelName() {
    return [](CLI::App& command, Arguments& arguments) {
        command
            .add_option("--channel-name", arguments.channelName,
                        "Channel of the text that is read where it has several; the first unless told")
            ->type_name("NAME");
    };
}

Option importing() {
    return [](CLI::App& command, Arguments& arguments) {
        flag("--keep", "Bands that no filter takes stay as they are; otherwise they are switched off",
             &Arguments::keep)(command, arguments);
        flag("--no-preamp", "The preamp of the text stays out of the volume", &Arguments::noPreamp)(
            command, arguments);
        flag("--skip-unreadable", "Lines that cannot be read are told and left out",
             &Arguments::skipUnreadable)(command, arguments);
    };
}

Option exporting() {
    return [](CLI::App& command, Arguments& arguments) {
        addWord<ExportForm>(
            command, "--format", arguments.exportForm, "Form of the text; text unless told",
            {{"text", ExportForm::text}, {"csv", ExportForm::csv}, {"yaml", ExportForm::yaml}})
            ->type_name("text|csv|yaml");
        flag("--with-volume", "Volume and group gain as a preamp", &Arguments::withVolume)(command,
                                                                                           arguments);
    };
}

Option measurements(const std::string& what) {
    return [=](CLI::App& command, Arguments& arguments) {
        command.add_option("FILE", arguments.measurements, what)->required();
    };
}

Option measuring() {
    return [](CLI::App& command, Arguments& arguments) {
        addRead(command, "--columns",
                "Columns of frequency and level, counted from 1; found by themselves unless told", columnPair,
                ": columns are two different numbers from 1 on, with a comma between them", arguments.columns)
            ->type_name("F,L");
        namedFile("--calibration", "What the microphone adds, taken off every measurement",
                  &Arguments::calibration, false)(command, arguments);
        addRead(command, "--smoothing", "Width of smoothing in octaves, 1/1 to 1/48; none unless told",
                smoothingOf, ": smoothing is none or 1/1 to 1/48", arguments.smoothing)
            ->type_name("1/N|none");
    };
}

Option channelOrSum() {
    return [](CLI::App& command, Arguments& arguments) {
        CLI::Option_group* which = command.add_option_group("response");
        addChannel(*which, arguments, "P");
        addRead(*which, "--sum", "Output channels whose responses are added", channelList,
                ": channels are 1 to 8, each once", arguments.summedChannels)
            ->type_name("P,P,...");
        which->require_option(1);
    };
}

Option frequencies() {
    return [](CLI::App& command, Arguments& arguments) {
        CLI::Option_group* which = command.add_option_group("frequencies");
        addRead(*which, "--at", "Frequencies in Hz", frequencyList,
                ": frequencies are numbers of Hz, 0 or above, with commas between them",
                arguments.frequenciesHz)
            ->type_name("HZ,HZ,...");
        which
            ->add_option(
                "--points", arguments.points,
                "Number of frequencies in equal ratios from 20 Hz to 20 kHz, 2 to 100000; 1000 unless told")
            ->check(CLI::Range(std::size_t{2}, mostPoints))
            ->type_name("N");
        which->require_option(0, 1);
    };
}

Option alignment() {
    return [](CLI::App& command, Arguments& arguments) {
        const std::string rule =
            ": 8 values are needed, with commas between them, each 0 to 100000 or - for a channel that is "
            "left "
            "out";
        CLI::Option_group* which = command.add_option_group("places");
        addRead(*which, "--distances",
                "Distances of the loudspeakers from the seat in cm, channels 1 to 8; - leaves one as it is",
                positionList, rule, arguments.distancesCm)
            ->type_name("CM,CM,...");
        addRead(*which, "--times",
                "Times of arrival at the seat in ms, channels 1 to 8; - leaves one as it is", positionList,
                rule, arguments.timesMs)
            ->type_name("MS,MS,...");
        which->require_option(1);
        const auto known = [](const std::string& text) {
            const auto celsius = finiteNumber(text);
            const bool isKnown = celsius && *celsius >= lowestAirCelsius && *celsius <= highestAirCelsius;
            return isKnown ? std::string() : "\"" + text + "\": air has -40 to 60 degrees Celsius here";
        };
        const auto take = [&arguments](const std::string& text) {
            arguments.airCelsius = finiteNumber(text).value_or(arguments.airCelsius);
        };
        command
            .add_option_function<std::string>(
                "--temperature", take, "Temperature of the air in degrees Celsius, -40 to 60; 20 unless told")
            ->check(CLI::Validator(known, ""))
            ->type_name("C");
    };
}

Option json() {
    return flag("--json", "Print everything as JSON", &Arguments::json);
}

Option onlyReal() {
    return flag("--real", "Leave out differences that the target's number formats make",
                &Arguments::onlyReal);
}

Option force() {
    return flag("--force", "Write over an existing file", &Arguments::force);
}

Option yes(const std::string& what) {
    return flag("--yes", what, &Arguments::yes);
}

Option port() {
    return [](CLI::App& command, Arguments& arguments) {
        command.add_option("--port", arguments.port, "Serial port, as 'tessavoctl ports' names it")
            ->type_name("PORT")
            ->required();
    };
}

}  // namespace tessavo::cli::option
