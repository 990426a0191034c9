#include "history/recovery_writer.h"

#include <algorithm>
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

RecoveryWriter::RecoveryWriter(std::filesystem::path file,
                               std::function<void(const std::error_code&)> tellFailure)
    : RecoveryWriter(std::move(file), std::move(tellFailure), Dependencies()) {}

RecoveryWriter::RecoveryWriter(std::filesystem::path file,
                               std::function<void(const std::error_code&)> tellFailure,
                               Dependencies dependencies)
    : file_(std::move(file)),
      tellFailure_(std::move(tellFailure)),
      dependencies_(withDefaults(std::move(dependencies))),
      earliest_(dependencies_.clock->now()) {
    thread_ = std::thread(&RecoveryWriter::run, this);
}

RecoveryWriter::~RecoveryWriter() {
    {
        const std::lock_guard lock(mutex_);
        ends_ = true;
    }
    changed_.notify_all();
    thread_.join();
}

void RecoveryWriter::put(std::shared_ptr<const RecoveryState> state) {
    hand(Task::write, std::move(state));
}

void RecoveryWriter::remove() {
    hand(Task::remove, nullptr);
}

void RecoveryWriter::hand(Task task, std::shared_ptr<const RecoveryState> state) {
    {
        const std::lock_guard lock(mutex_);
        // The former state goes when this block has ended: freeing it takes longer than all the rest.
        std::swap(state_, state);
        task_ = task;
        ++handed_;
    }
    changed_.notify_all();
}

bool RecoveryWriter::flush(std::chrono::milliseconds limit) {
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
void RecoveryWriter::waitForWork(std::unique_lock<std::mutex>& lock) {
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

std::error_code RecoveryWriter::perform(Task task, const RecoveryState* state) const {
    try {
        return task == Task::write ? dependencies_.replace(file_, encodeRecovery(*state))
                                   : dependencies_.remove(file_);
    } catch (const std::exception&) {
        // Only memory can be wanting here; the next try may find some.
        return std::make_error_code(std::errc::not_enough_memory);
    }
}

// \return whether it failed
bool RecoveryWriter::work(std::unique_lock<std::mutex>& lock, bool isTold) {
    std::shared_ptr<const RecoveryState> state = std::move(state_);
    const Task task = task_;
    const std::uint64_t number = handed_;
    hurries_ = false;
    earliest_ = dependencies_.clock->now() + pace;
    lock.unlock();
    const std::error_code failed = perform(task, state.get());
    if (!failed) {
        state.reset();
    } else if (!isTold && tellFailure_) {
        tellFailure_(failed);
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

void RecoveryWriter::run() {
    bool isTold = false;
    bool isLast = false;
    std::unique_lock lock(mutex_);
    while (!isLast) {
        waitForWork(lock);
        isLast = ends_;
        if (succeeded_ < handed_) {
            isTold = work(lock, isTold);
        }
    }
}

}  // namespace tessavo
