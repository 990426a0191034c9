#include "history/document.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "history/whole_file.h"
#include "params/set_text.h"

namespace tessavo {

namespace {

using StoreBytes = std::array<std::uint8_t, parameterStoreSize>;

StoreBytes bytesOf(const ParameterStore& store) {
    StoreBytes bytes;
    std::memcpy(bytes.data(), &store, bytes.size());
    return bytes;
}

// Where the file is shorter, zeros follow.
StoreBytes startOf(const FileStart& file) {
    StoreBytes bytes{};
    std::copy_n(file.bytes.begin(), std::min(file.bytes.size(), bytes.size()), bytes.begin());
    return bytes;
}

}  // namespace

std::string Document::name() const {
    return utf8FromPath(path_.filename());
}

std::optional<Document::Stamp> Document::stampOf(const std::filesystem::path& path) {
    const auto file = readWholeFile(path);
    return file ? std::optional(Stamp{file->fileSize, md5(file->bytes)}) : std::nullopt;
}

// Another program may have written the file since the sets went there or came from there.
std::optional<Document::Stamp> Document::stampOf(const std::filesystem::path& path,
                                                 const ParameterStore& store) {
    const auto file = readWholeFile(path);
    return file && startOf(*file) == bytesOf(store) ? std::optional(Stamp{file->fileSize, md5(file->bytes)})
                                                    : std::nullopt;
}

void Document::take(const std::filesystem::path& path, const ParameterStore& store,
                    std::uintmax_t bytesInFile) {
    path_ = wholePath(path);
    store_ = store;
    stamp_ = stampOf(path_, store);
    bytesInFile_ = bytesInFile;
}

void Document::loaded(const std::filesystem::path& path, const ParameterStore& store,
                      std::uintmax_t bytesInFile) {
    take(path, store, bytesInFile);
}

void Document::saved(const std::filesystem::path& path, const ParameterStore& store) {
    take(path, store, parameterStoreSize);
}

void Document::notSaved(const std::filesystem::path& path) {
    if (!path_.empty() && wholePath(path) == path_) {
        stamp_ = stampOf(path_);
    }
}

void Document::resume(const std::filesystem::path& path) {
    *this = Document();
    if (path.empty()) {
        return;
    }
    path_ = wholePath(path);
    if (const auto file = readWholeFile(path_)) {
        const StoreBytes bytes = startOf(*file);
        std::memcpy(&store_.emplace(), bytes.data(), bytes.size());
        stamp_ = {file->fileSize, md5(file->bytes)};
    }
}

bool Document::differs(const ParameterStore& store) const {
    return !path_.empty() && !(store_ && std::memcmp(&*store_, &store, parameterStoreSize) == 0);
}

bool Document::changedOnDisk() const {
    return !path_.empty() && !(stamp_ && stampOf(path_) == stamp_);
}

std::string Document::shortFileText() const {
    return bytesInFile_ < parameterStoreSize
               ? name() + ": " + std::to_string(bytesInFile_) + " of " + std::to_string(parameterStoreSize) +
                     " bytes, the rest reads as zero"
               : std::string();
}

}  // namespace tessavo
