#include "filtertext/yaml_filter.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "base/number_text.h"
#include "filtertext/cookbook.h"
#include "filtertext/yaml_values.h"
#include "text/shown_text.h"

namespace tessavo {

namespace {

// What the other program takes.
constexpr double largestPreampDb = 150.0;

struct ShapedType {
    std::string_view name;
    FilterShape shape;
};

constexpr std::array biquads{
    ShapedType{"Peaking", FilterShape::peak}, ShapedType{"Lowshelf", FilterShape::lowShelf},
    ShapedType{"Highshelf", FilterShape::highShelf}, ShapedType{"Lowpass", FilterShape::lowPass},
    ShapedType{"Highpass", FilterShape::highPass}};

struct ComboType {
    std::string_view name;
    FilterShape shape;
    bool isLinkwitzRiley;
};

constexpr std::array combos{ComboType{"ButterworthLowpass", FilterShape::lowPass, false},
                            ComboType{"ButterworthHighpass", FilterShape::highPass, false},
                            ComboType{"LinkwitzRileyLowpass", FilterShape::lowPass, true},
                            ComboType{"LinkwitzRileyHighpass", FilterShape::highPass, true}};

struct RefusedType {
    std::string_view name;
    std::string_view reason;
};

constexpr std::array refusedBiquads{
    RefusedType{"Notch", "a notch; the target has none"},
    RefusedType{"GeneralNotch", "a notch; the target has none"},
    RefusedType{"Bandpass", "a band-pass; the target has none"},
    RefusedType{"Allpass", "an all-pass; the target has none"},
    RefusedType{"AllpassFO", "an all-pass; the target has none"},
    RefusedType{"LowpassFO", "a low-pass of 1st order; the target has those of 2nd and 4th order"},
    RefusedType{"HighpassFO", "a high-pass of 1st order; the target has those of 2nd and 4th order"},
    RefusedType{"LowshelfFO", "a shelf of 1st order; the target has those of 2nd order"},
    RefusedType{"HighshelfFO", "a shelf of 1st order; the target has those of 2nd order"},
    RefusedType{"LinkwitzTransform", "a Linkwitz transform; the target has none"},
    RefusedType{"Free", "coefficients of a biquad, which tell no frequency, gain and Q"}};

constexpr std::array refusedCombos{
    RefusedType{"Tilt", "a tilt of several shelves; the target has none"},
    RefusedType{"FivePointPeq", "five filters in one; they can be read where each stands for itself"},
    RefusedType{"GraphicEqualizer", "a graphic equalizer; the target's channels have none"}};

constexpr std::array refusedFilters{
    RefusedType{"Conv", "a convolution; the target has none"},
    RefusedType{"Delay", "a delay, which is no filter"},
    RefusedType{"DiffEq", "coefficients of a filter, which tell no frequency, gain and Q"},
    RefusedType{"Dither", "a dither; the target has none"},
    RefusedType{"Limiter", "a limiter, which is no filter"},
    RefusedType{"LookaheadLimiter", "a limiter, which is no filter"},
    RefusedType{"Loudness", "a loudness compensation; the target has none"},
    RefusedType{"Volume", "a volume control, which is no filter"}};

template <typename Type, std::size_t Count>
const Type* named(const std::array<Type, Count>& types, const YamlNode& name) {
    const auto found = std::ranges::find(types, name.text, &Type::name);
    return name.kind == YamlKind::scalar && found != types.end() ? &*found : nullptr;
}

/// A value of a filter: its key, its name in reports, and what stands behind it there.
struct Value {
    std::string_view key;
    std::string_view name;
    std::string_view unit;
};

constexpr Value frequencyValue{"freq", "frequency", " Hz"};
constexpr Value gainValue{"gain", "gain", " dB"};
constexpr Value qValue{"q", "Q", ""};
constexpr Value slopeValue{"slope", "slope", " dB per octave"};
constexpr Value bandwidthValue{"bandwidth", "bandwidth", " octaves"};
constexpr Value orderValue{"order", "order", ""};

class FilterReader {
 public:
    FilterReader(const YamlTree& tree, const YamlNode& name, double samplingRateHz)
        : tree_(tree), name_(name), samplingRateHz_(samplingRateHz) {
        filter_.line.line = name.place.line;
        filter_.line.text = shownText(name.text);
    }

    YamlFilter read(const YamlNode& body) {
        if (body.kind != YamlKind::mapping) {
            fail(body, std::string("a filter is a map of type and parameters, not ").append(shownNode(body)));
            return std::move(filter_);
        }
        const YamlNode* const type = valueOf(tree_, body, "type");
        parameters_ = valueOf(tree_, body, "parameters");
        if (type == nullptr || type->kind != YamlKind::scalar) {
            fail(type == nullptr ? name_ : *type, "the filter has no type");
        } else if (parameters_ != nullptr && parameters_->kind != YamlKind::mapping) {
            describe(*type);
            fail(*parameters_, std::string("the parameters are a map, not ").append(shownNode(*parameters_)));
        } else {
            readType(*type);
        }
        return std::move(filter_);
    }

