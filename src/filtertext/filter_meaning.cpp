#include "filtertext/filter_meaning.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <utility>

#include "filtertext/cookbook.h"
#include "filtertext/decimal_sign.h"

namespace tessavo {

namespace {

constexpr double butterworthQ = std::numbers::sqrt2 / 2.0;
constexpr double usualSlope = 0.9;

enum class TypeKind : std::uint8_t { peak, centredShelf, cornerShelf, pass, unsupported, none };

struct TypeWord {
    std::string_view word;
    TypeKind kind;
    FilterShape shape;
    bool needsQ;
    std::string_view refusal;  ///< of an unsupported one
};

constexpr auto typeWords = std::to_array<TypeWord>({
    {"PK", TypeKind::peak, FilterShape::peak, true, {}},
    {"PEQ", TypeKind::peak, FilterShape::peak, true, {}},
    {"Modal", TypeKind::peak, FilterShape::peak, true, {}},
    {"LSC", TypeKind::centredShelf, FilterShape::lowShelf, false, {}},
    {"LSQ", TypeKind::centredShelf, FilterShape::lowShelf, true, {}},
    {"LS", TypeKind::cornerShelf, FilterShape::lowShelf, false, {}},
    {"HSC", TypeKind::centredShelf, FilterShape::highShelf, false, {}},
    {"HSQ", TypeKind::centredShelf, FilterShape::highShelf, true, {}},
    {"HS", TypeKind::cornerShelf, FilterShape::highShelf, false, {}},
    {"LP", TypeKind::pass, FilterShape::lowPass, false, {}},
    {"HP", TypeKind::pass, FilterShape::highPass, false, {}},
    {"LPQ", TypeKind::pass, FilterShape::lowPass, true, {}},
    {"HPQ", TypeKind::pass, FilterShape::highPass, true, {}},
    {"None", TypeKind::none, FilterShape::peak, false, {}},
    {"NO", TypeKind::unsupported, FilterShape::peak, false, "a notch; the target has none"},
    {"Notch", TypeKind::unsupported, FilterShape::peak, false, "a notch; the target has none"},
    {"AP", TypeKind::unsupported, FilterShape::peak, false, "an all-pass; the target has none"},
    {"BP", TypeKind::unsupported, FilterShape::peak, false, "a band-pass; the target has none"},
    {"IIR", TypeKind::unsupported, FilterShape::peak, false,
     "a filter given by its coefficients; the target's are given by frequency, gain and Q"},
});

const TypeWord* typeOf(std::string_view type) {
    const std::string_view first = type.substr(0, type.find(' '));
    const auto found = std::find_if(typeWords.begin(), typeWords.end(),
                                    [&](const TypeWord& one) { return sameWord(one.word, first); });
    return found == typeWords.end() ? nullptr : &*found;
}

/// Turns what stands in a line into what it means.
class Meaning {
 public:
    Meaning(FilterLine& line, const RawFilter& filter, char decimalSign)
        : line_(line), filter_(filter), sign_(decimalSign) {}

    void find() {
        if (filter_.type.empty()) {
            fail("the type of the filter is missing", filter_.endColumn);
            return;
        }
        line_.source = SourceFilter{filter_.type, {}, {}, {}};
        const TypeWord* const type = typeOf(filter_.type);
        if (type != nullptr && type->kind == TypeKind::none) {
            line_.kind = FilterLineKind::empty;
            return;
        }
        fillSource();
        if (type == nullptr || type->kind == TypeKind::unsupported || filter_.isCompound) {
            line_.kind = filter_.isOn ? FilterLineKind::unsupported : FilterLineKind::off;
            line_.reason = filter_.isCompound ? "two filters in one; the target has none"
                           : type != nullptr  ? std::string(type->refusal)
                                              : quoted(filter_.type).append(" is a type that is not known");
            return;
        }
        if (!needed(*type)) {
            return;
        }
        const std::optional<CookbookFilter> meaning = build(*type);
        if (line_.kind == FilterLineKind::error || !meaning) {
            return;
        }
        line_.meaning = meaning;
        line_.kind = !filter_.isOn            ? FilterLineKind::off
                     : isBand(meaning->shape) ? FilterLineKind::band
                                              : FilterLineKind::crossover;
    }

 private:
    void fail(std::string reason, std::size_t column) {
        line_.kind = FilterLineKind::error;
        line_.reason = std::move(reason);
        line_.column = column;
    }

    void refuse(std::string reason) {
        line_.kind = filter_.isOn ? FilterLineKind::unsupported : FilterLineKind::off;
        line_.reason = std::move(reason);
    }

    [[nodiscard]] std::optional<double> read(const std::optional<RawNumber>& raw, bool thousands) const {
        if (!raw) {
            return std::nullopt;
        }
        std::optional<double> value = readNumber(raw->text, sign_, thousands);
        if (value) {
            *value *= raw->scale;
        }
        return value;
    }

    void fillSource() {
        line_.source->frequencyHz = read(filter_.frequency, true);
        line_.source->gainDb = read(filter_.gain, false);
        line_.source->q = read(filter_.q, false);
    }

