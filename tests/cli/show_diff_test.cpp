#include <bit>
#include <charconv>
#include <cmath>
#include <cstring>
#include <gmock/gmock.h>
#include <limits>
#include <nlohmann/json.hpp>
#include <random>
#include <set>

#include "cli/cli_fixture.h"
#include "cli/set_diff.h"
#include "cli/set_fields.h"
#include "cli/set_json.h"
#include "cli/set_report.h"
#include "params/factory_defaults.h"

namespace tessavo::test {

using namespace cli;

namespace {

using nlohmann::json;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

ParameterStore defaultStore() {
    ParameterStore store = emptyStore();
    writeDefaults(store);
    return store;
}

/// Random in every byte but the record sizes: NaNs, infinities, broken texts and all.
ParameterStore randomStore(std::mt19937& random) {
    std::array<std::uint8_t, sizeof(ParameterStore)> bytes{};
    for (std::uint8_t& byte : bytes) {
        byte = static_cast<std::uint8_t>(random());
    }
    auto store = std::bit_cast<ParameterStore>(bytes);
    for (ParameterSet& set : store.sets) {
        set.recordSize = parameterSetSize;
    }
    return store;
}

Bytes bytesOfStore(const ParameterStore& store) {
    Bytes bytes(sizeof store);
    std::memcpy(bytes.data(), &store, sizeof store);
    return bytes;
}

// --- diff
// --------------------------------------------------------------------------------------------------------

std::set<std::string> pathsOf(const std::vector<Difference>& differences) {
    std::set<std::string> paths;
    for (const Difference& difference : differences) {
        EXPECT_TRUE(paths.insert(difference.path).second) << difference.path << " is named twice";
        EXPECT_NE(difference.first, difference.second) << difference.path;
    }
    return paths;
}

TEST(SettingsDiff, EqualStoresHaveNone) {
    std::mt19937 random(1);
    const ParameterStore store = randomStore(random);
    EXPECT_THAT(differences(store, store), IsEmpty());
}

TEST(SettingsDiff, OneFlippedBitNamesItsFieldAndNothingElse) {
    std::mt19937 random(2);
    const ParameterStore first = randomStore(random);
    for (const Field& field : fieldTable()) {
        forEachElement(field, [&](FieldIndex index) {
            const std::size_t set = random() % setCount;
            const std::size_t byte =
                set * parameterSetSize + recordOffsetOf(field, index) + random() % widthOf(field.type);
            Bytes bytes = bytesOfStore(first);
            bytes[byte] ^= static_cast<std::uint8_t>(1U << random() % 8);
            ParameterStore second;
            std::memcpy(&second, bytes.data(), sizeof second);
            EXPECT_THAT(pathsOf(differences(first, second)),
                        ElementsAre("set " + std::to_string(set + 1) + " " + elementPath(field, index)));
        });
    }
}

TEST(SettingsDiff, EveryByteOfARecordBelongsToExactlyOnePath) {
    const ParameterStore first = defaultStore();
    for (std::size_t offset = 0; offset < parameterSetSize; ++offset) {
        Bytes bytes = bytesOfStore(first);
        bytes[2 * parameterSetSize + offset] ^= 0xFF;
        ParameterStore second;
        std::memcpy(&second, bytes.data(), sizeof second);
        EXPECT_THAT(differences(first, second), testing::SizeIs(1)) << offset;
    }
}

TEST(SettingsDiff, RandomStoresDifferInExactlyTheChangedPlaces) {
    std::mt19937 random(3);
    for (int round = 0; round < 200; ++round) {
        const ParameterStore first = randomStore(random);
        ParameterStore second = first;
        std::set<std::string> expected;
        for (std::size_t change = random() % 12; change > 0; --change) {
            const std::size_t set = random() % setCount;
            const std::string prefix = "set " + std::to_string(set + 1) + " ";
            const auto& run = spareRuns()[random() % spareRuns().size()];
            const Field& field = fieldTable()[1 + random() % (fieldCount - 1)];
            const FieldIndex index{random() % field.outer.count, random() % field.inner.count};
            const bool spare = random() % 4 == 0;
            const std::size_t offset = spare ? run.offset : recordOffsetOf(field, index);
            const std::string path =
                prefix + (spare ? "spare[" + std::to_string(offset) + "]" : elementPath(field, index));
            if (!expected.insert(path).second) {
                continue;
            }
            Bytes bytes = bytesOfStore(second);
            bytes[set * parameterSetSize + offset] ^= static_cast<std::uint8_t>(1 + random() % 255);
            std::memcpy(&second, bytes.data(), sizeof second);
        }
        EXPECT_EQ(pathsOf(differences(first, second)), expected);
    }
}

TEST(SettingsDiff, NamesBothValuesWithTheirUnit) {
    const ParameterStore first = defaultStore();
    ParameterStore second = first;
    second.sets[4].channels[3].volumeDb = -3.25F;
    second.sets[4].limiters[3].gainTenthDb = -65;
    second.sets[4].spare5[1] = 0xAB;
    writeSetText(second.sets[4].setName, u"Car");
    const auto found = differences(first, second);
    ASSERT_EQ(found.size(), 4U);
    EXPECT_EQ(found[0].path, "set 5 spare[6]");
    EXPECT_EQ(found[0].second, "0xab");
    EXPECT_EQ(found[1].path, "set 5 channel[3].volume");
    EXPECT_EQ(found[1].first, "0.0 dB");
    EXPECT_EQ(found[1].second, "-3.25 dB");
    EXPECT_EQ(found[2].path, "set 5 setName");
    EXPECT_EQ(found[2].first, "\"Type 5\"");
    EXPECT_EQ(found[2].second, "\"Car\"");
    EXPECT_EQ(found[3].first, "-6.0 dB");
    EXPECT_EQ(found[3].second, "-6.5 dB");
}

TEST(SettingsDiff, TellsApartWhatReadsAlike) {
    const ParameterStore first = defaultStore();
    ParameterStore second = first;
    second.sets[0].setName[40] = u'x';
    second.sets[0].channels[0].delayMs = -0.0F;
    ParameterStore third = first;
    third.sets[0].channels[0].bands[0].gainDb = std::bit_cast<float>(0x7FC00000U);
    ParameterStore fourth = first;
    fourth.sets[0].channels[0].bands[0].gainDb = std::bit_cast<float>(0x7FC00001U);
    EXPECT_THAT(pathsOf(differences(first, second)), ElementsAre("set 1 channel[0].delay", "set 1 setName"));
    const auto found = differences(third, fourth);
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found[0].first, "nan(0x7fc00000) dB");
    EXPECT_EQ(found[0].second, "nan(0x7fc00001) dB");
}

// Only what the target's number formats make is left out; texts, spare bytes and the record's size are not its.
TEST(SettingsDiff, CountsRealOnesAloneWhenAskedTo) {
    const ParameterStore first = defaultStore();
    ParameterStore second = first;
    second.sets[1].recordSize = 7;
    second.sets[1].spare5[1] = 0xAB;
    second.sets[1].inputGainDb = 0.9F;
    second.sets[1].channels[3].volumeDb = 0.4F;
    second.sets[1].channels[4].volumeDb = 0.5F;
    second.sets[1].channels[3].delayMs = 0.005F;
    second.sets[1].surroundOff = 1;
    second.sets[1].setName[40] = u'x';
    writeSetText(second.sets[4].setVersion, u"2");
    EXPECT_EQ(differences(first, second).size(), 9U);
    EXPECT_THAT(pathsOf(differences(first, second, Counted::real)),
                ElementsAre("set 2 channel[4].volume", "set 2 recordSize", "set 2 setName", "set 2 spare[6]",
                            "set 2 surroundOff", "set 5 setVersion"));
}

class DiffCommand : public CommandTest {};

TEST_F(DiffCommand, WithRealEndsWithZeroWhereOnlyNumberFormatsDiffer) {
    const std::string a = fresh("a.eqs");
    const std::string b = fresh("b.eqs");
    ASSERT_EQ(runWith("setVolume 0.3", {"edit", b, "--script", "-", "-o", b}).code, 0);
    EXPECT_EQ(run({"diff", a, b}).code, 1);
    CommandResult result = run({"diff", a, b, "--real"});
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.out + result.err, "");
    ASSERT_EQ(runWith("setDelay 0.7", {"edit", b, "--script", "-", "-o", b}).code, 0);
    result = run({"diff", "--real", a, b});
    EXPECT_EQ(result.code, 1);
    EXPECT_EQ(result.out, "set 1 channel[7].delay: 0.0 ms | 0.7 ms\n");
}

