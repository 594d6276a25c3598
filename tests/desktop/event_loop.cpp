#include "desktop/event_loop.h"

#include "desktop/support/wait.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace brisk::desktop {

struct EventLoop::Item final : DispatchWorkItem {
    std::function<void()> work;
    void cancel() override { work = nullptr; }
};

void EventLoop::watch(int fileDescriptor, std::function<void()> read) {
    inputs_.push_back({.fd = fileDescriptor, .events = POLLIN, .revents = 0});
    reads_.push_back(std::move(read));
}

void EventLoop::setEndOfTurn(std::function<void()> work) {
    endOfTurn_ = std::move(work);
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
    endOfTurn_();
    if (!queue_.empty()) {
        longest = std::chrono::milliseconds(0);
    } else if (!delayed_.empty()) {
        const auto untilDue = std::chrono::ceil<std::chrono::milliseconds>(delayed_.begin()->first - Clock::now());
        longest = std::clamp(untilDue, std::chrono::milliseconds(0), longest);
    }
    const bool isReadable = poll(inputs_.data(), inputs_.size(), static_cast<int>(longest.count())) > 0;
    for (std::size_t i = 0; isReadable && i < inputs_.size(); ++i) {
        if (inputs_[i].revents != 0) {
            reads_[i]();
        }
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
