#include "comm/tty_settings_posix.h"

#include <algorithm>
#include <array>

#include "comm/serial.h"

namespace tessavo::tty {

namespace {

struct Rate {
    std::uint32_t baudRate;
    speed_t code;
};

constexpr std::array rates{
    Rate{50, B50},           Rate{75, B75},           Rate{110, B110},         Rate{134, B134},
    Rate{150, B150},         Rate{200, B200},         Rate{300, B300},         Rate{600, B600},
    Rate{1200, B1200},       Rate{1800, B1800},       Rate{2400, B2400},       Rate{4800, B4800},
    Rate{9600, B9600},       Rate{19200, B19200},     Rate{38400, B38400},     Rate{57600, B57600},
    Rate{115200, B115200},   Rate{230400, B230400},   Rate{460800, B460800},   Rate{500000, B500000},
    Rate{576000, B576000},   Rate{921600, B921600},   Rate{1000000, B1000000}, Rate{1152000, B1152000},
    Rate{1500000, B1500000}, Rate{2000000, B2000000}, Rate{2500000, B2500000}, Rate{3000000, B3000000},
    Rate{3500000, B3500000}, Rate{4000000, B4000000}};

constexpr std::array<tcflag_t, 4> sizeFlags{CS5, CS6, CS7, CS8};
constexpr std::uint8_t fewestDataBits = 5;

// By parity code.
constexpr std::array<tcflag_t, 5> parityFlags{0, PARENB | PARODD, PARENB, PARENB | CMSPAR | PARODD,
                                              PARENB | CMSPAR};
constexpr tcflag_t parityMask = PARENB | PARODD | CMSPAR;

constexpr tcflag_t softwareFlow = IXON | IXOFF;
constexpr cc_t xonCharacter = 0x11;
constexpr cc_t xoffCharacter = 0x13;

}  // namespace

void makeRaw(termios& settings) {
    settings.c_iflag &= ~static_cast<tcflag_t>(BRKINT | IGNPAR | PARMRK | INPCK | ISTRIP | INLCR | IGNCR |
                                               ICRNL | IUCLC | IXON | IXOFF | IXANY | IMAXBEL);
    settings.c_iflag |= IGNBRK;
    settings.c_oflag &= ~static_cast<tcflag_t>(OPOST);
    settings.c_lflag &= ~static_cast<tcflag_t>(ECHO | ECHONL | ICANON | ISIG | IEXTEN);
    settings.c_cflag &= ~static_cast<tcflag_t>(CRTSCTS);
    settings.c_cflag |= CREAD | CLOCAL;
    // With a minimum of 0 a quiet line would look like a vanished one.
    settings.c_cc[VMIN] = 1;
    settings.c_cc[VTIME] = 0;
}

bool setFraming(termios& settings, const Framing& framing) {
    const auto* const rate = std::find_if(rates.begin(), rates.end(), [&](const Rate& candidate) {
        return candidate.baudRate == framing.baudRate;
    });
    if (rate == rates.end() ||
        !serial_frame::isPossible(framing.baudRate, framing.dataBits, framing.parity, framing.stopBits)) {
        return false;
    }
    cfsetispeed(&settings, rate->code);
    cfsetospeed(&settings, rate->code);
    settings.c_cflag &= ~static_cast<tcflag_t>(CSIZE | parityMask | CSTOPB);
    settings.c_cflag |= sizeFlags[static_cast<std::size_t>(framing.dataBits - fewestDataBits)];
    settings.c_cflag |= parityFlags[static_cast<std::size_t>(framing.parity)];
    if (framing.stopBits != serial_frame::stopBitsOne) {
        settings.c_cflag |= CSTOPB;
    }
    settings.c_iflag &= ~static_cast<tcflag_t>(INPCK);
    if (framing.parity != serial_frame::parityNone) {
        settings.c_iflag |= INPCK;
    }
    return true;
}

Framing framingOf(const termios& settings) {
    Framing framing;
    const auto* const rate = std::find_if(rates.begin(), rates.end(), [&](const Rate& candidate) {
        return candidate.code == cfgetospeed(&settings);
    });
    if (rate != rates.end()) {
        framing.baudRate = rate->baudRate;
    }
    const auto* const size = std::find(sizeFlags.begin(), sizeFlags.end(), settings.c_cflag & CSIZE);
    framing.dataBits = static_cast<std::uint8_t>(fewestDataBits + (size - sizeFlags.begin()));
    if ((settings.c_iflag & INPCK) != 0 && (settings.c_cflag & PARENB) != 0) {
        const auto* const parity =
            std::find(parityFlags.begin(), parityFlags.end(), settings.c_cflag & parityMask);
        framing.parity = static_cast<int>(parity - parityFlags.begin());
    }
    if ((settings.c_cflag & CSTOPB) != 0) {
        framing.stopBits =
            framing.dataBits == fewestDataBits ? serial_frame::stopBitsOneAndHalf : serial_frame::stopBitsTwo;
    }
    return framing;
}

void setHandshaking(termios& settings, int mode) {
    settings.c_cflag &= ~static_cast<tcflag_t>(CRTSCTS);
    settings.c_iflag &= ~softwareFlow;
    if (mode == CSerial::handshakeHardware) {
        settings.c_cflag |= CRTSCTS;
    } else if (mode == CSerial::handshakeSoftware) {
        settings.c_iflag |= softwareFlow;
        settings.c_cc[VSTART] = xonCharacter;
        settings.c_cc[VSTOP] = xoffCharacter;
    }
}

int handshakingOf(const termios& settings) {
    if ((settings.c_cflag & CRTSCTS) != 0) {
        return CSerial::handshakeHardware;
    }
    return (settings.c_iflag & softwareFlow) == softwareFlow ? CSerial::handshakeSoftware
                                                             : CSerial::handshakeNone;
}

}  // namespace tessavo::tty
