#pragma once

#include "platform/main_queue.h"

#include <poll.h>

#include <chrono>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <vector>

namespace brisk::desktop {

/// The main loop of a test that runs the X11 layer in its own process: it sleeps until there is input or work is due,
/// as the program's own does.
class EventLoop final : public MainQueue {
public:
    /// Calls `read` when the descriptor is readable.
    void watch(int fileDescriptor, std::function<void()> read);
    /// Calls `work` each time before the loop sleeps.
    void setEndOfTurn(std::function<void()> work);

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

    std::vector<pollfd> inputs_;
    /// One for each input.
    std::vector<std::function<void()>> reads_;
    std::function<void()> endOfTurn_;
    std::deque<std::function<void()>> queue_;
    std::multimap<Clock::time_point, std::shared_ptr<Item>> delayed_;
    unsigned wakeUps_ = 0;
};

} // namespace brisk::desktop
