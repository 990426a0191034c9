#include "comm/fake_system_win32.h"

#include <algorithm>
#include <cstring>

namespace tessavo::test {

win32::SerialCalls FakeSystem::calls() {
    win32::SerialCalls made;
    // Any handle that can be closed.
    made.createFile = [](auto&&...) { return win32::newEvent(); };
    made.setupComm = [this](HANDLE, DWORD in, DWORD out) -> BOOL {
        queues.emplace_back(in, out);
        SetLastError(queueResult);
        return queueResult == ERROR_SUCCESS ? TRUE : FALSE;
    };
    made.setCommMask = [this](HANDLE, DWORD mask) -> BOOL {
        masks.push_back(mask);
        return TRUE;
    };
    made.getCommState = [this](HANDLE, DCB* into) -> BOOL {
        *into = control;
        return TRUE;
    };
    made.setCommState = [this](HANDLE, DCB* from) -> BOOL {
        control = *from;
        written.push_back(*from);
        return TRUE;
    };
    made.getCommTimeouts = [this](HANDLE, COMMTIMEOUTS* into) -> BOOL {
        *into = timeouts;
        return TRUE;
    };
    made.setCommTimeouts = [this](HANDLE, COMMTIMEOUTS* from) -> BOOL {
        timeouts = *from;
        return TRUE;
    };
    made.readFile = [this](HANDLE, void* into, DWORD size, DWORD* moved, OVERLAPPED* with) {
        return begin(into, size, moved, with);
    };
    made.writeFile = [this](HANDLE, const void*, DWORD size, DWORD* moved, OVERLAPPED* with) {
        return begin(nullptr, size, moved, with);
    };
    made.waitCommEvent = [this](HANDLE, DWORD* type, OVERLAPPED* with) {
        DWORD moved = 0;
        return begin(type, sizeof *type, &moved, with);
    };
    made.cancelIoEx = [this](HANDLE, OVERLAPPED* with) -> BOOL {
        ++cancels;
        if (cancelWorks && with != nullptr && with == io) {
            end(beforeCancel, cancelResult);
        }
        return TRUE;
    };
    made.getOverlappedResult = [](HANDLE, OVERLAPPED* with, DWORD* moved, BOOL) -> BOOL {
        *moved = static_cast<DWORD>(with->InternalHigh);
        SetLastError(static_cast<DWORD>(with->Internal));
        return with->Internal == ERROR_SUCCESS ? TRUE : FALSE;
    };
    made.waitForMultipleObjects = [this](DWORD count, const HANDLE* handles, BOOL all, DWORD timeoutMs) {
        waits.push_back(timeoutMs);
        if (aborts && waits.size() == 1) {
            end(abortBytes, abortResult);
        }
        return WaitForMultipleObjects(count, handles, all, 0);
    };
    return made;
}

BOOL FakeSystem::begin(void* into, DWORD size, DWORD* moved, OVERLAPPED* with) {
    ++starts;
    io = with;
    into_ = into;
    size_ = size;
    *moved = 0;
    if (start == Start::succeed) {
        *moved = into == nullptr ? size : static_cast<DWORD>(std::min<std::size_t>(size, atOnce.size()));
        if (into != nullptr) {
            std::memcpy(into, atOnce.data(), *moved);
        }
        return TRUE;
    }
    SetLastError(start == Start::pend ? DWORD{ERROR_IO_PENDING} : failure);
    return FALSE;
}

void FakeSystem::end(std::string_view bytes, DWORD result) {
    if (into_ != nullptr) {
        std::memcpy(into_, bytes.data(), std::min<std::size_t>(size_, bytes.size()));
    }
    endWrite(static_cast<DWORD>(bytes.size()), result);
}

void FakeSystem::endWrite(DWORD count, DWORD result) {
    io->Internal = result;
    io->InternalHigh = count;
    SetEvent(io->hEvent);
}

}  // namespace tessavo::test
