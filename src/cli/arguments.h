#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "cli/console.h"
#include "cli/reporter.h"

namespace tessavo::cli {

/// Whether an image has the input equalizer in circuit.
enum class InputEq : std::uint8_t {
    assumedOn,  ///< on, since nothing was asked for; told where the record says otherwise
    on,
    off,
    stored  ///< as the record says
};

/// What a command was asked for, checked as far as the command line tells. Each command reads what it offers.
struct Arguments {
    std::string file;
    std::string secondFile;
    std::string script;
    std::string output;
    std::string image;
    std::string port;
    std::uint8_t targetSet = 0;    ///< 1 to 5, or 0 for the default set
    int set = 0;                   ///< 1 to 5, or 0 where none was named
    int channel = 0;               ///< page position 1 to 8, or 0 where none was named
    std::uint32_t filterMode = 0;  ///< index of filterMethodNames
    InputEq inputEq = InputEq::assumedOn;
    bool json = false;
    bool force = false;

    [[nodiscard]] std::size_t setIndex() const { return static_cast<std::size_t>(set - 1); }
};

/// What a command works with besides its arguments.
struct Surroundings {
    const Console& console;
    Reporter& reporter;
};

/// A command: its arguments in, a value of exit_code out.
using Command = int (*)(const Arguments&, const Surroundings&);

}  // namespace tessavo::cli
