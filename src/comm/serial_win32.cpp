#include <windows.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <string_view>

#include "comm/serial_native_win32.h"

namespace tessavo {

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
    if (native_->kind) {
        native_->end();
    }
}

bool SerialOverlapped::Native::end() {
    const std::shared_ptr<win32::Opening> port = opening.lock();
    if (port != nullptr) {
        calls->cancelIoEx(port->file.get(), &block->io);
    }
    const HANDLE over = block->event.get();
    if (calls->waitForMultipleObjects(1, &over, FALSE, win32::cancelPatienceMs) == WAIT_OBJECT_0) {
        return true;
    }
    win32::leaveBehind(std::move(block));
    if (port != nullptr) {
        port->stuck = true;
    }
    return false;
}

std::uint32_t SerialOverlapped::Native::judged(std::uint32_t result) const {
    const bool shortened = result == serial_result::success && whole && moved < size;
    // Nobody cancelled it: so end the transfers of a device that was pulled out.
    const bool dropped = result == serial_result::operationAborted && kind != CSerial::TransferKind::event;
    return shortened || dropped ? serial_result::ioDevice : result;
}

void SerialOverlapped::Native::take() {
    if (kind == CSerial::TransferKind::read && moved != 0) {
        std::memcpy(in, block->bytes.get(), std::min(moved, size));
    }
    eventType = block->eventType;
}

std::uint32_t SerialOverlapped::Native::fetch() {
    const std::shared_ptr<win32::Opening> port = opening.lock();
    const std::uint32_t result =
        port == nullptr ? serial_result::invalidHandle
                        : resultOf(calls->getOverlappedResult(port->file.get(), &block->io, &moved, FALSE));
    take();
    return result;
}

CSerial::Native::Operation CSerial::Native::operation(Kind kind, std::size_t size) const {
    Operation made;
    made.kind = kind;
    made.size = static_cast<DWORD>(size);
    made.whole = kind == Kind::read && blockingReads;
    made.opening = opening;
    made.calls = calls;
    return made;
}

std::uint32_t CSerial::Native::begin(Operation& operation, bool& pending) const {
    win32::Block* const block = operation.block.get();
    if (overlapped && (block == nullptr || !block->prepare(operation.size))) {
        return serial_result::notEnoughMemory;
    }
    OVERLAPPED* const io = block == nullptr ? nullptr : &block->io;
    BOOL done = FALSE;
    if (operation.kind == Kind::read) {
        void* const into = block == nullptr ? operation.in : block->bytes.get();
        done = calls->readFile(handle(), into, operation.size, &operation.moved, io);
    } else if (operation.kind == Kind::write) {
        const void* from = operation.out;
        if (block != nullptr && operation.size != 0) {
            from = std::memcpy(block->bytes.get(), operation.out, operation.size);
        }
        done = calls->writeFile(handle(), from, operation.size, &operation.moved, io);
    } else {
        DWORD* const type = block == nullptr ? &operation.eventType : &block->eventType;
        done = calls->waitCommEvent(handle(), type, io);
    }
    const std::uint32_t result = resultOf(done);
    pending = block != nullptr && result == ERROR_IO_PENDING;
    if (block != nullptr && result == serial_result::success) {
        SetEvent(block->event.get());
        operation.take();
    }
    return pending ? serial_result::success : operation.judged(result);
}

std::uint32_t CSerial::Native::await(Operation& operation, std::uint32_t timeoutMs) const {
    const std::array<HANDLE, 2> ends{operation.block->event.get(), stop.get()};
    const DWORD ended =
        calls->waitForMultipleObjects(static_cast<DWORD>(ends.size()), ends.data(), FALSE, timeoutMs);
    if (ended == WAIT_OBJECT_0) {
        return operation.judged(operation.fetch());
    }
    std::uint32_t reason = serial_result::timeout;
    if (ended == WAIT_OBJECT_0 + 1) {
        reason = serial_result::operationAborted;
    } else if (ended != WAIT_TIMEOUT) {
        reason = GetLastError();
    }
    if (!operation.end()) {
        return reason;
    }
    // It may have come to its own end in the last moment; bytes that it moved count in any case.
    const std::uint32_t result = operation.fetch();
    return result == serial_result::success && operation.moved >= operation.size ? result : reason;
}

std::uint32_t CSerial::Native::perform(Operation& operation, std::uint32_t timeoutMs) {
    bool pending = false;
    operation.block = std::move(ownBlock);
    std::uint32_t result = begin(operation, pending);
    if (pending) {
        result = await(operation, timeoutMs);
    }
    ownBlock = std::move(operation.block);
    return result;
}

