#include <iostream>

#include "cli/command_line.h"
#include "platform/process.h"

int main(int argc, char** argv) {
    using namespace tessavo;
    prepareStandardStreams();
    return cli::runCommandLine(programArguments(argc, argv),
                               {std::cout, std::cerr, std::cin, standardErrorIsTerminal()});
}