// What goes into an image and comes back differs, but in nothing real.
TEST_F(DiffCommand, WithRealFindsNothingBetweenASetAndItsReturn) {
    const std::string a = fresh("a.eqs");
    const std::string back = path("back.eqs");
    ASSERT_EQ(runWith("setInputEqOn 1\nselect all\nsetVolume 3.3\nsetDelay 1.3\nsetBandGainOrQ 0 gain 2.5",
                      {"edit", a, "--script", "-", "-o", a, "--image", path("a.bin")})
                  .code,
              0);
    ASSERT_EQ(run({"import", path("a.bin"), "--into", a, "--set", "1", "-o", back}).code, 0);
    EXPECT_EQ(run({"diff", a, back}).code, 1);
    EXPECT_EQ(run({"diff", a, back, "--real"}).out, "");
}

TEST_F(DiffCommand, EndsWithZeroForTheSameAndOneForDifferent) {
    const std::string a = fresh("a.eqs");
    const std::string b = fresh("b.eqs");
    CommandResult result = run({"diff", a, b});
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.out + result.err, "");
    ASSERT_EQ(runWith("set 2\nsetDelay 0.7", {"edit", b, "--script", "-", "-o", b}).code, 0);
    result = run({"diff", a, b});
    EXPECT_EQ(result.code, 1);
    EXPECT_EQ(result.out, "set 2 channel[7].delay: 0.0 ms | 0.7 ms\n");
    EXPECT_EQ(result.err, "");
}

