#include "dsp/filter_requests.h"

#include <cmath>

namespace tessavo {

namespace {

double frequencyOf(std::int32_t kindWord) {
    return static_cast<double>(kindWord >> 16);
}

}  // namespace

BandRequest BandRequest::unpack(std::int32_t kindWord, float gainDb, float q) {
    BandRequest request;
    request.type = static_cast<std::uint8_t>(kindWord & 0xFF);
    request.frequencyHz = frequencyOf(kindWord);
    request.gainDb = static_cast<double>(gainDb);
    request.q = static_cast<double>(q);
    request.linearGain =
        static_cast<double>(static_cast<float>(std::pow(10.0, std::fabs(request.gainDb) / 20.0)));
    return request;
}

CrossoverRequest CrossoverRequest::unpack(std::int32_t kindWord) {
    return {((kindWord >> 8) & 0xFF) != 0, frequencyOf(kindWord)};
}

}  // namespace tessavo
