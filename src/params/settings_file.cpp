#include "params/settings_file.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "base/raw_file.h"

namespace tessavo {

namespace {

template <typename Record>
SaveVerdict writeRecord(const std::filesystem::path& path, const Record& record) {
    std::array<std::uint8_t, sizeof(Record)> bytes{};
    std::memcpy(bytes.data(), &record, bytes.size());
    const FileWrite result = writeFileStart(path, bytes);
    if (!result.opened) {
        return SaveVerdict::cannotOpen;
    }
    return result.written == bytes.size() ? SaveVerdict::saved : SaveVerdict::incomplete;
}

}  // namespace

bool isValidRecord(const ParameterSet& set) {
    return set.recordSize == parameterSetSize;
}

LoadVerdict settingsFrom(std::span<const std::uint8_t> bytes, std::size_t testedSet, ParameterStore& store) {
    ParameterStore read;
    if (!bytes.empty()) {
        std::memcpy(&read, bytes.data(), std::min(bytes.size(), parameterStoreSize));
    }
    if (testedSet >= setCount || !isValidRecord(read.sets[testedSet])) {
        return LoadVerdict::incompatible;
    }
    store = read;
    return LoadVerdict::loaded;
}

LoadVerdict readSettings(const std::filesystem::path& path, std::size_t testedSet, ParameterStore& store,
                         std::uintmax_t* bytesInFile) {
    const auto start = readFileStart(path, parameterStoreSize);
    if (!start) {
        return LoadVerdict::cannotOpen;
    }
    const LoadVerdict verdict = settingsFrom(start->bytes, testedSet, store);
    if (verdict == LoadVerdict::loaded && bytesInFile != nullptr) {
        // A file may have become shorter while it was read.
        const bool isWhole = start->bytes.size() == parameterStoreSize;
        *bytesInFile = isWhole ? start->fileSize : start->bytes.size();
    }
    return verdict;
}

SaveVerdict writeSettings(const std::filesystem::path& path, const ParameterStore& store) {
    return writeRecord(path, store);
}

SaveVerdict writeImage(const std::filesystem::path& path, const ParameterImage& image) {
    return writeRecord(path, image);
}

}  // namespace tessavo
