#include <algorithm>
#include <gmock/gmock.h>
#include <map>
#include <memory>
#include <nlohmann/json.hpp>

#include "base/md5.h"
#include "cli/cli_fixture.h"
#include "history/history.h"
#include "history/recovery_store.h"
#include "params/settings_file.h"
#include "platform/data_folder.h"
#include "support/boxes.h"
#include "support/environment.h"

// What tessavoctl makes of the recovery files in the user's data folder, which the environment names.

namespace tessavo::test {

using namespace cli;

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;
using testing::StartsWith;
using Json = nlohmann::json;

// 2026-11-22 10:21:07.045 UTC.
constexpr std::chrono::milliseconds someTime{1795342867045};

/// Somebody whose window ended.
struct Session {
    RecordingBoxes boxes;
    TuningState tuning{boxes};
    WallTime now{someTime};
    std::unique_ptr<History> history;

    Session() {
        tuning.start();
        history = std::make_unique<History>(tuning, [this] { return now; });
    }
    void setVolume(double volumeDb, const std::string& text) {
        tuning.edit(FieldId::volume, {3, 0}, volumeDb, true);
        history->commit(text);
    }
    [[nodiscard]] RecoveryState state() const {
        RecoveryState state;
        state.trail = history->trail(recoveryStepLimit);
        state.time = now;
        state.process = 4711;
        state.filterMode = 1;
        return state;
    }
};

class Recover : public CommandTest {
 protected:
    Recover() { std::filesystem::create_directory(data_); }

    void leave(const RecoveryState& state, const std::string& name = "recovery.tsr") const {
        write((data_ / name).string(), encodeRecovery(state));
    }
    void leaveDamaged(const std::string& name) const {
        Bytes bytes = encodeRecovery(session_.state());
        bytes.resize(bytes.size() / 2);
        write((data_ / name).string(), bytes);
    }
    void leaveNewer(const std::string& name) const {
        Bytes bytes{'T', 'S', 'V', 'R', 'E', 'C', 'O', 'V', 3, 0, 0, 0};
        const Md5Digest digest = md5(bytes);
        bytes.insert(bytes.end(), digest.begin(), digest.end());
        write((data_ / name).string(), bytes);
    }
    [[nodiscard]] std::map<std::string, Bytes> dataFiles() const {
        std::map<std::string, Bytes> files;
        for (const auto& entry : std::filesystem::directory_iterator(data_)) {
            files[entry.path().filename().string()] = readFile(entry.path());
        }
        return files;
    }
    [[nodiscard]] Bytes recoveredStore() const {
        const ParameterStore& store = session_.tuning.store();
        const auto* bytes = reinterpret_cast<const std::uint8_t*>(&store);
        return {bytes, bytes + sizeof store};
    }

