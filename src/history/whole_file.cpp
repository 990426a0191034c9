#include "history/whole_file.h"

#include <algorithm>
#include <system_error>

namespace tessavo {

std::optional<FileStart> readWholeFile(const std::filesystem::path& path) {
    std::error_code unknown;
    const std::uintmax_t size = std::filesystem::file_size(path, unknown);
    if (unknown) {
        return std::nullopt;
    }
    // One byte more shows a file that has grown meanwhile, and costs no memory where the file is small.
    return readFileStart(path, static_cast<std::size_t>(std::min<std::uintmax_t>(size + 1, wholeFileLimit)));
}

std::filesystem::path wholePath(const std::filesystem::path& path) {
    std::error_code unknown;
    std::filesystem::path whole = std::filesystem::absolute(path, unknown);
    return unknown ? path : whole;
}

}  // namespace tessavo
