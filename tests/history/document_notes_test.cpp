#include "history/document_notes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <utility>
#include <vector>

#include "history/file_history.h"
#include "history/history.h"
#include "support/settings_fakes.h"
#include "support/temporary_folder.h"

// What becomes of the notes when settings files are opened and saved.

namespace tessavo::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Pair;

class NotesBesideTheDocument : public ::testing::Test {
 protected:
    NotesBesideTheDocument() {
        history_.setListener([this](FileNews news, const std::filesystem::path& path) {
            news_.emplace_back(news, path.filename().string());
        });
    }
    [[nodiscard]] std::filesystem::path car() const { return folder_ / "car.eqs"; }
    [[nodiscard]] std::filesystem::path carNotes() const { return folder_ / "car.notes.json"; }
    static FileNotes named(std::u16string_view name) {
        FileNotes notes;
        for (std::uint8_t c = 0; c < 8; ++c) {
            setChannelName(notes, {c}, std::u16string(name) + static_cast<char16_t>(u'0' + c));
        }
        setNoteText(notes, name);
        return notes;
    }
    void put(const std::filesystem::path& path, const std::string& text) {
        ASSERT_TRUE(writeFile(path, Bytes(text.begin(), text.end())));
    }
    bool save(const std::filesystem::path& path) { return menu_.commands.saveSettingsTo(path); }
    bool open(const std::filesystem::path& path) { return menu_.commands.loadSettingsFrom(path); }
    TuningState& state() { return menu_.tuning.state; }
    /// What a file of notes holds; empty notes where there is none that can be read.
    static FileNotes in(const std::filesystem::path& path) {
        const auto found = readNotes(path);
        const auto* notes = std::get_if<FileNotes>(&found);
        return notes != nullptr ? *notes : FileNotes{};
    }
    /// The contents of this file that are kept, newest first.
    std::vector<Bytes> keptOf(const std::filesystem::path& path) {
        std::vector<Bytes> all;
        for (const KeptVersion& version : history_.versions().list()) {
            if (version.path == path) {
                EXPECT_EQ(version.kind, FileKind::notes);
                all.push_back(history_.versions().read(version.id).value_or(Bytes()));
            }
        }
        return all;
    }

    TemporaryFolder folder_;
    FileMenu menu_;
    FileHistory history_{menu_.tuning.state, menu_.commands, folder_ / "data"};
    std::vector<std::pair<FileNews, std::string>> news_;
};

TEST_F(NotesBesideTheDocument, AreWrittenOnlyWhenThereIsSomethingToKeep) {
    ASSERT_TRUE(save(car()));
    EXPECT_FALSE(std::filesystem::exists(carNotes()));
    std::vector<FileNotes> all{named(u"N")};
    for (std::uint8_t c = 0; c < 8; ++c) {
        setChannelName(all.emplace_back(), {c}, u"x");
        setMeasurementPath(all.emplace_back(), {c}, u"x");
    }
    setNoteText(all.emplace_back(), u"x");
    for (const FileNotes& notes : all) {
        std::filesystem::remove(carNotes());
        state().setNotes(notes);
        ASSERT_TRUE(save(car()));
        EXPECT_EQ(in(carNotes()), notes);
    }
    for (const auto& [news, file] : news_) {
        EXPECT_EQ(news, FileNews::saved) << file;
    }
}

TEST_F(NotesBesideTheDocument, AreReadWithTheSettings) {
    put(carNotes(), notesJson(named(u"N")));
    ASSERT_TRUE(save(folder_ / "other.eqs"));
    std::filesystem::rename(folder_ / "other.eqs", car());
    ASSERT_TRUE(open(car()));
    EXPECT_EQ(state().notes(), named(u"N"));
    EXPECT_FALSE(history_.documentDiffers());
}

