#include <algorithm>
#include <array>
#include <string>
#include <utility>

#include "filtertext/coefficient_list.h"
#include "filtertext/filter_line_reader.h"
#include "filtertext/filter_meaning.h"
#include "filtertext/filter_table.h"
#include "filtertext/readers.h"
#include "filtertext/text_commands.h"
#include "text/text_encoding.h"

namespace tessavo {

namespace {

/// More than any program writes, and few enough for a list on a screen.
constexpr std::size_t mostLines = 100000;

constexpr std::string_view coefficientReason = "coefficients of a biquad; which filter they are is not told";

/// A line whose numbers are read when the decimal sign is known.
struct PendingLine {
    std::size_t index = 0;
    bool isRow = false;  ///< of a table
    bool isForOthers = false;
    std::string otherReason;
    std::optional<WrittenFilter> filter;
    std::optional<WrittenValue> preamp;
};

class LinesReader {
 public:
    explicit LinesReader(std::string_view channelName) : scope_(channelName), wantedChannel_(channelName) {}

    void read(std::string_view source) {
        const LineText line(source);
        FilterLine& entry = result_.lines.emplace_back();
        entry.line = result_.lines.size();
        entry.text = source;
        const std::string_view plain = line.plain();
        const std::size_t first = afterBlanks(plain, 0, plain.size());
        if (first == plain.size() || plain[first] == '#') {
            return;
        }
        noteHeader(plain);
        if (const TextCommand command = commandOf(plain); !command.name.empty()) {
            readCommand(line, command, entry);
        } else if (auto filter = filterOfLine(line)) {
            addVotes(*filter, votes_);
            pend({0, false, false, {}, std::move(filter), {}});
        } else if (auto preamp = preampOfLine(line)) {
            votes_.add(preamp->number, preamp->use);
            pend({0, false, false, {}, {}, std::move(preamp)});
        } else if (auto row = table_.read(line)) {
            addVotes(*row, votes_);
            pend({0, true, false, {}, std::move(row), {}});
        } else if (coefficients_.read(line)) {
            readBiquad(entry);
        }
    }

    FilterText finish() {
        result_.decimalSign = votes_.sign();
        for (const PendingLine& line : pending_) {
            settle(line);
        }
        result_.channels = scope_.names();
        result_.channel = scope_.channel();
        noteTrouble();
        return std::move(result_);
    }

 private:
    void noteHeader(std::string_view plain) {
        constexpr std::string_view program = "room eq v";
        if (!isWordAt(plain, 0, program)) {
            return;
        }
        const std::size_t mark = std::min(plain.find_first_of(".,", program.size()), plain.size());
        const std::string_view number = plain.substr(program.size(), mark - program.size());
        if (mark < plain.size() && !number.empty() && std::ranges::all_of(number, isDigit)) {
            votes_.addHeader(plain[mark]);
        }
    }

    void readCommand(const LineText& line, const TextCommand& command, FilterLine& entry) {
        entry.kind = FilterLineKind::unsupported;
        entry.reason = command.reason;
        if (command.name == "channel" && !scope_.read(line, command.behind)) {
            entry.kind = FilterLineKind::error;
            entry.column = command.behind + 1;
            entry.reason = "the channel is missing";
        } else if (command.isFilter && !scope_.applies()) {
            entry.reason = scope_.otherReason();
        }
    }

    void readBiquad(FilterLine& entry) {
        entry.kind = FilterLineKind::unsupported;
        entry.reason = coefficientReason;
        ++biquads_;
        firstBiquad_ = firstBiquad_ == 0 ? entry.line : firstBiquad_;
    }

    void pend(PendingLine line) {
        line.index = result_.lines.size() - 1;
        line.isForOthers = !scope_.applies();
        line.otherReason = line.isForOthers ? scope_.otherReason() : std::string();
        pending_.push_back(std::move(line));
    }

    void settle(const PendingLine& line) {
        FilterLine& entry = result_.lines[line.index];
        if (line.preamp) {
            const auto gainDb = readPreamp(*line.preamp, result_.decimalSign, entry);
            if (!line.isForOthers && gainDb) {
                result_.preampDb += *gainDb;
                result_.hasPreamp = true;
            }
        } else {
            readMeaning(*line.filter, result_.decimalSign, line.isRow ? "True nor False" : "ON nor OFF",
                        entry);
        }
        if (line.isForOthers) {
            entry.kind = FilterLineKind::unsupported;
            entry.meaning.reset();
            entry.column = 0;
            entry.reason = line.otherReason;
        }
    }

    [[nodiscard]] bool hasRows(std::size_t fewest) const {
        const auto rows = std::ranges::count_if(
            result_.lines, [](const FilterLine& line) { return line.kind != FilterLineKind::none; });
        return static_cast<std::size_t>(rows) >= fewest;
    }

    void noteTrouble() {
        if (!wantedChannel_.empty() && result_.channel.empty()) {
            result_.trouble =
                std::string("There is no channel ").append(shortQuote(wantedChannel_)).append(" in it");
            if (result_.channels.empty()) {
                result_.trouble.append("; it names none.");
                return;
            }
            result_.trouble.append(result_.channels.size() == 1 ? "; there is " : "; there are ");
            result_.trouble.append(listOfNames(result_.channels)).append(".");
        } else if (biquads_ > 0 && !hasRows(biquads_ + 1)) {
            result_.trouble =
                "It is a list of biquad coefficients, which do not tell which filters they are. Export "
                "the filters with their frequencies, gains and Q instead.";
            result_.troubleLine = firstBiquad_;
            result_.troubleColumn = 1;
        } else if (!hasRows(1) && !result_.hasPreamp) {
            result_.trouble = "There is no filter in it.";
        }
    }

    FilterText result_;
    FilterTable table_;
    CoefficientList coefficients_;
    ChannelScope scope_;
    DecimalSignVotes votes_;
    std::vector<PendingLine> pending_;
    std::string wantedChannel_;
    std::size_t biquads_ = 0;
    std::size_t firstBiquad_ = 0;
};

FilterText troubled(std::string_view trouble, std::size_t line, std::size_t column) {
    FilterText text;
    text.trouble = trouble;
    text.troubleLine = line;
    text.troubleColumn = column;
    return text;
}

}  // namespace

FilterText readTextLines(std::string_view text, std::string_view channelName) {
    const std::vector<std::string_view> lines = linesOf(text);
    for (std::size_t index = 0; index < lines.size(); ++index) {
        const std::size_t zero = lines[index].find('\0');
        if (zero != std::string_view::npos) {
            const std::size_t column = LineText(lines[index].substr(0, zero)).plain().size() + 1;
            return troubled("It is no text: a byte of it is zero. A text in UTF-16 must be saved as UTF-8.",
                            index + 1, column);
        }
    }
    if (lines.size() > mostLines) {
        return troubled("It has more than 100000 lines; filter texts have fewer.", mostLines + 1, 1);
    }
    LinesReader reader(channelName);
    for (const std::string_view line : lines) {
        reader.read(line);
    }
    return reader.finish();
}

}  // namespace tessavo
