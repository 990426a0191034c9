#pragma once

#include <cstdint>
#include <string>

namespace tessavo::cli {

/// Why a port could not be opened or set up, and what to do about it.
/// \param port as it was named on the command line
/// \param result the serial port's result code
[[nodiscard]] std::string portTrouble(const std::string& port, std::uint32_t result);

/// The message for a device that the system denies access to, because it is in use or because this user may
/// not use it.
[[nodiscard]] std::string accessTrouble(const std::wstring& device);

}  // namespace tessavo::cli
