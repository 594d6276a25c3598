#pragma once

#include "platform/workspace.h"
#include "platform/x11/connection.h"
#include "platform/x11/window_manager_peer.h"
#include "platform/x11/window_tracker.h"

namespace brisk::x11 {

/// The application in front: the owner of the active window. Desktop, panels and pop-ups are nobody's.
class Workspace final : public brisk::Workspace {
public:
    Workspace(Connection& connection, WindowManagerPeer& windowManager, WindowTracker& tracker)
        : connection_(connection), windowManager_(windowManager), tracker_(tracker) {}

    RunningApplicationRef frontmostApplication() override;
    ProcessIdentifier processIdentifier() const override;

private:
    WindowRef windowWithInputFocus();

    Connection& connection_;
    WindowManagerPeer& windowManager_;
    WindowTracker& tracker_;
};

} // namespace brisk::x11
