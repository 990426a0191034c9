#include "history/cbor.h"

#include <algorithm>

namespace tessavo {

namespace {

// The kinds of values, as the three high bits of their first byte number them.
constexpr unsigned unsignedKind = 0;
constexpr unsigned negativeKind = 1;
constexpr unsigned bytesKind = 2;
constexpr unsigned textKind = 3;
constexpr unsigned listKind = 4;
constexpr unsigned mapKind = 5;
constexpr unsigned tagKind = 6;
constexpr unsigned simpleKind = 7;

// The five low bits: the argument itself, or how many bytes of it follow.
constexpr unsigned kindShift = 5;
constexpr unsigned detailMask = 0x1F;
constexpr unsigned oneByte = 24;
constexpr unsigned eightBytes = 27;

constexpr unsigned falseDetail = 20;
constexpr unsigned trueDetail = 21;

// Values that nobody knows may lie in each other so deep; reading them takes stack.
constexpr unsigned deepest = 8;

}  // namespace

void CborWriter::head(unsigned kind, std::uint64_t argument) {
    const auto put = [&](unsigned detail) {
        out_.push_back(static_cast<std::uint8_t>(kind << kindShift | detail));
    };
    if (argument < oneByte) {
        put(static_cast<unsigned>(argument));
        return;
    }
    const unsigned power = argument <= 0xFF ? 0U : argument <= 0xFFFF ? 1U : argument <= 0xFFFFFFFF ? 2U : 3U;
    put(oneByte + power);
    for (unsigned left = 1U << power; left > 0; --left) {
        out_.push_back(static_cast<std::uint8_t>(argument >> (8 * (left - 1)) & 0xFFU));
    }
}

void CborWriter::number(std::uint64_t value) {
    head(unsignedKind, value);
}

void CborWriter::boolean(bool value) {
    head(simpleKind, value ? trueDetail : falseDetail);
}

void CborWriter::bytes(std::span<const std::uint8_t> value) {
    head(bytesKind, value.size());
    out_.insert(out_.end(), value.begin(), value.end());
}

void CborWriter::text(std::string_view value) {
    head(textKind, value.size());
    out_.insert(out_.end(), value.begin(), value.end());
}

void CborWriter::list(std::size_t count) {
    head(listKind, count);
}

void CborWriter::map(std::size_t count) {
    head(mapKind, count);
}

std::optional<std::span<const std::uint8_t>> CborReader::take(std::uint64_t count) {
    if (failed_ || count > rest_.size()) {
        failed_ = true;
        return std::nullopt;
    }
    const auto taken = rest_.first(static_cast<std::size_t>(count));
    rest_ = rest_.subspan(taken.size());
    return taken;
}

std::optional<CborReader::Head> CborReader::head() {
    const auto first = take(1);
    if (!first) {
        return std::nullopt;
    }
    const unsigned kind = first->front() >> kindShift;
    const unsigned detail = first->front() & detailMask;
    if (detail < oneByte) {
        return Head{kind, detail, detail};
    }
    const auto argument = take(detail <= eightBytes ? std::uint64_t{1} << (detail - oneByte) : 0);
    if (!argument || argument->empty()) {
        failed_ = true;
        return std::nullopt;
    }
    std::uint64_t value = 0;
    for (const std::uint8_t byte : *argument) {
        value = value << 8U | byte;
    }
    return Head{kind, detail, value};
}

std::optional<std::uint64_t> CborReader::argumentOf(unsigned kind) {
    const auto found = head();
    failed_ = failed_ || found->kind != kind;
    return failed_ ? std::nullopt : std::optional(found->argument);
}

std::optional<std::uint64_t> CborReader::number() {
    return argumentOf(unsignedKind);
}

std::optional<bool> CborReader::boolean() {
    const auto found = head();
    failed_ =
        failed_ || found->kind != simpleKind || (found->detail != falseDetail && found->detail != trueDetail);
    return failed_ ? std::nullopt : std::optional(found->detail == trueDetail);
}

std::optional<std::span<const std::uint8_t>> CborReader::bytes() {
    const auto size = argumentOf(bytesKind);
    return size ? take(*size) : std::nullopt;
}

std::optional<std::string_view> CborReader::text() {
    const auto size = argumentOf(textKind);
    const auto taken = size ? take(*size) : std::nullopt;
    if (!taken) {
        return std::nullopt;
    }
    return std::string_view(reinterpret_cast<const char*>(taken->data()), taken->size());
}

std::optional<std::size_t> CborReader::list() {
    const auto count = argumentOf(listKind);
    return count ? std::optional(static_cast<std::size_t>(*count)) : std::nullopt;
}

bool CborReader::map(std::initializer_list<Member> members) {
    const auto count = argumentOf(mapKind);
    std::vector<bool> seen(members.size());
    for (std::uint64_t i = 0; !failed_ && i < *count; ++i) {
        const auto key = text();
        if (!key) {
            break;
        }
        const auto* const member = std::ranges::find(members, *key, &Member::key);
        if (member == members.end()) {
            failed_ = !pass(0);
            continue;
        }
        const auto place = static_cast<std::size_t>(member - members.begin());
        failed_ = seen[place] || !member->read(*this) || failed_;
        seen[place] = true;
    }
    for (std::size_t i = 0; i < seen.size(); ++i) {
        failed_ = failed_ || !(seen[i] || members.begin()[i].mayBeMissing);
    }
    return !failed_;
}

// Reads a value of any kind and forgets it.
bool CborReader::pass(unsigned depth) {
    const auto found = head();
    if (!found || depth > deepest) {
        failed_ = true;
        return false;
    }
    switch (found->kind) {
        case bytesKind:
        case textKind:
            return take(found->argument).has_value();
        case tagKind:
            return pass(depth + 1);
        case listKind:
        case mapKind:
            for (std::uint64_t i = 0; !failed_ && i < found->argument; ++i) {
                const bool isPassed = pass(depth + 1) && (found->kind == listKind || pass(depth + 1));
                failed_ = !isPassed;
            }
            return !failed_;
        case unsignedKind:
        case negativeKind:
        case simpleKind:
        default:
            return true;
    }
}

}  // namespace tessavo
