#pragma once

#include <windows.h>

#include <functional>

namespace tessavo::win32 {

/// The system's calls that a port makes while it is open. Tests put their own in the place of some.
struct SerialCalls {
    std::function<decltype(CreateFileW)> createFile = CreateFileW;
    std::function<decltype(SetupComm)> setupComm = SetupComm;
    std::function<decltype(SetCommMask)> setCommMask = SetCommMask;
    std::function<decltype(GetCommState)> getCommState = GetCommState;
    std::function<decltype(SetCommState)> setCommState = SetCommState;
    std::function<decltype(GetCommTimeouts)> getCommTimeouts = GetCommTimeouts;
    std::function<decltype(SetCommTimeouts)> setCommTimeouts = SetCommTimeouts;
    std::function<decltype(ReadFile)> readFile = ReadFile;
    std::function<decltype(WriteFile)> writeFile = WriteFile;
    std::function<decltype(WaitCommEvent)> waitCommEvent = WaitCommEvent;
    std::function<decltype(CancelIoEx)> cancelIoEx = CancelIoEx;
    std::function<decltype(GetOverlappedResult)> getOverlappedResult = GetOverlappedResult;
    std::function<decltype(WaitForMultipleObjects)> waitForMultipleObjects = WaitForMultipleObjects;
};

}  // namespace tessavo::win32
