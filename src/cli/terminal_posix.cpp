#include <unistd.h>

#include "cli/terminal.h"

namespace tessavo::cli {

void prepareStandardStreams() {}

bool standardErrorIsTerminal() {
    return ::isatty(STDERR_FILENO) == 1;
}

}  // namespace tessavo::cli
