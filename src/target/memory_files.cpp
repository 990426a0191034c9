#include "target/memory_files.h"

#include <algorithm>
#include <optional>
#include <system_error>

#include "base/raw_file.h"
#include "comm/target_commands.h"

namespace tessavo {

namespace {

bool isThere(const std::filesystem::path& path) {
    std::error_code error;
    return std::filesystem::exists(std::filesystem::symlink_status(path, error));
}

void logProblem(const TargetLog& log, const std::filesystem::path& path, std::string_view problem) {
    warn(log, path.string() + " " + std::string(problem) + "; using the defaults instead");
}

}  // namespace

std::string MemoryFiles::setFileName(std::size_t set) {
    return set == 0 ? "default.bin" : "set" + std::to_string(set) + ".bin";
}

std::string MemoryFiles::prepare() const {
    std::error_code error;
    std::filesystem::create_directories(directory_, error);
    if (error) {
        return "cannot use " + directory_.string() + " for the target's state: " + error.message();
    }
    if (!std::filesystem::is_directory(directory_, error)) {
        return "cannot use " + directory_.string() + " for the target's state: not a directory";
    }
    return {};
}

void MemoryFiles::load(TargetMemory& memory, const TargetLog& log) const {
    for (std::size_t set = 0; set < targetSetCount; ++set) {
        const auto path = directory_ / setFileName(set);
        if (!isThere(path)) {
            continue;
        }
        const auto file = readFileStart(path, parameterImageSize);
        if (!file) {
            logProblem(log, path, "cannot be read");
        } else if (file->fileSize != parameterImageSize || file->bytes.size() != parameterImageSize) {
            logProblem(log, path,
                       "holds " + std::to_string(file->fileSize) + " bytes, not the " +
                           std::to_string(parameterImageSize) + " of a set");
        } else {
            std::copy(file->bytes.begin(), file->bytes.end(), memory.sets[set].begin());
        }
    }
    memory.live = memory.sets[0];

    const auto path = directory_ / softwareFileName;
    if (!isThere(path)) {
        return;
    }
    auto file = readFileStart(path, softwareImageLimit);
    if (!file) {
        logProblem(log, path, "cannot be read");
    } else if (file->fileSize > softwareImageLimit || file->bytes.size() != file->fileSize) {
        logProblem(log, path, "is larger than a software image can be");
    } else {
        memory.software = std::move(file->bytes);
    }
}

std::string MemoryFiles::write(const std::string& name, std::span<const std::uint8_t> bytes) const {
    const auto path = directory_ / name;
    auto temporary = path;
    temporary += ".new";
    std::error_code error;
    // What an earlier run left behind may be longer than the new bytes.
    std::filesystem::remove(temporary, error);
    const FileWrite outcome = writeFileStart(temporary, bytes);
    if (!outcome.opened || outcome.written != bytes.size()) {
        std::filesystem::remove(temporary, error);
        return "cannot write " + path.string();
    }
    std::filesystem::rename(temporary, path, error);
    if (error) {
        const std::string reason = error.message();
        std::filesystem::remove(temporary, error);
        return "cannot write " + path.string() + ": " + reason;
    }
    return {};
}

std::string MemoryFiles::saveSet(std::size_t set, const ImageBytes& image) const {
    return write(setFileName(set), image);
}

std::string MemoryFiles::saveSoftware(std::span<const std::uint8_t> software) const {
    return write(softwareFileName, software);
}

}  // namespace tessavo
