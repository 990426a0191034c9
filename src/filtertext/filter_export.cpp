#include "filtertext/filter_export.h"

#include <array>
#include <cmath>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "base/number_text.h"
#include "filtertext/cookbook.h"

namespace tessavo {

namespace {

struct FormName {
    ExportForm form;
    std::string_view name;
    std::string_view ending;
};

constexpr std::array<FormName, 3> forms{{
    {ExportForm::text, "text", ".txt"},
    {ExportForm::csv, "csv", ".csv"},
    {ExportForm::yaml, "yaml", ".yml"},
}};

/// Digits that leave no doubt about the step of the target that a value stands for.
constexpr int digits = 10;
constexpr int fourthOrder = 4;

/// A band or an enabled crossover of a channel as another program means it.
struct ExportedFilter {
    std::string name;  ///< "band_1", "crossover_2"
    bool off = false;
    std::optional<CookbookFilter> filter;  ///< nothing for a band that has no such form
};

std::vector<ExportedFilter> exportedFilters(const OutputChannelParams& channel) {
    std::vector<ExportedFilter> filters;
    const auto add = [&](std::string name, bool off, const std::optional<DeviceFilter>& device) {
        ExportedFilter exported{std::move(name), off, std::nullopt};
        if (device) {
            const CookbookFilter filter = toCookbook(*device, textSamplingRateHz);
            if (isConvertible(filter, textSamplingRateHz)) {
                exported.filter = filter;
            }
        }
        filters.push_back(std::move(exported));
    };
    for (std::size_t k = 0; k < bandCount; ++k) {
        const EqBandParams& band = channel.bands[k];
        add(std::string("band_").append(std::to_string(k + 1)), band.off != 0, filterOf(band));
    }
    for (std::size_t k = 0; k < crossoverCount; ++k) {
        const CrossoverParams& crossover = channel.crossovers[k];
        if (crossover.enabled != 0) {
            add(std::string("crossover_").append(std::to_string(k + 1)), false, filterOf(crossover));
        }
    }
    return filters;
}

std::string number(double value) {
    return shortNumber(value, digits);
}

std::string volumeText(const OutputChannelParams& channel) {
    const double volume = finiteNumber(shortestText(channel.volumeDb)).value_or(0.0);
    const double group = finiteNumber(shortestText(channel.groupGainDb)).value_or(0.0);
    return fixedText(std::round((volume + group) * 1e6) / 1e6, 1);
}

/// A title without anything that could end its line.
std::string oneLine(const std::string& title) {
    std::string line;
    for (const char letter : title) {
        line.push_back(static_cast<unsigned char>(letter) < 0x20 || letter == 0x7F ? ' ' : letter);
    }
    return line;
}

std::string comments(const OutputChannelParams& channel, const ExportOptions& options) {
    std::string text;
    if (!options.title.empty()) {
        text.append("# ").append(oneLine(options.title)).append("\n");
    }
    text.append("# In the forms of the audio EQ cookbook, exact at ")
        .append(number(textSamplingRateHz))
        .append(" Hz.\n");
    if (!options.withVolume) {
        text.append("# The channel's volume of ").append(volumeText(channel)).append(" dB is not in it.\n");
    }
    return text;
}

std::string_view typeWord(FilterShape shape, std::string_view lowShelf, std::string_view highShelf) {
    switch (shape) {
        case FilterShape::peak:
            return "PK";
        case FilterShape::lowShelf:
            return lowShelf;
        case FilterShape::highShelf:
            return highShelf;
        case FilterShape::lowPass:
            return "LP";
        case FilterShape::highPass:
            break;
    }
    return "HP";
}

/// The filters line by line: one of 4th order is the same filter of 2nd order twice.
std::vector<ExportedFilter> exportedRows(const OutputChannelParams& channel) {
    std::vector<ExportedFilter> rows;
    for (const ExportedFilter& exported : exportedFilters(channel)) {
        const bool isTwice = exported.filter && exported.filter->order == fourthOrder;
        rows.insert(rows.end(), isTwice ? 2 : 1, exported);
    }
    return rows;
}

std::string preampLine(const OutputChannelParams& channel, const ExportOptions& options) {
    return options.withVolume ? std::string("Preamp: ").append(volumeText(channel)).append(" dB\n")
                              : std::string();
}

std::string textForm(const OutputChannelParams& channel, const ExportOptions& options) {
    std::string text = comments(channel, options).append(preampLine(channel, options));
    std::size_t row = 0;
    for (const ExportedFilter& exported : exportedRows(channel)) {
        text.append("Filter ").append(std::to_string(++row)).append(exported.off ? ": OFF " : ": ON ");
        if (!exported.filter) {
            text.append("None\n");
            continue;
        }
        const CookbookFilter& filter = *exported.filter;
        text.append(typeWord(filter.shape, "LSC", "HSC"));
        text.append(" Fc ").append(number(filter.frequencyHz)).append(" Hz");
        if (isBand(filter.shape)) {
            text.append(" Gain ").append(number(filter.gainDb)).append(" dB Q ").append(number(filter.q));
        }
        text.append("\n");
    }
    return text;
}

std::string csvForm(const OutputChannelParams& channel, const ExportOptions& options) {
    std::string text = preampLine(channel, options);
    text.append("Number,Enabled,Control,Type,Frequency(Hz),Gain(dB),Q\n");
    std::size_t row = 0;
    for (const ExportedFilter& exported : exportedRows(channel)) {
        text.append(std::to_string(++row)).append(exported.off ? ",False,Manual," : ",True,Manual,");
        if (!exported.filter) {
            text.append("None\n");
            continue;
        }
        const CookbookFilter& filter = *exported.filter;
        text.append(typeWord(filter.shape, "LSQ", "HSQ")).append(",").append(number(filter.frequencyHz));
        if (isBand(filter.shape)) {
            text.append(",").append(number(filter.gainDb)).append(",").append(number(filter.q));
        }
        text.append("\n");
    }
    return text;
}

std::string_view yamlType(const CookbookFilter& filter) {
    switch (filter.shape) {
        case FilterShape::peak:
            return "Peaking";
        case FilterShape::lowShelf:
            return "Lowshelf";
        case FilterShape::highShelf:
            return "Highshelf";
        case FilterShape::lowPass:
            return filter.order == fourthOrder ? "LinkwitzRileyLowpass" : "Lowpass";
        case FilterShape::highPass:
            break;
    }
    return filter.order == fourthOrder ? "LinkwitzRileyHighpass" : "Highpass";
}

void appendYamlFilter(std::string& text, const ExportedFilter& exported) {
    const CookbookFilter& filter = *exported.filter;
    const bool twice = filter.order == fourthOrder;
    text.append("  ").append(exported.name).append(":\n    type: ").append(twice ? "BiquadCombo" : "Biquad");
    text.append("\n    parameters:\n      type: ").append(yamlType(filter));
    text.append("\n      freq: ").append(number(filter.frequencyHz)).append("\n");
    if (isBand(filter.shape)) {
        text.append("      gain: ").append(number(filter.gainDb)).append("\n");
    }
    if (twice) {
        text.append("      order: 4\n");
    } else {
        text.append("      q: ").append(number(filter.q)).append("\n");
    }
}

std::string yamlForm(const OutputChannelParams& channel, const ExportOptions& options) {
    std::string text = comments(channel, options);
    text.append("devices:\n  samplerate: ").append(number(textSamplingRateHz)).append("\nfilters:\n");
    std::string names;
    std::string bypassed;
    if (options.withVolume) {
        text.append("  volume:\n    type: Gain\n    parameters:\n      gain: ")
            .append(volumeText(channel))
            .append("\n");
        names = "volume";
    }
    for (const ExportedFilter& exported : exportedFilters(channel)) {
        if (!exported.filter) {
            text.append("  # ").append(exported.name).append(" has no form of the cookbook.\n");
            continue;
        }
        appendYamlFilter(text, exported);
        std::string& list = exported.off ? bypassed : names;
        list.append(list.empty() ? "" : ", ").append(exported.name);
    }
    text.append("pipeline:\n");
    if (!names.empty()) {
        text.append("  - type: Filter\n    channels: [0]\n    names: [").append(names).append("]\n");
    }
    if (!bypassed.empty()) {
        text.append("  - type: Filter\n    channels: [0]\n    bypassed: true\n    names: [")
            .append(bypassed)
            .append("]\n");
    }
    return text;
}

}  // namespace

std::optional<ExportForm> exportFormOf(std::string_view name) {
    for (const FormName& form : forms) {
        if (form.name == name) {
            return form.form;
        }
    }
    return std::nullopt;
}

std::string_view endingOf(ExportForm form) {
    return forms[static_cast<std::size_t>(form)].ending;
}

std::string exportFilters(const OutputChannelParams& channel, ExportForm form, const ExportOptions& options) {
    switch (form) {
        case ExportForm::csv:
            return csvForm(channel, options);
        case ExportForm::yaml:
            return yamlForm(channel, options);
        case ExportForm::text:
            break;
    }
    return textForm(channel, options);
}

}  // namespace tessavo
