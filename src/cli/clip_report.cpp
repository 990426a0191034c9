#include "cli/clip_report.h"

#include <array>
#include <string_view>
#include <vector>

#include "cli/text_table.h"

namespace tessavo::cli {

namespace {

constexpr std::size_t inputCount = 6;
constexpr std::array<std::string_view, inputCount> inputNames{
    "Vorne Links", "Vorne Rechts", "Hinten Links", "Hinten Rechts", "Line-In Links", "Line-In Rechts"};
// Entry i of an answer belongs to row i of this table.
constexpr std::array<std::size_t, 8> channelRows{3, 7, 0, 4, 1, 5, 2, 6};

struct Stage {
    std::string_view name;
    bool ofInputs;
};

constexpr std::array<Stage, 4> stages{
    {{"ADC", true}, {"Input EQ", true}, {"Signal Processing", false}, {"Output EQ", false}}};

std::string joined(const std::vector<std::string>& names) {
    std::string text;
    for (const std::string& name : names) {
        text += (text.empty() ? "" : ", ") + name;
    }
    return text.empty() ? "-" : text;
}

std::string clippingInputs(const std::array<std::uint8_t, 8>& entries) {
    std::vector<std::string> names;
    for (std::size_t i = 0; i < inputCount; ++i) {
        if (entries[i] != 0) {
            names.emplace_back(inputNames[i]);
        }
    }
    return joined(names);
}

std::string clippingChannels(const std::array<std::uint8_t, 8>& entries) {
    std::array<bool, channelRows.size()> clips{};
    for (std::size_t i = 0; i < entries.size(); ++i) {
        clips[channelRows[i]] = entries[i] != 0;
    }
    std::vector<std::string> names;
    for (std::size_t row = 0; row < clips.size(); ++row) {
        if (clips[row]) {
            names.push_back("Kanal " + std::to_string(row + 1));
        }
    }
    return joined(names);
}

}  // namespace

std::string clipReport(const ClipState& state) {
    std::vector<std::vector<std::string>> rows;
    for (std::size_t i = 0; i < stages.size(); ++i) {
        rows.push_back({std::string(stages[i].name), stages[i].ofInputs ? clippingInputs(state.groups[i])
                                                                        : clippingChannels(state.groups[i])});
    }
    for (std::size_t i = 0; i < state.amplifiers.size(); ++i) {
        rows.push_back({"Amplifier " + std::to_string(i + 1), state.amplifiers[i] != 0 ? "clipping" : "-"});
    }
    return alignedTable(rows, "");
}

}  // namespace tessavo::cli
