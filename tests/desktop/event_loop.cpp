#include "desktop/event_loop.h"

#include "desktop/support/wait.h"

#include <poll.h>

#include <algorithm>
#include <utility>

namespace brisk::desktop {

struct EventLoop::Item final : DispatchWorkItem {
    std::function<void()> work;
    void cancel() override { work = nullptr; }
};

void EventLoop::watch(int fileDescriptor, std::function<void()> read, std::function<void()> endTurn) {
    fileDescriptor_ = fileDescriptor;
    read_ = std::move(read);
    endTurn_ = std::move(endTurn);
}

void EventLoop::async(std::function<void()> work) {
    queue_.push_back(std::move(work));
}

DispatchWorkItemRef EventLoop::asyncAfter(std::chrono::milliseconds delay, std::function<void()> work) {
    const auto item = std::make_shared<Item>();
    item->work = std::move(work);
    delayed_.emplace(Clock::now() + delay, item);
    return item;
}

bool EventLoop::runUntil(const std::function<bool()>& condition) {
    const auto deadline = Clock::now() + defaultDeadline();
    while (!condition()) {
        if (Clock::now() > deadline) {
            return false;
        }
        // A condition may hang on something else than this loop: look again now and then.
        turn(std::chrono::milliseconds(5));
    }
    return true;
}

void EventLoop::runFor(std::chrono::milliseconds time) {
    const auto end = Clock::now() + time;
    for (auto now = Clock::now(); now < end; now = Clock::now()) {
        turn(std::chrono::ceil<std::chrono::milliseconds>(end - now));
    }
}

void EventLoop::turn(std::chrono::milliseconds longest) {
    endTurn_();
    if (!queue_.empty()) {
        longest = std::chrono::milliseconds(0);
    } else if (!delayed_.empty()) {
        const auto untilDue = std::chrono::ceil<std::chrono::milliseconds>(delayed_.begin()->first - Clock::now());
        longest = std::clamp(untilDue, std::chrono::milliseconds(0), longest);
    }
    pollfd input{.fd = fileDescriptor_, .events = POLLIN, .revents = 0};
    const bool isReadable = poll(&input, 1, static_cast<int>(longest.count())) > 0;
    if (isReadable) {
        read_();
    }
    if (runDueWork() || isReadable) {
        ++wakeUps_;
    }
}

bool EventLoop::runDueWork() {
    // What this work submits waits for the next turn.
    auto due = std::exchange(queue_, {});
    const auto end = delayed_.upper_bound(Clock::now());
    for (auto item = delayed_.begin(); item != end; item = delayed_.erase(item)) {
        if (item->second->work) {
            due.push_back(std::exchange(item->second->work, nullptr));
        }
    }
    for (const auto& work : due) {
        work();
    }
    return !due.empty();
}

} // namespace brisk::desktop
