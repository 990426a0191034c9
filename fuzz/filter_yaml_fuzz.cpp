#include <cstdint>
#include <string>

#include "filter_rows.h"
#include "filtertext/readers.h"

// Any bytes as a file with filters in YAML: every one of its channels is read, and one that there is not.

using namespace tessavo;

namespace {

constexpr std::size_t mostChannels = 4;

/// Reads a channel; its rows are as many as those of another one or more, for each filter has at least one.
void readChannel(std::string_view text, const std::string& channel) {
    const FilterText read = readYamlFilters(text, channel);
    fuzz::checkRows(read);
    fuzz::check(read.trouble.empty() && read.channel == channel, "a channel that there is can be read");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const FilterText first = readYamlFilters(text, {});
    fuzz::checkRows(first);
    fuzz::check(first.trouble.empty() || first.lines.empty(), "trouble leaves no rows");
    for (std::size_t index = 0; index < std::min(mostChannels, first.channels.size()); ++index) {
        if (first.trouble.empty()) {
            readChannel(text, first.channels[index]);
        }
    }
    const FilterText none = readYamlFilters(text, "no such channel");
    fuzz::check(none.lines.empty() && !none.trouble.empty(), "a channel that there is not is trouble");
    return 0;
}
