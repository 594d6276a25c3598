#pragma once

#include "desktop/controls/controls.h"
#include "desktop/support/desktop_connection.h"
#include "desktop/support/input.h"

#include <functional>
#include <initializer_list>
#include <string>

namespace brisk::desktop {

/// Somebody at mouse and keyboard, who finds controls by what they are called and waits for what should come. What does
/// not come throws `std::runtime_error`.
class User {
public:
    User(DesktopConnection& desktop, AccessibilityBus& controls) : desktop_(desktop), controls_(controls) {}

    void await(const std::function<bool()>& condition, const std::string& what) const;

    /// The active window's first control of that role and name, in the group of that name if one is given.
    Control control(const std::string& role, const std::string& name, const std::string& group = {});
    void click(const std::string& role, const std::string& name, const std::string& group = {});
    /// Turns the wheel until the active window shows a control that is further down in it.
    void scrollTo(const std::string& role, const std::string& name, const std::string& group = {});
    void press(Key key, std::initializer_list<Key> modifiers = {}) { keyboard_.press(key, modifiers); }

    /// The active window, once it is the one of that title.
    xcb_window_t window(const std::string& title);

private:
    DesktopConnection& desktop_;
    AccessibilityBus& controls_;
    Pointer pointer_{desktop_};
    Keyboard keyboard_{desktop_};
};

} // namespace brisk::desktop
