#include "pages/input/slider_rows.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <ostream>

namespace tessavo::test {
namespace {

std::string tenthsText(int tenths) {
    std::string text = std::to_string(std::abs(tenths) / 10) + "." + std::to_string(std::abs(tenths) % 10);
    return tenths < 0 ? "-" + text : text;
}

std::string wholeText(int steps) {
    return std::to_string(steps);
}

std::string wholeDbText(int steps) {
    return std::to_string(steps) + ".0";
}

float tenthsOf(int steps) {
    return static_cast<float>(steps / 10.0);
}

InputRow bandRow(int band) {
    const std::size_t offset = inputBandOffset(static_cast<std::size_t>(band)) + 4;
    const std::size_t byteOffset =
        band < 10 ? 10 + static_cast<std::size_t>(band) : 7 + static_cast<std::size_t>(band - 10);
    InputRow row{"band " + std::to_string(band),
                 4001 + band,
                 4021 + band,
                 true,
                 -200,
                 200,
                 10,
                 false,
                 tenthsText,
                 {},
                 {},
                 {},
                 {}};
    row.record = [offset](int steps) { return Patches{{offset, littleEndian(tenthsOf(steps))}}; };
    row.image = [byteOffset](int steps) {
        const auto whole = littleEndian(static_cast<std::int8_t>(steps / 10));
        return Patches{{byteOffset, whole}, {byteOffset + 16, whole}};
    };
    row.held = [offset](const Bytes& store) {
        return static_cast<double>(readAt<float>(store, offset)) * 10;
    };
    row.edited = [band](TuningState& state, int steps, bool final) {
        state.setInputBandGain(static_cast<std::size_t>(band), tenthsOf(steps), final);
    };
    return row;
}

/// A field that is stored as a whole number of steps in record and image.
template <typename Stored>
InputRow plainRow(std::string name, int slider, int edit, bool vertical, int low, int high, int perUnit,
                  std::size_t recordOffset, std::size_t imageOffset, FieldId field, std::size_t element = 0) {
    InputRow row{std::move(name),
                 slider,
                 edit,
                 vertical,
                 low,
                 high,
                 perUnit,
                 false,
                 perUnit == 10                      ? tenthsText
                 : slider >= 4051 && slider <= 4056 ? wholeDbText
                                                    : wholeText,
                 {},
                 {},
                 {},
                 {}};
    row.record = [recordOffset](int steps) {
        return Patches{{recordOffset, littleEndian(static_cast<Stored>(steps))}};
    };
    row.image = [imageOffset](int steps) {
        return Patches{{imageOffset, littleEndian(static_cast<Stored>(steps))}};
    };
    row.held = [recordOffset](const Bytes& store) {
        return static_cast<double>(readAt<Stored>(store, recordOffset));
    };
    row.edited = [field, element](TuningState& state, int steps, bool final) {
        state.edit(field, {element, 0}, steps, final);
    };
    return row;
}

InputRow inputGainRow() {
    InputRow row = plainRow<std::int16_t>("gain", 4051, 4061, false, -40, 18, 1, 216, 4, FieldId::inputGain);
    row.record = [](int steps) { return Patches{{216, littleEndian(static_cast<float>(steps))}}; };
    row.held = [](const Bytes& store) { return static_cast<double>(readAt<float>(store, 216)); };
    return row;
}

InputRow decoderRow(int gain, const char* name) {
    const auto element = static_cast<std::size_t>(gain);
    InputRow row =
        plainRow<std::uint16_t>(std::string("decoder ") + name, 5041 + gain, 5051 + gain, true, 0, 300, 10,
                                1880 + 2 * element, 2974 + 2 * element, FieldId::decoderGain, element);
    row.text = [](int steps) { return steps == 0 ? std::string("-Inf.") : tenthsText(steps - 300); };
    row.followed = true;
    return row;
}

}  // namespace

int InputRow::shown(const Bytes& store) const {
    return static_cast<int>(
        std::clamp(std::round(held(store)), static_cast<double>(low), static_cast<double>(high)));
}

int InputRow::typed(int tenths) const {
    const int asked = isDecoderGain() ? 300 + tenths : perUnit == 10 ? tenths : tenths / 10;
    return std::clamp(asked, low, high);
}

const std::vector<InputRow>& equalizerRows() {
    static const std::vector<InputRow> rows = [] {
        std::vector<InputRow> made;
        for (int band = 0; band < 13; ++band) {
            made.push_back(bandRow(band));
        }
        using std::int16_t;
        using std::int8_t;
        using std::uint16_t;
        using std::uint8_t;
        made.push_back(inputGainRow());
        made.push_back(
            plainRow<int8_t>("preamp", 4052, 4062, false, -20, 20, 1, 221, 2956, FieldId::preampGain));
        made.push_back(
            plainRow<uint8_t>("poweramp", 4053, 4063, false, 0, 40, 1, 220, 2957, FieldId::powerampGain));
        made.push_back(
            plainRow<int8_t>("line-in", 4054, 4064, false, -20, 20, 1, 1836, 2958, FieldId::lineInGain));
        made.push_back(
            plainRow<uint8_t>("suppression", 4055, 4065, false, 0, 100, 1, 1837, 2959, FieldId::suppression));
        made.push_back(plainRow<std::uint32_t>("gain detection", 4056, 4066, false, 0, 1000, 1, 1840, 2960,
                                               FieldId::gainDetectionLevel));
        made.push_back(plainRow<uint16_t>("crossover", 4071, 4081, true, 20, 500, 1, 1920, 3104,
                                          FieldId::compressorCrossover));
        made.push_back(plainRow<int16_t>("PONE", 4072, 4082, true, -400, 0, 10, 1906, 2984, FieldId::pone));
        made.push_back(plainRow<int16_t>("lower limit", 4073, 4083, true, -600, 0, 10, 1910, 2988,
                                         FieldId::compressorLowerLimit));
        made.push_back(plainRow<int16_t>("compressor gain", 4074, 4084, true, 0, 200, 10, 1908, 2986,
                                         FieldId::compressorGain));
        made.push_back(plainRow<int16_t>("upper limit", 4075, 4085, true, -800, 0, 10, 1914, 2992,
                                         FieldId::expanderUpperLimit));
        made.push_back(
            plainRow<int16_t>("factor", 4076, 4086, true, -400, 0, 10, 1912, 2990, FieldId::expanderFactor));
        return made;
    }();
    return rows;
}

const std::vector<InputRow>& routerRows() {
    static const std::vector<InputRow> rows = [] {
        std::vector<InputRow> made;
        made.push_back(plainRow<std::uint16_t>("turn-off delay", 5022, 5023, false, 0, 30000, 1, 1846, 2968,
                                               FieldId::turnOffDelay));
        made.back().followed = true;
        made.push_back(decoderRow(0, "center"));
        made.push_back(decoderRow(1, "panorama"));
        made.push_back(decoderRow(2, "hall effect"));
        made.push_back(decoderRow(3, "rear to front mix"));
        return made;
    }();
    return rows;
}

void PrintTo(const InputRow& row, std::ostream* out) {
    *out << row.name;
}

}  // namespace tessavo::test
