#pragma once

#include <filesystem>

#include "params/records.h"

namespace tessavo {

/// The document of the frame. It carries no data of its own: settings live in the store.
class CTessavoDoc {
 public:
    /// The one file that serialising uses, whatever it is asked for; the menu never serialises.
    static std::filesystem::path serializedFile();

    /// Writes the store to the file, creating it, or reads it from there.
    /// \return whether all 10600 bytes went through; the store stays as it was otherwise
    static bool serialize(ParameterStore& store, bool storing,
                          const std::filesystem::path& file = serializedFile());
};

}  // namespace tessavo
