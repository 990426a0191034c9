#include "params/file_notes.h"

#include <algorithm>
#include <span>

#include "params/set_text.h"

namespace tessavo {

namespace {

using Field = std::span<char16_t>;

enum class Lines : bool { one, several };

constexpr bool isHighSurrogate(char16_t unit) {
    return unit >= 0xD800 && unit <= 0xDBFF;
}

// The separators of lines and paragraphs break a line as a control character does.
constexpr bool isControl(char16_t unit) {
    return unit < u' ' || (unit >= 0x7F && unit <= 0x9F) || unit == 0x2028 || unit == 0x2029;
}

std::u16string tidied(std::u16string_view text, Lines lines) {
    std::u16string valid = utf16FromUtf8(utf8FromUtf16(text));
    if (lines == Lines::several) {
        for (std::size_t end = valid.find(u"\r\n"); end != std::u16string::npos; end = valid.find(u"\r\n")) {
            valid.erase(end, 1);
        }
        std::ranges::replace(valid, u'\r', u'\n');
    }
    std::ranges::replace_if(
        valid,
        [lines](char16_t unit) { return isControl(unit) && !(unit == u'\n' && lines == Lines::several); },
        u' ');
    return valid;
}

void write(Field field, std::u16string_view text) {
    std::size_t length = std::min(text.size(), field.size());
    if (length < text.size() && length > 0 && isHighSurrogate(text[length - 1])) {
        --length;
    }
    std::ranges::fill(field, u'\0');
    std::copy_n(text.begin(), length, field.begin());
}

std::u16string read(std::span<const char16_t> field) {
    return {field.begin(), std::ranges::find(field, u'\0')};
}

std::u16string_view withoutSpacesAround(std::u16string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(u' '), text.size()));
    return text.substr(0, text.find_last_not_of(u' ') + 1);
}

}  // namespace

bool isEmpty(const FileNotes& notes) {
    return notes == FileNotes{};
}

std::u16string channelName(const FileNotes& notes, RecordChannel channel) {
    return read(notes.names.at(channel.value));
}

void setChannelName(FileNotes& notes, RecordChannel channel, std::u16string_view name) {
    auto& field = notes.names.at(channel.value);
    const std::u16string tidy = tidied(name, Lines::one);
    write(field, withoutSpacesAround(tidy));
    // The cut may have left a space at the end.
    const std::u16string cut = read(field);
    write(field, withoutSpacesAround(cut));
}

std::u16string noteText(const FileNotes& notes) {
    return read(notes.note);
}

void setNoteText(FileNotes& notes, std::u16string_view text) {
    write(notes.note, tidied(text, Lines::several));
}

std::u16string measurementPath(const FileNotes& notes, RecordChannel channel) {
    return read(notes.measurements.at(channel.value));
}

void setMeasurementPath(FileNotes& notes, RecordChannel channel, std::u16string_view path) {
    write(notes.measurements.at(channel.value), tidied(path, Lines::one));
}

FileNotes wellFormed(const FileNotes& notes) {
    FileNotes tidy;
    setNoteText(tidy, noteText(notes));
    for (std::uint8_t channel = 0; channel < channelCount; ++channel) {
        setChannelName(tidy, {channel}, channelName(notes, {channel}));
        setMeasurementPath(tidy, {channel}, measurementPath(notes, {channel}));
    }
    return tidy;
}

}  // namespace tessavo
