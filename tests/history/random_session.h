#pragma once

#include <algorithm>
#include <random>

#include "history/session.h"

namespace tessavo::test {

/// Stores and images that random sessions load and receive; made once, as that takes longest.
class SessionFiles {
 public:
    explicit SessionFiles(std::uint64_t seed) {
        std::mt19937_64 random(seed);
        for (std::size_t i = 0; i < 4; ++i) {
            stores.push_back(recordOf<ParameterStore>(randomStore(random)));
            Tuning other;
            other.state.setFilterMode(static_cast<std::uint32_t>(i % 3));
            other.load(bytesOf(stores.back()), static_cast<std::uint32_t>(i));
            other.state.setInputEqOn(i % 2 == 0);
            Bytes image = other.image();
            image[20] = static_cast<std::uint8_t>(random());
            image[3039] = static_cast<std::uint8_t>(random());
            images.push_back(recordOf<ParameterImage>(image));
        }
    }
    std::vector<ParameterStore> stores;
    std::vector<ParameterImage> images;
};

/// One random edit of the current set, of one field in one element or in the selected channels.
inline void editAnything(TuningState& state, std::mt19937_64& random) {
    const Field* field = nullptr;
    do {
        field = &fieldTable()[random() % fieldCount];
    } while (!field->editable);
    const FieldIndex index{random() % field->outer.count, random() % field->inner.count};
    const auto steps = static_cast<std::uint64_t>((field->maximum - field->minimum) * 10) + 1;
    double shown = field->minimum + static_cast<double>(random() % steps) / 10;
    if (field->shapes != Shapes::nothing && field->unit == "dB") {
        shown = std::clamp(shown, -12.0, 12.0);  // more does not fit into the words of every filter
    }
    const double stored = storedFromShown(*field, shown);
    const bool final = random() % 2 == 0;
    if (random() % 3 != 0 || !state.editSelected(field->id, index.inner, stored, final)) {
        state.edit(field->id, index, stored, final);
    }
}

/// One random thing that changes the tuning without history: an edit, a file, a set that was read.
inline void changeAnything(TuningState& state, const SessionFiles& files, std::mt19937_64& random) {
    switch (random() % 13) {
        case 0:
            state.replaceStore(files.stores[random() % files.stores.size()]);
            break;
        case 1:
            state.replaceImage(files.images[random() % files.images.size()]);
            if (random() % 4 != 0) {
                state.imageToSet();
            }
            break;
        case 2:
            state.setName(std::u16string(random() % 34, static_cast<char16_t>(u'a' + random() % 26)));
            break;
        case 3:
            state.setInvertPhase(random() % 2 == 0, static_cast<std::uint8_t>(random() % 2));
            break;
        case 4:
            state.setInputEqOn(random() % 2 == 0);
            break;
        case 5: {
            FileNotes notes = state.notes();
            setChannelName(notes, {static_cast<std::uint8_t>(random() % channelCount)},
                           std::u16string(random() % 30, static_cast<char16_t>(u'a' + random() % 26)));
            state.setNotes(notes);
            break;
        }
        default:
            editAnything(state, random);
    }
}

}  // namespace tessavo::test
