#include "app/demo_target.h"
#include "comm/serial.h"
#include "target/pty_target.h"

namespace tessavo {

struct DemoTarget::Native {
    PtyTarget target{TargetMemory::holding(factoryImage()), PtyTarget::Options{}};
};

DemoTarget::DemoTarget() = default;

DemoTarget::~DemoTarget() = default;

bool DemoTarget::start() {
    native_ = std::make_unique<Native>();
    running_ = native_->target.start().empty();
    return running_;
}

std::string DemoTarget::portName() const {
    return running_ ? native_->target.portName() : std::string();
}

std::unique_ptr<CSerial> DemoTarget::makePort() {
    return std::make_unique<CSerial>();
}

}  // namespace tessavo
