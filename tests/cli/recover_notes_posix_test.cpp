#include <filesystem>
#include <gmock/gmock.h>
#include <memory>
#include <nlohmann/json.hpp>
#include <sys/stat.h>
#include <variant>

#include "cli/cli_fixture.h"
#include "history/history.h"
#include "history/notes_file.h"
#include "history/recovery_file.h"
#include "platform/data_folder.h"
#include "support/boxes.h"
#include "support/environment.h"

// What tessavoctl makes of the names of channels and the note in a recovery file.

namespace tessavo::test {

using namespace cli;

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using Json = nlohmann::json;

RecordChannel channelAt(int number) {
    return recordChannelAt({static_cast<std::uint8_t>(number - 1)});
}

FileNotes someNotes() {
    FileNotes notes;
    setChannelName(notes, channelAt(1), u"Tweeter L");
    setChannelName(notes, channelAt(7), u"K\u00e4fer \"R\"");
    setNoteText(notes, u"Both seats.\nWindows shut.");
    setMeasurementPath(notes, channelAt(7), u"sweeps/r.txt");
    return notes;
}

class RecoverNotes : public CommandTest {
 protected:
    RecoverNotes() {
        std::filesystem::create_directory(data_);
        tuning_.start();
        history_ = std::make_unique<History>(tuning_);
        tuning_.edit(FieldId::volume, {3, 0}, 2, true);
        history_->commit();
    }
    void leave(const FileNotes& notes) {
        tuning_.setNotes(notes);
        history_->commit();
        RecoveryState state;
        state.trail = history_->trail(recoveryStepLimit);
        write((data_ / "recovery.tsr").string(), encodeRecovery(state));
    }
    [[nodiscard]] CommandResult rescue(const std::vector<std::string>& more = {}) const {
        std::vector<std::string> arguments{"recover", "--output", settings_};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return run(arguments);
    }
    [[nodiscard]] FileNotes written() const {
        const auto found = readNotes(notes_);
        EXPECT_TRUE(std::holds_alternative<FileNotes>(found));
        const auto* const notes = std::get_if<FileNotes>(&found);
        return notes != nullptr ? *notes : FileNotes{};
    }
    static Bytes bytesOf(const FileNotes& notes) {
        const std::string text = notesJson(notes);
        return {text.begin(), text.end()};
    }
    /// Nothing is written, and the message tells why.
    void expectRefused(const std::vector<std::string>& more, const std::string& message) const {
        const auto before = files();
        const CommandResult result = rescue(more);
        EXPECT_EQ(result.code, 1);
        EXPECT_EQ(result.err, "tessavoctl: " + message + "\n");
        EXPECT_EQ(files(), before) << "the settings are not written either";
    }

