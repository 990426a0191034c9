#include "cli/port_session.h"

#include "cli/port_trouble.h"

namespace tessavo::cli {

/// A serial port that notes why it could not be opened or set up.
class PortSession::NotingLine final : public SerialPortLine {
 public:
    NotingLine(const std::string& portName, PortUse& use) : SerialPortLine(portName), use_(use) {}

    std::uint32_t open() override {
        use_.tried = true;
        use_.trouble = SerialPortLine::open();
        return use_.trouble;
    }
    std::uint32_t setUp(const LineSettings& settings) override {
        use_.trouble = SerialPortLine::setUp(settings);
        use_.everUsable = use_.everUsable || use_.trouble == serial_result::success;
        return use_.trouble;
    }

 private:
    PortUse& use_;
};

PortSession::PortSession(const Arguments& arguments, const CommandContext& context)
    : portName_(arguments.port),
      reporter_(context.reporter),
      engine_({[this](const std::string& portName) { return std::make_unique<NotingLine>(portName, use_); },
               clock_, context.reporter, context.reporter, lock_, [this] { return portName_; },
               [this](std::size_t done, std::size_t total) { reporter_.progress(done, total); }}),
      interruption_([this] {
          engine_.cancel();
          clock_.interrupt();
      }) {}

void PortSession::tellFailure(std::string_view otherwise, std::string_view consequence) {
    reporter_.endProgress();
    std::string text(otherwise);
    if (interrupted()) {
        text = "interrupted";
    } else if (portUnusable()) {
        text = portTrouble(portName_, use_.trouble);
        // An exchange before this one may have sent something.
        if (!use_.everUsable) {
            consequence = "nothing was sent";
        }
    }
    reporter_.error(portName_ + ": " + text + "; " + std::string(consequence));
}

}  // namespace tessavo::cli
