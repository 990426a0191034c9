#include "compare/copy_elements.h"

#include <algorithm>
#include <cstring>
#include <gtest/gtest.h>

#include "compare/sets.h"
#include "params/set_text.h"

namespace tessavo::test {
namespace {

bool contains(const std::vector<SetElement>& elements, const SetElement& element) {
    return std::ranges::find(elements, element) != elements.end();
}

/// Everything that an edit may change, byte by byte.
Bytes rowOf(const TuningState& state) {
    const auto snapshot = std::make_unique<TuningSnapshot>();
    state.takeSnapshot(*snapshot);
    const auto row = tessavo::bytesOf(*snapshot);
    return {row.begin(), row.end()};
}

TEST(CopyElements, OfAllLeavesNoDifferenceEitherWay) {
    std::mt19937_64 random(21);
    for (int round = 0; round < 100; ++round) {
        const ParameterSet left = randomSet(random);
        const ParameterSet right = randomSet(random);
        const std::vector<SetElement> all = compareSets(left, right).differing();
        ASSERT_GT(all.size(), 500U);
        for (const bool toLeft : {true, false}) {
            const ParameterSet& target = toLeft ? left : right;
            const ParameterSet& source = toLeft ? right : left;
            const ParameterSet copied = copyElements(target, source, all);
            EXPECT_EQ(compareSets(copied, source).differenceCount(), 0U);
            // No byte but those of elements was touched: what is spare differs as it did.
            EXPECT_EQ(compareSets(copied, target).spareBytes, 0U);
        }
    }
}

TEST(CopyElements, OfSomeLeavesExactlyTheOthers) {
    std::mt19937_64 random(22);
    for (int round = 0; round < 100; ++round) {
        const ParameterSet target = randomSet(random);
        const ParameterSet source = randomSet(random);
        const std::vector<SetElement> all = compareSets(target, source).differing();
        std::vector<SetElement> some;
        std::vector<SetElement> others;
        for (const SetElement& element : all) {
            (random() % 3 == 0 ? some : others).push_back(element);
        }
        const ParameterSet copied = copyElements(target, source, some);
        const std::vector<SetElement> left = compareSets(copied, source).differing();
        const std::vector<SetElement> changed = compareSets(target, copied).differing();
        EXPECT_TRUE(std::ranges::equal(left, others)) << "round " << round;
        EXPECT_TRUE(std::ranges::equal(changed, some)) << "round " << round;
    }
}

TEST(CopyElements, OfOneTouchesItsBytesAloneForEveryElement) {
    std::mt19937_64 random(23);
    const ParameterSet target = randomSet(random);
    const ParameterSet source = randomSet(random);
    for (const TableElement& element : tableElements()) {
        Bytes expected = bytesOf(target);
        const auto copy = [&](std::size_t offset, std::size_t size) {
            std::memcpy(expected.data() + offset, bytesOf(source).data() + offset, size);
        };
        if (element.field->id == FieldId::delaySize1) {
            copy(1848, 10);
        } else if (element.field->id != FieldId::recordSize) {
            copy(recordOffsetOf(*element.field, element.index), widthOf(element.field->type));
        }
        const ParameterSet copied = copyElements(target, source, std::vector{element.key()});
        EXPECT_SAME_BYTES(bytesOf(copied), expected) << element.name();
    }
    Bytes expected = bytesOf(target);
    std::memcpy(expected.data() + 1580, bytesOf(source).data() + 1580, 128);
    EXPECT_SAME_BYTES(
        bytesOf(copyElements(target, source, std::vector{SetElement{.kind = ElementKind::name}})), expected);
}

TEST(CopyElements, OfWhatIsNotThereTouchesNothing) {
    std::mt19937_64 random(24);
    const ParameterSet target = randomSet(random);
    const ParameterSet source = randomSet(random);
    const std::vector<SetElement> none{{ElementKind::field, FieldId::count, {}},
                                       {ElementKind::field, FieldId::recordSize, {}},
                                       {ElementKind::field, FieldId::volume, {8, 0}},
                                       {ElementKind::field, FieldId::bandGain, {7, 8}}};
    EXPECT_SAME_BYTES(bytesOf(copyElements(target, source, none)), bytesOf(target));
}

// The door for whole sets makes of a copy what single edits of the chosen elements make: sets, image and words.
TEST(CopyElements, IntoATuningIsWhatEditingThemIs) {
    std::mt19937_64 random(25);
    Tuning edited;
    Tuning copied;
    for (int round = 0; round < 30; ++round) {
        const Bytes store = randomStore(random);
        ParameterSet source = randomSet(random);
        source.setName = recordOf<ParameterStore>(store).sets[1].setName;
        source.setVersion = recordOf<ParameterStore>(store).sets[1].setVersion;
        for (Tuning* tuning : {&edited, &copied}) {
            tuning->state.setFilterMode(2);
            tuning->load(store, 1);
            tuning->state.setFilterMode(1);
        }
        const ParameterSet target = copied.state.currentParameterSet();
        const std::vector<SetElement> all = compareSets(target, source).differing();
        std::vector<SetElement> chosen;
        std::ranges::copy_if(all, std::back_inserter(chosen),
                             [&](const SetElement&) { return round % 2 == 0 || random() % 5 == 0; });
        for (const SetElement& element : chosen) {
            edited.state.edit(element.field, element.index,
                              storedValue(source, fieldOf(element.field), element.index), true);
        }
        // Editing the first of them writes no copies; the page does.
        if (contains(chosen, {ElementKind::field, FieldId::delaySize1, {}})) {
            for (std::size_t i = 0; i < 3; ++i) {
                edited.state.edit(FieldId::delaySize1Copies, {i, 0}, source.delaySize1Ms[1 + i], true);
            }
            edited.state.edit(FieldId::delaySize1Last, {}, source.delaySize1Ms[4], true);
        }
        EXPECT_TRUE(copied.state.replaceSet(1, copyElements(target, source, chosen)));
        EXPECT_TRUE(copied.state.updatePending());
        ASSERT_SAME_BYTES(rowOf(copied.state), rowOf(edited.state)) << "round " << round;
        const std::size_t left = compareSets(copied.state.currentParameterSet(), source).differenceCount();
        EXPECT_EQ(left, all.size() - chosen.size());
    }
}

// What plays after everything was copied is what the same set plays when it is opened from a file.
TEST(CopyElements, OfAllPlaysAsTheSourceWithEveryFilterMethod) {
    std::mt19937_64 random(27);
    for (std::uint32_t mode = 0; mode < 3; ++mode) {
        for (std::uint32_t round = 0; round < 20; ++round) {
            const Bytes store = randomStore(random);
            const ParameterSet source = randomSet(random);
            Tuning copied;
            copied.state.setFilterMode(mode);
            copied.load(store, round % 5);
            const std::uint32_t set = copied.state.currentSet();
            const ParameterSet target = copied.state.currentParameterSet();
            const std::vector<SetElement> all = compareSets(target, source).differing();
            ASSERT_TRUE(copied.state.replaceSet(set, copyElements(target, source, all)));
            EXPECT_EQ(compareSets(copied.state.currentParameterSet(), source).differenceCount(), 0U);
            const auto expected = std::make_unique<ParameterStore>(copied.state.store());
            Tuning opened;
            opened.state.setFilterMode(mode);
            opened.load(bytesOf(*expected), set);
            EXPECT_SAME_BYTES(bytesOf(copied.state.store()), bytesOf(*expected));
            // Opening a file leaves the input equalizer as it plays.
            for (Tuning* const tuning : {&copied, &opened}) {
                tuning->state.edit(FieldId::inputEqOn, {}, source.inputEqOn, true);
            }
            EXPECT_SAME_BYTES(copied.image(), opened.image()) << mode << " " << round;
        }
    }
}

TEST(CopyWholeSet, KeepsTheTargetsNameUnlessAskedAndItsSizeAlways) {
    std::mt19937_64 random(26);
    const ParameterSet source = randomSet(random);
    ParameterSet target = randomSet(random);
    target.recordSize = 5;
    Bytes expected = bytesOf(source);
    std::memcpy(expected.data(), &target, 4);
    EXPECT_SAME_BYTES(bytesOf(copyWholeSet(target, source, true)), expected);
    std::memcpy(expected.data() + 1580, target.setName.data(), 128);
    EXPECT_SAME_BYTES(bytesOf(copyWholeSet(target, source, false)), expected);
}

}  // namespace
}  // namespace tessavo::test
