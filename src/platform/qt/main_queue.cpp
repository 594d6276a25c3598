#include "platform/qt/main_queue.h"

#include <QMetaObject>
#include <QPointer>
#include <QTimer>

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
    QMetaObject::invokeMethod(&context_, std::move(work), Qt::QueuedConnection);
}

DispatchWorkItemRef MainQueue::asyncAfter(std::chrono::milliseconds delay, std::function<void()> work) {
    auto* timer = new QTimer(&context_);
    timer->setSingleShot(true);
    timer->setTimerType(Qt::PreciseTimer);
    QObject::connect(timer, &QTimer::timeout, timer, [timer, work = std::move(work)] {
        timer->deleteLater();
        work();
    });
    timer->start(delay);
    return std::make_shared<TimedWork>(timer);
}

} // namespace brisk::qt