TEST_F(NotesBesideTheDocument, AreEmptyAfterAFileThatHasNone) {
    ASSERT_TRUE(save(car()));
    state().setNotes(named(u"N"));
    news_.clear();
    ASSERT_TRUE(open(car()));
    EXPECT_TRUE(isEmpty(state().notes()));
    EXPECT_FALSE(history_.documentDiffers());
    EXPECT_THAT(news_, ElementsAre(Pair(FileNews::loaded, "car.eqs"))) << "none is no trouble";
}

TEST_F(NotesBesideTheDocument, OpeningIsOneStepWithThem) {
    History steps(state());
    state().setNotes(named(u"old"));
    ASSERT_TRUE(steps.commit());
    put(carNotes(), notesJson(named(u"N")));
    ASSERT_TRUE(writeFile(car(), Bytes()));
    ASSERT_TRUE(save(folder_ / "other.eqs"));
    ASSERT_TRUE(writeFile(car(), readFile(folder_ / "other.eqs")));
    state().setVolume(3, true);
    ASSERT_TRUE(steps.commit());
    ASSERT_TRUE(open(car()));
    ASSERT_TRUE(steps.commit("Opened car.eqs"));
    EXPECT_EQ(steps.steps().size(), 3U);
    ASSERT_TRUE(steps.undo());
    EXPECT_EQ(state().notes(), named(u"old"));
    EXPECT_TRUE(history_.documentDiffers());
    ASSERT_TRUE(steps.redo());
    EXPECT_EQ(state().notes(), named(u"N"));
    EXPECT_FALSE(history_.documentDiffers());
}

TEST_F(NotesBesideTheDocument, AloneMakeTheDocumentDiffer) {
    state().setNotes(named(u"N"));
    EXPECT_FALSE(history_.documentDiffers()) << "there is no document";
    ASSERT_TRUE(save(car()));
    EXPECT_FALSE(history_.documentDiffers());
    for (std::uint8_t c = 0; c < 8; ++c) {
        FileNotes notes = named(u"N");
        setChannelName(notes, {c}, u"other");
        state().setNotes(notes);
        EXPECT_TRUE(history_.documentDiffers()) << int{c};
        state().setNotes(named(u"N"));
        EXPECT_FALSE(history_.documentDiffers()) << int{c};
    }
    state().setNotes({});
    EXPECT_TRUE(history_.documentDiffers());
    ASSERT_EQ(history_.saveAgain(), SaveAgain::saved);
    EXPECT_FALSE(history_.documentDiffers());
    EXPECT_TRUE(isEmpty(in(carNotes()))) << "the file says so now";
    EXPECT_TRUE(std::filesystem::exists(carNotes()));
}

TEST_F(NotesBesideTheDocument, WhatTheyReplaceIsAnEarlierVersion) {
    state().setNotes(named(u"first"));
    ASSERT_TRUE(save(car()));
    const Bytes first = readFile(carNotes());
    state().setNotes(named(u"second"));
    ASSERT_TRUE(save(car()));
    EXPECT_THAT(keptOf(carNotes()), ElementsAre(first));
    ASSERT_TRUE(save(car()));
    EXPECT_THAT(keptOf(carNotes()), ElementsAre(first)) << "nothing was written";
    state().setNotes({});
    ASSERT_TRUE(save(car()));
    EXPECT_EQ(keptOf(carNotes()).size(), 2U);
    const std::string id = [&] {
        for (const KeptVersion& version : history_.versions().list()) {
            if (version.path == carNotes() && version.size == first.size() &&
                history_.versions().read(version.id) == first) {
                return version.id;
            }
        }
        return std::string();
    }();
    EXPECT_EQ(history_.bringBack(id), BroughtBack::done);
    EXPECT_EQ(readFile(carNotes()), first);
}

