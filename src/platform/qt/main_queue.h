#pragma once

#include "platform/main_queue.h"

#include <QObject>

namespace brisk::qt {

/// The main queue on Qt's event loop. Work that is still queued when it goes does not run.
class MainQueue final : public brisk::MainQueue {
public:
    void async(std::function<void()> work) override;
    DispatchWorkItemRef asyncAfter(std::chrono::milliseconds delay, std::function<void()> work) override;

private:
    /// Receives the queued calls and owns the timers.
    QObject context_;
};

} // namespace brisk::qt
