#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "comm/serial_codes.h"

namespace tessavo {

/// Bits of the event mask.
namespace serial_event {
inline constexpr std::uint32_t received = 0x0001;
inline constexpr std::uint32_t eventCharacter = 0x0002;
inline constexpr std::uint32_t breakSeen = 0x0040;
inline constexpr std::uint32_t lineError = 0x0080;
inline constexpr std::uint32_t standard = 0x00C1;  ///< break, line error, character received
}  // namespace serial_event

/// An operation that the caller completes itself; see serial_overlapped.h.
class SerialOverlapped;

/// One serial port.
///
/// Every operation stores its result code as lastError() and returns it: 0 for success, otherwise one of
/// serial_result or another code of the platform. Nothing throws and nothing is shown. One thread at a time
/// uses a port; only Cancel() may be called from any thread.
class CSerial {
 public:
    enum Handshaking : int { handshakeNone = 0, handshakeHardware = 1, handshakeSoftware = 2 };
    enum ReadTimeouts : int { nonBlocking = 0, blocking = 1 };
    static constexpr std::uint32_t infinite = 0xFFFFFFFF;

    CSerial();
    /// Closes the port.
    virtual ~CSerial();
    CSerial(const CSerial&) = delete;
    CSerial& operator=(const CSerial&) = delete;

    /// Opens a device for reading and writing, unshared. Bytes that arrive from here on are kept.
    ///
    /// \param deviceName full device path, handed to the system as it is (see devicePath()).
    /// \param inQueue, outQueue driver queue sizes; both 0 leaves the driver's own, and a driver may keep its
    /// own in any case.
    /// \param overlapped needed by every operation with a time-out.
    /// \return `alreadyInitialised` on an open port, which stays as it is.
    virtual std::uint32_t Open(const std::wstring& deviceName, std::uint32_t inQueue, std::uint32_t outQueue,
                               bool overlapped);
    /// \return 0, also when the port was closed already
    virtual std::uint32_t Close();
    /// \param baudRate in bit/s.
    /// \param dataBits 5 to 8.
    /// \param parity see serial_frame; checking is on exactly when it is not parityNone.
    /// \param stopBits see serial_frame.
    /// \param dtrMode 1 turns DTR on and RTS off, which ends hardware handshaking; any other value leaves
    /// both lines' control as it is.
    /// \return `invalidParameter` when the device cannot do that; it then stays as it was
    virtual std::uint32_t Setup(std::uint32_t baudRate, std::uint8_t dataBits, int parity,
                                std::uint8_t stopBits, int dtrMode);
    /// \param adjustMask also adds the event character to the event mask
    virtual std::uint32_t SetEventChar(std::uint8_t character, bool adjustMask);
    virtual std::uint32_t SetMask(std::uint32_t eventMask);
    /// Waits for an event of the mask and stores it as eventType(). Drivers differ in what they report;
    /// `received` comes on every system.
    virtual std::uint32_t WaitEvent(SerialOverlapped* overlapped, std::uint32_t timeoutMs);
    /// \param mode see Handshaking; another value gives `invalidArgument` and leaves the device unchanged
    virtual std::uint32_t SetupHandshaking(int mode);
    /// \param mode see ReadTimeouts; another value gives `invalidArgument` and leaves the device unchanged
    virtual std::uint32_t SetupReadTimeouts(int mode);
    /// \return bit/s, or -1 on failure
    virtual int GetBaudrate();
    /// \return -1 on failure
    virtual int GetDataBits();
    /// \return 0 when parity checking is off, -1 on failure
    virtual int GetParity();
    /// \return a code of serial_frame, -1 on failure
    virtual int GetStopBits();
    /// \return a value of Handshaking, -1 on failure
    virtual int GetHandshaking();
    /// \return 0 when closed
    virtual std::uint32_t GetEventMask();
    /// \return 0 on failure
    virtual std::uint8_t GetEventChar();
    /// Writes a zero-terminated byte string; otherwise as Write().
    virtual std::uint32_t WriteString(const char* text, std::uint32_t* written = nullptr,
                                      SerialOverlapped* overlapped = nullptr,
                                      std::uint32_t timeoutMs = infinite);
    /// Writes all bytes within the time-out, or returns `timeout`; `written` tells how many left.
    virtual std::uint32_t Write(const void* data, std::size_t size, std::uint32_t* written = nullptr,
                                SerialOverlapped* overlapped = nullptr, std::uint32_t timeoutMs = infinite);
    /// With blocking read time-outs waits for the full count, or returns an error: `timeout`, or what the
    /// system tells of a device that vanished. `read` tells how many came. With non-blocking read time-outs
    /// takes what is there.
    virtual std::uint32_t Read(void* data, std::size_t size, std::uint32_t* read = nullptr,
                               SerialOverlapped* overlapped = nullptr, std::uint32_t timeoutMs = infinite);