TEST_F(NotesBesideTheDocument, SavingOverOtherSettingsReplacesTheirNotesToo) {
    state().setNotes(named(u"theirs"));
    ASSERT_TRUE(save(folder_ / "their.eqs"));
    state().setNotes({});
    ASSERT_TRUE(save(folder_ / "their.eqs"));
    EXPECT_TRUE(isEmpty(in(folder_ / "their.notes.json")));
    ASSERT_TRUE(open(folder_ / "their.eqs"));
    EXPECT_TRUE(isEmpty(state().notes()));
}

struct Refused {
    const char* text;
    FileNews news;
};
constexpr Refused refused[]{{"{\"version\": 1, \"note\": 5}", FileNews::notesDamaged},
                            {"", FileNews::notesDamaged},
                            {"{\"version\": 2}", FileNews::notesNewer}};

TEST_F(NotesBesideTheDocument, ThatCannotBeReadLetTheSettingsOpenAndAreTold) {
    ASSERT_TRUE(save(car()));
    for (const Refused& each : refused) {
        put(carNotes(), each.text);
        state().setNotes(named(u"N"));
        news_.clear();
        ASSERT_TRUE(open(car()));
        EXPECT_THAT(news_, ElementsAre(Pair(FileNews::loaded, "car.eqs"), Pair(each.news, "car.notes.json")));
        EXPECT_TRUE(isEmpty(state().notes()));
        EXPECT_FALSE(history_.documentDiffers());
    }
    std::filesystem::remove(carNotes());
    std::filesystem::create_directory(carNotes());
    news_.clear();
    ASSERT_TRUE(open(car()));
    EXPECT_THAT(news_, ElementsAre(Pair(FileNews::loaded, "car.eqs"),
                                   Pair(FileNews::notesUnreadable, "car.notes.json")));
}

TEST_F(NotesBesideTheDocument, ThatCannotBeReadAreLeftAloneAsLongAsNothingHasToGoThere) {
    ASSERT_TRUE(save(car()));
    for (const Refused& each : refused) {
        const std::string text(each.text);
        put(carNotes(), text);
        ASSERT_TRUE(open(car()));
        state().setVolume(3, true);
        news_.clear();
        ASSERT_TRUE(save(car()));
        EXPECT_EQ(readFile(carNotes()), Bytes(text.begin(), text.end()));
        EXPECT_THAT(news_, ElementsAre(Pair(FileNews::saved, "car.eqs")));
        state().setNotes(named(u"N"));
        ASSERT_TRUE(save(car()));
        EXPECT_EQ(in(carNotes()), named(u"N"));
        EXPECT_EQ(keptOf(carNotes()).front(), Bytes(text.begin(), text.end())) << "kept first";
    }
}

// Another program held the file, a cable was out, or a second window has named the channels since.
TEST_F(NotesBesideTheDocument, ThatWereNotReadAreNotWrittenOverByNoneOnceTheyCanBe) {
    ASSERT_TRUE(save(car()));
    for (const char* const first : {"{", "{\"version\": 2}", ""}) {
        std::filesystem::remove(carNotes());
        if (*first != '\0') {
            put(carNotes(), first);
        }
        ASSERT_TRUE(open(car()));
        put(carNotes(), notesJson(named(u"N")));
        state().setVolume(first[0] == '{' ? 3 : 4, true);
        ASSERT_TRUE(save(car()));
        EXPECT_EQ(in(carNotes()), named(u"N")) << first;
        EXPECT_FALSE(history_.documentDiffers());
        // Somebody who names channels here means them.
        state().setNotes(named(u"mine"));
        ASSERT_TRUE(save(car()));
        EXPECT_EQ(in(carNotes()), named(u"mine"));
        state().setNotes({});
        ASSERT_TRUE(save(car()));
        EXPECT_TRUE(isEmpty(in(carNotes()))) << "and who removes them as well";
    }
    // Other settings are written over with all that stands beside them.
    std::filesystem::remove(carNotes());
    ASSERT_TRUE(open(car()));
    put(folder_ / "other.notes.json", notesJson(named(u"N")));
    ASSERT_TRUE(save(folder_ / "other.eqs"));
    EXPECT_TRUE(isEmpty(in(folder_ / "other.notes.json")));
}

