#include "filtertext/text_commands.h"

#include <algorithm>
#include <array>

namespace tessavo {

namespace {

constexpr std::size_t longestList = 60;

constexpr std::string_view condition =
    "a condition, which is not looked at; the lines below are read all the same";

constexpr std::array commands{
    TextCommand{"include", "another file, which is not read"},
    TextCommand{"device", "a device of the computer; the target is none"},
    TextCommand{"channel", "the channel of the lines below"},
    TextCommand{"copy", "a mix of channels; only filters are read"},
    TextCommand{"delay", "a delay; only filters are read"},
    TextCommand{"eval", "a calculation, which is not done"},
    TextCommand{"if", condition},
    TextCommand{"elseif", condition},
    TextCommand{"else", condition},
    TextCommand{"endif", condition},
    TextCommand{"stage", "a stage of the computer's sound; the target has none"},
    TextCommand{"graphiceq", "a graphic equalizer; the target's is parametric", 0, true},
    TextCommand{"convolution", "a convolution; the target has none", 0, true},
    TextCommand{"loudnesscorrection", "a loudness correction; the target has none", 0, true},
    TextCommand{"vstplugin", "a plug-in; the target has none", 0, true},
};

}  // namespace

std::string listOfNames(const std::vector<std::string>& names) {
    std::string list;
    for (std::size_t index = 0; index < names.size(); ++index) {
        if (list.size() > longestList) {
            return list.append(" and others");
        }
        list.append(index == 0                  ? ""
                    : index + 1 == names.size() ? " and "
                                                : ", ")
            .append(shortened(names[index]));
    }
    return list;
}

TextCommand commandOf(std::string_view plain) {
    const std::size_t begin = afterBlanks(plain, 0, plain.size());
    std::size_t end = begin;
    while (end < plain.size() && isLetter(plain[end])) {
        ++end;
    }
    const std::size_t colon = afterBlanks(plain, end, plain.size());
    if (colon >= plain.size() || plain[colon] != ':') {
        return {};
    }
    const std::string name = lowerCase(plain.substr(begin, end - begin));
    const auto* const found = std::ranges::find(commands, name, &TextCommand::name);
    if (found == commands.end()) {
        return {};
    }
    TextCommand command = *found;
    command.behind = colon + 1;
    return command;
}

ChannelScope::ChannelScope(std::string_view wanted) : wantedName_(lowerCase(wanted)) {}

bool ChannelScope::read(const LineText& line, std::size_t begin) {
    const std::string_view plain = line.plain();
    std::vector<std::string> names;
    bool isForAll = false;
    // The names stand one after another, so that each is found from where the one before ended.
    const std::string_view rest = line.original(begin, plain.size());
    for (std::size_t at = 0; at < rest.size();) {
        const std::size_t first = std::min(rest.find_first_not_of(" \t,;", at), rest.size());
        const std::size_t end = std::min(rest.find_first_of(" \t,;", first), rest.size());
        if (first < end) {
            names.emplace_back(rest.substr(first, end - first));
            isForAll = isForAll || lowerCase(names.back()) == "all";
        }
        at = end;
    }
    if (names.empty()) {
        return false;
    }
    isForRead_ = isForAll;
    for (const std::string& name : names) {
        const std::string lower = lowerCase(name);
        if (lower == "all") {
            continue;
        }
        if (known_.insert(lower).second) {
            written_.push_back(name);
            if (chosen_.empty() && (wantedName_.empty() || wantedName_ == lower)) {
                chosen_ = name;
                chosenName_ = lower;
            }
        }
        isForRead_ = isForRead_ || lower == chosenName_;
    }
    reason_ = std::string(names.size() == 1 ? "for channel " : "for channels ").append(listOfNames(names));
    return true;
}

}  // namespace tessavo
