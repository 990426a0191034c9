#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tessavo {

/// Order of port names: digits count as numbers, so that ttyUSB2 stands before ttyUSB10.
[[nodiscard]] bool portNameLess(std::string_view left, std::string_view right);

/// Names in a list that is separated by commas or white space.
[[nodiscard]] std::vector<std::string> splitPortNames(std::string_view list);

/// Appends the names that are not there yet.
void appendPortNames(std::vector<std::string>& names, const std::vector<std::string>& more);

/// Serial ports among a Windows system's device names: COM and the number behind it, each once, sorted.
/// \param deviceNames zero-terminated names one after the other
[[nodiscard]] std::vector<std::string> comPortNames(std::wstring_view deviceNames);

/// How the list of ports describes a simulated target.
inline constexpr std::string_view simulatedTargetText = "simulated target";

/// A text on one line: control characters count as spaces, and those at the ends go.
[[nodiscard]] std::string oneLine(std::string_view text);

/// A Windows system's name of a device, for the list of its ports: without the reference in front of it
/// ("@oem3.inf,%name%;") and without the port behind it (" (COM3)").
[[nodiscard]] std::string deviceDescription(std::string_view registryText, std::string_view portName);

/// What a Windows system's device path tells of a device's identity, whichever socket it is in: bus, vendor,
/// product, and the serial number where the device has one. Empty for a device of another bus than USB.
/// \param instancePath such as "USB\VID_10C4&PID_EA60\0001"
[[nodiscard]] std::string usbIdentity(std::string_view instancePath);

/// A name without the prefix, when it carries it.
[[nodiscard]] std::string_view withoutPrefix(std::string_view name, std::string_view prefix);

}  // namespace tessavo
