#pragma once

#include "history/random_session.h"

namespace tessavo::test {

/// What a person does in a long time: mostly single edits, some of all eight channels, now and then a set that is
/// chosen, named, read, or a file that is opened.
inline void makeUsualStep(TuningState& state, const SessionFiles& files, std::mt19937_64& random, int step) {
    const auto tenths = [&random](int lowest, int highest) {
        return static_cast<float>(lowest +
                                  static_cast<int>(random() % static_cast<unsigned>(highest - lowest))) /
               10;
    };
    state.setSelectionMask(step % 10 == 0 ? 0xFF : static_cast<std::uint8_t>(1U << random() % 8));
    if (step % 500 == 499) {
        state.replaceStore(files.stores[random() % files.stores.size()]);
    } else if (step % 500 == 250) {
        state.replaceImage(files.images[random() % files.images.size()]);
        state.imageToSet();
    } else if (step % 100 == 50) {
        state.selectSet(static_cast<std::uint32_t>(random() % setCount));
        state.setName(std::u16string(1 + random() % 20, static_cast<char16_t>(u'a' + random() % 26)));
    } else if (step % 7 == 0) {
        state.setCrossoverFrequency(random() % 2, static_cast<std::uint16_t>(20 + random() % 19000), true);
    } else if (step % 5 == 0) {
        state.setVolume(tenths(-60, 180), true);
    } else if (step % 3 == 0) {
        state.setBandFrequency(random() % 8, static_cast<std::uint16_t>(20 + random() % 19000), true);
    } else {
        state.setBandGainOrQ(random() % 8, BandValue::gain, tenths(-120, 120), true);
    }
}

}  // namespace tessavo::test
