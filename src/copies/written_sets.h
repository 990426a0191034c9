#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "history/step.h"
#include "params/parameter_image.h"

namespace tessavo {

/// A set that the program has written into the target.
struct WrittenSet {
    std::string id;              ///< names it; unlike that of every other one
    std::uint8_t targetSet = 0;  ///< 1 to 5, or 0 for the default set
    WallTime time;               ///< when it was written
    std::string port;            ///< name of the port that it went through
};

/// What writtenSets() of the data folder holds.
struct WrittenSetList {
    std::vector<WrittenSet> sets;  ///< newest first
    std::size_t damaged = 0;       ///< others of which something is missing or altered
};

/// Keeps what the program itself wrote into sets of the target: the last 50 images, over all sets and
/// targets.
///
/// Each is two files of one folder: the image as `tessavoctl import` takes it ("0000000017-5E1F00AB.bin"),
/// and beside it a text that says which set, when and through which port ("0000000017-5E1F00AB.txt"). One of
/// which a byte is missing or altered is left out. Only the owner can read the folder.
///
/// Used on one thread; two programs may use one folder.
class WrittenSets {
 public:
    static constexpr std::size_t mostSets = 50;

    /// \param folder made when it is needed; empty for none, and then nothing can be kept
    /// \param now the clock that dates the sets; the system's when empty
    explicit WrittenSets(std::filesystem::path folder, std::function<WallTime()> now = {});

    /// Keeps what the target has just taken.
    /// \param targetSet 1 to 5, or 0 for the default set
    /// \return false when it could not be written
    bool keep(std::uint8_t targetSet, const std::string& port, const ParameterImage& image);

    [[nodiscard]] WrittenSetList list() const;
    /// \return nothing when there is no such set, or when it is damaged
    [[nodiscard]] std::optional<ParameterImage> read(std::string_view id) const;

 private:
    void dropOldest() const;

    std::filesystem::path folder_;
    std::function<WallTime()> now_;
};

/// The folder for them within the data folder; empty where there is none.
[[nodiscard]] std::filesystem::path writtenSetsFolder(const std::filesystem::path& dataFolder);

}  // namespace tessavo
