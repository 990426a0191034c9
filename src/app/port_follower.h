#pragma once

#include <QObject>
#include <QTimer>
#include <chrono>

#include "comm/port_watch.h"
#include "comm/transfer_engine.h"
#include "params/tuning_state.h"

namespace tessavo {

class CommLink;

/// Looks once a second whether the chosen port is there, and brings the image to the target again when the
/// port has come back. Opens nothing. User-interface thread.
class PortFollower : public QObject {
    Q_OBJECT

 public:
    /// A look takes one question to the system; two of them fit into the time in which a person is told.
    static constexpr std::chrono::milliseconds period{900};

    /// \param tuning, link outlive this
    PortFollower(TuningState& tuning, CommLink& link, PortWatch::System system);

    /// A look out of turn.
    void look();
    /// An exchange may know more than the last look: looks again, and takes a device that has answered for
    /// the right one.
    void exchangeEnded(ExchangeEnd end);

 Q_SIGNALS:
    void portGone();
    /// With the device that it had. In Live Mode `updatePending` is raised by now unless the target's
    /// confirmed image is the program's.
    void portBack();
    /// Another device bears the port's name. What was confirmed is forgotten by now; nothing is sent to it
    /// before somebody asks for it.
    void portReplaced();

 private:
    TuningState& tuning_;
    CommLink& link_;
    PortWatch watch_;
    QTimer timer_;
};

}  // namespace tessavo
