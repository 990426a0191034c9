#include "compare/set_compare.h"

#include <algorithm>
#include <array>
#include <bitset>
#include <cstring>
#include <tuple>

#include "base/number_text.h"
#include "compare/element_text.h"
#include "compare/real_difference.h"
#include "history/element_words.h"
#include "history/set_changes.h"
#include "params/set_text.h"

namespace tessavo {

namespace {

using ByteMarks = std::bitset<parameterSetSize>;

ByteMarks fieldBytes() {
    ByteMarks marks;
    for (const Field& field : fieldTable()) {
        forEachElement(field, [&](FieldIndex index) {
            for (std::size_t i = 0; i < widthOf(field.type); ++i) {
                marks.set(recordOffsetOf(field, index) + i);
            }
        });
    }
    return marks;
}

void markText(ByteMarks& marks, std::size_t offset) {
    for (std::size_t i = 0; i < sizeof(SetText); ++i) {
        marks.set(offset + i);
    }
}

bool readAlike(const SetText& one, const SetText& other) {
    return readSetText(one) == readSetText(other);
}

// Bytes behind the end of a text that reads the same count, those of another text do not.
std::size_t differingSpareBytes(const ParameterSet& left, const ParameterSet& right) {
    static const ByteMarks ofFields = fieldBytes();
    ByteMarks known = ofFields;
    if (!readAlike(left.setName, right.setName)) {
        markText(known, offsetof(ParameterSet, setName));
    }
    if (!readAlike(left.setVersion, right.setVersion)) {
        markText(known, offsetof(ParameterSet, setVersion));
    }
    const auto* leftBytes = reinterpret_cast<const unsigned char*>(&left);
    const auto* rightBytes = reinterpret_cast<const unsigned char*>(&right);
    std::size_t count = 0;
    for (std::size_t i = 0; i < parameterSetSize; ++i) {
        count += !known.test(i) && leftBytes[i] != rightBytes[i] ? 1U : 0U;
    }
    return count;
}

std::size_t positionOf(std::size_t record) {
    return static_cast<std::size_t>(std::ranges::find(channelMap, record) - channelMap.begin());
}

std::string sourceWord(const ParameterSet& set, RecordChannel channel) {
    return valueText(fieldOf(FieldId::routerSource), set.routerSource.at(channel.value));
}

// Where a line stands: its group, and within it the place that a person looks for it at.
std::tuple<CompareGroupKind, std::size_t, int, std::size_t> placeInList(const ComparedLine& line) {
    const SetElement& element = line.element;
    const CompareGroupKind kind = groupKindOf(element);
    if (element.kind != ElementKind::field) {
        return {kind, 0, element.kind == ElementKind::name ? 0 : 1, 0};
    }
    const Field& field = fieldOf(element.field);
    const std::size_t offset = recordOffsetOf(field, element.index);
    switch (kind) {
        case CompareGroupKind::channel:
            return {kind, positionOf(element.index.outer), 0, offset};
        case CompareGroupKind::router:
            return element.field == FieldId::routerSource
                       ? std::tuple{kind, std::size_t{0}, 0, positionOf(element.index.outer)}
                       : std::tuple{kind, std::size_t{0}, 1, offset};
        default:
            break;
    }
    // The page has the equalizer first, then the tone controls, then the levels.
    const int part = element.field == FieldId::inputEqOn       ? 0
                     : field.outer.count == inputBandCount     ? 1
                     : familyOf(field) == ElementFamily::input ? 2
                                                               : 3;
    return {kind, 0, part, offset};
}

class Comparison {
 public:
    Comparison(const ParameterSet& left, const ParameterSet& right, ListedElements listed)
        : left_(left), right_(right), listed_(listed), real_(left, right) {}

