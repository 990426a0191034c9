#include "comm/target_commands.h"

#include <algorithm>
#include <cstring>
#include <initializer_list>
#include <utility>

#include "base/number_text.h"
#include "comm/framing.h"
#include "comm/set_messages.h"
#include "params/image_digest.h"

namespace tessavo {

namespace {

constexpr std::uint8_t lastTargetSet = 5;

using ReplyBuffer = std::array<std::uint8_t, maximumFrameSize>;

// Nothing when the exchange failed.
std::optional<ReplyBuffer> ask(ITransfers& transfers, std::initializer_list<std::uint8_t> request) {
    ReplyBuffer reply{};
    if (!transfers.ReceiveFromTarget(reply, std::span(request.begin(), request.size()))) {
        return std::nullopt;
    }
    return reply;
}

std::uint32_t littleEndian32(std::span<const std::uint8_t> reply, std::size_t offset) {
    std::uint32_t value = 0;
    for (std::size_t i = 4; i-- > 0;) {
        value = (value << 8) | reply[offset + i];
    }
    return value;
}

}  // namespace

const std::vector<TargetMessage>& targetMessages() {
    static const std::vector<TargetMessage> messages{
        {command_code::saveSet, "save the live set as set n", frame_type::block128,
         "code, set number, MD5 of the image (18 bytes)", ""},
        {command_code::readSet, "read set n", frame_type::block2k, "code, set number",
         "image at 0, MD5 of it at " + std::to_string(reply_layout::imageDigest)},
        {command_code::readVersions, "read versions", frame_type::block2k, "code",
         "hardware version (u32) at " + std::to_string(reply_layout::hardwareVersion) +
             ", software version (u32) at " + std::to_string(reply_layout::softwareVersion)},
        {command_code::readClipState, "read clip state", frame_type::block2k, "code",
         std::to_string(clipStateSize) + " bytes: four groups of eight, two amplifiers"},
        {command_code::confirmLiveSet, "confirm the live set", frame_type::block2k, "code",
         "first " + std::to_string(reply_layout::confirmationBytes) + " bytes all 0x" +
             hexNumber(reply_layout::confirmation, 2)},
        {std::nullopt, "live image", frame_type::block4k,
         "image (" + std::to_string(parameterImageSize) + " bytes), its MD5", ""},
        {std::nullopt, "software image", frame_type::block1k,
         "at most " + std::to_string(softwareImageLimit) + " bytes, then their CRC-16", ""},
    };
    return messages;
}

TargetVersions versionsOf(std::span<const std::uint8_t> reply) {
    return {littleEndian32(reply, reply_layout::hardwareVersion),
            littleEndian32(reply, reply_layout::softwareVersion)};
}

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
    return reported(Command::saveSet, targetSet,
                    transfers_.SendToTarget(saveMessage(targetSet, tuning_.image()), MessageType::blocks128));
}

bool TargetCommands::LoadSetFromRam(std::uint8_t targetSet, const std::function<void()>& refreshPages) {
    if (targetSet > lastTargetSet) {
        return false;
    }
    if (tuning_.liveMode()) {
        boxes_.showPlain(turnOffLiveModeText);
        return false;
    }
    const auto reply = ask(transfers_, {command_code::readSet, targetSet});
    if (!reply) {
        return reported(Command::readSet, targetSet, false);
    }
    ParameterImage received;
    std::memcpy(&received, reply->data(), sizeof received);
    tuning_.replaceImage(received);
    const Md5Digest digest = md5Image(received);
    if (!std::equal(digest.begin(), digest.end(), reply->begin() + reply_layout::imageDigest)) {
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
    const auto reply = ask(transfers_, {command_code::readVersions});
    if (!reported(Command::readVersions, 0, reply.has_value())) {
        return std::nullopt;
    }
    return versionsOf(*reply);
}

std::optional<ClipState> TargetCommands::ReadClipState() {
    const auto reply = ask(transfers_, {command_code::readClipState});
    if (!reply) {
        return std::nullopt;
    }
    ClipState state;
    const auto* next = reply->begin();
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
