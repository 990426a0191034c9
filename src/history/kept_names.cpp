#include "history/kept_names.h"

#include <algorithm>
#include <random>
#include <system_error>

#include "base/number_text.h"
#include "platform/data_folder.h"

namespace tessavo::kept {

namespace {

constexpr std::size_t numberDigits = 10;
constexpr std::size_t markDigits = 8;
constexpr std::uint64_t largestNumber = 9'999'999'999;
static_assert(idLength == numberDigits + 1 + markDigits);

}  // namespace

std::optional<std::uint64_t> numberOf(std::string_view id) {
    const auto isDigit = [](char letter) {
        return (letter >= '0' && letter <= '9') || (letter >= 'A' && letter <= 'F');
    };
    if (id.size() != idLength || id[numberDigits] != '-' ||
        !std::ranges::all_of(id.substr(numberDigits + 1), isDigit)) {
        return std::nullopt;
    }
    return wholeNumber<std::uint64_t>(id.substr(0, numberDigits));
}

std::uint64_t numberBehind(std::uint64_t last) {
    return std::min(last + 1, largestNumber);
}

std::string makeId(std::uint64_t number) {
    std::string digits = std::to_string(number);
    digits.insert(0, numberDigits - std::min(digits.size(), numberDigits), '0');
    return digits + '-' + hexNumber(std::random_device{}(), markDigits);
}

std::vector<std::filesystem::path> filesIn(const std::filesystem::path& folder) {
    std::vector<std::filesystem::path> files;
    std::error_code failed;
    std::filesystem::directory_iterator each(folder, failed);
    for (; !failed && each != std::filesystem::directory_iterator(); each.increment(failed)) {
        files.push_back(each->path());
    }
    return files;
}

bool makeFolder(const std::filesystem::path& folder) {
    if (makePrivateFolder(folder)) {
        return false;
    }
    // One that stands already may be open to others.
    std::error_code ignored;
    std::filesystem::permissions(folder, std::filesystem::perms::owner_all, ignored);
    return true;
}

void drop(const std::filesystem::path& path) {
    std::error_code ignored;
    std::filesystem::remove(path, ignored);
}

}  // namespace tessavo::kept
