#pragma once

#include <array>
#include <chrono>
#include <cstdint>
#include <cstring>
#include <random>
#include <span>
#include <string>
#include <vector>

#include "params/tuning_state.h"
#include "support/boxes.h"

namespace tessavo::test {

// The tests of this room look at raw bytes: offsets are written down here once more, apart from the structs.
using Bytes = std::vector<std::uint8_t>;

inline constexpr std::size_t setSize = 2120;
inline constexpr std::size_t storeSize = 5 * setSize;
inline constexpr std::size_t imageSize = 3384;

/// Page position p shows record channel pageChannels[p].
inline constexpr std::array<std::size_t, 8> pageChannels{7, 3, 0, 4, 1, 5, 2, 6};

constexpr std::size_t recordChannelOffset(std::size_t channel) {
    return 224 + 168 * channel;
}
constexpr std::size_t recordLimiterOffset(std::size_t channel) {
    return 1924 + 24 * channel;
}
constexpr std::size_t imageBlockOffset(std::size_t channel) {
    return 36 + 360 * channel;
}
constexpr std::size_t imageLimiterOffset(std::size_t channel) {
    return 3108 + 24 * channel;
}
/// Band index 0 to 12 of the input side.
constexpr std::size_t inputBandOffset(std::size_t band) {
    return band < 10 ? 56 + 16 * band : 8 + 16 * (band - 10);
}

template <typename Value>
Bytes littleEndian(Value value) {
    Bytes bytes(sizeof value);
    std::memcpy(bytes.data(), &value, sizeof value);
    return bytes;
}

template <typename Value>
Value readAt(const Bytes& bytes, std::size_t offset) {
    Value value{};
    std::memcpy(&value, bytes.data() + offset, sizeof value);
    return value;
}

template <typename Value>
void writeAt(Bytes& bytes, std::size_t offset, Value value) {
    std::memcpy(bytes.data() + offset, &value, sizeof value);
}

template <typename Record>
Bytes bytesOf(const Record& record) {
    Bytes bytes(sizeof record);
    std::memcpy(bytes.data(), &record, sizeof record);
    return bytes;
}

template <typename Record>
Record recordOf(const Bytes& bytes) {
    Record record;
    std::memcpy(&record, bytes.data(), sizeof record);
    return record;
}

/// Bytes that an operation is expected to write.
struct Patch {
    std::size_t offset;
    Bytes bytes;
};
using Patches = std::vector<Patch>;

void applyPatches(Bytes& bytes, const Patches& patches);

/// Two lower-case digits for each byte.
std::string hexText(std::span<const std::uint8_t> bytes);

/// Empty when equal; otherwise the first places that differ.
std::string difference(const Bytes& actual, const Bytes& expected);

#define EXPECT_SAME_BYTES(actual, expected) EXPECT_EQ(difference(actual, expected), "")
#define ASSERT_SAME_BYTES(actual, expected) ASSERT_EQ(difference(actual, expected), "")

class RecordingDisplay : public ICurveDisplay {
 public:
    void setCurve(const ResponseCurve& curve) override { curves.push_back(curve); }
    std::vector<ResponseCurve> curves;
};

/// What a FakeLock saw; outlives it.
struct LockLog {
    bool granted = true;
    std::vector<std::chrono::milliseconds> asked;
    int released = 0;
};

class FakeLock : public CSemaphore {
 public:
    explicit FakeLock(LockLog& log) : log_(log) {}
    bool take(std::chrono::milliseconds limit) override {
        log_.asked.push_back(limit);
        return log_.granted;
    }
    void release() override { ++log_.released; }

 private:
    LockLog& log_;
};

/// A started TuningState with everything around it recorded.
struct Tuning {
    RecordingBoxes boxes;
    RecordingDisplay display;
    LockLog lock;
    TuningState state;

    Tuning();
    [[nodiscard]] Bytes store() const { return bytesOf(state.store()); }
    [[nodiscard]] Bytes image() const { return bytesOf(state.image()); }
    /// Loads a store without leaving curves, boxes or a pending update behind.
    void load(const Bytes& store, std::uint32_t set = 0);
    /// Lowers `updatePending`.
    void settle();
};

/// A store with all bytes random, spare ones too, and page-range values in every field that shapes a filter,
/// a gain word or a delay. No filter of it fails to convert with any generator.
Bytes randomStore(std::mt19937_64& random);

/// Words of a band or crossover block of a record by the state's generator of this mode; `words` holds what
/// was there before.
bool bandWordsOf(std::uint32_t mode, const Bytes& store, std::size_t offset, BiquadWords& words);
bool crossoverWordsOf(std::uint32_t mode, const Bytes& store, std::size_t offset, BiquadWords& words);

/// The image of a set: every field in the form and at the place that the format gives it, all coefficient
/// words computed afresh. Bytes that are no field stay as they are in `image`, and so do the input
/// equalizer's bypass bytes.
void mirrorSet(const Bytes& store, std::size_t set, std::uint32_t mode, Bytes& image);

/// Gain word of a sum, looked up by formula.
std::uint32_t gainWordByFormula(float volumeDb, float groupGainDb);

}  // namespace tessavo::test