    /// Whether a value is there, readable and, where that is asked, above 0.
    bool has(const std::optional<RawNumber>& raw, std::string_view name, bool frequency, bool positive) {
        if (!raw || raw->text.empty()) {
            fail(std::string("the ").append(name).append(" is missing"),
                 raw ? raw->column : filter_.endColumn);
            return false;
        }
        const std::optional<double> value = read(raw, frequency);
        if (!value || !std::isfinite(*value)) {
            const bool comma = sign_ == ',';
            const bool other = raw->text.find(comma ? '.' : ',') != std::string::npos;
            std::string reason = quoted(raw->text).append(" is not a number");
            if (other) {
                reason.append(comma ? "; the decimal sign of the file is a comma"
                                    : "; the decimal sign of the file is a point");
            }
            fail(std::move(reason), raw->column);
            return false;
        }
        if (positive && !(*value > 0.0)) {
            fail(std::string("the ").append(name).append(" is not above 0"), raw->column);
            return false;
        }
        return true;
    }

    bool needed(const TypeWord& type) {
        if (!has(filter_.frequency, "frequency", true, true)) {
            return false;
        }
        if (type.kind != TypeKind::pass && !has(filter_.gain, "gain", false, false)) {
            return false;
        }
        if (filter_.q && !filter_.q->text.empty()) {
            return has(filter_.q, "Q", false, true);
        }
        if (type.kind == TypeKind::peak && filter_.octaves) {
            return has(filter_.octaves, "bandwidth", false, true);
        }
        if (filter_.slope && !has(filter_.slope, "slope", false, true)) {
            return false;
        }
        return !(type.needsQ || filter_.q) || has(filter_.q, "Q", false, true);
    }

    std::optional<CookbookFilter> build(const TypeWord& type) {
        CookbookFilter filter{type.shape, *line_.source->frequencyHz, line_.source->gainDb.value_or(0.0),
                              butterworthQ, 2};
        const std::optional<double>& q = line_.source->q;
        switch (type.kind) {
            case TypeKind::peak:
                return peak(filter);
            case TypeKind::pass:
                filter.gainDb = 0.0;
                filter.q = q.value_or(butterworthQ);
                return filter_.shape.empty() ? std::optional(filter) : shaped(filter);
            default:
                return shelf(type, filter);
        }
    }

    std::optional<CookbookFilter> peak(CookbookFilter filter) {
        if (line_.source->q) {
            filter.q = *line_.source->q;
            return filter;
        }
        // Beyond half the rate there is no such filter, and readFilterText() says so.
        if (filter.frequencyHz < textSamplingRateHz / 2.0) {
            filter.q =
                peakQOfBandwidth(*read(filter_.octaves, false), filter.frequencyHz, textSamplingRateHz);
        }
        if (!(filter.q > 0.0)) {
            refuse("a bandwidth so large that nothing of the filter is left");
            return std::nullopt;
        }
        return filter;
    }

    std::optional<CookbookFilter> shelf(const TypeWord& type, CookbookFilter filter) {
        const std::optional<double>& q = line_.source->q;
        const std::optional<double> decibels = q ? std::nullopt : read(filter_.slope, false);
        const bool isCorner = type.kind == TypeKind::cornerShelf && (q || decibels);
        double slope = decibels ? slopeOfDecibels(*decibels) : usualSlope;
        if (q) {
            slope = shelfSlopeOfQ(*q, filter.gainDb).value_or(0.0);
            filter.q = *q;
        } else if (const std::optional<double> derived = shelfQOfSlope(slope, filter.gainDb)) {
            filter.q = *derived;
        } else {
            refuse("no shelf of this gain is so steep");
            return std::nullopt;
        }
        if (isCorner) {
            filter.frequencyHz = shelfCentre(type.shape, filter.frequencyHz, filter.gainDb, slope);
            if (!std::isfinite(filter.frequencyHz) || !(filter.frequencyHz > 0.0)) {
                refuse("a shelf so flat that its centre is nowhere");
                return std::nullopt;
            }
        }
        return filter;
    }

    /// A crossover of a table: its shape and its slope say which filter it is.
    std::optional<CookbookFilter> shaped(CookbookFilter filter) {
        const double slope = read(filter_.slope, false).value_or(12.0);
        const bool linkwitz = sameWord(filter_.shape, "L-R") || sameWord(filter_.shape, "LR");
        const bool butterworth = sameWord(filter_.shape, "BU") || sameWord(filter_.shape, "BW");
        filter.q = butterworthQ;
        if (butterworth && slope == 12.0) {
            return filter;
        }
        if ((butterworth || linkwitz) && slope == 24.0) {
            filter.order = 4;
            if (butterworth) {
                line_.reason = "a Butterworth filter of 4th order; the target's is a Linkwitz-Riley";
            }
            return filter;
        }
        refuse(std::string("a crossover of shape ")
                   .append(quoted(filter_.shape))
                   .append(
                       " and this slope; the target has Butterworth of 2nd and Linkwitz-Riley of 4th order"));
        return std::nullopt;
    }

    FilterLine& line_;
    const RawFilter& filter_;
    char sign_;
};

}  // namespace

void findMeaning(FilterLine& line, const RawFilter& filter, char decimalSign) {
    Meaning(line, filter, decimalSign).find();
}

std::string quoted(std::string_view text) {
    return std::string("\"").append(text).append("\"");
}

}  // namespace tessavo
