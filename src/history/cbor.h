#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace tessavo {

/// Writes values in CBOR (RFC 8949), one behind the other. What is announced as a list or a map must follow.
class CborWriter {
 public:
    /// Appends to these bytes, which outlive the writer.
    explicit CborWriter(std::vector<std::uint8_t>& out) : out_(out) {}

    void number(std::uint64_t value);
    void boolean(bool value);
    void bytes(std::span<const std::uint8_t> value);
    /// \param value in UTF-8
    void text(std::string_view value);
    /// So many values follow.
    void list(std::size_t count);
    /// So many pairs follow, of a text and a value each.
    void map(std::size_t count);

 private:
    void head(unsigned kind, std::uint64_t argument);

    std::vector<std::uint8_t>& out_;
};

/// Reads values in CBOR, one behind the other. Lengths must be told in advance, as CborWriter does. Where the
/// next value is of another kind, or its bytes end too soon, a function gives nothing, and so does every one
/// after it.
class CborReader {
 public:
    /// \param bytes outlive the reader, and what it gives refers to them
    explicit CborReader(std::span<const std::uint8_t> bytes) : rest_(bytes) {}

    [[nodiscard]] std::optional<std::uint64_t> number();
    [[nodiscard]] std::optional<bool> boolean();
    [[nodiscard]] std::optional<std::span<const std::uint8_t>> bytes();
    /// The bytes of a text. Nobody has looked whether they are UTF-8.
    [[nodiscard]] std::optional<std::string_view> text();
    /// How many values follow; there need not be so many.
    [[nodiscard]] std::optional<std::size_t> list();

    /// What reads one member of a map.
    struct Member {
        std::string_view key;
        std::function<bool(CborReader&)> read;  ///< false when the value is not as it should be
        bool mayBeMissing = false;
    };
    /// Reads a map in which each of these keys stands once, or at most once where it may be missing, in any
    /// order, and passes over other keys.
    /// \return whether it is such a map and every member could be read
    [[nodiscard]] bool map(std::initializer_list<Member> members);

    /// Whether all was read, and could be.
    [[nodiscard]] bool isAtEnd() const { return !failed_ && rest_.empty(); }

 private:
    struct Head {
        unsigned kind;
        unsigned detail;
        std::uint64_t argument;
    };
    [[nodiscard]] std::optional<Head> head();
    [[nodiscard]] std::optional<std::uint64_t> argumentOf(unsigned kind);
    [[nodiscard]] std::optional<std::span<const std::uint8_t>> take(std::uint64_t count);
    [[nodiscard]] bool pass(unsigned depth);

    std::span<const std::uint8_t> rest_;
    bool failed_ = false;
};

}  // namespace tessavo
