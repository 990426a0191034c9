#include "history/step_text.h"

#include <algorithm>
#include <span>
#include <vector>

#include "base/utf8.h"
#include "history/element_words.h"
#include "history/image_changes.h"
#include "history/notes_changes.h"
#include "history/set_changes.h"
#include "params/set_text.h"

namespace tessavo {

namespace {

using Numbers = std::vector<std::size_t>;
using Elements = std::span<const ChangedElement>;

constexpr std::size_t longest = 60;
// Values that one line can tell one by one.
constexpr std::size_t mostPhrases = 3;

std::string firstThatFits(std::span<const std::string> texts, std::size_t length) {
    const auto fits = [length](const std::string& text) {
        return !text.empty() && characterCount(text) <= length;
    };
    const auto found = std::ranges::find_if(texts, fits);
    return found != texts.end() ? *found : texts.back();
}

void append(std::string& text, std::string_view separator, std::string_view part) {
    if (!part.empty()) {
        text += text.empty() ? "" : separator;
        text += part;
    }
}

Numbers indexesOf(Elements elements, std::size_t FieldIndex::*dimension) {
    Numbers numbers;
    for (const ChangedElement& element : elements) {
        numbers.push_back(element.index.*dimension);
    }
    std::ranges::sort(numbers);
    numbers.erase(std::unique(numbers.begin(), numbers.end()), numbers.end());
    return numbers;
}

// One stretch for each field, as the elements stand in the table's order.
std::vector<Elements> byField(Elements elements) {
    std::vector<Elements> fields;
    while (!elements.empty()) {
        const auto end = std::ranges::find_if(
            elements, [&](const ChangedElement& each) { return each.field != elements.front().field; });
        const auto count = static_cast<std::size_t>(end - elements.begin());
        fields.push_back(elements.first(count));
        elements = elements.subspan(count);
    }
    return fields;
}

// "gain −4.5 dB"; without the value where the elements differ in it.
std::string phraseOf(Elements elements, const ParameterSet& set) {
    const Field& field = *elements.front().field;
    const FieldIndex index = elements.front().index;
    std::string phrase = nameOf(field, index);
    const std::string value = valueText(field, storedValue(set, field, index));
    if (std::ranges::all_of(elements, [&](const ChangedElement& each) {
            return valueText(field, storedValue(set, field, each.index)) == value;
        })) {
        append(phrase, " ", value);
    }
    return phrase;
}

bool haveSameElements(Elements one, Elements other) {
    return std::ranges::equal(one, other, [](const ChangedElement& left, const ChangedElement& right) {
        return left.index.outer == right.index.outer && left.index.inner == right.index.inner;
    });
}

// "Bass gain −3.0 dB" needs no place in front of it.
std::string describeSingly(Elements elements, const ParameterSet& set) {
    std::string text;
    for (const ChangedElement& element : elements) {
        append(text, ", ", phraseOf(Elements(&element, 1), set));
    }
    if (!text.empty() && text.front() >= 'a' && text.front() <= 'z') {
        text.front() = static_cast<char>(text.front() - 'a' + 'A');
    }
    return text;
}

// Fields that all have changed in the same block of elements: "Channels 1 and 3, Filter 8 on, type High Shelf".
std::vector<std::string> describeBlock(std::span<const Elements> fields, const ParameterSet& set) {
    const Elements first = fields.front();
    const Numbers outer = indexesOf(first, &FieldIndex::outer);
    const Numbers inner = indexesOf(first, &FieldIndex::inner);
    const bool isBlock =
        first.size() == outer.size() * inner.size() && std::ranges::all_of(fields, [&](Elements each) {
            return standTogether(*first.front().field, *each.front().field) && haveSameElements(first, each);
        });
    if (!isBlock || fields.size() > mostPhrases) {
        return {};
    }
    std::string phrases;
    for (const Elements each : fields) {
        append(phrases, ", ", phraseOf(each, set));
    }
    const ElementPlace place = placeOf(*first.front().field, outer, inner);
    std::vector<std::string> texts;
    for (const std::string& where : {place.outer, place.outerCount}) {
        std::string text = where;
        append(text, ", ", place.inner);
        // A switch that its place names is "on" without a comma.
        const bool isNamed =
            !place.inner.empty() || nameOf(*first.front().field, first.front().index).empty();
        append(text, isNamed ? " " : ", ", phrases);
        texts.push_back(std::move(text));
    }
    return texts;
}

// "Channel 7, 12 values".
std::vector<std::string> describeCount(const SetChanges& changes) {
    const std::string values = countWords(changes.count(), "value");
    const auto allAre = [&](auto condition) {
        return changes.count() == changes.elements.size() &&
               std::ranges::all_of(changes.elements, [&](const ChangedElement& each) {
                   return condition(familyOf(*each.field));
               });
    };
    if (allAre([](ElementFamily family) { return family == ElementFamily::input; })) {
        return {"Input, " + values};
    }
    if (!allAre([](ElementFamily family) {
            return family != ElementFamily::input && family != ElementFamily::set;
        })) {
        return {values};
    }
    const Field& field = *changes.elements.front().field;
    const auto isOfOneFamily = [&](ElementFamily family) { return family == familyOf(field); };
    const Numbers channels = indexesOf(changes.elements, &FieldIndex::outer);
    if (allAre(isOfOneFamily)) {
        const ElementPlace place = placeOf(field, channels, Numbers{0});
        return {place.outer + ", " + values, place.outerCount + ", " + values};
    }
    return {channelList(channels) + ", " + values, countWords(channels.size(), "channel") + ", " + values};
}

std::string describeElements(const SetChanges& changes, const ParameterSet& set, std::size_t length) {
    std::vector<std::string> texts;
    if (changes.count() == changes.elements.size()) {
        const auto isOfSet = [](const ChangedElement& each) {
            return familyOf(*each.field) == ElementFamily::set;
        };
        if (std::ranges::all_of(changes.elements, isOfSet)) {
            if (changes.elements.size() <= mostPhrases) {
                texts.push_back(describeSingly(changes.elements, set));
            }
        } else {
            texts = describeBlock(byField(changes.elements), set);
        }
    }
    const std::vector<std::string> counts = describeCount(changes);
    texts.insert(texts.end(), counts.begin(), counts.end());
    return firstThatFits(texts, length);
}

// In a menu there is one line, and not an endless one.
std::string quoted(const SetText& text, std::size_t length) {
    std::u16string shown = readSetText(text);
    std::ranges::replace_if(
        shown, [](char16_t unit) { return unit < u' ' || unit == u'\u007F'; }, u' ');
    const bool isWhole = shown.size() <= length;
    if (!isWhole) {
        SetText cut{};
        writeSetText(cut, shown, length - 1);
        shown = readSetText(cut);
    }
    return "\u201C" + utf8FromUtf16(shown) + (isWhole ? "" : "\u2026") + "\u201D";
}

std::string describeSet(const SetChanges& changes, const ParameterSet& set, bool isElsewhere) {
    const std::string name = "Set " + std::to_string(changes.set + 1);
    if (changes.count() == 0) {
        return name + ", bytes of unknown meaning";
    }
    if (changes.count() == 1 && changes.isNamed) {
        return readSetText(set.setName).empty() ? name + " without a name"
                                                : name + " named " + quoted(set.setName, longest - 15);
    }
    if (changes.count() == 1 && changes.hasOtherVersion) {
        return name + " version " + quoted(set.setVersion, longest - 17);
    }
    const std::string front = isElsewhere || changes.elements.empty() ? name + ": " : "";
    return front + describeElements(changes, set, longest - front.size());
}

}  // namespace

std::string describeStep(const TuningSnapshot& before, const TuningSnapshot& after) {
    const std::vector<SetChanges> changes = changesBetween(before.store, after.store, after.currentSet);
    if (changes.empty()) {
        const std::string notes = describeNotesChange(before.notes, after.notes);
        return notes.empty() ? describeImageChange(before, after) : notes;
    }
    if (changes.size() == 1) {
        const SetChanges& only = changes.front();
        const bool isElsewhere = only.set != after.currentSet || before.currentSet != after.currentSet;
        return describeSet(only, after.store.sets[only.set], isElsewhere);
    }
    std::size_t values = 0;
    for (const SetChanges& each : changes) {
        values += each.count();
    }
    const std::string sets = countWords(changes.size(), "set");
    return values == 0 ? sets + ", bytes of unknown meaning" : sets + ", " + countWords(values, "value");
}

}  // namespace tessavo
