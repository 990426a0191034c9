#include "history/kept_versions.h"

#include <algorithm>
#include <array>
#include <span>
#include <system_error>
#include <tuple>
#include <utility>

#include "base/raw_file.h"
#include "history/kept_names.h"
#include "history/version_note.h"
#include "params/set_text.h"

namespace tessavo {

using kept::drop;
using kept::filesIn;
using kept::numberOf;

namespace {

constexpr std::string_view noteSuffix = ".txt";
constexpr std::array<std::string_view, 3> suffixes{".eqs", ".bin", ".json"};  // by FileKind

bool isRegular(const std::filesystem::path& path) {
    std::error_code unknown;
    return std::filesystem::status(path, unknown).type() == std::filesystem::file_type::regular;
}

std::filesystem::path bytesFile(const std::filesystem::path& folder, const KeptVersion& version) {
    return folder / (version.id + std::string(suffixes.at(static_cast<std::size_t>(version.kind))));
}

std::filesystem::path noteFile(const std::filesystem::path& folder, std::string_view id) {
    return folder / (std::string(id) + std::string(noteSuffix));
}

std::optional<VersionNote> noteOf(const std::filesystem::path& folder, std::string_view id) {
    const auto file = readWholeFile(noteFile(folder, id));
    return file ? readNote({reinterpret_cast<const char*>(file->bytes.data()), file->bytes.size()})
                : std::nullopt;
}

WallTime lastWritten(const std::filesystem::path& path) {
    std::error_code unknown;
    const auto time = std::filesystem::last_write_time(path, unknown);
    return unknown ? WallTime{}
                   : std::chrono::time_point_cast<WallTime::duration>(
                         std::filesystem::file_time_type::clock::to_sys(time));
}

// A version whose bytes are there; nothing for every other file.
std::optional<KeptVersion> versionIn(const std::filesystem::path& path) {
    const std::string stem = utf8FromPath(path.stem());
    const auto suffix = std::ranges::find(suffixes, utf8FromPath(path.extension()));
    std::error_code gone;
    const std::uintmax_t size = std::filesystem::file_size(path, gone);
    if (!numberOf(stem) || suffix == suffixes.end() || gone) {
        return std::nullopt;
    }
    KeptVersion version{stem, {}, static_cast<FileKind>(suffix - suffixes.begin()), {}, size};
    if (const auto note = noteOf(path.parent_path(), stem)) {
        version.path = note->path;
        version.time = note->time;
    } else {
        version.time = lastWritten(path);
    }
    return version;
}

// Settings files are never truncated when they are saved, but one that is brought back ends where it ended.
bool writeExactly(const std::filesystem::path& path, std::span<const std::uint8_t> bytes) {
    const FileWrite result = writeFileStart(path, bytes);
    if (!result.opened || result.written != bytes.size()) {
        return false;
    }
    std::error_code failed;
    if (isRegular(path) && std::filesystem::file_size(path, failed) > bytes.size()) {
        std::filesystem::resize_file(path, bytes.size(), failed);
    }
    return !failed;
}

}  // namespace

KeptVersions::KeptVersions(std::filesystem::path folder, std::function<WallTime()> now)
    : folder_(std::move(folder)),
      now_(now ? std::move(now) : [] { return std::chrono::system_clock::now(); }) {}

std::vector<KeptVersion> KeptVersions::list() const {
    std::vector<KeptVersion> versions;
    for (const std::filesystem::path& path : filesIn(folder_)) {
        if (auto version = versionIn(path)) {
            versions.push_back(std::move(*version));
        }
    }
    std::ranges::sort(versions, std::ranges::greater{}, [](const KeptVersion& version) {
        return std::tuple(numberOf(version.id), version.time, version.id);
    });
    return versions;
}

std::optional<KeptVersion> KeptVersions::find(std::string_view id) const {
    const std::vector<KeptVersion> versions = list();
    const auto found = std::ranges::find(versions, id, &KeptVersion::id);
    return found != versions.end() ? std::optional(*found) : std::nullopt;
}

std::optional<std::vector<std::uint8_t>> KeptVersions::read(std::string_view id) const {
    const auto version = find(id);
    if (!version) {
        return std::nullopt;
    }
    auto file = readWholeFile(bytesFile(folder_, *version));
    if (!file || file->bytes.size() != file->fileSize) {
        return std::nullopt;
    }
    const auto note = noteOf(folder_, id);
    if (note && (note->size != file->bytes.size() || note->digest != md5(file->bytes))) {
        return std::nullopt;
    }
    return std::move(file->bytes);
}

bool KeptVersions::keep(const std::filesystem::path& path, FileKind kind) {
    return keepBeside({}, path, kind);
}

bool KeptVersions::keepBeside(std::string_view spared, const std::filesystem::path& path, FileKind kind) {
    if (!isRegular(path)) {
        return true;
    }
    const auto file = readWholeFile(path);
    if (!file || file->bytes.size() > largestFile || file->bytes.size() != file->fileSize) {
        return false;
    }
    const std::filesystem::path place = wholePath(path);
    const std::vector<KeptVersion> versions = list();
    const auto newest = std::ranges::find(versions, place, &KeptVersion::path);
    if (newest != versions.end() && newest->size == file->fileSize && read(newest->id) == file->bytes) {
        return true;
    }
    if (folder_.empty() || !kept::makeFolder(folder_)) {
        return false;
    }
    const std::uint64_t last = versions.empty() ? 0 : numberOf(versions.front().id).value_or(0);
    const KeptVersion version{kept::makeId(kept::numberBehind(last)), place, kind, now_(), file->fileSize};
    const std::string note = noteText({place, version.time, version.size, md5(file->bytes)});
    // The bytes come last: where they are, it is known already where they stood.
    if (replaceFile(noteFile(folder_, version.id),
                    {reinterpret_cast<const std::uint8_t*>(note.data()), note.size()}) ||
        replaceFile(bytesFile(folder_, version), file->bytes)) {
        drop(bytesFile(folder_, version));
        drop(noteFile(folder_, version.id));
        return false;
    }
    dropOldest(spared);
    return true;
}

void KeptVersions::dropOldest(std::string_view spared) const {
    std::vector<KeptVersion> versions = list();
    while (versions.size() > mostVersions) {
        const auto oldest = versions.end() - (versions.back().id == spared ? 2 : 1);
        drop(bytesFile(folder_, *oldest));
        drop(noteFile(folder_, oldest->id));
        versions.erase(oldest);
    }
    if (versions.empty()) {
        return;
    }
    // What has no bytes is left from an end in the middle.
    for (const std::filesystem::path& path : filesIn(folder_)) {
        const std::string id = utf8FromPath(path.filename()).substr(0, kept::idLength);
        if (numberOf(id) && numberOf(id) < numberOf(versions.front().id) &&
            !std::ranges::count(versions, id, &KeptVersion::id)) {
            drop(path);
        }
    }
}

BroughtBack KeptVersions::bringBack(std::string_view id, const std::filesystem::path& to) {
    const auto version = find(id);
    if (!version) {
        return BroughtBack::unknown;
    }
    const auto bytes = read(id);
    if (!bytes) {
        return BroughtBack::damaged;
    }
    const std::filesystem::path& place = to.empty() ? version->path : to;
    if (place.empty()) {
        return BroughtBack::noPlace;
    }
    if (const auto there = readWholeFile(place);
        there && there->fileSize == bytes->size() && there->bytes == *bytes) {
        return BroughtBack::alreadyThere;
    }
    if (!keepBeside(id, place, version->kind)) {
        return BroughtBack::notKept;
    }
    return writeExactly(place, *bytes) ? BroughtBack::done : BroughtBack::notWritten;
}

}  // namespace tessavo
