#pragma once

#include "platform/main_queue.h"

#include <QObject>

#include <deque>
#include <functional>
#include <memory>

namespace brisk::qt {

/// The main queue on Qt's event loop, which the application has made before; modal dialogs' loops go on with it. Work
/// is run each time the loop is about to sleep. Qt sends what is asked of it there at once where an answer or an event
/// follows, as from showing or moving a window; to raise one alone waits for the next wake-up. Work that is still
/// queued when the queue goes does not run.
class MainQueue final : public brisk::MainQueue {
public:
    MainQueue();
    MainQueue(const MainQueue&) = delete;
    MainQueue& operator=(const MainQueue&) = delete;
    ~MainQueue() override;

    /// Calls `read` when the descriptor is readable, which Qt does not read.
    void watch(int fileDescriptor, std::function<void()> read);
    /// Calls `work` each time before the loop sleeps, after the queued work.
    void setEndOfTurn(std::function<void()> work);
    void async(std::function<void()> work) override;
    DispatchWorkItemRef asyncAfter(std::chrono::milliseconds delay, std::function<void()> work) override;

private:
    class Timers;

    void endTurn();
    void runQueuedWork();

    std::deque<std::function<void()>> works_;
    unsigned turns_ = 0;
    std::function<void()> endOfTurn_;
    std::unique_ptr<Timers> timers_;
    /// Receives the loop's signals; owns the notifier.
    QObject context_;
};

} // namespace brisk::qt
