#include "platform/qt/main_queue.h"

#include <QAbstractEventDispatcher>
#include <QPointer>
#include <QSocketNotifier>
#include <QTimerEvent>

#include <algorithm>
#include <cstddef>
#include <unordered_map>
#include <utility>

namespace brisk::qt {

/// Work that waits for its time. A QTimer for each piece would take one more turn of the loop to be deleted in.
class MainQueue::Timers final : public QObject {
public:
    explicit Timers(MainQueue& queue) : queue_(queue) {}
    Timers(const Timers&) = delete;
    Timers& operator=(const Timers&) = delete;
    ~Timers() override {
        // What goes with the work of one may cancel another.
        for (const auto& [id, timer] : std::exchange(timers_, {})) {
            timer->takeWork();
        }
    }

    DispatchWorkItemRef start(std::chrono::milliseconds delay, std::function<void()> work) {
        const int id = startTimer(delay, Qt::PreciseTimer);
        const auto timer = std::make_shared<Timer>(*this, id, std::move(work));
        timers_.emplace(id, timer);
        return timer;
    }

private:
    class Timer final : public DispatchWorkItem {
    public:
        Timer(Timers& owner, int id, std::function<void()> work) : owner_(&owner), id_(id), work_(std::move(work)) {}
        void cancel() override {
            if (owner_) {
                owner_->stop(id_);
            }
        }
        /// From here on the id may be another's.
        std::function<void()> takeWork() {
            owner_ = nullptr;
            return std::exchange(work_, nullptr);
        }

    private:
        QPointer<Timers> owner_;
        int id_;
        std::function<void()> work_;
    };

    std::function<void()> stop(int id) {
        killTimer(id);
        return timers_.extract(id).mapped()->takeWork();
    }

    void timerEvent(QTimerEvent* event) override {
        queue_.works_.push_back(stop(event->timerId()));
        queue_.runQueuedWork();
    }

    MainQueue& queue_;
    std::unordered_map<int, std::shared_ptr<Timer>> timers_;
};

MainQueue::MainQueue() : timers_(std::make_unique<Timers>(*this)) {
    // All that woke the loop has submitted its work by then, which so needs no wake-up of its own.
    QObject::connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::aboutToBlock, &context_,
                     [this] { endTurn(); });
}

MainQueue::~MainQueue() = default;

void MainQueue::watch(int fileDescriptor, std::function<void()> read) {
    auto* readable = new QSocketNotifier(fileDescriptor, QSocketNotifier::Read, &context_);
    QObject::connect(readable, &QSocketNotifier::activated, &context_, std::move(read));
}

void MainQueue::setEndOfTurn(std::function<void()> work) {
    endOfTurn_ = std::move(work);
}

void MainQueue::async(std::function<void()> work) {
    works_.push_back(std::move(work));
}

void MainQueue::endTurn() {
    const unsigned turn = ++turns_;
    runQueuedWork();
    if (endOfTurn_) {
        endOfTurn_();
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
    // Qt refuses a time that has passed, and the work would never run.
    return timers_->start(std::max(delay, std::chrono::milliseconds::zero()), std::move(work));
}

} // namespace brisk::qt