TEST_F(NotesBesideTheDocument, ThatCanNeitherBeReadNorKeptAreNotWrittenOver) {
    FileHistory keepsNothing(state(), menu_.commands, {});
    keepsNothing.setListener([this](FileNews news, const std::filesystem::path& path) {
        news_.emplace_back(news, path.filename().string());
    });
    for (const Refused& each : refused) {
        std::filesystem::remove(car());
        const std::string text(each.text);
        put(carNotes(), text);
        state().setNotes(named(u"N"));
        news_.clear();
        ASSERT_TRUE(save(car()));
        EXPECT_EQ(readFile(carNotes()), Bytes(text.begin(), text.end()));
        EXPECT_THAT(news_, ElementsAre(Pair(FileNews::saved, "car.eqs"),
                                       Pair(FileNews::notesNotSaved, "car.notes.json")));
        EXPECT_TRUE(keepsNothing.documentDiffers());
    }
    // What can be read is written over as settings are: that it could not be kept is told.
    put(carNotes(), notesJson(named(u"old")));
    std::filesystem::remove(car());
    news_.clear();
    ASSERT_TRUE(save(car()));
    EXPECT_EQ(in(carNotes()), named(u"N"));
    EXPECT_THAT(news_,
                ElementsAre(Pair(FileNews::saved, "car.eqs"), Pair(FileNews::notKept, "car.notes.json")));
    menu_.commands.watchFiles(&history_);
}

TEST_F(NotesBesideTheDocument, AFolderInTheirPlaceIsTold) {
    std::filesystem::create_directory(carNotes());
    state().setNotes(named(u"N"));
    ASSERT_TRUE(save(car()));
    EXPECT_THAT(news_, ElementsAre(Pair(FileNews::saved, "car.eqs"),
                                   Pair(FileNews::notesNotSaved, "car.notes.json")));
    EXPECT_TRUE(std::filesystem::is_directory(carNotes()));
    EXPECT_TRUE(history_.documentDiffers());
    EXPECT_EQ(menu_.texts().size(), 0U) << "no box";
}

TEST_F(NotesBesideTheDocument, TheDocumentOfAnEarlierRunGoesOnWithThem) {
    state().setNotes(named(u"N"));
    ASSERT_TRUE(save(car()));
    news_.clear();
    history_.resumeDocument({}, std::nullopt);
    EXPECT_FALSE(history_.documentDiffers());
    history_.resumeDocument(car(), std::nullopt);
    EXPECT_FALSE(history_.documentDiffers());
    state().setNotes({});
    EXPECT_TRUE(history_.documentDiffers());
    put(carNotes(), "{");
    history_.resumeDocument(car(), std::nullopt);
    EXPECT_FALSE(history_.documentDiffers());
    EXPECT_THAT(news_, IsEmpty());
}

TEST_F(NotesBesideTheDocument, StayWhereAVersionIsOpenedAndWhereAFileIsRefused) {
    ASSERT_TRUE(save(car()));
    state().setVolume(3, true);
    state().setNotes(named(u"N"));
    ASSERT_TRUE(save(car()));
    std::string id;
    for (const KeptVersion& version : history_.versions().list()) {
        if (version.kind == FileKind::settings) {
            id = version.id;
        }
    }
    ASSERT_EQ(history_.open(id), OpenedVersion::done);
    EXPECT_EQ(state().notes(), named(u"N"));
    put(folder_ / "bad.eqs", "nothing");
    put(folder_ / "bad.notes.json", notesJson(named(u"bad")));
    EXPECT_FALSE(open(folder_ / "bad.eqs"));
    EXPECT_EQ(state().notes(), named(u"N"));
}

}  // namespace
}  // namespace tessavo::test
