#include "cli/edit_script.h"

#include <algorithm>
#include <array>
#include <optional>

#include "cli/script_words.h"
#include "dsp/filter_methods.h"
#include "params/set_text.h"

namespace tessavo::cli {

namespace {

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

std::string alternatives(const std::vector<std::string_view>& words) {
    std::string text;
    for (const std::string_view word : words) {
        text.append(text.empty() ? "" : "|").append(word);
    }
    return text;
}

std::vector<std::string_view> choicesOf(const std::vector<WordField>& fields) {
    std::vector<std::string_view> words(fields.size());
    std::ranges::transform(fields, words.begin(), &WordField::choice);
    return words;
}

std::string codesOf(FieldId field) {
    return alternatives(scriptCodes(fieldOf(field)));
}

// Bands are peaks more often than shelves, so their codes are told from the last one on.
std::string bandTypes() {
    std::vector<std::string_view> words = scriptCodes(fieldOf(FieldId::bandType));
    std::reverse(words.begin(), words.end());
    return alternatives(words);
}

const std::vector<WordField>& bandValues() {
    static const std::vector<WordField> fields{{FieldId::bandGain, "gain", "gain"},
                                               {FieldId::bandQ, "q", "q"}};
    return fields;
}

const std::vector<WordField>& limiterValues() {
    static const std::vector<WordField> fields{{FieldId::limiterGain, "gain", "gain"},
                                               {FieldId::limiterActivateLevel, "activate", "levels"},
                                               {FieldId::limiterDeactivateLevel, "deactivate"},
                                               {FieldId::limiterAttack, "attack", "times"},
                                               {FieldId::limiterRelease, "release"},
                                               {FieldId::limiterEnabled, "enabled"}};
    return fields;
}

std::vector<ScriptWord> makeWords() {
    using enum WordTarget;
    // clang-format off
    return {
        {.usage = "set N", .target = currentSet,
         .effect = "the set that is edited from here on, 1 to 5; set 1 until then"},
        {.usage = "mode " + alternatives({filterMethodNames.begin(), filterMethodNames.end()}), .target = filterMethod,
         .effect = "the filter method from here on; BZT until then"},
        {.usage = "select CHANNEL...|none|all", .target = selection,
         .effect = "the channels, 1 to 8 as on the pages, that the words without a channel edit; Channel 1 until then"},
        {.usage = "setVolume DB", .target = selectedChannels, .fields = {{FieldId::volume}},
         .effect = "volume of the selected channels"},
        {.usage = "setDelay MS", .target = selectedChannels, .fields = {{FieldId::delay}},
         .effect = "delay of the selected channels"},
        {.usage = "setGroupGain CHANNEL DB", .target = oneChannel, .fields = {{FieldId::groupGain}},
         .effect = "group gain of one record channel"},
        {.usage = "setGroupDelay CHANNEL MS", .target = oneChannel, .fields = {{FieldId::groupDelay}},
         .effect = "group delay of one record channel"},
        {.usage = "setInvertPhase 0|1", .target = selectedChannels, .fields = {{FieldId::invertPhase}},
         .effect = "phase of the selected channels, 1 inverted"},
        {.usage = "setBandFrequency BAND HZ", .target = selectedBands, .fields = {{FieldId::bandFrequency}},
         .effect = "frequency of a band, 0 to 7, of the selected channels"},
        {.usage = "setBandType BAND " + bandTypes(), .target = selectedBands, .fields = {{FieldId::bandType}},
         .effect = "its shape"},
        {.usage = "setBandGainOrQ BAND " + alternatives(choicesOf(bandValues())) + " VALUE",
         .target = selectedBands, .fields = bandValues(),
         .effect = "its gain or its Q"},
        {.usage = "setBandOff BAND 0|1", .target = selectedBands, .fields = {{FieldId::bandOff}},
         .effect = "1 takes it out of circuit, 0 puts it in"},
        {.usage = "setCrossover CROSSOVER " + codesOf(FieldId::crossoverKind) + " " +
                  codesOf(FieldId::crossoverOrder) + " ENABLED",
         .target = selectedCrossovers,
         .fields = {{FieldId::crossoverKind}, {FieldId::crossoverOrder}, {FieldId::crossoverEnabled}},
         .effect = "kind, order and 1 for in circuit of a crossover, 0 or 1, of the selected channels"},
        {.usage = "setCrossoverFrequency CROSSOVER HZ", .target = selectedCrossovers,
         .fields = {{FieldId::crossoverFrequency}},
         .effect = "its corner frequency"},
        {.usage = "setInputBandGain BAND DB", .target = inputBand,
         .fields = {{FieldId::inputBandGain}, {FieldId::toneGain}},
         .effect = "gain of an input band: 0 to 9 graphic, 10 bass, 11 middle, 12 treble"},
        {.usage = "setInputEqOn 0|1", .target = wholeSet, .fields = {{FieldId::inputEqOn}},
         .effect = "1 puts the input equalizer in circuit"},
        {.usage = "setLimiter " + alternatives(choicesOf(limiterValues())) + " VALUE",
         .target = selectedChannels, .fields = limiterValues(),
         .effect = "one value of the limiters of the selected channels; enabled takes 0 or 1"},
        {.usage = "setRouterSource CHANNEL INDEX", .target = oneChannel, .fields = {{FieldId::routerSource}},
         .effect = "source, 0 to 13, of one record channel"},
        {.usage = "setName TEXT", .target = setName,
         .effect = "name of the set: everything up to the end of the line, at most 31 characters"},
    };
    // clang-format on
}

std::uint32_t readSelection(ScriptWords& words) {
    constexpr std::array<std::string_view, 2> wholeSelections{"none", "all"};
    if (std::ranges::find(wholeSelections, words.peek()) != wholeSelections.end()) {
        return words.choice(wholeSelections) == 0 ? 0x00 : 0xFF;
    }
    std::uint32_t mask = 0;
    do {
        const std::size_t number = words.number("channel", 1, channelCount);
        mask |= selectionBit({static_cast<std::uint8_t>(number - 1)});
    } while (!words.empty() && !words.failed());
    return mask;
}

void readInputBand(ScriptWords& words, ScriptLine& line) {
    const std::size_t number = words.number("input band", 0, inputSectionCount - 1);
    std::size_t first = 0;
    for (const WordField& candidate : line.word->fields) {
        const std::size_t count = fieldOf(candidate.field).outer.count;
        if (number - first < count) {
            line.index.outer = number - first;
            line.values.push_back({candidate.field, words.value(candidate.field)});
            return;
        }
        first += count;
    }
}

void readValues(ScriptWords& words, ScriptLine& line) {
    const std::vector<WordField>& fields = line.word->fields;
    if (!fields.front().choice.empty()) {
        const FieldId chosen = fields[words.choice(choicesOf(fields))].field;
        line.values.push_back({chosen, words.value(chosen)});
        return;
    }
    for (const WordField& each : fields) {
        line.values.push_back({each.field, words.value(each.field)});
    }
}

std::u16string readName(ScriptWords& words) {
    const std::string_view text = words.rest();
    const auto isControl = [](char character) {
        const auto byte = static_cast<unsigned char>(character);
        return byte < 0x20 || byte == 0x7F;
    };
    if (std::any_of(text.begin(), text.end(), isControl)) {
        words.fail("the name contains a control character");
    }
    std::u16string name = utf16FromUtf8(text);
    // What is not valid was replaced, so it does not read back.
    if (utf8FromUtf16(name) != text) {
        words.fail("the name is not valid UTF-8");
    }
    if (name.size() > setNameLimit) {
        words.fail("the name has " + std::to_string(name.size()) + " UTF-16 units, expected 1 to " +
                   std::to_string(setNameLimit));
    }
    return name;
}

void readArguments(ScriptWords& words, ScriptLine& line) {
    switch (line.word->target) {
        case WordTarget::currentSet:
            line.state = static_cast<std::uint32_t>(words.number("set", 1, setCount) - 1);
            return;
        case WordTarget::filterMethod:
            line.state = static_cast<std::uint32_t>(words.choice(filterMethodNames));
            return;
        case WordTarget::selection:
            line.state = readSelection(words);
            return;
        case WordTarget::setName:
            line.name = readName(words);
            return;
        case WordTarget::inputBand:
            readInputBand(words, line);
            return;
        case WordTarget::selectedBands:
            line.index.inner = words.number("band", 0, bandCount - 1);
            break;
        case WordTarget::selectedCrossovers:
            line.index.inner = words.number("crossover", 0, crossoverCount - 1);
            break;
        case WordTarget::oneChannel:
            line.index.outer = words.number("record channel", 0, channelCount - 1);
            break;
        case WordTarget::selectedChannels:
        case WordTarget::wholeSet:
            break;
    }
    readValues(words, line);
}

struct LineVerdict {
    std::optional<ScriptLine> line;
    std::optional<std::string> error;
};

LineVerdict readLine(std::string_view text) {
    if (text.size() > longestScriptLine) {
        return {{}, "the line is longer than " + std::to_string(longestScriptLine) + " bytes"};
    }
    if (text.find('\0') != std::string_view::npos) {
        return {{}, "the line contains a zero byte"};
    }
    ScriptWords arguments(text);
    if (arguments.empty()) {
        return {};
    }
    const std::string_view name = arguments.peek();
    const auto word = std::ranges::find(scriptWords(), name, &ScriptWord::name);
    if (word == scriptWords().end()) {
        return {{}, quoted(name) + " is not a word of the script"};
    }
    arguments.begin(word->usage);
    ScriptLine line{.word = &*word};
    readArguments(arguments, line);
    if (const auto error = arguments.error()) {
        return {{}, std::string(name) + ": " + *error};
    }
    return {std::move(line), {}};
}

void apply(TuningState& tuning, const ScriptLine& line) {
    switch (line.word->target) {
        case WordTarget::currentSet:
            tuning.selectSet(line.state);
            break;
        case WordTarget::filterMethod:
            tuning.setFilterMode(line.state);
            break;
        case WordTarget::selection:
            tuning.setSelectionMask(static_cast<std::uint8_t>(line.state));
            break;
        case WordTarget::setName:
            tuning.setName(line.name);
            break;
        case WordTarget::selectedChannels:
        case WordTarget::selectedBands:
        case WordTarget::selectedCrossovers:
            tuning.editSelected(line.values, line.index.inner, true);
            break;
        case WordTarget::oneChannel:
        case WordTarget::inputBand:
        case WordTarget::wholeSet:
            tuning.edit(line.values, line.index, true);
            break;
    }
}

}  // namespace

const std::vector<ScriptWord>& scriptWords() {
    static const std::vector<ScriptWord> words = makeWords();
    return words;
}

std::variant<Script, ScriptError> parseScript(std::string_view text) {
    if (text.starts_with(byteOrderMark)) {
        text.remove_prefix(byteOrderMark.size());
    }
    Script script;
    for (std::size_t number = 1; !text.empty(); ++number) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        std::string_view line = text.substr(0, end);
        text.remove_prefix(std::min(end + 1, text.size()));
        if (line.ends_with('\r')) {
            line.remove_suffix(1);
        }
        LineVerdict verdict = readLine(line);
        if (verdict.error) {
            return ScriptError{number, std::move(*verdict.error)};
        }
        if (verdict.line) {
            verdict.line->number = number;
            script.push_back(std::move(*verdict.line));
        }
    }
    return script;
}

std::set<std::size_t> setsUsed(std::span<const ScriptLine> script) {
    std::set<std::size_t> used;
    std::size_t current = 0;
    for (const ScriptLine& line : script) {
        switch (line.word->target) {
            case WordTarget::currentSet:
                current = line.state;
                break;
            case WordTarget::filterMethod:
            case WordTarget::selection:
                break;
            default:
                used.insert(current);
        }
    }
    used.insert(current);
    return used;
}

void applyScript(TuningState& tuning, std::span<const ScriptLine> script) {
    for (const ScriptLine& line : script) {
        apply(tuning, line);
    }
}

}  // namespace tessavo::cli
