#include "cli/align_command.h"

#include <algorithm>
#include <ostream>

#include "base/number_text.h"
#include "cli/command_line.h"
#include "cli/file_access.h"
#include "cli/text_table.h"
#include "measure/alignment.h"
#include "measure/alignment_text.h"

namespace tessavo::cli {

namespace {

using Values = std::array<std::optional<double>, channelCount>;

Values valuesOf(const std::vector<std::optional<double>>& list) {
    Values values{};
    std::ranges::copy(list, values.begin());
    return values;
}

std::string number(PagePosition channel) {
    return std::to_string(channel.value + 1);
}

std::string tenths(int tenthMs) {
    return fixedText(tenthMs / 10.0, 1);
}

std::string member(const char* name, double value) {
    return std::string(", \"").append(name).append("\": ").append(plainText(value));
}

std::string channelJson(PagePosition position, const ChannelAlignment& channel) {
    return std::string("    {\"channel\": ")
        .append(number(position))
        .append(member("needed_ms", channel.neededMs))
        .append(member("group_delay_ms", channel.groupTenthMs / 10.0))
        .append(member("channel_delay_ms", channel.channelTenthMs / 10.0))
        .append(member("missing_ms", channel.missingMs))
        .append(member("missing_cm", channel.missingCm))
        .append("}");
}

std::string alignmentJson(const Alignment& alignment, double celsius) {
    std::string json = std::string("{\n  \"speed_of_sound_m_s\": ").append(plainText(speedOfSound(celsius)));
    json.append(",\n  \"reachable\": ").append(alignment.isReachable ? "true" : "false");
    json.append(",\n  \"farthest_channel\": ").append(number(alignment.farthest.value_or(PagePosition{})));
    json.append(",\n  \"farthest_possible_cm\": ").append(plainText(alignment.farthestPossibleCm));
    json.append(",\n  \"farthest_possible_ms\": ").append(plainText(alignment.farthestPossibleMs));
    json.append(",\n  \"channels\": [");
    bool isFirst = true;
    for (std::uint8_t position = 0; position < channelCount; ++position) {
        if (const auto& channel = alignment.channels.at(position)) {
            json.append(isFirst ? "\n" : ",\n").append(channelJson({position}, *channel));
            isFirst = false;
        }
    }
    return json.append("\n  ]\n}\n");
}

std::string alignmentTable(const Alignment& alignment, double celsius) {
    std::vector<std::vector<std::string>> rows{{"Channel", "Needs ms", "Group ms", "Channel ms", "Result"}};
    for (std::uint8_t position = 0; position < channelCount; ++position) {
        if (const auto& channel = alignment.channels.at(position)) {
            rows.push_back({number({position}), fixedText(channel->neededMs, 1),
                            tenths(channel->groupTenthMs), tenths(channel->channelTenthMs),
                            alignmentResult(*channel, celsius)});
        } else {
            rows.push_back({number({position}), "-", "-", "-", "left as it is"});
        }
    }
    return alignedTable(rows, "")
        .append("Sound goes ")
        .append(fixedText(speedOfSound(celsius), 1))
        .append(" m/s.\n");
}

void tellShortfall(const Alignment& alignment, AlignmentUnit unit, const Values& told, Reporter& reporter) {
    for (std::uint8_t position = 0; position < channelCount; ++position) {
        const auto& channel = alignment.channels.at(position);
        if (channel && channel->missingMs > 0) {
            reporter.error(std::string("Channel ")
                               .append(number({position}))
                               .append(": ")
                               .append(shortfallText(*channel)));
        }
    }
    if (!alignment.isReachable && alignment.farthest) {
        const PagePosition farthest = *alignment.farthest;
        reporter.error(possibleText(alignment, unit)
                           .append(": channel ")
                           .append(number(farthest))
                           .append(" now ")
                           .append(plainText(told.at(farthest.value).value_or(0)))
                           .append(unit == AlignmentUnit::centimeters ? " cm." : " ms."));
    }
}

}  // namespace

int runAlign(const Arguments& arguments, const CommandContext& context) {
    if (!isApart(arguments.output, arguments.file, context.reporter)) {
        return exit_code::wrongUsage;
    }
    auto store = loadStore(arguments.file, {arguments.setIndex()}, context.reporter);
    if (!store) {
        return exit_code::failed;
    }
    const bool byDistance = !arguments.distancesCm.empty();
    const Values told = valuesOf(byDistance ? arguments.distancesCm : arguments.timesMs);
    const double celsius = arguments.airCelsius;
    const Alignment alignment = align(byDistance ? arrivalTimes(told, celsius) : told, celsius);
    applyAlignment(alignment, store->sets.at(arguments.setIndex()));
    OutputFiles output(context.reporter);
    output.addSettings(arguments.output);
    if (!output.write(*store, {})) {
        return exit_code::failed;
    }
    context.console.out << (arguments.json ? alignmentJson(alignment, celsius)
                                           : alignmentTable(alignment, celsius));
    tellShortfall(alignment, byDistance ? AlignmentUnit::centimeters : AlignmentUnit::milliseconds, told,
                  context.reporter);
    return exit_code::done;
}

}  // namespace tessavo::cli
