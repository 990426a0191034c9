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

FileStamp stampOf(const FileStart& file) {
    return {file.fileSize, md5(file.bytes)};
}

std::optional<FileStamp> stampOf(const std::filesystem::path& path) {
    const auto file = readWholeFile(path);
    return file ? std::optional(stampOf(*file)) : std::nullopt;
}

// Another program may have written the file since the sets went there or came from there.
std::optional<FileStamp> stampOf(const std::filesystem::path& path, const ParameterStore& store) {
    const auto file = readWholeFile(path);
    return file && startOf(*file) == bytesOf(store) ? std::optional(stampOf(*file)) : std::nullopt;
}

}  // namespace

std::string Document::name() const {
    return utf8FromPath(path_.filename());
}

void Document::take(const std::filesystem::path& path, const ParameterStore& store,
                    std::uintmax_t bytesInFile) {
    path_ = wholePath(path);
    memory_ = {store, stampOf(path_, store), bytesInFile};
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
        memory_.stamp = stampOf(path_);
    }
}

void Document::resume(const std::filesystem::path& path, const std::optional<DocumentMemory>& memory,
                      const ParameterStore& store) {
    *this = Document();
    if (path.empty()) {
        return;
    }
    path_ = wholePath(path);
    const auto file = readWholeFile(path_);
    memory_ = memory.value_or(DocumentMemory());
    if (memory && (!file || memory_.stamp == stampOf(*file) || startOf(*file) != bytesOf(store))) {
        return;
    }
    if (file) {
        const StoreBytes bytes = startOf(*file);
        std::memcpy(&memory_.store.emplace(), bytes.data(), bytes.size());
        memory_.stamp = stampOf(*file);
        memory_.bytesInFile = parameterStoreSize;
    }
}

bool Document::differs(const ParameterStore& store) const {
    return !path_.empty() &&
           !(memory_.store && std::memcmp(&*memory_.store, &store, parameterStoreSize) == 0);
}

bool Document::changedOnDisk() const {
    return !path_.empty() && !(memory_.stamp && stampOf(path_) == memory_.stamp);
}

std::string Document::shortFileText() const {
    return memory_.bytesInFile < parameterStoreSize
               ? name() + ": " + std::to_string(memory_.bytesInFile) + " of " +
                     std::to_string(parameterStoreSize) + " bytes, the rest reads as zero"
               : std::string();
}

}  // namespace tessavo
