#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>

#include "params/image_conversion.h"
#include "support/harness.h"

namespace tessavo::test {
namespace {

using std::chrono::milliseconds;

double levelByFormula(std::uint32_t gainWord) {
    for (int j = 1; j < 302; ++j) {
        const double level = 42.0 - 0.5 * j;
        if (static_cast<std::uint32_t>(std::llround(std::pow(10.0, level / 20) * 16777216.0)) <= gainWord) {
            return level;
        }
    }
    return -108.9;
}

/// The conversion byte by byte: what a received image leaves in the store. Every other byte stays.
void receive(const Bytes& image, std::size_t set, Bytes& store) {
    const std::size_t base = setSize * set;
    const auto copy = [&](std::size_t imageOffset, std::size_t record, std::size_t width) {
        std::copy_n(image.begin() + static_cast<std::ptrdiff_t>(imageOffset), width,
                    store.begin() + static_cast<std::ptrdiff_t>(base + record));
    };
    for (std::size_t band = 0; band < 13; ++band) {
        const std::size_t imageOffset = band < 10 ? 10 + band : 7 + band - 10;
        writeAt(store, base + inputBandOffset(band) + 4,
                static_cast<float>(readAt<std::int8_t>(image, imageOffset)));
    }
    writeAt(store, base + 216, static_cast<float>(readAt<std::int16_t>(image, 4)));
    store[base + 4] = image[6] == 0 ? 1 : 0;
    copy(2948, 1577, 1);
    copy(2952, 1578, 1);
    copy(2956, 221, 1);
    copy(2957, 220, 1);
    copy(2958, 1836, 2);
    copy(2960, 1840, 4);
    copy(2964, 1844, 1);
    copy(2968, 1846, 2);
    for (const std::size_t record : {1848U, 1850U, 1852U, 1854U}) {
        copy(2970, record, 2);
    }
    copy(2972, 1878, 10);
    copy(2982, 1904, 1);
    copy(2984, 1906, 14);
    copy(3040, 1922, 1);
    copy(3104, 1920, 2);
    copy(3300, 2116, 1);
    for (std::size_t c = 0; c < 8; ++c) {
        for (std::size_t s = 0; s < 5; ++s) {
            store[setSize * s + 1568 + c] = image[2916 + 4 * c];
        }
        const std::size_t block = imageBlockOffset(c);
        const std::size_t record = recordChannelOffset(c);
        for (std::size_t band = 0; band < 8; ++band) {
            copy(block + 16 + 16 * band, record + 16 * band, 1);
            copy(block + 18 + 16 * band, record + 16 * band + 2, 11);
        }
        for (std::size_t k = 0; k < 2; ++k) {
            copy(block + 144 + 6 * k, record + 128 + 6 * k, 5);
        }
        writeAt(store, base + record + 140,
                static_cast<float>(levelByFormula(readAt<std::uint32_t>(image, block + 4))));
        writeAt(store, base + record + 156,
                static_cast<float>((readAt<std::uint32_t>(image, block + 12) - 0.5) / 48.0));
        if (image[block + 9] != 0) {
            store[base + record + 153] = 1;
        }
        store[base + record + 152] = image[block + 8] != 0 ? 1 : 0;
        copy(imageLimiterOffset(c), recordLimiterOffset(c), 21);
        writeAt(store, base + record + 144,
                static_cast<float>(readAt<std::int32_t>(image, 3304 + 4 * c) / 10.0));
        writeAt(store, base + record + 160,
                static_cast<float>(readAt<std::uint32_t>(image, 3336 + 4 * c) / 10.0));
        writeAt(store, base + record + 148, std::uint32_t{image[3368 + c]});
        writeAt(store, base + record + 164, std::uint32_t{image[3376 + c]});
    }
}

Bytes randomImage(std::mt19937_64& random) {
    Bytes image(imageSize);
    std::generate(image.begin(), image.end(), [&] { return static_cast<std::uint8_t>(random()); });
    return image;
}

class ImageToSet : public ::testing::Test {
 protected:
    void receiveInto(std::uint32_t set, const Bytes& image) {
        tuning_.state.selectSet(set);
        tuning_.settle();
        tuning_.lock.asked.clear();
        tuning_.lock.released = 0;
        tuning_.state.replaceImage(recordOf<ParameterImage>(image));
        tuning_.state.imageToSet();
    }
    Tuning tuning_;
};

TEST_F(ImageToSet, TouchesOnlyWhatItMayForImagesOfRandomBytes) {
    std::mt19937_64 random(20);
    for (int round = 0; round < 200; ++round) {
        const auto set = static_cast<std::uint32_t>(random() % 5);
        tuning_.load(randomStore(random), set);
        const Bytes image = randomImage(random);
        Bytes expected = tuning_.store();
        receive(image, set, expected);
        receiveInto(set, image);
        ASSERT_SAME_BYTES(tuning_.store(), expected) << "round " << round;
    }
}

TEST_F(ImageToSet, NeverCrashesOnSparseAndExtremeImages) {
    for (const std::uint8_t fill :
         {std::uint8_t{0x00}, std::uint8_t{0xFF}, std::uint8_t{0x7F}, std::uint8_t{0x80}}) {
        const Bytes image(imageSize, fill);
        Bytes expected = tuning_.store();
        receive(image, 0, expected);
        receiveInto(0, image);
        EXPECT_SAME_BYTES(tuning_.store(), expected) << int{fill};
    }
}

TEST_F(ImageToSet, GivesBackWhatAnEditOfEachExactFieldWrote) {
    std::mt19937_64 random(4);
    Tuning source;
    source.load(randomStore(random), 0);
    const Bytes image = source.image();
    receiveInto(2, image);
    const Bytes sent = source.store();
    const Bytes got = tuning_.store();
    for (std::size_t c = 0; c < 8; ++c) {
        for (std::size_t i = 0; i < 134; ++i) {
            const bool spare = i < 128 ? i % 16 == 1 || i % 16 > 12 : (i - 128) % 6 == 5;
            if (!spare) {
                EXPECT_EQ(got[2 * setSize + 224 + 168 * c + i], sent[224 + 168 * c + i]) << c << " " << i;
            }
        }
    }
}

TEST_F(ImageToSet, ReadsInputGainsFromTheFirstRowAsSignedBytes) {
    Bytes image(imageSize, 0);
    const std::int8_t gains[13] = {-1, 2, -3, 4, -5, 6, -7, 8, -9, 10, -128, 127, -20};
    for (std::size_t i = 0; i < 13; ++i) {
        writeAt(image, 7 + i, gains[i]);
        writeAt(image, 23 + i, std::int8_t{55});
    }
    receiveInto(1, image);
    const Bytes store = tuning_.store();
    for (std::size_t tone = 0; tone < 3; ++tone) {
        EXPECT_EQ(readAt<float>(store, setSize + 12 + 16 * tone), static_cast<float>(gains[tone]));
    }
    for (std::size_t band = 0; band < 10; ++band) {
        EXPECT_EQ(readAt<float>(store, setSize + 60 + 16 * band), static_cast<float>(gains[3 + band]));
    }
}

TEST_F(ImageToSet, TakesTheInputGainAsASignedWord) {
    Bytes image(imageSize, 0);
    writeAt(image, 4, std::int16_t{-321});
    receiveInto(0, image);
    EXPECT_EQ(readAt<float>(tuning_.store(), 216), -321.0F);
}

TEST_F(ImageToSet, TakesTheInputSwitchAsTheInverseOfTheFirstBypassByte) {
    for (const std::uint8_t bypass : {std::uint8_t{0}, std::uint8_t{1}, std::uint8_t{200}}) {
        Bytes image(imageSize, 0);
        image[6] = bypass;
        image[22] = bypass == 0 ? 1 : 0;
        receiveInto(0, image);
        EXPECT_EQ(tuning_.store()[4], bypass == 0 ? 1 : 0) << int{bypass};
    }
}

TEST_F(ImageToSet, OfFortyEightSamplesIsADelayOf0989583Milliseconds) {
    Bytes image(imageSize, 0);
    writeAt(image, 36 + 360 * 5 + 12, std::uint32_t{48});
    receiveInto(0, image);
    EXPECT_EQ(readAt<float>(tuning_.store(), 224 + 168 * 5 + 156), static_cast<float>(47.5 / 48.0));
    EXPECT_NEAR(static_cast<double>(readAt<float>(tuning_.store(), 224 + 168 * 5 + 156)), 0.989583, 1e-6);
}

TEST_F(ImageToSet, NeverClearsAPhaseInversion) {
    tuning_.state.setSelectionMask(0xFF);
    tuning_.state.setInvertPhase(true, 1);
    receiveInto(0, Bytes(imageSize, 0));
    for (std::size_t c = 0; c < 8; ++c) {
        EXPECT_EQ(tuning_.store()[224 + 168 * c + 153], 1);
    }
}

TEST_F(ImageToSet, SetsAPhaseInversionForAnyByteThatIsNotZero) {
    Bytes image(imageSize, 0);
    image[36 + 360 * 3 + 9] = 0x80;
    receiveInto(0, image);
    EXPECT_EQ(tuning_.store()[224 + 168 * 3 + 153], 1);
    EXPECT_EQ(tuning_.store()[224 + 168 * 4 + 153], 0);
}

TEST_F(ImageToSet, ClearsAndSetsTheChannelFlag) {
    tuning_.state.setChannelFlag({1}, 1);
    tuning_.state.setChannelFlag({2}, 77);
    Bytes image(imageSize, 0);
    image[36 + 360 * 2 + 8] = 0x40;
    receiveInto(0, image);
    EXPECT_EQ(tuning_.store()[224 + 168 * 1 + 152], 0);
    EXPECT_EQ(tuning_.store()[224 + 168 * 2 + 152], 1);
}

TEST_F(ImageToSet, GivesAllFiveSetsTheSameSourcesAndLeavesThemOtherwise) {
    const Bytes before = tuning_.store();
    Bytes image(imageSize, 0);
    for (std::size_t c = 0; c < 8; ++c) {
        writeAt(image, 2916 + 4 * c, static_cast<std::uint32_t>(0xABCDEF00U + c + 3));
    }
    receiveInto(3, image);
    Bytes expected = before;
    for (std::size_t s = 0; s < 5; ++s) {
        for (std::size_t c = 0; c < 8; ++c) {
            expected[setSize * s + 1568 + c] = static_cast<std::uint8_t>(c + 3);
        }
    }
    const Bytes store = tuning_.store();
    for (const std::size_t s : {0U, 1U, 2U, 4U}) {
        const auto from = static_cast<std::ptrdiff_t>(setSize * s);
        const auto to = static_cast<std::ptrdiff_t>(setSize * (s + 1));
        EXPECT_SAME_BYTES(Bytes(store.begin() + from, store.begin() + to),
                          Bytes(expected.begin() + from, expected.begin() + to));
    }
    for (std::size_t c = 0; c < 8; ++c) {
        EXPECT_EQ(store[setSize * 3 + 1568 + c], c + 3);
    }
}

TEST_F(ImageToSet, ReadsTheLevelOfTheGainWordAlone) {
    Bytes image(imageSize, 0);
    writeAt(image, 36 + 4, std::uint32_t{0x01000000});
    writeAt(image, 3304, std::int32_t{-35});
    writeAt(image, 36 + 360 + 4, std::uint32_t{0x07F17AF4});
    writeAt(image, 36 + 720 + 4, std::uint32_t{0xFFFFFFFF});
    receiveInto(0, image);
    EXPECT_EQ(readAt<float>(tuning_.store(), 224 + 140), 0.0F);
    EXPECT_EQ(readAt<float>(tuning_.store(), 224 + 144), -3.5F);
    EXPECT_EQ(readAt<float>(tuning_.store(), 224 + 168 + 140), 18.0F);
    EXPECT_EQ(readAt<float>(tuning_.store(), 224 + 336 + 140), 41.5F);
}

TEST_F(ImageToSet, ReadsGroupGainsSignedAndGroupDelaysUnsigned) {
    Bytes image(imageSize, 0);
    writeAt(image, 3304 + 4 * 6, std::uint32_t{0xFFFFFFFF});
    writeAt(image, 3336 + 4 * 6, std::uint32_t{0xFFFFFFFF});
    receiveInto(0, image);
    EXPECT_EQ(readAt<float>(tuning_.store(), 224 + 168 * 6 + 144), static_cast<float>(-0.1));
    EXPECT_EQ(readAt<float>(tuning_.store(), 224 + 168 * 6 + 160), static_cast<float>(429496729.5));
}

TEST_F(ImageToSet, PutsOneWordIntoFourAndLeavesTheFifth) {
    Bytes store = tuning_.store();
    writeAt(store, 1856, std::uint16_t{4242});
    tuning_.load(store);
    Bytes image(imageSize, 0);
    writeAt(image, 2970, std::uint16_t{777});
    receiveInto(0, image);
    for (const std::size_t offset : {1848U, 1850U, 1852U, 1854U}) {
        EXPECT_EQ(readAt<std::uint16_t>(tuning_.store(), offset), 777) << offset;
    }
    EXPECT_EQ(readAt<std::uint16_t>(tuning_.store(), 1856), 4242);
}

TEST_F(ImageToSet, WidensGroupBytes) {
    Bytes image(imageSize, 0);
    image[3368 + 4] = 0xFE;
    image[3376 + 4] = 7;
    receiveInto(0, image);
    EXPECT_EQ(readAt<std::uint32_t>(tuning_.store(), 224 + 168 * 4 + 148), 0xFEU);
    EXPECT_EQ(readAt<std::uint32_t>(tuning_.store(), 224 + 168 * 4 + 164), 7U);
}

TEST_F(ImageToSet, DoesNotReadCoefficientWordsBack) {
    Tuning source;
    source.state.setBandGainOrQ(0, BandValue::gain, 6.0F, true);
    Bytes image = source.image();
    for (std::size_t c = 0; c < 8; ++c) {
        std::fill_n(image.begin() + static_cast<std::ptrdiff_t>(imageBlockOffset(c) + 156), 204,
                    std::uint8_t{0x11});
    }
    receiveInto(0, image);
    EXPECT_EQ(tuning_.state.bandWords({7}, 0), source.state.bandWords({7}, 0));
    EXPECT_EQ(tuning_.state.crossoverWords({7}, 0), source.state.crossoverWords({7}, 0));
    EXPECT_SAME_BYTES(tuning_.image(), image) << "the target's words are the target's business";
}

TEST_F(ImageToSet, TakesTheLockForFiveSecondsAndReleasesItOnce) {
    receiveInto(0, Bytes(imageSize, 0));
    EXPECT_EQ(tuning_.lock.asked, std::vector<milliseconds>{milliseconds(5000)});
    EXPECT_EQ(tuning_.lock.released, 1);
}

TEST_F(ImageToSet, ConvertsWithoutTheLockAndThenDoesNotReleaseIt) {
    tuning_.lock.granted = false;
    Bytes image(imageSize, 0);
    writeAt(image, 4, std::int16_t{12});
    receiveInto(0, image);
    EXPECT_EQ(tuning_.lock.asked, std::vector<milliseconds>{milliseconds(5000)});
    EXPECT_EQ(tuning_.lock.released, 0);
    EXPECT_EQ(readAt<float>(tuning_.store(), 216), 12.0F);
}

TEST_F(ImageToSet, RaisesNoPendingUpdate) {
    receiveInto(0, Bytes(imageSize, 0));
    EXPECT_FALSE(tuning_.state.updatePending());
}

TEST_F(ImageToSet, LeavesNameAndVersion) {
    tuning_.state.setName(u"kept");
    receiveInto(0, Bytes(imageSize, 0xFF));
    const Bytes store = tuning_.store();
    EXPECT_EQ(readAt<char16_t>(store, 1580), u'k');
    EXPECT_EQ(readAt<char16_t>(store, 1708), u'1');
    EXPECT_EQ(readAt<std::uint32_t>(store, 0), 2120U);
}

TEST(ReplaceImage, LeavesTheSetsAndTakesEveryByteButTheSize) {
    std::mt19937_64 random(3);
    Tuning tuning;
    const Bytes store = tuning.store();
    const Bytes image = randomImage(random);
    tuning.state.replaceImage(recordOf<ParameterImage>(image));
    EXPECT_SAME_BYTES(tuning.store(), store);
    Bytes expected = image;
    writeAt(expected, 0, std::uint32_t{3384});
    EXPECT_SAME_BYTES(tuning.image(), expected) << "the size is no matter of what arrives";
    EXPECT_SAME_BYTES(bytesOf(tuning.state.imageCopy()), expected);
}

TEST(ReadImageFields, DoesWhatTheOperationDoes) {
    std::mt19937_64 random(33);
    for (int round = 0; round < 50; ++round) {
        const Bytes before = randomStore(random);
        const Bytes image = randomImage(random);
        Bytes expected = before;
        receive(image, 2, expected);
        auto store = recordOf<ParameterStore>(before);
        readImageFields(store, 2, recordOf<ParameterImage>(image));
        ASSERT_SAME_BYTES(bytesOf(store), expected) << round;
    }
}

}  // namespace
}  // namespace tessavo::test
