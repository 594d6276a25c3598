#include "settings/serial_queue.h"

#include <pthread.h>

#include <cassert>
#include <future>
#include <utility>

namespace brisk {

SerialQueue::SerialQueue(const std::string& label)
    : thread_([this, name = label.substr(0, 15)] {
          // The name is a courtesy: a system that refuses it has a thread without one.
          (void)pthread_setname_np(pthread_self(), name.c_str());
          run();
      }) {}

SerialQueue::~SerialQueue() {
    {
        const std::scoped_lock lock(mutex_);
        isEnding_ = true;
    }
    changed_.notify_one();
    thread_.join();
}

void SerialQueue::async(std::function<void()> work) {
    {
        const std::scoped_lock lock(mutex_);
        pending_.push_back(std::move(work));
    }
    changed_.notify_one();
}

void SerialQueue::sync(const std::function<void()>& work) {
    assert(std::this_thread::get_id() != thread_.get_id());
    std::promise<void> done;
    async([&] {
        work();
        done.set_value();
    });
    done.get_future().wait();
}

void SerialQueue::run() noexcept {
    std::unique_lock lock(mutex_);
    while (true) {
        changed_.wait(lock, [this] { return isEnding_ || !pending_.empty(); });
        if (pending_.empty()) {
            return;
        }
        std::function<void()> work = std::move(pending_.front());
        pending_.pop_front();
        lock.unlock();
        work();
        // Gone before the lock is taken: what it captured may be large, or may submit more work as it goes.
        work = nullptr;
        lock.lock();
    }
}

} // namespace brisk
