#include "history/recovery_file.h"

#include <functional>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <string>

#include "base/md5.h"
#include "history/recovery_session.h"
#include "support/temporary_folder.h"

namespace tessavo::test {
namespace {

using Json = nlohmann::json;

constexpr std::size_t headSize = 12;
constexpr std::size_t digestSize = 16;

/// Bytes with the digest that belongs to them.
Bytes sealed(Bytes bytes) {
    const Md5Digest digest = md5(bytes);
    bytes.insert(bytes.end(), digest.begin(), digest.end());
    return bytes;
}

/// A whole file around a body.
Bytes fileAround(const Bytes& body, std::uint8_t version = 2) {
    Bytes bytes{'T', 'S', 'V', 'R', 'E', 'C', 'O', 'V', version, 0, 0, 0};
    bytes.insert(bytes.end(), body.begin(), body.end());
    return sealed(std::move(bytes));
}
Bytes fileOf(const Json& body) {
    return fileAround(Json::to_cbor(body));
}
Json bodyOf(const Bytes& file) {
    return Json::from_cbor(file.begin() + headSize, file.end() - digestSize);
}

/// A file with the digest that belongs to it, after something in its body was changed.
Bytes changed(const Bytes& file, const std::function<void(Json&)>& change) {
    Json body = bodyOf(file);
    change(body);
    return fileOf(body);
}

bool isWholeFile(const Bytes& file) {
    return std::holds_alternative<RecoveryState>(decodeRecovery(file));
}

class RecoveryFile : public testing::Test {
 protected:
    RecoverySession session_;
};

TEST_F(RecoveryFile, BringsEverythingBack) {
    session_.edit(30);
    session_.load();
    session_.edit(3);
    ASSERT_TRUE(session_.history.undo());
    ASSERT_TRUE(session_.history.undo());
    session_.history.beginGesture(Gesture::press);
    session_.tuning.state.edit(FieldId::volume, {1, 0}, 5, true);
    for (const bool isSaved : {false, true}) {
        RecoveryState state = session_.state();
        ASSERT_FALSE(isSame(state.trail->state, state.trail->begun)) << "in the middle of a step";
        ASSERT_EQ(state.trail->undone.size(), 2U);
        state.isSaved = isSaved;
        const auto decoded = decodeRecovery(encodeRecovery(state));
        ASSERT_TRUE(std::holds_alternative<RecoveryState>(decoded));
        expectSameState(std::get<RecoveryState>(decoded), state);
    }
}

TEST_F(RecoveryFile, ALaterRunGoesOnFromIt) {
    session_.edit(20);
    ASSERT_TRUE(session_.history.undo());
    const auto decoded = decodeRecovery(encodeRecovery(session_.state()));
    RecoverySession later(2);
    later.edit(3);
    ASSERT_TRUE(later.history.adopt(*std::get<RecoveryState>(decoded).trail, "Restored"));
    EXPECT_SAME_BYTES(later.tuning.store(), session_.tuning.store());
    EXPECT_SAME_BYTES(later.tuning.image(), session_.tuning.image());
    for (int back = 0; back < 19; ++back) {
        ASSERT_EQ(later.history.undoText(), session_.history.undoText());
        ASSERT_TRUE(session_.history.undo());
        ASSERT_TRUE(later.history.undo());
        EXPECT_SAME_BYTES(later.tuning.store(), session_.tuning.store());
    }
    EXPECT_EQ(later.history.undoText(), "Restored");
}

TEST_F(RecoveryFile, TakesTheStepsNextToTheState) {
    session_.edit(350);
    ASSERT_TRUE(session_.history.goTo(170));
    RecoveryState state = session_.state();
    state.trail = session_.history.trail(160);
    const auto decoded = decodeRecovery(encodeRecovery(state));
    const History::Trail& trail = *std::get<RecoveryState>(decoded).trail;
    ASSERT_EQ(trail.done.size(), 100U);
    ASSERT_EQ(trail.undone.size(), 100U);
    EXPECT_EQ(trail.done.front()->text, session_.history.steps()[70]->text);
    EXPECT_EQ(trail.done.back()->text, session_.history.steps()[169]->text);
    EXPECT_EQ(trail.undone.front()->text, session_.history.steps()[170]->text);
    EXPECT_EQ(trail.undone.back()->text, session_.history.steps()[269]->text);
}

TEST_F(RecoveryFile, StaysBelowItsLimitWhateverTheStepsChanged) {
    for (int i = 0; i < 201; ++i) {
        session_.tuning.state.selectSet(static_cast<std::uint32_t>(i % 5));
        session_.load();
    }
    ASSERT_TRUE(session_.history.goTo(100));
    const Bytes file = encodeRecovery(session_.state());
    EXPECT_LT(file.size(), recoveryFileLimit);
    EXPECT_TRUE(isWholeFile(file));
}

TEST_F(RecoveryFile, TextsAreCutBetweenCharactersAndMadeValid) {
    const std::string umlauts(700, '\xC3');
    std::string wide;
    double volume = 0;
    for (int i = 0; i < 700; ++i) {
        wide += "\u00e4\U0001F50A";
    }
    for (const std::string& text : {std::string(2000, 'x'), "y" + wide, wide, umlauts,
                                    std::string("\xFF\xC3("), std::string("a\0b", 3)}) {
        session_.tuning.state.edit(FieldId::volume, {1, 0}, ++volume, true);
        session_.history.commit(text);
    }
    ASSERT_EQ(session_.history.steps().size(), 6U);
    const auto decoded = decodeRecovery(encodeRecovery(session_.state()));
    ASSERT_TRUE(std::holds_alternative<RecoveryState>(decoded));
    const Steps& steps = std::get<RecoveryState>(decoded).trail->done;
    ASSERT_EQ(steps.size(), 6U);
    EXPECT_EQ(steps[0]->text, std::string(1024, 'x'));
    EXPECT_EQ(steps[1]->text, ("y" + wide).substr(0, 1023)) << "170 pairs of 6 bytes, and one of 2";
    EXPECT_EQ(steps[2]->text, wide.substr(0, 1022));
    EXPECT_EQ(steps[3]->text.size(), 1023U);
    EXPECT_EQ(steps[4]->text, "\uFFFD\uFFFD(");
    EXPECT_EQ(steps[5]->text, std::string("a\0b", 3));
}

TEST_F(RecoveryFile, EveryTruncationIsRecognised) {
    session_.edit(2);
    const Bytes file = encodeRecovery(session_.state());
    ASSERT_TRUE(isWholeFile(file));
    for (std::size_t size = 0; size < file.size(); ++size) {
        ASSERT_TRUE(isTrouble(decodeRecovery(std::span(file).first(size)), RecoveryTrouble::damaged)) << size;
    }
    Bytes longer = file;
    longer.push_back(0);
    EXPECT_FALSE(isWholeFile(longer));
}

TEST_F(RecoveryFile, EveryFlippedByteIsRecognised) {
    session_.edit(2);
    Bytes file = encodeRecovery(session_.state());
    std::mt19937 random(5);
    for (std::size_t place = 0; place < file.size(); ++place) {
        const auto flip = static_cast<std::uint8_t>(1 + random() % 255);
        file[place] ^= flip;
        ASSERT_TRUE(isTrouble(decodeRecovery(file), RecoveryTrouble::damaged))
            << place << " by " << int{flip};
        file[place] ^= flip;
    }
    EXPECT_TRUE(isWholeFile(file));
}

TEST_F(RecoveryFile, OneOfALaterVersionIsRefusedAndNotCalledDamaged) {
    const Bytes body = Json::to_cbor(Json{{"something", "else"}});
    EXPECT_TRUE(isTrouble(decodeRecovery(fileAround(body, 3)), RecoveryTrouble::newer));
    EXPECT_TRUE(isTrouble(decodeRecovery(fileAround({}, 255)), RecoveryTrouble::newer));
    Bytes damaged = fileAround(body, 3);
    damaged[headSize] ^= 1;
    EXPECT_TRUE(isTrouble(decodeRecovery(damaged), RecoveryTrouble::damaged));
    EXPECT_TRUE(isTrouble(decodeRecovery(fileAround(body, 0)), RecoveryTrouble::damaged)) << "none had 0";
}

TEST_F(RecoveryFile, KeysThatNobodyKnowsAreNoHindrance) {
    session_.edit(5);
    const Bytes file = changed(encodeRecovery(session_.state()), [](Json& body) {
        body["channelNames"] = {"Front left", "Front right"};
        body["done"][2]["colour"] = {{"deep", {1, 2.5, nullptr, true, -1}}};
    });
    const auto decoded = decodeRecovery(file);
    ASSERT_TRUE(std::holds_alternative<RecoveryState>(decoded));
    expectSameState(std::get<RecoveryState>(decoded), session_.state());
}

TEST_F(RecoveryFile, EveryKeyMustBeThereAndOfItsKind) {
    session_.edit(3);
    ASSERT_TRUE(session_.history.undo());
    const Bytes file = encodeRecovery(session_.state());
    const Json body = bodyOf(file);
    const std::vector<Json> others{nullptr,
                                   true,
                                   -1,
                                   2.5,
                                   "text",
                                   Json::array(),
                                   Json::object(),
                                   Json::binary({1}),
                                   Json::array({1}),
                                   std::uint64_t{1} << 63U};
    const auto tryAll = [&](const Json::json_pointer& place, bool maybeFits) {
        EXPECT_FALSE(isWholeFile(changed(file, [&](Json& all) {
            all.at(place.parent_pointer()).erase(place.back());
        }))) << place;
        int refused = 0;
        for (const Json& other : others) {
            refused += isWholeFile(changed(file, [&](Json& all) { all.at(place) = other; })) ? 0 : 1;
        }
        EXPECT_GE(refused, maybeFits ? 9 : 10) << place;
    };
    for (const auto& [key, value] : body.items()) {
        if (key == "documentFile") {
            continue;  // may be missing
        }
        const bool maybeFits = key == "process" || key == "saved" || value.is_array() || key == "document";
        tryAll(Json::json_pointer("/" + key), maybeFits);
    }
    for (const auto& [key, value] : body.at("done").at(1).items()) {
        tryAll(Json::json_pointer("/done/1/" + key), key == "text");
        tryAll(Json::json_pointer("/undone/0/" + key), key == "text");
    }
}

TEST_F(RecoveryFile, NumbersOutOfRangeAreRefused) {
    session_.edit(101);
    const Bytes file = encodeRecovery(session_.state());
    const std::uint64_t latest = bodyOf(encodeRecovery([&] {
                                     RecoveryState state = session_.state();
                                     state.time = WallTime::max();
                                     return state;
                                 }()))
                                     .at("time");
    const auto accepts = [&](const std::function<void(Json&)>& change) {
        return isWholeFile(changed(file, change));
    };
    EXPECT_TRUE(accepts([](Json& body) { body["filterMode"] = 0U; }));
    EXPECT_FALSE(accepts([](Json& body) { body["filterMode"] = 3U; }));
    EXPECT_TRUE(accepts([](Json& body) { body["done"][0]["set"] = 4U; }));
    EXPECT_FALSE(accepts([](Json& body) { body["done"][0]["set"] = 5U; }));
    EXPECT_TRUE(accepts([&](Json& body) { body["time"] = latest; }));
    EXPECT_FALSE(accepts([&](Json& body) { body["time"] = latest + 1; }));
    EXPECT_FALSE(accepts([&](Json& body) { body["done"][0]["time"] = latest + 1; }));
    Json idle = bodyOf(file).at("done").at(0);
    idle["lead"] = idle["change"] = Json::binary({});
    EXPECT_TRUE(accepts([&](Json& body) { body["done"][99] = idle; }));
    EXPECT_FALSE(accepts([&](Json& body) { body["done"].push_back(idle); })) << "101 steps";
    EXPECT_FALSE(accepts([](Json& body) { body["done"][99]["text"] = std::string(1025, 'x'); }));
    EXPECT_FALSE(accepts([](Json& body) { body["done"][99]["text"] = "\xC3("; }));
    EXPECT_FALSE(accepts([](Json& body) { body["done"][99] = 1; }));
}

TEST_F(RecoveryFile, DifferencesThatFitNoStateAreRefused) {
    session_.edit(3);
    const Bytes file = encodeRecovery(session_.state());
    const auto accepts = [&](const char* place, const Bytes& difference) {
        return isWholeFile(
            changed(file, [&](Json& body) { body[Json::json_pointer(place)] = Json::binary(difference); }));
    };
    const Bytes endOfState{0x3B, 0xC3, 1, 0, 0};  // the last byte, 49979
    const Bytes beyond{0x3C, 0xC3, 1, 0, 0xFF};
    const Bytes cut{0, 0, 2, 0, 1};
    const Bytes otherSet{0x78, 0xA9, 1, 0, 0x08};  // of the current set
    for (const char* place : {"/begun", "/settled", "/done/0/lead", "/done/0/change", "/done/2/change"}) {
        EXPECT_TRUE(accepts(place, {})) << place;
        EXPECT_TRUE(accepts(place, endOfState)) << place;
        EXPECT_FALSE(accepts(place, beyond)) << place;
        EXPECT_FALSE(accepts(place, cut)) << place;
        EXPECT_FALSE(accepts(place, otherSet)) << place << ": there is no set 8";
    }
    for (const std::size_t size : {tuningSnapshotSize - 1, tuningSnapshotSize + 1, std::size_t{0}}) {
        EXPECT_FALSE(accepts("/state", Bytes(size)));
    }
    Bytes noSuchSet(tuningSnapshotSize);
    noSuchSet[offsetof(TuningSnapshot, currentSet)] = 5;
    EXPECT_FALSE(accepts("/state", noSuchSet));
}

TEST_F(RecoveryFile, NamesAndNotesAreInTheStateAndInEveryStep) {
    FileNotes notes;
    for (std::uint8_t channel = 0; channel < channelCount; ++channel) {
        setChannelName(notes, {channel}, u"K\u00e4fer \U0001F50A " + std::u16string(1, u'0' + channel));
        session_.tuning.state.setNotes(notes);
        ASSERT_TRUE(session_.history.commit());
    }
    setNoteText(notes, u"driver's seat");
    setMeasurementPath(notes, {6}, u"sweeps/sub.txt");
    session_.tuning.state.setNotes(notes);
    ASSERT_TRUE(session_.history.commit());
    ASSERT_TRUE(session_.history.undo());
    const auto decoded = decodeRecovery(encodeRecovery(session_.state()));
    ASSERT_TRUE(std::holds_alternative<RecoveryState>(decoded));
    RecoverySession later(2);
    ASSERT_TRUE(later.history.adopt(*std::get<RecoveryState>(decoded).trail, "Restored"));
    ASSERT_TRUE(later.history.redo());
    EXPECT_EQ(later.tuning.state.notes(), notes);
    setNoteText(notes, {});
    setMeasurementPath(notes, {6}, {});
    for (std::uint8_t channel = channelCount; channel > 0; --channel) {
        ASSERT_TRUE(later.history.undo());
        EXPECT_EQ(later.tuning.state.notes(), notes);
        setChannelName(notes, {static_cast<std::uint8_t>(channel - 1)}, {});
    }
}

/// A file as the version before this one wrote it: its states ended with the current set.
TEST_F(RecoveryFile, OneOfTheVersionWithoutNotesIsReadStill) {
    session_.edit(30);
    ASSERT_TRUE(session_.history.undo());
    Json body = bodyOf(encodeRecovery(session_.state()));
    auto& state = body["state"].get_binary();
    ASSERT_EQ(state.size(), 49980U);
    state.resize(43388);
    const auto decoded = decodeRecovery(fileAround(Json::to_cbor(body), 1));
    ASSERT_TRUE(std::holds_alternative<RecoveryState>(decoded));
    expectSameState(std::get<RecoveryState>(decoded), session_.state());
    for (const std::size_t size : {43387U, 43389U}) {
        state.resize(size);
        EXPECT_FALSE(isWholeFile(fileAround(Json::to_cbor(body), 1))) << size;
    }
}

TEST_F(RecoveryFile, PathsComeBackAsTheyWere) {
    for (const char8_t* path : {u8"", u8"car.eqs", u8"/K\u00e4fer/\U0001F50A.eqs"}) {
        RecoveryState state = session_.state();
        state.documentPath = std::filesystem::path(path);
        const auto decoded = decodeRecovery(encodeRecovery(state));
        EXPECT_EQ(std::get<RecoveryState>(decoded).documentPath, state.documentPath);
    }
    const Bytes file = encodeRecovery(session_.state());
    for (const Bytes& bytes : {Bytes{'a', 0, 0, 0}, Bytes(70000, 'a')}) {
        EXPECT_FALSE(isWholeFile(changed(file, [&](Json& body) { body["document"] = Json::binary(bytes); })));
    }
}

TEST_F(RecoveryFile, WhatIsKnownOfTheSettingsFileComesBackAsItWas) {
    session_.edit(3);
    const DocumentMemory whole = *session_.state().documentMemory;
    const FileStamp largest{~std::uintmax_t{0}, Md5Digest{255}};
    const DocumentMemory saved{session_.tuning.state.store(), largest, ~std::uintmax_t{0}};
    const std::vector<std::optional<DocumentMemory>> memories{
        std::nullopt, DocumentMemory(), DocumentMemory{whole.store, std::nullopt, 0},
        DocumentMemory{std::nullopt, whole.stamp, 10599}, saved};
    for (const auto& memory : memories) {
        RecoveryState state = session_.state();
        state.documentMemory = memory;
        const auto decoded = decodeRecovery(encodeRecovery(state));
        ASSERT_TRUE(std::holds_alternative<RecoveryState>(decoded));
        expectSameState(std::get<RecoveryState>(decoded), state);
    }
    RecoveryState state = session_.state();
    state.documentPath.clear();
    EXPECT_FALSE(std::get<RecoveryState>(decodeRecovery(encodeRecovery(state))).documentMemory);
}

TEST_F(RecoveryFile, OneOfAVersionThatKnewNothingOfTheSettingsFileIsTaken) {
    session_.edit(3);
    RecoveryState state = session_.state();
    const Bytes older = changed(encodeRecovery(state), [](Json& body) { body.erase("documentFile"); });
    state.documentMemory.reset();
    const auto decoded = decodeRecovery(older);
    ASSERT_TRUE(std::holds_alternative<RecoveryState>(decoded));
    expectSameState(std::get<RecoveryState>(decoded), state);
}

TEST_F(RecoveryFile, WhatIsSaidOfTheSettingsFileIsTakenWholeOrNotAtAll) {
    session_.edit(3);
    const Bytes file = encodeRecovery(session_.state());
    const auto accepts = [&](const std::function<void(Json&)>& change) {
        return isWholeFile(changed(file, [&](Json& body) { change(body.at("documentFile")); }));
    };
    ASSERT_EQ(bodyOf(file).at("documentFile").size(), 4U);
    EXPECT_TRUE(accepts([](Json& entry) { entry["colour"] = "red"; }));
    EXPECT_TRUE(accepts([](Json& entry) { entry.erase("sets"); }));
    EXPECT_TRUE(accepts([](Json& entry) {
        entry.erase("size");
        entry.erase("digest");
    }));
    for (const char* key : {"size", "digest", "read"}) {
        EXPECT_FALSE(accepts([&](Json& entry) { entry.erase(key); })) << key << " alone is missing";
    }
    for (const char* key : {"read", "size", "digest", "sets"}) {
        for (const Json& other : {Json(nullptr), Json(-1), Json(2.5), Json("text"), Json::array(),
                                  Json::binary(Bytes(15)), Json::binary(Bytes(17))}) {
            EXPECT_FALSE(accepts([&](Json& entry) { entry[key] = other; })) << key << ": " << other;
        }
    }
    const Bytes lastByte{0x67, 0x29, 1, 0, 0xFF};
    const Bytes beyond{0x68, 0x29, 1, 0, 0xFF};  // byte 10600 of the sets
    EXPECT_TRUE(accepts([&](Json& entry) { entry["sets"] = Json::binary(lastByte); }));
    EXPECT_FALSE(accepts([&](Json& entry) { entry["sets"] = Json::binary(beyond); }));
    EXPECT_FALSE(accepts([](Json& entry) { entry = Json::array(); }));
}

TEST_F(RecoveryFile, TimesBeforeTheCommonEraOfClocksCountAsItsStart) {
    RecoveryState state = session_.state();
    state.time = WallTime(std::chrono::hours(-1));
    EXPECT_EQ(std::get<RecoveryState>(decodeRecovery(encodeRecovery(state))).time, WallTime());
}

TEST_F(RecoveryFile, IsReadFromTheDisk) {
    const TemporaryFolder folder;
    EXPECT_TRUE(isTrouble(readRecovery(folder / "none.tsr"), RecoveryTrouble::unreadable));
    EXPECT_TRUE(isTrouble(readRecovery(folder.path()), RecoveryTrouble::unreadable));
    ASSERT_TRUE(writeFile(folder / "empty.tsr", {}));
    EXPECT_TRUE(isTrouble(readRecovery(folder / "empty.tsr"), RecoveryTrouble::damaged));
    ASSERT_TRUE(writeFile(folder / "whole.tsr", encodeRecovery(session_.state())));
    const auto read = readRecovery(folder / "whole.tsr");
    ASSERT_TRUE(std::holds_alternative<RecoveryState>(read));
    expectSameState(std::get<RecoveryState>(read), session_.state());
    std::filesystem::resize_file(folder / "whole.tsr", recoveryFileLimit + 1000);
    EXPECT_TRUE(isTrouble(readRecovery(folder / "whole.tsr"), RecoveryTrouble::damaged));
}

}  // namespace
}  // namespace tessavo::test
