#pragma once

#include <iosfwd>

namespace tessavo::cli {

/// The streams that a command reads and writes.
struct Console {
    std::ostream& out;
    std::ostream& err;
    std::istream& in;
    /// Whether `err` is a terminal, where a progress bar can be drawn.
    bool errIsTerminal = false;
};

}  // namespace tessavo::cli
