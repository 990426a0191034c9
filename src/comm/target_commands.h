#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "base/file_dialogs.h"
#include "base/message_box.h"
#include "base/raw_file.h"
#include "comm/clip_layout.h"
#include "comm/transfers.h"
#include "params/tuning_state.h"

namespace tessavo {

/// First byte of every command payload.
namespace command_code {
inline constexpr std::uint8_t saveSet = 1;
inline constexpr std::uint8_t readSet = 4;
inline constexpr std::uint8_t readVersions = 5;
inline constexpr std::uint8_t readClipState = 6;
inline constexpr std::uint8_t confirmLiveSet = 8;
}  // namespace command_code

/// Places in the target's replies.
namespace reply_layout {
inline constexpr std::size_t imageDigest = 3404;  ///< readSet: MD5 of the image in front
inline constexpr std::size_t hardwareVersion = 12;
inline constexpr std::size_t softwareVersion = 16;
inline constexpr std::size_t confirmationBytes = 10;
inline constexpr std::uint8_t confirmation = 0x11;
}  // namespace reply_layout

/// A message that the target understands, as documents tell it.
struct TargetMessage {
    std::optional<std::uint8_t> code;  ///< of command_code; the images begin without one
    std::string_view name;
    std::uint8_t frameType;  ///< of frame_type; a message in 2048-byte blocks is a request, which has a reply
    std::string payload;     ///< what is in it
    std::string reply;       ///< what is in the payload of its reply; empty where none comes
};

/// All messages, by rising code. The simulated target answers each of them.
[[nodiscard]] const std::vector<TargetMessage>& targetMessages();

inline constexpr std::string_view turnOnLiveModeText = "Please turn on Live Mode";
inline constexpr std::string_view turnOffLiveModeText = "Please turn off Live Mode";
inline constexpr std::string_view checksumFailedText =
    "The Parameterset is not right.\n MD5 checksum failed!";
inline constexpr std::string_view fileTooLargeText = "File size too large!";
inline constexpr std::string_view fileReadErrorText = "Error reading file!";

/// Largest software image, in bytes.
inline constexpr std::size_t softwareImageLimit = 524288;
inline constexpr FileFilter softwareImageFilter{"Velmira Software Image File (*.bin)|*.bin||", "bin"};

struct TargetVersions {
    std::uint32_t hardware = 0;
    std::uint32_t software = 0;
};

/// What the reply to command_code::readVersions says.
/// \param reply at least 20 bytes
[[nodiscard]] TargetVersions versionsOf(std::span<const std::uint8_t> reply);

/// "0x" and eight upper-case hexadecimal digits.
[[nodiscard]] std::string versionText(std::uint32_t version);

/// Clipping of each stage and channel as the target sends it, laid out as comm/clip_layout.h tells.
struct ClipState {
    /// By stage; non-zero = clipping.
    std::array<std::array<std::uint8_t, clipEntryCount>, clipStages.size()> groups{};
    std::array<std::uint8_t, clipAmplifierNames.size()> amplifiers{};
};

/// The commands that a person gives.
enum class Command : std::uint8_t { saveSet, readSet, readVersions, sendSoftware, count };

/// What a command came to whose exchange was tried.
struct CommandReport {
    enum class Result : std::uint8_t {
        done,
        exchangeFailed,  ///< the engine has told why
        wrongDigest      ///< the set that came is not the one that the target sent
    };
    Command command = Command::readVersions;
    std::uint8_t targetSet = 0;  ///< of a command for a set: 1 to 5, 0 for the default set
    Result result = Result::done;

    friend bool operator==(const CommandReport&, const CommandReport&) = default;
};

/// The commands of the communication page. Each is one exchange; failures of an exchange are in its log.
///
/// Used on the user-interface thread.
class TargetCommands {
 public:
    /// Reads a file's start as readFileStart() does.
    using FileReader = std::function<std::optional<FileStart>(const std::filesystem::path&, std::size_t)>;

    /// Told once for each command that has tried its exchange, before any box about its result, on the
    /// command's thread. The clip state is no command of a person and is not told. May be empty.
    using Observer = std::function<void(const CommandReport&)>;

    /// Everything outlives this object.
    TargetCommands(TuningState& tuning, ITransfers& transfers, IMessageBox& boxes,
                   FileReader readFile = readFileStart, Observer observer = {});

    /// Saves the set that Live Mode sent last into a set of the target. Needs Live Mode on.
    /// \param targetSet 1 to 5, or 0 for the default set; another number does nothing
    /// \return whether the target took the command
    bool SaveSetToRam(std::uint8_t targetSet);

    /// Reads a set of the target into the image and, when its digest is right, into the current set. Needs
    /// Live Mode off. After a wrong digest the image keeps the received bytes and the set stays; after a
    /// failed exchange both stay.
    /// \param targetSet 1 to 5, or 0 for the default set; another number does nothing
    /// \param refreshPages called after the set has changed; may be empty
    /// \return whether the set has changed
    bool LoadSetFromRam(std::uint8_t targetSet, const std::function<void()>& refreshPages = {});

    /// \return nothing when the exchange failed
    std::optional<TargetVersions> ReadVersions();

    /// Any thread.
    /// \return nothing when the exchange failed
    std::optional<ClipState> ReadClipState();

    /// Asks for a software image and resets the C library's locale to "English" where it is known.
    /// \return nothing when cancelled
    static std::optional<std::filesystem::path> SelectImageFile(IFileDialogs& dialogs);

    /// Sends a software image of at most 524288 bytes. An empty path does nothing.
    ///
    /// A larger file, one that cannot be opened and one that cannot be read whole are told in an error box;
    /// nothing is sent then.
    bool FlashFile(const std::filesystem::path& path);

 private:
    void notify(const CommandReport& report) const;
    /// \return `done`
    [[nodiscard]] bool reported(Command command, std::uint8_t targetSet, bool done) const;

    TuningState& tuning_;
    ITransfers& transfers_;
    IMessageBox& boxes_;
    FileReader readFile_;
    Observer observer_;
};

}  // namespace tessavo
