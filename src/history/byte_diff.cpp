#include "history/byte_diff.h"

#include <algorithm>
#include <cstring>

namespace tessavo {

namespace {

constexpr std::size_t headSize = 4;
// Equal bytes between two differing ones that cost less than the head of another run.
constexpr std::size_t shortestGap = headSize;
// Compared at once where nothing differs, which is nearly everywhere.
constexpr std::size_t block = 64;

std::size_t wordAt(std::span<const std::uint8_t> bytes, std::size_t offset) {
    return bytes[offset] | static_cast<std::size_t>(bytes[offset + 1]) << 8;
}

void appendWord(std::vector<std::uint8_t>& bytes, std::size_t word) {
    bytes.push_back(static_cast<std::uint8_t>(word & 0xFF));
    bytes.push_back(static_cast<std::uint8_t>(word >> 8));
}

std::size_t nextDifference(std::span<const std::uint8_t> one, std::span<const std::uint8_t> other,
                           std::size_t from) {
    while (from + block <= one.size() && std::memcmp(&one[from], &other[from], block) == 0) {
        from += block;
    }
    while (from < one.size() && one[from] == other[from]) {
        ++from;
    }
    return from;
}

}  // namespace

ByteDiff ByteDiff::between(std::span<const std::uint8_t> one, std::span<const std::uint8_t> other) {
    ByteDiff diff;
    std::size_t first = nextDifference(one, other, 0);
    while (first < one.size()) {
        std::size_t end = first + 1;
        std::size_t next = nextDifference(one, other, end);
        while (next < one.size() && next - end < shortestGap) {
            end = next + 1;
            next = nextDifference(one, other, end);
        }
        appendWord(diff.runs_, first);
        appendWord(diff.runs_, end - first);
        for (std::size_t i = first; i < end; ++i) {
            diff.runs_.push_back(one[i] ^ other[i]);
        }
        first = next;
    }
    diff.runs_.shrink_to_fit();
    return diff;
}

std::optional<ByteDiff> ByteDiff::fromBytes(std::vector<std::uint8_t> bytes, std::size_t length) {
    std::size_t at = 0;
    std::size_t end = 0;
    while (at < bytes.size()) {
        if (bytes.size() - at < headSize) {
            return std::nullopt;
        }
        const std::size_t offset = wordAt(bytes, at);
        const std::size_t count = wordAt(bytes, at + 2);
        at += headSize;
        if (offset < end || count == 0 || offset + count > length || bytes.size() - at < count) {
            return std::nullopt;
        }
        end = offset + count;
        at += count;
    }
    ByteDiff diff;
    diff.runs_ = std::move(bytes);
    return diff;
}

void ByteDiff::applyTo(std::span<std::uint8_t> row) const {
    std::size_t at = 0;
    while (at < runs_.size()) {
        const std::size_t offset = wordAt(runs_, at);
        const std::size_t count = wordAt(runs_, at + 2);
        at += headSize;
        std::transform(
            runs_.begin() + static_cast<std::ptrdiff_t>(at),
            runs_.begin() + static_cast<std::ptrdiff_t>(at + count),
            row.begin() + static_cast<std::ptrdiff_t>(offset),
            row.begin() + static_cast<std::ptrdiff_t>(offset),
            [](std::uint8_t difference, std::uint8_t byte) -> std::uint8_t { return byte ^ difference; });
        at += count;
    }
}

}  // namespace tessavo
