#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "text/line_text.h"

namespace tessavo {

/// A line of an equalizer program that is a command and no filter of bands.
struct TextCommand {
    std::string_view name;    ///< in small letters: "include"; empty for other lines
    std::string_view reason;  ///< why nothing can be done with it
    std::size_t behind = 0;   ///< the place behind its colon
    bool isFilter = false;    ///< it changes the sound as a filter does
};

/// The command of a line such as "Delay: 500 ms"; one without a name for other lines.
[[nodiscard]] TextCommand commandOf(std::string_view plain);

/// The names with commas and "and" between them; a long list is cut.
[[nodiscard]] std::string listOfNames(const std::vector<std::string>& names);

/// Which channels lines are for.
class ChannelScope {
 public:
    /// \param wanted the channel to read; empty for the first that is named
    explicit ChannelScope(std::string_view wanted);

    /// Reads what stands behind "Channel:"; what follows is for these channels.
    /// \return whether a channel stands there; nothing changes where none does
    bool read(const LineText& line, std::size_t begin);

    /// Whether the lines from here on are for the channel that is read.
    [[nodiscard]] bool applies() const { return isForRead_; }

    /// Why they are not: "for channel R", "for channels L2 and R2".
    [[nodiscard]] std::string otherReason() const { return reason_; }

    /// The channels that were named, as they were written first, in the order of the text.
    [[nodiscard]] const std::vector<std::string>& names() const { return written_; }

    /// The one that is read, as it was written first; empty where none is named, or not the one that is wanted.
    [[nodiscard]] const std::string& channel() const { return chosen_; }

 private:
    std::string wantedName_;
    std::vector<std::string> written_;
    std::unordered_set<std::string> known_;
    std::string chosen_;
    std::string chosenName_;  ///< the same in small letters
    std::string reason_;
    bool isForRead_ = true;
};

}  // namespace tessavo
