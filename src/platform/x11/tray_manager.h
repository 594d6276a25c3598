#pragma once

#include "platform/system_tray.h"
#include "platform/x11/connection.h"

namespace brisk::x11 {

/// A tray that takes items in as windows (the XEmbed protocol): whoever owns the screen's tray selection. Expects the
/// root window to be followed, which is where a new owner announces itself.
class TrayManager final : public SystemTray {
public:
    explicit TrayManager(Connection& connection);

    bool isPresent() const override;
    /// `onAppeared` is called from the event's handler.
    void watch(std::function<void()> onAppeared) override { onAppeared_ = std::move(onAppeared); }

private:
    void handle(const xcb_generic_event_t& event);

    Connection& connection_;
    xcb_atom_t selection_;
    std::function<void()> onAppeared_;
    Connection::Subscription subscription_;
};

} // namespace brisk::x11
