#include "cli/set_report.h"

#include <array>
#include <string_view>
#include <vector>

#include "base/saturate.h"
#include "cli/set_fields.h"
#include "cli/text_table.h"

namespace tessavo::cli {

namespace {

using Row = std::vector<std::string>;

std::string cellText(const ParameterSet& set, const Field& field, FieldIndex index) {
    std::string text = elementText(set, field, index);
    // An order is its own word.
    const FieldCode* code = codeOf(field, storedValue(set, field, index));
    if (code != nullptr && code->shown != text) {
        text += " (" + std::string(code->inText.empty() ? code->shown : code->inText) + ")";
    }
    if (!field.unit.empty()) {
        text += ' ';
        text += field.unit;
    }
    return text;
}

// "channel[].band[].gain": "channel[].band[]" and "gain".
struct SplitPath {
    std::string_view group;
    std::string_view leaf;
};

SplitPath split(const Field& field) {
    const std::size_t dot = field.path.rfind('.');
    if (dot == std::string_view::npos) {
        return {{}, field.path};
    }
    return {field.path.substr(0, dot), field.path.substr(dot + 1)};
}

std::string_view withoutBrackets(std::string_view name) {
    return name.substr(0, name.find("[]"));
}

// Table with one row for each element of a group of fields, headed by the fields' names.
std::string groupTable(const ParameterSet& set, std::string_view group, std::string_view title,
                       std::size_t count, const auto& indexOf) {
    std::vector<Row> rows(count + 1);
    rows[0].emplace_back(title);
    for (std::size_t i = 0; i < count; ++i) {
        rows[i + 1].push_back(std::to_string(i));
    }
    for (const Field& field : fieldTable()) {
        if (split(field).group != group) {
            continue;
        }
        rows[0].emplace_back(split(field).leaf);
        for (std::size_t i = 0; i < count; ++i) {
            rows[i + 1].push_back(cellText(set, field, indexOf(i)));
        }
    }
    return alignedTable(rows, "  ");
}

bool isOfChannel(const Field& field) {
    return field.outer.count == channelCount;
}

std::string generalReport(const ParameterSet& set) {
    std::vector<Row> rows;
    for (const Field& field : fieldTable()) {
        if (isOfChannel(field) || !split(field).group.empty()) {
            continue;
        }
        forEachElement(field, [&](FieldIndex index) {
            rows.push_back(
                {elementPath(field, index), cellText(set, field, index), std::string(field.meaning)});
        });
    }
    return alignedTable(rows, "  ");
}

std::string channelReport(const ParameterSet& set, PagePosition position) {
    const RecordChannel channel = recordChannelAt(position);
    std::string text = "Channel " + std::to_string(position.value + 1) + " (record channel " +
                       std::to_string(channel.value) + ")\n";
    std::vector<Row> rows;
    for (const Field& field : fieldTable()) {
        if (isOfChannel(field) && field.inner.count == 1) {
            rows.push_back({elementPath(field, {channel.value, 0}), cellText(set, field, {channel.value, 0}),
                            std::string(field.meaning)});
        }
    }
    text += alignedTable(rows, "  ");
    const auto inner = [&](std::size_t i) { return FieldIndex{channel.value, i}; };
    text += groupTable(set, "channel[].band[]", "band", bandCount, inner);
    text += groupTable(set, "channel[].crossover[]", "crossover", crossoverCount, inner);
    return text;
}

std::string textLine(const ParameterSet& set, const TextField& field) {
    return std::string(field.path) + " \"" + readableText(set, field) + "\"";
}

}  // namespace

std::string setReport(const ParameterSet& set, std::size_t setIndex) {
    std::string text = "Set " + std::to_string(setIndex + 1);
    for (const TextField& field : textFields()) {
        text += ", " + textLine(set, field);
    }
    text += "\n\nGeneral\n" + generalReport(set);
    // Input groups are the repeated ones that are not there for each channel.
    std::string_view lastGroup;
    for (const Field& field : fieldTable()) {
        const std::string_view group = split(field).group;
        if (isOfChannel(field) || group.empty() || group == lastGroup) {
            continue;
        }
        lastGroup = group;
        text += "\n" + groupTable(set, group, withoutBrackets(group), field.outer.count, [](std::size_t i) {
                    return FieldIndex{i, 0};
                });
    }
    for (std::uint8_t position = 0; position < channelCount; ++position) {
        text += "\n" + channelReport(set, {position});
    }
    return text;
}

}  // namespace tessavo::cli
