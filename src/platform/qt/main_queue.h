#pragma once

#include "platform/main_queue.h"

#include <QObject>

#include <deque>
#include <functional>

namespace brisk::qt {

/// The main queue on Qt's event loop. Work that is still queued when it goes does not run.
class MainQueue final : public brisk::MainQueue {
public:
    void async(std::function<void()> work) override;
    DispatchWorkItemRef asyncAfter(std::chrono::milliseconds delay, std::function<void()> work) override;

private:
    void runQueuedWork();

    std::deque<std::function<void()>> works_;
    bool isScheduled_ = false;
    /// Receives the queued calls and owns the timers.
    QObject context_;
};

} // namespace brisk::qt
