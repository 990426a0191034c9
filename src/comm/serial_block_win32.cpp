#include "comm/serial_block_win32.h"

#include <algorithm>
#include <mutex>
#include <new>
#include <vector>

namespace tessavo::win32 {

namespace {

struct LeftBehind {
    std::mutex mutex;
    std::vector<std::unique_ptr<Block>> blocks;

    void sweep() {
        std::erase_if(blocks, [](const std::unique_ptr<Block>& block) {
            return WaitForSingleObject(block->event.get(), 0) == WAIT_OBJECT_0;
        });
    }
};

// Never destroyed: the system may write to a block until the very end of the process.
LeftBehind& all() {
    static auto* const remaining = new LeftBehind;
    return *remaining;
}

}  // namespace

HANDLE newEvent() {
    return CreateEventW(nullptr, TRUE, FALSE, nullptr);
}

bool Block::prepare(std::size_t size) {
    bytes.reset(new (std::nothrow) std::uint8_t[std::max<std::size_t>(size, 1)]);
    io = OVERLAPPED{};
    io.hEvent = event.get();
    eventType = 0;
    return bytes != nullptr && event.valid() && ResetEvent(event.get()) != 0;
}

void leaveBehind(std::unique_ptr<Block> block) {
    LeftBehind& remaining = all();
    const std::lock_guard guard(remaining.mutex);
    remaining.sweep();
    remaining.blocks.push_back(std::move(block));
}

std::size_t leftBehind() {
    LeftBehind& remaining = all();
    const std::lock_guard guard(remaining.mutex);
    remaining.sweep();
    return remaining.blocks.size();
}

}  // namespace tessavo::win32
