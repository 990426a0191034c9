#include "filtertext/filter_words.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "base/number_text.h"

namespace tessavo {

namespace {

constexpr std::string_view arrow = " -> ";

bool sameOnSteps(double exact, double stepped, double stepsPerUnit) {
    return std::round(exact * stepsPerUnit) == std::round(stepped * stepsPerUnit);
}

/// Whether the range of a value has changed it, be it into what the text says.
bool isClamped(const FilterLine& line, FilterValue value) {
    return std::ranges::find(line.clamped, value) != line.clamped.end();
}

void addFrequency(std::vector<std::string>& parts, const FilterLine& line) {
    const std::string now = shortNumber(line.device->frequencyHz, 9).append(" Hz");
    const std::optional<double>& before = line.source->frequencyHz;
    if (!before) {
        parts.push_back(now);
    } else if (!sameOnSteps(*before, line.device->frequencyHz, 1.0)) {
        parts.push_back(shortNumber(*before, 9).append(arrow).append(now));
    } else if (*before != line.device->frequencyHz || isClamped(line, FilterValue::frequency)) {
        parts.push_back(now);
    }
}

void addGain(std::vector<std::string>& parts, const FilterLine& line) {
    const std::string now = fixedText(line.device->gainDb, 1).append(" dB");
    const std::optional<double>& before = line.source->gainDb;
    if (!before) {
        parts.push_back(now);
    } else if (!sameOnSteps(*before, line.device->gainDb, 10.0)) {
        parts.push_back(fixedText(*before, 1).append(arrow).append(now));
    }
}

void addQ(std::vector<std::string>& parts, const FilterLine& line, bool withOld) {
    std::string part = "Q ";
    const std::optional<double>& before = line.source->q;
    if (before) {
        const bool isSame = sameOnSteps(*before, line.device->q, 10.0);
        if (isSame && !isClamped(line, FilterValue::q)) {
            return;
        }
        if (withOld && !isSame) {
            part.append(fixedText(*before, 2)).append(arrow);
        }
    }
    parts.push_back(part.append(fixedText(line.device->q, 1)));
}

/// What the target's values are where they are not those of the text: "90 -> 83 Hz, Q 1.40 -> 1.6".
std::string changes(const FilterLine& line, bool withOldQ) {
    std::vector<std::string> parts;
    addFrequency(parts, line);
    if (isBand(line.device->shape)) {
        addGain(parts, line);
        addQ(parts, line, withOldQ);
    }
    std::string text;
    for (const std::string& part : parts) {
        text.append(text.empty() ? "" : ", ").append(part);
    }
    return text;
}

/// Whether only rounding parts the target's values from those of the text.
bool isTaken(const FilterLine& line) {
    const SourceFilter& source = *line.source;
    const DeviceFilter& device = *line.device;
    if (!source.frequencyHz || !sameOnSteps(*source.frequencyHz, device.frequencyHz, 1.0)) {
        return false;
    }
    return !isBand(device.shape) || (source.gainDb && sameOnSteps(*source.gainDb, device.gainDb, 10.0) &&
                                     source.q && sameOnSteps(*source.q, device.q, 10.0));
}

std::string withTail(std::string_view head, const std::string& tail) {
    std::string text(head);
    if (!tail.empty()) {
        text.append(": ").append(tail);
    }
    return text;
}

std::string offText(const FilterLine& line) {
    if (!line.device) {
        return withTail("off", line.reason);
    }
    std::string text = isBand(line.device->shape) ? "off: taken as a band that is off"
                                                  : "off: taken as a crossover that is off";
    if (const std::string values = changes(line, false); !values.empty()) {
        text.append(", ").append(values);
    }
    return text;
}

std::string_view headOf(Verdict verdict) {
    switch (verdict) {
        case Verdict::taken:
            return "taken";
        case Verdict::clamped:
            return "clamped";
        default:
            return "converted";
    }
}

}  // namespace

Verdict verdictOf(const FilterLine& line) {
    switch (line.kind) {
        case FilterLineKind::none:
            return Verdict::none;
        case FilterLineKind::off:
            return Verdict::off;
        case FilterLineKind::empty:
            return Verdict::empty;
        case FilterLineKind::unsupported:
        case FilterLineKind::error:
            return Verdict::notPossible;
        case FilterLineKind::band:
        case FilterLineKind::crossover:
            break;
    }
    if (!line.device || !line.source) {
        return Verdict::notPossible;
    }
    if (!line.clamped.empty()) {
        return Verdict::clamped;
    }
    return isTaken(line) ? Verdict::taken : Verdict::converted;
}

std::string verdictText(const FilterLine& line) {
    const Verdict verdict = verdictOf(line);
    switch (verdict) {
        case Verdict::none:
            return "no filter in this line";
        case Verdict::empty:
            return "empty";
        case Verdict::off:
            return offText(line);
        case Verdict::notPossible:
            return withTail("not possible", line.reason);
        default:
            break;
    }
    std::string text(headOf(verdict));
    if (verdict != Verdict::taken) {
        text = withTail(text, changes(line, true));
    }
    if (!line.reason.empty()) {
        text.append("; ").append(line.reason);
    }
    return text;
}

std::string verdictCounts(const FilterText& text) {
    // In the order of Verdict, of which the first stands last.
    static constexpr std::array<std::string_view, 7> words{"no filter", "taken", "converted",   "clamped",
                                                           "off",       "empty", "not possible"};
    std::array<std::size_t, words.size()> counts{};
    for (const FilterLine& line : text.lines) {
        ++counts[static_cast<std::size_t>(verdictOf(line))];
    }
    std::string sentence = std::to_string(text.lines.size());
    sentence.append(text.lines.size() == 1 ? " line" : " lines");
    std::string_view before = ": ";
    for (std::size_t k = 0; k < words.size(); ++k) {
        const std::size_t verdict = (k + 1) % words.size();
        if (counts[verdict] != 0) {
            sentence.append(before)
                .append(std::to_string(counts[verdict]))
                .append(" ")
                .append(words[verdict]);
            before = ", ";
        }
    }
    return sentence.append(".");
}

}  // namespace tessavo
