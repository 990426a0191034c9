#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace tessavo::test {

/// A serial line without hardware: a program opens the device, the test plays the other end.
///
/// On Windows the other end is played by a program outside, see line_server_posix.cpp.
class SerialLine {
 public:
    using Milliseconds = std::chrono::milliseconds;
    /// Long enough for the slowest machine; nothing waits that long unless it fails.
    static constexpr Milliseconds patience{20000};

    /// Throws when no line is to be had.
    SerialLine();
    ~SerialLine();
    SerialLine(const SerialLine&) = delete;
    SerialLine& operator=(const SerialLine&) = delete;

    /// As CSerial::Open() takes it.
    [[nodiscard]] std::wstring path() const;
    /// All settings of the device: the same text for as long as nobody changes one.
    [[nodiscard]] std::string settings() const;
    /// Sends to the device.
    /// \return false when it did not take everything in time
    [[nodiscard]] bool send(std::string_view bytes) const;
    /// What the device sent, up to `count` bytes; fewer when they do not come in time.
    [[nodiscard]] std::string receive(std::size_t count, Milliseconds limit = patience) const;
    /// The cable is pulled.
    void hangUp();

 private:
    struct Native;
    std::unique_ptr<Native> native_;
};

/// Whether a result tells that the device is gone.
[[nodiscard]] bool tellsOfAVanishedDevice(std::uint32_t result);

}  // namespace tessavo::test
