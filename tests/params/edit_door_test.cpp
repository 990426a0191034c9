#include <gtest/gtest.h>
#include <map>
#include <set>
#include <string>
#include <utility>

#include "params/image_conversion.h"
#include "support/harness.h"

// One operation writes every field: these tests go over the whole field table, element by element.

namespace tessavo::test {
namespace {

/// Which coefficients there are: those of output bands, of crossovers and of input sections, by name.
using WordsByName = std::map<std::string, BiquadWords>;

WordsByName allWords(const TuningState& state) {
    WordsByName words;
    for (std::uint8_t c = 0; c < 8; ++c) {
        for (std::size_t b = 0; b < 8; ++b) {
            words["band " + std::to_string(c) + " " + std::to_string(b)] = state.bandWords({c}, b);
        }
        for (std::size_t k = 0; k < 2; ++k) {
            words["crossover " + std::to_string(c) + " " + std::to_string(k)] = state.crossoverWords({c}, k);
        }
    }
    for (std::size_t i = 0; i < 13; ++i) {
        words["input " + std::to_string(i)] = state.inputWords(i);
    }
    return words;
}

std::set<std::string> changed(const WordsByName& before, const WordsByName& after) {
    std::set<std::string> names;
    for (const auto& [name, words] : before) {
        if (!(after.at(name) == words)) {
            names.insert(name);
        }
    }
    return names;
}

/// What an edit of the element has to compute, by the field's path: a band itself, a crossover both of its channel, an
/// input band itself; a switch of a band, and everything else, nothing.
std::set<std::string> shapedBy(const Field& field, FieldIndex index) {
    const std::string path(field.path);
    const std::string channel = std::to_string(index.outer);
    const bool ofFilter = path.ends_with(".type") || path.ends_with(".frequency") ||
                          path.ends_with(".gain") || path.ends_with(".q");
    if (path.starts_with("channel[].band[]") && ofFilter) {
        return {"band " + channel + " " + std::to_string(index.inner)};
    }
    if (path.starts_with("channel[].crossover[]")) {
        return {"crossover " + channel + " 0", "crossover " + channel + " 1"};
    }
    if (path.starts_with("inputBand[]") && ofFilter) {
        return {"input " + channel};
    }
    if (path.starts_with("tone[]") && ofFilter) {
        return {"input " + std::to_string(10 + index.outer)};
    }
    return {};
}

/// A state whose filters all have other words by the method in force than those it holds, so that whatever is computed
/// anew shows.
class EditDoor : public ::testing::Test {
 protected:
    EditDoor() {
        ParameterStore store = tuning_.state.store();
        ParameterSet& set = store.sets[0];
        for (OutputChannelParams& channel : set.channels) {
            for (std::size_t b = 0; b < bandCount; ++b) {
                channel.bands[b] = {2, 0, static_cast<std::uint16_t>(700 + 600 * b), 5.0F, 1.5F, 0, {}};
            }
            channel.crossovers = {{{1, 0, 900, 2, 0}, {1, 1, 9000, 2, 0}}};
        }
        for (std::size_t i = 0; i < inputBandCount; ++i) {
            set.inputEqBands[i] = {2, 0, static_cast<std::uint16_t>(900 + 700 * i), 4.0F, 2.0F, 0, {}};
        }
        for (std::size_t i = 0; i < toneBandCount; ++i) {
            set.inputToneBands[i] = {2, 0, static_cast<std::uint16_t>(1500 + 900 * i), -4.0F, 1.0F, 0, {}};
        }
        tuning_.state.replaceStore(store);
        tuning_.settle();
    }

    /// A value inside the field's range that the element does not hold.
    double anotherValue(const Field& field, FieldIndex index) const {
        const double held = storedValue(tuning_.state.currentParameterSet(), field, index);
        for (const double shown : {field.maximum, field.minimum}) {
            if (const double stored = storedFromShown(field, shown); stored != held) {
                return stored;
            }
        }
        return held + 1;
    }

    /// Edits the element back and forth, once by each of two methods, and returns all words that were computed. An edit
    /// can only change words by what it computes: the method changes nothing by itself.
    std::set<std::string> computedBy(const Field& field, FieldIndex index) {
        std::set<std::string> names;
        const double held = storedValue(tuning_.state.currentParameterSet(), field, index);
        const WordsByName before = allWords(tuning_.state);
        for (const std::uint32_t mode : {1U, 0U}) {
            tuning_.state.setFilterMode(mode);
            const WordsByName start = allWords(tuning_.state);
            EXPECT_TRUE(tuning_.state.edit(field.id, index, held, true)) << field.path;
            names.merge(changed(start, allWords(tuning_.state)));
        }
        EXPECT_EQ(changed(before, allWords(tuning_.state)), std::set<std::string>{}) << field.path;
        return names;
    }

