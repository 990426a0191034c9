#pragma once

#include <memory>
#include <string>

#include "comm/serial.h"

namespace tessavo {

/// A serial port that is another one for one device name, and a port of the system for every other.
///
/// The name given to Open() decides until the next one. Otherwise as CSerial, and as the port that is behind
/// it.
class PortRouter final : public CSerial {
 public:
    /// \param special takes the name `specialName`
    PortRouter(std::wstring specialName, std::unique_ptr<CSerial> special);

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
    /// Reaches a wait of either port.
    void Cancel() override;
    void ClearCancel() override;
    std::uint32_t Complete(SerialOverlapped& overlapped, std::uint32_t* count = nullptr,
                           std::uint32_t timeoutMs = infinite) override;

 private:
    /// Passes an answer on, together with what the port remembers of it.
    template <typename Answer>
    Answer taken(Answer answer);

    std::wstring specialName_;
    std::unique_ptr<CSerial> special_;
    CSerial real_;
    CSerial* current_ = &real_;
    bool open_ = false;
};

}  // namespace tessavo
