#include "cli/port_trouble.h"

#include "comm/port_list.h"
#include "comm/serial.h"

namespace tessavo::cli {

std::string portTrouble(const std::string& port, std::uint32_t result) {
    switch (result) {
        case serial_result::fileNotFound:
        case serial_result::nameTooLong:
            return "there is no such port; 'tessavoctl ports' lists those that are there";
        case serial_result::accessDenied:
            return accessTrouble(devicePath(port));
        case serial_result::badDevice:
            return "this is no serial port; 'tessavoctl ports' lists those that are there";
        case serial_result::ioDevice:
            return "the device does not answer; is it still plugged in?";
        case serial_result::invalidParameter:
            return "the port cannot be set to 115200 baud, 8 data bits, no parity, one stop bit";
        default:
            return "the system reports error " + std::to_string(result);
    }
}

}  // namespace tessavo::cli
