#include "platform/qt/termination_signals.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>
#include <utility>

namespace brisk::qt {

namespace {

/// All that a signal handler can reach: the end of a pipe whose other end the main loop watches.
volatile std::sig_atomic_t writeEnd = -1;

void noteSignal(int) {
    const int savedError = errno;
    const char note = 0;
    // A full pipe has told the main loop already.
    [[maybe_unused]] const ssize_t written = write(writeEnd, &note, 1);
    errno = savedError;
}

void handleSignals(void (*handler)(int)) {
    struct sigaction action {};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    sigemptyset(&action.sa_mask);
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
        sigaction(signal, &action, nullptr);
    }
}

} // namespace

TerminationSignals::TerminationSignals(std::function<void()> onTerminate) {
    std::array<int, 2> ends{-1, -1};
    if (pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK) != 0) {
        return;
    }
    readEnd_ = ends[0];
    writeEnd = ends[1];
    notifier_ = std::make_unique<QSocketNotifier>(readEnd_, QSocketNotifier::Read);
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, notifier_.get(),
                     [this, onTerminate = std::move(onTerminate)] {
                         std::array<char, 16> notes{};
                         while (read(readEnd_, notes.data(), notes.size()) > 0) {
                         }
                         onTerminate();
                     });
    handleSignals(noteSignal);
}

TerminationSignals::~TerminationSignals() {
    if (readEnd_ < 0) {
        return;
    }
    handleSignals(SIG_DFL);
    notifier_.reset();
    close(readEnd_);
    close(writeEnd);
    writeEnd = -1;
}

} // namespace brisk::qt
