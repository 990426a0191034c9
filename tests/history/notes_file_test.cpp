#include "history/notes_file.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <random>
#include <string>

#include "support/harness.h"
#include "support/temporary_folder.h"

namespace tessavo::test {
namespace {

using Json = nlohmann::json;
using Result = std::variant<FileNotes, NotesTrouble>;

/// By record channel.
constexpr std::array<int, 8> pageNumbers{3, 5, 7, 2, 4, 6, 8, 1};

Result notesFromText(const std::string& text) {
    return notesFrom({reinterpret_cast<const std::uint8_t*>(text.data()), text.size()});
}
bool isDamaged(const std::string& text) {
    return notesFromText(text) == Result(NotesTrouble::damaged);
}

/// Notes whose texts take all the room they have, with characters of every kind.
FileNotes longNotes() {
    FileNotes notes;
    setNoteText(notes, std::u16string(300, u'\n') + std::u16string(718, u'\u4e2d') + u"\\\"/<\U0001F50A");
    for (std::uint8_t c = 0; c < 8; ++c) {
        setChannelName(notes, {c}, std::u16string(21, u'a' + c) + u"\U0001F50A\u00e4");
        setMeasurementPath(notes, {c}, std::u16string(260, u'\uFFFD'));
    }
    return notes;
}

TEST(NotesFile, BringsBackEveryText) {
    for (const FileNotes& notes : {FileNotes{}, longNotes()}) {
        EXPECT_EQ(notesFromText(notesJson(notes)), Result(notes));
    }
    EXPECT_LT(notesJson(longNotes()).size(), notesFileLimit / 20);
}

TEST(NotesFile, IsTheDocumentedForm) {
    FileNotes notes;
    setNoteText(notes, u"K\u00e4fer\nback");
    for (std::uint8_t c = 0; c < 8; ++c) {
        setChannelName(notes, {c}, u"name " + std::u16string(1, u'0' + c));
    }
    setMeasurementPath(notes, {2}, u"sweeps/mid-l.txt");
    const Json json = Json::parse(notesJson(notes));
    EXPECT_EQ(json.at("version"), 1);
    EXPECT_EQ(json.at("note"), "K\u00e4fer\nback");
    ASSERT_EQ(json.at("channels").size(), 8U);
    for (std::size_t c = 0; c < 8; ++c) {
        const int number = pageNumbers.at(c);
        const Json& entry = json.at("channels").at(static_cast<std::size_t>(number - 1));
        EXPECT_EQ(entry.at("channel"), number);
        EXPECT_EQ(entry.at("name"), "name " + std::to_string(c));
        EXPECT_EQ(entry.value("measurement", ""), number == 7 ? "sweeps/mid-l.txt" : "");
    }
}

TEST(NotesFile, StandsBesideTheSettingsUnderTheirNameWithoutItsEnding) {
    const auto nameFor = [](const char* settings) {
        return notesPathOf(std::filesystem::path("folder.eqs") / settings);
    };
    const std::filesystem::path folder("folder.eqs");
    EXPECT_EQ(nameFor("car.eqs"), folder / "car.notes.json");
    EXPECT_EQ(nameFor("car.EQS"), folder / "car.notes.json");
    EXPECT_EQ(nameFor("my.car.eqs"), folder / "my.car.notes.json");
    EXPECT_EQ(nameFor("car"), folder / "car.notes.json");
    EXPECT_EQ(nameFor("car.v2"), folder / "car.v2.notes.json");
    EXPECT_EQ(nameFor("car.eqs.bak"), folder / "car.eqs.bak.notes.json");
    EXPECT_EQ(nameFor(".eqs"), folder / ".eqs.notes.json");
    EXPECT_EQ(notesPathOf("car.eqs"), "car.notes.json");
    const std::filesystem::path odd = nameThatIsNoText(".eqs");
    EXPECT_EQ(notesPathOf(odd), nameThatIsNoText(".notes.json"));
}

TEST(NotesFile, TextsMayBeLeftOutAndUnknownKeysAreNoHindrance) {
    EXPECT_EQ(notesFromText(R"({"version": 1})"), Result(FileNotes{}));
    EXPECT_EQ(notesFromText(R"({"version": 1, "channels": [], "colour": {"deep": [1, null]}})"),
              Result(FileNotes{}));
    FileNotes notes;
    setChannelName(notes, {2}, u"Mid L");
    EXPECT_EQ(notesFromText(R"({"channels": [{"channel": 7, "name": "Mid L", "x": 1}, {"channel": 8}],
                               "version": 1})"),
              Result(notes));
    EXPECT_EQ(notesFromText(R"({"channels": [{"channel": 7, "name": " Mid\tL\u0000 "}], "version": 1})"),
              Result(notes))
        << "control characters are spaces";
}

TEST(NotesFile, EveryTextOfAnotherKindOrTooLongIsRefused) {
    const Json whole = Json::parse(notesJson(longNotes()));
    const std::vector<Json> others{nullptr,       true,           -1, 2.5,
                                   Json::array(), Json::object(), 0,  Json::array({1})};
    const Json places = whole.flatten();
    for (const auto& [pointer, value] : places.items()) {
        const Json::json_pointer place(pointer);
        for (const Json& other : others) {
            Json changed = whole;
            changed.at(place) = other;
            EXPECT_TRUE(isDamaged(changed.dump())) << pointer << ' ' << other;
        }
        if (value.is_string()) {
            Json changed = whole;
            changed.at(place) = value.get<std::string>() + 'x';
            EXPECT_TRUE(isDamaged(changed.dump())) << pointer << " one unit too long";
        }
    }
    for (const Json& other : others) {
        Json changed = whole;
        changed["channels"] = other;
        EXPECT_EQ(isDamaged(changed.dump()), other != Json::array()) << other;
        EXPECT_TRUE(isDamaged(other.dump())) << other;
    }
}

TEST(NotesFile, ChannelsThatThereAreNotOrTwiceAreRefused) {
    for (const char* channels :
         {R"([{"channel": 0}])", R"([{"channel": 9}])", R"([{"name": "x"}])",
          R"([{"channel": 18446744073709551615}])", R"([{"channel": 4}, {"channel": 4}])",
          R"([{"channel": 4.0}])", R"(["x"])", R"([null])"}) {
        EXPECT_TRUE(isDamaged(std::string(R"({"version": 1, "channels": )").append(channels).append("}")))
            << channels;
    }
    std::string nine = R"({"version": 1, "channels": [)";
    for (int channel = 1; channel <= 9; ++channel) {
        nine.append(channel > 1 ? "," : "")
            .append(R"({"channel": )")
            .append(std::to_string(channel))
            .append("}");
    }
    EXPECT_TRUE(isDamaged(nine.append("]}")));
}

TEST(NotesFile, OneOfALaterVersionIsNotCalledDamaged) {
    for (const char* version : {"2", "3", "18446744073709551615"}) {
        EXPECT_EQ(notesFromText(std::string(R"({"note": 5, "version": )").append(version).append("}")),
                  Result(NotesTrouble::newer));
    }
    for (const char* version : {"0", "-1", "1.0", "\"1\"", "null", "18446744073709551616", "1e400"}) {
        EXPECT_TRUE(isDamaged(std::string(R"({"version": )").append(version).append("}"))) << version;
    }
}

TEST(NotesFile, EveryTruncationIsRefused) {
    const std::string whole = notesJson(longNotes());
    for (std::size_t size = 0; size + 2 < whole.size(); size += size < 200 ? 1 : 37) {
        ASSERT_TRUE(isDamaged(whole.substr(0, size))) << size;
    }
    EXPECT_TRUE(isDamaged(whole + "x"));
    EXPECT_TRUE(isDamaged("{\"version\": 1, \"note\": \"\xFF\"}")) << "no UTF-8";
    EXPECT_TRUE(isDamaged(R"({"version": 1, "note": "\ud800"})")) << "half a character";
    EXPECT_TRUE(isDamaged(std::string(500000, '['))) << "deep";
    std::string deep = R"({"version": 1, "note": )";
    EXPECT_TRUE(
        isDamaged(deep.append(std::string(400000, '[')).append(std::string(400000, ']')).append("}")));
}

TEST(NotesFile, WhateverStandsThereIsNotesOrRefused) {
    std::mt19937_64 random(11);
    const std::string whole = notesJson(longNotes());
    int taken = 0;
    for (int i = 0; i < 20000; ++i) {
        std::string text = whole.substr(0, 400);
        text.append(whole.substr(whole.size() - 400));
        for (std::size_t changes = 1 + random() % 3; changes > 0; --changes) {
            text[random() % text.size()] = static_cast<char>(random() % 256);
        }
        const Result result = notesFromText(text);
        if (const auto* notes = std::get_if<FileNotes>(&result)) {
            ++taken;
            EXPECT_EQ(wellFormed(*notes), *notes);
        } else {
            EXPECT_NE(std::get<NotesTrouble>(result), NotesTrouble::missing);
        }
    }
    std::string spaced = notesJson(longNotes());
    spaced.append(std::string(notesFileLimit - spaced.size(), ' '));
    EXPECT_EQ(notesFromText(spaced), Result(longNotes()));
    EXPECT_TRUE(isDamaged(spaced + ' ')) << "longer than a file may be";
}

TEST(NotesFile, IsReadFromTheDisk) {
    const TemporaryFolder folder;
    EXPECT_EQ(readNotes(folder / "none.notes.json"), Result(NotesTrouble::missing));
    EXPECT_EQ(readNotes(folder.path()), Result(NotesTrouble::unreadable));
    ASSERT_TRUE(writeFile(folder / "empty.json", {}));
    EXPECT_EQ(readNotes(folder / "empty.json"), Result(NotesTrouble::damaged));
    const std::string text = notesJson(longNotes());
    ASSERT_TRUE(writeFile(folder / "whole.json", Bytes(text.begin(), text.end())));
    EXPECT_EQ(readNotes(folder / "whole.json"), Result(longNotes()));
    ASSERT_TRUE(writeFile(folder / "long.json", Bytes(notesFileLimit + 1, ' ')));
    EXPECT_EQ(readNotes(folder / "long.json"), Result(NotesTrouble::damaged));
}

}  // namespace
}  // namespace tessavo::test
