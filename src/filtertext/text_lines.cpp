#include <algorithm>
#include <array>

#include "filtertext/decimal_sign.h"
#include "filtertext/filter_meaning.h"
#include "filtertext/raw_filter.h"
#include "filtertext/readers.h"
#include "filtertext/shown_text.h"

namespace tessavo {

namespace {

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

/// What stands behind "Word:" at the start of a line.
std::optional<std::string_view> behind(std::string_view line, std::string_view word) {
    const std::size_t colon = line.find(':');
    if (colon == std::string_view::npos || !sameWord(trimmed(line.substr(0, colon)), word)) {
        return std::nullopt;
    }
    return line.substr(colon + 1);
}

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
        std::string trouble = std::string("The file speaks of no channel ").append(inQuotes(wanted));
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
            findMeaning(raw.line, *raw.filter, result.decimalSign);
            return;
        }
        const std::optional<double> gain = readNumber(raw.preamp->text, result.decimalSign, false);
        if (!gain) {
            raw.line.kind = FilterLineKind::error;
            raw.line.reason = raw.preamp->text.empty()
                                  ? "the gain is missing"
                                  : inQuotes(raw.preamp->text).append(" is not a number");
            raw.line.column = raw.preamp->column;
            return;
        }
        result.preampDb += *gain;
        result.hasPreamp = true;
    }

    void judge(FilterText& result) const {
        // Whichever channel is read: what one channel has, the file has.
        const auto usable = [](const RawLine& raw) { return raw.filter || raw.preamp; };
        const auto speaks = [](const FilterLine& line) { return line.kind != FilterLineKind::none; };
        if (biquads_ && std::none_of(lines_.begin(), lines_.end(), usable)) {
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
