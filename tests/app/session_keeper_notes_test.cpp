#include "app/file_news_display.h"
#include "app/session_fixture.h"
#include "app/ui_file_dialogs.h"
#include "history/notes_file.h"

// What is kept of the names of channels that stand in no file.

namespace tessavo::test {
namespace {

class KeepingNotes : public Sessions {
 protected:
    /// Names a channel, as the dialog does it.
    void name(std::u16string_view text) const {
        FileNotes notes = run->tuning.notes();
        setChannelName(notes, recordChannelAt({2}), text);
        run->tuning.setNotes(notes);
        SessionRun::settleEvents();
    }
    void saveAs(const std::filesystem::path& file) const {
        run->dialogs.answer = file;
        run->frame->action(QStringLiteral("Save"))->trigger();
    }
};

TEST_F(KeepingNotes, NamesThatASaveCouldNotWriteAreKeptAlsoWhenAnotherFileIsOpened) {
    SessionRun& now = start();
    const QString other = now.settingsFileNamed("other.eqs", u"Other");
    // Nothing can be written in place of a folder.
    const std::filesystem::path car = folder / "car.eqs";
    std::filesystem::create_directory(notesPathOf(car));
    name(u"Mid L");
    saveAs(car);
    ASSERT_TRUE(std::filesystem::is_regular_file(car));
    ASSERT_TRUE(now.frame->fileNews().files().documentDiffers()) << "the sets are saved, the name is not";
    const auto replaced = now.state();
    ASSERT_TRUE(now.frame->openFile(other));
    ASSERT_FALSE(now.frame->fileNews().files().documentDiffers());
    ASSERT_TRUE(now.becomesKept());
    cutPower();
    SessionRun& next = start();
    next.answerNotice(QStringLiteral("Restore"));
    next.undoKey();
    EXPECT_TRUE(next.same(*replaced, *next.state()));
    EXPECT_EQ(channelName(next.tuning.notes(), recordChannelAt({2})), u"Mid L");
}

TEST_F(KeepingNotes, NamesThatWereSavedLeaveNothingWhenAnotherFileIsOpened) {
    SessionRun& now = start();
    const QString other = now.settingsFileNamed("other.eqs", u"Other");
    name(u"Mid L");
    saveAs(folder / "car.eqs");
    ASSERT_TRUE(now.frame->openFile(other));
    EXPECT_TRUE(now.becomesEmpty());
}

}  // namespace
}  // namespace tessavo::test