TEST_F(DiffCommand, ATailBehindTheSetsDoesNotCount) {
    const std::string a = fresh("a.eqs");
    Bytes bytes = read(a);
    bytes.resize(20000, 1);
    write(path("b.eqs"), bytes);
    EXPECT_EQ(run({"diff", a, path("b.eqs")}).code, 0);
}

// --- show
// --------------------------------------------------------------------------------------------------------

double numberOf(const json& value, FieldType type) {
    if (value.is_number()) {
        return value.get<double>();
    }
    const auto text = value.get<std::string>();
    if (text.starts_with("nan(0x")) {
        std::uint32_t bits = 0;
        std::from_chars(text.data() + 6, text.data() + text.size() - 1, bits, 16);
        EXPECT_EQ(type, FieldType::f32);
        return static_cast<double>(std::bit_cast<float>(bits));
    }
    EXPECT_THAT(text, testing::AnyOf("inf", "-inf"));
    return (text[0] == '-' ? -1 : 1) * std::numeric_limits<double>::infinity();
}

void putHex(std::array<std::uint8_t, parameterSetSize>& record, std::size_t offset, const std::string& hex) {
    for (std::size_t i = 0; i + 1 < hex.size(); i += 2) {
        std::from_chars(hex.data() + i, hex.data() + i + 2, record.at(offset + i / 2), 16);
    }
}

const json& nodeAt(const json& fields, const std::string& path) {
    std::string pointer;
    for (const char character : path) {
        pointer += character == '.' || character == '[' ? "/"
                   : character == ']'                   ? ""
                                                        : std::string(1, character);
    }
    return fields.at(json::json_pointer("/" + pointer));
}

