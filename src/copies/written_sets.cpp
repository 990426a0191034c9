#include "copies/written_sets.h"

#include <utility>

namespace tessavo {

WrittenSets::WrittenSets(std::filesystem::path folder, std::function<WallTime()> now)
    : folder_(std::move(folder)), now_(std::move(now)) {}
bool WrittenSets::keep(std::uint8_t /*targetSet*/, const std::string& /*port*/,
                       const ParameterImage& /*image*/) {
    return false;
}
WrittenSetList WrittenSets::list() const {
    return {};
}
std::optional<ParameterImage> WrittenSets::read(std::string_view /*id*/) const {
    return {};
}
void WrittenSets::dropOldest() const {}

std::filesystem::path writtenSetsFolder(const std::filesystem::path& dataFolder) {
    return dataFolder.empty() ? std::filesystem::path() : dataFolder / "written-sets";
}

}  // namespace tessavo
