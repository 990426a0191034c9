#include "history/recovery_writer.h"

#include <algorithm>
#include <cstdint>
#include <exception>
#include <utility>

#include "base/raw_file.h"
#include "platform/data_folder.h"

namespace tessavo {

namespace {

class SteadyClock final : public IRecoveryClock {
 public:
    Time now() override { return std::chrono::steady_clock::now(); }
    void waitUntil(std::condition_variable& changed, std::unique_lock<std::mutex>& lock, Time end) override {
        changed.wait_until(lock, end);
    }
};

IRecoveryClock& steadyClock() {
    static SteadyClock clock;
    return clock;
}

std::error_code replaceInFolder(const std::filesystem::path& file, std::span<const std::uint8_t> bytes) {
    const std::error_code failed = makePrivateFolder(file.parent_path());
    return failed ? failed : replaceFile(file, bytes);
}

RecoveryWriter::Dependencies withDefaults(RecoveryWriter::Dependencies dependencies) {
    if (dependencies.clock == nullptr) {
        dependencies.clock = &steadyClock();
    }
    if (!dependencies.replace) {
        dependencies.replace = replaceInFolder;
    }
    if (!dependencies.remove) {
        dependencies.remove = removeFile;
    }
    return dependencies;
}

}  // namespace

/// What the writer and its thread share, and what the last of them takes along.
class RecoveryWriter::Core {
 public:
    enum class Task : std::uint8_t { write, remove };

    Core(std::filesystem::path file, std::function<void(const std::error_code&)> tellFailure,
         Dependencies dependencies)
        : file_(std::move(file)),
          tellFailure_(std::move(tellFailure)),
          dependencies_(withDefaults(std::move(dependencies))),
          earliest_(dependencies_.clock->now()) {}

    void hand(Task task, std::shared_ptr<const RecoveryState> state);
    bool flush(std::chrono::milliseconds limit);
    /// What the thread does.
    void run();
    /// Has the thread end, and waits for that.
    /// \return whether it ends; otherwise it hangs, and from now on it touches nothing but this object and the
    ///     disk
    bool end();

 private:
    void waitForWork(std::unique_lock<std::mutex>& lock);
    bool work(std::unique_lock<std::mutex>& lock, bool isTold);
    [[nodiscard]] std::error_code perform(Task task, const RecoveryState* state) const;
    void tell(const std::error_code& failed);

    const std::filesystem::path file_;
    const std::function<void(const std::error_code&)> tellFailure_;
    const Dependencies dependencies_;