 private:
    void readType(const YamlNode& type) {
        if (type.text != "Biquad" && type.text != "BiquadCombo") {
            describe(type);
            if (type.text == "Gain") {
                readGain();
            } else {
                refuse(type, named(refusedFilters, type));
            }
            return;
        }
        const YamlNode* const shape = parameter("type");
        if (shape == nullptr || shape->kind != YamlKind::scalar) {
            describe(type);
            fail(shape == nullptr ? name_ : *shape, "the parameters have no type");
            return;
        }
        describe(*shape);
        if (type.text == "Biquad") {
            readBiquad(*shape);
        } else {
            readCombo(*shape);
        }
    }

    void readBiquad(const YamlNode& type) {
        const ShapedType* const shaped = named(biquads, type);
        if (shaped == nullptr) {
            refuse(type, named(refusedBiquads, type));
            return;
        }
        CookbookFilter meaning;
        meaning.shape = shaped->shape;
        const auto frequency = above0(frequencyValue);
        if (!frequency) {
            return;
        }
        const auto gain = isBand(meaning.shape) ? number(gainValue) : std::optional(0.0);
        if (!gain) {
            return;
        }
        meaning.frequencyHz = *frequency;
        meaning.gainDb = *gain;
        if (const auto q = widthOf(meaning)) {
            meaning.q = *q;
            mean(meaning);
        }
    }

    /// The Q of a filter from whatever tells its width.
    std::optional<double> widthOf(const CookbookFilter& filter) {
        const Value* other = nullptr;
        if (filter.shape == FilterShape::peak) {
            other = &bandwidthValue;
        } else if (isBand(filter.shape)) {
            other = &slopeValue;
        }
        for (const Value* value : {&slopeValue, &bandwidthValue}) {
            const YamlNode* const node = parameter(value->key);
            if (node != nullptr && value != other) {
                fail(*node, std::string("a filter of this type has no ").append(value->name));
                return std::nullopt;
            }
        }
        const YamlNode* const node = other == nullptr ? nullptr : parameter(other->key);
        if (node == nullptr) {
            return above0(qValue, other);
        }
        if (const YamlNode* const q = parameter(qValue.key)) {
            fail(*q, std::string("the filter has both Q and ").append(other->name));
            return std::nullopt;
        }
        const auto width = above0(*other);
        if (!width) {
            return std::nullopt;
        }
        return other == &slopeValue ? qOfSlope(*node, *width, filter.gainDb)
                                    : qOfBandwidth(*width, filter.frequencyHz);
    }

    std::optional<double> qOfSlope(const YamlNode& node, double slope, double gainDb) {
        const auto q = shelfQOfSlope(slopeOfDecibels(slope), gainDb);
        if (!q) {
            fail(node, std::string("the slope ").append(shownNode(node)).append(" is too steep for a shelf"));
        }
        return q;
    }

    [[nodiscard]] std::optional<double> qOfBandwidth(double octaves, double frequencyHz) const {
        // Beyond that no bandwidth means anything, and the frequency is refused anyway.
        return frequencyHz < samplingRateHz_ / 2.0 ? peakQOfBandwidth(octaves, frequencyHz, samplingRateHz_)
                                                   : butterworthQ;
    }

    void readCombo(const YamlNode& type) {
        const ComboType* const combo = named(combos, type);
        if (combo == nullptr) {
            refuse(type, named(refusedCombos, type));
            return;
        }
        const auto frequency = above0(frequencyValue);
        if (!frequency) {
            return;
        }
        const YamlNode* const node = parameter(orderValue.key);
        const auto order = node == nullptr ? std::nullopt : countIn(*node);
        if (!order) {
            fail(node == nullptr ? name_ : *node,
                 node == nullptr
                     ? std::string("the order is missing")
                     : std::string("the order ").append(shownNode(*node)).append(" is no whole number"));
            return;
        }
        const bool isPossible = *order == 4 || (*order == 2 && !combo->isLinkwitzRiley);
        if (!isPossible) {
            filter_.line.kind = FilterLineKind::unsupported;
            filter_.line.reason = std::string("order ")
                                      .append(shownText(node->text))
                                      .append(
                                          "; the target has Butterworth filters of 2nd and "
                                          "Linkwitz-Riley filters of 4th order");
            return;
        }
        mean({combo->shape, *frequency, 0.0, butterworthQ, *order == 4 ? 4 : 2});
        if (*order == 4 && !combo->isLinkwitzRiley) {
            filter_.line.reason =
                "a Butterworth filter of 4th order; the target's is a Linkwitz-Riley filter";
        }
    }

