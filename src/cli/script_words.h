#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "params/field_table.h"

namespace tessavo::cli {

/// The words of one script line, read one after the other. After the first fault nothing more is read, and
/// error() tells the fault.
class ScriptWords {
 public:
    /// \param line without its end; words are separated by spaces or tabs, '#' at a word's start begins a
    ///     comment
    explicit ScriptWords(std::string_view line);

    /// Passes over the first word, whose arguments the others are. The line has at least one word.
    /// \param usage how the line is written, for error messages: "setVolume DB"; outlives this object
    void begin(std::string_view usage);

    /// Reads a value of a field: a word for one of its codes, or a number in its unit and range.
    /// \return the value in its stored form
    double value(FieldId field);
    /// Reads a whole number.
    /// \param what names it in messages
    /// \param lowest least number that is accepted
    /// \param highest greatest number that is accepted
    std::size_t number(std::string_view what, std::size_t lowest, std::size_t highest);
    /// Reads one of several words.
    /// \return its index among them
    std::size_t choice(std::span<const std::string_view> choices);
    /// Reads everything up to the end of the line as it stands, comments included, without the blanks around
    /// it.
    std::string_view rest();

    [[nodiscard]] bool failed() const { return error_.has_value(); }
    /// Whether no word is left.
    [[nodiscard]] bool empty() const { return next_ == words_.size(); }
    /// The next word, without reading it; empty when there is none.
    [[nodiscard]] std::string_view peek() const { return empty() ? std::string_view{} : words_[next_]; }

    /// Records a fault that the caller found, unless there was one before.
    void fail(std::string message);
    /// The first fault; words that nobody has read are one as well.
    [[nodiscard]] std::optional<std::string> error();

 private:
    std::optional<std::string_view> take();

    std::string_view line_;
    std::vector<std::string_view> words_;
    std::size_t next_ = 0;
    std::string_view usage_;
    std::optional<std::string> error_;
};

/// The words that scripts have for the codes of a field, by rising code; empty where they write numbers.
[[nodiscard]] std::vector<std::string_view> scriptCodes(const Field& field);

/// A piece of a file for a message: quoted, cut after 40 bytes, bytes other than printable ASCII as
/// hexadecimal escapes.
[[nodiscard]] std::string quoted(std::string_view text);

/// "-6 to 18 dB".
[[nodiscard]] std::string rangeText(const Field& field);

}  // namespace tessavo::cli
