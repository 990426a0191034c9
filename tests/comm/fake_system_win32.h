#pragma once

#include <windows.h>

#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

#include "comm/serial_native_win32.h"

namespace tessavo::test {

/// A system whose port does what the test says, without a device and without time: a wait that would last
/// ends at once.
class FakeSystem {
 public:
    /// What a transfer does when it is started.
    enum class Start : std::uint8_t { pend, succeed, fail };

    [[nodiscard]] win32::SerialCalls calls();

    /// Ends the transfer that runs, as the driver does: also long after everybody gave up on it.
    void end(std::string_view bytes, DWORD result = ERROR_SUCCESS);
    void endWrite(DWORD count, DWORD result = ERROR_SUCCESS);

    DCB control{};
    std::vector<DCB> written;  ///< control blocks that the port was given
    std::vector<std::pair<DWORD, DWORD>> queues;
    DWORD queueResult = ERROR_SUCCESS;
    std::vector<DWORD> masks;
    COMMTIMEOUTS timeouts{1, 2, 3, 4, 5};

    Start start = Start::pend;
    std::string_view atOnce;  ///< what a read that succeeds at once brings
    DWORD failure = ERROR_GEN_FAILURE;
    bool cancelWorks = true;        ///< a cancelled transfer ends
    std::string_view beforeCancel;  ///< what it has brought by then
    DWORD cancelResult = ERROR_OPERATION_ABORTED;
    int cancels = 0;
    int starts = 0;
    bool aborts = false;  ///< the transfer ends by itself during the first wait, with `abortResult`
    DWORD abortResult = ERROR_OPERATION_ABORTED;
    std::string_view abortBytes;
    std::vector<DWORD> waits;  ///< time-outs in ms of the waits so far
    OVERLAPPED* io = nullptr;  ///< of the transfer that was started last

 private:
    BOOL begin(void* into, DWORD size, DWORD* moved, OVERLAPPED* with);

    void* into_ = nullptr;
    DWORD size_ = 0;
};

/// A port of that system.
class FakePort final : public CSerial {
 public:
    explicit FakePort(FakeSystem& system) : CSerial(std::make_unique<Native>(system.calls())) {}
    ~FakePort() override { Close(); }
};

}  // namespace tessavo::test
