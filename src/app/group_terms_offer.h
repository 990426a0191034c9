#pragma once

#include <QObject>
#include <array>
#include <memory>

#include "app/comm_link.h"
#include "app/set_edits.h"
#include "params/parameter_image.h"

namespace tessavo {

class StatusLine;
class UndoCommands;

/// After a set with group gains or delays was read from the target, offers to take them out of the channels' volumes and
/// delays. The offer ends once a volume, delay or group term of that set is another than was read. User-interface thread.
class GroupTermsOffer : public QObject {
    Q_OBJECT

 public:
    struct Dependencies {
        const TuningState& tuning;
        CommLink& link;
        UndoCommands& undo;
        StatusLine& status;
        SetEdits& edits;
    };

    /// \param dependencies outlive this object
    explicit GroupTermsOffer(const Dependencies& dependencies);

 private:
    struct Received {
        std::uint32_t set;
        ParameterSet record;
        ParameterImage image;
    };

    void offer(const CommandReport& report);
    void withdrawOutdated();
    void take();

    Dependencies dependencies_;
    std::unique_ptr<const Received> received_;  ///< what the notice is about; null without one
    quint64 notice_ = 0;
};

}  // namespace tessavo
