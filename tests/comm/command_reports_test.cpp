#include <utility>
#include <vector>

#include "comm/target_commands_fixture.h"

namespace tessavo::test {
namespace {

class CommandReports : public TargetCommandsTest {
 protected:
    using Result = CommandReport::Result;

    std::vector<CommandReport> reports() {
        transcript.clear();
        return std::exchange(reports_, {});
    }
    static CommandReport report(Command command, std::uint8_t set, Result result) {
        return {.command = command, .targetSet = set, .result = result};
    }

    TargetCommands told{
        tuning, engine, boxes,
        [](const std::filesystem::path&, std::size_t) {
            return FileStart{.bytes = Bytes(10), .fileSize = 10};
        },
        [this](const CommandReport& report) {
            EXPECT_THAT(transcript.lines(), testing::Not(testing::Contains(testing::StartsWith("box"))))
                << "before any box";
            reports_.push_back(report);
        }};

 private:
    std::vector<CommandReport> reports_;
};

TEST_F(CommandReports, TellWhatEachCommandCameTo) {
    for (std::uint8_t set = 0; set <= 5; ++set) {
        targetReplies(setReply(otherImage()));
        told.LoadSetFromRam(set);
        EXPECT_THAT(reports(), testing::ElementsAre(report(Command::readSet, set, Result::done)));
        told.LoadSetFromRam(set);
        EXPECT_THAT(reports(), testing::ElementsAre(report(Command::readSet, set, Result::exchangeFailed)));
        targetReplies(Bytes(4096, 0x22));
        told.LoadSetFromRam(set);
        EXPECT_THAT(reports(), testing::ElementsAre(report(Command::readSet, set, Result::wrongDigest)));
    }
    targetReplies(Bytes(20));
    told.ReadVersions();
    told.ReadVersions();
    EXPECT_THAT(reports(), testing::ElementsAre(report(Command::readVersions, 0, Result::done),
                                                report(Command::readVersions, 0, Result::exchangeFailed)));
    targetTakes(1);
    told.FlashFile("software.bin");
    told.FlashFile("software.bin");
    EXPECT_THAT(reports(), testing::ElementsAre(report(Command::sendSoftware, 0, Result::done),
                                                report(Command::sendSoftware, 0, Result::exchangeFailed)));
    tuning.setLiveMode(true);
    for (std::uint8_t set = 0; set <= 5; ++set) {
        targetTakes(1);
        told.SaveSetToRam(set);
        told.SaveSetToRam(set);
        EXPECT_THAT(reports(), testing::ElementsAre(report(Command::saveSet, set, Result::done),
                                                    report(Command::saveSet, set, Result::exchangeFailed)));
    }
}

TEST_F(CommandReports, TellNothingOfWhatWasNotTried) {
    told.SaveSetToRam(1);
    tuning.setLiveMode(true);
    told.LoadSetFromRam(1);
    told.SaveSetToRam(6);
    told.FlashFile({});
    told.ReadClipState();
    EXPECT_THAT(reports(), testing::IsEmpty());
}

}  // namespace
}  // namespace tessavo::test
