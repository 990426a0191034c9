#include <cstdint>
#include <filesystem>
#include <memory>
#include <span>
#include <unistd.h>

#include "base/raw_file.h"
#include "check.h"
#include "params/settings_file.h"
#include "params/tuning_state.h"

// Any file as a settings file: the first byte chooses the tested set and the filter mode, the rest is the
// file.

namespace {

using namespace tessavo;

/// A file of this process that goes when the program ends.
class ScratchFile {
 public:
    ScratchFile()
        : path_(std::filesystem::temp_directory_path() / ("tessavo-fuzz-" + std::to_string(getpid()))) {}
    ~ScratchFile() {
        std::error_code ignored;
        std::filesystem::remove(path_, ignored);
    }
    ScratchFile(const ScratchFile&) = delete;
    ScratchFile& operator=(const ScratchFile&) = delete;

    const std::filesystem::path& write(std::span<const std::uint8_t> bytes) {
        std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path_.c_str(), "wb"), std::fclose);
        fuzz::check(file != nullptr, "the scratch file can be written");
        fuzz::check(std::fwrite(bytes.data(), 1, bytes.size(), file.get()) == bytes.size(),
                    "the scratch file takes all bytes");
        return path_;
    }

 private:
    std::filesystem::path path_;
};

void useStore(const ParameterStore& store, std::uint32_t filterMode) {
    fuzz::SilentBoxes boxes;
    TuningState tuning(boxes);
    tuning.start();
    tuning.setFilterMode(filterMode);
    tuning.replaceStore(store);
    fuzz::check(fuzz::sameBytes(tuning.store(), store), "a loaded store is kept byte by byte");
    for (std::uint32_t set = 0; set < setCount; ++set) {
        tuning.selectSet(set);
        for (const Field& field : fieldTable()) {
            forEachElement(field, [&](FieldIndex index) {
                static_cast<void>(shownValue(tuning.currentParameterSet(), field, index));
            });
        }
    }
    fuzz::check(fuzz::sameBytes(tuning.store(), store), "a change of set changes no set");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static ScratchFile scratch;
    if (size == 0) {
        return 0;
    }
    const std::size_t testedSet = data[0] % (setCount + 1);
    const std::span<const std::uint8_t> content(data + 1, size - 1);
    const std::filesystem::path& path = scratch.write(content);

    const auto untouched = std::make_unique<ParameterStore>();
    std::memset(untouched.get(), 0x5A, sizeof(ParameterStore));
    const auto store = std::make_unique<ParameterStore>(*untouched);
    const LoadVerdict verdict = readSettings(path, testedSet, *store);
    fuzz::check(verdict != LoadVerdict::cannotOpen, "an existing file can be opened");
    if (verdict != LoadVerdict::loaded) {
        fuzz::check(fuzz::sameBytes(*store, *untouched), "a refused file leaves the store");
        return 0;
    }
    fuzz::check(testedSet < setCount && isValidRecord(store->sets.at(testedSet)),
                "a loaded file's tested set is valid");
    const auto start = readFileStart(path, parameterStoreSize);
    fuzz::check(start.has_value() && start->fileSize == content.size(), "the file's length is known");
    fuzz::check(std::memcmp(store.get(), content.data(), start->bytes.size()) == 0,
                "a loaded store holds the file's bytes");
    useStore(*store, data[0] / 8U % 3U);
    return 0;
}
