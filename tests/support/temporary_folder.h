#pragma once

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

namespace tessavo::test {

/// The name of a file that the system takes although it is text in no encoding.
/// \param end what follows behind the part that is no text
inline std::filesystem::path nameThatIsNoText(std::string_view end) {
    using Unit = std::filesystem::path::value_type;
    std::filesystem::path::string_type name(1, static_cast<Unit>(sizeof(Unit) == 1 ? 0xFF : 0xD800));
    name.append(end.begin(), end.end());
    return name;
}

/// A folder of its own that goes with the test.
class TemporaryFolder {
 public:
    TemporaryFolder() {
        std::random_device seed;
        do {
            path_ = std::filesystem::temp_directory_path() / ("tessavo-test-" + std::to_string(seed()));
        } while (!std::filesystem::create_directory(path_));
    }
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    [[nodiscard]] std::filesystem::path operator/(const std::string& name) const { return path_ / name; }
    [[nodiscard]] const std::filesystem::path& path() const { return path_; }

 private:
    std::filesystem::path path_;
};

/// \return false when not all of it could be written
inline bool writeFile(const std::filesystem::path& path, const std::vector<std::uint8_t>& bytes) {
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    for (const std::uint8_t byte : bytes) {
        file.put(static_cast<char>(byte));
    }
    return file.flush().good();
}

inline std::vector<std::uint8_t> readFile(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    std::vector<std::uint8_t> bytes;
    for (std::istreambuf_iterator<char> at(file), end; at != end; ++at) {
        bytes.push_back(static_cast<std::uint8_t>(*at));
    }
    return bytes;
}

}  // namespace tessavo::test