    std::filesystem::path data_ = folder_ / "data";
    Variable named_{dataFolderVariable, data_.c_str()};
    Variable zone_{"TZ", "UTC"};
    Session session_;
};

TEST_F(Recover, WithoutRecoveryFilesThereIsNothingToRestore) {
    for (const std::string folder : {"data", "missing"}) {
        const Variable other(dataFolderVariable, path(folder).c_str());
        for (const auto& arguments :
             {std::vector<std::string>{"recover"}, {"recover", "--output", path("o.eqs")}}) {
            const CommandResult result = run(arguments);
            EXPECT_EQ(result.code, 1);
            EXPECT_EQ(result.err, "tessavoctl: there is nothing to restore\n");
            EXPECT_THAT(result.out, IsEmpty());
        }
    }
    EXPECT_THAT(files(), ElementsAre("data"));
}

TEST_F(Recover, ASavedRunIsNothingToRestore) {
    RecoveryState state = session_.state();
    state.isSaved = true;
    leave(state);
    EXPECT_EQ(run({"recover"}).code, 1);
    EXPECT_EQ(dataFiles().size(), 1U) << "it is only read";
}

TEST_F(Recover, ShowsWhatAFileHolds) {
    session_.setVolume(3, "Channel 2 volume 3 dB");
    session_.now += std::chrono::minutes(1);
    session_.setVolume(-2.5, "Channel 2 volume \u22122.5 dB");
    session_.setVolume(0.5, "Channel 2 volume 0.5 dB");
    session_.tuning.selectSet(3);
    session_.setVolume(6, "Volume \x1B[2J");
    ASSERT_TRUE(session_.history->undo());
    leave(session_.state());
    const CommandResult result = run({"recover"});
    EXPECT_EQ(result.code, 0);
    EXPECT_THAT(result.err, IsEmpty());
    EXPECT_EQ(result.out, (data_ / "recovery.tsr").string() +
                              "\n"
                              "  time           2026-11-22 10:22:07\n"
                              "  settings file  none\n"
                              "  current set    4, \"Type 4\"\n"
                              "  sets           \"Type 1\", \"Type 2\", \"Type 3\", \"Type 4\", \"Type 5\"\n"
                              "  filter method  MZT\n"
                              "  steps          3 done, 1 undone\n"
                              "    2026-11-22 10:21:07  set 1  Channel 2 volume 3 dB\n"
                              "    2026-11-22 10:22:07  set 1  Channel 2 volume \u22122.5 dB\n"
                              "    2026-11-22 10:22:07  set 1  Channel 2 volume 0.5 dB\n"
                              "    2026-11-22 10:22:07  set 4  Volume \\x1b[2J (undone)\n"
                              "  differs from the defaults: 1 value\n"
                              "    set 1 channel[3].volume: 0.0 dB | 0.5 dB\n");
}

TEST_F(Recover, ComparesWithTheSettingsFile) {
    const std::string document = fresh("K\u00e4fer.eqs");
    for (int channel = 0; channel < 8; ++channel) {
        for (const FieldId field : {FieldId::volume, FieldId::delay, FieldId::groupGain}) {
            session_.tuning.edit(field, {static_cast<std::size_t>(channel), 0}, 1, true);
        }
    }
    RecoveryState state = session_.state();
    state.documentPath = document;
    leave(state);
    std::string out = run({"recover"}).out;
    EXPECT_THAT(out, HasSubstr("  settings file  " + document + "\n"));
    EXPECT_THAT(
        out, HasSubstr("  differs from the settings file: 24 values\n    set 1 channel[0].volume: 0.0 dB | "
                       "1.0 dB\n"));
    EXPECT_THAT(out, HasSubstr("    and 4 more; --json tells all\n"));
    std::filesystem::remove(document);
    out = run({"recover"}).out;
    EXPECT_THAT(out, HasSubstr("  differs from the settings file: that cannot be read\n"));
    const Json json = Json::parse(run({"recover", "--json"}).out);
    EXPECT_TRUE(json["recoveries"][0]["comparedWith"].is_null());
    EXPECT_TRUE(json["recoveries"][0]["differences"].is_null());
}

TEST_F(Recover, TellsProgramsEverything) {
    const std::string document = fresh("car.eqs");
    session_.setVolume(3, "Channel 2 volume 3 dB");
    session_.setVolume(4, "Channel 2 volume 4 dB");
    ASSERT_TRUE(session_.history->undo());
    RecoveryState state = session_.state();
    state.documentPath = document;
    leave(state);
    leaveDamaged("damaged-1.tsr");
    leaveNewer("ended-2.tsr");
    const CommandResult result = run({"recover", "--json"});
    EXPECT_EQ(result.code, 0);
    const Json json = Json::parse(result.out);
    const Json step{{"time", "2026-11-22T10:21:07.045Z"}, {"set", 1}, {"text", "Channel 2 volume 3 dB"}};
    const Json undone{{"time", "2026-11-22T10:21:07.045Z"}, {"set", 1}, {"text", "Channel 2 volume 4 dB"}};
    const Json difference{{"field", "set 1 channel[3].volume"}, {"before", "0.0 dB"}, {"after", "3.0 dB"}};
    const Json expected{{"file", (data_ / "recovery.tsr").string()},
                        {"time", "2026-11-22T10:21:07.045Z"},
                        {"process", 4711},
                        {"document", document},
                        {"currentSet", 1},
                        {"filterMode", "MZT"},
                        {"setNames", {"Type 1", "Type 2", "Type 3", "Type 4", "Type 5"}},
                        {"notes", nullptr},
                        {"done", Json::array({step})},
                        {"undone", Json::array({undone})},
                        {"comparedWith", "document"},
                        {"differences", Json::array({difference})}};
    ASSERT_THAT(json["recoveries"], SizeIs(1));
    EXPECT_EQ(json["recoveries"][0], expected) << json["recoveries"][0].dump(2);
    EXPECT_EQ(json["damaged"], Json::array({(data_ / "damaged-1.tsr").string()}));
    EXPECT_EQ(json["newer"], Json::array({(data_ / "ended-2.tsr").string()}));
    EXPECT_EQ(json["unreadable"], Json::array());
}

TEST_F(Recover, WithNothingToRestoreProgramsGetAnEmptyList) {
    const CommandResult result = run({"recover", "--json"});
    EXPECT_EQ(result.code, 1);
    EXPECT_EQ(Json::parse(result.out)["recoveries"], Json::array());
}

TEST_F(Recover, WritesTheSetsOfTheNewest) {
    session_.setVolume(1, "one");
    leave(session_.state(), "ended-20261122-102107-045.tsr");
    session_.now += std::chrono::hours(1);
    session_.setVolume(2, "two");
    leave(session_.state());
    const Bytes newest = recoveredStore();
    session_.now -= std::chrono::hours(2);
    session_.setVolume(3, "three");
    leave(session_.state(), "ended-20261122-092107-045.tsr");
    const auto before = dataFiles();
    const CommandResult result = run({"recover", "--output", path("rescued.eqs")});
    EXPECT_EQ(result.code, 0) << result.err;
    EXPECT_EQ(read(path("rescued.eqs")), newest);
    const auto places = std::array{result.out.find("recovery.tsr"), result.out.find("ended-20261122-102107"),
                                   result.out.find("ended-20261122-092107")};
    EXPECT_TRUE(std::ranges::is_sorted(places)) << "newest first\n" << result.out;
    EXPECT_EQ(dataFiles(), before) << "recovery files are only read";
    EXPECT_EQ(run({"diff", path("rescued.eqs"), fresh()}).out, "set 1 channel[3].volume: 2.0 dB | 0.0 dB\n");
}

TEST_F(Recover, LeavesAnExistingFileAloneUnlessItIsForced) {
    session_.setVolume(1, "one");
    leave(session_.state());
    const std::string mine = fresh("mine.eqs");
    const Bytes before = read(mine);
    CommandResult result = run({"recover", "--output", mine});
    EXPECT_EQ(result.code, 1);
    EXPECT_EQ(result.err, "tessavoctl: " + mine + ": exists already; --force writes over it\n");
    EXPECT_THAT(result.out, IsEmpty());
    EXPECT_EQ(read(mine), before);
    result = run({"recover", "--output", mine, "--force", "--json"});
    EXPECT_EQ(result.code, 0) << result.err;
    EXPECT_EQ(read(mine), recoveredStore());
    EXPECT_THAT(Json::parse(result.out)["recoveries"], SizeIs(1));
}

TEST_F(Recover, AFileThatCannotBeWrittenIsAFailure) {
    leave(session_.state());
    const CommandResult result = run({"recover", "--output", path("none/rescued.eqs")});
    EXPECT_EQ(result.code, 1);
    EXPECT_THAT(result.err, HasSubstr("Error writing data! " + path("none/rescued.eqs")));
    EXPECT_EQ(run({"recover", "--output", "/dev/full"}).code, 1);
}

TEST_F(Recover, OnlyDamagedFilesAreAFailureThatNamesThem) {
    leaveDamaged("recovery.tsr");
    leaveNewer("ended-2.tsr");
    std::filesystem::create_directory(data_ / "ended-3.tsr");
    const auto file = [&](const char* name) { return "tessavoctl: " + (data_ / name).string(); };
    const CommandResult result = run({"recover", "--quiet", "--output", path("o.eqs")});
    EXPECT_EQ(result.code, 1);
    EXPECT_EQ(result.err,
              file("recovery.tsr") + ": is damaged, nothing can be restored from it\n" + file("ended-2.tsr") +
                  ": a later version of Tessavo wrote it, and that version restores it\n" +
                  file("ended-3.tsr") + ": cannot be read\n" + "tessavoctl: there is nothing to restore\n");
    EXPECT_FALSE(std::filesystem::exists(path("o.eqs")));
}

TEST_F(Recover, DamagedFilesBesideAWholeOneAreNoted) {
    leave(session_.state());
    leaveDamaged("ended-1.tsr");
    const CommandResult result = run({"recover"});
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.err, "tessavoctl: " + (data_ / "ended-1.tsr").string() +
                              ": is damaged, nothing can be restored from it\n");
    EXPECT_THAT(result.out, Not(HasSubstr("ended-1.tsr")));
    EXPECT_THAT(run({"recover", "--quiet"}).err, IsEmpty());
}

TEST_F(Recover, ItsHelpNamesTheVariableAndTheFileOfNotes) {
    const std::string help = run({"recover", "--help"}).out;
    EXPECT_THAT(help, HasSubstr(dataFolderVariable));
    EXPECT_THAT(help, HasSubstr("NAME.notes.json"));
}

}  // namespace
}  // namespace tessavo::test
