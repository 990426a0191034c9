#include "app/tessavo_doc.h"

#include <array>
#include <cstring>

#include "base/raw_file.h"

namespace tessavo {

std::filesystem::path CTessavoDoc::serializedFile() {
    return R"(C:\Dokumente und Einstellungen\Windows User\Desktop\EQSettings.set)";
}

bool CTessavoDoc::serialize(ParameterStore& store, bool storing, const std::filesystem::path& file) {
    if (storing) {
        std::array<std::uint8_t, parameterStoreSize> bytes{};
        std::memcpy(bytes.data(), &store, bytes.size());
        return writeFileStart(file, bytes).written == bytes.size();
    }
    const auto start = readFileStart(file, parameterStoreSize);
    if (!start || start->bytes.size() != parameterStoreSize) {
        return false;
    }
    std::memcpy(&store, start->bytes.data(), parameterStoreSize);
    return true;
}

}  // namespace tessavo
