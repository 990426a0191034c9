#include "cli/set_fields.h"

#include <array>
#include <bit>
#include <cmath>

#include "base/number_text.h"
#include "base/saturate.h"

namespace tessavo::cli {

namespace {

constexpr std::array<TextField, 2> texts{{
    {"setName", offsetof(ParameterSet, setName), &ParameterSet::setName},
    {"setVersion", offsetof(ParameterSet, setVersion), &ParameterSet::setVersion},
}};

std::vector<SpareRun> findSpareRuns() {
    std::array<bool, parameterSetSize> covered{};
    const auto cover = [&covered](std::size_t offset, std::size_t size) {
        for (std::size_t i = 0; i < size; ++i) {
            covered.at(offset + i) = true;
        }
    };
    for (const Field& field : fieldTable()) {
        forEachElement(field,
                       [&](FieldIndex index) { cover(recordOffsetOf(field, index), widthOf(field.type)); });
    }
    for (const TextField& text : texts) {
        cover(text.recordOffset, sizeof(SetText));
    }
    std::vector<SpareRun> runs;
    for (std::size_t offset = 0; offset < covered.size(); ++offset) {
        if (covered[offset]) {
            continue;
        }
        if (!runs.empty() && runs.back().offset + runs.back().size == offset) {
            ++runs.back().size;
        } else {
            runs.push_back({offset, 1});
        }
    }
    return runs;
}

std::string bitsText(const ParameterSet& set, const Field& field, FieldIndex index) {
    const RecordBytes record = bytesOf(set);
    const auto bytes = std::span(record).subspan(recordOffsetOf(field, index), widthOf(field.type));
    return "nan(0x" + hexText(std::vector<std::uint8_t>(bytes.rbegin(), bytes.rend())) + ")";
}

}  // namespace

std::span<const TextField> textFields() {
    return texts;
}

const std::vector<SpareRun>& spareRuns() {
    static const std::vector<SpareRun> runs = findSpareRuns();
    return runs;
}

std::string elementPath(const Field& field, FieldIndex index) {
    std::string path(field.path);
    for (const std::size_t number : {index.outer, index.inner}) {
        const std::size_t bracket = path.find("[]");
        if (bracket != std::string::npos) {
            path.insert(bracket + 1, std::to_string(number));
        }
    }
    return path;
}

std::string elementText(const ParameterSet& set, const Field& field, FieldIndex index) {
    const double stored = storedValue(set, field, index);
    if (std::isnan(stored)) {
        return bitsText(set, field, index);
    }
    std::string text;
    if (field.type == FieldType::f32) {
        text = shortestText(static_cast<float>(stored));
    } else if (field.storedPerShown == 1) {
        text = std::to_string(truncateTo<std::int64_t>(stored));
    } else {
        text = shortestText(shownValue(set, field, index));
    }
    if (shownDecimals(field) > 0 && text.find_first_of(".en") == std::string::npos) {
        text += ".0";
    }
    return text;
}

std::string readable(std::string_view text) {
    std::string result;
    for (const char character : text) {
        const auto byte = static_cast<std::uint8_t>(character);
        if (byte < 0x20 || byte == 0x7F) {
            result += "\\x" + hexText(std::array{byte});
        } else {
            result += character;
        }
    }
    return result;
}

std::string readableText(const ParameterSet& set, const TextField& field) {
    return readable(utf8FromUtf16(readSetText(set.*field.text)));
}

RecordBytes bytesOf(const ParameterSet& set) {
    return std::bit_cast<RecordBytes>(set);
}

std::string hexText(std::span<const std::uint8_t> bytes) {
    constexpr std::string_view digits = "0123456789abcdef";
    std::string text;
    for (const std::uint8_t byte : bytes) {
        text += digits[byte >> 4U];
        text += digits[byte & 0xFU];
    }
    return text;
}

}  // namespace tessavo::cli
