#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

#include "filtertext/decimal_sign.h"
#include "filtertext/raw_filter.h"
#include "filtertext/readers.h"

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

struct Command {
    std::string_view word;
    std::string_view refusal;
};

constexpr auto commands = std::to_array<Command>({
    {"Include", "another file; import that file by itself"},
    {"Device", "the choice of a sound device means nothing here"},
    {"Copy", "channels are not mixed by an import"},
    {"Delay", "a delay; set it on the channel itself"},
    {"Channel", "applies to what follows"},
    {"Eval", "a calculation; only plain numbers are read"},
    {"If", "a condition; only plain numbers are read"},
    {"ElseIf", "a condition; only plain numbers are read"},
    {"Else", "a condition; only plain numbers are read"},
    {"EndIf", "a condition; only plain numbers are read"},
    {"Stage", "the choice of a stage means nothing here"},
    {"GraphicEQ", "a graphic equalizer, whose many points are no bands"},
    {"Convolution", "a convolution; the target has none"},
    {"LoudnessCorrection", "a loudness correction; the target has none"},
    {"VSTPlugin", "a plug-in; the target has none"},
});

/// A line that has been taken apart but whose numbers have not been read.
struct RawLine {
    FilterLine line;
    std::optional<RawFilter> filter;
    std::optional<RawNumber> preamp;
    std::vector<std::string> channels;  ///< that it applies to; empty for all
};

const TypeWord* typeOf(std::string_view type) {
    const std::string_view first = type.substr(0, type.find(' '));
    const auto found = std::find_if(typeWords.begin(), typeWords.end(),
                                    [&](const TypeWord& one) { return sameWord(one.word, first); });
    return found == typeWords.end() ? nullptr : &*found;
}

/// What stands behind "Word:" at the start of a line.
std::optional<std::string_view> behind(std::string_view line, std::string_view word) {
    const std::size_t colon = line.find(':');
    if (colon == std::string_view::npos || !sameWord(trimmed(line.substr(0, colon)), word)) {
        return std::nullopt;
    }
    return line.substr(colon + 1);
}

std::string quoted(std::string_view text) {
    return std::string("\"").append(text).append("\"");
}

/// Turns what stands in a line into what it means.
class Meaning {
 public:
    Meaning(RawLine& raw, char decimalSign) : line_(raw.line), filter_(*raw.filter), sign_(decimalSign) {}

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

/// Reads a text line by line, then all of its numbers.
class TextReader {
 public:
    explicit TextReader(std::string_view text) {
        for (const std::string_view line : linesOf(text)) {
            take(line);
        }
    }

    FilterText result(std::string_view channelName) {
        FilterText result;
        result.channels = channels_;
        if (!chooseChannel(result, channelName)) {
            return result;
        }
        result.decimalSign = sign_.decided();
        for (RawLine& raw : lines_) {
            finish(raw, result);
            result.lines.push_back(std::move(raw.line));
        }
        judge(result);
        return result;
    }

 private:
    void take(std::string_view text) {
        RawLine raw;
        raw.line.line = lines_.size() + 1;
        raw.line.text = text;
        raw.channels = current_;
        const std::string_view plain = trimmed(text);
        if (!plain.starts_with('#')) {
            classify(plain, text, raw);
        }
        see(raw);
        lines_.push_back(std::move(raw));
    }

    void classify(std::string_view plain, std::string_view text, RawLine& raw) {
        if (const auto preamp = behind(plain, "Preamp")) {
            takePreamp(text, *preamp, raw);
        } else if (isBiquad(plain)) {
            raw.line.kind = FilterLineKind::unsupported;
            raw.line.reason =
                "coefficients of a filter; the target's filters are given by frequency, gain and Q";
            biquads_ = true;
        } else if (plain.starts_with("Room EQ V") && plain.find(',') != std::string_view::npos) {
            sign_.seeWeak(',');
        } else if (!takeCommand(plain, raw)) {
            raw.filter = readFilterLine(text);
            if (!raw.filter) {
                raw.filter = table_.take(text);
            }
        }
    }

    void takePreamp(std::string_view text, std::string_view value, RawLine& raw) {
        const std::size_t unit = value.find_first_of("dD");
        const std::string_view number = trimmed(value.substr(0, unit));
        const std::size_t offset =
            number.empty() ? text.size() : static_cast<std::size_t>(number.data() - text.data());
        raw.preamp = RawNumber{std::string(number), columnOf(text, offset), 1.0};
    }

    static bool isBiquad(std::string_view plain) {
        constexpr std::string_view word = "biquad";
        if (!sameWord(plain.substr(0, word.size()), word)) {
            return false;
        }
        std::string_view rest = plain.substr(word.size());
        if (rest.ends_with(',') || rest.ends_with(':')) {
            rest.remove_suffix(1);
        }
        return !rest.empty() && rest.find_first_not_of("0123456789") == std::string_view::npos;
    }

