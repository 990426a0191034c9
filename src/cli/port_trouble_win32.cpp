#include "cli/port_trouble.h"

namespace tessavo::cli {

std::string accessTrouble(const std::wstring& /*device*/) {
    return "the port is in use by another program; close that and try again";
}

}  // namespace tessavo::cli
