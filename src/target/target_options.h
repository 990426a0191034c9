#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <variant>

#include "target/fault_plan.h"
#include "target/target_device.h"

namespace tessavo {

/// Where the program's clip states come from.
enum class ClipChoice : std::uint8_t { none, random, standardInput };

/// What the command line of the program tessavo-target asks for.
struct TargetOptions {
    std::optional<std::filesystem::path> stateDirectory;
    ClipChoice clip = ClipChoice::none;
    std::uint32_t baud = 0;
    FaultPlan faults{};
    TargetVersions versions = TargetDevice::Options{}.versions;
    bool verbose = false;
};

/// The command line asks for nothing but a text: the help, the version, or what is wrong with it.
struct TargetUsage {
    bool wrong = false;  ///< the text belongs on standard error, and the exit code is 2
    std::string text;    ///< with its line breaks
};

[[nodiscard]] std::variant<TargetOptions, TargetUsage> parseTargetOptions(int count,
                                                                          const char* const* arguments);

}  // namespace tessavo
