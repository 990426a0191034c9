#pragma once

#include <chrono>
#include <condition_variable>
#include <filesystem>
#include <functional>
#include <memory>
#include <mutex>
#include <span>
#include <system_error>
#include <thread>

#include "history/recovery_file.h"

namespace tessavo {

/// Time as the writer of the recovery file sees it, so that tests can run in virtual time.
class IRecoveryClock {
 public:
    using Time = std::chrono::steady_clock::time_point;

    virtual ~IRecoveryClock() = default;

    /// Never goes back.
    [[nodiscard]] virtual Time now() = 0;
    /// Waits until `changed` is notified, or until this time at the latest. May return earlier.
    virtual void waitUntil(std::condition_variable& changed, std::unique_lock<std::mutex>& lock,
                           Time end) = 0;
};

/// Keeps the recovery file of a run up to date, on a thread of its own.
///
/// Whatever is handed to it last is on the disk a quarter of a second later, as far as the disk is not slower:
/// at once when nothing was written for that long. What came in between is passed over. Where the disk is full
/// or cannot be written it tries again until it succeeds, and the file of the last success stands meanwhile.
///
/// put(), remove() and flush() are called on one thread.
class RecoveryWriter {
 public:
    /// Shortest time from one write to the next.
    static constexpr std::chrono::milliseconds pace{250};
    /// Time from a write that failed to the next try, unless something is handed over before.
    static constexpr std::chrono::milliseconds retryPause{2000};

    /// What the writer works with. The defaults are the system's.
    struct Dependencies {
        IRecoveryClock* clock = nullptr;  ///< outlives the writer
        /// Longest wait of the destructor, in real time.
        std::chrono::milliseconds endLimit{2000};
        /// Both are called on the writer's thread, and give the reason where they fail. A call that takes
        /// longer than the destructor waits ends after the writer, and so must what they refer to.
        std::function<std::error_code(const std::filesystem::path&, std::span<const std::uint8_t>)> replace;
        std::function<std::error_code(const std::filesystem::path&)> remove;
    };

    /// \param file whose folder is made when it is missing
    /// \param tellFailure is called on the writer's thread when a write fails, and again only after a success
    ///     in between; never once the writer is gone. May be empty; must not call the writer, and is quick.
    explicit RecoveryWriter(std::filesystem::path file,
                            std::function<void(const std::error_code&)> tellFailure = {});
    RecoveryWriter(std::filesystem::path file, std::function<void(const std::error_code&)> tellFailure,
                   Dependencies dependencies);
    /// Tries once to write what is not on the disk yet, and waits for that, but not for ever: where a disk
    /// hangs, the thread is left behind with the write that it is in. When that ends, in a minute or never, the
    /// file holds what it held or what was being written, nothing more is written or told, and the thread ends.
    ~RecoveryWriter();
    RecoveryWriter(const RecoveryWriter&) = delete;
    RecoveryWriter& operator=(const RecoveryWriter&) = delete;

    /// Hands over the state to be written. Never waits for the disk.
    /// \param state not null
    void put(std::shared_ptr<const RecoveryState> state);
    /// There is nothing to restore: the file goes, until something is put again.
    void remove();

    /// Has what was handed over written at once, and waits for that.
    /// \param limit longest wait, in real time
    /// \return whether it is all on the disk; otherwise the writer goes on trying
    bool flush(std::chrono::milliseconds limit);

 private:
    class Core;

    std::shared_ptr<Core> core_;  ///< of the thread, too, which may have to be left behind
    std::thread thread_;
};

}  // namespace tessavo