std::uint32_t CSerial::Native::hand(Operation& operation, Operation& deferred) const {
    if (deferred.kind) {
        return serial_result::busy;
    }
    bool pending = false;
    operation.block = std::make_unique<win32::Block>();
    const std::uint32_t result = begin(operation, pending);
    if (result == serial_result::success) {
        deferred = std::move(operation);
    }
    return result;
}

std::uint32_t CSerial::Native::run(Operation& operation, Operation* deferred, std::uint32_t timeoutMs) {
    if (opening->stuck) {
        return serial_result::ioDevice;
    }
    return deferred != nullptr ? hand(operation, *deferred) : perform(operation, timeoutMs);
}

CSerial::CSerial() : CSerial(std::make_unique<Native>()) {}

CSerial::CSerial(std::unique_ptr<Native> native) : native_(std::move(native)) {}

CSerial::~CSerial() {
    CSerial::Close();
}

bool CSerial::isOpen() const {
    return native_->opening != nullptr;
}
bool CSerial::hasOverlapped() const {
    return native_->overlapped;
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
    const win32::SerialCalls& calls = *native_->calls;
    HANDLE file = calls.createFile(deviceName.c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr,
                                   OPEN_EXISTING, overlapped ? FILE_FLAG_OVERLAPPED : 0, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        return lastError_ = GetLastError();
    }
    native_->opening = std::make_shared<win32::Opening>(file);
    native_->overlapped = overlapped;
    native_->blockingReads = false;
    std::uint32_t result = native_->stop.valid() ? serial_result::success : serial_result::notEnoughMemory;
    if (result == serial_result::success && overlapped) {
        native_->ownBlock = std::make_unique<win32::Block>();
        result = resultOf(native_->ownBlock->event.valid() ? TRUE : FALSE);
    }
    if (result == serial_result::success && (inQueue != 0 || outQueue != 0)) {
        result = resultOf(calls.setupComm(file, inQueue, outQueue));
    }
    if (result == serial_result::success) {
        result = maskResult(calls.setCommMask(file, serial_event::standard));
    }
    if (result != serial_result::success) {
        CSerial::Close();
        return lastError_ = result;
    }
    eventMask_ = serial_event::standard;
    static_cast<void>(applyReadTimeouts(nonBlocking));
    applyDefaultConfiguration(file, deviceName);
    return lastError_ = serial_result::success;
}

std::uint32_t CSerial::Close() {
    if (isOpen()) {
        // Structures of callers may still be in use.
        native_->calls->cancelIoEx(native_->handle(), nullptr);
        if (isCancelled()) {
            PurgeComm(native_->handle(), PURGE_TXABORT | PURGE_TXCLEAR);
        }
        native_->ownBlock.reset();
        native_->opening.reset();
        native_->overlapped = false;
        eventMask_ = 0;
    }
    return lastError_ = serial_result::success;
}

std::uint32_t CSerial::carryOut(const Transfer& transfer, SerialOverlapped* overlapped,
                                std::uint32_t timeoutMs, std::uint32_t& moved) {
    Native::Operation operation = native_->operation(transfer.kind, transfer.size);
    operation.in = transfer.into;
    operation.out = transfer.from;
    std::uint32_t result =
        native_->run(operation, overlapped == nullptr ? nullptr : overlapped->native_.get(), timeoutMs);
    if (transfer.kind != TransferKind::event) {
        moved = operation.moved;
    } else if (overlapped == nullptr) {
        eventType_ = result == serial_result::success ? operation.eventType : 0;
    }
    // The driver has a time-out of its own, which is no error to it.
    if (transfer.kind == TransferKind::write && result == serial_result::success && overlapped == nullptr &&
        moved < transfer.size) {
        result = serial_result::timeout;
    }
    return result;
}

std::uint32_t CSerial::carryOn(SerialOverlapped& overlapped, std::uint32_t timeoutMs, std::uint32_t& moved) {
    Native::Operation& deferred = *overlapped.native_;
    if (!deferred.kind || deferred.opening.lock() != native_->opening) {
        return serial_result::invalidArgument;
    }
    Native::Operation operation = std::exchange(deferred, Native::Operation{});
    operation.moved = 0;
    std::uint32_t result = serial_result::operationAborted;
    if (!isCancelled()) {
        result = native_->await(operation, timeoutMs);
    } else if (operation.end()) {
        static_cast<void>(operation.fetch());
    }
    if (operation.kind == TransferKind::event) {
        eventType_ = result == serial_result::success ? operation.eventType : 0;
    } else {
        moved = operation.moved;
    }
    return result;
}

void CSerial::Cancel() {
    SetEvent(native_->stop.get());
}

}  // namespace tessavo