// Builds the record from the JSON alone.
std::array<std::uint8_t, parameterSetSize> recordOf(const json& set) {
    ParameterSet values{};
    for (const Field& field : fieldTable()) {
        forEachElement(field, [&](FieldIndex index) {
            const double shown = numberOf(nodeAt(set.at("fields"), elementPath(field, index)), field.type);
            if (field.type == FieldType::f32) {
                // Through memory: a conversion would quieten the NaNs that signal.
                const auto single = static_cast<float>(shown);
                setStoredValue(values, field, index, static_cast<double>(single));
            } else {
                setStoredValue(values, field, index, storedFromShown(field, shown));
            }
        });
    }
    auto record = std::bit_cast<std::array<std::uint8_t, parameterSetSize>>(values);
    for (const TextField& field : textFields()) {
        putHex(record, field.recordOffset, set.at("texts").at(std::string(field.path)).at("bytes"));
    }
    for (const auto& [offset, hex] : set.at("spare").items()) {
        putHex(record, std::stoul(offset), hex);
    }
    return record;
}

void expectJsonHoldsEveryByte(const ParameterStore& store) {
    const json parsed = json::parse(settingsJson(store, {}));
    ASSERT_EQ(parsed.at("sets").size(), setCount);
    for (std::size_t set = 0; set < setCount; ++set) {
        EXPECT_EQ(parsed["sets"][set].at("set"), set + 1);
        EXPECT_EQ(parsed["sets"][set].at("valid"), true);
        EXPECT_EQ(recordOf(parsed["sets"][set]), bytesOf(store.sets[set])) << set;
    }
}

// NaNs that signal become quiet wherever a single passes through a register; none are put in.
void removeSignallingNans(ParameterStore& store) {
    for (ParameterSet& set : store.sets) {
        for (const Field& field : fieldTable()) {
            forEachElement(field, [&](FieldIndex index) {
                if (field.type == FieldType::f32 && std::isnan(storedValue(set, field, index))) {
                    setStoredValue(set, field, index, storedValue(set, field, index));
                }
            });
        }
    }
}

TEST(SettingsJson, HoldsEveryByteOfAFreshStore) {
    expectJsonHoldsEveryByte(defaultStore());
}

TEST(SettingsJson, HoldsEveryByteOfRandomStores) {
    std::mt19937 random(4);
    for (int round = 0; round < 20; ++round) {
        ParameterStore store = randomStore(random);
        removeSignallingNans(store);
        expectJsonHoldsEveryByte(store);
    }
}

TEST(SettingsJson, HoldsNumbersThatJsonDoesNotHave) {
    ParameterStore store = defaultStore();
    store.sets[0].channels[0].volumeDb = std::numeric_limits<float>::infinity();
    store.sets[0].channels[1].volumeDb = -std::numeric_limits<float>::infinity();
    store.sets[0].channels[2].volumeDb = std::bit_cast<float>(0xFFC12345U);
    store.sets[0].channels[3].volumeDb = -0.0F;
    store.sets[0].channels[4].volumeDb = std::numeric_limits<float>::denorm_min();
    expectJsonHoldsEveryByte(store);
    const json channels = json::parse(settingsJson(store, {true, 0}))["sets"][0]["fields"]["channel"];
    EXPECT_EQ(channels[0]["volume"], "inf");
    EXPECT_EQ(channels[2]["volume"], "nan(0xffc12345)");
}

TEST(SettingsJson, IsStableAndReadable) {
    const std::string text = settingsJson(defaultStore(), {true, 1});
    EXPECT_EQ(text, settingsJson(defaultStore(), {true, 1}));
    const json parsed = json::parse(text);
    ASSERT_EQ(parsed["sets"].size(), 1U);
    const json& set = parsed["sets"][0];
    EXPECT_EQ(set["set"], 2);
    EXPECT_EQ(set["texts"]["setName"]["text"], "Type 2");
    EXPECT_EQ(set["fields"]["limiter"][7]["gain"], -6.0);
    EXPECT_EQ(set["fields"]["channel"][0]["band"][2]["frequency"], 500);
    EXPECT_EQ(set["fields"]["tone"][0]["q"], 0.7);
    EXPECT_LT(text.find("\"recordSize\""), text.find("\"inputEqOn\""));
    EXPECT_THAT(text, HasSubstr("\"q\": 0.7,"));
}

