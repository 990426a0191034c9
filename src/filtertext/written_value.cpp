#include "filtertext/written_value.h"

namespace tessavo {

namespace {

constexpr double hertzOfKilohertz = 1000.0;

bool endsWord(std::string_view plain, std::size_t at, std::size_t end) {
    return at >= end ||
           (!isLetter(plain[at]) && !isDigit(plain[at]) && plain[at] != LineText::otherCharacter);
}

bool isListMark(char character) {
    return character == ',' || character == ';' || character == ')';
}

std::size_t afterUnitOf(std::string_view plain, std::size_t at, std::size_t end, WrittenValue& value,
                        ValueUnit unit) {
    std::size_t next = at;
    if (unit == ValueUnit::hertz) {
        next = afterUnit(plain, at, end, "hz");
        if (next == at) {
            next = afterUnit(plain, at, end, "khz");
            value.scale = next == at ? 1.0 : hertzOfKilohertz;
        }
    } else if (unit == ValueUnit::decibels) {
        next = afterUnit(plain, at, end, "db");
    } else if (unit == ValueUnit::octaves) {
        next = afterUnit(plain, at, end, "octaves");
        next = next == at ? afterUnit(plain, at, end, "oct") : next;
    }
    return next;
}

void refuse(const LineText& line, std::size_t begin, std::size_t end, WrittenValue& value) {
    value.number.clear();
    value.quoted = line.quoted(begin, end);
    value.problem = value.quoted;
    value.problem.append(" is not a number");
}

}  // namespace

std::size_t afterUnit(std::string_view plain, std::size_t at, std::size_t end, std::string_view word) {
    std::size_t next = afterBlanks(plain, at, end);
    for (const char letter : word) {
        next = afterBlanks(plain, next, end);
        if (next >= end || lowerCase(plain.substr(next, 1)).front() != letter) {
            return at;
        }
        ++next;
    }
    return endsWord(plain, next, end) ? next : at;
}

std::size_t readValue(const LineText& line, std::size_t begin, std::size_t end, ValueUnit unit,
                      WrittenValue& value) {
    const std::string_view plain = line.plain();
    const std::size_t first = afterBlanks(plain, begin, end);
    value.column = first + 1;
    value.use = unit == ValueUnit::hertz ? NumberUse::frequency : NumberUse::other;
    if (first == end || afterUnitOf(plain, first, end, value, unit) != first) {
        value.column = (first == end ? begin : first) + 1;
        return first;
    }
    value.isThere = true;
    const auto number = numberAt(plain, first, end, value.use);
    const std::size_t wordEnd = afterWord(plain, number ? number->end : first, end);
    if (!number) {
        refuse(line, first, wordEnd, value);
        return wordEnd;
    }
    const std::size_t unitEnd = afterUnitOf(plain, number->end, end, value, unit);
    const bool isGlued = number->end < end && !isBlank(plain[number->end]) && !isListMark(plain[number->end]);
    if (unitEnd == number->end && isGlued) {
        refuse(line, first, wordEnd, value);
        return wordEnd;
    }
    const std::size_t next = afterBlanks(plain, unitEnd, end);
    if (unitEnd == number->end && next < end && numberAt(plain, next, end, NumberUse::other)) {
        refuse(line, first, afterWord(plain, next, end), value);
        return afterWord(plain, next, end);
    }
    value.number = number->text;
    value.quoted = line.quoted(first, number->end);
    return unitEnd;
}

}  // namespace tessavo
