#include "platform/qt/main_queue.h"

#include <QMetaObject>
#include <QPointer>
#include <QTimer>

#include <cstddef>
#include <utility>

namespace brisk::qt {

namespace {

class TimedWork final : public DispatchWorkItem {
public:
    explicit TimedWork(QTimer* timer) : timer_(timer) {}
    void cancel() override {
        if (timer_) {
            timer_->stop();
            timer_->deleteLater();
        }
    }

private:
    /// Null once the work has run or its queue is gone.
    QPointer<QTimer> timer_;
};

} // namespace

void MainQueue::async(std::function<void()> work) {
    works_.push_back(std::move(work));
    if (!std::exchange(isScheduled_, true)) {
        QMetaObject::invokeMethod(
            &context_, [this] { runQueuedWork(); }, Qt::QueuedConnection);
    }
}

void MainQueue::runQueuedWork() {
    // Before any work runs: a modal dialog opened there has a loop of its own, which goes on with what is queued.
    isScheduled_ = false;
    // A command takes a few steps through this queue, which are not to cost it a turn of Qt's loop each. Who queues
    // without end leaves the rest to the next turn.
    constexpr std::size_t maximumSteps = 16;
    const std::size_t most = works_.size() + maximumSteps;
    for (std::size_t step = 0; step < most && !works_.empty(); ++step) {
        const auto work = std::move(works_.front());
        works_.pop_front();
        work();
    }
}

DispatchWorkItemRef MainQueue::asyncAfter(std::chrono::milliseconds delay, std::function<void()> work) {
    auto* timer = new QTimer(&context_);
    timer->setSingleShot(true);
    timer->setTimerType(Qt::PreciseTimer);
    QObject::connect(timer, &QTimer::timeout, timer, [this, timer, work = std::move(work)] {
        timer->deleteLater();
        works_.push_back(work);
        runQueuedWork();
    });
    timer->start(delay);
    return std::make_shared<TimedWork>(timer);
}

} // namespace brisk::qt
