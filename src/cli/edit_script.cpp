#include "cli/edit_script.h"

#include <algorithm>
#include <array>
#include <optional>

#include "cli/script_words.h"
#include "dsp/filter_kind.h"
#include "dsp/saturate.h"
#include "params/set_text.h"

namespace tessavo::cli {

namespace {

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
constexpr std::string_view blanks = " \t";
constexpr std::string_view setNameUsage = "setName TEXT";
constexpr std::array<std::string_view, 2> crossoverKindWords{"hp", "lp"};

template <std::integral Integer>
Integer wholeValue(ScriptWords& words, FieldId field) {
    return truncateTo<Integer>(words.value(field));
}

float singleValue(ScriptWords& words, FieldId field) {
    return static_cast<float>(words.value(field));
}

std::size_t band(ScriptWords& words) {
    return words.number("band", 0, bandCount - 1);
}

std::size_t crossover(ScriptWords& words) {
    return words.number("crossover", 0, crossoverCount - 1);
}

RecordChannel channel(ScriptWords& words) {
    return {static_cast<std::uint8_t>(words.number("record channel", 0, channelCount - 1))};
}

Edit readSelect(ScriptWords& words) {
    constexpr std::array<std::string_view, 2> wholeSelections{"none", "all"};
    if (words.peek() == "none" || words.peek() == "all") {
        return edit::SelectChannels{words.choice(wholeSelections) == 0 ? std::uint8_t{0}
                                                                       : std::uint8_t{0xFF}};
    }
    unsigned mask = 0;
    do {
        const std::size_t number = words.number("channel", 1, channelCount);
        mask |= selectionBit({static_cast<std::uint8_t>(number - 1)});
    } while (!words.empty() && !words.failed());
    return edit::SelectChannels{static_cast<std::uint8_t>(mask)};
}

Edit readBandType(ScriptWords& words) {
    // In the order of the type codes.
    constexpr std::array<std::string_view, 3> types{"high-shelf", "low-shelf", "peak"};
    const std::size_t index = band(words);
    return edit::SetBandType{index, static_cast<std::uint8_t>(words.choice(types))};
}

Edit readBandGainOrQ(ScriptWords& words) {
    constexpr std::array<std::string_view, 2> values{"gain", "q"};
    const std::size_t index = band(words);
    if (words.choice(values) == 0) {
        return edit::SetBandGainOrQ{index, BandValue::gain, singleValue(words, FieldId::bandGain)};
    }
    return edit::SetBandGainOrQ{index, BandValue::q, singleValue(words, FieldId::bandQ)};
}

Edit readCrossover(ScriptWords& words) {
    constexpr std::array<std::string_view, 2> orders{"2", "4"};
    const std::size_t index = crossover(words);
    const std::size_t kind = words.choice(crossoverKindWords);
    const std::uint8_t order = words.choice(orders) == 0 ? 2 : 4;
    return edit::SetCrossover{index, static_cast<std::uint8_t>(kind), order,
                              wholeValue<std::uint8_t>(words, FieldId::crossoverEnabled)};
}

Edit readLimiter(ScriptWords& words) {
    struct Part {
        FieldId field;
        LimiterField which;
    };
    constexpr std::array<std::string_view, 6> names{"gain",   "activate", "deactivate",
                                                    "attack", "release",  "enabled"};
    constexpr std::array<Part, 6> parts{{{FieldId::limiterGain, LimiterField::gain},
                                         {FieldId::limiterActivateLevel, LimiterField::activateLevel},
                                         {FieldId::limiterDeactivateLevel, LimiterField::deactivateLevel},
                                         {FieldId::limiterAttack, LimiterField::attack},
                                         {FieldId::limiterRelease, LimiterField::release},
                                         {FieldId::limiterEnabled, LimiterField::enable}}};
    const Part& part = parts[words.choice(names)];
    const auto value = wholeValue<std::int32_t>(words, part.field);
    if (part.field == FieldId::limiterEnabled) {
        return edit::SetLimiter{value != 0 ? LimiterField::enable : LimiterField::disable, 0};
    }
    return edit::SetLimiter{part.which, value};
}

struct Word {
    std::string_view name;
    std::string_view usage;
    Edit (*read)(ScriptWords&);
};

// Arguments are read into variables where more than one is needed: their order is the script's.
constexpr std::array<Word, 18> wordTable{{
    {"set", "set N",
     [](ScriptWords& words) -> Edit {
         return edit::SelectSet{static_cast<std::uint32_t>(words.number("set", 1, setCount) - 1)};
     }},
    {"mode", "mode BZT|MZT|BZT/MZT",
     [](ScriptWords& words) -> Edit {
         return edit::SelectMode{static_cast<std::uint32_t>(words.choice(filterModeNames))};
     }},
    {"select", "select CHANNEL...|none|all", readSelect},
    {"setVolume", "setVolume DB",
     [](ScriptWords& words) -> Edit { return edit::SetVolume{singleValue(words, FieldId::volume)}; }},
    {"setDelay", "setDelay MS",
     [](ScriptWords& words) -> Edit { return edit::SetDelay{singleValue(words, FieldId::delay)}; }},
    {"setGroupGain", "setGroupGain CHANNEL DB",
     [](ScriptWords& words) -> Edit {
         const RecordChannel index = channel(words);
         return edit::SetGroupGain{index, singleValue(words, FieldId::groupGain)};
     }},
    {"setGroupDelay", "setGroupDelay CHANNEL MS",
     [](ScriptWords& words) -> Edit {
         const RecordChannel index = channel(words);
         return edit::SetGroupDelay{index, singleValue(words, FieldId::groupDelay)};
     }},
    {"setInvertPhase", "setInvertPhase 0|1",
     [](ScriptWords& words) -> Edit {
         return edit::SetInvertPhase{wholeValue<std::uint8_t>(words, FieldId::invertPhase)};
     }},
    {"setBandFrequency", "setBandFrequency BAND HZ",
     [](ScriptWords& words) -> Edit {
         const std::size_t index = band(words);
         return edit::SetBandFrequency{index, wholeValue<std::uint16_t>(words, FieldId::bandFrequency)};
     }},
    {"setBandType", "setBandType BAND peak|low-shelf|high-shelf", readBandType},
    {"setBandGainOrQ", "setBandGainOrQ BAND gain|q VALUE", readBandGainOrQ},
    {"setBandOff", "setBandOff BAND 0|1",
     [](ScriptWords& words) -> Edit {
         const std::size_t index = band(words);
         return edit::SetBandOff{index, wholeValue<std::uint8_t>(words, FieldId::bandOff)};
     }},
    {"setCrossover", "setCrossover CROSSOVER hp|lp 2|4 ENABLED", readCrossover},
    {"setCrossoverFrequency", "setCrossoverFrequency CROSSOVER HZ",
     [](ScriptWords& words) -> Edit {
         const std::size_t index = crossover(words);
         return edit::SetCrossoverFrequency{index,
                                            wholeValue<std::uint16_t>(words, FieldId::crossoverFrequency)};
     }},
    {"setInputBandGain", "setInputBandGain BAND DB",
     [](ScriptWords& words) -> Edit {
         const std::size_t index = words.number("input band", 0, inputSectionCount - 1);
         const FieldId field = index < inputBandCount ? FieldId::inputBandGain : FieldId::toneGain;
         return edit::SetInputBandGain{index, singleValue(words, field)};
     }},
    {"setInputEqOn", "setInputEqOn 0|1",
     [](ScriptWords& words) -> Edit { return edit::SetInputEqOn{words.value(FieldId::inputEqOn) != 0}; }},
    {"setLimiter", "setLimiter gain|activate|deactivate|attack|release|enabled VALUE", readLimiter},
    {"setRouterSource", "setRouterSource CHANNEL INDEX",
     [](ScriptWords& words) -> Edit {
         const RecordChannel index = channel(words);
         return edit::SetRouterSource{index, wholeValue<std::uint8_t>(words, FieldId::routerSource)};
     }},
}};

struct LineVerdict {
    std::optional<Edit> edit;
    std::optional<std::string> error;
};

std::string_view trimmed(std::string_view text) {
    const std::size_t first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

std::vector<std::string_view> splitWords(std::string_view line) {
    std::vector<std::string_view> words;
    std::size_t start = line.find_first_not_of(blanks);
    while (start != std::string_view::npos && line[start] != '#') {
        const std::size_t end = std::min(line.find_first_of(blanks, start), line.size());
        words.push_back(line.substr(start, end - start));
        start = line.find_first_not_of(blanks, end);
    }
    return words;
}

LineVerdict readName(std::string_view text) {
    if (text.empty()) {
        return {{}, "setName: an argument is missing, write: " + std::string(setNameUsage)};
    }
    const auto isControl = [](char character) {
        const auto byte = static_cast<unsigned char>(character);
        return byte < 0x20 || byte == 0x7F;
    };
    if (std::any_of(text.begin(), text.end(), isControl)) {
        return {{}, "setName: the name contains a control character"};
    }
    std::u16string name = utf16FromUtf8(text);
    // What is not valid was replaced, so it does not read back.
    if (utf8FromUtf16(name) != text) {
        return {{}, "setName: the name is not valid UTF-8"};
    }
    if (name.size() > setNameLimit) {
        return {{},
                "setName: the name has " + std::to_string(name.size()) + " UTF-16 units, expected 1 to " +
                    std::to_string(setNameLimit)};
    }
    return {edit::SetName{std::move(name)}, {}};
}

LineVerdict readLine(std::string_view line) {
    if (line.size() > longestScriptLine) {
        return {{}, "the line is longer than " + std::to_string(longestScriptLine) + " bytes"};
    }
    if (line.find('\0') != std::string_view::npos) {
        return {{}, "the line contains a zero byte"};
    }
    const std::vector<std::string_view> words = splitWords(line);
    if (words.empty()) {
        return {};
    }
    if (words[0] == "setName") {
        return readName(trimmed(trimmed(line).substr(words[0].size())));
    }
    const auto word = std::find_if(wordTable.begin(), wordTable.end(),
                                   [&](const Word& candidate) { return candidate.name == words[0]; });
    if (word == wordTable.end()) {
        return {{}, quoted(words[0]) + " is not a word of the script"};
    }
    ScriptWords arguments(std::span{words}.subspan(1), word->usage);
    Edit read = word->read(arguments);
    if (const auto error = arguments.error()) {
        return {{}, std::string(word->name) + ": " + *error};
    }
    return {std::move(read), {}};
}

}  // namespace

std::vector<std::string_view> scriptUsages() {
    std::vector<std::string_view> usages;
    usages.reserve(std::size(wordTable) + 1);
    for (const Word& word : wordTable) {
        usages.push_back(word.usage);
    }
    usages.push_back(setNameUsage);
    return usages;
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
        if (verdict.edit) {
            script.push_back({number, std::move(*verdict.edit)});
        }
    }
    return script;
}

}  // namespace tessavo::cli
