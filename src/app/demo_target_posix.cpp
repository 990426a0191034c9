#include "app/demo_target.h"
#include "comm/serial_port_line.h"
#include "target/pty_target.h"

namespace tessavo {

namespace {

class PtyDemoTarget final : public IDemoTarget {
 public:
    bool start() override {
        running_ = target_.start().empty();
        return running_;
    }
    [[nodiscard]] std::string portName() const override {
        return running_ ? target_.portName() : std::string();
    }
    [[nodiscard]] LineMaker lineMaker() override { return makeSerialPortLine; }

 private:
    PtyTarget target_{TargetMemory::holding(factoryImage()), PtyTarget::Options{}};
    bool running_ = false;
};

}  // namespace

std::unique_ptr<IDemoTarget> makePtyDemoTarget() {
    return std::make_unique<PtyDemoTarget>();
}

}  // namespace tessavo
