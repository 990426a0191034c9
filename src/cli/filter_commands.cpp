#include "cli/filter_commands.h"

#include <algorithm>
#include <ostream>

#include "base/raw_file.h"
#include "cli/command_line.h"
#include "cli/file_access.h"
#include "cli/filter_report.h"
#include "dsp/filter_methods.h"
#include "filtertext/filter_export.h"

namespace tessavo::cli {

namespace {

/// Reads a filter text. Reports what fails, and returns nothing where the file cannot be read at all.
std::optional<FilterText> loadFilterText(const std::string& file, const Arguments& arguments,
                                         Reporter& reporter) {
    const auto start = readFileStart(pathOf(file), mostFilterTextBytes + 1);
    if (!start) {
        reporter.error(std::string(file).append(": ").append(readTrouble(file)));
        return std::nullopt;
    }
    const std::string_view bytes(reinterpret_cast<const char*>(start->bytes.data()), start->bytes.size());
    FilterText text = readFilterText(bytes, arguments.channelName);
    if (!text.trouble.empty()) {
        reporter.error(placedText(file, text.troubleLine, text.troubleColumn, text.trouble));
    }
    return text;
}

/// Whether a channel can take anything of a text. Without, an import would do nothing but switch bands off; that is reported.
bool isOfUse(const FilterText& text, const std::string& file, Reporter& reporter) {
    const bool ofUse = text.hasPreamp || std::ranges::any_of(text.lines, [](const FilterLine& line) {
                           return line.device.has_value() || line.kind == FilterLineKind::empty;
                       });
    if (!ofUse) {
        reporter.error(std::string(file).append(": The target can take no filter of it."));
    }
    return ofUse;
}

/// Reports every line that cannot be read.
/// \return whether there is none
bool isReadable(const FilterText& text, const std::string& file, Reporter& reporter) {
    bool readable = true;
    for (const FilterLine& line : text.lines) {
        if (line.kind == FilterLineKind::error) {
            reporter.error(placedText(file, line.line, line.column, line.reason));
            readable = false;
        }
    }
    return readable;
}

ImportChoice choiceOf(const Arguments& arguments) {
    ImportChoice choice;
    if (!arguments.bands.empty()) {
        choice.bands.fill(false);
        for (const std::size_t band : arguments.bands) {
            choice.bands.at(band) = true;
        }
    }
    choice.keepOthers = arguments.keep;
    choice.withPreamp = !arguments.noPreamp;
    return choice;
}

}  // namespace

int runFilters(const Arguments& arguments, const CommandContext& context) {
    const auto text = loadFilterText(arguments.file, arguments, context.reporter);
    if (!text) {
        return exit_code::failed;
    }
    context.console.out << (arguments.json ? filtersJson(*text) : filtersTable(*text));
    return text->trouble.empty() ? exit_code::done : exit_code::failed;
}

int runImportFilters(const Arguments& arguments, const CommandContext& context) {
    if (!isApart(arguments.output, arguments.secondFile, context.reporter)) {
        return exit_code::wrongUsage;
    }
    const auto text = loadFilterText(arguments.secondFile, arguments, context.reporter);
    if (!text || !text->trouble.empty()) {
        return exit_code::failed;
    }
    if (!isReadable(*text, arguments.secondFile, context.reporter) && !arguments.skipUnreadable) {
        return exit_code::failed;
    }
    if (!isOfUse(*text, arguments.secondFile, context.reporter)) {
        return exit_code::failed;
    }
    auto store = loadStore(arguments.file, {arguments.setIndex()}, context.reporter);
    if (!store) {
        return exit_code::failed;
    }
    const FilterMethods methods = makeFilterMethods();
    std::vector<ChannelImport> channels;
    for (const PagePosition channel : arguments.channels) {
        OutputChannelParams& params =
            store->sets.at(arguments.setIndex()).channels.at(recordChannelAt(channel).value);
        ImportPlan plan = planImport(*text, params, choiceOf(arguments));
        params = plan.after;
        const auto deviation = importDeviation(*text, plan, *methods.at(arguments.filterMode));
        channels.push_back({channel, std::move(plan), deviation});
    }
    OutputFiles output(context.reporter);
    output.addSettings(arguments.output);
    if (!output.write(*store, {})) {
        return exit_code::failed;
    }
    context.console.out << (arguments.json ? importJson(*text, channels) : importTable(*text, channels));
    return exit_code::done;
}

int runExportFilters(const Arguments& arguments, const CommandContext& context) {
    if (!isApart(arguments.output, arguments.file, context.reporter)) {
        return exit_code::wrongUsage;
    }
    const auto store = loadStore(arguments.file, {arguments.setIndex()}, context.reporter);
    if (!store) {
        return exit_code::failed;
    }
    const PagePosition channel{static_cast<std::uint8_t>(arguments.channel - 1)};
    const std::string title = std::string("Set ")
                                  .append(std::to_string(arguments.set))
                                  .append(", channel ")
                                  .append(std::to_string(arguments.channel));
    const std::string text =
        exportFilters(store->sets.at(arguments.setIndex()).channels.at(recordChannelAt(channel).value),
                      arguments.exportForm, {title, arguments.withVolume});
    if (arguments.output.empty()) {
        context.console.out << text;
        return exit_code::done;
    }
    return writeTextFile(arguments.output, text, context.reporter) ? exit_code::done : exit_code::failed;
}

std::string filterTextHelp() {
    return "Reads lines such as \"Filter 1: ON PK Fc 100 Hz Gain -3.0 dB Q 2.00\", tables of filters, and "
           "YAML files with\n"
           "filters. Their filters are meant as the audio EQ cookbook has them and are converted, so that "
           "the target\n"
           "responds as the text means it.";
}

}  // namespace tessavo::cli
