#include "cli/program_arguments.h"

namespace tessavo::cli {

std::vector<std::string> programArguments(int argc, char** argv) {
    return argc > 1 ? std::vector<std::string>(argv + 1, argv + argc) : std::vector<std::string>{};
}

}  // namespace tessavo::cli
