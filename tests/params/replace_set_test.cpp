#include <cstring>
#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <vector>

#include "support/harness.h"

// A whole set goes in as one change: these tests hold it against single edits, over the whole field table.

namespace tessavo::test {
namespace {

struct Element {
    const Field* field;
    FieldIndex index;
};

std::vector<Element> editableElements() {
    std::vector<Element> elements;
    for (const Field& field : fieldTable()) {
        if (field.editable) {
            forEachElement(field, [&](FieldIndex index) { elements.push_back({&field, index}); });
        }
    }
    return elements;
}

std::string nameOf(const Element& element) {
    return std::string(element.field->path) + " " + std::to_string(element.index.outer) + " " +
           std::to_string(element.index.inner);
}

void copyElement(ParameterSet& to, const ParameterSet& from, const Element& element) {
    setStoredValue(to, *element.field, element.index, storedValue(from, *element.field, element.index));
}

bool isCarried(const Field& field) {
    return field.rule != ImageRule::none && field.rule != ImageRule::fromImageOnly;
}

std::unique_ptr<TuningSnapshot> snapshotOf(const TuningState& state) {
    auto snapshot = std::make_unique<TuningSnapshot>();
    state.takeSnapshot(*snapshot);
    return snapshot;
}

Bytes rowOf(const TuningState& state) {
    const auto snapshot = snapshotOf(state);
    const auto row = tessavo::bytesOf(*snapshot);
    return {row.begin(), row.end()};
}

/// Two tunings in the same state, whose sets are another's than `other` and whose words stem from another method than
/// the one in force, so that whatever is computed shows.
class ReplaceSet : public ::testing::Test {
 protected:
    ReplaceSet() {
        std::mt19937_64 random(16);
        const Bytes first = randomStore(random);
        other_ = recordOf<ParameterStore>(randomStore(random)).sets[0];
        edited_.state.setFilterMode(1);
        edited_.load(first, 0);
        edited_.state.setInputEqOn(edited_.state.currentParameterSet().inputEqOn == 0);
        edited_.state.setFilterMode(0);
        replaced_.state.setFilterMode(0);
        start_ = snapshotOf(edited_.state);
        reset();
    }
    void reset() {
        for (Tuning* tuning : {&edited_, &replaced_}) {
            tuning->state.restore(*start_);
            tuning->settle();
            tuning->boxes.shown.clear();
        }
    }
    /// Receives an image that says other words than any set gives.
    void receive(std::uint64_t seed) {
        std::mt19937_64 random(seed);
        Tuning source;
        source.state.setFilterMode(2);
        source.load(randomStore(random), 0);
        Bytes image = source.image();
        for (const std::size_t place : {20U, 36U, 240U, 400U, 600U, 2965U}) {
            image[place] = static_cast<std::uint8_t>(random());
        }
        edited_.state.restore(*start_);
        edited_.state.replaceImage(recordOf<ParameterImage>(image));
        edited_.state.imageToSet();
        start_ = snapshotOf(edited_.state);
        ASSERT_EQ(start_->received[0].isPresent, 1U);
        reset();
    }
    void expectEachElementAsEdited() {
        for (const Element& element : editableElements()) {
            SCOPED_TRACE(nameOf(element));
            ParameterSet record = edited_.state.currentParameterSet();
            copyElement(record, other_, element);
            const bool differs = bytesOf(record) != bytesOf(edited_.state.currentParameterSet());
            EXPECT_EQ(replaced_.state.replaceSet(0, record), differs);
            EXPECT_EQ(replaced_.state.updatePending(), differs && isCarried(*element.field));
            if (differs) {
                edited_.state.edit(element.field->id, element.index,
                                   storedValue(other_, *element.field, element.index), true);
            }
            ASSERT_SAME_BYTES(rowOf(replaced_.state), rowOf(edited_.state));
            reset();
        }
    }