    std::vector<ComparedLine> lines() {
        addText(ElementKind::name, left_.setName, right_.setName);
        addText(ElementKind::version, left_.setVersion, right_.setVersion);
        const SetChanges changes = changesBetween(left_, right_);
        auto changed = changes.elements.begin();
        for (const Field& field : fieldTable()) {
            forEachElement(field, [&](FieldIndex index) {
                const bool differs = changed != changes.elements.end() && changed->field == &field &&
                                     changed->index.outer == index.outer &&
                                     changed->index.inner == index.inner;
                changed += differs ? 1 : 0;
                addElement(field, index, differs);
            });
        }
        return std::move(lines_);
    }

 private:
    void addText(ElementKind kind, const SetText& left, const SetText& right) {
        const bool differs = !readAlike(left, right);
        if (differs || listed_ == ListedElements::all) {
            const SetElement element{kind};
            lines_.push_back({element, shortNameOf(element), utf8FromUtf16(readSetText(left)),
                              utf8FromUtf16(readSetText(right)), differs, differs});
        }
    }

    void addElement(const Field& field, FieldIndex index, bool differs) {
        const bool isCopy = field.id == FieldId::delaySize1Copies || field.id == FieldId::delaySize1Last;
        if (field.id == FieldId::recordSize || (!differs && (isCopy || listed_ != ListedElements::all))) {
            return;
        }
        const SetElement element{ElementKind::field, field.id, index};
        auto [left, right] = elementTexts(field, index, left_, right_);
        lines_.push_back({element, shortNameOf(element), std::move(left), std::move(right), differs,
                          differs && real_.isReal(field, index)});
    }

    const ParameterSet& left_;
    const ParameterSet& right_;
    ListedElements listed_;
    RealDifferences real_;
    std::vector<ComparedLine> lines_;
};

CompareGroup groupFor(const SetElement& element, const ParameterSet& left, const ParameterSet& right) {
    CompareGroup group;
    group.kind = groupKindOf(element);
    switch (group.kind) {
        case CompareGroupKind::set:
            group.heading = "Set";
            break;
        case CompareGroupKind::input:
            group.heading = "Input";
            break;
        case CompareGroupKind::router:
            group.heading = "Router";
            break;
        case CompareGroupKind::channel:
            group.channel = {static_cast<std::uint8_t>(element.index.outer)};
            group.heading = channelList(std::array{element.index.outer});
            group.otherNumber = "Ch ";
            group.otherNumber.append(std::to_string(channelCheckBoxMap.at(element.index.outer)));
            group.leftSource = sourceWord(left, group.channel);
            group.rightSource = sourceWord(right, group.channel);
            break;
    }
    return group;
}

bool belongsTo(const CompareGroup& group, const SetElement& element) {
    return group.kind == groupKindOf(element) &&
           (group.kind != CompareGroupKind::channel || group.channel.value == element.index.outer);
}

std::size_t countLines(const SetComparison& comparison, bool ComparedLine::*what) {
    std::size_t count = 0;
    for (const CompareGroup& group : comparison.groups) {
        count += static_cast<std::size_t>(std::ranges::count(group.lines, true, what));
    }
    return count;
}

}  // namespace

std::size_t SetComparison::differenceCount() const {
    return countLines(*this, &ComparedLine::differs);
}

std::size_t SetComparison::realDifferenceCount() const {
    return countLines(*this, &ComparedLine::isReal);
}

std::vector<SetElement> SetComparison::differing() const {
    std::vector<SetElement> elements;
    for (const CompareGroup& group : groups) {
        for (const ComparedLine& line : group.lines) {
            if (line.differs) {
                elements.push_back(line.element);
            }
        }
    }
    return elements;
}

SetComparison compareSets(const ParameterSet& left, const ParameterSet& right, ListedElements listed) {
    SetComparison comparison;
    std::vector<ComparedLine> lines = Comparison(left, right, listed).lines();
    std::ranges::stable_sort(lines, {}, placeInList);
    for (ComparedLine& line : lines) {
        if (comparison.groups.empty() || !belongsTo(comparison.groups.back(), line.element)) {
            comparison.groups.push_back(groupFor(line.element, left, right));
        }
        comparison.groups.back().lines.push_back(std::move(line));
    }
    comparison.spareBytes = differingSpareBytes(left, right);
    return comparison;
}

}  // namespace tessavo
