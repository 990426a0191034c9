#include "history/notes_changes.h"

#include <gtest/gtest.h>
#include <string>

#include "history/session.h"

namespace tessavo::test {
namespace {

/// By record channel.
constexpr std::array<int, 8> pageNumbers{3, 5, 7, 2, 4, 6, 8, 1};

TEST(NotesChanges, NameTheChannelAsThePagesCountIt) {
    for (std::uint8_t c = 0; c < 8; ++c) {
        FileNotes notes;
        setChannelName(notes, {c}, u"Mid L");
        const std::string channel = "Channel " + std::to_string(pageNumbers.at(c));
        EXPECT_EQ(describeNotesChange({}, notes), channel + " named Mid L");
        EXPECT_EQ(describeNotesChange(notes, {}), channel + " without a name");
        FileNotes measured;
        setMeasurementPath(measured, {c}, u"a.txt");
        EXPECT_EQ(describeNotesChange({}, measured), channel + ", other measurement");
        setMeasurementPath(notes, {c}, u"a.txt");
        EXPECT_EQ(describeNotesChange({}, notes), "Names and notes, 2 values");
    }
}

TEST(NotesChanges, TellOfSeveralByTheirNumberAndOfTheNote) {
    FileNotes notes;
    setNoteText(notes, u"driver's seat");
    EXPECT_EQ(describeNotesChange({}, notes), "Note changed");
    EXPECT_EQ(describeNotesChange(notes, {}), "Note removed");
    setChannelName(notes, {2}, u"Mid L");
    EXPECT_EQ(describeNotesChange({}, notes), "Channel 7 named Mid L, note changed");
    setChannelName(notes, {0}, u"Mid R");
    EXPECT_EQ(describeNotesChange({}, notes), "2 channels named, note changed");
    EXPECT_EQ(describeNotesChange(notes, notes), "");
}

TEST(NotesChanges, AreStepsThatCanBeUndone) {
    Session session;
    session.state.takeUpdate();
    FileNotes notes;
    std::vector<std::string> expected;
    for (std::uint8_t position = 0; position < 8; ++position) {
        setChannelName(notes, recordChannelAt({position}), u"A name of all characters");
        session.state.setNotes(notes);
        ASSERT_TRUE(session.commit());
        expected.push_back("Channel " + std::to_string(position + 1) + " named A name of all characters");
    }
    EXPECT_FALSE(session.state.updatePending());
    EXPECT_EQ(session.texts(), expected);
    for (std::uint8_t position = 8; position > 0; --position) {
        EXPECT_EQ(session.state.notes(), notes);
        setChannelName(notes, recordChannelAt({static_cast<std::uint8_t>(position - 1)}), {});
        ASSERT_TRUE(session.history.undo());
    }
    EXPECT_TRUE(isEmpty(session.state.notes()));
    ASSERT_TRUE(session.history.goTo(8));
    for (std::uint8_t channel = 0; channel < 8; ++channel) {
        EXPECT_EQ(channelName(session.state.notes(), {channel}), u"A name of all characters");
    }
}

TEST(NotesChanges, TheSameNotesOnceMoreAreNoStep) {
    Session session;
    FileNotes notes;
    setNoteText(notes, u"x");
    session.state.setNotes(notes);
    ASSERT_TRUE(session.commit());
    session.state.setNotes(notes);
    EXPECT_FALSE(session.commit());
}

}  // namespace
}  // namespace tessavo::test
