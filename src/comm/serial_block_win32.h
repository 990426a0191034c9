#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdint>
#include <memory>

#include "base/handle_win32.h"

namespace tessavo::win32 {

/// Manual-reset, not signalled; null on failure.
[[nodiscard]] HANDLE newEvent();

/// All that the system writes to while an operation runs. It must live until the operation is over, also when
/// nobody waits for that any more.
struct Block {
    Handle event{newEvent()};
    OVERLAPPED io{};
    std::unique_ptr<std::uint8_t[]> bytes;
    DWORD eventType = 0;

    /// Makes it ready for an operation of up to `size` bytes.
    /// \return false when there is no memory for it
    [[nodiscard]] bool prepare(std::size_t size);
};

/// Keeps the block of an operation that was cancelled and is not over, until it is. Any thread.
void leaveBehind(std::unique_ptr<Block> block);

/// How many of those are not over yet; what is over is freed.
[[nodiscard]] std::size_t leftBehind();

}  // namespace tessavo::win32
