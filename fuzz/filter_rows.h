#pragma once

#include <algorithm>
#include <cmath>
#include <string_view>

#include "check.h"
#include "filtertext/filter_text.h"

namespace tessavo::fuzz {

/// Whether a text is UTF-8: no byte out of place, none too many, no surrogate and nothing beyond U+10FFFF.
inline bool isUtf8(std::string_view text) {
    for (std::size_t at = 0; at < text.size();) {
        const auto first = static_cast<unsigned char>(text[at]);
        const std::size_t length = first < 0x80U    ? 1
                                   : first >= 0xF5U ? 0
                                   : first >= 0xF0U ? 4
                                   : first >= 0xE0U ? 3
                                   : first >= 0xC2U ? 2
                                                    : 0;
        if (length == 0 || at + length > text.size()) {
            return false;
        }
        for (std::size_t index = 1; index < length; ++index) {
            if ((static_cast<unsigned char>(text[at + index]) & 0xC0U) != 0x80U) {
                return false;
            }
        }
        const auto second = length > 1 ? static_cast<unsigned char>(text[at + 1]) : 0x80U;
        if ((first == 0xE0U && second < 0xA0U) || (first == 0xEDU && second >= 0xA0U) ||
            (first == 0xF0U && second < 0x90U) || (first == 0xF4U && second >= 0x90U)) {
            return false;
        }
        at += length;
    }
    return true;
}

inline bool isFiniteOrNothing(const std::optional<double>& value) {
    return !value || std::isfinite(*value);
}

/// What a reader promises of every row.
inline void checkRow(const FilterLine& row) {
    check(row.line > 0, "every row has a line");
    check(isUtf8(row.text) && isUtf8(row.reason), "rows are UTF-8");
    check(row.text.find_first_of(std::string_view("\r\n", 2)) == std::string_view::npos, "a row is one line");
    if (row.source) {
        check(isUtf8(row.source->type), "types are UTF-8");
        check(isFiniteOrNothing(row.source->frequencyHz) && isFiniteOrNothing(row.source->gainDb) &&
                  isFiniteOrNothing(row.source->q),
              "what stands there is finite");
    }
    const bool plays = row.kind == FilterLineKind::band || row.kind == FilterLineKind::crossover;
    check(!plays || (row.source && row.meaning), "what plays has a source and a meaning");
    check(plays || row.kind == FilterLineKind::off || !row.meaning, "only what plays or could has a meaning");
    if (row.meaning) {
        check(row.kind == FilterLineKind::off ||
                  isBand(row.meaning->shape) == (row.kind == FilterLineKind::band),
              "the shape makes the kind");
        check(row.meaning->order == 2 || row.meaning->order == 4, "orders are 2 or 4");
        check(isBand(row.meaning->shape) || row.meaning->gainDb == 0.0, "a crossover has no gain");
        check(!isBand(row.meaning->shape) || row.meaning->order == 2, "bands are of 2nd order");
    }
    const bool isRefused = row.kind == FilterLineKind::unsupported || row.kind == FilterLineKind::error;
    check(!isRefused || !row.reason.empty(), "what is refused has a reason");
    check((row.kind == FilterLineKind::error) == (row.column > 0), "errors have a column, and nothing else");
    check(row.kind != FilterLineKind::empty || (!row.meaning && !row.device), "an empty place holds nothing");
    check(row.kind != FilterLineKind::none || !row.source, "what is no filter has no source");
}

/// What a reader promises of a whole text.
inline void checkRows(const FilterText& text) {
    check(std::ranges::is_sorted(text.lines, {}, &FilterLine::line), "rows stand in the order of the file");
    for (const FilterLine& row : text.lines) {
        checkRow(row);
    }
    check(std::isfinite(text.preampDb), "the preamp is finite");
    check(text.hasPreamp || text.preampDb == 0.0, "without a preamp it is 0");
    check(std::isfinite(text.samplingRateHz) && text.samplingRateHz > 0.0, "the rate is one");
    check(text.tellsSamplingRate || text.samplingRateHz == textSamplingRateHz,
          "the rate is told or the usual one");
    check(text.decimalSign == '.' || text.decimalSign == ',', "the decimal sign is one");
    check(isUtf8(text.trouble), "trouble is UTF-8");
    check(!text.lines.empty() || !text.trouble.empty(), "a text without a row is trouble");
    check((text.troubleLine == 0) == (text.troubleColumn == 0), "a place has line and column");
    check(text.troubleLine == 0 || !text.trouble.empty(), "only trouble has a place");
    check(std::ranges::all_of(text.channels, isUtf8), "names of channels are UTF-8");
    if (text.trouble.empty()) {
        check(text.channels.empty() == text.channel.empty(), "one channel is read where there are any");
    }
    check(text.channel.empty() || std::ranges::find(text.channels, text.channel) != text.channels.end(),
          "the channel is one that there is");
}

}  // namespace tessavo::fuzz
