#include <atomic>
#include <gtest/gtest.h>
#include <thread>

#include "support/harness.h"

namespace tessavo::test {
namespace {

using std::chrono::milliseconds;

TEST(SelectSet, AsksForTheLockForHalfASecondAndRunsThePagesUnderIt) {
    Tuning tuning;
    tuning.lock = {};
    std::vector<std::string> seen;
    tuning.state.selectSet(3, [&] {
        EXPECT_EQ(tuning.lock.asked.size(), 1U);
        EXPECT_EQ(tuning.lock.released, 0);
        EXPECT_EQ(tuning.state.currentSet(), 3U);
        seen.emplace_back("pages");
    });
    EXPECT_EQ(seen.size(), 1U);
    EXPECT_EQ(tuning.lock.asked, std::vector<milliseconds>{milliseconds(500)});
    EXPECT_EQ(tuning.lock.released, 1);
}

TEST(SelectSet, GoesOnWithoutTheLockAndDoesNotReleaseIt) {
    Tuning tuning;
    tuning.lock = {};
    tuning.lock.granted = false;
    int ran = 0;
    tuning.state.selectSet(2, [&] { ++ran; });
    EXPECT_EQ(ran, 1);
    EXPECT_EQ(tuning.state.currentSet(), 2U);
    EXPECT_EQ(tuning.lock.released, 0);
}

TEST(SelectSet, BringsImageAndWordsInStepWithTheWholeSet) {
    std::mt19937_64 random(1);
    const Bytes store = randomStore(random);
    for (std::uint32_t mode = 0; mode < 3; ++mode) {
        Tuning tuning;
        tuning.state.setFilterMode(mode);
        tuning.load(store, 0);
        for (const std::uint32_t set : {4U, 1U, 0U, 3U, 2U}) {
            tuning.state.selectSet(set);
            Bytes expected(imageSize, 0);
            mirrorSet(store, set, mode, expected);
            EXPECT_SAME_BYTES(tuning.image(), expected) << set;
            EXPECT_SAME_BYTES(tuning.store(), store);
            for (std::size_t band = 0; band < 13; ++band) {
                BiquadWords words{};
                ASSERT_TRUE(bandWordsOf(mode, store, setSize * set + inputBandOffset(band), words));
                EXPECT_EQ(tuning.state.inputWords(band), words) << band;
            }
        }
        EXPECT_FALSE(tuning.state.updatePending());
    }
}

TEST(SelectSet, ThatDoesNotExistChangesNothing) {
    Tuning tuning;
    tuning.state.selectSet(1);
    const Bytes image = tuning.image();
    for (const std::uint32_t bad : {5U, 6U, 0xFFFFFFFFU}) {
        tuning.state.selectSet(bad);
        EXPECT_EQ(tuning.state.currentSet(), 1U);
        EXPECT_SAME_BYTES(tuning.image(), image);
    }
}

TEST(SelectSet, SendsLaterEditsIntoTheNewSet) {
    Tuning tuning;
    tuning.state.selectSet(2);
    Bytes expected = tuning.store();
    writeAt(expected, 2 * setSize + 224 + 168 * 7 + 140, 5.0F);
    tuning.state.setVolume(5.0F, true);
    EXPECT_SAME_BYTES(tuning.store(), expected);
}

TEST(FilterMode, RecomputesNothingUntilTheNextEdit) {
    std::mt19937_64 random(2);
    Tuning tuning;
    tuning.load(randomStore(random), 0);
    const Bytes before = tuning.image();
    tuning.state.setFilterMode(1);
    EXPECT_EQ(tuning.state.filterMode(), 1U);
    EXPECT_SAME_BYTES(tuning.image(), before);
    EXPECT_FALSE(tuning.state.updatePending());
    EXPECT_TRUE(tuning.display.curves.empty());

    tuning.state.setSelectionMask(0x20);  // record channel 0
    tuning.state.setBandFrequency(3, 999, true);
    Bytes expected = before;
    writeAt(expected, 36 + 16 + 48 + 2, std::uint16_t{999});
    BiquadWords words{};
    bandWordsOf(1, tuning.store(), 224 + 48, words);
    writeAt(expected, 36 + 200 + 60, words);
    EXPECT_SAME_BYTES(tuning.image(), expected) << "the edited band alone is of the new mode";
}

TEST(FilterMode, PicksTheGeneratorsInTheirOrder) {
    Tuning tuning;
    for (std::uint32_t mode = 0; mode < 3; ++mode) {
        tuning.state.setFilterMode(mode);
        tuning.state.setBandGainOrQ(2, BandValue::gain, 6.0F, true);
        BiquadWords words{};
        ASSERT_TRUE(bandWordsOf(mode, tuning.store(), 224 + 168 * 7 + 32, words));
        EXPECT_EQ(tuning.state.bandWords({7}, 2), words) << mode;
        BiquadWords made{};
        ASSERT_TRUE(tuning.state.generator().computeBand(
            readAt<std::int32_t>(tuning.store(), 224 + 168 * 7 + 32), 6.0F,
            readAt<float>(tuning.store(), 224 + 168 * 7 + 40), 0, made));
        EXPECT_EQ(made, words) << "mode " << mode;
    }
}

TEST(FilterMode, ThatDoesNotExistChangesNothing) {
    Tuning tuning;
    tuning.state.setFilterMode(2);
    tuning.state.setFilterMode(3);
    EXPECT_EQ(tuning.state.filterMode(), 2U);
    tuning.state.setFilterMode(0xFFFFFFFFU);
    EXPECT_EQ(tuning.state.filterMode(), 2U);
}

TEST(LiveMode, SwitchesBothFlagsTogetherAndOnRaisesAPendingUpdate) {
    Tuning tuning;
    tuning.state.setLiveMode(true);
    EXPECT_TRUE(tuning.state.liveMode());
    EXPECT_TRUE(tuning.state.liveTransferEnabled());
    EXPECT_TRUE(tuning.state.updatePending());
    EXPECT_TRUE(tuning.state.takeUpdate());
    EXPECT_FALSE(tuning.state.updatePending());
    tuning.state.setLiveMode(false);
    EXPECT_FALSE(tuning.state.liveMode());
    EXPECT_FALSE(tuning.state.liveTransferEnabled());
    EXPECT_FALSE(tuning.state.updatePending()) << "off sends nothing";
}

TEST(TakeUpdate, NeedsBothFlagsAndClearsThePendingOne) {
    Tuning tuning;
    EXPECT_FALSE(tuning.state.takeUpdate());
    tuning.state.raiseUpdatePending();
    EXPECT_FALSE(tuning.state.takeUpdate()) << "live transfer is off";
    EXPECT_TRUE(tuning.state.updatePending());
    tuning.state.setLiveMode(true);
    EXPECT_TRUE(tuning.state.takeUpdate());
    EXPECT_FALSE(tuning.state.takeUpdate());
}

TEST(ReplaceStore, TakesAllFiveSetsAndKeepsTheApplicationsState) {
    std::mt19937_64 random(6);
    const Bytes store = randomStore(random);
    Tuning tuning;
    tuning.state.selectSet(4);
    tuning.state.setFilterMode(2);
    tuning.state.setSelectionMask(0x33);
    tuning.settle();
    tuning.state.replaceStore(recordOf<ParameterStore>(store));
    EXPECT_SAME_BYTES(tuning.store(), store);
    EXPECT_EQ(tuning.state.currentSet(), 4U);
    EXPECT_EQ(tuning.state.filterMode(), 2U);
    EXPECT_EQ(tuning.state.selectionMask(), 0x33);
    EXPECT_FALSE(tuning.state.liveMode());
    EXPECT_FALSE(tuning.state.updatePending());
    Bytes expected(imageSize, 0);
    mirrorSet(store, 4, 2, expected);
    EXPECT_SAME_BYTES(tuning.image(), expected);
}

TEST(ReplaceStore, HoldsTheLockForItsWholeRunAndWaitsFiveSecondsForIt) {
    Tuning tuning;
    tuning.lock = {};
    const Bytes store = tuning.store();
    tuning.state.replaceStore(recordOf<ParameterStore>(store));
    EXPECT_EQ(tuning.lock.asked, std::vector<milliseconds>{milliseconds(5000)});
    EXPECT_EQ(tuning.lock.released, 1);
    tuning.lock = {};
    tuning.lock.granted = false;
    tuning.state.replaceStore(recordOf<ParameterStore>(Bytes(storeSize, 7)));
    EXPECT_EQ(tuning.lock.released, 0);
    EXPECT_SAME_BYTES(tuning.store(), Bytes(storeSize, 7));
}

TEST(ReplaceStore, OfAnyBytesNeverCrashesAndTakesThemAsTheyAre) {
    std::mt19937_64 random(17);
    Tuning tuning;
    for (int round = 0; round < 100; ++round) {
        Bytes store(storeSize);
        for (std::uint8_t& byte : store) {
            byte = static_cast<std::uint8_t>(random());
        }
        tuning.state.replaceStore(recordOf<ParameterStore>(store));
        ASSERT_SAME_BYTES(tuning.store(), store);
        tuning.state.selectSet(static_cast<std::uint32_t>(random() % 5));
        ASSERT_SAME_BYTES(tuning.store(), store);
    }
    EXPECT_LE(tuning.boxes.shown.size(), 1U) << "one generator warns once";
}

TEST(ShowCurve, HandsOverTheCurveOfAChannelOrOfTheInputSide) {
    Tuning tuning;
    tuning.state.setSelectionMask(0x80);
    tuning.state.setBandGainOrQ(3, BandValue::gain, 11.5F, true);
    tuning.display.curves.clear();
    tuning.state.showOutputCurve({7});
    tuning.state.showOutputCurve({0});
    tuning.state.showInputCurve();
    ASSERT_EQ(tuning.display.curves.size(), 3U);
    EXPECT_EQ(tuning.display.curves[0].magnitudeDb[49], 11);
    EXPECT_EQ(tuning.display.curves[1].magnitudeDb[49], 0);
    EXPECT_EQ(tuning.display.curves[2].magnitudeDb[49], 0);
    tuning.state.setCurveDisplay(nullptr);
    tuning.state.showInputCurve();
    EXPECT_EQ(tuning.display.curves.size(), 3U);
}

TEST(ImageCopy, NeverHoldsHalfOfWhatAnEditWritesForAChannelOrTheInputSide) {
    Tuning tuning;
    tuning.state.setCurveDisplay(nullptr);
    tuning.state.setSelectionMask(0x20);  // record channel 0
    std::array<BiquadWords, 12> wordsOfGain{};
    for (std::size_t gain = 0; gain < wordsOfGain.size(); ++gain) {
        tuning.state.setBandGainOrQ(3, BandValue::gain, static_cast<float>(gain), true);
        wordsOfGain[gain] = tuning.state.bandWords({0}, 3);
    }
    std::atomic<bool> done = false;
    int copies = 0;
    int rowsApart = 0;
    int wordsApart = 0;
    int groupsApart = 0;
    std::thread worker([&] {
        while (!done || copies == 0) {
            const Bytes image = bytesOf(tuning.state.imageCopy());
            ++copies;
            rowsApart += std::equal(image.begin() + 6, image.begin() + 20, image.begin() + 22) ? 0 : 1;
            const auto gain = static_cast<std::size_t>(readAt<float>(image, 36 + 16 + 48 + 4));
            wordsApart += readAt<BiquadWords>(image, 36 + 200 + 60) == wordsOfGain.at(gain) ? 0 : 1;
            const auto groupGainDb = static_cast<float>(readAt<std::int32_t>(image, 3304)) / 10.0F;
            groupsApart += readAt<std::uint32_t>(image, 40) == gainWordByFormula(0.0F, groupGainDb) ? 0 : 1;
        }
    });
    for (int i = 0; i < 3000; ++i) {
        tuning.state.setInputBandGain(static_cast<std::size_t>(i % 13), static_cast<float>(i % 20), true);
        tuning.state.setInputEqOn(i % 2 == 0);
        tuning.state.setGroupGain({0}, static_cast<float>(i % 18));
        tuning.state.setBandGainOrQ(3, BandValue::gain, static_cast<float>(i % 12), true);
    }
    done = true;
    worker.join();
    EXPECT_GT(copies, 0);
    EXPECT_EQ(rowsApart, 0);
    EXPECT_EQ(wordsApart, 0);
    EXPECT_EQ(groupsApart, 0);
}

TEST(Semaphore, IsReleasedByWhoeverIsDone) {
    CSemaphore lock;
    ASSERT_TRUE(lock.take(milliseconds(0)));
    std::thread other([&] { lock.release(); });
    EXPECT_TRUE(lock.take(milliseconds(10000)));
    other.join();
    lock.release();
}

TEST(Semaphore, IsHeldByOneAtATimeAndTimesOut) {
    CSemaphore lock;
    EXPECT_TRUE(lock.take(milliseconds(0)));
    EXPECT_FALSE(lock.take(milliseconds(0)));
    EXPECT_FALSE(lock.take(milliseconds(5)));
    lock.release();
    EXPECT_TRUE(lock.take(milliseconds(0)));
    lock.release();
}

}  // namespace
}  // namespace tessavo::test
