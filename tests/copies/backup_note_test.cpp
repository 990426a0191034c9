#include "copies/backup_note.h"

#include <chrono>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <random>
#include <string>

namespace tessavo::test {
namespace {

using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

BackupNote fullNote() {
    BackupNote note;
    note.time = std::chrono::sys_days(std::chrono::year(2026) / 3 / 9) + std::chrono::seconds(3723);
    note.port = "ttyUSB0";
    note.versions = TargetVersions{.hardware = 0x102, .software = 0xABCDEF01};
    for (std::size_t i = 0; i < note.sets.size(); ++i) {
        note.sets.at(i) = BackupNote::Set{.digest = {}, .sound = i != 2};
        note.sets.at(i)->digest.fill(static_cast<std::uint8_t>(0xA0 + i));
    }
    note.sets[4].reset();
    return note;
}

std::string replaced(std::string text, const std::string& what, const std::string& with) {
    const std::size_t at = text.find(what);
    EXPECT_NE(at, std::string::npos) << what;
    return at == std::string::npos ? text : text.replace(at, what.size(), with);
}

TEST(BackupNote, IsReadableAndSorted) {
    const std::string text = backupText(fullNote());
    EXPECT_TRUE(
        text.starts_with("{\n  \"format\": \"Tessavo backup of a target\",\n  \"formatVersion\": 1,\n"
                         "  \"hardwareVersion\": \"0x00000102\",\n  \"port\": \"ttyUSB0\",\n"
                         "  \"sets\": [\n    {\n      \"file\": \"set1.reply\",\n"
                         "      \"md5\": \"a0a0a0a0a0a0a0a0a0a0a0a0a0a0a0a0\",\n"
                         "      \"set\": \"set1\",\n      \"state\": \"sound\"\n    },"))
        << text;
    EXPECT_TRUE(
        text.ends_with("  \"softwareVersion\": \"0xABCDEF01\",\n"
                       "  \"time\": \"2026-03-09T01:02:03Z\"\n}\n"))
        << text;
    EXPECT_THAT(text, HasSubstr("\"file\": null,\n      \"md5\": null,\n      \"set\": \"set5\",\n"
                                "      \"state\": \"not read\""));
    EXPECT_THAT(text, HasSubstr("\"state\": \"wrong digest\""));
    EXPECT_THAT(text, HasSubstr("\"file\": \"default.reply\""));
}

TEST(BackupNote, ComesBackAsItWasWritten) {
    BackupNote note = fullNote();
    for (const bool versions : {true, false}) {
        if (!versions) {
            note.versions.reset();
        }
        const BackupNoteRead read = readBackupText(backupText(note));
        ASSERT_TRUE(read.note.has_value()) << read.trouble;
        EXPECT_EQ(read.note->time, note.time);
        EXPECT_EQ(read.note->port, note.port);
        EXPECT_EQ(read.note->sets, note.sets);
        ASSERT_EQ(read.note->versions.has_value(), versions);
        if (versions) {
            EXPECT_EQ(read.note->versions->hardware, 0x102U);
            EXPECT_EQ(read.note->versions->software, 0xABCDEF01U);
        }
    }
}

TEST(BackupNote, EveryTimeOfADayComesBack) {
    BackupNote note;
    std::mt19937 random(3);
    for (int i = 0; i < 300; ++i) {
        note.time = WallTime(std::chrono::seconds(random() * std::int64_t{1}));
        const BackupNoteRead read = readBackupText(backupText(note));
        ASSERT_TRUE(read.note.has_value()) << backupText(note);
        EXPECT_EQ(read.note->time, note.time);
    }
}

TEST(BackupNote, APortThatIsNoTextStillGivesOne) {
    BackupNote note = fullNote();
    note.port = "tty\xFF\x01\"\\";
    const BackupNoteRead read = readBackupText(backupText(note));
    ASSERT_TRUE(read.note.has_value()) << read.trouble;
    EXPECT_EQ(read.note->port, "tty\xEF\xBF\xBD\x01\"\\");
}

TEST(BackupNote, EveryWrongEntryIsRefusedWithItsReason) {
    struct Case {
        std::string what;
        std::string with;
        std::string reason;
    };
    const std::vector<Case> cases{
        {"Tessavo backup", "Another backup", "not that of a backup"},
        {"\"format\"", "\"formats\"", "not that of a backup"},
        {"\"formatVersion\": 1", "\"formatVersion\": 2", "a later version of Tessavo"},
        {"\"formatVersion\": 1", "\"formatVersion\": 0", "missing"},
        {"\"formatVersion\": 1", "\"formatVersion\": -1", "\"formatVersion\""},
        {"\"formatVersion\": 1", "\"formatVersion\": 1.0", "\"formatVersion\""},
        {"\"formatVersion\": 1", "\"formatVersion\": \"1\"", "\"formatVersion\""},
        {"\"port\": \"ttyUSB0\"", "\"port\": 7", "\"port\""},
        {"\"port\": \"ttyUSB0\"", "\"port\": null", "\"port\""},
        {"\"port\": \"ttyUSB0\"", "\"port\": \"a\", \"port\": \"b\"", "not JSON"},
        {"\"port\": \"ttyUSB0\",", "", "missing"},
        {"\"port\": \"ttyUSB0\"", "\"port\": \"a\", \"more\": 1", "one too many"},
        {"\"0x00000102\"", "\"0x102\"", "\"hardwareVersion\""},
        {"\"0x00000102\"", "\"0x0000010g\"", "\"hardwareVersion\""},
        {"\"0x00000102\"", "258", "\"hardwareVersion\""},
        {"\"0x00000102\"", "null", "\"hardwareVersion\""},
        {"\"0xABCDEF01\"", "\"0xabcdef01\"", "\"softwareVersion\""},
        {"2026-03-09T01:02:03Z", "2026-02-30T01:02:03Z", "\"time\""},
        {"2026-03-09T01:02:03Z", "2026-03-09T24:02:03Z", "\"time\""},
        {"2026-03-09T01:02:03Z", "2026-03-09 01:02:03Z", "\"time\""},
        {"2026-03-09T01:02:03Z", "2026-03-09T01:02:03", "\"time\""},
        {"2026-03-09T01:02:03Z", "9999-03-09T01:02:03Z", "\"time\""},
        {"2026-03-09T01:02:03Z", "-026-03-09T01:02:03Z", "\"time\""},
        {"\"set1.reply\"", "\"../set1.reply\"", "set 1"},
        {"\"set1.reply\"", "\"set2.reply\"", "set 1"},
        {"\"set1.reply\"", "null", "set 1"},
        {"\"set\": \"set2\"", "\"set\": \"set1\"", "set 2"},
        {"\"set\": \"default\"", "\"set\": 0", "the default set"},
        {"\"state\": \"sound\"", "\"state\": \"not read\"", "set 1"},
        {"\"state\": \"sound\"", "\"state\": \"fine\"", "set 1"},
        {"\"state\": \"sound\"", "\"state\": []", "set 1"},
        {"\"state\": \"sound\"", "\"state\": \"sound\", \"x\": 1", "set 1"},
        {"a0a0a0a0", "A0a0a0a0", "set 1"},
        {"a0a0a0a0", "a0a0a0", "set 1"},
        {"a0a0a0a0", "-0a0a0a0", "set 1"},
        {"\"md5\": null", "\"md5\": \"a0\"", "set 5"},
    };
    for (const Case& each : cases) {
        const BackupNoteRead read = readBackupText(replaced(backupText(fullNote()), each.what, each.with));
        EXPECT_FALSE(read.note.has_value()) << each.what << " -> " << each.with;
        EXPECT_THAT(read.trouble, HasSubstr(each.reason)) << each.what << " -> " << each.with;
    }
}

TEST(BackupNote, ALaterVersionIsNamedAsSuchWhateverItHolds) {
    const std::string later =
        replaced(backupText(fullNote()), "\"formatVersion\": 1", "\"formatVersion\": 2");
    for (const std::string state : {"{\"word\": [{\"since\": [1]}]}", "[]", "null"}) {
        const BackupNoteRead read = readBackupText(replaced(later, "\"sound\"", state));
        EXPECT_FALSE(read.note.has_value()) << state;
        EXPECT_EQ(read.trouble, "a later version of Tessavo wrote it") << state;
    }
}

TEST(BackupNote, WhatIsNoJsonOrOfAnotherShapeIsRefused) {
    const std::string text = backupText(fullNote());
    std::vector<std::string> bad{"",
                                 "{",
                                 "null",
                                 "[]",
                                 "17",
                                 "\"text\"",
                                 "{}",
                                 text + "x",
                                 text + text,
                                 "\xFF\xFE" + text,
                                 std::string(60000, '['),
                                 std::string(60000, '{'),
                                 std::string(70000, ' ') + text};
    bad.push_back(replaced(text, "\"sets\": [", "\"sets\": [null,"));
    bad.push_back(replaced(text, "\"sets\": [", "\"sets\": [[[[[]]]],"));
    bad.push_back(text.substr(0, text.find("\"sets\"")) +
                  "\"sets\": {}, \"softwareVersion\": null, \"time\": \"\"}");
    for (std::size_t length = 0; length + 2 < text.size(); length += 3) {
        bad.push_back(text.substr(0, length));
    }
    for (const std::string& each : bad) {
        const BackupNoteRead read = readBackupText(each);
        EXPECT_FALSE(read.note.has_value()) << each.substr(0, 80);
        EXPECT_THAT(read.trouble, Not(IsEmpty())) << each.substr(0, 80);
    }
}

TEST(BackupNote, AnyDamagedByteGivesANoteOrAReason) {
    const std::string text = backupText(fullNote());
    std::mt19937 random(5);
    for (int i = 0; i < 3000; ++i) {
        std::string damaged = text;
        damaged.at(random() % damaged.size()) = static_cast<char>(random() & 0xFF);
        const BackupNoteRead read = readBackupText(damaged);
        EXPECT_NE(read.note.has_value(), !read.trouble.empty()) << damaged;
    }
}

}  // namespace
}  // namespace tessavo::test
