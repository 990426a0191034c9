#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "base/semaphore.h"
#include "cli/arguments.h"
#include "comm/clock.h"
#include "comm/serial_port_line.h"
#include "comm/transfer_engine.h"
#include "platform/process.h"

namespace tessavo::cli {

/// What the exchanges of one command work with: a real port, the machine's clock, and a way out by Ctrl-C.
class PortSession {
 public:
    PortSession(const Arguments& arguments, const CommandContext& context);

    [[nodiscard]] TransferEngine& engine() { return engine_; }
    [[nodiscard]] IClock& clock() { return clock_; }
    [[nodiscard]] bool interrupted() const { return interruption_.happened(); }

    /// Whether an exchange was tried at all.
    [[nodiscard]] bool tried() const { return use_.tried; }
    /// Whether the last exchange could not use the port, so that nothing of it was sent.
    [[nodiscard]] bool portUnusable() const { return use_.trouble != serial_result::success; }

    /// Whether any exchange so far could use the port.
    [[nodiscard]] bool everUsable() const { return use_.everUsable; }

    /// Says why the last exchange failed: the interruption, the port, or else `otherwise`.
    /// \param consequence what that means for the target or the files; nothing was sent when no exchange
    /// found the port usable
    void tellFailure(std::string_view otherwise, std::string_view consequence);

 private:
    /// What the exchanges so far have made of the port.
    struct PortUse {
        bool tried = false;
        bool everUsable = false;
        std::uint32_t trouble = serial_result::success;  ///< why the last one could not use it
    };
    class NotingLine;

    std::string portName_;
    Reporter& reporter_;
    PortUse use_;
    SystemClock clock_;
    CSemaphore lock_;
    TransferEngine engine_;
    Interruption interruption_;  // behind the engine, which it cancels
};

}  // namespace tessavo::cli
