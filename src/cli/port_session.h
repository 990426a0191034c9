#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "base/semaphore.h"
#include "cli/arguments.h"
#include "comm/clock.h"
#include "comm/serial.h"
#include "comm/transfer_engine.h"
#include "platform/process.h"

namespace tessavo::cli {

/// What the exchanges of one command work with: a real port, the machine's clock, and a way out by Ctrl-C.
class PortSession {
 public:
    PortSession(const Arguments& arguments, const Surroundings& around);

    [[nodiscard]] TransferEngine& engine() { return engine_; }
    [[nodiscard]] IClock& clock() { return clock_; }
    [[nodiscard]] bool interrupted() const { return interruption_.happened(); }

    /// Whether an exchange was tried at all.
    [[nodiscard]] bool tried() const { return port_.tried(); }
    /// Whether the last exchange could not use the port, so that nothing of it was sent.
    [[nodiscard]] bool shutOut() const { return port_.trouble() != 0; }

    /// Says why the last exchange failed: the interruption, the port, or else `otherwise`.
    /// \param consequence what that means for the target or the files; nothing was sent when no exchange
    /// found the port usable
    void tellFailure(std::string_view otherwise, std::string_view consequence);

 private:
    /// A port that remembers why it could not be opened or set up.
    class Port final : public CSerial {
     public:
        std::uint32_t Open(const std::wstring& deviceName, std::uint32_t inQueue, std::uint32_t outQueue,
                           bool overlapped) override;
        std::uint32_t Setup(std::uint32_t baudRate, std::uint8_t dataBits, int parity, std::uint8_t stopBits,
                            int dtrMode) override;
        [[nodiscard]] std::uint32_t trouble() const { return trouble_; }
        [[nodiscard]] bool tried() const { return tried_; }
        [[nodiscard]] bool everUsable() const { return everUsable_; }

     private:
        bool tried_ = false;
        bool everUsable_ = false;
        std::uint32_t trouble_ = 0;
    };

    std::string portName_;
    Reporter& reporter_;
    Port port_;
    SystemClock clock_;
    CSemaphore lock_;
    Interruption interruption_;
    TransferEngine engine_;
};

}  // namespace tessavo::cli
