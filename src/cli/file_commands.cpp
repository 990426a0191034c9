#include "cli/file_commands.h"

#include <istream>
#include <ostream>

#include "base/raw_file.h"
#include "cli/command_line.h"
#include "cli/edit_script.h"
#include "cli/file_access.h"
#include "cli/set_diff.h"
#include "cli/set_json.h"
#include "cli/set_report.h"
#include "params/settings_file.h"

namespace tessavo::cli {

namespace {

constexpr std::size_t longestScript = std::size_t{1} << 20U;

std::optional<std::string> readScript(const std::string& file, const CommandContext& context) {
    std::string text;
    if (file == "-") {
        text.resize(longestScript + 1);
        context.console.in.read(text.data(), static_cast<std::streamsize>(text.size()));
        text.resize(static_cast<std::size_t>(context.console.in.gcount()));
    } else {
        const auto start = readStreamStart(pathOf(file), longestScript + 1);
        if (!start) {
            context.reporter.error(file + ": " + readTrouble(file));
            return std::nullopt;
        }
        text.assign(start->bytes.begin(), start->bytes.end());
    }
    if (text.size() > longestScript) {
        context.reporter.error(file + ": a script has at most " + std::to_string(longestScript) + " bytes");
        return std::nullopt;
    }
    return text;
}

std::optional<Script> loadScript(const std::string& file, const CommandContext& context) {
    const auto text = readScript(file, context);
    if (!text) {
        return std::nullopt;
    }
    auto parsed = parseScript(*text);
    if (const auto* error = std::get_if<ScriptError>(&parsed)) {
        const std::string name = file == "-" ? "standard input" : file;
        context.reporter.error(name + ", line " + std::to_string(error->line) + ": " + error->message);
        return std::nullopt;
    }
    return std::get<Script>(std::move(parsed));
}

// Refuses to write one kind of file over another that the command reads or writes too.
bool areApart(const std::string& first, const std::string& second, Reporter& reporter) {
    if (first.empty() || second.empty() || !isSameFile(first, second)) {
        return true;
    }
    reporter.error(first + " and " + second + " are the same file");
    return false;
}

int exitCode(bool done) {
    return done ? exit_code::done : exit_code::failed;
}

class CurvePrinter final : public ICurveDisplay {
 public:
    explicit CurvePrinter(std::ostream& out) : out_(out) {}
    void setCurve(const ResponseCurve& curve) override {
        std::string text;
        for (std::size_t i = 0; i < curvePointCount; ++i) {
            text += std::to_string(curve.frequencyHz[i]) + " " + std::to_string(curve.magnitudeDb[i]) + "\n";
        }
        out_ << text;
    }

