#include "comm/target_commands.h"

#include <algorithm>
#include <cstring>
#include <utility>
#include <vector>

#include "base/number_text.h"
#include "comm/framing.h"
#include "params/image_digest.h"

namespace tessavo {

namespace {

constexpr std::uint8_t lastTargetSet = 5;

using ReplyBuffer = std::array<std::uint8_t, maximumFrameSize>;

std::uint32_t littleEndian32(const ReplyBuffer& reply, std::size_t offset) {
    std::uint32_t value = 0;
    for (std::size_t i = 4; i-- > 0;) {
        value = (value << 8) | reply[offset + i];
    }
    return value;
}

}  // namespace

std::string versionText(std::uint32_t version) {
    return "0x" + hexNumber(version, 8);
}

TargetCommands::TargetCommands(TuningState& tuning, ITransfers& transfers, IMessageBox& boxes,
                               FileReader readFile, Observer observer)
    : tuning_(tuning),
      transfers_(transfers),
      boxes_(boxes),
      readFile_(std::move(readFile)),
      observer_(std::move(observer)) {}

void TargetCommands::notify(const CommandReport& report) const {
    if (observer_) {
        observer_(report);
    }
}

bool TargetCommands::reported(Command command, std::uint8_t targetSet, bool done) const {
    notify({command, targetSet, done ? CommandReport::Result::done : CommandReport::Result::exchangeFailed});
    return done;
}

bool TargetCommands::SaveSetToRam(std::uint8_t targetSet) {
    if (targetSet > lastTargetSet) {
        return false;
    }
    if (!tuning_.liveMode()) {
        boxes_.showPlain(turnOnLiveModeText);
        return false;
    }
    const Md5Digest digest = md5Image(tuning_.image());
    std::array<std::uint8_t, 2 + sizeof(Md5Digest)> payload{command_code::saveSet, targetSet};
    std::copy(digest.begin(), digest.end(), payload.begin() + 2);
    return reported(Command::saveSet, targetSet, transfers_.SendToTarget(payload, MessageType::blocks128));
}

bool TargetCommands::LoadSetFromRam(std::uint8_t targetSet, const std::function<void()>& refreshPages) {
    if (targetSet > lastTargetSet) {
        return false;
    }
    if (tuning_.liveMode()) {
        boxes_.showPlain(turnOffLiveModeText);
        return false;
    }
    ReplyBuffer reply{};
    const std::array<std::uint8_t, 2> request{command_code::readSet, targetSet};
    if (!transfers_.ReceiveFromTarget(reply, request)) {
        return reported(Command::readSet, targetSet, false);
    }
    ParameterImage received;
    std::memcpy(&received, reply.data(), sizeof received);
    tuning_.replaceImage(received);
    const Md5Digest digest = md5Image(received);
    if (!std::equal(digest.begin(), digest.end(), reply.begin() + reply_layout::imageDigest)) {
        notify({Command::readSet, targetSet, CommandReport::Result::wrongDigest});
        boxes_.showPlain(checksumFailedText);
        return false;
    }
    tuning_.imageToSet();
    if (refreshPages) {
        refreshPages();
    }
    return reported(Command::readSet, targetSet, true);
}

std::optional<TargetVersions> TargetCommands::ReadVersions() {
    ReplyBuffer reply{};
    const bool read =
        transfers_.ReceiveFromTarget(reply, std::span(&command_code::readVersions, std::size_t{1}));
    if (!reported(Command::readVersions, 0, read)) {
        return std::nullopt;
    }
    return TargetVersions{littleEndian32(reply, reply_layout::hardwareVersion),
                          littleEndian32(reply, reply_layout::softwareVersion)};
}

std::optional<ClipState> TargetCommands::ReadClipState() {
    ReplyBuffer reply{};
    if (!transfers_.ReceiveFromTarget(reply, std::span(&command_code::readClipState, std::size_t{1}))) {
        return std::nullopt;
    }
    ClipState state;
    auto next = reply.begin();
    for (auto& group : state.groups) {
        std::copy_n(next, group.size(), group.begin());
        next += group.size();
    }
    std::copy_n(next, state.amplifiers.size(), state.amplifiers.begin());
    return state;
}

std::optional<std::filesystem::path> TargetCommands::SelectImageFile(IFileDialogs& dialogs) {
    auto path = dialogs.askOpenPath(softwareImageFilter);
    dialogs.resetLocale();
    return path;
}

bool TargetCommands::FlashFile(const std::filesystem::path& path) {
    if (path.empty()) {
        return false;
    }
    // One byte more than fits, so that a file that grows or hides its length is not cut short unnoticed.
    const auto file = readFile_(path, softwareImageLimit + 1);
    if (file && (file->fileSize > softwareImageLimit || file->bytes.size() > softwareImageLimit)) {
        boxes_.showError(fileTooLargeText);
        return false;
    }
    if (!file || file->bytes.size() < file->fileSize) {
        boxes_.showError(fileReadErrorText);
        return false;
    }
    return reported(Command::sendSoftware, 0,
                    transfers_.SendToTarget(file->bytes, MessageType::blocks1kWithCrc));
}

}  // namespace tessavo
