#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
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
        /// Both are called on the writer's thread, and give the reason where they fail.
        std::function<std::error_code(const std::filesystem::path&, std::span<const std::uint8_t>)> replace;
        std::function<std::error_code(const std::filesystem::path&)> remove;
    };

    /// \param file whose folder is made when it is missing
    /// \param tellFailure is called on the writer's thread when a write fails, and again only after a success
    ///     in between. May be empty; must not call the writer.
    explicit RecoveryWriter(std::filesystem::path file,
                            std::function<void(const std::error_code&)> tellFailure = {});
    RecoveryWriter(std::filesystem::path file, std::function<void(const std::error_code&)> tellFailure,
                   Dependencies dependencies);
    /// Tries once to write what is not on the disk yet, and waits for that.
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
    enum class Task : std::uint8_t { write, remove };

    void hand(Task task, std::shared_ptr<const RecoveryState> state);
    void run();
    void waitForWork(std::unique_lock<std::mutex>& lock);
    bool work(std::unique_lock<std::mutex>& lock, bool isTold);
    [[nodiscard]] std::error_code perform(Task task, const RecoveryState* state) const;

    const std::filesystem::path file_;
    const std::function<void(const std::error_code&)> tellFailure_;
    const Dependencies dependencies_;

    std::mutex mutex_;  ///< held only for moments, never while anything is written
    std::condition_variable changed_;
    Task task_ = Task::write;                     ///< what is to be done next
    std::shared_ptr<const RecoveryState> state_;  ///< what is to be written, where it is not being written
    std::uint64_t handed_ = 0;                    ///< number of what was handed over last
    std::uint64_t tried_ = 0;                     ///< number of what was tried last
    std::uint64_t succeeded_ = 0;                 ///< number of what is on the disk
    IRecoveryClock::Time earliest_{};             ///< of the next write
    bool hurries_ = false;                        ///< without regard to `earliest_`
    bool ends_ = false;
    std::thread thread_;
};

}  // namespace tessavo
