#pragma once

#include <QObject>

#include "app/port_follower.h"
#include "app/target_follower.h"
#include "comm/port_watch.h"
#include "params/tuning_state.h"

namespace tessavo {

class CommLink;
class CTessavoView;
class StatusLine;

/// Keeps the status bar's pane about the target in step with the line, the port and the settings, and the
/// view with the settings. User-interface thread.
class TargetDisplay : public QObject {
    Q_OBJECT

 public:
    struct Dependencies {
        TuningState& tuning;
        CommLink& link;
        CTessavoView& view;
        StatusLine& status;
        PortWatch::System ports;
    };

    /// Becomes the settings' listener.
    /// \param dependencies outlive this
    explicit TargetDisplay(const Dependencies& dependencies);
    /// From here on the settings have no listener.
    ~TargetDisplay() override;

 private:
    void followLine();
    void followCommands();
    void followPort();
    template <typename Sender, typename Signal, typename Tell>
    void follow(Sender* sender, Signal signal, Tell tell);
    void show();

    Dependencies dependencies_;
    TargetFollower follower_;
    PortFollower portFollower_;
};

}  // namespace tessavo
