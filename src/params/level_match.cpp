#include "params/level_match.h"

#include <cmath>

#include "base/saturate.h"
#include "params/loudness.h"
#include "params/volume_gain_table.h"

namespace tessavo {

LevelMatch matchLevel(const ParameterImage& played, double playedDb, double otherDb) {
    if (!std::isfinite(playedDb) || !std::isfinite(otherDb)) {
        return {.isComparable = false};
    }
    const double difference = std::round((playedDb - otherDb) / matchStepDb);
    LevelMatch match{.loweredSteps = difference > 0.0 ? truncateTo<std::uint32_t>(difference) : 0};
    const unsigned wanted = match.loweredSteps;
    for (std::uint8_t position = 0; position < channelCount; ++position) {
        const RecordChannel channel = recordChannelAt({position});
        if (!hasSource(played, channel)) {
            continue;
        }
        const unsigned room = stepsAboveLowest(played.channels[channel.value].gainWord);
        if (room < match.loweredSteps) {
            match = {.loweredSteps = room, .missingSteps = wanted - room, .lowest = channel};
        }
    }
    return match;
}

}  // namespace tessavo
