#pragma once

#include "desktop/support/pixel_rect.h"
#include "desktop/support/process.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace brisk::desktop {

/// What a program tells assistive technology of one of its controls.
struct Control {
    /// As its toolkit calls it: "push button", "check box", "text".
    std::string role;
    std::string name;
    std::string description;
    /// The name of what it is in: rows of a list tell their controls apart by it.
    std::string group;
    /// The title of its window.
    std::string window;
    /// On the screen.
    PixelRect place;
    bool isFocusable = false;
};

/// A session bus with the desktop's accessibility service on it, over which programs show their controls: so they are
/// found by role and name wherever the layout has put them. What is found is then used with mouse and keys. Needs an
/// application object of Qt's, and at-spi2-core.
class AccessibilityBus {
public:
    /// Throws `std::runtime_error` when the service does not come up.
    explicit AccessibilityBus(const Environment& environment);
    AccessibilityBus(const AccessibilityBus&) = delete;
    AccessibilityBus& operator=(const AccessibilityBus&) = delete;
    ~AccessibilityBus();

    /// What joins the environment of a program that is to show its controls.
    Environment environment() const { return {{"DBUS_SESSION_BUS_ADDRESS", sessionAddress_}}; }

    /// The controls of all programs that can be seen now, those scrolled out of sight included, in the order of their
    /// windows and in these from the outside in.
    std::vector<Control> controls() const;
    /// The first that is as wanted.
    std::optional<Control> find(const std::function<bool(const Control&)>& isWanted) const;

private:
    class Connection;

    Process sessionBus_;
    std::string sessionAddress_;
    std::unique_ptr<Connection> connection_;
};

} // namespace brisk::desktop
