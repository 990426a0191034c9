#include "params/file_notes.h"

#include <algorithm>
#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <random>
#include <string>

#include "params/set_text.h"
#include "support/harness.h"

namespace tessavo::test {
namespace {

struct TextField {
    const char* what;
    std::size_t limit;
    std::function<void(FileNotes&, std::u16string_view)> write;
    std::function<std::u16string(const FileNotes&)> read;
    bool hasLines = false;
};

/// Every text that notes have.
std::vector<TextField> allFields() {
    std::vector<TextField> fields;
    for (std::uint8_t c = 0; c < 8; ++c) {
        const RecordChannel channel{c};
        fields.push_back(
            {"name", 24,
             [=](FileNotes& notes, std::u16string_view text) { setChannelName(notes, channel, text); },
             [=](const FileNotes& notes) { return channelName(notes, channel); }});
        fields.push_back(
            {"measurement", 260,
             [=](FileNotes& notes, std::u16string_view text) { setMeasurementPath(notes, channel, text); },
             [=](const FileNotes& notes) { return measurementPath(notes, channel); }});
    }
    fields.push_back({"note", 1024, setNoteText, noteText, true});
    return fields;
}

/// Notes with a text in every field, each another one.
FileNotes fullNotes() {
    FileNotes notes;
    int number = 0;
    for (const TextField& field : allFields()) {
        const std::string text = "text " + std::to_string(++number);
        field.write(notes, std::u16string(text.begin(), text.end()));
    }
    return notes;
}

TEST(FileNotesTexts, EachIsKeptApartFromAllOthers) {
    const std::vector<TextField> fields = allFields();
    ASSERT_EQ(fields.size(), 17U);
    const FileNotes before = fullNotes();
    for (const TextField& written : fields) {
        FileNotes notes = before;
        written.write(notes, u"another one");
        for (const TextField& each : fields) {
            EXPECT_EQ(each.read(notes), &each == &written ? u"another one" : each.read(before)) << each.what;
        }
    }
}

TEST(FileNotesTexts, TakeAllTheirUnitsAndNoMore) {
    for (const TextField& field : allFields()) {
        for (const std::size_t length : {field.limit - 1, field.limit, field.limit + 1, field.limit + 5000}) {
            FileNotes notes = fullNotes();
            field.write(notes, std::u16string(length, u'\u00e4'));
            EXPECT_EQ(field.read(notes), std::u16string(std::min(length, field.limit), u'\u00e4'))
                << field.what;
            field.write(notes, u"short");
            EXPECT_EQ(field.read(notes), u"short");
            field.write(notes, {});
            EXPECT_EQ(field.read(notes), u"");
        }
    }
}

TEST(FileNotesTexts, AreNeverCutBetweenTwoSurrogates) {
    for (const TextField& field : allFields()) {
        FileNotes notes;
        field.write(notes, std::u16string(field.limit - 1, u'x') + u"\U0001F50A");
        EXPECT_EQ(field.read(notes), std::u16string(field.limit - 1, u'x')) << field.what;
        field.write(notes, std::u16string(field.limit - 2, u'x') + u"\U0001F50Ay");
        EXPECT_EQ(field.read(notes), std::u16string(field.limit - 2, u'x') + u"\U0001F50A") << field.what;
    }
}

TEST(FileNotesTexts, ControlCharactersBecomeSpacesAndOnlyTheNoteHasLines) {
    for (const TextField& field : allFields()) {
        for (unsigned unit = 0; unit <= 0x2030; ++unit) {
            const bool isControl =
                unit < 0x20 || (unit >= 0x7F && unit < 0xA0) || unit == 0x2028 || unit == 0x2029;
            const bool endsLine = field.hasLines && (unit == '\n' || unit == '\r');
            const auto shown = static_cast<char16_t>(endsLine ? u'\n' : isControl ? u' ' : unit);
            FileNotes notes;
            const std::u16string text{u'a', static_cast<char16_t>(unit), u'b'};
            field.write(notes, text);
            ASSERT_EQ(field.read(notes), (std::u16string{u'a', shown, u'b'})) << field.what << ' ' << unit;
        }
        FileNotes notes;
        field.write(notes, u"one\r\ntwo");
        EXPECT_EQ(field.read(notes), field.hasLines ? u"one\ntwo" : u"one  two");
    }
}

TEST(FileNotesTexts, HalfACharacterBecomesTheReplacement) {
    for (const TextField& field : allFields()) {
        FileNotes notes;
        field.write(notes, std::u16string{u'a', 0xD800, u'b', 0xDC00, 0xDBFF});
        EXPECT_EQ(field.read(notes), u"a\uFFFDb\uFFFD\uFFFD") << field.what;
    }
}

TEST(FileNotesTexts, NamesHaveNoSpacesAroundThem) {
    for (std::uint8_t c = 0; c < 8; ++c) {
        FileNotes notes;
        setChannelName(notes, {c}, u" \t Mid  L \n");
        EXPECT_EQ(channelName(notes, {c}), u"Mid  L");
        setChannelName(notes, {c}, u"   ");
        EXPECT_TRUE(isEmpty(notes));
        setChannelName(notes, {c}, std::u16string(23, u'x') + u" y");
        EXPECT_EQ(channelName(notes, {c}), std::u16string(23, u'x')) << "the cut leaves no space behind";
    }
}

TEST(FileNotesTexts, AreEmptyOnlyWithoutAnyText) {
    EXPECT_TRUE(isEmpty({}));
    for (const TextField& field : allFields()) {
        FileNotes notes;
        field.write(notes, u"x");
        EXPECT_FALSE(isEmpty(notes)) << field.what;
    }
}

TEST(FileNotesTexts, AnyBytesCanBeMadeWellFormed) {
    std::mt19937_64 random(3);
    const auto notes = std::make_unique<FileNotes>();
    for (int i = 0; i < 200; ++i) {
        auto* bytes = reinterpret_cast<std::uint8_t*>(notes.get());
        for (std::size_t at = 0; at < sizeof *notes; ++at) {
            bytes[at] = static_cast<std::uint8_t>(random() % (i % 2 == 0 ? 256 : 3) * (i % 3 == 0 ? 97 : 1));
        }
        const FileNotes tidy = wellFormed(*notes);
        EXPECT_EQ(wellFormed(tidy), tidy);
        for (const TextField& field : allFields()) {
            const std::u16string text = field.read(tidy);
            EXPECT_EQ(utf16FromUtf8(utf8FromUtf16(text)), text);
        }
    }
    EXPECT_EQ(wellFormed(fullNotes()), fullNotes());
}

// --- as a part of what is tuned

class NotesOfATuning : public ::testing::Test {
 protected:
    NotesOfATuning() {
        tuning_.state.setHistoryListener([this](TuningEvent event) { events_.push_back(event); });
        tuning_.state.setChangeListener([this] { ++changes_; });
        tuning_.state.takeUpdate();
    }
    Tuning tuning_;
    std::vector<TuningEvent> events_;
    int changes_ = 0;
};

TEST_F(NotesOfATuning, ChangeNeitherSetsNorImageAndSendNothing) {
    tuning_.state.setLiveMode(true);
    tuning_.state.takeUpdate();
    auto before = std::make_unique<TuningSnapshot>();
    tuning_.state.takeSnapshot(*before);
    changes_ = 0;
    tuning_.state.setNotes(fullNotes());
    auto after = std::make_unique<TuningSnapshot>();
    tuning_.state.takeSnapshot(*after);
    EXPECT_FALSE(tuning_.state.updatePending());
    EXPECT_EQ(changes_, 0);
    EXPECT_EQ(events_, std::vector{TuningEvent::changed});
    EXPECT_EQ(after->notes, fullNotes());
    after->notes = before->notes;
    EXPECT_TRUE(std::ranges::equal(tessavo::bytesOf(*after), tessavo::bytesOf(*before)));
}

TEST_F(NotesOfATuning, AreTakenWellFormed) {
    FileNotes odd = fullNotes();
    odd.names[3] = {u'a', u'\t', 0xD800, u'b', 0, u'x'};
    tuning_.state.setNotes(odd);
    EXPECT_EQ(channelName(tuning_.state.notes(), {3}), u"a \uFFFDb");
    EXPECT_EQ(tuning_.state.notes(), wellFormed(odd));
}

TEST_F(NotesOfATuning, ComeBackWithASnapshotAndStayThroughEverythingElse) {
    tuning_.state.setNotes(fullNotes());
    auto with = std::make_unique<TuningSnapshot>();
    tuning_.state.takeSnapshot(*with);
    tuning_.state.replaceStore(tuning_.state.store());
    tuning_.state.selectSet(3);
    tuning_.state.imageToSet();
    tuning_.state.setVolume(3, true);
    EXPECT_EQ(tuning_.state.notes(), fullNotes());
    tuning_.state.setNotes({});
    EXPECT_TRUE(isEmpty(tuning_.state.notes()));
    tuning_.state.restore(*with);
    EXPECT_EQ(tuning_.state.notes(), fullNotes());
    tuning_.state.start();
    EXPECT_TRUE(isEmpty(tuning_.state.notes()));
}

}  // namespace
}  // namespace tessavo::test
