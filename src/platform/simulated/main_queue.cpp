#include "platform/simulated/main_queue.h"

#include <algorithm>
#include <utility>

namespace brisk::simulated {

struct MainQueue::Item final : DispatchWorkItem {
    Item(std::chrono::milliseconds dueTime, std::function<void()> toDo) : due(dueTime), work(std::move(toDo)) {}
    void cancel() override { work = nullptr; }
    std::chrono::milliseconds due;
    std::function<void()> work;
};

void MainQueue::async(std::function<void()> work) {
    asyncAfter(std::chrono::milliseconds(0), std::move(work));
}

DispatchWorkItemRef MainQueue::asyncAfter(std::chrono::milliseconds delay, std::function<void()> work) {
    const auto item = std::make_shared<Item>(now_ + delay, std::move(work));
    items_.push_back(item);
    return item;
}

void MainQueue::advance(std::chrono::milliseconds time) {
    const auto end = now_ + time;
    for (;;) {
        const auto next = std::ranges::min_element(items_, {}, [](const auto& item) { return item->due; });
        if (next == items_.end() || (*next)->due > end) {
            break;
        }
        const auto item = *next;
        items_.erase(next);
        now_ = std::max(now_, item->due);
        if (const auto work = std::exchange(item->work, nullptr)) {
            work();
        }
    }
    now_ = end;
}

std::size_t MainQueue::pendingCount() const {
    return static_cast<std::size_t>(
        std::ranges::count_if(items_, [](const auto& item) { return item->work != nullptr; }));
}

} // namespace brisk::simulated
