#pragma once

#include <cstdint>
#include <termios.h>

namespace tessavo::tty {

/// Bytes pass unchanged both ways, modem lines are ignored, nothing is handshaked, a read needs one byte.
/// Rate and framing stay.
void makeRaw(termios& settings);

/// Rate and framing of CSerial::Setup().
struct Framing {
    std::uint32_t baudRate = 0;
    std::uint8_t dataBits = 0;
    int parity = 0;             ///< see serial_frame
    std::uint8_t stopBits = 0;  ///< see serial_frame

    bool operator==(const Framing&) const = default;
};

/// \return false, and nothing changed, for a rate or a framing that no device has: only 5 data bits take one
/// and a half stop bits, and they take no two.
[[nodiscard]] bool setFraming(termios& settings, const Framing& framing);

/// What is set up. `baudRate` is 0 for a rate that has no standard name; parity is 0 when it is not checked.
[[nodiscard]] Framing framingOf(const termios& settings);

/// Sets flow control both ways.
/// \param mode see CSerial::Handshaking
void setHandshaking(termios& settings, int mode);
[[nodiscard]] int handshakingOf(const termios& settings);

}  // namespace tessavo::tty
