#include "cli/clip_report.h"

#include <span>
#include <vector>

#include "cli/text_table.h"
#include "comm/clip_layout.h"

namespace tessavo::cli {

namespace {

std::string clippingNames(const ClipStage& stage, std::span<const std::uint8_t> entries) {
    std::vector<bool> clips(stage.names.size(), false);
    for (std::size_t entry = 0; entry < stage.rows.size(); ++entry) {
        clips[stage.rows[entry]] = entries[entry] != 0;
    }
    std::string text;
    for (std::size_t row = 0; row < clips.size(); ++row) {
        if (clips[row]) {
            text.append(text.empty() ? "" : ", ").append(stage.names[row]);
        }
    }
    return text.empty() ? "-" : text;
}

}  // namespace

std::string clipReport(const ClipState& state) {
    std::vector<std::vector<std::string>> rows;
    for (std::size_t i = 0; i < clipStages.size(); ++i) {
        rows.push_back({std::string(clipStages[i].caption), clippingNames(clipStages[i], state.groups[i])});
    }
    for (std::size_t i = 0; i < clipAmplifierNames.size(); ++i) {
        rows.push_back({std::string(clipAmplifierNames[i]), state.amplifiers[i] != 0 ? "clipping" : "-"});
    }
    return alignedTable(rows, "");
}

}  // namespace tessavo::cli
