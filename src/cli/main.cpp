#include <iostream>

#include "cli/command_line.h"
#include "cli/program_arguments.h"
#include "cli/terminal.h"

int main(int argc, char** argv) {
    using namespace tessavo::cli;
    prepareStandardStreams();
    return runCommandLine(programArguments(argc, argv),
                          {std::cout, std::cerr, std::cin, standardErrorIsTerminal()});
}
