#include "history/note_lines.h"

#include <algorithm>
#include <chrono>
#include <span>
#include <type_traits>

#include "base/number_text.h"

namespace tessavo::note {

namespace {

constexpr std::string_view checkLabel = "MD5 of the lines above: ";

Md5Digest digestOf(std::string_view text) {
    return md5({reinterpret_cast<const std::uint8_t*>(text.data()), text.size()});
}

template <typename Units>
std::string escaped(const Units& units) {
    using Unit = typename Units::value_type;
    std::string text;
    for (const Unit unit : units) {
        const auto value = static_cast<std::uint32_t>(static_cast<std::make_unsigned_t<Unit>>(unit));
        if (value > ' ' - 1 && value < 0x7F && value != '%') {
            text += static_cast<char>(value);
        } else {
            text += '%' + hexNumber(value, 2 * sizeof(Unit));
        }
    }
    return text;
}

template <typename Unit>
std::basic_string<Unit> unescaped(std::string_view text) {
    constexpr std::size_t unitDigits = 2 * sizeof(Unit);
    std::basic_string<Unit> units;
    while (!text.empty()) {
        std::size_t used = 1;
        auto value = static_cast<std::uint32_t>(text.front());
        if (text.front() == '%') {
            used = std::min(text.size(), 1 + unitDigits);
            value = wholeNumber<std::uint32_t>(text.substr(1, unitDigits), 16).value_or('?');
        }
        units += static_cast<Unit>(value);
        text.remove_prefix(used);
    }
    return units;
}

}  // namespace

std::string digestText(const Md5Digest& digest) {
    std::string text;
    for (const std::uint8_t byte : digest) {
        text += hexNumber(byte, 2);
    }
    return text;
}

std::optional<Md5Digest> digestFrom(std::string_view text) {
    Md5Digest digest{};
    if (text.size() != 2 * digest.size()) {
        return std::nullopt;
    }
    for (std::size_t i = 0; i < digest.size(); ++i) {
        const auto byte = wholeNumber<std::uint8_t>(text.substr(2 * i, 2), 16);
        if (!byte) {
            return std::nullopt;
        }
        digest[i] = *byte;
    }
    return digest;
}

std::string timeText(WallTime time) {
    const auto sinceEpoch = std::chrono::duration_cast<std::chrono::microseconds>(time.time_since_epoch());
    return std::to_string(sinceEpoch.count());
}

std::optional<WallTime> timeFrom(std::string_view text) {
    using std::chrono::duration_cast;
    using std::chrono::microseconds;
    const auto count = wholeNumber<std::int64_t>(text);
    constexpr auto latest = duration_cast<microseconds>(WallTime::duration::max()).count();
    constexpr auto earliest = duration_cast<microseconds>(WallTime::duration::min()).count();
    return count && *count >= earliest && *count <= latest
               ? std::optional(WallTime(duration_cast<WallTime::duration>(microseconds(*count))))
               : std::nullopt;
}

std::string pathText(const std::filesystem::path& path) {
    return escaped(path.native());
}

std::filesystem::path pathFrom(std::string_view text) {
    return {unescaped<std::filesystem::path::value_type>(text)};
}

std::string plainText(std::string_view text) {
    return escaped(text);
}

std::string textFrom(std::string_view text) {
    return unescaped<char>(text);
}

std::string_view takeLine(std::string_view& text, std::string_view label) {
    std::string_view line = text.substr(0, text.find('\n'));
    text.remove_prefix(std::min(line.size() + 1, text.size()));
    line.remove_prefix(std::min(label.size(), line.size()));
    return line;
}

std::string sealed(std::string lines) {
    const std::string digest = digestText(digestOf(lines));
    return std::move(lines.append(checkLabel).append(digest).append("\n"));
}

std::optional<std::string_view> unsealed(std::string_view text, std::string_view firstLine) {
    const std::size_t check = text.rfind(checkLabel);
    if (!text.starts_with(firstLine) || check == std::string_view::npos) {
        return std::nullopt;
    }
    const std::string_view lines = text.substr(0, check);
    if (text.substr(check + checkLabel.size()) != digestText(digestOf(lines)) + '\n') {
        return std::nullopt;
    }
    return lines.substr(firstLine.size());
}

}  // namespace tessavo::note
