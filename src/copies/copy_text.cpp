#include "copies/copy_text.h"

namespace tessavo {

std::string copyActText(CopyAct /*act*/, std::uint8_t /*targetSet*/) {
    return {};
}
std::string troubleText(const SetCopy& /*set*/) {
    return {};
}
std::string playsNowText(const PlaysNow& /*plays*/) {
    return {};
}
std::string restoredText(const RestoreReport::Row& /*row*/) {
    return {};
}
std::string restoreEndText(const RestoreReport& /*report*/) {
    return {};
}
std::string comparisonText(const Comparison& /*comparison*/) {
    return {};
}

}  // namespace tessavo
