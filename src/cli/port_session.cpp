#include "cli/port_session.h"

#include "cli/port_trouble.h"

namespace tessavo::cli {

std::uint32_t PortSession::Port::Open(const std::wstring& deviceName, std::uint32_t inQueue,
                                      std::uint32_t outQueue, bool overlapped) {
    tried_ = true;
    trouble_ = CSerial::Open(deviceName, inQueue, outQueue, overlapped);
    return trouble_;
}

std::uint32_t PortSession::Port::Setup(std::uint32_t baudRate, std::uint8_t dataBits, int parity,
                                       std::uint8_t stopBits, int dtrMode) {
    trouble_ = CSerial::Setup(baudRate, dataBits, parity, stopBits, dtrMode);
    everUsable_ = everUsable_ || trouble_ == serial_result::success;
    return trouble_;
}

PortSession::PortSession(const Arguments& arguments, const Surroundings& around)
    : portName_(arguments.port),
      reporter_(around.reporter),
      interruption_([this] {
          port_.Cancel();
          clock_.interrupt();
      }),
      engine_({port_, clock_, around.reporter, around.reporter, lock_, [this] { return portName_; },
               [this](std::size_t done, std::size_t total) { reporter_.progress(done, total); }}) {}

void PortSession::tellFailure(std::string_view otherwise, std::string_view consequence) {
    reporter_.endProgress();
    std::string text(otherwise);
    if (interrupted()) {
        text = "interrupted";
    } else if (shutOut()) {
        text = portTrouble(portName_, port_.trouble());
        // An exchange before this one may have sent something.
        if (!port_.everUsable()) {
            consequence = "nothing was sent";
        }
    }
    reporter_.error(portName_ + ": " + text + "; " + std::string(consequence));
}

}  // namespace tessavo::cli
