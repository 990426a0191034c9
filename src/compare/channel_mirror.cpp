#include "compare/channel_mirror.h"

namespace tessavo {

MirrorPlan planMirror(const ParameterSet&) {
    return {};
}

ParameterSet mirrorChannels(const ParameterSet& set, std::span<const MirrorPair>) {
    return set;
}

}  // namespace tessavo
