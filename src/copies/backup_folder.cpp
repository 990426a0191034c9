#include "copies/backup_folder.h"

#include <algorithm>
#include <chrono>
#include <span>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include "base/raw_file.h"
#include "copies/backup_note.h"

namespace tessavo {

namespace {

constexpr const char* cannotMakeText = "it cannot be made there";
constexpr const char* claimName = "writing";  // a folder, in the backup's until that is whole

// A name that ends in a separator names the folder in front of it.
std::filesystem::path folderOf(const std::filesystem::path& folder) {
    return folder.has_filename() ? folder : folder.parent_path();
}

std::filesystem::path pathOf(const std::filesystem::path& folder, const std::string& name) {
    return folder / name;
}

bool isThere(const std::filesystem::path& path) {
    std::error_code failed;
    return std::filesystem::symlink_status(path, failed).type() != std::filesystem::file_type::not_found;
}

// Whether a folder can be made at all, found out by making one.
bool canMake(const std::filesystem::path& folder) {
    std::error_code failed;
    const bool made = std::filesystem::create_directory(folder, failed);
    std::error_code ignored;
    if (made) {
        std::filesystem::remove(folder, ignored);
    }
    return made && !failed;
}

bool isRead(const SetCopy& set) {
    return set.state == SetState::sound || set.state == SetState::wrongDigest;
}

BackupNote noteOf(const TargetCopy& copy) {
    BackupNote note{.time = copy.time, .port = copy.port, .versions = copy.versions, .sets = {}};
    for (std::size_t i = 0; i < copy.sets.size(); ++i) {
        const SetCopy& set = copy.sets.at(i);
        if (isRead(set)) {
            note.sets.at(i) = {.digest = md5(set.reply), .sound = set.state == SetState::sound};
        }
    }
    return note;
}

/// Files that are written into a folder by one program only, and are gone again unless all of them were.
class NewFiles {
 public:
    explicit NewFiles(std::filesystem::path folder)
        : folder_(std::move(folder)), claim_(pathOf(folder_, claimName)) {}
    ~NewFiles() {
        std::error_code ignored;
        for (const std::filesystem::path& file : files_) {
            if (!kept_) {
                std::filesystem::remove(file, ignored);
            }
        }
        if (claimed_) {
            std::filesystem::remove(claim_, ignored);
        }
        if (made_ && !kept_) {
            std::filesystem::remove(folder_, ignored);
        }
    }
    NewFiles(const NewFiles&) = delete;
    NewFiles& operator=(const NewFiles&) = delete;

    bool makeFolder() {
        std::error_code failed;
        made_ = std::filesystem::create_directory(folder_, failed);
        // Of two programs that found the same folder empty one makes this.
        claimed_ = !failed && std::filesystem::create_directory(claim_, failed) && !failed;
        return claimed_ && holdsOnlyTheClaim();
    }
    bool write(const std::string& name, std::span<const std::uint8_t> bytes) {
        files_.push_back(pathOf(folder_, name));
        return !replaceFile(files_.back(), bytes);
    }
    void keep() { kept_ = true; }

 private:
    // Somebody may have put something there since it was looked at.
    [[nodiscard]] bool holdsOnlyTheClaim() const {
        std::error_code failed;
        std::filesystem::directory_iterator each(folder_, failed);
        std::size_t count = 0;
        for (; !failed && each != std::filesystem::directory_iterator(); each.increment(failed)) {
            ++count;
        }
        return !failed && count == 1;
    }

    std::filesystem::path folder_;
    std::filesystem::path claim_;
    std::vector<std::filesystem::path> files_;
    bool made_ = false;
    bool claimed_ = false;
    bool kept_ = false;
};

std::string notWritten(const std::string& name) {
    return name + " cannot be written";
}

// What is wrong with the file of a set; empty when the set is what the note tells, and then it is in `set`.
std::string readReply(const std::filesystem::path& folder, const BackupNote::Set& note, SetCopy& set) {
    const std::string name = replyFileName(set.targetSet);
    const std::filesystem::path path = pathOf(folder, name);
    const auto file = readFileStart(path, targetReplySize + 1);
    if (!file) {
        return name + (isThere(path) ? " cannot be read" : " is missing");
    }
    if (file->bytes.size() < targetReplySize) {
        return name + " is cut short";
    }
    if (file->bytes.size() > targetReplySize || md5(file->bytes) != note.digest) {
        return name + " is altered";
    }
    std::ranges::copy(file->bytes, set.reply.begin());
    if (isSound(set.reply) != note.sound) {
        set.reply.fill(0);
        return std::string(backupFileName).append(" tells something else of it than ").append(name);
    }
    set.state = note.sound ? SetState::sound : SetState::wrongDigest;
    return {};
}

std::string noteTrouble(std::string_view text) {
    return std::string(backupFileName).append(" cannot be used: ").append(text);
}

}  // namespace

std::string backupFolderTrouble(const std::filesystem::path& folder) {
    const std::filesystem::path place = folderOf(folder);
    if (place.empty()) {
        return "it has no name";
    }
    if (!isThere(place)) {
        return canMake(place) ? "" : cannotMakeText;
    }
    std::error_code failed;
    if (!std::filesystem::is_directory(place, failed)) {
        return "it exists and is no folder";
    }
    const bool empty = std::filesystem::is_empty(place, failed);
    if (failed) {
        return "it cannot be looked into";
    }
    if (!empty) {
        return "it exists and is not empty, and nothing is ever written over";
    }
    return canMake(place / "try") ? std::string() : "nothing can be written into it";
}

std::string writeBackup(const std::filesystem::path& folder, const TargetCopy& copy) {
    std::string trouble = backupFolderTrouble(folder);
    if (!trouble.empty()) {
        return trouble;
    }
    NewFiles files(folderOf(folder));
    if (!files.makeFolder()) {
        return cannotMakeText;
    }
    for (const SetCopy& set : copy.sets) {
        if (isRead(set) && !files.write(replyFileName(set.targetSet), set.reply)) {
            return notWritten(replyFileName(set.targetSet));
        }
    }
    // Each file is on the disk when its write returns, so that this one never stands alone.
    const std::string text = backupText(noteOf(copy));
    if (!files.write(backupFileName, {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()})) {
        return notWritten(backupFileName);
    }
    files.keep();
    return {};
}

BackupRead readBackup(const std::filesystem::path& folder) {
    const std::filesystem::path path = pathOf(folder, backupFileName);
    const auto file = readFileStart(path, backupNoteLimit + 1);
    if (!file) {
        return {.copy = {},
                .trouble = isThere(path)
                               ? noteTrouble("it cannot be read")
                               : std::string(backupFileName).append(" is missing, so it is no backup")};
    }
    BackupNoteRead read =
        readBackupText({reinterpret_cast<const char*>(file->bytes.data()), file->bytes.size()});
    if (!read.note) {
        return {.copy = {}, .trouble = noteTrouble(read.trouble)};
    }
    BackupRead result{.copy = TargetCopy(), .trouble = {}};
    result.copy->time = read.note->time;
    result.copy->port = read.note->port;
    result.copy->versions = read.note->versions;
    for (std::size_t i = 0; i < result.copy->sets.size(); ++i) {
        SetCopy& set = result.copy->sets.at(i);
        const auto& note = read.note->sets.at(i);
        if (!note) {
            continue;
        }
        set.trouble = readReply(folder, *note, set);
        if (!set.trouble.empty()) {
            set.state = SetState::lost;
        }
    }
    return result;
}

}  // namespace tessavo
