#pragma once

#include "platform/main_queue.h"

#include <chrono>
#include <deque>
#include <functional>
#include <map>
#include <memory>

namespace brisk::desktop {

/// The main loop of a test that runs the X11 layer in its own process: it sleeps until there is input or work is due,
/// as the program's own does.
class EventLoop final : public MainQueue {
public:
    /// Calls `read` when the descriptor is readable, and `endTurn` each time before the loop sleeps.
    void watch(int fileDescriptor, std::function<void()> read, std::function<void()> endTurn);

    void async(std::function<void()> work) override;
    DispatchWorkItemRef asyncAfter(std::chrono::milliseconds delay, std::function<void()> work) override;

    /// Turns until `condition` holds; false when it still does not at the harness's deadline.
    [[nodiscard]] bool runUntil(const std::function<bool()>& condition);
    /// Turns for that long. For what must not happen; what must is waited for.
    void runFor(std::chrono::milliseconds time);
    /// How often the loop woke with something to do.
    unsigned wakeUps() const { return wakeUps_; }

private:
    using Clock = std::chrono::steady_clock;
    struct Item;

    void turn(std::chrono::milliseconds longest);
    bool runDueWork();

    int fileDescriptor_ = -1;
    std::function<void()> read_;
    std::function<void()> endTurn_;
    std::deque<std::function<void()>> queue_;
    std::multimap<Clock::time_point, std::shared_ptr<Item>> delayed_;
    unsigned wakeUps_ = 0;
};

} // namespace brisk::desktop
