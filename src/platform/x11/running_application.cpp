#include "platform/x11/running_application.h"

#include "platform/x11/desktop_entries.h"

#include <utility>

namespace brisk::x11 {

RunningApplication::RunningApplication(WindowRef window) : window_(std::move(window)), process_(window_->process) {}

std::optional<std::string> RunningApplication::localizedName() const {
    if (auto name = desktopEntryName(window_->windowClass)) {
        return name;
    }
    if (!window_->windowClass.empty()) {
        return window_->windowClass;
    }
    return processName(process_.id);
}

bool RunningApplication::isTerminated() const {
    const bool hasProcess = process_.id > 0 && process_.startTime != 0;
    return hasProcess ? runningProcess(process_.id) != process_ : !window_->exists;
}

} // namespace brisk::x11
