#pragma once

#include "platform/main_queue.h"

#include <cstddef>
#include <vector>

namespace brisk::simulated {

/// A main queue whose time stands still until a scenario moves it.
class MainQueue final : public brisk::MainQueue {
public:
    void async(std::function<void()> work) override;
    DispatchWorkItemRef asyncAfter(std::chrono::milliseconds delay, std::function<void()> work) override;

    /// Runs what is due now, and what that schedules for now.
    void run() { advance(std::chrono::milliseconds(0)); }
    /// Lets time pass, running what falls due in the order of its due times.
    void advance(std::chrono::milliseconds time);
    /// Work that still waits, cancelled work not counted.
    std::size_t pendingCount() const;

private:
    struct Item;
    std::vector<std::shared_ptr<Item>> items_;
    std::chrono::milliseconds now_{0};
};

} // namespace brisk::simulated
