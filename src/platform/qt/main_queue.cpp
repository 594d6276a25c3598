#include "platform/qt/main_queue.h"

#include <QAbstractEventDispatcher>
#include <QPointer>
#include <QSocketNotifier>
#include <QTimer>

#include <algorithm>
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

MainQueue::MainQueue() {
    // All that woke the loop has submitted its work by then, which so needs no wake-up of its own.
    QObject::connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::aboutToBlock, &context_,
                     [this] { endTurn(); });
}

void MainQueue::watch(int fileDescriptor, Input input) {
    input_ = std::move(input);
    readable_ = new QSocketNotifier(fileDescriptor, QSocketNotifier::Read, &context_);
    QObject::connect(readable_, &QSocketNotifier::activated, &context_, [this] { input_.read(); });
}

void MainQueue::async(std::function<void()> work) {
    works_.push_back(std::move(work));
}

void MainQueue::endTurn() {
    const unsigned turn = ++turns_;
    runQueuedWork();
    if (readable_ != nullptr) {
        readable_->setEnabled(input_.endTurn());
    }
    // A modal dialog that was opened by the work has had a loop of its own: what should have woken this one, such as
    // the program's end, may have woken that.
    if (!works_.empty() || turns_ != turn) {
        QAbstractEventDispatcher::instance()->wakeUp();
    }
}

void MainQueue::runQueuedWork() {
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
    // Qt refuses a time that has passed, and the work would never run.
    timer->start(std::max(delay, std::chrono::milliseconds::zero()));
    return std::make_shared<TimedWork>(timer);
}

} // namespace brisk::qt
