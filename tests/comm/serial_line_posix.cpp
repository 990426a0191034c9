#include "comm/serial.h"
#include "comm/serial_line.h"
#include "support/pty_pair.h"

namespace tessavo::test {

struct SerialLine::Native {
    PtyPair pair;
};

SerialLine::SerialLine() : native_(std::make_unique<Native>()) {}
SerialLine::~SerialLine() = default;

std::wstring SerialLine::path() const {
    return native_->pair.path();
}

std::string SerialLine::settings() const {
    return settingsText(native_->pair);
}

bool SerialLine::send(std::string_view bytes) const {
    return native_->pair.send(bytes);
}

std::string SerialLine::receive(std::size_t count, Milliseconds limit) const {
    return native_->pair.receive(count, limit);
}

void SerialLine::hangUp() {
    native_->pair.hangUp();
}

bool tellsOfAVanishedDevice(std::uint32_t result) {
    return result == serial_result::ioDevice;
}

}  // namespace tessavo::test
