#include <optional>

#include "app/demo_target.h"
#include "comm/port_list.h"
#include "target/in_process_port.h"
#include "target/port_router.h"

namespace tessavo {

struct DemoTarget::Native {
    InProcessTarget target{"demo", TargetMemory::holding(factoryImage()), TargetDevice::Options{}};
    std::optional<AnnouncedPort> announced;
};

DemoTarget::DemoTarget() : native_(std::make_unique<Native>()) {}

DemoTarget::~DemoTarget() = default;

bool DemoTarget::start() {
    native_->announced.emplace(native_->target.portName());
    running_ = true;
    return running_;
}

std::string DemoTarget::portName() const {
    return running_ ? native_->target.portName() : std::string();
}

std::unique_ptr<CSerial> DemoTarget::makePort() {
    return std::make_unique<PortRouter>(native_->target.deviceName(),
                                        std::make_unique<InProcessPort>(native_->target));
}

}  // namespace tessavo
