#include "filtertext/filter_text.h"

#include <array>
#include <cmath>
#include <string>

#include "base/number_text.h"
#include "filtertext/readers.h"
#include "text/text_encoding.h"

namespace tessavo {

namespace {

/// How far from that of a Butterworth filter the Q of a low-pass or high-pass may be: people write 0.70 to 0.71.
constexpr double butterworthSlack = 0.01;

void refuse(FilterLine& line, std::string reason) {
    line.device.reset();
    line.clamped.clear();
    line.reason = std::move(reason);
    // What is switched off does not play; nothing is lost with it.
    if (line.kind != FilterLineKind::off) {
        line.kind = FilterLineKind::unsupported;
        line.meaning.reset();
    }
}

std::string hertz(double frequencyHz) {
    return shortNumber(frequencyHz, 9).append(" Hz");
}

void putOnDevice(FilterLine& line, double samplingRateHz) {
    const CookbookFilter& meaning = *line.meaning;
    if (!isConvertible(meaning, samplingRateHz)) {
        refuse(line, meaning.frequencyHz >= samplingRateHz / 2.0
                         ? hertz(meaning.frequencyHz)
                               .append(" is not below half the sampling rate of ")
                               .append(hertz(samplingRateHz))
                         : "its values are out of every range");
        return;
    }
    if (!isBand(meaning.shape) && std::abs(meaning.q - butterworthQ) > butterworthSlack) {
        refuse(line, std::string("Q ")
                         .append(shortNumber(meaning.q))
                         .append("; the target's crossovers are Butterworth filters, with Q 0.707"));
        return;
    }
    SteppedFilter stepped = onDeviceSteps(toDevice(meaning, samplingRateHz));
    line.device = stepped.filter;
    line.clamped = std::move(stepped.clamped);
}

/// Whether what follows a key of YAML begins a value that is no prose.
bool isYamlRest(std::string_view rest) {
    const std::size_t begin = rest.find_first_not_of(" \t");
    if (begin == std::string_view::npos) {
        return true;
    }
    return begin > 0 && std::string_view("#{[&!~").find(rest[begin]) != std::string_view::npos;
}

/// Refuses a file with more filters than anybody means; to weigh them all against each other would take too long.
void boundFilters(FilterText& text) {
    std::size_t filters = 0;
    for (const FilterLine& line : text.lines) {
        filters += line.device ? 1U : 0U;
        if (filters > mostFilters && text.trouble.empty()) {
            text.trouble = std::string("There are more than ")
                               .append(std::to_string(mostFilters))
                               .append(" filters in it; no channel has so many.");
            text.troubleLine = line.line;
            text.troubleColumn = 1;
        }
    }
}

}  // namespace

FilterText readFilterText(std::string_view bytes, std::string_view channelName) {
    if (bytes.size() > mostFilterTextBytes) {
        FilterText refused;
        refused.trouble = "The file is larger than 4 MiB; filter texts are not.";
        return refused;
    }
    const std::string text = utf8Of(bytes);
    FilterText result =
        looksLikeYaml(text) ? readYamlFilters(text, channelName) : readTextLines(text, channelName);
    for (FilterLine& line : result.lines) {
        if (line.meaning) {
            putOnDevice(line, result.samplingRateHz);
        }
    }
    boundFilters(result);
    return result;
}

std::string_view shapeWord(FilterShape shape) {
    switch (shape) {
        case FilterShape::peak:
            return "peak";
        case FilterShape::lowShelf:
            return "low-shelf";
        case FilterShape::highShelf:
            return "high-shelf";
        case FilterShape::lowPass:
            return "low-pass";
        case FilterShape::highPass:
            break;
    }
    return "high-pass";
}

std::string_view kindWord(FilterLineKind kind) {
    switch (kind) {
        case FilterLineKind::none:
            return "none";
        case FilterLineKind::band:
            return "band";
        case FilterLineKind::crossover:
            return "crossover";
        case FilterLineKind::off:
            return "off";
        case FilterLineKind::empty:
            return "empty";
        case FilterLineKind::unsupported:
            return "unsupported";
        case FilterLineKind::error:
            break;
    }
    return "error";
}

std::string_view valueWord(FilterValue value) {
    switch (value) {
        case FilterValue::frequency:
            return "frequency";
        case FilterValue::gain:
            return "gain";
        case FilterValue::q:
            break;
    }
    return "q";
}

bool looksLikeYaml(std::string_view text) {
    constexpr std::array<std::string_view, 3> keys{"filters:", "pipeline:", "devices:"};
    for (const std::string_view line : linesOf(text)) {
        for (const std::string_view key : keys) {
            if (line.starts_with(key) && isYamlRest(line.substr(key.size()))) {
                return true;
            }
        }
    }
    return false;
}

}  // namespace tessavo