    std::mutex tellMutex_;  ///< held while a failure is told; taken before the other one
    std::mutex mutex_;      ///< held only for moments, never while anything is written
    std::condition_variable changed_;
    Task task_ = Task::write;                     ///< what is to be done next
    std::shared_ptr<const RecoveryState> state_;  ///< what is to be written, where it is not being written
    std::uint64_t handed_ = 0;                    ///< number of what was handed over last
    std::uint64_t tried_ = 0;                     ///< number of what was tried last
    std::uint64_t succeeded_ = 0;                 ///< number of what is on the disk
    IRecoveryClock::Time earliest_{};             ///< of the next write
    bool hurries_ = false;                        ///< without regard to `earliest_`
    bool ends_ = false;
    bool hasEnded_ = false;  ///< the thread is done
    bool isLeft_ = false;    ///< nobody is there any more but the thread; both mutexes are held to set it
};

RecoveryWriter::RecoveryWriter(std::filesystem::path file,
                               std::function<void(const std::error_code&)> tellFailure)
    : RecoveryWriter(std::move(file), std::move(tellFailure), Dependencies()) {}

RecoveryWriter::RecoveryWriter(std::filesystem::path file,
                               std::function<void(const std::error_code&)> tellFailure,
                               Dependencies dependencies)
    : core_(std::make_shared<Core>(std::move(file), std::move(tellFailure), std::move(dependencies))),
      thread_([core = core_] { core->run(); }) {}

RecoveryWriter::~RecoveryWriter() {
    if (core_->end()) {
        thread_.join();
    } else {
        thread_.detach();
    }
}

void RecoveryWriter::put(std::shared_ptr<const RecoveryState> state) {
    core_->hand(Core::Task::write, std::move(state));
}

void RecoveryWriter::remove() {
    core_->hand(Core::Task::remove, nullptr);
}

bool RecoveryWriter::flush(std::chrono::milliseconds limit) {
    return core_->flush(limit);
}

bool RecoveryWriter::Core::end() {
    {
        std::unique_lock lock(mutex_);
        ends_ = true;
        changed_.notify_all();
        if (changed_.wait_for(lock, dependencies_.endLimit, [this] { return hasEnded_; })) {
            return true;
        }
    }
    // A failure that is being told is told to its end.
    const std::lock_guard telling(tellMutex_);
    const std::lock_guard lock(mutex_);
    isLeft_ = !hasEnded_;
    return hasEnded_;
}

void RecoveryWriter::Core::hand(Task task, std::shared_ptr<const RecoveryState> state) {
    {
        const std::lock_guard lock(mutex_);
        // The former state goes when this block has ended: freeing it takes longer than all the rest.
        std::swap(state_, state);
        task_ = task;
        ++handed_;
    }
    changed_.notify_all();
}

bool RecoveryWriter::Core::flush(std::chrono::milliseconds limit) {
    constexpr std::chrono::milliseconds longest = std::chrono::hours(24);
    const auto end = std::chrono::steady_clock::now() + std::min(limit, longest);
    std::unique_lock lock(mutex_);
    const std::uint64_t wanted = handed_;
    if (succeeded_ >= wanted) {
        return true;
    }
    // What failed before counts as new, so that it is tried now.
    tried_ = std::min(tried_, wanted - 1);
    hurries_ = true;
    changed_.notify_all();
    changed_.wait_until(lock, end, [&] { return tried_ >= wanted; });
    return succeeded_ >= wanted;
}

// Returns when there is something to do, and for the end.
void RecoveryWriter::Core::waitForWork(std::unique_lock<std::mutex>& lock) {
    while (!ends_) {
        if (succeeded_ >= handed_) {
            changed_.wait(lock);
            continue;
        }
        const bool isNew = tried_ < handed_;
        const IRecoveryClock::Time due = isNew ? earliest_ : earliest_ + (retryPause - pace);
        if ((isNew && hurries_) || dependencies_.clock->now() >= due) {
            return;
        }
        dependencies_.clock->waitUntil(changed_, lock, due);
    }
}

std::error_code RecoveryWriter::Core::perform(Task task, const RecoveryState* state) const {
    try {
        return task == Task::write ? dependencies_.replace(file_, encodeRecovery(*state))
                                   : dependencies_.remove(file_);
    } catch (const std::exception&) {
        // Only memory can be wanting here; the next try may find some.
        return std::make_error_code(std::errc::not_enough_memory);
    }
}

void RecoveryWriter::Core::tell(const std::error_code& failed) {
    const std::lock_guard telling(tellMutex_);
    const bool isHeard = [this] {
        const std::lock_guard lock(mutex_);
        return !isLeft_;
    }();
    if (isHeard && tellFailure_) {
        tellFailure_(failed);
    }
}

// \return whether it failed
bool RecoveryWriter::Core::work(std::unique_lock<std::mutex>& lock, bool isTold) {
    std::shared_ptr<const RecoveryState> state = std::move(state_);
    const Task task = task_;
    const std::uint64_t number = handed_;
    hurries_ = false;
    earliest_ = dependencies_.clock->now() + pace;
    lock.unlock();
    const std::error_code failed = perform(task, state.get());
    if (!failed) {
        state.reset();
    } else if (!isTold) {
        tell(failed);
    }
    lock.lock();
    tried_ = number;
    if (!failed) {
        succeeded_ = number;
    } else if (handed_ == number) {
        state_ = std::move(state);
    }
    hurries_ = hurries_ && tried_ < handed_;
    changed_.notify_all();
    return static_cast<bool>(failed);
}

void RecoveryWriter::Core::run() {
    bool isTold = false;
    bool isLast = false;
    std::unique_lock lock(mutex_);
    while (!isLast) {
        waitForWork(lock);
        isLast = ends_;
        if (succeeded_ < handed_) {
            isTold = work(lock, isTold);
        }
        isLast = isLast || isLeft_;
    }
    hasEnded_ = true;
    changed_.notify_all();
}

}  // namespace tessavo
