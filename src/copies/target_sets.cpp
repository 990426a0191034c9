#include "copies/target_sets.h"

#include <algorithm>
#include <cstring>

#include "base/number_text.h"
#include "comm/target_commands.h"
#include "params/image_digest.h"

namespace tessavo {

namespace {

constexpr std::string_view defaultWord = "default";

std::optional<std::uint8_t> setOf(std::string_view word) {
    if (word == defaultWord) {
        return std::uint8_t{0};
    }
    const auto number = wholeNumber<std::uint8_t>(word);
    const bool isSet = number && *number >= 1 && *number < targetSetNumbers.size() && word.size() == 1;
    return isSet ? number : std::nullopt;
}

}  // namespace

std::string targetSetText(std::uint8_t targetSet) {
    return targetSet == 0 ? "the default set" : std::string("set ").append(std::to_string(targetSet));
}

std::string targetSetTitle(std::uint8_t targetSet) {
    return targetSet == 0 ? "Default Set" : std::string("Set ").append(std::to_string(targetSet));
}

std::string targetSetWord(std::uint8_t targetSet) {
    return targetSet == 0 ? std::string(defaultWord) : std::string("set").append(std::to_string(targetSet));
}

std::optional<std::vector<std::uint8_t>> targetSetsOf(std::string_view list) {
    std::vector<std::uint8_t> named;
    while (true) {
        const std::size_t comma = list.find(',');
        const auto set = setOf(list.substr(0, comma));
        if (!set || std::ranges::count(named, *set) > 0) {
            return std::nullopt;
        }
        named.push_back(*set);
        if (comma == std::string_view::npos) {
            break;
        }
        list.remove_prefix(comma + 1);
    }
    std::vector<std::uint8_t> sets;
    std::ranges::copy_if(targetSetNumbers, std::back_inserter(sets),
                         [&named](std::uint8_t set) { return std::ranges::count(named, set) > 0; });
    return sets;
}

bool isSound(const TargetReply& reply) {
    const Md5Digest digest = md5Image(imageOfReply(reply));
    return std::equal(digest.begin(), digest.end(), reply.begin() + reply_layout::imageDigest);
}

ParameterImage imageOfReply(const TargetReply& reply) {
    ParameterImage image;
    std::memcpy(&image, reply.data(), sizeof image);
    return image;
}

bool equalBytes(const ParameterImage& one, const ParameterImage& other) {
    return std::memcmp(&one, &other, sizeof one) == 0;
}

}  // namespace tessavo
