#include "platform/x11/queue_turns.h"

#include <utility>

namespace brisk::x11 {

QueueTurns::QueueTurns(MainQueue& queue, std::function<bool()> work) : queue_(queue), work_(std::move(work)) {}

QueueTurns::~QueueTurns() {
    cancelTimer();
}

void QueueTurns::takeNext() {
    if (std::exchange(isTurnComing_, true)) {
        return;
    }
    queue_.async([weak = std::weak_ptr(self_)] {
        if (const auto self = weak.lock()) {
            (*self)->work();
        }
    });
}

void QueueTurns::takeAt(Clock::time_point time) {
    if (timer_) {
        return;
    }
    timer_ = queue_.asyncAfter(std::chrono::ceil<std::chrono::milliseconds>(time - Clock::now()),
                               [weak = std::weak_ptr(self_)] {
                                   if (const auto self = weak.lock()) {
                                       (*self)->timer_ = nullptr;
                                       if (!(*self)->isTurnComing_) {
                                           (*self)->work();
                                       }
                                   }
                               });
}

void QueueTurns::cancelTimer() {
    if (timer_) {
        std::exchange(timer_, nullptr)->cancel();
    }
}

void QueueTurns::work() {
    // What the work hears meanwhile is for the turn after this, behind what it submits.
    isTurnComing_ = true;
    const bool mayGoOn = work_();
    isTurnComing_ = false;
    if (mayGoOn) {
        takeNext();
    }
}

} // namespace brisk::x11
