#include "filtertext/readers.h"

namespace tessavo {

FilterText readTextLines(std::string_view /*text*/, std::string_view /*channelName*/) {
    return {};
}

}  // namespace tessavo
