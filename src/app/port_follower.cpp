#include "app/port_follower.h"

#include <utility>

#include "app/comm_link.h"

namespace tessavo {

PortFollower::PortFollower(TuningState& tuning, CommLink& link, PortWatch::System system)
    : tuning_(tuning), link_(link), watch_(std::move(system)) {
    connect(&link, &CommLink::portNameChanged, this,
            [this](const QString& name) { watch_.setPort(name.toStdString()); });
    connect(&timer_, &QTimer::timeout, this, &PortFollower::look);
    watch_.setPort(link.portName());
    timer_.start(period);
}

void PortFollower::exchangeEnded(ExchangeEnd end) {
    look();
    if (end == ExchangeEnd::answered) {
        watch_.accept();
    }
}

void PortFollower::look() {
    switch (watch_.look()) {
        case PortWatch::Event::gone:
            Q_EMIT portGone();
            break;
        case PortWatch::Event::back:
            link_.forgetRepeatedBoxes();
            if (tuning_.liveMode() && !link_.imageIsConfirmed()) {
                tuning_.raiseUpdatePending();
            }
            Q_EMIT portBack();
            break;
        case PortWatch::Event::replaced:
            link_.forgetRepeatedBoxes();
            link_.forgetConfirmation();
            Q_EMIT portReplaced();
            break;
        case PortWatch::Event::none:
            break;
    }
}

}  // namespace tessavo