    Tuning tuning_;
};

TEST_F(EditDoor, EveryFieldRecomputesWhatItShapesAndNothingElse) {
    for (const Field& field : fieldTable()) {
        if (field.id == FieldId::recordSize) {
            continue;
        }
        forEachElement(field, [&](FieldIndex index) {
            EXPECT_EQ(computedBy(field, index), shapedBy(field, index))
                << field.path << " " << index.outer << " " << index.inner;
        });
    }
    EXPECT_TRUE(tuning_.boxes.shown.empty());
}

TEST_F(EditDoor, EveryFieldIsWrittenIntoRecordAndImageAndNothingElseIs) {
    for (const Field& field : fieldTable()) {
        if (field.id == FieldId::recordSize) {
            continue;
        }
        forEachElement(field, [&](FieldIndex index) {
            const double value = anotherValue(field, index);
            ParameterStore store = tuning_.state.store();
            ParameterImage image = tuning_.state.image();
            setStoredValue(store.sets[0], field, index, value);
            writeImageField(image, store.sets[0], field, index);
            ASSERT_TRUE(tuning_.state.edit(field.id, index, value, true)) << field.path;
            for (std::uint8_t c = 0; c < 8; ++c) {
                for (std::size_t b = 0; b < 8; ++b) {
                    image.channels[c].bandWords[b] = tuning_.state.bandWords({c}, b);
                }
                for (std::size_t k = 0; k < 2; ++k) {
                    image.channels[c].crossoverWords[k] = tuning_.state.crossoverWords({c}, k);
                }
            }
            ASSERT_SAME_BYTES(tuning_.store(), bytesOf(store)) << field.path << " " << index.outer;
            ASSERT_SAME_BYTES(tuning_.image(), bytesOf(image)) << field.path << " " << index.outer;
        });
    }
}

TEST_F(EditDoor, TheSelectedChannelsGetTheValueAndTheOthersKeepTheirs) {
    for (const Field& field : fieldTable()) {
        if (field.outer.count != channelCount) {
            EXPECT_FALSE(tuning_.state.editSelected(field.id, 0, 0, true)) << field.path;
            continue;
        }
        for (const auto mask : std::array<std::uint8_t, 4>{0x00, 0x80, 0x29, 0xFF}) {
            tuning_.state.setSelectionMask(mask);
            ParameterStore expected = tuning_.state.store();
            const double value = anotherValue(field, {});
            for (std::size_t position = 0; position < 8; ++position) {
                if ((mask & (0x80U >> position)) != 0) {
                    setStoredValue(expected.sets[0], field, {pageChannels[position], 0}, value);
                }
            }
            ASSERT_TRUE(tuning_.state.editSelected(field.id, 0, value, true)) << field.path;
            ASSERT_SAME_BYTES(tuning_.store(), bytesOf(expected)) << field.path << " " << int{mask};
        }
    }
}

TEST_F(EditDoor, WhatNobodyMayEditIsRefusedAndNothingIsRaised) {
    const Bytes store = tuning_.store();
    const Bytes image = tuning_.image();
    EXPECT_FALSE(tuning_.state.edit(FieldId::recordSize, {}, 0, true));
    EXPECT_FALSE(tuning_.state.edit(FieldId::count, {}, 0, true));
    EXPECT_FALSE(tuning_.state.edit(std::span<const FieldValue>{}, {}, true));
    for (const Field& field : fieldTable()) {
        EXPECT_FALSE(tuning_.state.edit(field.id, {field.outer.count, 0}, 1, true)) << field.path;
        EXPECT_FALSE(tuning_.state.edit(field.id, {0, field.inner.count}, 1, true)) << field.path;
    }
    EXPECT_FALSE(tuning_.state.editSelected(FieldId::bandGain, 8, 1, true));
    EXPECT_FALSE(tuning_.state.editSelected(FieldId::crossoverOrder, 2, 4, true));
    EXPECT_SAME_BYTES(tuning_.store(), store);
    EXPECT_SAME_BYTES(tuning_.image(), image);
    EXPECT_FALSE(tuning_.state.updatePending());
}

TEST_F(EditDoor, OnlyAFinalEditRaisesTheUpdate) {
    for (const Field& field : fieldTable()) {
        if (field.id == FieldId::recordSize) {
            continue;
        }
        tuning_.settle();
        tuning_.state.edit(field.id, {}, anotherValue(field, {}), false);
        EXPECT_FALSE(tuning_.state.updatePending()) << field.path;
        tuning_.state.edit(field.id, {}, anotherValue(field, {}), true);
        EXPECT_TRUE(tuning_.state.updatePending()) << field.path;
    }
}

}  // namespace
}  // namespace tessavo::test
