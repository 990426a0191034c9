#include <windows.h>

#include <atomic>
#include <cstdio>
#include <io.h>
#include <mutex>
#include <shellapi.h>
#include <stdio.h>
#include <utility>

#include "platform/process.h"
#include "platform/wide_text_win32.h"

namespace tessavo {

// What main() gets went through the system's code page and lost what that does not have.
std::vector<std::string> programArguments(int /*argc*/, char** /*argv*/) {
    std::vector<std::string> arguments;
    int count = 0;
    wchar_t** words = CommandLineToArgvW(GetCommandLineW(), &count);
    if (words == nullptr) {
        return arguments;
    }
    for (int i = 1; i < count; ++i) {
        arguments.push_back(narrow(words[i]));
    }
    LocalFree(words);
    return arguments;
}

void prepareStandardStreams() {
    SetConsoleOutputCP(CP_UTF8);
}

bool standardErrorIsTerminal() {
    return _isatty(_fileno(stderr)) != 0;
}

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

struct Interruption::Native {
    std::atomic<bool> happened = false;
    std::function<void()> stop;
};

namespace {

// The system calls the handler on a thread of its own, which may still run while the object is destroyed.
std::mutex guard;
std::function<bool()> onEvent;

BOOL WINAPI handleEvent(DWORD event) {
    if (event != CTRL_C_EVENT && event != CTRL_BREAK_EVENT && event != CTRL_CLOSE_EVENT) {
        return FALSE;
    }
    const std::lock_guard hold(guard);
    return onEvent && onEvent() ? TRUE : FALSE;
}

}  // namespace

Interruption::Interruption(std::function<void()> stop) : native_(std::make_unique<Native>()) {
    native_->stop = std::move(stop);
    {
        const std::lock_guard hold(guard);
        onEvent = [native = native_.get()] {
            if (native->happened.exchange(true)) {
                return false;
            }
            native->stop();
            return true;
        };
    }
    SetConsoleCtrlHandler(handleEvent, TRUE);
}

Interruption::~Interruption() {
    SetConsoleCtrlHandler(handleEvent, FALSE);
    const std::lock_guard hold(guard);
    onEvent = nullptr;
}

bool Interruption::happened() const {
    return native_->happened;
}

void lowerThreadPriority() {
    SetThreadPriority(GetCurrentThread(), THREAD_PRIORITY_LOWEST);
}

}  // namespace tessavo
