#include "app/demo_target.h"
#include "target/pty_target.h"

namespace tessavo {

DemoTarget::DemoTarget() = default;

DemoTarget::~DemoTarget() {
    if (target_) {
        target_->stop();
    }
}

bool DemoTarget::start() {
    target_ = std::make_unique<PtyTarget>(TargetMemory{}, PtyTarget::Options{});
    running_ = target_->start().empty();
    return running_;
}

std::string DemoTarget::portName() const {
    return running_ ? target_->portName() : std::string();
}

}  // namespace tessavo