    /// Ends a running wait of this port with `operationAborted`. For good: every later Read, Write, WaitEvent
    /// and Complete of this object returns that at once, in later openings too. Closing a cancelled port
    /// throws away output not yet sent. A wait of a port opened without overlapped I/O may be out of reach.
    virtual void Cancel();

    /// Waits for an operation that was started with an overlapped structure and tells how many bytes it moved
    /// in all. On `timeout` and `operationAborted` it is over for the caller too, who may free the buffer. A
    /// driver that does not end an operation when told to is not waited for: then `count` is 0, and every
    /// later operation of this opening gives `ioDevice`. So it is in Read, Write and WaitEvent.
    /// \return `invalidArgument` when the structure holds no operation of this port
    virtual std::uint32_t Complete(SerialOverlapped& overlapped, std::uint32_t* count = nullptr,
                                   std::uint32_t timeoutMs = infinite);

    /// Result of the last operation.
    [[nodiscard]] std::uint32_t lastError() const { return lastError_; }
    /// What the last WaitEvent() saw.
    [[nodiscard]] std::uint32_t eventType() const { return eventType_; }

 protected:
    struct Native;
    /// For tests that put calls of their own in the place of the system's.
    explicit CSerial(std::unique_ptr<Native> native);

    std::uint32_t lastError_ = 0;
    std::uint32_t eventType_ = 0;
    std::uint32_t eventMask_ = 0;

 private:
    friend class SerialOverlapped;
    static constexpr std::size_t largestTransfer = 0x7FFFFFFF;

    /// What the device is set up to, as the operations tell it; -1 for what it does not tell.
    struct Settings {
        int baudRate = -1;
        int dataBits = -1;
        int parity = -1;
        int stopBits = -1;
        int handshaking = -1;
    };
    enum class TransferKind : std::uint8_t { read, write, event };
    /// What Read(), Write() and WaitEvent() are asked for.
    struct Transfer {
        TransferKind kind;
        void* into;        ///< of a read
        const void* from;  ///< of a read the same as `into`
        std::size_t size;  ///< bytes
    };

    // What each system does in its own way. Those that return a result leave lastError() to their caller.
    [[nodiscard]] bool isOpen() const;
    [[nodiscard]] bool hasOverlapped() const;
    [[nodiscard]] bool isCancelled() const;
    [[nodiscard]] std::uint32_t readSettings(Settings& settings) const;
    // These are called on an open port only, with a mode that there is.
    std::uint32_t applySetup(std::uint32_t baudRate, std::uint8_t dataBits, int parity, std::uint8_t stopBits,
                             int dtrMode);
    std::uint32_t applyHandshaking(int mode);
    std::uint32_t applyReadTimeouts(int mode);
    std::uint32_t applyMask(std::uint32_t eventMask);
    // Also on a closed port.
    std::uint32_t storeEventChar(std::uint8_t character);
    // Called when nothing refuses it. An event that has come is stored as eventType().
    std::uint32_t carryOut(const Transfer& transfer, SerialOverlapped* overlapped, std::uint32_t timeoutMs,
                           std::uint32_t& moved);
    // Called on an open port only, for Complete().
    std::uint32_t carryOn(SerialOverlapped& overlapped, std::uint32_t timeoutMs, std::uint32_t& moved);

    int setting(int Settings::*which);
    std::uint32_t unlessRefused(const Transfer& transfer, std::uint32_t* count, SerialOverlapped* overlapped,
                                std::uint32_t timeoutMs);
    // Why a transfer cannot start; 0 when it can.
    [[nodiscard]] std::uint32_t refusal(const Transfer& transfer, const SerialOverlapped* overlapped,
                                        std::uint32_t timeoutMs) const;

    std::unique_ptr<Native> native_;
};

}  // namespace tessavo
