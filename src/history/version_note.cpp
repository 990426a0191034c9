#include "history/version_note.h"

#include "base/number_text.h"
#include "history/note_lines.h"

namespace tessavo {

namespace {

constexpr std::string_view firstLine = "Tessavo kept version 1\n";
constexpr std::string_view timeLabel = "microseconds since 1970: ";
constexpr std::string_view sizeLabel = "bytes: ";
constexpr std::string_view digestLabel = "MD5: ";
constexpr std::string_view pathLabel = "path: ";

}  // namespace

std::string noteText(const VersionNote& note) {
    std::string text(firstLine);
    const auto add = [&text](std::string_view label, const std::string& value) {
        text.append(label).append(value).append("\n");
    };
    add(timeLabel, note::timeText(note.time));
    add(sizeLabel, std::to_string(note.size));
    add(digestLabel, note::digestText(note.digest));
    add(pathLabel, note::pathText(note.path));
    return note::sealed(std::move(text));
}

std::optional<VersionNote> readNote(std::string_view text) {
    const auto lines = note::unsealed(text, firstLine);
    if (!lines) {
        return std::nullopt;
    }
    std::string_view rest = *lines;
    const auto time = note::timeFrom(note::takeLine(rest, timeLabel));
    const auto size = wholeNumber<std::uintmax_t>(note::takeLine(rest, sizeLabel));
    const auto digest = note::digestFrom(note::takeLine(rest, digestLabel));
    if (!time || !size || !digest) {
        return std::nullopt;
    }
    return VersionNote{note::pathFrom(note::takeLine(rest, pathLabel)), *time, *size, *digest};
}

}  // namespace tessavo
