#include <algorithm>
#include <gtest/gtest.h>

#include "support/harness.h"

namespace tessavo::test {
namespace {

Bytes randomImage(std::mt19937_64& random) {
    Bytes image(imageSize);
    std::generate(image.begin(), image.end(), [&] { return static_cast<std::uint8_t>(random()); });
    writeAt(image, 0, std::uint32_t{3384});
    return image;
}

/// The image of a set as another program's edits would leave it, by channel 7 alone: volume 0 with a group
/// gain, delay 1 ms with a group delay of 2 ms.
Bytes imageWithGroupTerms() {
    Tuning source;
    source.state.setGroupGain({7}, -3.5F);
    source.state.setDelay(1.0F, true);
    source.state.setGroupDelay({7}, 2.0F);
    return source.image();
}

Bytes imageOfAnotherMethod() {
    std::mt19937_64 random(5);
    Tuning source;
    source.state.setFilterMode(1);
    source.load(randomStore(random), 0);
    return source.image();
}

/// A set that the record can say as well, with spare bytes of its own and a switch that is off.
Bytes plainImage(std::mt19937_64& random) {
    Tuning source;
    source.load(randomStore(random), 0);
    source.state.setInputEqOn(false);
    Bytes image = source.image();
    for (const std::size_t spare : {20U, 36U, 46U, 232U, 2965U, 2983U, 3039U, 3106U, 3301U}) {
        image[spare] = static_cast<std::uint8_t>(random());
    }
    return image;
}

class ReceivedSet : public ::testing::Test {
 protected:
    void receive(std::uint32_t set, const Bytes& image) {
        if (tuning_.state.currentSet() != set) {
            tuning_.state.selectSet(set);
        }
        tuning_.state.replaceImage(recordOf<ParameterImage>(image));
        tuning_.state.imageToSet();
    }
    void choose(std::initializer_list<std::uint32_t> sets) {
        for (const std::uint32_t set : sets) {
            tuning_.state.selectSet(set);
        }
    }
    /// The image that the current set has when nothing but its record says what it is.
    Bytes derived() {
        Bytes expected = tuning_.image();
        mirrorSet(tuning_.store(), tuning_.state.currentSet(), tuning_.state.filterMode(), expected);
        return expected;
    }
    Tuning tuning_;
};

TEST_F(ReceivedSet, WithGroupTermsStaysAsItArrived) {
    const Bytes image = imageWithGroupTerms();
    EXPECT_EQ(readAt<std::uint32_t>(image, 36 + 360 * 7 + 12), 149U);
    receive(0, image);
    EXPECT_SAME_BYTES(tuning_.image(), image);
    EXPECT_EQ(readAt<float>(tuning_.store(), 224 + 168 * 7 + 140), -3.5F) << "the record has it twice";
    EXPECT_EQ(readAt<float>(tuning_.store(), 224 + 168 * 7 + 144), -3.5F);
}

TEST_F(ReceivedSet, TenReadsInARowLeaveImageAndRecordAsTheFirst) {
    const Bytes image = imageWithGroupTerms();
    receive(0, image);
    const Bytes store = tuning_.store();
    for (int read = 2; read <= 10; ++read) {
        receive(0, tuning_.image());
        ASSERT_SAME_BYTES(tuning_.image(), image) << read;
        ASSERT_SAME_BYTES(tuning_.store(), store) << read;
    }
}

TEST_F(ReceivedSet, WithoutAPhaseInversionStaysSoOverARecordThatHasOne) {
    const Bytes image = tuning_.image();
    tuning_.state.setSelectionMask(0xFF);
    tuning_.state.setInvertPhase(true, 1);
    receive(0, image);
    for (std::size_t c = 0; c < 8; ++c) {
        EXPECT_EQ(tuning_.image()[imageBlockOffset(c) + 9], 0) << c;
        EXPECT_EQ(tuning_.store()[recordChannelOffset(c) + 153], 1) << c;
    }
    EXPECT_SAME_BYTES(tuning_.image(), image);
}

TEST_F(ReceivedSet, WithWordsOfAnotherMethodKeepsThemAndGivesTheTablesTheOwnOnes) {
    const Bytes image = imageOfAnotherMethod();
    receive(0, image);
    EXPECT_SAME_BYTES(tuning_.image(), image);
    for (std::uint8_t c = 0; c < 8; ++c) {
        for (std::size_t band = 0; band < 8; ++band) {
            BiquadWords words{};
            ASSERT_TRUE(bandWordsOf(0, tuning_.store(), recordChannelOffset(c) + 16 * band, words));
            EXPECT_EQ(tuning_.state.bandWords({c}, band), words) << int{c} << " " << band;
        }
    }
}

TEST_F(ReceivedSet, OfAnyBytesStaysAsItArrivedInEverySet) {
    std::mt19937_64 random(6);
    for (std::uint32_t set = 0; set < 5; ++set) {
        const Bytes image = randomImage(random);
        receive(set, image);
        EXPECT_SAME_BYTES(tuning_.image(), image) << set;
        EXPECT_SAME_BYTES(bytesOf(tuning_.state.imageCopy()), image) << set;
    }
}

TEST_F(ReceivedSet, ComesBackAfterAnotherSetWasChosen) {
    std::mt19937_64 random(7);
    for (const Bytes& image : {imageWithGroupTerms(), imageOfAnotherMethod(), randomImage(random)}) {
        receive(0, image);
        tuning_.state.selectSet(1);
        EXPECT_SAME_BYTES(tuning_.image(), derived()) << "that set was never received";
        EXPECT_NE(tuning_.image(), image);
        tuning_.state.selectSet(0);
        EXPECT_SAME_BYTES(tuning_.image(), image);
        EXPECT_SAME_BYTES(bytesOf(tuning_.state.imageCopy()), image);
    }
}

TEST_F(ReceivedSet, ComesBackWhateverMethodIsChosenAndIsChosenTwiceToo) {
    const Bytes image = imageOfAnotherMethod();
    receive(2, image);
    tuning_.state.setFilterMode(2);
    choose({4, 2, 2});
    EXPECT_SAME_BYTES(tuning_.image(), image);
    BiquadWords words{};
    ASSERT_TRUE(bandWordsOf(2, tuning_.store(), 2 * setSize + recordChannelOffset(3), words));
    EXPECT_EQ(tuning_.state.bandWords({3}, 0), words);
}

TEST_F(ReceivedSet, AllFiveComeBackWhenTheirSourcesAgree) {
    std::mt19937_64 random(8);
    std::vector<Bytes> images;
    for (std::uint32_t set = 0; set < 5; ++set) {
        images.push_back(randomImage(random));
        for (std::size_t c = 0; c < 8; ++c) {
            // The low bytes agree; what stands above them is the image's own.
            images.back()[2916 + 4 * c] = static_cast<std::uint8_t>(c);
        }
        receive(set, images.back());
    }
    for (const std::uint32_t set : {3U, 0U, 4U, 1U, 2U, 0U}) {
        tuning_.state.selectSet(set);
        EXPECT_SAME_BYTES(tuning_.image(), images[set]) << set;
    }
}

TEST_F(ReceivedSet, TakesTheChangedSourcesOfASetThatIsReadLaterAndNothingElse) {
    std::mt19937_64 random(9);
    Bytes first = plainImage(random);
    Bytes second = plainImage(random);
    for (std::size_t c = 0; c < 8; ++c) {
        first[2916 + 4 * c] = static_cast<std::uint8_t>(c);
        second[2916 + 4 * c] = static_cast<std::uint8_t>(c < 3 ? c : 13 - c);
    }
    receive(0, first);
    receive(1, second);
    Bytes expected = first;
    for (std::size_t c = 3; c < 8; ++c) {
        writeAt(expected, 2916 + 4 * c, static_cast<std::uint32_t>(13 - c));
    }
    for (int round = 0; round < 2; ++round) {
        tuning_.state.selectSet(0);
        EXPECT_SAME_BYTES(tuning_.image(), expected) << round;
        tuning_.state.selectSet(1);
        EXPECT_SAME_BYTES(tuning_.image(), second) << round;
    }
    for (std::size_t c = 0; c < 8; ++c) {
        EXPECT_EQ(tuning_.store()[1568 + c], second[2916 + 4 * c]) << "record and image agree";
    }
    choose({0});
    tuning_.state.edit(FieldId::roomSize, {}, 77, true);
    choose({1, 0});
    EXPECT_SAME_BYTES(tuning_.image(), derived()) << "an edit ends it as ever";
}

/// An edit and the bytes of the image that are its own, as offset and width, on record channel 0.
struct OwnBytes {
    const char* name;
    std::function<void(TuningState&)> edit;
    std::vector<std::pair<std::size_t, std::size_t>> places;
};

std::vector<OwnBytes> channelEdits() {
    return {
        {"setDelay", [](TuningState& s) { s.setDelay(1.25F, true); }, {{48, 4}}},
        {"setVolume", [](TuningState& s) { s.setVolume(5.5F, true); }, {{40, 4}}},
        {"setInvertPhase", [](TuningState& s) { s.setInvertPhase(true, 1); }, {{45, 1}}},
        {"setBandFrequency",
         [](TuningState& s) { s.setBandFrequency(2, 4321, true); },
         {{86, 2}, {236, 160}}},
        {"setBandType", [](TuningState& s) { s.setBandType(2, 1); }, {{84, 1}, {236, 160}}},
        {"gain",
         [](TuningState& s) { s.setBandGainOrQ(2, BandValue::gain, 3, true); },
         {{88, 4}, {236, 160}}},
        {"Q", [](TuningState& s) { s.setBandGainOrQ(2, BandValue::q, 3, true); }, {{92, 4}, {236, 160}}},
        {"setBandOff", [](TuningState& s) { s.setBandOff(2, 77); }, {{96, 1}}},
        {"setCrossover", [](TuningState& s) { s.setCrossover(1, 1, 4, 1); }, {{186, 2}, {190, 1}, {192, 40}}},
        {"crossover Hz", [](TuningState& s) { s.setCrossoverFrequency(1, 99, true); }, {{188, 2}, {192, 40}}},
        {"setLimiter", [](TuningState& s) { s.setLimiter(LimiterField::attack, 33, true); }, {{3108, 4}}},
        {"setGroupGain", [](TuningState& s) { s.setGroupGain({0}, 4); }, {{40, 4}, {3304, 4}}},
        {"setGroupDelay", [](TuningState& s) { s.setGroupDelay({0}, 4); }, {{48, 4}, {3336, 4}}},
        {"setGainGroup", [](TuningState& s) { s.setGainGroup({0}, 5); }, {{3368, 1}}},
        {"setDelayGroup", [](TuningState& s) { s.setDelayGroup({0}, 5); }, {{3376, 1}}},
        {"setChannelFlag", [](TuningState& s) { s.setChannelFlag({0}, 9); }, {{44, 1}}},
        {"setRouterSource", [](TuningState& s) { s.setRouterSource({0}, 9); }, {{2916, 4}}},
    };
}

std::vector<OwnBytes> inputEdits() {
    return {
        {"setInputBandGain", [](TuningState& s) { s.setInputBandGain(4, 3, true); }, {{14, 1}, {30, 1}}},
        {"setInputBandGain tone", [](TuningState& s) { s.setInputBandGain(10, 3, true); }, {{7, 1}, {23, 1}}},
        {"setInputEqOn", [](TuningState& s) { s.setInputEqOn(true); }, {{6, 1}, {22, 1}}},
        {"input gain", [](TuningState& s) { s.edit(FieldId::inputGain, {}, 12, true); }, {{4, 2}}},
        {"room", [](TuningState& s) { s.edit(FieldId::roomSize, {}, 3, true); }, {{2948, 4}}},
        {"pone", [](TuningState& s) { s.edit(FieldId::pone, {}, -77, true); }, {{2984, 2}}},
    };
}

/// An image in which each of these edits finds something else than it writes.
Bytes imageToEdit() {
    std::mt19937_64 random(10);
    Bytes image = plainImage(random);
    image[6] = image[22] = 5;
    image[84] = 2;
    image[96] = 1;
    image[45] = 0;
    image[44] = 1;
    std::fill_n(image.begin() + 192, 40, std::uint8_t{0x11});
    std::fill_n(image.begin() + 236, 160, std::uint8_t{0x11});
    image[3368] = image[3376] = 1;
    return image;
}

TEST_F(ReceivedSet, IsChangedByAnEditInTheBytesOfThatEditAlone) {
    std::vector<OwnBytes> edits = channelEdits();
    const auto more = inputEdits();
    edits.insert(edits.end(), more.begin(), more.end());
    tuning_.state.setSelectionMask(0x20);  // record channel 0
    const Bytes image = imageToEdit();
    for (const OwnBytes& one : edits) {
        receive(0, image);
        one.edit(tuning_.state);
        Bytes expected = image;
        for (const auto& [place, width] : one.places) {
            std::copy_n(tuning_.image().begin() + static_cast<std::ptrdiff_t>(place), width,
                        expected.begin() + static_cast<std::ptrdiff_t>(place));
            EXPECT_FALSE(std::equal(expected.begin() + static_cast<std::ptrdiff_t>(place),
                                    expected.begin() + static_cast<std::ptrdiff_t>(place + width),
                                    image.begin() + static_cast<std::ptrdiff_t>(place)))
                << one.name << " writes at " << place;
        }
        EXPECT_SAME_BYTES(tuning_.image(), expected) << one.name;
    }
}

TEST_F(ReceivedSet, DoesNotComeBackOnceAnEditHasChangedItsRecord) {
    std::vector<OwnBytes> edits = channelEdits();
    const auto more = inputEdits();
    edits.insert(edits.end(), more.begin(), more.end());
    tuning_.state.setSelectionMask(0x20);
    const Bytes image = imageToEdit();
    for (const OwnBytes& one : edits) {
        tuning_.load(Bytes(storeSize, 0));
        receive(0, image);
        one.edit(tuning_.state);
        choose({1, 0});
        EXPECT_SAME_BYTES(tuning_.image(), derived()) << one.name;
        EXPECT_NE(tuning_.image(), image) << one.name;
    }
}

TEST_F(ReceivedSet, DoesNotComeBackWhenTheRecordWasChangedAndChangedBack) {
    receive(0, imageWithGroupTerms());
    tuning_.state.setSelectionMask(0x80);  // record channel 7
    tuning_.state.setVolume(2.0F, false);
    tuning_.state.setVolume(-3.5F, true);
    choose({1, 0});
    EXPECT_SAME_BYTES(tuning_.image(), derived());
}

TEST_F(ReceivedSet, ComesBackAfterEditsOfWhatTheTargetDoesNotTakeAndOfOtherSets) {
    const Bytes image = imageWithGroupTerms();
    receive(0, image);
    tuning_.state.setName(u"another");
    tuning_.state.edit(FieldId::surroundOff, {}, 1, true);
    tuning_.state.edit(FieldId::delaySize1Last, {}, 4, true);
    choose({1});
    tuning_.state.setVolume(7.0F, true);
    tuning_.state.setGroupGain({0}, 3.0F);
    choose({0});
    EXPECT_SAME_BYTES(tuning_.image(), image);
}

TEST_F(ReceivedSet, ComesBackAfterAnEditThatWritesTheRecordsOwnValue) {
    const Bytes image = imageOfAnotherMethod();
    receive(0, image);
    // As choosing a channel does.
    tuning_.state.setBandType(7, image[36 + 360 * 7 + 16 + 16 * 7]);
    EXPECT_NE(tuning_.image(), image) << "the row of words is the edit's";
    choose({3, 0});
    EXPECT_SAME_BYTES(tuning_.image(), image);
}

TEST_F(ReceivedSet, IsForgottenInAllFiveSetsWhenAFileIsOpened) {
    std::mt19937_64 random(12);
    for (std::uint32_t set = 0; set < 5; ++set) {
        receive(set, plainImage(random));
    }
    const Bytes store = tuning_.store();
    tuning_.state.replaceStore(recordOf<ParameterStore>(store));
    for (const std::uint32_t set : {4U, 0U, 1U, 2U, 3U}) {
        EXPECT_SAME_BYTES(tuning_.store(), store);
        tuning_.state.selectSet(set);
        EXPECT_SAME_BYTES(tuning_.image(), derived()) << set;
    }
}

TEST_F(ReceivedSet, WhoseDigestWasWrongIsNotKept) {
    std::mt19937_64 random(13);
    const Bytes good = imageWithGroupTerms();
    receive(0, good);
    // A damaged image is taken, but no conversion follows.
    tuning_.state.replaceImage(recordOf<ParameterImage>(randomImage(random)));
    choose({1, 0});
    EXPECT_SAME_BYTES(tuning_.image(), good);
}

// --- bytes with one writer
// -------------------------------------------------------------------------------------------

TEST(BypassBytes, StayWhenASetIsChosenAndWhenAFileIsOpened) {
    std::mt19937_64 random(14);
    for (const bool on : {true, false}) {
        Tuning tuning;
        tuning.state.setInputEqOn(on);
        for (int round = 0; round < 20; ++round) {
            Bytes store = randomStore(random);
            for (std::size_t set = 0; set < 5; ++set) {
                store[setSize * set + 4] = static_cast<std::uint8_t>(random() % 2);
            }
            tuning.state.replaceStore(recordOf<ParameterStore>(store));
            for (std::uint32_t set = 0; set < 5; ++set) {
                tuning.state.selectSet(set);
                ASSERT_EQ(tuning.image()[6], on ? 0 : 1) << set;
                ASSERT_EQ(tuning.image()[22], on ? 0 : 1) << set;
            }
            ASSERT_SAME_BYTES(tuning.store(), store);
        }
    }
}

TEST(BypassBytes, AreZeroInAFreshStateOverRecordsThatSayOff) {
    const Tuning tuning;
    for (std::size_t set = 0; set < 5; ++set) {
        EXPECT_EQ(tuning.store()[setSize * set + 4], 0) << set;
    }
    EXPECT_EQ(tuning.image()[6], 0);
    EXPECT_EQ(tuning.image()[22], 0);
}

TEST(BypassBytes, AreThoseOfAReceivedImageAndStayWhenASetIsChosenThatWasNeverReceived) {
    Tuning tuning;
    Bytes image = tuning.image();
    image[6] = 1;
    image[22] = 3;
    tuning.state.replaceImage(recordOf<ParameterImage>(image));
    tuning.state.imageToSet();
    tuning.state.selectSet(1);
    EXPECT_EQ(tuning.image()[6], 1);
    EXPECT_EQ(tuning.image()[22], 3);
    tuning.state.setInputEqOn(true);
    tuning.state.selectSet(0);
    EXPECT_EQ(tuning.image()[6], 1) << "the received image is back";
    EXPECT_EQ(tuning.image()[22], 3);
}

TEST(SizeWords, AreChangedByNothingButTheStartAndALoadedFile) {
    std::mt19937_64 random(15);
    Tuning tuning;
    tuning.state.edit(FieldId::recordSize, {}, 7, true);
    EXPECT_FALSE(tuning.state.updatePending()) << "refused as a whole";
    Bytes store = randomStore(random);
    writeAt(store, 2 * setSize, std::uint32_t{0x1234});
    tuning.load(store, 0);
    for (int round = 0; round < 200; ++round) {
        Bytes image = randomImage(random);
        writeAt(image, 0, static_cast<std::uint32_t>(random()));
        tuning.state.selectSet(static_cast<std::uint32_t>(random() % 5));
        tuning.state.replaceImage(recordOf<ParameterImage>(image));
        ASSERT_EQ(readAt<std::uint32_t>(tuning.image(), 0), 3384U) << "before the conversion";
        tuning.state.imageToSet();
        for (std::size_t id = 0; id < fieldCount; ++id) {
            tuning.state.edit(static_cast<FieldId>(id), {}, static_cast<double>(random() % 256), false);
        }
        tuning.state.selectSet(static_cast<std::uint32_t>(random() % 5));
        ASSERT_EQ(readAt<std::uint32_t>(tuning.image(), 0), 3384U);
        for (std::size_t set = 0; set < 5; ++set) {
            ASSERT_EQ(readAt<std::uint32_t>(tuning.store(), setSize * set), set == 2 ? 0x1234U : 2120U);
        }
    }
}

}  // namespace
}  // namespace tessavo::test
