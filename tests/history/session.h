#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "history/history.h"
#include "support/harness.h"

namespace tessavo::test {

inline Bytes rowOf(const TuningSnapshot& snapshot) {
    const auto bytes = tessavo::bytesOf(snapshot);
    return {bytes.begin(), bytes.end()};
}

inline std::unique_ptr<TuningSnapshot> snapshotOf(const TuningState& state) {
    auto snapshot = std::make_unique<TuningSnapshot>();
    state.takeSnapshot(*snapshot);
    return snapshot;
}

/// A tuning with its history, and a window that chooses sets as the selector does.
struct Session : Tuning {
    explicit Session(std::uint32_t filterMode = 0) {
        state.setFilterMode(filterMode);
        history.setListener([this](HistoryEvent event) { events.push_back(event); });
        history.setView({.chooseSet =
                             [this](std::uint32_t set) {
                                 chosen.push_back(set);
                                 state.selectSet(set);
                             },
                         .refresh = [this] { ++refreshes; },
                         .commitSoon = [this] { ++asked; }});
    }

    /// Everything that a step may change, byte by byte.
    [[nodiscard]] Bytes row() const { return rowOf(*snapshotOf(state)); }
    /// Receives an image into the current set, as one step.
    void receive(const Bytes& received) {
        history.beginGesture(Gesture::press);
        state.replaceImage(recordOf<ParameterImage>(received));
        state.imageToSet();
        history.commit("Read set");
        history.endGesture();
    }
    /// Ends the step in the making.
    bool commit() { return history.commit(); }
    /// One step that sets the volume of channel 1.
    void stepTo(float volumeDb) {
        state.setVolume(volumeDb, true);
        history.commit();
    }
    [[nodiscard]] std::vector<std::string> texts() const {
        std::vector<std::string> all;
        for (const auto& step : history.steps()) {
            all.push_back(step->text);
        }
        return all;
    }
    std::vector<HistoryEvent> takeEvents() { return std::exchange(events, {}); }

    WallTime now{std::chrono::hours(1000)};
    std::vector<HistoryEvent> events;
    std::vector<std::uint32_t> chosen;
    int refreshes = 0;
    int asked = 0;
    History history{state, [this] { return now += std::chrono::seconds(1); }};
};

/// A band that no words can hold, so that its generator warns: a high shelf of 24 dB at 5 kHz.
inline void prepareWarning(TuningState& state) {
    state.setBandType(0, 0);
    state.setBandFrequency(0, 5000, true);
}
inline void warn(TuningState& state) {
    state.setBandGainOrQ(0, BandValue::gain, 24.0F, true);
}

/// Boxes that look at the state while they are shown.
class LookingBoxes : public RecordingBoxes {
 public:
    BoxAnswer show(std::string_view text, BoxIcon icon, BoxButtons buttons) override {
        if (look) {
            look();
        }
        return RecordingBoxes::show(text, icon, buttons);
    }
    std::function<void()> look;
};

}  // namespace tessavo::test
