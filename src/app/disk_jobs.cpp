#include "app/disk_jobs.h"

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QEventLoop>
#include <atomic>
#include <system_error>
#include <utility>

#include "comm/page/input_hold.h"

namespace tessavo {

DiskJobs::~DiskJobs() {
    {
        const std::lock_guard guard(mutex_);
        ends_ = true;
    }
    changed_.notify_all();
    if (thread_.joinable()) {
        thread_.join();
    }
}

void DiskJobs::run(std::function<void()> job) {
    if (!thread_.joinable()) {
        try {
            thread_ = std::thread(&DiskJobs::work, this);
        } catch (const std::system_error&) {
            // A window that stands still for a while is better than nothing kept.
            job();
            return;
        }
    }
    {
        const std::lock_guard guard(mutex_);
        jobs_.push_back(std::move(job));
    }
    changed_.notify_all();
}

void DiskJobs::runAndWait(const std::function<void()>& job) {
    const InputHold hold;
    std::atomic<bool> over = false;
    run([&] {
        job();
        over = true;
        calls_.call([] {});
    });
    // Not an event loop: one that runs while the program quits would return too early.
    while (!over) {
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
    }
    // The loop around this one may have been told to end meanwhile.
    QAbstractEventDispatcher::instance()->wakeUp();
}

void DiskJobs::work() {
    std::unique_lock guard(mutex_);
    while (true) {
        changed_.wait(guard, [this] { return ends_ || !jobs_.empty(); });
        if (jobs_.empty()) {
            return;
        }
        const std::function<void()> job = std::move(jobs_.front());
        jobs_.pop_front();
        guard.unlock();
        job();
        guard.lock();
    }
}

}  // namespace tessavo
