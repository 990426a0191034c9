#include <windows.h>

#include <algorithm>
#include <string>

#include "base/handle_win32.h"
#include "base/raw_file.h"

namespace tessavo {

namespace {

bool isPipe(HANDLE file) {
    return GetFileType(file) == FILE_TYPE_PIPE;
}

// Consoles and serial ports have names that look like files; they open at once, but a read may wait for ever.
bool isRegularFile(HANDLE file) {
    return GetFileType(file) == FILE_TYPE_DISK;
}

constexpr std::size_t largestStep = 1U << 20U;

std::size_t writeAll(HANDLE file, std::span<const std::uint8_t> bytes) {
    std::size_t written = 0;
    while (written < bytes.size()) {
        DWORD count = 0;
        const auto step = static_cast<DWORD>(std::min(bytes.size() - written, largestStep));
        if (WriteFile(file, bytes.data() + written, step, &count, nullptr) == 0 || count == 0) {
            break;
        }
        written += count;
    }
    return written;
}

FileWrite writeInPlace(const std::filesystem::path& path, std::span<const std::uint8_t> bytes,
                       DWORD disposition) {
    const win32::Handle file(CreateFileW(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr, disposition,
                                         FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!file.valid()) {
        return {};
    }
    if (isPipe(file.get())) {
        SetLastError(ERROR_BAD_FILE_TYPE);
        return {};
    }
    FileWrite result{true, writeAll(file.get(), bytes)};
    if (FlushFileBuffers(file.get()) == 0) {
        result.written = 0;
    }
    return result;
}

// A name in the file's own folder, so that renaming moves no bytes.
std::wstring temporaryName(const std::filesystem::path& path) {
    return path.wstring() + L".part-" + std::to_wstring(GetCurrentProcessId());
}

// Writes the temporary file down to the disk. The caller removes it where not every byte got there; the last
// error says why then.
FileWrite writeTemporary(const std::wstring& name, std::span<const std::uint8_t> bytes) {
    const win32::Handle file(CreateFileW(name.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr, CREATE_ALWAYS,
                                         FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!file.valid()) {
        return {};
    }
    FileWrite result{true, writeAll(file.get(), bytes)};
    const DWORD shortReason = GetLastError();
    DWORD reason = result.written == bytes.size() ? ERROR_SUCCESS : shortReason;
    if (FlushFileBuffers(file.get()) == 0) {
        result.written = 0;
        reason = reason == ERROR_SUCCESS ? GetLastError() : reason;
    }
    SetLastError(reason);
    return result;
}

std::error_code lastError() {
    const DWORD reason = GetLastError();
    return {static_cast<int>(reason != ERROR_SUCCESS ? reason : ERROR_WRITE_FAULT), std::system_category()};
}

bool moveOver(const std::wstring& temporary, const std::filesystem::path& path) {
    // Somebody who reads the old file, as a search program, holds it for a moment.
    constexpr int tries = 6;
    constexpr DWORD firstPauseMs = 5;
    DWORD pauseMs = firstPauseMs;
    for (int left = tries; left > 0; --left) {
        if (MoveFileExW(temporary.c_str(), path.c_str(),
                        MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) != 0) {
            return true;
        }
        const DWORD reason = GetLastError();
        if (reason != ERROR_SHARING_VIOLATION && reason != ERROR_ACCESS_DENIED) {
            return false;
        }
        Sleep(pauseMs);
        pauseMs *= 2;
        SetLastError(reason);
    }
    return false;
}

FileWrite writeNewFile(const std::filesystem::path& path, std::span<const std::uint8_t> bytes) {
    const std::wstring temporary = temporaryName(path);
    FileWrite result = writeTemporary(temporary, bytes);
    if (!result.opened) {
        return result;
    }
    if (result.written != bytes.size() ||
        MoveFileExW(temporary.c_str(), path.c_str(), MOVEFILE_WRITE_THROUGH) == 0) {
        const DWORD reason = GetLastError();
        DeleteFileW(temporary.c_str());
        if (result.written == bytes.size() &&
            (reason == ERROR_ALREADY_EXISTS || reason == ERROR_FILE_EXISTS)) {
            // Another program has made the file meanwhile, or the name is a link to a file that does not
            // exist yet.
            return writeInPlace(path, bytes, OPEN_ALWAYS);
        }
        result.written = 0;
    }
    return result;
}

HANDLE openForReading(const std::filesystem::path& path) {
    return CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                       FILE_ATTRIBUTE_NORMAL, nullptr);
}

std::optional<FileStart> readFrom(HANDLE file, std::size_t limit) {
    FileStart start;
    LARGE_INTEGER length{};
    if (isRegularFile(file) && GetFileSizeEx(file, &length) != 0) {
        start.fileSize = static_cast<std::uintmax_t>(length.QuadPart);
    }
    start.bytes.resize(limit);
    std::size_t size = 0;
    while (size < limit) {
        DWORD count = 0;
        const auto step = static_cast<DWORD>(std::min(limit - size, largestStep));
        if (ReadFile(file, start.bytes.data() + size, step, &count, nullptr) == 0) {
            // The writer has closed its end of the pipe: there is nothing more to read.
            if (GetLastError() != ERROR_BROKEN_PIPE) {
                return std::nullopt;
            }
            break;
        }
        if (count == 0) {
            break;
        }
        size += count;
    }
    start.bytes.resize(size);
    return start;
}

}  // namespace

std::optional<FileStart> readFileStart(const std::filesystem::path& path, std::size_t limit) {
    const win32::Handle file(openForReading(path));
    return file.valid() && isRegularFile(file.get()) ? readFrom(file.get(), limit) : std::nullopt;
}

std::optional<FileStart> readStreamStart(const std::filesystem::path& path, std::size_t limit) {
    const win32::Handle file(openForReading(path));
    return file.valid() ? readFrom(file.get(), limit) : std::nullopt;
}

FileWrite writeFileStart(const std::filesystem::path& path, std::span<const std::uint8_t> bytes) {
    const FileWrite result = writeInPlace(path, bytes, OPEN_EXISTING);
    return !result.opened && GetLastError() == ERROR_FILE_NOT_FOUND ? writeNewFile(path, bytes) : result;
}

// The user's local application data is the user's alone, and a file inherits that.
std::error_code replaceFile(const std::filesystem::path& path, std::span<const std::uint8_t> bytes) {
    const std::wstring temporary = temporaryName(path);
    const FileWrite written = writeTemporary(temporary, bytes);
    if (!written.opened) {
        return lastError();
    }
    if (written.written == bytes.size() && moveOver(temporary, path)) {
        return {};
    }
    const std::error_code failed = lastError();
    DeleteFileW(temporary.c_str());
    return failed;
}

std::error_code removeFile(const std::filesystem::path& path) {
    const bool isGone = DeleteFileW(path.c_str()) != 0 || GetLastError() == ERROR_FILE_NOT_FOUND ||
                        GetLastError() == ERROR_PATH_NOT_FOUND;
    return isGone ? std::error_code() : lastError();
}

}  // namespace tessavo
