#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>

#include "controls/ui_calls.h"

namespace tessavo {

/// Runs what reads and writes folders on a thread of its own, one job after another, so that the window never
/// stands still for a disk at the other end of a network. The thread begins with the first job.
///
/// User-interface thread; the jobs run on the other one.
class DiskJobs {
 public:
    DiskJobs() = default;
    /// Runs what still waits, and waits for its end.
    ~DiskJobs();
    DiskJobs(const DiskJobs&) = delete;
    DiskJobs& operator=(const DiskJobs&) = delete;

    /// Hands a job over, and returns at once. It owns what it works with.
    void run(std::function<void()> job);
    /// Runs a job behind those that wait and returns once it is done. The window paints meanwhile; input is
    /// lost unless a modal dialog takes it.
    void runAndWait(const std::function<void()>& job);

 private:
    void work();

    UiCalls calls_;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<std::function<void()>> jobs_;
    bool ends_ = false;
    std::thread thread_;
};

}  // namespace tessavo
