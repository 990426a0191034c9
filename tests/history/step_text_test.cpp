#include "history/step_text.h"

#include <algorithm>
#include <gtest/gtest.h>

#include "params/set_text.h"
#include "support/harness.h"

namespace tessavo::test {
namespace {

/// Record channels by the number on the page "Equalizing Output".
constexpr std::uint8_t pageChannel(int number) {
    return recordChannelAt({static_cast<std::uint8_t>(number - 1)}).value;
}

std::uint8_t maskOf(std::initializer_list<int> numbers) {
    unsigned mask = 0;
    for (const int number : numbers) {
        mask |= selectionBit({static_cast<std::uint8_t>(number - 1)});
    }
    return static_cast<std::uint8_t>(mask);
}

class StepText : public ::testing::Test {
 protected:
    /// What the edits that `act` makes are called.
    std::string textOf(const std::function<void(TuningState&)>& act) {
        TuningSnapshot before;
        TuningSnapshot after;
        tuning_.state.takeSnapshot(before);
        act(tuning_.state);
        tuning_.state.takeSnapshot(after);
        return describeStep(before, after);
    }
    void select(std::initializer_list<int> numbers) { tuning_.state.setSelectionMask(maskOf(numbers)); }

    Tuning tuning_;
};

TEST_F(StepText, NamesAChannelByItsNumberInTheChannelSelection) {
    for (int number = 1; number <= 8; ++number) {
        select({number});
        const std::string channel = "Channel " + std::to_string(number);
        EXPECT_EQ(textOf([](TuningState& state) { state.setBandGainOrQ(2, BandValue::gain, -4.5F, true); }),
                  channel + ", Filter 3 gain \u22124.5 dB");
        EXPECT_EQ(textOf([](TuningState& state) { state.setVolume(3, true); }), channel + ", volume 3.0 dB");
        EXPECT_EQ(textOf([](TuningState& state) { state.setLimiter(LimiterField::gain, -100, true); }),
                  channel + ", Limiter gain \u221210.0 dB");
        EXPECT_EQ(textOf([&](TuningState& state) { state.setRouterSource({pageChannel(number)}, 3); }),
                  channel + ", source Center");
    }
}

// Output Group and the flags count the channels in another order.
TEST_F(StepText, NamesGroupsAndFlagsByTheNumbersThatTheirPagesShow) {
    for (std::uint8_t slider = 0; slider < channelCount; ++slider) {
        const RecordChannel channel{groupSliderMap[slider]};
        const std::string group = "Output Group, Channel " + std::to_string(slider + 1) + ", ";
        EXPECT_EQ(textOf([&](TuningState& state) { state.setGroupGain(channel, -3); }),
                  group + "gain \u22123.0 dB");
        EXPECT_EQ(textOf([&](TuningState& state) { state.setGroupDelay(channel, 1.5F); }),
                  group + "delay 1.5 ms");
        const std::uint32_t letter = (slider + 1U) % 8U;
        EXPECT_EQ(textOf([&](TuningState& state) { state.setGainGroup(channel, letter); }),
                  group + "gain group " + "ABCDEFGH"[letter]);
        EXPECT_EQ(textOf([&](TuningState& state) { state.setDelayGroup(channel, letter); }),
                  group + "delay group " + "ABCDEFGH"[letter]);
        EXPECT_EQ(textOf([&](TuningState& state) { state.setChannelFlag(channel, 1); }),
                  "Channel flag " + std::to_string(slider + 1) + " on");
    }
    EXPECT_EQ(textOf([&](TuningState& state) {
                  state.setGroupGain({groupSliderMap[0]}, 1);
                  state.setGroupGain({groupSliderMap[4]}, 2);
              }),
              "Output Group, Channels 1 and 5, gain");
}

TEST_F(StepText, NamesSwitchesAndCodes) {
    select({7});
    EXPECT_EQ(textOf([](TuningState& state) { state.setBandOff(2, 0); }), "Channel 7, Filter 3 on");
    EXPECT_EQ(textOf([](TuningState& state) { state.setBandOff(2, 1); }), "Channel 7, Filter 3 off");
    EXPECT_EQ(textOf([](TuningState& state) { state.setBandType(2, 1); }),
              "Channel 7, Filter 3 type Low Shelf");
    EXPECT_EQ(textOf([](TuningState& state) { state.setInvertPhase(true, 1); }),
              "Channel 7, invert phase on");
    EXPECT_EQ(textOf([](TuningState& state) { state.setLimiter(LimiterField::disable, 0, true); }),
              "Channel 7, Limiter off");
    EXPECT_EQ(textOf([](TuningState& state) { state.setCrossover(0, 0, 2, 1); }),
              "Channel 7, Crossover Filter 1 on");
    EXPECT_EQ(textOf([](TuningState& state) { state.setCrossover(0, 1, 4, 1); }),
              "Channel 7, Crossover Filter 1 kind LP, order 4");
    EXPECT_EQ(textOf([](TuningState& state) { state.setInputEqOn(false); }), "Input EQ off");
    EXPECT_EQ(textOf([](TuningState& state) { state.edit(FieldId::surroundOff, {}, 1, true); }),
              "Surround off");
    EXPECT_EQ(textOf([](TuningState& state) { state.edit(FieldId::compressorDisabled, {}, 1, true); }),
              "Compressor off");
    EXPECT_EQ(textOf([](TuningState& state) { state.edit(FieldId::turnOffDelayOn, {}, 1, true); }),
              "Long turn-off delay on");
}

TEST_F(StepText, NamesTheInputBandsAsThePageDoes) {
    const std::vector<std::string> names{"60 Hz",   "170 Hz",  "310 Hz",   "600 Hz",   "1000 Hz",
                                         "3000 Hz", "6000 Hz", "12000 Hz", "14000 Hz", "16000 Hz",
                                         "Bass",    "Mid",     "Treble"};
    for (std::size_t band = 0; band < names.size(); ++band) {
        EXPECT_EQ(textOf([&](TuningState& state) { state.setInputBandGain(band, -3.5F, true); }),
                  "Input, " + names[band] + " gain \u22123.5 dB");
    }
    EXPECT_EQ(textOf([](TuningState& state) {
                  state.setInputBandGain(0, 6, true);
                  state.setInputBandGain(4, 6, true);
              }),
              "Input, 60 Hz and 1000 Hz gain 6.0 dB");
    EXPECT_EQ(textOf([](TuningState& state) {
                  for (std::size_t band = 0; band < inputSectionCount; ++band) {
                      state.setInputBandGain(band, 0, true);
                  }
              }),
              "Input, 13 values")
        << "Reset";
    EXPECT_EQ(textOf([](TuningState& state) { state.edit(FieldId::inputGain, {}, -12, true); }),
              "Input gain \u221212.0 dB");
}

TEST_F(StepText, NamesOneFieldOfSeveralChannelsOnce) {
    select({1, 3, 5});
    EXPECT_EQ(textOf([](TuningState& state) { state.setBandGainOrQ(2, BandValue::gain, -4.5F, true); }),
              "Channels 1, 3 and 5, Filter 3 gain \u22124.5 dB");
    select({2, 7});
    EXPECT_EQ(textOf([](TuningState& state) { state.setBandFrequency(7, 900, true); }),
              "Channels 2 and 7, Filter 8 frequency 900 Hz");
    select({1, 2, 3, 4, 5, 6, 7, 8});
    EXPECT_EQ(textOf([](TuningState& state) { state.setVolume(-6, true); }),
              "Channels 1 to 8, volume \u22126.0 dB");
    EXPECT_EQ(textOf([](TuningState& state) {
                  for (std::size_t band = 0; band < bandCount; ++band) {
                      state.setBandOff(band, 0);
                  }
              }),
              "Channels 1 to 8, Filters 1 to 8 on")
        << "Enable All Filters";
    EXPECT_EQ(textOf([](TuningState& state) {
                  state.setGroupGain({0}, 2);
                  state.edit(FieldId::volume, {1, 0}, 1, true);
              }),
              "Channels 3 and 5, 2 values");
}

TEST_F(StepText, LeavesOutAValueInWhichTheChannelsDiffer) {
    EXPECT_EQ(textOf([](TuningState& state) {
                  state.edit(FieldId::bandGain, {pageChannel(1), 2}, 1.0, true);
                  state.edit(FieldId::bandGain, {pageChannel(3), 2}, 2.0, true);
                  state.edit(FieldId::bandGain, {pageChannel(5), 2}, 3.0, true);
              }),
              "Channels 1, 3 and 5, Filter 3 gain");
}

TEST_F(StepText, NamesAFewValuesOfOnePlaceOneByOne) {
    select({7});
    const auto tick = [](TuningState& state) {
        state.setBandOff(7, 0);
        state.setBandType(7, 0);
    };
    EXPECT_EQ(textOf(tick), "Channel 7, Filter 8 type High Shelf, on");
    select({1, 2});
    EXPECT_EQ(textOf(tick), "Channels 1 and 2, Filter 8 type High Shelf, on");
    EXPECT_EQ(textOf([](TuningState& state) {
                  state.edit(FieldId::surroundMode, {}, 2, true);
                  for (const FieldId field :
                       {FieldId::delaySize1, FieldId::delaySize1Copies, FieldId::delaySize1Last}) {
                      forEachElement(fieldOf(field),
                                     [&](FieldIndex index) { state.edit(field, index, 30, true); });
                  }
              }),
              "Surround mode Stadium, delay size 1 30 ms")
        << "the copies of delay size 1 go without saying";
}

TEST_F(StepText, CountsWhatOneLineCannotTell) {
    select({7});
    const auto edits = [](TuningState& state) {
        for (std::size_t band = 0; band < 3; ++band) {
            state.setBandFrequency(band, 333, true);
            state.setBandGainOrQ(band, BandValue::gain, 3, true);
            state.setBandGainOrQ(band, BandValue::q, 3, true);
            state.setBandOff(band, 0);
        }
    };
    EXPECT_EQ(textOf(edits), "Channel 7, 12 values");
    select({1, 2, 3, 5, 6});
    EXPECT_EQ(textOf(edits), "Channels 1 to 3, 5 and 6, 60 values");
    EXPECT_EQ(textOf([](TuningState& state) {
                  state.setVolume(1, true);
                  state.setInputBandGain(0, 3, true);
              }),
              "6 values");
    std::mt19937_64 random(1);
    const Bytes store = randomStore(random);
    const std::string text =
        textOf([&](TuningState& state) { state.replaceStore(recordOf<ParameterStore>(store)); });
    EXPECT_TRUE(text.starts_with("5 sets, ") && text.ends_with(" values")) << text;
}

TEST_F(StepText, CountsWhatIsNoBlockAndWhatIsTooLong) {
    EXPECT_EQ(textOf([](TuningState& state) {
                  state.edit(FieldId::bandGain, {pageChannel(1), 2}, 3, true);
                  state.edit(FieldId::bandGain, {pageChannel(2), 4}, 3, true);
              }),
              "Channels 1 and 2, 2 values");
    EXPECT_EQ(textOf([](TuningState& state) {
                  state.edit(FieldId::bandGain, {pageChannel(7), 2}, 3, true);
                  state.edit(FieldId::bandQ, {pageChannel(7), 4}, 3, true);
              }),
              "Channel 7, 2 values");
    select({1, 3, 5, 7});
    EXPECT_EQ(textOf([](TuningState& state) { state.setCrossoverFrequency(0, 999, true); }),
              "Channels 1, 3, 5 and 7, Crossover Filter 1 frequency 999 Hz");
    EXPECT_EQ(textOf([](TuningState& state) { state.setCrossoverFrequency(0, 19999, true); }),
              "4 channels, Crossover Filter 1 frequency 19999 Hz");
    const auto editLevels = [](std::initializer_list<FieldId> fields) {
        return [fields](TuningState& state) {
            for (const FieldId field : fields) {
                state.edit(field, {}, storedValue(state.currentParameterSet(), fieldOf(field)) + 1, true);
            }
        };
    };
    using enum FieldId;
    EXPECT_EQ(textOf(editLevels({powerampGain, preampGain, pone})),
              "Poweramp gain 1.0 dB, preamp gain 1.0 dB, PONE \u22129.9 dB");
    EXPECT_EQ(textOf(editLevels({inputEqOn, roomSize, suppression, pone})), "4 values");
    EXPECT_EQ(textOf(editLevels({compressorLowerLimit, expanderUpperLimit, compressorAttack})), "3 values");
}

TEST_F(StepText, NamesTheSetOfANameAndOfAChangeElsewhere) {
    EXPECT_EQ(textOf([](TuningState& state) { state.setName(u"abc"); }), "Set 1 named \u201Cabc\u201D");
    tuning_.state.selectSet(1);
    EXPECT_EQ(textOf([](TuningState& state) { state.setName(u"Tour \u00E4"); }),
              "Set 2 named \u201CTour \u00E4\u201D");
    EXPECT_EQ(textOf([](TuningState& state) { state.setName({}); }), "Set 2 without a name");
    EXPECT_EQ(textOf([](TuningState& state) { state.setName(u"a\nb\tc"); }), "Set 2 named \u201Ca b c\u201D");
    EXPECT_EQ(textOf([](TuningState& state) { state.setName(std::u16string(31, u'w')); }),
              "Set 2 named \u201C" + std::string(31, 'w') + "\u201D");
    EXPECT_EQ(textOf([](TuningState& state) {
                  state.setName(u"q");
                  state.setVolume(2, true);
              }),
              "2 values");
    TuningSnapshot before;
    tuning_.state.takeSnapshot(before);
    TuningSnapshot after = before;
    after.store.sets[1].channels[pageChannel(4)].volumeDb = 2.5F;
    EXPECT_EQ(describeStep(before, after), "Channel 4, volume 2.5 dB");
    after.currentSet = 0;
    EXPECT_EQ(describeStep(before, after), "Set 2: Channel 4, volume 2.5 dB");
    before.currentSet = 0;
    EXPECT_EQ(describeStep(before, after), "Set 2: Channel 4, volume 2.5 dB");
    after.currentSet = 1;
    EXPECT_EQ(describeStep(before, after), "Set 2: Channel 4, volume 2.5 dB");
    after = before;
    after.store.sets[4].setName.fill(u'x');
    EXPECT_EQ(describeStep(before, after), "Set 5 named \u201C" + std::string(44, 'x') + "\u2026\u201D");
    after.store = before.store;
    after.store.sets[4].setVersion = {u'1', u'.', u'2'};
    EXPECT_EQ(describeStep(before, after), "Set 5 version \u201C1.2\u201D");
    after.store.sets[4].setName = {u'n'};
    EXPECT_EQ(describeStep(before, after), "Set 5: 2 values");
}

TEST_F(StepText, SaysOnceWhatGoesIntoEverySet) {
    const auto spread = [](TuningState& state) {
        ParameterImage image = state.image();
        image.routerSource[pageChannel(3)] = 4;
        state.replaceImage(image);
        state.imageToSet();
    };
    tuning_.state.imageToSet();
    EXPECT_EQ(textOf(spread), "Channel 3, source RearLeft");
    EXPECT_EQ(textOf([](TuningState& state) {
                  ParameterStore store = state.store();
                  for (std::size_t set = 0; set < setCount; ++set) {
                      store.sets[set].routerSource[0] = static_cast<std::uint8_t>(6 + set);
                  }
                  state.replaceStore(store);
              }),
              "5 sets, 5 values")
        << "each to another value";
}

TEST_F(StepText, TellsOfWhatOnlyTheImageHas) {
    tuning_.state.imageToSet();
    select({3});
    EXPECT_EQ(textOf([](TuningState& state) { state.setInvertPhase(false, 1); }),
              "Channel 3, phase of what plays on");
    select({1, 2});
    EXPECT_EQ(textOf([](TuningState& state) { state.setInvertPhase(false, 1); }),
              "Channels 1 and 2, phase of what plays on");
    const auto change = [](auto act) {
        return [act](TuningState& state) {
            ParameterImage image = state.image();
            act(image);
            state.replaceImage(image);
        };
    };
    EXPECT_EQ(
        textOf(change([](ParameterImage& image) { image.inputRow0.bypass = image.inputRow1.bypass = 1; })),
        "Input EQ off");
    EXPECT_EQ(
        textOf(change([](ParameterImage& image) { image.inputRow0.bypass = image.inputRow1.bypass = 0; })),
        "Input EQ on");
    EXPECT_EQ(textOf(change([](ParameterImage& image) { image.spare20 = {1, 2}; })), "2 bytes of what plays");
    EXPECT_EQ(textOf([](TuningState& state) { state.imageToSet(); }), "Channels 1 to 3, invert phase on");
    EXPECT_EQ(textOf(change([](ParameterImage& image) { image.spare20 = {3, 4}; })), "2 bytes of what plays");
    EXPECT_EQ(textOf(change([](ParameterImage& image) {
                  image.channels[0].invertPhase ^= 1;
                  image.spare20 = {5, 4};
              })),
              "2 bytes of what plays");
    EXPECT_EQ(textOf(change([](ParameterImage& image) { image.channels[0].invertPhase ^= 1; })),
              "Channel 3, phase of what plays on");
    EXPECT_EQ(textOf([](TuningState& state) { state.imageToSet(); }), "What set 1 was received with");
}

TEST_F(StepText, TellsOfCoefficientsThatAnotherMethodComputed) {
    select({7});
    tuning_.state.setBandGainOrQ(2, BandValue::gain, 6, true);
    tuning_.state.setInputBandGain(3, 6, true);
    tuning_.state.setCrossover(1, 1, 2, 1);
    tuning_.state.setFilterMode(1);
    EXPECT_EQ(textOf([](TuningState& state) { state.setBandGainOrQ(2, BandValue::gain, 6, true); }),
              "Channel 7, Filter 3 computed anew");
    EXPECT_EQ(textOf([](TuningState& state) { state.setInputBandGain(3, 6, true); }), "Input computed anew");
    EXPECT_EQ(textOf([](TuningState& state) { state.setCrossoverFrequency(1, 20000, true); }),
              "Channel 7, Crossover Filters 1 and 2 computed anew");
    tuning_.state.setFilterMode(0);
    EXPECT_EQ(textOf([](TuningState& state) {
                  state.setBandGainOrQ(2, BandValue::gain, 6, true);
                  state.setInputBandGain(3, 6, true);
              }),
              "Filters computed anew");
    TuningSnapshot before;
    tuning_.state.takeSnapshot(before);
    TuningSnapshot after = before;
    after.bandWords[pageChannel(1)][2].b0 ^= 1;
    after.bandWords[pageChannel(2)][2].b0 ^= 1;
    EXPECT_EQ(describeStep(before, after), "Channels 1 and 2, Filter 3 computed anew");
    after.bandWords[pageChannel(2)][2].b0 ^= 1;
    after.bandWords[pageChannel(2)][4].b0 ^= 1;
    EXPECT_EQ(describeStep(before, after), "Filters computed anew");
}

TEST_F(StepText, HasWordsForBytesThatNobodyKnows) {
    TuningSnapshot before;
    tuning_.state.takeSnapshot(before);
    TuningSnapshot after = before;
    after.store.sets[2].spare1858[3] = 1;
    EXPECT_EQ(describeStep(before, after), "Set 3, bytes of unknown meaning");
    after.store.sets[0].spare5[0] = 1;
    EXPECT_EQ(describeStep(before, after), "2 sets, bytes of unknown meaning");
    after = before;
    after.store.sets[0].recordSize = 0;
    EXPECT_EQ(describeStep(before, after), "Record size 0");
    after = before;
    after.currentSet = 4;
    EXPECT_EQ(describeStep(before, after), "Set 5 chosen");
    after = before;
    after.received[1].isPresent = 1;
    EXPECT_EQ(describeStep(before, after), "What set 2 was received with");
    after.received[2].isPresent = 1;
    EXPECT_EQ(describeStep(before, after), "What 2 sets were received with");
}

// Any two states: random bytes of them, and any number of bytes.
TEST_F(StepText, IsNeverEmptyNorTooLongForAMenu) {
    std::mt19937_64 random(7);
    for (int round = 0; round < 3000; ++round) {
        TuningSnapshot before;
        tuning_.state.takeSnapshot(before);
        TuningSnapshot after = before;
        const auto row = tessavo::bytesOf(after);
        const std::size_t span = round % 2 == 0 ? row.size() - 4 : parameterStoreSize;
        for (std::uint64_t changes = 1 + random() % (round % 3 == 0 ? 400 : 4); changes > 0; --changes) {
            row[random() % span] ^= static_cast<std::uint8_t>(1U + random() % 255U);
        }
        after.currentSet = static_cast<std::uint32_t>(random() % setCount);
        const std::string text = describeStep(before, after);
        EXPECT_FALSE(text.empty());
        const auto length = std::ranges::count_if(
            text, [](char letter) { return (static_cast<unsigned char>(letter) & 0xC0U) != 0x80U; });
        EXPECT_LE(length, 60) << text;
        EXPECT_TRUE(
            std::ranges::none_of(text, [](char letter) { return static_cast<unsigned char>(letter) < ' '; }));
    }
}

}  // namespace
}  // namespace tessavo::test