    bool takeCommand(std::string_view plain, RawLine& raw) {
        for (const Command& command : commands) {
            const std::optional<std::string_view> rest = behind(plain, command.word);
            if (!rest) {
                continue;
            }
            raw.line.kind = FilterLineKind::unsupported;
            raw.line.reason = command.refusal;
            if (sameWord(command.word, "Channel")) {
                takeChannels(*rest);
            }
            return true;
        }
        return false;
    }

    void takeChannels(std::string_view names) {
        current_.clear();
        bool all = false;
        std::string parted(names);
        std::replace(parted.begin(), parted.end(), ',', ' ');
        for (const Word& word : wordsOf(parted)) {
            if (sameWord(word.text, "all")) {
                all = true;
                continue;
            }
            current_.emplace_back(word.text);
            if (!isAmong(channels_, word.text)) {
                channels_.emplace_back(word.text);
            }
        }
        if (all) {
            current_.clear();
        }
    }

    static bool isAmong(const std::vector<std::string>& names, std::string_view name) {
        return std::any_of(names.begin(), names.end(),
                           [&](const std::string& one) { return sameWord(one, name); });
    }

    void see(const RawLine& raw) {
        if (raw.preamp) {
            sign_.see(raw.preamp->text, false);
        }
        if (raw.filter) {
            if (raw.filter->frequency) {
                sign_.see(raw.filter->frequency->text, true);
            }
            for (const auto& number :
                 {raw.filter->gain, raw.filter->q, raw.filter->octaves, raw.filter->slope}) {
                if (number) {
                    sign_.see(number->text, false);
                }
            }
        }
    }

    bool chooseChannel(FilterText& result, std::string_view wanted) {
        if (wanted.empty()) {
            result.channel = channels_.empty() ? std::string() : channels_.front();
            return true;
        }
        for (const std::string& name : channels_) {
            if (sameWord(name, wanted)) {
                result.channel = name;
                return true;
            }
        }
        std::string trouble = std::string("The file speaks of no channel ").append(quoted(wanted));
        if (channels_.empty()) {
            trouble.append(", nor of any other.");
        } else {
            trouble.append("; it has");
            for (const std::string& name : channels_) {
                trouble.append(&name == &channels_.front() ? " " : ", ").append(name);
            }
            trouble.append(".");
        }
        result.trouble = std::move(trouble);
        return false;
    }

    void finish(RawLine& raw, FilterText& result) const {
        if (!raw.preamp && !raw.filter) {
            return;
        }
        if (!raw.channels.empty() && !isAmong(raw.channels, result.channel)) {
            raw.line.kind = FilterLineKind::unsupported;
            raw.line.reason = "for channel";
            for (const std::string& name : raw.channels) {
                raw.line.reason.append(" ").append(name);
            }
            return;
        }
        if (raw.filter) {
            Meaning(raw, result.decimalSign).find();
            return;
        }
        const std::optional<double> gain = readNumber(raw.preamp->text, result.decimalSign, false);
        if (!gain) {
            raw.line.kind = FilterLineKind::error;
            raw.line.reason = raw.preamp->text.empty() ? "the gain is missing"
                                                       : quoted(raw.preamp->text).append(" is not a number");
            raw.line.column = raw.preamp->column;
            return;
        }
        result.preampDb += *gain;
        result.hasPreamp = true;
    }

    void judge(FilterText& result) const {
        const auto usable = [](const FilterLine& line) {
            return line.kind != FilterLineKind::none && line.kind != FilterLineKind::unsupported;
        };
        const auto speaks = [](const FilterLine& line) { return line.kind != FilterLineKind::none; };
        if (biquads_ && std::none_of(result.lines.begin(), result.lines.end(), usable)) {
            const auto first = std::find_if(result.lines.begin(), result.lines.end(), speaks);
            result.trouble =
                "It is a list of filter coefficients. The target's filters are given by frequency, gain and "
                "Q; export those.";
            result.troubleLine = first->line;
            result.troubleColumn = 1;
        } else if (!result.hasPreamp && std::none_of(result.lines.begin(), result.lines.end(), speaks)) {
            result.trouble = "There is no filter in it.";
        }
    }

    std::vector<RawLine> lines_;
    std::vector<std::string> channels_;
    std::vector<std::string> current_;
    DecimalSign sign_;
    FilterTable table_;
    bool biquads_ = false;
};

}  // namespace

FilterText readTextLines(std::string_view text, std::string_view channelName) {
    const std::size_t zero = text.find('\0');
    if (zero != std::string_view::npos) {
        FilterText refused;
        const std::string_view before = text.substr(0, zero);
        refused.trouble = "It is no text: it holds bytes of zero.";
        refused.troubleLine = linesOf(before).size() +
                              (before.empty() || before.ends_with('\n') || before.ends_with('\r') ? 1 : 0);
        refused.troubleColumn = 1;
        return refused;
    }
    return TextReader(text).result(channelName);
}

}  // namespace tessavo
