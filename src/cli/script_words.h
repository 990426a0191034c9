#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "params/field_table.h"

namespace tessavo::cli {

/// The arguments of one script line, taken one after the other. After the first fault every further one gives
/// nothing and the fault stands in error().
class ScriptWords {
 public:
    /// \param usage how the line is written, for error messages: "setVolume DB"
    ScriptWords(std::span<const std::string_view> words, std::string_view usage)
        : words_(words), usage_(usage) {}

    /// A value in the unit and range of a field, in its stored form.
    double value(FieldId field);
    /// A whole number from `lowest` to `highest`. \param what names it in messages
    std::size_t number(std::string_view what, std::size_t lowest, std::size_t highest);
    /// One of several words; its place among them.
    std::size_t choice(std::span<const std::string_view> choices);

    [[nodiscard]] bool failed() const { return error_.has_value(); }
    /// Whether no word is left.
    [[nodiscard]] bool empty() const { return words_.empty(); }
    /// The next word as it stands; empty when there is none.
    [[nodiscard]] std::string_view peek() const {
        return words_.empty() ? std::string_view{} : words_.front();
    }

    void fail(std::string message);
    /// The first fault; also one for words that nobody took.
    [[nodiscard]] std::optional<std::string> error();

 private:
    std::optional<std::string_view> take();

    std::span<const std::string_view> words_;
    std::string_view usage_;
    std::optional<std::string> error_;
};

/// A piece of a file for a message: quoted, cut after 40 bytes, bytes other than printable ASCII as
/// hexadecimal escapes.
[[nodiscard]] std::string quoted(std::string_view text);

/// "-6 to 18 dB".
[[nodiscard]] std::string rangeText(const Field& field);

}  // namespace tessavo::cli
