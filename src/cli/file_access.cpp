#include "cli/file_access.h"

#include <algorithm>
#include <cstring>
#include <fstream>
#include <span>

#include "base/raw_file.h"
#include "params/set_text.h"
#include "params/settings_file.h"

namespace tessavo::cli {

namespace fs = std::filesystem;

namespace {

std::string setText(std::size_t setIndex) {
    return "set " + std::to_string(setIndex + 1);
}

void tellIncompatible(const std::string& file, const std::string& trouble, Reporter& reporter) {
    std::error_code error;
    const bool empty = fs::is_regular_file(pathOf(file), error) && fs::is_empty(pathOf(file), error);
    reporter.error(std::string(incompatibleFileText) + " " + file + ": " +
                   (empty ? "the file is empty" : trouble));
}

void tellUnreadable(const std::string& file, Reporter& reporter) {
    reporter.error(std::string(errorOpeningConfigurationText) + " " + file + ": " + readTrouble(file));
}

// Why a file could not be written, as far as it shows before trying; empty when nothing speaks against it.
std::string writeTrouble(const fs::path& path) {
    std::error_code error;
    const fs::file_status status = fs::status(path, error);
    if (fs::is_directory(status)) {
        return "is a directory";
    }
    if (fs::is_fifo(status)) {
        return "is a pipe";
    }
    if (fs::is_regular_file(status)) {
        // Opens without changing anything.
        return std::fstream(path, std::ios::in | std::ios::out | std::ios::binary).is_open()
                   ? ""
                   : "no permission to write";
    }
    if (!fs::exists(status)) {
        const fs::path folder = path.has_parent_path() ? path.parent_path() : fs::path(".");
        return fs::is_directory(folder, error) ? "" : "the folder does not exist";
    }
    return {};
}

bool holdsSettings(const fs::path& path) {
    ParameterStore store;
    for (std::size_t set = 0; set < setCount; ++set) {
        if (readSettings(path, set, store) == LoadVerdict::loaded) {
            return true;
        }
    }
    return false;
}

bool holdsImage(const fs::path& path) {
    const auto start = readFileStart(path, parameterImageSize);
    if (!start || start->bytes.size() < parameterImageSize) {
        return false;
    }
    ParameterImage image;
    std::memcpy(&image, start->bytes.data(), sizeof image);
    return image.imageSize == parameterImageSize;
}

template <typename Record>
std::vector<std::uint8_t> bytesOfRecord(const Record& record) {
    std::vector<std::uint8_t> bytes(sizeof(Record));
    std::memcpy(bytes.data(), &record, bytes.size());
    return bytes;
}

}  // namespace

fs::path pathOf(std::string_view argument) {
    return {std::u8string(argument.begin(), argument.end())};
}

std::string textOf(const fs::path& path) {
    return utf8FromPath(path);
}

bool isSameFile(const std::string& first, const std::string& second) {
    std::error_code error;
    if (fs::equivalent(pathOf(first), pathOf(second), error)) {
        return true;
    }
    const fs::path one = fs::weakly_canonical(pathOf(first), error);
    return !one.empty() && one == fs::weakly_canonical(pathOf(second), error);
}

bool isApart(const std::string& output, const std::string& input, Reporter& reporter) {
    if (output.empty() || !isSameFile(output, input)) {
        return true;
    }
    reporter.error(
        std::string(output).append(": is read by this command and is not written over; choose another name"));
    return false;
}

bool isExistingFile(const std::string& file) {
    // What is written to a device replaces nothing.
    std::error_code error;
    return fs::is_regular_file(pathOf(file), error);
}

std::string readTrouble(const std::string& file) {
    std::error_code error;
    const fs::file_status status = fs::status(pathOf(file), error);
    if (status.type() == fs::file_type::not_found) {
        return "no such file";
    }
    if (fs::is_directory(status)) {
        return "is a directory";
    }
    return fs::exists(status) && !fs::is_regular_file(status) ? "is no regular file" : "cannot be read";
}

std::string placedText(const std::string& file, std::size_t line, std::size_t column,
                       const std::string& reason) {
    std::string text = file;
    if (line != 0) {
        text.append(":").append(std::to_string(line));
        if (column != 0) {
            text.append(":").append(std::to_string(column));
        }
    }
    return text.append(": ").append(reason);
}

std::optional<ParameterStore> loadStore(const std::string& file, const std::set<std::size_t>& tested,
                                        Reporter& reporter) {
    ParameterStore store;
    const LoadVerdict verdict = readSettings(pathOf(file), *tested.begin(), store);
    if (verdict == LoadVerdict::cannotOpen) {
        tellUnreadable(file, reporter);
        return std::nullopt;
    }
    const auto invalid = verdict == LoadVerdict::incompatible
                             ? tested.begin()
                             : std::find_if(tested.begin(), tested.end(),
                                            [&](std::size_t set) { return !isValidRecord(store.sets[set]); });
    if (invalid != tested.end()) {
        tellIncompatible(file, setText(*invalid) + " has no valid record", reporter);
        return std::nullopt;
    }
    return store;
}

std::optional<ParameterStore> loadAnyStore(const std::string& file, Reporter& reporter) {
    ParameterStore store;
    for (std::size_t set = 0; set < setCount; ++set) {
        switch (readSettings(pathOf(file), set, store)) {
            case LoadVerdict::loaded:
                return store;
            case LoadVerdict::cannotOpen:
                tellUnreadable(file, reporter);
                return std::nullopt;
            case LoadVerdict::incompatible:
                break;
        }
    }
    tellIncompatible(file, "no set has a valid record", reporter);
    return std::nullopt;
}

std::optional<ParameterImage> loadImage(const std::string& file, Reporter& reporter) {
    const auto start = readFileStart(pathOf(file), parameterImageSize);
    if (!start) {
        reporter.error(std::string(errorOpeningBinaryText) + " " + file + ": " + readTrouble(file));
        return std::nullopt;
    }
    if (start->bytes.size() < parameterImageSize) {
        reporter.error(file + ": is no parameter image: it has " + std::to_string(start->bytes.size()) +
                       " bytes instead of " + std::to_string(parameterImageSize));
        return std::nullopt;
    }
    ParameterImage image;
    std::memcpy(&image, start->bytes.data(), sizeof image);
    if (image.imageSize != parameterImageSize) {
        reporter.error(file + ": is no parameter image: it starts with the number " +
                       std::to_string(image.imageSize) + " instead of " + std::to_string(parameterImageSize));
        return std::nullopt;
    }
    return image;
}

bool writeTextFile(const std::string& file, std::string_view text, Reporter& reporter) {
    const auto refuse = [&](std::string_view trouble) {
        reporter.error(std::string(file).append(": ").append(trouble));
        return false;
    };
    std::error_code error;
    fs::path path = pathOf(file);
    if (const std::string trouble = writeTrouble(path); !trouble.empty()) {
        return refuse(trouble);
    }
    const std::span bytes(reinterpret_cast<const std::uint8_t*>(text.data()), text.size());
    if (!isExistingFile(file)) {
        return writeFileStart(path, bytes).written == bytes.size() || refuse(errorWritingDataText);
    }
    if (holdsSettings(path) || holdsImage(path)) {
        return refuse("holds settings and is not replaced by a text; choose another name");
    }
    // Replacing it by its own name would leave the link's target as it was.
    path = fs::canonical(path, error);
    const fs::perms permissions = fs::status(path, error).permissions();
    if (error) {
        return refuse(error.message());
    }
    if (const std::error_code failed = replaceFile(path, bytes)) {
        return refuse(failed.message());
    }
    fs::permissions(path, permissions, error);
    return !error || refuse(error.message());
}

bool OutputFiles::check() {
    for (const Target& target : targets_) {
        const std::string trouble = writeTrouble(pathOf(target.file));
        if (!trouble.empty()) {
            tellUnopened(target, trouble);
            return false;
        }
        // The longer of the two would keep its tail, and be neither.
        const bool settings = target.kind == Kind::settings;
        if (isExistingFile(target.file) &&
            (settings ? holdsImage(pathOf(target.file)) : holdsSettings(pathOf(target.file)))) {
            reporter_.error(target.file + (settings ? ": is a parameter image and is not replaced by a "
                                                      "settings file; choose another name"
                                                    : ": is a settings file and is not replaced by a "
                                                      "parameter image; choose another name"));
            return false;
        }
    }
    return true;
}

bool OutputFiles::write(const ParameterStore& store, const ParameterImage& image) {
    if (!check()) {
        return false;
    }
    for (Target& target : targets_) {
        target.bytes = target.kind == Kind::settings ? bytesOfRecord(store) : bytesOfRecord(image);
        std::error_code error;
        target.before.existed = fs::exists(pathOf(target.file), error);
        if (fs::is_regular_file(pathOf(target.file), error)) {
            if (auto start = readFileStart(pathOf(target.file), target.bytes.size())) {
                target.before.size = start->fileSize;
                target.before.start = std::move(start->bytes);
            }
        }
    }
    for (auto target = targets_.begin(); target != targets_.end(); ++target) {
        if (!writeOne(*target)) {
            std::for_each(targets_.begin(), target, [this](const Target& written) { putBack(written); });
            return false;
        }
    }
    return true;
}

bool OutputFiles::writeOne(const Target& target) {
    const FileWrite result = writeFileStart(pathOf(target.file), target.bytes);
    if (!result.opened) {
        tellUnopened(target, "no permission to write");
        return false;
    }
    if (result.written != target.bytes.size()) {
        reporter_.error(std::string(errorWritingDataText) + " " + target.file);
        putBack(target);
        return false;
    }
    return true;
}

void OutputFiles::tellUnopened(const Target& target, const std::string& trouble) {
    const std::string_view text =
        target.kind == Kind::settings ? errorOpeningConfigurationText : errorOpeningBinaryText;
    reporter_.error(std::string(text) + " " + target.file + ": " + trouble);
    reporter_.error(std::string(errorWritingDataText) + " " + target.file);
}

void OutputFiles::putBack(const Target& target) {
    const fs::path path = pathOf(target.file);
    std::error_code error;
    if (!fs::is_regular_file(path, error)) {
        return;
    }
    if (!target.before.existed) {
        fs::remove(path, error);
        return;
    }
    bool restored = target.before.start.has_value();
    if (restored) {
        if (target.before.size < target.bytes.size()) {
            fs::resize_file(path, target.before.size, error);
        }
        restored =
            !error && writeFileStart(path, *target.before.start).written == target.before.start->size();
    }
    if (!restored) {
        reporter_.error(target.file + ": could not be put back as it was");
    }
}

}  // namespace tessavo::cli
