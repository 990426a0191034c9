#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "history/session.h"

namespace tessavo::test {

/// The marks of a history, each as "1 confirmed text".
inline std::vector<std::string> marksOf(const Session& session) {
    std::vector<std::string> marks;
    for (const HistoryMark& mark : session.history.marks()) {
        const char* const kind = mark.kind == MarkKind::saved       ? "saved "
                                 : mark.kind == MarkKind::confirmed ? "confirmed "
                                                                    : "notice ";
        marks.push_back(std::to_string(mark.number) + " " + kind + mark.text);
    }
    return marks;
}

/// A run of keys or wheel in Live Mode that sets the volume of channel 1, and what the target confirms of it.
struct MarkedRun {
    MarkedRun() {
        session.state.setLiveMode(true);
        session.history.beginGesture(Gesture::run);
    }
    void change(int volumeDb) {
        session.state.setVolume(static_cast<float>(volumeDb), true);
        images.push_back(session.state.image());
        rows.push_back(session.row());
    }
    void changeUpTo(int volumeDb) {
        while (std::ssize(images) <= volumeDb) {
            change(static_cast<int>(images.size()));
        }
    }
    void confirm(int volumeDb) {
        session.history.markConfirmed(images.at(static_cast<std::size_t>(volumeDb)),
                                      std::to_string(volumeDb));
    }
    /// The bytes of every state from the start to the end of the steps.
    std::vector<Bytes> everyRow() {
        std::vector<Bytes> all;
        for (std::size_t position = 0; position <= session.history.steps().size(); ++position) {
            session.history.goTo(position);
            all.push_back(session.row());
        }
        return all;
    }

    Session session;
    std::vector<ParameterImage> images{session.state.image()};
    std::vector<Bytes> rows{session.row()};
};

}  // namespace tessavo::test