class ShowCommand : public CommandTest {};

TEST_F(ShowCommand, ShowsEverySetAndNamesTheInvalidOnes) {
    Bytes bytes = read(fresh());
    bytes[2 * parameterSetSize] ^= 1;
    write(path("damaged.eqs"), bytes);
    const CommandResult result = run({"show", path("damaged.eqs")});
    EXPECT_EQ(result.code, 0);
    EXPECT_THAT(result.out, HasSubstr("Set 1, setName \"Type 1\", setVersion \"1.0\"\n"));
    EXPECT_THAT(result.out, HasSubstr("Set 3 has no valid record\n"));
    EXPECT_THAT(result.out, testing::Not(HasSubstr("Type 3")));
    EXPECT_THAT(result.out, HasSubstr("Set 5, setName \"Type 5\""));
    const json parsed = json::parse(run({"show", path("damaged.eqs"), "--json"}).out);
    EXPECT_EQ(parsed["sets"][2], json({{"set", 3}, {"valid", false}}));
    EXPECT_EQ(parsed["sets"][3]["valid"], true);
}

TEST_F(ShowCommand, ShowsOneSet) {
    const CommandResult result = run({"show", fresh(), "--set", "2"});
    EXPECT_EQ(result.code, 0);
    EXPECT_THAT(result.out, testing::StartsWith("Set 2, "));
    EXPECT_THAT(result.out, testing::Not(HasSubstr("Set 1")));
    EXPECT_EQ(json::parse(run({"show", fresh(), "--set", "2", "--json"}).out)["sets"].size(), 1U);
}

TEST_F(ShowCommand, ShowsWhatAnEditChangedWithUnitsAndWords) {
    const std::string file = fresh();
    ASSERT_EQ(runWith("setVolume -3.5\nsetBandType 2 low-shelf\nsetCrossoverFrequency 0 80\nsetRouterSource "
                      "7 6\nsetName Car",
                      {"edit", file, "--script", "-", "-o", file})
                  .code,
              0);
    const CommandResult result = run({"show", file, "--set", "1"});
    EXPECT_THAT(result.out, HasSubstr("Set 1, setName \"Car\""));
    EXPECT_THAT(result.out, HasSubstr("Channel 1 (record channel 7)\n  channel[7].volume           -3.5 dB"));
    EXPECT_THAT(result.out, HasSubstr("1 (low shelf)"));
    EXPECT_THAT(result.out, HasSubstr("6 (Subwoofer)"));
    EXPECT_THAT(result.out, HasSubstr("80 Hz"));
}

TEST(SetReport, NamesEveryScalarFieldAndKeepsControlCharactersFromTheTerminal) {
    ParameterStore store = defaultStore();
    writeSetText(store.sets[0].setName, u"a\x1B[2J");
    const std::string text = setReport(store.sets[0], 0);
    EXPECT_THAT(text, HasSubstr("\"a\\x1b[2J\""));
    EXPECT_EQ(text.find('\x1B'), std::string::npos);
    for (const Field& field : fieldTable()) {
        const std::size_t dot = field.path.rfind('.');
        const std::string leaf(field.path.substr(dot == std::string_view::npos ? 0 : dot + 1));
        EXPECT_THAT(text, HasSubstr(leaf.substr(0, leaf.find("[]")))) << field.path;
    }
}

TEST(SetReport, ShowsRandomBytesWithoutFailing) {
    std::mt19937 random(5);
    for (int round = 0; round < 50; ++round) {
        const ParameterStore store = randomStore(random);
        EXPECT_THAT(setReport(store.sets[0], 0), HasSubstr("Channel 8"));
    }
}

}  // namespace
}  // namespace tessavo::test
