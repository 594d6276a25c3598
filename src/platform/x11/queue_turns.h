#pragma once

#include "platform/main_queue.h"

#include <chrono>
#include <functional>
#include <memory>

namespace brisk::x11 {

/// Work that is done piece by piece, one in each of its turns of the main queue, so that whoever is told of a piece has
/// a turn before the next. Main thread only; no turn comes once this is gone.
class QueueTurns {
public:
    using Clock = std::chrono::steady_clock;

    /// `work` returns whether another piece may be done in another turn.
    QueueTurns(MainQueue& queue, std::function<bool()> work);
    QueueTurns(const QueueTurns&) = delete;
    QueueTurns& operator=(const QueueTurns&) = delete;
    ~QueueTurns();

    /// Takes a turn after what is in the queue by now, unless one is coming. Asked for by the work itself, it comes
    /// after all that the work has submitted.
    void takeNext();
    /// Takes a turn at that time; one that is set for a time already stays.
    void takeAt(Clock::time_point time);
    void cancelTimer();

private:
    void work();

    MainQueue& queue_;
    std::function<bool()> work_;
    /// Whether a turn is coming, or now.
    bool isTurnComing_ = false;
    DispatchWorkItemRef timer_;
    /// What is queued holds it weakly.
    std::shared_ptr<QueueTurns*> self_ = std::make_shared<QueueTurns*>(this);
};

} // namespace brisk::x11
