#include "comm/port_watch.h"

#include <utility>

#include "comm/port_device.h"

namespace tessavo {

void PortWatch::setPort(const std::string& name) {
    port_ = name;
    identity_.clear();
    replacement_.clear();
    presence_ = Presence::neverSeen;
    static_cast<void>(look());
}

PortWatch::Event PortWatch::look() {
    const bool there = !port_.empty() && system_.isThere(port_);
    const Presence before = std::exchange(presence_, there                              ? Presence::there
                                                     : presence_ == Presence::neverSeen ? Presence::neverSeen
                                                                                        : Presence::gone);
    if (presence_ == before) {
        return Event::none;
    }
    if (!there) {
        return Event::gone;
    }
    const std::string identity = system_.identity(port_);
    if (identity_.empty()) {
        identity_ = identity;
    }
    const bool same = identity.empty() || identity == identity_;
    replacement_ = same ? std::string() : identity;
    if (before == Presence::neverSeen) {
        return Event::none;
    }
    return same ? Event::back : Event::replaced;
}

void PortWatch::accept() {
    if (!replacement_.empty()) {
        identity_ = std::exchange(replacement_, {});
    }
}

PortWatch::System systemPorts() {
    return {portIsThere, [](const std::string& name) { return portDevice(name).identity; }};
}

}  // namespace tessavo
