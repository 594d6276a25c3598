#pragma once

#include <QSocketNotifier>

#include <functional>
#include <memory>

namespace brisk::qt {

/// Turns SIGTERM, SIGINT and SIGHUP into a call on the main loop, where a signal handler may do nothing of use itself.
/// One at a time in a process; the signals have their default effect again once it goes.
class TerminationSignals {
public:
    /// `onTerminate` is called in a turn of the main loop, each time one of the signals arrived.
    explicit TerminationSignals(std::function<void()> onTerminate);
    TerminationSignals(const TerminationSignals&) = delete;
    TerminationSignals& operator=(const TerminationSignals&) = delete;
    ~TerminationSignals();

private:
    int readEnd_ = -1;
    std::unique_ptr<QSocketNotifier> notifier_;
};

} // namespace brisk::qt
