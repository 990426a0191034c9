#include <functional>
#include <gtest/gtest.h>
#include <limits>
#include <optional>

#include "plot/response_curve.h"
#include "support/harness.h"

namespace tessavo::test {
namespace {

enum class Coefficients { none, band, crossovers };

/// One operation on the selected channels, and what it writes for one of them at which byte.
struct SelectionEdit {
    const char* name;
    std::function<void(TuningState&, bool final)> run;
    std::function<Patches(std::size_t channel)> record;  ///< offsets in the set
    /// Offsets in the image, without coefficient words; `store` already holds the record's new bytes.
    std::function<Patches(std::size_t channel, const Bytes& store, std::size_t base)> image;
    Coefficients coefficients = Coefficients::none;
    std::size_t band = 0;
    bool hasFinal = true;
};

Patches delayPatches(std::size_t channel, const Bytes& store, std::size_t base) {
    const std::size_t byteOffset = base + recordChannelOffset(channel);
    const double samples = (static_cast<double>(readAt<float>(store, byteOffset + 156)) +
                            static_cast<double>(readAt<float>(store, byteOffset + 160))) *
                               49500 / 1000 +
                           0.5;
    return {{imageBlockOffset(channel) + 12, littleEndian(static_cast<std::uint32_t>(samples))}};
}

Patches gainWordPatches(std::size_t channel, const Bytes& store, std::size_t base) {
    const std::size_t byteOffset = base + recordChannelOffset(channel);
    return {{imageBlockOffset(channel) + 4,
             littleEndian(gainWordByFormula(readAt<float>(store, byteOffset + 140),
                                            readAt<float>(store, byteOffset + 144)))}};
}

SelectionEdit bandEdit(const char* name, std::size_t band, std::size_t offset, Bytes value,
                       std::function<void(TuningState&, bool)> run, bool hasFinal = true) {
    return {name,
            std::move(run),
            [=](std::size_t channel) {
                return Patches{{recordChannelOffset(channel) + 16 * band + offset, value}};
            },
            [=](std::size_t channel, const Bytes&, std::size_t) {
                return Patches{{imageBlockOffset(channel) + 16 + 16 * band + offset, value}};
            },
            Coefficients::band,
            band,
            hasFinal};
}

SelectionEdit crossoverEdit(const char* name, Patches inBlocks, std::function<void(TuningState&, bool)> run,
                            bool hasFinal) {
    const auto shifted = [inBlocks](std::size_t base) {
        Patches patches = inBlocks;
        for (Patch& patch : patches) {
            patch.offset += base;
        }
        return patches;
    };
    return {name,
            std::move(run),
            [=](std::size_t channel) { return shifted(recordChannelOffset(channel) + 128); },
            [=](std::size_t channel, const Bytes&, std::size_t) {
                return shifted(imageBlockOffset(channel) + 144);
            },
            Coefficients::crossovers,
            0,
            hasFinal};
}

SelectionEdit limiterEdit(const char* name, LimiterField field, std::int32_t value, std::size_t offset,
                          Bytes written) {
    return {name, [=](TuningState& state, bool final) { state.setLimiter(field, value, final); },
            [=](std::size_t channel) {
                return Patches{{recordLimiterOffset(channel) + offset, written}};
            },
            [=](std::size_t channel, const Bytes&, std::size_t) {
                return Patches{{imageLimiterOffset(channel) + offset, written}};
            }};
}

std::vector<SelectionEdit> selectionEdits() {
    std::vector<SelectionEdit> edits;
    edits.push_back({"setDelay", [](TuningState& state, bool final) { state.setDelay(1.3F, final); },
                     [](std::size_t c) {
                         return Patches{{recordChannelOffset(c) + 156, littleEndian(1.3F)}};
                     },
                     delayPatches});
    edits.push_back({"setVolume", [](TuningState& state, bool final) { state.setVolume(7.3F, final); },
                     [](std::size_t c) {
                         return Patches{{recordChannelOffset(c) + 140, littleEndian(7.3F)}};
                     },
                     gainWordPatches});
    edits.push_back({"setVolumeBeyondTheRange",
                     [](TuningState& state, bool final) { state.setVolume(20.0F, final); },
                     [](std::size_t c) {
                         return Patches{{recordChannelOffset(c) + 140, littleEndian(20.0F)}};
                     },
                     gainWordPatches});
    for (const std::uint8_t value : {std::uint8_t{0}, std::uint8_t{1}}) {
        edits.push_back({value == 1 ? "setInvertPhase" : "clearInvertPhase",
                         [=](TuningState& state, bool) { state.setInvertPhase(true, value); },
                         [=](std::size_t c) {
                             return Patches{{recordChannelOffset(c) + 153, Bytes{value}}};
                         },
                         [=](std::size_t c, const Bytes&, std::size_t) {
                             return Patches{{imageBlockOffset(c) + 9, Bytes{value}}};
                         },
                         Coefficients::none, 0, false});
        edits.push_back({value == 1 ? "setInvertPhaseInTheImageAlone" : "clearInvertPhaseInTheImageAlone",
                         [=](TuningState& state, bool) { state.setInvertPhase(false, value); },
                         [](std::size_t) { return Patches{}; },
                         [=](std::size_t c, const Bytes&, std::size_t) {
                             return Patches{{imageBlockOffset(c) + 9, Bytes{value}}};
                         },
                         Coefficients::none, 0, false});
    }
    for (const std::size_t band : {0U, 3U, 7U}) {
        edits.push_back(
            bandEdit("setBandFrequency", band, 2, littleEndian(std::uint16_t{4321}),
                     [=](TuningState& state, bool final) { state.setBandFrequency(band, 4321, final); }));
        edits.push_back(
            bandEdit("setBandGain", band, 4, littleEndian(-7.7F), [=](TuningState& state, bool final) {
                state.setBandGainOrQ(band, BandValue::gain, -7.7F, final);
            }));
        edits.push_back(bandEdit(
            "setBandQ", band, 8, littleEndian(3.1F),
            [=](TuningState& state, bool final) { state.setBandGainOrQ(band, BandValue::q, 3.1F, final); }));
        for (const std::uint8_t type : {std::uint8_t{0}, std::uint8_t{1}, std::uint8_t{2}}) {
            edits.push_back(bandEdit(
                "setBandType", band, 0, Bytes{type},
                [=](TuningState& state, bool) { state.setBandType(band, type); }, false));
        }
        edits.push_back(bandEdit(
            "setBandOff", band, 12, Bytes{1}, [=](TuningState& state, bool) { state.setBandOff(band, 1); },
            false));
        edits.back().coefficients = Coefficients::none;
    }
    for (const std::size_t k : {0U, 1U}) {
        edits.push_back(crossoverEdit(
            "setCrossoverFrequency", {{6 * k + 2, littleEndian(std::uint16_t{12345})}},
            [=](TuningState& state, bool final) { state.setCrossoverFrequency(k, 12345, final); }, true));
        edits.push_back(crossoverEdit(
            "setCrossover", {{6 * k, Bytes{1, 1}}, {6 * k + 4, Bytes{4}}},
            [=](TuningState& state, bool) { state.setCrossover(k, 1, 4, 1); }, false));
        edits.push_back(crossoverEdit(
            "setCrossoverHighPass", {{6 * k, Bytes{0, 0}}, {6 * k + 4, Bytes{2}}},
            [=](TuningState& state, bool) { state.setCrossover(k, 0, 2, 0); }, false));
    }
    edits.push_back(limiterEdit("setLimiterGain", LimiterField::gain, -123, 8, littleEndian(-123)));
    edits.push_back(
        limiterEdit("setLimiterActivateLevel", LimiterField::activateLevel, -321, 12, littleEndian(-321)));
    edits.push_back(limiterEdit("setLimiterDeactivateLevel", LimiterField::deactivateLevel, -399, 16,
                                littleEndian(-399)));
    edits.push_back(limiterEdit("setLimiterAttack", LimiterField::attack, 33, 0, littleEndian(33)));
    edits.push_back(limiterEdit("setLimiterRelease", LimiterField::release, 77, 4, littleEndian(77)));
    edits.push_back(limiterEdit("enableLimiter", LimiterField::enable, 0, 20, Bytes{1}));
    edits.push_back(limiterEdit("disableLimiter", LimiterField::disable, 1, 20, Bytes{0}));
    return edits;
}

/// The bytes that an edit must leave, and the channel whose curve it must show.
struct Expected {
    Bytes store;
    Bytes image;
    std::optional<std::size_t> curveOf;
};

Expected expectedOf(const SelectionEdit& edit, std::uint8_t mask, const Tuning& before, std::uint32_t mode,
                    std::size_t set) {
    const std::size_t base = setSize * set;
    Expected expected{before.store(), before.image(), std::nullopt};
    for (std::size_t p = 0; p < 8; ++p) {
        if ((mask & (0x80U >> p)) == 0) {
            continue;
        }
        const std::size_t channel = pageChannels[p];
        Patches patches = edit.record(channel);
        for (Patch& patch : patches) {
            patch.offset += base;
        }
        applyPatches(expected.store, patches);
        applyPatches(expected.image, edit.image(channel, expected.store, base));
        if (edit.coefficients == Coefficients::band) {
            const std::size_t byteOffset = imageBlockOffset(channel) + 200 + 20 * edit.band;
            auto words = readAt<BiquadWords>(expected.image, byteOffset);
            bandWordsOf(mode, expected.store, base + recordChannelOffset(channel) + 16 * edit.band, words);
            writeAt(expected.image, byteOffset, words);
        }
        if (edit.coefficients == Coefficients::crossovers) {
            for (std::size_t k = 0; k < 2; ++k) {
                const std::size_t byteOffset = imageBlockOffset(channel) + 156 + 20 * k;
                auto words = readAt<BiquadWords>(expected.image, byteOffset);
                crossoverWordsOf(mode, expected.store, base + recordChannelOffset(channel) + 128 + 6 * k,
                                 words);
                writeAt(expected.image, byteOffset, words);
            }
        }
        if (edit.coefficients != Coefficients::none) {
            expected.curveOf = channel;
        }
    }
    if (mask == 0 && edit.coefficients != Coefficients::none) {
        expected.curveOf = pageChannels[0];  // as long as nothing was edited
    }
    return expected;
}

ResponseCurve curveOf(const Bytes& image, std::size_t channel) {
    std::vector<BiquadWords> cascade;
    for (std::size_t b = 0; b < 8; ++b) {
        cascade.push_back(readAt<BiquadWords>(image, imageBlockOffset(channel) + 200 + 20 * b));
    }
    for (std::size_t k = 0; k < 2; ++k) {
        cascade.push_back(readAt<BiquadWords>(image, imageBlockOffset(channel) + 156 + 20 * k));
    }
    return computeResponse(cascade);
}

void expectWordsLikeImage(const Tuning& tuning) {
    for (std::uint8_t c = 0; c < 8; ++c) {
        for (std::size_t b = 0; b < 8; ++b) {
            EXPECT_EQ(tuning.state.bandWords({c}, b),
                      readAt<BiquadWords>(tuning.image(), imageBlockOffset(c) + 200 + 20 * b));
        }
        for (std::size_t k = 0; k < 2; ++k) {
            EXPECT_EQ(tuning.state.crossoverWords({c}, k),
                      readAt<BiquadWords>(tuning.image(), imageBlockOffset(c) + 156 + 20 * k));
        }
    }
}

class SelectionEdits : public ::testing::TestWithParam<std::uint8_t> {
 protected:
    Tuning tuning_;
};

std::string maskName(const ::testing::TestParamInfo<std::uint8_t>& info) {
    std::string name = "Mask";
    for (unsigned bit = 0x80; bit != 0; bit >>= 1U) {
        name += (info.param & bit) != 0 ? '1' : '0';
    }
    return name;
}

INSTANTIATE_TEST_SUITE_P(, SelectionEdits,
                         ::testing::Values(std::uint8_t{0x00}, std::uint8_t{0x80}, std::uint8_t{0x40},
                                           std::uint8_t{0x20}, std::uint8_t{0x10}, std::uint8_t{0x08},
                                           std::uint8_t{0x04}, std::uint8_t{0x02}, std::uint8_t{0x01},
                                           std::uint8_t{0xA1}, std::uint8_t{0x52}, std::uint8_t{0xFF}),
                         maskName);

TEST_P(SelectionEdits, WriteRecordImageWordsAndCurveOfTheSelectedChannelsAndNothingElse) {
    std::mt19937_64 random(GetParam());
    const Bytes store = randomStore(random);
    tuning_.state.setSelectionMask(GetParam());
    for (std::uint32_t mode = 0; mode < 3; ++mode) {
        tuning_.state.setFilterMode(mode);
        for (const SelectionEdit& edit : selectionEdits()) {
            for (const bool final : {false, true}) {
                SCOPED_TRACE(std::string(edit.name) + " mode " + std::to_string(mode) +
                             (final ? " final" : ""));
                tuning_.load(store, 3);
                const Expected expected = expectedOf(edit, GetParam(), tuning_, mode, 3);
                edit.run(tuning_.state, final);
                ASSERT_SAME_BYTES(tuning_.store(), expected.store);
                ASSERT_SAME_BYTES(tuning_.image(), expected.image);
                EXPECT_EQ(tuning_.state.updatePending(), final || !edit.hasFinal);
                ASSERT_EQ(tuning_.display.curves.size(), expected.curveOf ? 1U : 0U);
                if (expected.curveOf) {
                    EXPECT_EQ(tuning_.display.curves[0], curveOf(expected.image, *expected.curveOf));
                }
                EXPECT_TRUE(tuning_.lock.asked.empty()) << "edits take no lock";
            }
        }
    }
    expectWordsLikeImage(tuning_);
}

TEST_P(SelectionEdits, NeverLowerAPendingUpdate) {
    tuning_.state.setSelectionMask(GetParam());
    tuning_.state.raiseUpdatePending();
    for (const SelectionEdit& edit : selectionEdits()) {
        edit.run(tuning_.state, false);
        ASSERT_TRUE(tuning_.state.updatePending()) << edit.name;
    }
}

TEST(SelectionEdit, WithThreeBitsChangesThreeChannelsThroughTheMapAndLeavesFive) {
    Tuning tuning;
    tuning.state.setSelectionMask(0xA1);  // page positions 0, 2 and 7: record channels 7, 0 and 6
    tuning.state.setBandFrequency(5, 777, true);
    for (std::size_t c = 0; c < 8; ++c) {
        const bool selected = c == 7 || c == 0 || c == 6;
        EXPECT_EQ(readAt<std::uint16_t>(tuning.store(), 224 + 168 * c + 16 * 5 + 2), selected ? 777 : 6000)
            << c;
        EXPECT_EQ(readAt<std::uint16_t>(tuning.image(), 36 + 360 * c + 16 + 16 * 5 + 2),
                  selected ? 777 : 6000)
            << c;
    }
}

TEST(SelectionEdit, WithNothingSelectedStillRaisesAPendingUpdateWhenFinal) {
    Tuning tuning;
    tuning.state.setSelectionMask(0);
    tuning.state.setVolume(3.0F, false);
    EXPECT_FALSE(tuning.state.updatePending());
    tuning.state.setVolume(3.0F, true);
    EXPECT_TRUE(tuning.state.updatePending());
}

TEST(SelectionEdit, OfVolumeTwentyKeepsTwentyInTheRecordAndEighteenInTheImage) {
    Tuning tuning;
    tuning.state.setVolume(20.0F, true);
    EXPECT_EQ(readAt<float>(tuning.store(), 224 + 168 * 7 + 140), 20.0F);
    EXPECT_EQ(readAt<std::uint32_t>(tuning.image(), 36 + 360 * 7 + 4), 0x07F17AF4U);
    tuning.state.setVolume(-10.0F, true);
    EXPECT_EQ(readAt<float>(tuning.store(), 224 + 168 * 7 + 140), -10.0F);
    EXPECT_EQ(readAt<std::uint32_t>(tuning.image(), 36 + 360 * 7 + 4), 0x00804DCEU);
}

TEST(SelectionEdit, OfAVolumeThatIsNoNumberGivesTheLowestGain) {
    Tuning tuning;
    tuning.state.setVolume(std::numeric_limits<float>::quiet_NaN(), true);
    EXPECT_EQ(readAt<std::uint32_t>(tuning.image(), 36 + 360 * 7 + 4), 0x00804DCEU);
}

TEST(SelectionEdit, OfDelayOneMillisecondGivesFiftySamples) {
    Tuning tuning;
    tuning.state.setDelay(1.0F, true);
    EXPECT_EQ(readAt<std::uint32_t>(tuning.image(), 36 + 360 * 7 + 12), 50U);
    tuning.state.setDelay(0.5F, true);
    EXPECT_EQ(readAt<std::uint32_t>(tuning.image(), 36 + 360 * 7 + 12), 25U);
}

TEST(SelectionEdit, ShowsTheCurveOfTheLastSelectedChannelInPageOrder) {
    Tuning tuning;
    tuning.state.setSelectionMask(0x01);
    tuning.state.setBandGainOrQ(0, BandValue::gain, 12.0F, false);
    tuning.display.curves.clear();
    tuning.state.setSelectionMask(0x81);
    tuning.state.setBandGainOrQ(3, BandValue::gain, -9.0F, false);
    ASSERT_EQ(tuning.display.curves.size(), 1U);
    EXPECT_EQ(tuning.display.curves[0], curveOf(tuning.image(), 6));
    EXPECT_NE(tuning.display.curves[0], curveOf(tuning.image(), 7));
}

TEST(LastEditedBand, IsTheFirstOfTheFirstChannelUntilABandIsEdited) {
    Tuning tuning;
    EXPECT_EQ(tuning.state.lastEditedBand(), (EditedBand{{7}, 0}));
    tuning.state.setSelectionMask(0);
    tuning.state.setBandType(5, 1);
    EXPECT_EQ(tuning.state.lastEditedBand(), (EditedBand{{7}, 0})) << "no channel was written";
    tuning.state.setSelectionMask(0xFF);
    tuning.state.setVolume(3, true);
    tuning.state.setBandOff(4, 0);
    tuning.state.setCrossoverFrequency(1, 500, true);
    tuning.state.setInputBandGain(3, 4, true);
    EXPECT_EQ(tuning.state.lastEditedBand(), (EditedBand{{7}, 0})) << "none of these edits a band";
}

TEST(LastEditedBand, IsWhereFrequencyTypeGainOrQWasWrittenLastInPageOrder) {
    Tuning tuning;
    tuning.state.setSelectionMask(0xA0);  // record channels 7 and 0
    tuning.state.setBandFrequency(5, 100, false);
    EXPECT_EQ(tuning.state.lastEditedBand(), (EditedBand{{0}, 5}));
    tuning.state.setSelectionMask(0x40);
    tuning.state.setBandType(6, 1);
    EXPECT_EQ(tuning.state.lastEditedBand(), (EditedBand{{3}, 6}));
    tuning.state.setSelectionMask(0x01);
    tuning.state.setBandGainOrQ(2, BandValue::gain, 3, false);
    EXPECT_EQ(tuning.state.lastEditedBand(), (EditedBand{{6}, 2}));
    tuning.state.setSelectionMask(0x02);
    tuning.state.setBandGainOrQ(1, BandValue::q, 3, true);
    EXPECT_EQ(tuning.state.lastEditedBand(), (EditedBand{{2}, 1}));
}

TEST(LastEditedBand, GivesItsChannelsCurveToEditsOfNoChannel) {
    Tuning tuning;
    tuning.state.setSelectionMask(0x08);  // record channel 1
    tuning.state.setBandGainOrQ(3, BandValue::gain, 11.0F, true);
    tuning.display.curves.clear();
    tuning.state.setSelectionMask(0);
    const Bytes image = tuning.image();
    tuning.state.setBandType(7, 1);
    tuning.state.setCrossover(0, 1, 4, 1);
    EXPECT_SAME_BYTES(tuning.image(), image);
    ASSERT_EQ(tuning.display.curves.size(), 2U);
    EXPECT_EQ(tuning.display.curves[0], curveOf(image, 1));
    EXPECT_EQ(tuning.display.curves[1], curveOf(image, 1));
    EXPECT_NE(tuning.display.curves[0], curveOf(image, 7));
}

TEST(SelectionEdit, OfABandThatIsOffStillShowsItsWords) {
    Tuning tuning;
    tuning.state.setBandOff(2, 1);
    tuning.state.setBandGainOrQ(2, BandValue::gain, 9.5F, false);
    ASSERT_EQ(tuning.display.curves.size(), 1U);
    EXPECT_EQ(tuning.display.curves[0].magnitudeDb[24], 9);  // 500 Hz
}

TEST(SelectionEdit, OutsideTheBandsAndCrossoversChangesNothing) {
    Tuning tuning;
    tuning.state.setSelectionMask(0xFF);
    const Bytes store = tuning.store();
    const Bytes image = tuning.image();
    for (const std::size_t bad : {std::size_t{8}, std::size_t{13}, std::numeric_limits<std::size_t>::max()}) {
        tuning.state.setBandFrequency(bad, 100, true);
        tuning.state.setBandType(bad, 1);
        tuning.state.setBandGainOrQ(bad, BandValue::q, 2.0F, true);
        tuning.state.setBandOff(bad, 0);
        tuning.state.setCrossover(bad, 1, 4, 1);
        tuning.state.setCrossoverFrequency(bad, 100, true);
        tuning.state.setCrossover(2, 1, 4, 1);
        tuning.state.setCrossoverFrequency(2, 100, true);
    }
    EXPECT_SAME_BYTES(tuning.store(), store);
    EXPECT_SAME_BYTES(tuning.image(), image);
    EXPECT_TRUE(tuning.display.curves.empty());
}

TEST(SelectionEdit, ThatFailsToConvertWarnsOnceAndKeepsTheLaterWords) {
    Tuning tuning;
    tuning.state.setBandType(0, 0);
    tuning.state.setBandFrequency(0, 10000, true);
    const BiquadWords before = tuning.state.bandWords({7}, 0);
    tuning.boxes.shown.clear();
    tuning.state.setBandGainOrQ(0, BandValue::gain, 24.0F, true);
    const BiquadWords expected{0, before.b1, before.b2, before.a1, before.a2};
    EXPECT_EQ(tuning.state.bandWords({7}, 0), expected);
    EXPECT_EQ(readAt<BiquadWords>(tuning.image(), 36 + 360 * 7 + 200), expected);
    EXPECT_EQ(readAt<float>(tuning.store(), 224 + 168 * 7 + 4), 24.0F);
    ASSERT_EQ(tuning.boxes.shown.size(), 1U);
    EXPECT_EQ(tuning.boxes.shown[0].text,
              "Your filter settings would lead to a instable filter.\r\nPlease change the parameters.");
    EXPECT_EQ(tuning.boxes.shown[0].buttons, BoxButtons::ok);
    tuning.state.setBandGainOrQ(0, BandValue::gain, 25.0F, true);
    EXPECT_EQ(tuning.boxes.shown.size(), 1U);
    tuning.state.setFilterMode(2);
    tuning.state.setBandGainOrQ(0, BandValue::gain, 40.0F, true);
    EXPECT_EQ(tuning.boxes.shown.size(), 2U) << "each generator has a warning of its own";
}

TEST(SelectionEdit, WithoutACurveDisplayWritesTheSame) {
    Tuning shown;
    Tuning hidden;
    hidden.state.setCurveDisplay(nullptr);
    for (Tuning* tuning : {&shown, &hidden}) {
        tuning->state.setBandFrequency(1, 200, true);
        tuning->state.setCrossoverFrequency(0, 90, true);
    }
    EXPECT_SAME_BYTES(hidden.image(), shown.image());
}

}  // namespace
}  // namespace tessavo::test