    void readGain() {
        const auto value = number(gainValue);
        if (!value) {
            return;
        }
        double gainDb = *value;
        bool inverts = false;
        if (const YamlNode* const scale = parameter("scale"); scale != nullptr && scale->text == "linear") {
            inverts = gainDb < 0.0;
            gainDb = 20.0 * std::log10(std::abs(gainDb));
        } else if (scale != nullptr && scale->text != "dB") {
            fail(*scale, std::string("the scale is dB or linear, not ").append(shownNode(*scale)));
            return;
        }
        const auto inverted = flag("inverted");
        const auto mute = flag("mute");
        if (!inverted || !mute) {
            return;
        }
        FilterLine& line = filter_.line;
        line.source->gainDb = gainDb;
        line.kind = FilterLineKind::unsupported;
        if (*mute || std::isinf(gainDb)) {
            line.source->gainDb.reset();
            line.reason = "a mute, which is no preamp";
        } else if (*inverted != inverts) {
            line.reason = "a gain that inverts the polarity, which no preamp does";
        } else if (std::abs(gainDb) > largestPreampDb) {
            fail(*parameter(gainValue.key), "the gain is out of every range");
        } else {
            line.kind = FilterLineKind::none;
            line.reason = "part of the preamp";
            filter_.preampDb = gainDb;
        }
    }

    void mean(const CookbookFilter& meaning) {
        filter_.line.kind = isBand(meaning.shape) ? FilterLineKind::band : FilterLineKind::crossover;
        filter_.line.meaning = meaning;
    }

    void refuse(const YamlNode& type, const RefusedType* refused) {
        filter_.line.kind = FilterLineKind::unsupported;
        filter_.line.reason = refused != nullptr
                                  ? std::string(refused->reason)
                                  : std::string("the type ").append(shownNode(type)).append(" is not known");
    }

    void fail(const YamlNode& where, std::string reason) {
        FilterLine& line = filter_.line;
        line.kind = FilterLineKind::error;
        line.column = where.place.line == line.line ? where.place.column : name_.place.column;
        line.reason = std::move(reason);
        if (where.place.line != line.line) {
            line.reason.append(" (line ").append(std::to_string(where.place.line)).append(", column ");
            line.reason.append(std::to_string(where.place.column)).append(")");
        }
    }

    [[nodiscard]] const YamlNode* parameter(std::string_view key) const {
        return parameters_ == nullptr ? nullptr : valueOf(tree_, *parameters_, key);
    }

    std::optional<bool> flag(std::string_view key) {
        const YamlNode* const node = parameter(key);
        const auto value = node == nullptr ? std::optional(false) : flagIn(*node);
        if (!value) {
            fail(*node, std::string(key).append(" is true or false, not ").append(shownNode(*node)));
        }
        return value;
    }

    /// A number that must be there.
    /// \param other what could stand there instead
    std::optional<double> number(const Value& value, const Value* other = nullptr) {
        const YamlNode* const node = parameter(value.key);
        if (node == nullptr) {
            fail(name_, std::string("the ")
                            .append(value.name)
                            .append(other == nullptr ? "" : " or ")
                            .append(other == nullptr ? "" : other->name)
                            .append(" is missing"));
            return std::nullopt;
        }
        const auto found = numberIn(*node);
        if (!found) {
            fail(*node,
                 std::string("the ").append(value.name).append(" is no number: ").append(shownNode(*node)));
        }
        return found;
    }

    std::optional<double> above0(const Value& value, const Value* other = nullptr) {
        auto found = number(value, other);
        if (found && !(*found > 0.0)) {
            const YamlNode& node = *parameter(value.key);
            fail(node, std::string("the ")
                           .append(value.name)
                           .append(" must be above 0, not ")
                           .append(shownText(node.text)));
            found.reset();
        }
        return found;
    }

    /// Puts what can be read of the filter into `source` and `text`, whatever else becomes of it.
    void describe(const YamlNode& type) {
        FilterLine& line = filter_.line;
        line.text.append(": ").append(shownText(type.text));
        const YamlNode* const scale = parameter("scale");
        const bool isLinear = scale != nullptr && scale->text == "linear";
        line.source = SourceFilter{shownText(type.text), readable(frequencyValue),
                                   isLinear ? std::nullopt : readable(gainValue), readable(qValue)};
        for (const Value* value :
             {&frequencyValue, &gainValue, &qValue, &slopeValue, &bandwidthValue, &orderValue}) {
            const YamlNode* const node = parameter(value->key);
            if (node == nullptr || node->kind != YamlKind::scalar) {
                continue;
            }
            const bool isNamed = value == &qValue || value == &orderValue;
            line.text.append(", ").append(isNamed ? value->name : "").append(isNamed ? " " : "");
            line.text.append(shownText(node->text));
            line.text.append(value == &gainValue && isLinear ? " linear" : value->unit);
        }
    }

    [[nodiscard]] std::optional<double> readable(const Value& value) const {
        const YamlNode* const node = parameter(value.key);
        return node == nullptr ? std::nullopt : numberIn(*node);
    }

    const YamlTree& tree_;
    const YamlNode& name_;
    double samplingRateHz_;
    const YamlNode* parameters_ = nullptr;
    YamlFilter filter_{};
};

}  // namespace

YamlFilter readYamlFilter(const YamlTree& tree, const YamlNode& name, const YamlNode& body,
                          double samplingRateHz) {
    return FilterReader(tree, name, samplingRateHz).read(body);
}

}  // namespace tessavo
