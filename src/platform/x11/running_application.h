#pragma once

#include "platform/workspace.h"
#include "platform/x11/process.h"
#include "platform/x11/window.h"

namespace brisk::x11 {

/// One run of an application, known by one of its windows.
class RunningApplication final : public brisk::RunningApplication {
public:
    explicit RunningApplication(WindowRef window);

    ProcessIdentifier processIdentifier() const override { return process_.id; }
    /// The name in the desktop's menus, else the window's class, else the process's name.
    std::optional<std::string> localizedName() const override;
    /// Where there is no process here, the window it was known by stands for it.
    bool isTerminated() const override;

private:
    WindowRef window_;
    ProcessIdentity process_;
};

} // namespace brisk::x11
