#include "params/settings_file.h"

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

LoadVerdict readSettings(const std::filesystem::path& path, std::size_t testedSet, ParameterStore& store) {
    const auto start = readFileStart(path, parameterStoreSize);
    if (!start) {
        return LoadVerdict::cannotOpen;
    }
    ParameterStore read;
    std::memcpy(&read, start->bytes.data(), start->bytes.size());
    if (testedSet >= setCount || !isValidRecord(read.sets[testedSet])) {
        return LoadVerdict::incompatible;
    }
    store = read;
    return LoadVerdict::loaded;
}

SaveVerdict writeSettings(const std::filesystem::path& path, const ParameterStore& store) {
    return writeRecord(path, store);
}

SaveVerdict writeImage(const std::filesystem::path& path, const ParameterImage& image) {
    return writeRecord(path, image);
}

}  // namespace tessavo
