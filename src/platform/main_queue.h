#pragma once

#include <chrono>
#include <functional>
#include <memory>

namespace brisk {

/// Work that was scheduled for later and can still be called off.
class DispatchWorkItem {
public:
    virtual ~DispatchWorkItem() = default;
    /// The work will not run, if it has not yet. Dropping the handle does not cancel.
    virtual void cancel() = 0;
};
using DispatchWorkItemRef = std::shared_ptr<DispatchWorkItem>;

/// The main thread's queue. Main thread only: hand-offs from other threads are not its business.
class MainQueue {
public:
    virtual ~MainQueue() = default;
    /// Runs `work` on a later turn of the main loop, after what was submitted before it; never inside this call.
    virtual void async(std::function<void()> work) = 0;
    /// Runs `work` once, not before `delay` has passed; one below zero has.
    virtual DispatchWorkItemRef asyncAfter(std::chrono::milliseconds delay, std::function<void()> work) = 0;
};

} // namespace brisk