 private:
    std::ostream& out_;
};

}  // namespace

void takeStore(TuningState& tuning, const ParameterStore& store, std::size_t setIndex,
               std::uint32_t filterMode) {
    tuning.start();
    tuning.setFilterMode(filterMode);
    tuning.selectSet(static_cast<std::uint32_t>(setIndex));
    tuning.replaceStore(store);
}

void takeSetToSend(TuningState& tuning, const ParameterStore& store, const Arguments& arguments) {
    takeStore(tuning, store, arguments.setIndex(), arguments.filterMode);
    const bool storedOn = tuning.currentParameterSet().inputEqOn != 0;
    tuning.setInputEqOn(arguments.inputEq == InputEq::stored ? storedOn : arguments.inputEq != InputEq::off);
}

void noteInputEq(const ParameterStore& store, const Arguments& arguments, Reporter& reporter) {
    if (arguments.inputEq == InputEq::assumedOn && store.sets[arguments.setIndex()].inputEqOn == 0) {
        reporter.note("set " + std::to_string(arguments.set) + " of " + arguments.file +
                      " has the input equalizer off, its image has it on; --input-eq stored follows the set");
    }
}

int runNew(const Arguments& arguments, const CommandContext& context) {
    if (!arguments.force && isExistingFile(arguments.file)) {
        context.reporter.error(arguments.file + ": exists already; --force writes over it");
        return exit_code::failed;
    }
    TuningState tuning(context.reporter);
    tuning.start();
    OutputFiles output(context.reporter);
    output.addSettings(arguments.file);
    return exitCode(output.write(tuning.store(), tuning.image()));
}

int runShow(const Arguments& arguments, const CommandContext& context) {
    const bool only = arguments.set != 0;
    const auto store = only ? loadStore(arguments.file, {arguments.setIndex()}, context.reporter)
                            : loadAnyStore(arguments.file, context.reporter);
    if (!store) {
        return exit_code::failed;
    }
    std::ostream& out = context.console.out;
    if (arguments.json) {
        out << settingsJson(*store, {only, only ? arguments.setIndex() : 0});
        return exit_code::done;
    }
    bool first = true;
    for (std::size_t set = 0; set < setCount; ++set) {
        if (only && set != arguments.setIndex()) {
            continue;
        }
        out << (first ? "" : "\n");
        first = false;
        if (isValidRecord(store->sets[set])) {
            out << setReport(store->sets[set], set);
        } else {
            out << "Set " << std::to_string(set + 1) << " has no valid record\n";
        }
    }
    return exit_code::done;
}

int runDiff(const Arguments& arguments, const CommandContext& context) {
    const auto first = loadAnyStore(arguments.file, context.reporter);
    const auto second = loadAnyStore(arguments.secondFile, context.reporter);
    if (!first || !second) {
        return exit_code::failed;
    }
    const auto found = differences(*first, *second, arguments.onlyReal ? Counted::real : Counted::all);
    for (const Difference& difference : found) {
        context.console.out << difference.path << ": " << difference.first << " | " << difference.second
                            << "\n";
    }
    return found.empty() ? exit_code::done : exit_code::failed;
}

int runEdit(const Arguments& arguments, const CommandContext& context) {
    const std::string scriptFile = arguments.script == "-" ? std::string() : arguments.script;
    if (!areApart(arguments.image, arguments.file, context.reporter) ||
        !areApart(arguments.image, arguments.output, context.reporter) ||
        !areApart(scriptFile, arguments.output, context.reporter) ||
        !areApart(scriptFile, arguments.image, context.reporter)) {
        return exit_code::wrongUsage;
    }
    const auto script = loadScript(arguments.script, context);
    if (!script) {
        return exit_code::failed;
    }
    const std::set<std::size_t> used = setsUsed(*script);
    const auto store = loadStore(arguments.file, used, context.reporter);
    if (!store) {
        return exit_code::failed;
    }
    TuningState tuning(context.reporter);
    takeStore(tuning, *store, isValidRecord(store->sets[0]) ? 0 : *used.begin(), arguments.filterMode);
    applyScript(tuning, *script);

    OutputFiles output(context.reporter);
    if (!arguments.output.empty()) {
        output.addSettings(arguments.output);
    }
    if (!arguments.image.empty()) {
        output.addImage(arguments.image);
    }
    if (arguments.output.empty() && arguments.image.empty()) {
        context.reporter.note(
            "the script is right; nothing was written, since neither --output nor --image was given");
    }
    return exitCode(output.write(tuning.store(), tuning.image()));
}

int runExport(const Arguments& arguments, const CommandContext& context) {
    if (!areApart(arguments.output, arguments.file, context.reporter)) {
        return exit_code::wrongUsage;
    }
    const auto store = loadStore(arguments.file, {arguments.setIndex()}, context.reporter);
    if (!store) {
        return exit_code::failed;
    }
    TuningState tuning(context.reporter);
    takeSetToSend(tuning, *store, arguments);
    OutputFiles output(context.reporter);
    output.addImage(arguments.output);
    if (!output.write(tuning.store(), tuning.image())) {
        return exit_code::failed;
    }
    noteInputEq(*store, arguments, context.reporter);
    return exit_code::done;
}

int runImport(const Arguments& arguments, const CommandContext& context) {
    if (!areApart(arguments.output, arguments.image, context.reporter)) {
        return exit_code::wrongUsage;
    }
    const auto image = loadImage(arguments.image, context.reporter);
    if (!image) {
        return exit_code::failed;
    }
    const auto store = loadStore(arguments.file, {arguments.setIndex()}, context.reporter);
    if (!store) {
        return exit_code::failed;
    }
    TuningState tuning(context.reporter);
    takeStore(tuning, *store, arguments.setIndex(), arguments.filterMode);
    tuning.replaceImage(*image);
    tuning.imageToSet();
    OutputFiles output(context.reporter);
    output.addSettings(arguments.output);
    return exitCode(output.write(tuning.store(), tuning.image()));
}

int runCurve(const Arguments& arguments, const CommandContext& context) {
    const auto store = loadStore(arguments.file, {arguments.setIndex()}, context.reporter);
    if (!store) {
        return exit_code::failed;
    }
    TuningState tuning(context.reporter);
    takeStore(tuning, *store, arguments.setIndex(), arguments.filterMode);
    CurvePrinter printer(context.console.out);
    tuning.setCurveDisplay(&printer);
    if (arguments.channel == 0) {
        tuning.showInputCurve();
    } else {
        tuning.showOutputCurve(recordChannelAt({static_cast<std::uint8_t>(arguments.channel - 1)}));
    }
    return exit_code::done;
}

}  // namespace tessavo::cli
