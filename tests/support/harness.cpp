#include "support/harness.h"

#include <algorithm>
#include <cmath>
#include <memory>

#include "dsp/filter_methods.h"

namespace tessavo::test {
namespace {

IcoefficientGenerator& generatorOf(std::uint32_t mode) {
    static const FilterMethods generators = makeFilterMethods();
    return *generators[mode];
}

std::int8_t wholeNumber(float value) {
    return static_cast<std::int8_t>(std::clamp(std::trunc(value), -128.0F, 127.0F));
}

float tenths(std::mt19937_64& random, int lowest, int highest) {
    const auto span = static_cast<std::uint64_t>(highest - lowest + 1);
    return static_cast<float>(lowest + static_cast<int>(random() % span)) / 10.0F;
}

void randomBand(std::mt19937_64& random, Bytes& store, std::size_t offset) {
    store[offset] = static_cast<std::uint8_t>(random() % 3);
    writeAt(store, offset + 2, static_cast<std::uint16_t>(20 + random() % 19981));
    writeAt(store, offset + 4, tenths(random, -120, 120));
    writeAt(store, offset + 8, tenths(random, 1, 200));
}

}  // namespace

void applyPatches(Bytes& bytes, const Patches& patches) {
    for (const Patch& patch : patches) {
        std::copy(patch.bytes.begin(), patch.bytes.end(),
                  bytes.begin() + static_cast<std::ptrdiff_t>(patch.offset));
    }
}

std::string hexText(std::span<const std::uint8_t> bytes) {
    std::string text;
    for (const std::uint8_t byte : bytes) {
        text += "0123456789abcdef"[byte >> 4U];
        text += "0123456789abcdef"[byte & 15U];
    }
    return text;
}

std::string difference(const Bytes& actual, const Bytes& expected) {
    if (actual == expected) {
        return "";
    }
    if (actual.size() != expected.size()) {
        return "sizes " + std::to_string(actual.size()) + " and " + std::to_string(expected.size());
    }
    std::string places;
    int count = 0;
    for (std::size_t i = 0; i < actual.size(); ++i) {
        if (actual[i] != expected[i] && ++count <= 12) {
            places += "[" + std::to_string(i) + "] is " + std::to_string(actual[i]) + ", not " +
                      std::to_string(expected[i]) + "; ";
        }
    }
    return places + std::to_string(count) + " in all";
}

Tuning::Tuning() : state(boxes, std::make_unique<FakeLock>(lock)) {
    state.start();
    state.setCurveDisplay(&display);
    settle();
}

void Tuning::load(const Bytes& store, std::uint32_t set) {
    state.selectSet(set);
    state.replaceStore(recordOf<ParameterStore>(store));
    settle();
    boxes.shown.clear();
    display.curves.clear();
    lock = {};
}

void Tuning::settle() {
    state.setLiveMode(true);
    state.takeUpdate();
    state.setLiveMode(false);
}

Bytes randomStore(std::mt19937_64& random) {
    Bytes store(storeSize);
    std::generate(store.begin(), store.end(), [&] { return static_cast<std::uint8_t>(random()); });
    for (std::size_t set = 0; set < 5; ++set) {
        const std::size_t base = setSize * set;
        writeAt(store, base, std::uint32_t{2120});
        store[base + 4] = static_cast<std::uint8_t>(random() % 2);
        writeAt(store, base + 216, tenths(random, -300, 300));
        for (std::size_t band = 0; band < 13; ++band) {
            randomBand(random, store, base + inputBandOffset(band));
        }
        for (std::size_t channel = 0; channel < 8; ++channel) {
            const std::size_t imageOffset = base + recordChannelOffset(channel);
            for (std::size_t band = 0; band < 8; ++band) {
                randomBand(random, store, imageOffset + 16 * band);
            }
            for (std::size_t crossover = 0; crossover < 2; ++crossover) {
                store[imageOffset + 128 + 6 * crossover] = static_cast<std::uint8_t>(random() % 2);
                store[imageOffset + 129 + 6 * crossover] = static_cast<std::uint8_t>(random() % 2);
                writeAt(store, imageOffset + 130 + 6 * crossover,
                        static_cast<std::uint16_t>(20 + random() % 19981));
            }
            writeAt(store, imageOffset + 140, tenths(random, -60, 180));
            writeAt(store, imageOffset + 144, tenths(random, -100, 100));
            writeAt(store, imageOffset + 148, static_cast<std::uint32_t>(random() % 8));
            store[imageOffset + 153] = static_cast<std::uint8_t>(random() % 2);
            writeAt(store, imageOffset + 156, tenths(random, 0, 20));
            writeAt(store, imageOffset + 160, tenths(random, 0, 200));
            writeAt(store, imageOffset + 164, static_cast<std::uint32_t>(random() % 8));
        }
    }
    return store;
}

bool bandWordsOf(std::uint32_t mode, const Bytes& store, std::size_t offset, BiquadWords& words) {
    return generatorOf(mode).computeBand(readAt<std::int32_t>(store, offset),
                                         readAt<float>(store, offset + 4), readAt<float>(store, offset + 8),
                                         readAt<std::int32_t>(store, offset + 12), words);
}

bool crossoverWordsOf(std::uint32_t mode, const Bytes& store, std::size_t offset, BiquadWords& words) {
    return generatorOf(mode).computeCrossover(readAt<std::int32_t>(store, offset),
                                              readAt<std::int16_t>(store, offset + 4), words);
}

std::uint32_t gainWordByFormula(float volumeDb, float groupGainDb) {
    const float sum = std::clamp(volumeDb + groupGainDb, -6.0F, 18.0F);
    const double level = std::floor(static_cast<double>(sum) * 2) / 2;
    return static_cast<std::uint32_t>(std::llround(std::pow(10.0, level / 20) * 16777216.0));
}

void mirrorSet(const Bytes& store, std::size_t set, std::uint32_t mode, Bytes& image) {
    const std::size_t base = setSize * set;
    const auto copy = [&](std::size_t record, std::size_t imageOffset, std::size_t width) {
        std::copy_n(store.begin() + static_cast<std::ptrdiff_t>(base + record), width,
                    image.begin() + static_cast<std::ptrdiff_t>(imageOffset));
    };
    writeAt(image, 0, std::uint32_t{3384});
    writeAt(image, 4,
            static_cast<std::int16_t>(
                std::clamp(std::trunc(readAt<float>(store, base + 216)), -32768.0F, 32767.0F)));
    for (const std::size_t row : {std::size_t{6}, std::size_t{22}}) {
        for (std::size_t band = 0; band < 13; ++band) {
            const std::size_t imageOffset = row + (band < 10 ? 4 + band : 1 + band - 10);
            writeAt(image, imageOffset, wholeNumber(readAt<float>(store, base + inputBandOffset(band) + 4)));
        }
    }
    for (std::size_t c = 0; c < 8; ++c) {
        const std::size_t record = recordChannelOffset(c);
        const std::size_t block = imageBlockOffset(c);
        const auto volumeDb = readAt<float>(store, base + record + 140);
        const auto groupGainDb = readAt<float>(store, base + record + 144);
        const auto delayMs = readAt<float>(store, base + record + 156);
        const auto groupDelayMs = readAt<float>(store, base + record + 160);
        writeAt(image, block + 4, gainWordByFormula(volumeDb, groupGainDb));
        copy(record + 152, block + 8, 2);
        const double samples =
            (static_cast<double>(delayMs) + static_cast<double>(groupDelayMs)) * 49500 / 1000 + 0.5;
        writeAt(image, block + 12, static_cast<std::uint32_t>(samples));
        for (std::size_t band = 0; band < 8; ++band) {
            copy(record + 16 * band, block + 16 + 16 * band, 1);
            copy(record + 16 * band + 2, block + 18 + 16 * band, 11);
            auto words = readAt<BiquadWords>(image, block + 200 + 20 * band);
            bandWordsOf(mode, store, base + record + 16 * band, words);
            writeAt(image, block + 200 + 20 * band, words);
        }
        for (std::size_t k = 0; k < 2; ++k) {
            copy(record + 128 + 6 * k, block + 144 + 6 * k, 5);
            auto words = readAt<BiquadWords>(image, block + 156 + 20 * k);
            crossoverWordsOf(mode, store, base + record + 128 + 6 * k, words);
            writeAt(image, block + 156 + 20 * k, words);
        }
        writeAt(image, 2916 + 4 * c, std::uint32_t{store[base + 1568 + c]});
        copy(recordLimiterOffset(c), imageLimiterOffset(c), 21);
        writeAt(image, 3304 + 4 * c, static_cast<std::int32_t>(groupGainDb * 10.0F));
        writeAt(image, 3336 + 4 * c, static_cast<std::uint32_t>(groupDelayMs * 10.0F));
        copy(record + 148, 3368 + c, 1);
        copy(record + 164, 3376 + c, 1);
    }
    writeAt(image, 2948, std::uint32_t{store[base + 1577]});
    writeAt(image, 2952, std::uint32_t{store[base + 1578]});
    copy(221, 2956, 1);
    copy(220, 2957, 1);
    copy(1836, 2958, 2);
    copy(1840, 2960, 4);
    copy(1844, 2964, 1);
    copy(1846, 2968, 4);
    copy(1878, 2972, 10);
    copy(1904, 2982, 1);
    copy(1906, 2984, 14);
    copy(1922, 3040, 1);
    copy(1920, 3104, 2);
    copy(2116, 3300, 1);
}

}  // namespace tessavo::test
