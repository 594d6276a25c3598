#pragma once

#include "platform/simulated/application.h"
#include "platform/simulated/call_log.h"
#include "platform/workspace.h"

namespace brisk::simulated {

class Workspace final : public brisk::Workspace {
public:
    Workspace(CallLog& log, ProcessIdentifier ownProcess) : log_(log), ownProcess_(ownProcess) {}

    /// The application in front; null for none.
    RunningApplicationRef frontmost;

    RunningApplicationRef frontmostApplication() override {
        log_.record("frontmostApplication");
        return frontmost;
    }
    ProcessIdentifier processIdentifier() const override { return ownProcess_; }

private:
    CallLog& log_;
    ProcessIdentifier ownProcess_;
};

} // namespace brisk::simulated
