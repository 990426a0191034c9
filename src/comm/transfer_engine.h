#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <span>
#include <string>
#include <string_view>

#include "base/message_box.h"
#include "base/semaphore.h"
#include "comm/clock.h"
#include "comm/comm_log.h"
#include "comm/framing.h"
#include "comm/line.h"
#include "comm/transfers.h"

namespace tessavo {

/// What an exchange came to, for whoever watches the line.
enum class ExchangeEnd : std::uint8_t {
    answered,         ///< every step succeeded
    noAnswer,         ///< nothing came in time, or nothing that answers
    refused,          ///< the target answered a block or a request with a negative answer
    damagedAnswer,    ///< a reply came, but not whole or not sound
    notDisconnected,  ///< all went well but for the disconnect, which got no answer
    portNotOpened,    ///< the port could not be opened or set up
    lineBusy          ///< the lock could not be had; nothing was tried and nothing logged
};

/// Text of the box shown when the port cannot be opened or set up.
inline constexpr std::string_view cannotOpenPortText = "Cannot open COM port!";

/// Bytes of old input dropped before a frame goes out; a line that chatters on does not hold it up further.
inline constexpr std::size_t flushLimit = 65536;

/// Runs whole exchanges with the target: opening, blocks or request and reply, disconnecting, closing.
///
/// Callable from any thread; the lock keeps exchanges apart, and an exchange that cannot have it in time
/// fails without a word. Every other step is logged as it happens. A port that cannot be opened is told in a
/// box once the lock is free again. When the clock's pause is cut short the exchange ends as failed, quietly.
class TransferEngine : public ITransfers {
 public:
    /// What an exchange works with. All that is referred to outlives the engine.
    struct Dependencies {
        /// Makes the line of each exchange. Called on the exchange's thread.
        LineMaker makeLine;
        IClock& clock;
        ICommLog& log;
        IMessageBox& boxes;
        CSemaphore& lock;
        /// Name of the port selected now, as listPorts() gives it. Called on the exchange's thread.
        std::function<std::string()> portName;
        /// Told after each block that the target took: blocks done, blocks in all. May be empty.
        /// Called on the exchange's thread.
        std::function<void(std::size_t, std::size_t)> progress;
        /// Told once for each exchange, when the line is free again and before any box. May be empty.
        /// Called on the exchange's thread.
        std::function<void(ExchangeEnd)> ended = {};
        /// Told when the exchange has the line to itself; `ended` follows. May be empty.
        /// Called on the exchange's thread.
        std::function<void()> began = {};
        /// Told when a person has closed the box about a port that did not open. May be empty.
        /// Called on the exchange's thread.
        std::function<void()> portBoxClosed = {};
    };

    explicit TransferEngine(Dependencies dependencies);
    TransferEngine(const TransferEngine&) = delete;
    TransferEngine& operator=(const TransferEngine&) = delete;

    bool SendToTarget(std::span<const std::uint8_t> data, MessageType type) override;
    bool ReceiveFromTarget(std::span<std::uint8_t> reply, std::span<const std::uint8_t> request) override;

    /// Cancels the line of the exchange that runs and of every later one: reads and writes fail at once. Any
    /// thread. Does not wait for the exchange, and does not cut a pause short: that is the clock's.
    void cancel();

 private:
    class LineInUse;

    template <typename Body>
    bool run(std::string_view preparation, Body body);
    template <typename Body>
    ExchangeEnd runWithLock(std::string_view preparation, Body body);
    void tellEnd(ExchangeEnd end) const;

    Dependencies dependencies_;
    std::mutex mutex_;       ///< guards what follows
    ILine* line_ = nullptr;  ///< of the exchange that runs
    bool cancelled_ = false;
};

}  // namespace tessavo
