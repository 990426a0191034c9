#include "cli/response_command.h"

#include <algorithm>
#include <cmath>
#include <ostream>

#include "base/number_text.h"
#include "cli/command_line.h"
#include "cli/file_access.h"
#include "cli/file_commands.h"
#include "response/complex_response.h"
#include "response/headroom.h"

namespace tessavo::cli {

namespace {

// What is not defined, or infinite, is no number in JSON.
std::string jsonNumber(double value) {
    return std::isfinite(value) ? shortestText(value) : "null";
}

std::string jsonOf(const ComplexResponse& response, const FrequencyGrid& grid) {
    std::string text = "{\n  \"points\": [";
    for (std::size_t i = 0; i < response.size(); ++i) {
        text.append(i == 0 ? "\n" : ",\n")
            .append("    {\"hz\": ")
            .append(shortestText(grid.frequenciesHz()[i]))
            .append(", \"db\": ")
            .append(jsonNumber(response.levelDb(i)))
            .append(", \"phase_degrees\": ")
            .append(jsonNumber(response.phaseDegrees(i)))
            .append(", \"group_delay_ms\": ")
            .append(jsonNumber(response.groupDelayMs(i)))
            .append("}");
    }
    return text.append("\n  ]\n}\n");
}

std::string tableOf(const ComplexResponse& response, const FrequencyGrid& grid) {
    std::string text;
    for (std::size_t i = 0; i < response.size(); ++i) {
        text.append(shortestText(grid.frequenciesHz()[i]))
            .append(" ")
            .append(shortestText(response.levelDb(i)))
            .append(" ")
            .append(shortestText(response.phaseDegrees(i)))
            .append(" ")
            .append(shortestText(response.groupDelayMs(i)))
            .append("\n");
    }
    return text;
}

FrequencyGrid gridOf(const Arguments& arguments) {
    if (auto named = FrequencyGrid::of(arguments.frequenciesHz); named && named->size() > 0) {
        return *std::move(named);
    }
    return FrequencyGrid::logarithmic(lowestHeardHz, highestHeardHz, arguments.points);
}

ComplexResponse responseOf(const ParameterImage& image, PagePosition channel, const FrequencyGrid& grid) {
    return ComplexResponse::ofChannel(playedModel(image.channels[recordChannelAt(channel).value]), grid);
}

ComplexResponse sumOf(const ParameterImage& image, const std::vector<PagePosition>& channels,
                      const FrequencyGrid& grid) {
    std::vector<ComplexResponse> responses;
    std::vector<const ComplexResponse*> summed;
    responses.reserve(channels.size());
    summed.reserve(channels.size());
    for (const PagePosition channel : channels) {
        summed.push_back(&responses.emplace_back(responseOf(image, channel, grid)));
    }
    return ComplexResponse::sumOf(summed, grid);
}

}  // namespace

int runResponse(const Arguments& arguments, const CommandContext& context) {
    const auto store = loadStore(arguments.file, {arguments.setIndex()}, context.reporter);
    if (!store) {
        return exit_code::failed;
    }
    TuningState tuning(context.reporter);
    takeStore(tuning, *store, arguments.setIndex(), arguments.filterMode);
    const FrequencyGrid grid = gridOf(arguments);
    const ComplexResponse response =
        arguments.summedChannels.empty()
            ? responseOf(tuning.image(), {static_cast<std::uint8_t>(arguments.channel - 1)}, grid)
            : sumOf(tuning.image(), arguments.summedChannels, grid);
    context.console.out << (arguments.json ? jsonOf(response, grid) : tableOf(response, grid));
    return exit_code::done;
}

}  // namespace tessavo::cli
