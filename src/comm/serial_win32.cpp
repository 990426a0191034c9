#include <windows.h>

#include <array>
#include <string_view>

#include "comm/serial_native_win32.h"

namespace tessavo {

using win32::Handle;
using win32::newEvent;
using win32::resultOf;

namespace {

static_assert(CSerial::infinite == INFINITE);
static_assert(serial_event::standard == (EV_BREAK | EV_ERR | EV_RXCHAR));
static_assert(serial_event::eventCharacter == EV_RXFLAG);

constexpr std::wstring_view devicePrefix = L"\\\\.\\";

// What the user set up for the device in the system; none is no error.
void applyDefaultConfiguration(HANDLE file, const std::wstring& deviceName) {
    const std::wstring name =
        deviceName.starts_with(devicePrefix) ? deviceName.substr(devicePrefix.size()) : deviceName;
    COMMCONFIG configuration{};
    configuration.dwSize = sizeof configuration;
    configuration.dcb.DCBlength = sizeof configuration.dcb;
    DWORD size = sizeof configuration;
    if (GetDefaultCommConfigW(name.c_str(), &configuration, &size) != 0) {
        SetCommConfig(file, &configuration, size);
    }
}

// Devices and files that are no serial ports do not know the operation.
std::uint32_t maskResult(BOOL done) {
    const std::uint32_t result = resultOf(done);
    return result == ERROR_INVALID_FUNCTION || result == ERROR_INVALID_HANDLE || result == ERROR_NOT_SUPPORTED
               ? serial_result::badDevice
               : result;
}

}  // namespace

SerialOverlapped::SerialOverlapped() : native_(std::make_unique<Native>()) {}

SerialOverlapped::~SerialOverlapped() {
    if (native_->file != nullptr) {
        // Until it is over, the system writes to the structure.
        DWORD count = 0;
        CancelIoEx(native_->file, &native_->io);
        GetOverlappedResult(native_->file, &native_->io, &count, TRUE);
    }
}

bool CSerial::Native::abandon(OVERLAPPED& io, DWORD size, DWORD& count) const {
    CancelIoEx(file.get(), &io);
    return GetOverlappedResult(file.get(), &io, &count, TRUE) != 0 && count >= size;
}

std::uint32_t CSerial::Native::await(OVERLAPPED& io, DWORD size, std::uint32_t timeoutMs,
                                     DWORD& count) const {
    const std::array<HANDLE, 2> ends{io.hEvent, stop.get()};
    const DWORD ended =
        WaitForMultipleObjects(static_cast<DWORD>(ends.size()), ends.data(), FALSE, timeoutMs);
    if (ended == WAIT_OBJECT_0) {
        return resultOf(GetOverlappedResult(file.get(), &io, &count, FALSE));
    }
    std::uint32_t result = serial_result::timeout;
    if (ended == WAIT_OBJECT_0 + 1) {
        result = serial_result::operationAborted;
    } else if (ended != WAIT_TIMEOUT) {
        result = GetLastError();
    }
    return abandon(io, size, count) ? serial_result::success : result;
}

template <typename Start>
std::uint32_t CSerial::Native::perform(Start start, DWORD size, std::uint32_t timeoutMs, DWORD& count) const {
    if (!event.valid()) {
        return resultOf(start(nullptr, count));
    }
    OVERLAPPED io{};
    io.hEvent = event.get();
    if (start(&io, count) != 0) {
        SetEvent(event.get());
        return serial_result::success;
    }
    const std::uint32_t result = GetLastError();
    // A failed start has no outcome to wait for.
    return result == ERROR_IO_PENDING ? await(io, size, timeoutMs, count) : result;
}

template <typename Start>
std::uint32_t CSerial::Native::hand(Start start, DWORD size, bool isEvent, Operation& kept,
                                    DWORD& count) const {
    if (kept.file != nullptr) {
        return serial_result::busy;
    }
    if (!kept.event.valid()) {
        return serial_result::notEnoughMemory;
    }
    kept.io = OVERLAPPED{};
    kept.io.hEvent = kept.event.get();
    if (start(&kept.io, count) != 0) {
        SetEvent(kept.event.get());
    } else if (const std::uint32_t result = GetLastError(); result != ERROR_IO_PENDING) {
        return result;
    }
    kept.file = file.get();
    kept.opening = opening;
    kept.size = size;
    kept.isEvent = isEvent;
    return serial_result::success;
}

template <typename Start>
std::uint32_t CSerial::Native::transfer(Start start, std::size_t size, Operation* kept,
                                        std::uint32_t timeoutMs, std::uint32_t& moved) const {
    const auto wanted = static_cast<DWORD>(size);
    DWORD count = 0;
    const std::uint32_t result =
        kept != nullptr ? hand(start, wanted, false, *kept, count) : perform(start, wanted, timeoutMs, count);
    moved = count;
    return result;
}

CSerial::CSerial() : native_(std::make_unique<Native>()) {}

CSerial::~CSerial() {
    CSerial::Close();
}

bool CSerial::isOpen() const {
    return native_->file.valid();
}
bool CSerial::hasOverlapped() const {
    return native_->event.valid();
}
bool CSerial::isCancelled() const {
    return WaitForSingleObject(native_->stop.get(), 0) == WAIT_OBJECT_0;
}

std::uint32_t CSerial::Open(const std::wstring& deviceName, std::uint32_t inQueue, std::uint32_t outQueue,
                            bool overlapped) {
    if (isOpen()) {
        return lastError_ = serial_result::alreadyInitialised;
    }
    if (deviceName.find(L'\0') != std::wstring::npos) {
        return lastError_ = serial_result::fileNotFound;
    }
    HANDLE file = CreateFileW(deviceName.c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING,
                              overlapped ? FILE_FLAG_OVERLAPPED : 0, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        return lastError_ = GetLastError();
    }
    native_->file = Handle(file);
    ++native_->opening;
    std::uint32_t result = native_->stop.valid() ? serial_result::success : serial_result::notEnoughMemory;
    if (result == serial_result::success && overlapped) {
        native_->event = Handle(newEvent());
        result = resultOf(native_->event.valid() ? TRUE : FALSE);
    }
    if (result == serial_result::success && (inQueue != 0 || outQueue != 0)) {
        result = resultOf(SetupComm(file, inQueue, outQueue));
    }
    if (result == serial_result::success) {
        result = maskResult(SetCommMask(file, serial_event::standard));
    }
    if (result != serial_result::success) {
        CSerial::Close();
        return lastError_ = result;
    }
    eventMask_ = serial_event::standard;
    CSerial::SetupReadTimeouts(nonBlocking);
    applyDefaultConfiguration(file, deviceName);
    return lastError_ = serial_result::success;
}

std::uint32_t CSerial::Close() {
    if (isOpen()) {
        // Structures of callers may still be in use.
        CancelIoEx(native_->file.get(), nullptr);
        if (isCancelled()) {
            PurgeComm(native_->file.get(), PURGE_TXABORT | PURGE_TXCLEAR);
        }
        native_->event.reset();
        native_->file.reset();
        eventMask_ = 0;
    }
    return lastError_ = serial_result::success;
}

std::uint32_t CSerial::WaitEvent(SerialOverlapped* overlapped, std::uint32_t timeoutMs) {
    lastError_ = refusal(nullptr, 0, overlapped, timeoutMs);
    if (lastError_ != serial_result::success) {
        return lastError_;
    }
    DWORD local = 0;
    DWORD* const type = overlapped != nullptr ? &overlapped->native_->eventType : &local;
    const auto start = [this, type](OVERLAPPED* io, DWORD& /*count*/) {
        return WaitCommEvent(native_->file.get(), type, io);
    };
    DWORD count = 0;
    if (overlapped != nullptr) {
        lastError_ = native_->hand(start, 0, true, *overlapped->native_, count);
    } else {
        lastError_ = native_->perform(start, 0, timeoutMs, count);
        eventType_ = lastError_ == serial_result::success ? local : 0;
    }
    return lastError_;
}

std::uint32_t CSerial::Write(const void* data, std::size_t size, std::uint32_t* written,
                             SerialOverlapped* overlapped, std::uint32_t timeoutMs) {
    std::uint32_t count = 0;
    lastError_ = refusal(data, size, overlapped, timeoutMs);
    if (lastError_ == serial_result::success) {
        const auto start = [&](OVERLAPPED* io, DWORD& done) {
            return WriteFile(native_->file.get(), data, static_cast<DWORD>(size), &done, io);
        };
        lastError_ = native_->transfer(
            start, size, overlapped == nullptr ? nullptr : overlapped->native_.get(), timeoutMs, count);
        // The driver has a time-out of its own, which is no error to it.
        if (lastError_ == serial_result::success && overlapped == nullptr && count < size) {
            lastError_ = serial_result::timeout;
        }
    }
    if (written != nullptr) {
        *written = count;
    }
    return lastError_;
}

std::uint32_t CSerial::Read(void* data, std::size_t size, std::uint32_t* read, SerialOverlapped* overlapped,
                            std::uint32_t timeoutMs) {
    std::uint32_t count = 0;
    lastError_ = refusal(data, size, overlapped, timeoutMs);
    if (lastError_ == serial_result::success) {
        const auto start = [&](OVERLAPPED* io, DWORD& done) {
            return ReadFile(native_->file.get(), data, static_cast<DWORD>(size), &done, io);
        };
        lastError_ = native_->transfer(
            start, size, overlapped == nullptr ? nullptr : overlapped->native_.get(), timeoutMs, count);
    }
    if (read != nullptr) {
        *read = count;
    }
    return lastError_;
}

std::uint32_t CSerial::Complete(SerialOverlapped& overlapped, std::uint32_t* count, std::uint32_t timeoutMs) {
    if (count != nullptr) {
        *count = 0;
    }
    if (!isOpen()) {
        return lastError_ = serial_result::invalidHandle;
    }
    Native::Operation& kept = *overlapped.native_;
    if (kept.file != native_->file.get() || kept.opening != native_->opening) {
        return lastError_ = serial_result::invalidArgument;
    }
    DWORD moved = 0;
    if (isCancelled()) {
        static_cast<void>(native_->abandon(kept.io, kept.size, moved));
        lastError_ = serial_result::operationAborted;
    } else {
        lastError_ = native_->await(kept.io, kept.size, timeoutMs, moved);
    }
    kept.file = nullptr;
    if (kept.isEvent) {
        eventType_ = lastError_ == serial_result::success ? kept.eventType : 0;
    } else if (count != nullptr) {
        *count = moved;
    }
    return lastError_;
}

void CSerial::Cancel() {
    SetEvent(native_->stop.get());
}

void CSerial::ClearCancel() {
    ResetEvent(native_->stop.get());
}

}  // namespace tessavo