    std::filesystem::path data_ = folder_ / "data";
    Variable named_{dataFolderVariable, data_.c_str()};
    Variable zone_{"TZ", "UTC"};
    std::string settings_ = path("rescued.eqs");
    std::string notes_ = path("rescued.notes.json");
    RecordingBoxes boxes_;
    TuningState tuning_{boxes_};
    std::unique_ptr<History> history_;
};

TEST_F(RecoverNotes, AreShown) {
    leave(someNotes());
    const std::string out = run({"recover"}).out;
    EXPECT_THAT(out, HasSubstr("  names          channel 1 \"Tweeter L\", channel 7 \"K\u00e4fer \"R\"\"\n"
                               "  note           \"Both seats. Windows shut.\"\n"
                               "  measurements   channel 7 \"sweeps/r.txt\"\n"
                               "  steps "));
    const Json json = Json::parse(run({"recover", "--json"}).out);
    const std::string text = notesJson(someNotes());
    EXPECT_EQ(json["recoveries"][0]["notes"], Json::parse(text));
    EXPECT_FALSE(std::filesystem::exists(notes_)) << "without --output nothing is written";
}

TEST_F(RecoverNotes, WithoutAnyNothingIsShownOrWritten) {
    leave({});
    const std::string out = rescue().out;
    for (const char* const word : {"names ", "note ", "measurements"}) {
        EXPECT_THAT(out, Not(HasSubstr(word)));
    }
    EXPECT_TRUE(Json::parse(run({"recover", "--json"}).out)["recoveries"][0]["notes"].is_null());
    EXPECT_THAT(files(), ElementsAre("data", "rescued.eqs"));
}

TEST_F(RecoverNotes, AreWrittenBesideTheSettings) {
    for (const FileNotes& notes : {someNotes(), [] {
                                       FileNotes only;
                                       setMeasurementPath(only, channelAt(8), u"a");
                                       return only;
                                   }()}) {
        leave(notes);
        const CommandResult result = rescue();
        EXPECT_EQ(result.code, 0) << result.err;
        EXPECT_THAT(files(), ElementsAre("data", "rescued.eqs", "rescued.notes.json"));
        EXPECT_EQ(written(), notes);
        EXPECT_EQ(std::filesystem::status(notes_).permissions(),
                  std::filesystem::status(settings_).permissions());
        std::filesystem::remove(notes_);
        std::filesystem::remove(settings_);
    }
}

TEST_F(RecoverNotes, ThatStandThereAreLeftAloneUnlessItIsForced) {
    FileNotes mine;
    setChannelName(mine, channelAt(2), u"Mine");
    for (const FileNotes& recovered : {someNotes(), FileNotes{}}) {
        leave(recovered);
        for (const bool withSettings : {false, true}) {
            write(notes_, bytesOf(mine));
            expectRefused({},
                          (withSettings ? settings_ : notes_) + ": exists already; --force writes over it");
            EXPECT_EQ(written(), mine);
            EXPECT_EQ(rescue({"--force"}).code, 0);
            EXPECT_EQ(written(), recovered) << "names of other settings would be wrong";
        }
        std::filesystem::remove(settings_);
        std::filesystem::remove(notes_);
    }
}

TEST_F(RecoverNotes, ThatAreTheSameNeedNoForce) {
    leave(someNotes());
    const std::string text = Json::parse(notesJson(someNotes())).dump();
    write(notes_, Bytes(text.begin(), text.end()));
    EXPECT_EQ(rescue().code, 0);
    EXPECT_EQ(read(notes_), Bytes(text.begin(), text.end())) << "written by hand, and left so";
}

TEST_F(RecoverNotes, AFileThatIsNoNotesIsLeftAloneUnlessThereIsSomethingToWrite) {
    const Bytes strange{'n', 'o'};
    write(notes_, strange);
    leave({});
    EXPECT_EQ(rescue().code, 0);
    EXPECT_EQ(read(notes_), strange);
    std::filesystem::remove(settings_);
    leave(someNotes());
    expectRefused({}, notes_ + ": exists already; --force writes over it");
    EXPECT_EQ(read(notes_), strange);
    EXPECT_EQ(rescue({"--force"}).code, 0);
    EXPECT_EQ(written(), someNotes());
}

TEST_F(RecoverNotes, NeverReplaceAFolderOrAPipe) {
    leave(someNotes());
    std::filesystem::create_directory(notes_);
    expectRefused({"--force"}, notes_ + ": is a directory");
    std::filesystem::remove(notes_);
    ASSERT_EQ(mkfifo(notes_.c_str(), 0600), 0);
    expectRefused({"--force"}, notes_ + ": is no regular file");
    EXPECT_TRUE(std::filesystem::is_fifo(notes_));
}

TEST_F(RecoverNotes, AreWrittenWhereALinkLeads) {
    leave(someNotes());
    std::filesystem::create_directory(folder_ / "other");
    const std::filesystem::path place = folder_ / "other" / "names.json";
    write(place.string(), bytesOf({}));
    std::filesystem::create_symlink(place, notes_);
    expectRefused({}, notes_ + ": exists already; --force writes over it");
    EXPECT_EQ(rescue({"--force"}).code, 0);
    EXPECT_TRUE(std::filesystem::is_symlink(notes_));
    EXPECT_EQ(written(), someNotes());
    EXPECT_EQ(read(place.string()), bytesOf(someNotes()));
}

TEST_F(RecoverNotes, AreNotWrittenWhereTheSettingsAreNotAndNotBesideADevice) {
    leave(someNotes());
    settings_ = path("none/rescued.eqs");
    EXPECT_EQ(rescue().code, 1);
    settings_ = "/dev/null";
    EXPECT_EQ(rescue().code, 0);
    EXPECT_FALSE(std::filesystem::exists("/dev/null.notes.json"));
    EXPECT_THAT(files(), ElementsAre("data"));
}

// The folder takes a new name for the settings, but the notes need one that is longer than names may be.
TEST_F(RecoverNotes, ThatCannotBeWrittenAreAFailureBehindTheSettings) {
    leave(someNotes());
    const std::string longest(250, 'x');
    settings_ = path(longest + ".eqs");
    const CommandResult result = rescue();
    EXPECT_EQ(result.code, 1);
    EXPECT_EQ(result.err, "tessavoctl: " + path(longest + ".notes.json") +
                              ": could not be written; the settings file was\n");
    EXPECT_THAT(files(), ElementsAre("data", longest + ".eqs"));
}

}  // namespace
}  // namespace tessavo::test
