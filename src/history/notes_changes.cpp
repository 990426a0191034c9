#include "history/notes_changes.h"

#include <cstddef>
#include <vector>

#include "history/element_words.h"
#include "params/set_text.h"

namespace tessavo {

namespace {

using Channels = std::vector<std::size_t>;

// "Channel 7" or "3 channels", which is short whatever the channels are.
std::string placeOf(const Channels& channels) {
    return channels.size() == 1 ? channelList(channels) : countWords(channels.size(), "channel");
}

std::string namesPhrase(const Channels& renamed, const FileNotes& after) {
    std::string phrase = placeOf(renamed);
    if (renamed.size() > 1) {
        return phrase.append(" named");
    }
    const std::u16string name = channelName(after, {static_cast<std::uint8_t>(renamed.front())});
    return name.empty() ? phrase.append(" without a name")
                        : phrase.append(" named ").append(utf8FromUtf16(name));
}

}  // namespace

std::string describeNotesChange(const FileNotes& before, const FileNotes& after) {
    Channels renamed;
    Channels measured;
    for (std::size_t channel = 0; channel < channelCount; ++channel) {
        if (before.names[channel] != after.names[channel]) {
            renamed.push_back(channel);
        }
        if (before.measurements[channel] != after.measurements[channel]) {
            measured.push_back(channel);
        }
    }
    const bool isNoted = before.note != after.note;
    const char* const notePhrase = noteText(after).empty() ? "ote removed" : "ote changed";
    if (!measured.empty()) {
        // One by one they would be too long for a menu.
        return renamed.empty() && !isNoted
                   ? placeOf(measured).append(", other measurement")
                   : "Names and notes, " +
                         countWords(renamed.size() + measured.size() + (isNoted ? 1U : 0U), "value");
    }
    if (renamed.empty()) {
        return isNoted ? std::string("N").append(notePhrase) : std::string();
    }
    std::string text = namesPhrase(renamed, after);
    if (isNoted) {
        text.append(", n").append(notePhrase);
    }
    return text;
}

}  // namespace tessavo
