#include "comm/own_ports.h"

#include <algorithm>
#include <mutex>
#include <utility>

namespace tessavo {

namespace {

struct OwnNames {
    std::mutex mutex;
    std::vector<std::string> names;
};

OwnNames& ownNames() {
    static OwnNames own;
    return own;
}

}  // namespace

OwnPort::OwnPort(std::string portName) : portName_(std::move(portName)) {
    OwnNames& own = ownNames();
    const std::lock_guard guard(own.mutex);
    own.names.push_back(portName_);
}

OwnPort::~OwnPort() {
    OwnNames& own = ownNames();
    const std::lock_guard guard(own.mutex);
    const auto found = std::ranges::find(own.names, portName_);
    if (found != own.names.end()) {
        own.names.erase(found);
    }
}

std::vector<std::string> ports::ownPorts() {
    OwnNames& own = ownNames();
    const std::lock_guard guard(own.mutex);
    return own.names;
}

bool ports::isOwnPort(std::string_view portName) {
    return std::ranges::count(ownPorts(), portName) != 0;
}

}  // namespace tessavo
