#include "history/version_note.h"

#include <algorithm>
#include <chrono>
#include <span>
#include <type_traits>

#include "base/number_text.h"

namespace tessavo {

namespace {

constexpr std::string_view firstLine = "Tessavo kept version 1\n";
constexpr std::string_view timeLabel = "microseconds since 1970: ";
constexpr std::string_view sizeLabel = "bytes: ";
constexpr std::string_view digestLabel = "MD5: ";
constexpr std::string_view pathLabel = "path: ";
constexpr std::string_view checkLabel = "MD5 of the lines above: ";

using PathUnit = std::filesystem::path::value_type;
constexpr std::size_t unitDigits = 2 * sizeof(PathUnit);

std::string digestText(const Md5Digest& digest) {
    std::string text;
    for (const std::uint8_t byte : digest) {
        text += hexNumber(byte, 2);
    }
    return text;
}

Md5Digest digestOf(std::string_view text) {
    return md5({reinterpret_cast<const std::uint8_t*>(text.data()), text.size()});
}

// Whatever the system takes for a name comes back unchanged, also what is no text in any encoding.
std::string pathText(const std::filesystem::path& path) {
    std::string text;
    for (const PathUnit unit : path.native()) {
        const auto value = static_cast<std::uint32_t>(static_cast<std::make_unsigned_t<PathUnit>>(unit));
        if (value > ' ' - 1 && value < 0x7F && value != '%') {
            text += static_cast<char>(value);
        } else {
            text += '%' + hexNumber(value, unitDigits);
        }
    }
    return text;
}

std::filesystem::path pathFrom(std::string_view text) {
    std::filesystem::path::string_type native;
    while (!text.empty()) {
        std::size_t used = 1;
        auto value = static_cast<std::uint32_t>(text.front());
        if (text.front() == '%') {
            used = std::min(text.size(), 1 + unitDigits);
            value = wholeNumber<std::uint32_t>(text.substr(1, unitDigits), 16).value_or('?');
        }
        native += static_cast<PathUnit>(value);
        text.remove_prefix(used);
    }
    return {native};
}

// Nothing for a time that this clock cannot tell.
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

// The rest of the line behind its label; the text goes on behind it.
std::string_view takeLine(std::string_view& text, std::string_view label) {
    std::string_view line = text.substr(0, text.find('\n'));
    text.remove_prefix(std::min(line.size() + 1, text.size()));
    line.remove_prefix(std::min(label.size(), line.size()));
    return line;
}

}  // namespace

std::string noteText(const VersionNote& note) {
    const auto sinceEpoch =
        std::chrono::duration_cast<std::chrono::microseconds>(note.time.time_since_epoch());
    std::string text(firstLine);
    const auto add = [&text](std::string_view label, const std::string& value) {
        text.append(label).append(value).append("\n");
    };
    add(timeLabel, std::to_string(sinceEpoch.count()));
    add(sizeLabel, std::to_string(note.size));
    add(digestLabel, digestText(note.digest));
    add(pathLabel, pathText(note.path));
    add(checkLabel, digestText(digestOf(text)));
    return text;
}

std::optional<VersionNote> readNote(std::string_view text) {
    const std::size_t check = text.rfind(checkLabel);
    if (!text.starts_with(firstLine) || check == std::string_view::npos) {
        return std::nullopt;
    }
    const std::string_view lines = text.substr(0, check);
    if (text.substr(check + checkLabel.size()) != digestText(digestOf(lines)) + '\n') {
        return std::nullopt;
    }
    std::string_view rest = lines.substr(firstLine.size());
    const auto time = timeFrom(takeLine(rest, timeLabel));
    const auto size = wholeNumber<std::uintmax_t>(takeLine(rest, sizeLabel));
    const std::string_view digest = takeLine(rest, digestLabel);
    if (!time || !size || digest.size() != 2 * Md5Digest().size()) {
        return std::nullopt;
    }
    VersionNote note{pathFrom(takeLine(rest, pathLabel)), *time, *size, {}};
    for (std::size_t i = 0; i < note.digest.size(); ++i) {
        note.digest[i] = wholeNumber<std::uint8_t>(digest.substr(2 * i, 2), 16).value_or(0);
    }
    return note;
}

}  // namespace tessavo
