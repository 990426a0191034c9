#include "target/port_router.h"

#include <utility>

namespace tessavo {

PortRouter::PortRouter(std::wstring specialName, std::unique_ptr<CSerial> special)
    : specialName_(std::move(specialName)), special_(std::move(special)) {}

template <typename Answer>
Answer PortRouter::taken(Answer answer) {
    lastError_ = current_->lastError();
    eventType_ = current_->eventType();
    return answer;
}

std::uint32_t PortRouter::Open(const std::wstring& deviceName, std::uint32_t inQueue, std::uint32_t outQueue,
                               bool overlapped) {
    if (!open_) {
        current_ = deviceName == specialName_ ? special_.get() : &real_;
    }
    const std::uint32_t result = taken(current_->Open(deviceName, inQueue, outQueue, overlapped));
    open_ = open_ || result == serial_result::success;
    return result;
}

std::uint32_t PortRouter::Close() {
    open_ = false;
    return taken(current_->Close());
}

std::uint32_t PortRouter::Setup(std::uint32_t baudRate, std::uint8_t dataBits, int parity,
                                std::uint8_t stopBits, int dtrMode) {
    return taken(current_->Setup(baudRate, dataBits, parity, stopBits, dtrMode));
}

std::uint32_t PortRouter::SetEventChar(std::uint8_t character, bool adjustMask) {
    return taken(current_->SetEventChar(character, adjustMask));
}

std::uint32_t PortRouter::SetMask(std::uint32_t eventMask) {
    return taken(current_->SetMask(eventMask));
}

std::uint32_t PortRouter::WaitEvent(SerialOverlapped* overlapped, std::uint32_t timeoutMs) {
    return taken(current_->WaitEvent(overlapped, timeoutMs));
}

std::uint32_t PortRouter::SetupHandshaking(int mode) {
    return taken(current_->SetupHandshaking(mode));
}

std::uint32_t PortRouter::SetupReadTimeouts(int mode) {
    return taken(current_->SetupReadTimeouts(mode));
}

int PortRouter::GetBaudrate() {
    return taken(current_->GetBaudrate());
}

int PortRouter::GetDataBits() {
    return taken(current_->GetDataBits());
}

int PortRouter::GetParity() {
    return taken(current_->GetParity());
}

int PortRouter::GetStopBits() {
    return taken(current_->GetStopBits());
}

int PortRouter::GetHandshaking() {
    return taken(current_->GetHandshaking());
}

std::uint32_t PortRouter::GetEventMask() {
    return taken(current_->GetEventMask());
}

std::uint8_t PortRouter::GetEventChar() {
    return taken(current_->GetEventChar());
}

std::uint32_t PortRouter::Write(const void* data, std::size_t size, std::uint32_t* written,
                                SerialOverlapped* overlapped, std::uint32_t timeoutMs) {
    return taken(current_->Write(data, size, written, overlapped, timeoutMs));
}

std::uint32_t PortRouter::Read(void* data, std::size_t size, std::uint32_t* read,
                               SerialOverlapped* overlapped, std::uint32_t timeoutMs) {
    return taken(current_->Read(data, size, read, overlapped, timeoutMs));
}

void PortRouter::Cancel() {
    special_->Cancel();
    real_.Cancel();
}

void PortRouter::ClearCancel() {
    special_->ClearCancel();
    real_.ClearCancel();
}

std::uint32_t PortRouter::Complete(SerialOverlapped& overlapped, std::uint32_t* count,
                                   std::uint32_t timeoutMs) {
    return taken(current_->Complete(overlapped, count, timeoutMs));
}

}  // namespace tessavo