    Tuning edited_;
    Tuning replaced_;
    ParameterSet other_{};
    std::unique_ptr<TuningSnapshot> start_;
};

TEST_F(ReplaceSet, WithOneOtherElementIsThatEditForEveryElement) {
    expectEachElementAsEdited();
}

TEST_F(ReplaceSet, WithOneOtherElementIsThatEditForEveryElementOfAReceivedSet) {
    receive(3);
    expectEachElementAsEdited();
}

TEST_F(ReplaceSet, WithManyOtherElementsIsAllTheirEdits) {
    std::mt19937_64 random(7);
    for (int round = 0; round < 40; ++round) {
        if (round == 20) {
            receive(11);
        }
        ParameterSet record = edited_.state.currentParameterSet();
        std::vector<Element> chosen;
        for (const Element& element : editableElements()) {
            if (random() % 4 == 0) {
                chosen.push_back(element);
                copyElement(record, other_, element);
            }
        }
        const ParameterSet before = edited_.state.currentParameterSet();
        for (const Element& element : chosen) {
            if (storedValue(before, *element.field, element.index) !=
                storedValue(other_, *element.field, element.index)) {
                edited_.state.edit(element.field->id, element.index,
                                   storedValue(other_, *element.field, element.index), true);
            }
        }
        EXPECT_TRUE(replaced_.state.replaceSet(0, record));
        EXPECT_TRUE(replaced_.state.updatePending());
        EXPECT_TRUE(replaced_.boxes.shown.empty());
        ASSERT_SAME_BYTES(rowOf(replaced_.state), rowOf(edited_.state)) << "round " << round;
        reset();
    }
}

TEST_F(ReplaceSet, TakesTextsAndSpareBytesWithoutAnUpdateAndKeepsTheReceivedImage) {
    receive(5);
    ParameterSet record = replaced_.state.currentParameterSet();
    record.setName[0] = u'N';
    record.setVersion[1] = u'9';
    record.spare1579 ^= 0x55U;
    record.channels[3].bands[2].spare13[1] ^= 0x55U;
    Bytes expected = rowOf(replaced_.state);
    std::memcpy(expected.data(), &record, sizeof record);
    EXPECT_TRUE(replaced_.state.replaceSet(0, record));
    EXPECT_FALSE(replaced_.state.updatePending());
    EXPECT_SAME_BYTES(rowOf(replaced_.state), expected);
}

TEST_F(ReplaceSet, NeverChangesTheWordOfTheRecordsSize) {
    for (const std::uint32_t set : {0U, 3U}) {
        ParameterSet record = replaced_.state.store().sets[set];
        record.recordSize = 7;
        EXPECT_FALSE(replaced_.state.replaceSet(set, record));
        record.roomSize ^= 1U;
        EXPECT_TRUE(replaced_.state.replaceSet(set, record));
        EXPECT_EQ(replaced_.state.store().sets[set].recordSize, 2120U);
    }
}

TEST_F(ReplaceSet, OfAnotherSetTouchesItsRecordAlone) {
    Bytes expected = rowOf(replaced_.state);
    other_.recordSize = 2120;
    std::memcpy(expected.data() + 4 * setSize, &other_, sizeof other_);
    EXPECT_TRUE(replaced_.state.replaceSet(4, other_));
    EXPECT_SAME_BYTES(rowOf(replaced_.state), expected);
    EXPECT_FALSE(replaced_.state.updatePending());
    EXPECT_TRUE(replaced_.boxes.shown.empty());
}

TEST_F(ReplaceSet, OfAnotherSetForgetsItsReceivedImageOnlyWhenThatIsNoLongerTrue) {
    receive(5);
    replaced_.state.selectSet(1);
    ParameterSet record = replaced_.state.store().sets[0];
    record.setName[0] = u'N';
    record.surroundOff ^= 1U;
    EXPECT_TRUE(replaced_.state.replaceSet(0, record));
    EXPECT_EQ(snapshotOf(replaced_.state)->received[0].isPresent, 1U);
    record.roomSize ^= 1U;
    EXPECT_TRUE(replaced_.state.replaceSet(0, record));
    EXPECT_EQ(snapshotOf(replaced_.state)->received[0].isPresent, 0U);
}

TEST_F(ReplaceSet, OfSeveralSetsIsOneChangeUnderOneLock) {
    int steps = 0;
    int changes = 0;
    replaced_.state.setHistoryListener(
        [&](TuningEvent event) { steps += event == TuningEvent::changed ? 1 : 0; });
    replaced_.state.setChangeListener([&] { ++changes; });
    replaced_.lock.asked.clear();
    replaced_.lock.released = 0;
    const std::vector<SetReplacement> replacements{{0, other_}, {2, other_}, {4, other_}};
    EXPECT_TRUE(replaced_.state.replaceSets(replacements));
    EXPECT_EQ(steps, 1);
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(replaced_.lock.asked, std::vector<std::chrono::milliseconds>{std::chrono::milliseconds(5000)});
    EXPECT_EQ(replaced_.lock.released, 1);
    other_.recordSize = 2120;
    for (std::size_t set = 0; set < setCount; ++set) {
        const bool isReplaced = set % 2 == 0;
        EXPECT_EQ(bytesOf(replaced_.state.store().sets[set]),
                  bytesOf(isReplaced ? other_ : start_->store.sets[set]))
            << set;
    }
    EXPECT_FALSE(replaced_.state.replaceSets(replacements));
    EXPECT_EQ(steps, 1);
}

TEST_F(ReplaceSet, OfASetThatIsNotThereChangesNothingAtAll) {
    const Bytes before = rowOf(replaced_.state);
    EXPECT_FALSE(replaced_.state.replaceSets(std::vector<SetReplacement>{{0, other_}, {5, other_}}));
    EXPECT_SAME_BYTES(rowOf(replaced_.state), before);
    EXPECT_FALSE(replaced_.state.updatePending());
}

TEST_F(ReplaceSet, GoesOnWithoutTheLockWhenItIsNotGranted) {
    replaced_.lock.granted = false;
    EXPECT_TRUE(replaced_.state.replaceSet(0, other_));
    other_.recordSize = 2120;
    EXPECT_EQ(bytesOf(replaced_.state.currentParameterSet()), bytesOf(other_));
}

// A high shelf of 24 dB at 5 kHz does not fit into the words; each of its numbers alone would do.
TEST_F(ReplaceSet, WarnsOfTheRecordAsItEndsAndOfNoStateInBetween) {
    ParameterSet high = replaced_.state.currentParameterSet();
    high.channels[7].bands[0] = {0, 0, 5000, 4.0F, 1.0F, 0, {}};
    replaced_.state.replaceSet(0, high);
    replaced_.settle();
    ParameterSet peak = high;
    peak.channels[7].bands[0] = {2, 0, 900, 24.0F, 1.0F, 0, {}};
    replaced_.state.replaceSet(0, peak);
    EXPECT_TRUE(replaced_.boxes.shown.empty());
    EXPECT_EQ(replaced_.state.currentParameterSet().channels[7].bands[0].gainDb, 24.0F);

    ParameterSet tooMuch = high;
    tooMuch.channels[7].bands[0].gainDb = 24.0F;
    replaced_.state.replaceSet(0, tooMuch);
    EXPECT_EQ(replaced_.boxes.shown.size(), 1U);
}

class LookingBoxes : public RecordingBoxes {
 public:
    BoxAnswer show(std::string_view text, BoxIcon icon, BoxButtons buttons) override {
        if (look) {
            look();
        }
        return RecordingBoxes::show(text, icon, buttons);
    }
    std::function<void()> look;
};

TEST(ReplaceSetWarning, ComesWhileSetAndImageAreAsTheyWere) {
    LookingBoxes boxes;
    TuningState state(boxes);
    state.start();
    const Bytes image = bytesOf(state.image());
    const Bytes store = bytesOf(state.store());
    ParameterSet record = state.currentParameterSet();
    record.channels[7].bands[0] = {0, 0, 5000, 24.0F, 1.0F, 0, {}};
    int looked = 0;
    boxes.look = [&] {
        ++looked;
        EXPECT_TRUE(state.changeRuns());
        EXPECT_SAME_BYTES(bytesOf(state.imageCopy()), image);
        EXPECT_SAME_BYTES(bytesOf(state.store()), store);
    };
    state.replaceSet(0, record);
    EXPECT_EQ(looked, 1);
    EXPECT_EQ(bytesOf(state.currentParameterSet()), bytesOf(record));
}

}  // namespace
}  // namespace tessavo::test
