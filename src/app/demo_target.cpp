#include "app/demo_target.h"

#include <optional>
#include <utility>

#include "comm/own_ports.h"
#include "comm/serial_port_line.h"
#include "target/in_process_line.h"

namespace tessavo {

namespace {

class InProcessDemoTarget final : public IDemoTarget {
 public:
    bool start() override {
        port_.emplace(target_.portName());
        return true;
    }
    [[nodiscard]] std::string portName() const override { return port_ ? target_.portName() : std::string(); }
    [[nodiscard]] LineMaker lineMaker() override { return linesTo(target_, makeSerialPortLine); }

 private:
    InProcessTarget target_{"demo", TargetMemory::holding(factoryImage()), TargetDevice::Options{}};
    std::optional<OwnPort> port_;
};

}  // namespace

std::unique_ptr<IDemoTarget> makeInProcessDemoTarget() {
    return std::make_unique<InProcessDemoTarget>();
}

std::unique_ptr<IDemoTarget> makeDemoTarget() {
    auto onTerminal = makePtyDemoTarget();
    return onTerminal ? std::move(onTerminal) : makeInProcessDemoTarget();
}

}  // namespace tessavo
