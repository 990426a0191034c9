#include "cli/number_lists.h"

#include <algorithm>
#include <utility>

#include "base/number_text.h"
#include "measure/alignment.h"

namespace tessavo::cli {

namespace {

// The items between commas, each read by a function that gives nothing for a wrong one. No text is one wrong item.
template <typename Read>
auto readList(std::string_view text, Read read)
    -> std::optional<std::vector<typename decltype(read(text))::value_type>> {
    std::vector<typename decltype(read(text))::value_type> items;
    for (std::size_t comma = 0; comma != std::string_view::npos;) {
        comma = text.find(',');
        const auto item = read(text.substr(0, comma));
        if (!item) {
            return std::nullopt;
        }
        items.push_back(*item);
        text.remove_prefix(comma == std::string_view::npos ? 0 : comma + 1);
    }
    return items;
}

}  // namespace

std::optional<std::vector<PagePosition>> channelList(std::string_view text) {
    auto channels = readList(text, [](std::string_view word) -> std::optional<PagePosition> {
        const auto number = wholeNumber<std::uint8_t>(word);
        if (!number || *number < 1 || *number > channelCount) {
            return std::nullopt;
        }
        return PagePosition{static_cast<std::uint8_t>(*number - 1)};
    });
    if (channels) {
        auto sorted = *channels;
        std::ranges::sort(sorted);
        if (std::ranges::adjacent_find(sorted) != sorted.end()) {
            return std::nullopt;
        }
    }
    return channels;
}

std::optional<std::vector<std::size_t>> bandList(std::string_view text) {
    const auto numberOf = [](std::string_view word) {
        const auto number = wholeNumber<std::uint8_t>(word);
        return number && *number >= 1 && *number <= bandCount ? number : std::nullopt;
    };
    const auto ranges =
        readList(text, [&](std::string_view word) -> std::optional<std::pair<std::size_t, std::size_t>> {
            const std::size_t dash = word.find('-');
            const auto first = numberOf(word.substr(0, dash));
            const auto last = dash == std::string_view::npos ? first : numberOf(word.substr(dash + 1));
            if (!first || !last || *first > *last) {
                return std::nullopt;
            }
            return std::pair<std::size_t, std::size_t>(*first, *last);
        });
    if (!ranges) {
        return std::nullopt;
    }
    std::vector<std::size_t> bands;
    for (const auto& [first, last] : *ranges) {
        for (std::size_t band = first - 1; band < last; ++band) {
            if (std::ranges::find(bands, band) != bands.end()) {
                return std::nullopt;
            }
            bands.push_back(band);
        }
    }
    return bands;
}

std::optional<std::vector<double>> frequencyList(std::string_view text) {
    return readList(text, [](std::string_view word) {
        const auto frequencyHz = finiteNumber(word);
        return frequencyHz && *frequencyHz >= 0.0 ? frequencyHz : std::nullopt;
    });
}

std::optional<MeasurementColumns> columnPair(std::string_view text) {
    const auto columns = readList(text, [](std::string_view word) {
        const auto column = wholeNumber<std::size_t>(word);
        return column && *column >= 1 ? column : std::nullopt;
    });
    if (!columns || columns->size() != 2 || columns->front() == columns->back()) {
        return std::nullopt;
    }
    return MeasurementColumns{columns->front(), columns->back()};
}

std::optional<std::vector<std::optional<double>>> positionList(std::string_view text) {
    using Value = std::optional<double>;
    auto values = readList(text, [](std::string_view word) -> std::optional<Value> {
        if (word == "-") {
            return Value();
        }
        const auto value = finiteNumber(word);
        return value && *value >= 0.0 && *value <= mostToldOfPlace ? std::optional<Value>(value)
                                                                   : std::nullopt;
    });
    const auto isTold = [](const Value& value) { return value.has_value(); };
    if (values && (values->size() != channelCount || std::ranges::none_of(*values, isTold))) {
        return std::nullopt;
    }
    return values;
}

}  // namespace tessavo::cli
