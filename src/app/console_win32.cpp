#include <windows.h>

#include <cstdio>

#include "app/console.h"

namespace tessavo {

namespace {

// A handle that a caller has redirected is kept.
bool leadsNowhere(DWORD standardHandle) {
    HANDLE handle = GetStdHandle(standardHandle);
    return handle == nullptr || handle == INVALID_HANDLE_VALUE || GetFileType(handle) == FILE_TYPE_UNKNOWN;
}

}  // namespace

void attachConsole() {
    const bool output = leadsNowhere(STD_OUTPUT_HANDLE);
    const bool errors = leadsNowhere(STD_ERROR_HANDLE);
    if ((!output && !errors) || AttachConsole(ATTACH_PARENT_PROCESS) == 0) {
        return;
    }
    if (output) {
        static_cast<void>(std::freopen("CONOUT$", "w", stdout));
    }
    if (errors) {
        static_cast<void>(std::freopen("CONOUT$", "w", stderr));
    }
}

}  // namespace tessavo
