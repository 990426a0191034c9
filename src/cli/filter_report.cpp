#include "cli/filter_report.h"

#include <array>
#include <cmath>
#include <nlohmann/json.hpp>

#include "base/number_text.h"
#include "cli/text_table.h"
#include "filtertext/filter_words.h"
#include "text/shown_text.h"

namespace tessavo::cli {

namespace {

std::string jsonNumber(const std::optional<double>& value) {
    return value && std::isfinite(*value) ? plainText(*value) : "null";
}

std::string jsonText(std::string_view text) {
    return nlohmann::json(text).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

std::string values(const std::optional<double>& frequencyHz, const std::optional<double>& gainDb,
                   const std::optional<double>& q) {
    return std::string("\"frequency_hz\": ")
        .append(jsonNumber(frequencyHz))
        .append(", \"gain_db\": ")
        .append(jsonNumber(gainDb))
        .append(", \"q\": ")
        .append(jsonNumber(q));
}

/// An object for every line; what the line does not tell is null in it.
std::string sourceJson(const FilterLine& line) {
    const SourceFilter source = line.source.value_or(SourceFilter{});
    return std::string("{\"type\": ")
        .append(source.type.empty() ? "null" : jsonText(source.type))
        .append(", ")
        .append(values(source.frequencyHz, source.gainDb, source.q))
        .append("}");
}

std::string deviceJson(const DeviceFilter& device) {
    std::string text = std::string("{\"type\": ").append(jsonText(shapeWord(device.shape))).append(", ");
    if (isBand(device.shape)) {
        return text.append(values(device.frequencyHz, device.gainDb, device.q)).append("}");
    }
    return text.append(values(device.frequencyHz, std::nullopt, std::nullopt))
        .append(", \"order\": ")
        .append(std::to_string(device.order))
        .append("}");
}

std::string lineJson(const FilterLine& line) {
    std::string text = std::string("{\"line\": ").append(std::to_string(line.line));
    if (line.column != 0) {
        text.append(", \"column\": ").append(std::to_string(line.column));
    }
    text.append(", \"kind\": ").append(jsonText(kindWord(line.kind)));
    text.append(", \"text\": ").append(jsonText(line.text));
    text.append(", \"source\": ").append(sourceJson(line));
    text.append(", \"device\": ").append(line.device ? deviceJson(*line.device) : "null");
    text.append(", \"clamped\": [");
    for (const FilterValue& value : line.clamped) {
        text.append(&value == &line.clamped.front() ? "" : ", ").append(jsonText(valueWord(value)));
    }
    return text.append("], \"reason\": ").append(jsonText(line.reason)).append("}");
}

/// Members of an object that hold for the whole text, with a comma behind each.
std::string headJson(const FilterText& text) {
    std::string head = std::string("  \"preamp_db\": ").append(jsonNumber(text.preampDb));
    head.append(",\n  \"sample_rate_hz\": ").append(jsonNumber(text.samplingRateHz));
    head.append(",\n  \"decimal\": ").append(jsonText(std::string_view(&text.decimalSign, 1)));
    head.append(",\n  \"channels\": [");
    for (const std::string& name : text.channels) {
        head.append(&name == &text.channels.front() ? "" : ", ").append(jsonText(name));
    }
    return head.append("],\n  \"channel\": ")
        .append(text.channel.empty() ? "null" : jsonText(text.channel))
        .append(",\n");
}

std::string linesJson(const FilterText& text) {
    std::string lines = "  \"lines\": [";
    bool first = true;
    for (const FilterLine& line : text.lines) {
        if (line.kind != FilterLineKind::none) {
            lines.append(first ? "\n    " : ",\n    ").append(lineJson(line));
            first = false;
        }
    }
    return lines.append(first ? "]" : "\n  ]");
}

std::string bandsJson(const FilterText& text, const ChannelImport& channel) {
    std::string bands;
    std::string out;
    for (const ImportedLine& imported : channel.plan.lines) {
        const FilterLine& line = text.lines[imported.index];
        if (imported.band || imported.crossover) {
            bands.append(bands.empty() ? "" : ", ")
                .append(imported.band ? "{\"band\": " : "{\"crossover\": ")
                .append(std::to_string(1 + (imported.band ? *imported.band : *imported.crossover)))
                .append(", \"line\": ")
                .append(std::to_string(line.line))
                .append(", \"on\": ")
                .append(line.kind == FilterLineKind::off ? "false" : "true")
                .append("}");
        } else {
            out.append(out.empty() ? "" : ", ")
                .append("{\"line\": ")
                .append(std::to_string(line.line))
                .append(", \"text\": ")
                .append(jsonText(line.text))
                .append(", \"reason\": ")
                .append(jsonText(imported.reason))
                .append("}");
        }
    }
    return std::string("\"taken\": [").append(bands).append("], \"not_taken\": [").append(out).append("]");
}

/// A rounded number; one that rounds to zero has no sign.
std::string signlessZero(double value, int decimals) {
    std::string text = fixedText(value, decimals);
    if (text.starts_with('-') && text.find_first_not_of("-0.") == std::string::npos) {
        text.erase(0, 1);
    }
    return text;
}

std::string filterText(const DeviceFilter& filter) {
    std::string text(shapeWord(filter.shape));
    text.append(" ").append(shortestText(filter.frequencyHz)).append(" Hz");
    if (!isBand(filter.shape)) {
        return text.append(", order ").append(std::to_string(filter.order));
    }
    return text.append(", ")
        .append(signlessZero(filter.gainDb, 1))
        .append(" dB, Q ")
        .append(fixedText(filter.q, 1));
}

using Rows = std::vector<std::vector<std::string>>;

/// "line 12", "lines 12 and 13": those whose filters a place of the channel holds; empty where it holds none of them.
std::string linesOf(const FilterText& text, const ChannelImport& channel,
                    std::optional<std::size_t> ImportedLine::*place, std::size_t index) {
    std::string lines;
    for (const ImportedLine& imported : channel.plan.lines) {
        if (imported.*place == index) {
            const std::string number = std::to_string(text.lines[imported.index].line);
            lines = lines.empty()
                        ? std::string("line ").append(number)
                        : std::string("lines ").append(lines.substr(5)).append(" and ").append(number);
        }
    }
    return lines;
}

/// What each band holds now.
void addBands(const FilterText& text, const ChannelImport& channel, Rows& rows) {
    for (std::size_t index = 0; index < bandCount; ++index) {
        const EqBandParams& band = channel.plan.after.bands[index];
        const std::optional<DeviceFilter> filter = filterOf(band);
        const std::string lines = linesOf(text, channel, &ImportedLine::band, index);
        std::string what = band.off != 0 && lines.empty() ? std::string("off")
                           : filter                       ? filterText(*filter)
                                                          : std::string("a band of an unknown type");
        if (!lines.empty() && band.off != 0) {
            what.append(", off");
        }
        rows.push_back({std::string("band ").append(std::to_string(index + 1)),
                        lines.empty() ? std::string(band.off != 0 ? "none" : "as it was") : lines, what});
    }
}

/// What each crossover holds that is enabled now or that a line has filled.
void addCrossovers(const FilterText& text, const ChannelImport& channel, Rows& rows) {
    for (std::size_t index = 0; index < crossoverCount; ++index) {
        const CrossoverParams& crossover = channel.plan.after.crossovers[index];
        const std::string lines = linesOf(text, channel, &ImportedLine::crossover, index);
        if (!lines.empty() || crossover.enabled != 0) {
            rows.push_back({std::string("crossover ").append(std::to_string(index + 1)),
                            lines.empty() ? std::string("as it was") : lines,
                            filterText(filterOf(crossover)).append(crossover.enabled != 0 ? "" : ", off")});
        }
    }
}

void addLeftOut(const FilterText& text, const ChannelImport& channel, Rows& rows) {
    for (const ImportedLine& imported : channel.plan.lines) {
        if (!imported.band && !imported.crossover) {
            rows.push_back({"left out",
                            std::string("line ").append(std::to_string(text.lines[imported.index].line)),
                            imported.reason});
        }
    }
}

std::string channelTable(const FilterText& text, const ChannelImport& channel) {
    Rows rows;
    addBands(text, channel, rows);
    addCrossovers(text, channel, rows);
    addLeftOut(text, channel, rows);
    std::string table =
        std::string("Channel ").append(std::to_string(channel.channel.value + 1)).append(":\n");
    table.append(alignedTable(rows, "  "));
    if (text.hasPreamp) {
        table.append("  volume ")
            .append(channel.plan.preampAddedDb < 0.0 ? "" : "+")
            .append(signlessZero(channel.plan.preampAddedDb, 1))
            .append(" dB");
        if (channel.plan.preampLeftDb != 0.0) {
            table.append("; of the preamp ")
                .append(plainText(channel.plan.preampLeftDb))
                .append(" dB are left out");
        }
        table.append("\n");
    }
    if (channel.deviation) {
        table.append("  largest deviation from the text: ")
            .append(signlessZero(channel.deviation->db, 2))
            .append(" dB at ");
        table.append(fixedText(channel.deviation->hz, 0)).append(" Hz\n");
    }
    return table;
}

}  // namespace

std::string filtersJson(const FilterText& text) {
    return std::string("{\n").append(headJson(text)).append(linesJson(text)).append("\n}\n");
}

std::string filtersTable(const FilterText& text) {
    std::vector<std::vector<std::string>> rows;
    for (const FilterLine& line : text.lines) {
        if (line.kind != FilterLineKind::none) {
            rows.push_back({std::to_string(line.line), verdictText(line), shownText(line.text)});
        }
    }
    std::string table = alignedTable(rows, "");
    table.append(verdictCounts(text)).append("\n");
    if (text.hasPreamp) {
        table.append("Preamp ").append(plainText(text.preampDb)).append(" dB. ");
    }
    table.append(text.decimalSign == ',' ? "The decimal sign is a comma. " : "The decimal sign is a point. ");
    table.append(text.tellsSamplingRate ? "The file is for " : "Converted for ")
        .append(jsonNumber(text.samplingRateHz))
        .append(" Hz.\n");
    if (!text.channel.empty()) {
        table.append("Read for channel ").append(shownText(text.channel)).append(" of:");
        for (const std::string& name : text.channels) {
            table.append(" ").append(shownText(name));
        }
        table.append("\n");
    }
    return table;
}

std::string importJson(const FilterText& text, const std::vector<ChannelImport>& channels) {
    std::string json = std::string("{\n").append(headJson(text)).append("  \"imports\": [");
    for (const ChannelImport& channel : channels) {
        json.append(&channel == &channels.front() ? "\n" : ",\n").append("    {\"channel\": ");
        json.append(std::to_string(channel.channel.value + 1)).append(", ").append(bandsJson(text, channel));
        json.append(", \"preamp_added_db\": ").append(jsonNumber(channel.plan.preampAddedDb));
        json.append(", \"preamp_left_db\": ").append(jsonNumber(channel.plan.preampLeftDb));
        json.append(", \"deviation_db\": ")
            .append(channel.deviation ? jsonNumber(channel.deviation->db) : "null");
        json.append(", \"deviation_hz\": ")
            .append(channel.deviation ? jsonNumber(channel.deviation->hz) : "null")
            .append("}");
    }
    json.append("\n  ],\n  \"preamp_left_db\": ")
        .append(channels.empty() ? "0" : jsonNumber(channels.front().plan.preampLeftDb));
    return json.append(",\n").append(linesJson(text)).append("\n}\n");
}

std::string importTable(const FilterText& text, const std::vector<ChannelImport>& channels) {
    std::string table = filtersTable(text);
    for (const ChannelImport& channel : channels) {
        table.append(channelTable(text, channel));
    }
    return table;
}

}  // namespace tessavo::cli
