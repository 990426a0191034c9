#include <windows.h>

#include <io.h>
#include <stdio.h>

#include "cli/terminal.h"

namespace tessavo::cli {

void prepareStandardStreams() {
    SetConsoleOutputCP(CP_UTF8);
}

bool standardErrorIsTerminal() {
    return _isatty(_fileno(stderr)) != 0;
}

}  // namespace tessavo::cli
