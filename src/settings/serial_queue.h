#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <string>
#include <thread>

namespace brisk {

/// Runs work items one after the other, in the order in which they were submitted, on a thread of its own that sleeps
/// while there are none. Submitting is allowed from any thread. A work item must not throw: that would end the program.
class SerialQueue {
public:
    /// The label names the thread to debuggers, as far as the system keeps it (15 bytes on Linux).
    explicit SerialQueue(const std::string& label);
    SerialQueue(const SerialQueue&) = delete;
    SerialQueue& operator=(const SerialQueue&) = delete;
    /// Returns when everything that was submitted has run.
    ~SerialQueue();

    /// Submits and returns.
    void async(std::function<void()> work);
    /// Submits and returns when it has run, and with it everything submitted before. Never from a work item of the same
    /// queue, which would wait for itself.
    void sync(const std::function<void()>& work);

private:
    void run() noexcept;

    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<std::function<void()>> pending_;
    bool isEnding_ = false;
    /// Last, so that it starts when the rest is there.
    std::thread thread_;
};

} // namespace brisk
