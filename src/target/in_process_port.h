#pragma once

#include <chrono>
#include <cstdint>
#include <deque>
#include <functional>
#include <mutex>

#include "comm/serial.h"
#include "target/in_process_target.h"

namespace tessavo {

/// A serial port whose line ends in a target inside the program.
///
/// Keeps the contract of CSerial, time-outs in real time. Opens under the target's device name only, and one
/// port at a time. Knows no operations that the caller completes itself: with an overlapped structure it
/// answers `invalidFunction`, and Complete() finds no operation of this port. Output is taken at once.
class InProcessPort final : public CSerial {
 public:
    /// \param target outlives the port
    explicit InProcessPort(InProcessTarget& target) : target_(target) {}
    /// Closes the port.
    ~InProcessPort() override;

    /// \return `fileNotFound` for another name, `accessDenied` while another port has the target
    std::uint32_t Open(const std::wstring& deviceName, std::uint32_t inQueue, std::uint32_t outQueue,
                       bool overlapped) override;
    std::uint32_t Close() override;
    std::uint32_t Setup(std::uint32_t baudRate, std::uint8_t dataBits, int parity, std::uint8_t stopBits,
                        int dtrMode) override;
    std::uint32_t SetEventChar(std::uint8_t character, bool adjustMask) override;
    std::uint32_t SetMask(std::uint32_t eventMask) override;
    std::uint32_t WaitEvent(SerialOverlapped* overlapped, std::uint32_t timeoutMs) override;
    std::uint32_t SetupHandshaking(int mode) override;
    std::uint32_t SetupReadTimeouts(int mode) override;
    int GetBaudrate() override;
    int GetDataBits() override;
    int GetParity() override;
    int GetStopBits() override;
    int GetHandshaking() override;
    std::uint32_t GetEventMask() override;
    std::uint8_t GetEventChar() override;
    std::uint32_t Write(const void* data, std::size_t size, std::uint32_t* written = nullptr,
                        SerialOverlapped* overlapped = nullptr, std::uint32_t timeoutMs = infinite) override;
    std::uint32_t Read(void* data, std::size_t size, std::uint32_t* read = nullptr,
                       SerialOverlapped* overlapped = nullptr, std::uint32_t timeoutMs = infinite) override;
    void Cancel() override;
    void ClearCancel() override;
    std::uint32_t Complete(SerialOverlapped& overlapped, std::uint32_t* count = nullptr,
                           std::uint32_t timeoutMs = infinite) override;

 private:
    /// How the line is set up; a port that is opened begins like this.
    struct Line {
        int baudRate = 9600;
        int dataBits = 8;
        int parity = serial_frame::parityNone;
        int stopBits = serial_frame::stopBitsOne;
        int handshaking = handshakeNone;
        bool blockingReads = false;
        std::uint8_t eventCharacter = 0;
    };
    [[nodiscard]] std::uint32_t refusal(const void* data, std::size_t size,
                                        const SerialOverlapped* overlapped, std::uint32_t timeoutMs) const;
    /// Answers `success` on an open port, which `use` then changes or reads.
    std::uint32_t onOpen(const std::function<void()>& use);
    void hear();
    std::uint32_t waitUntil(std::unique_lock<std::mutex>& guard, std::uint32_t timeoutMs,
                            const std::function<bool()>& done);

    InProcessTarget& target_;
    Line line_;
    std::deque<std::uint8_t> input_;
    bool open_ = false;
    bool overlapped_ = false;
    bool cancelled_ = false;  ///< guarded by the target's mutex
};

}  // namespace tessavo
