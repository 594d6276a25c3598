#include "desktop/controls/user.h"

#include "desktop/support/wait.h"

#include <optional>
#include <stdexcept>

namespace brisk::desktop {
void User::await(const std::function<bool()>& condition, const std::string& what) const {
    if (!waitUntil(condition)) {
        throw std::runtime_error(what + " did not come");
    }
}

Control User::control(const std::string& role, const std::string& name, const std::string& group) {
    std::optional<Control> found;
    await(
        [&] {
            const std::string window = desktop_.title(desktop_.activeWindow());
            found = controls_.find([&](const Control& control) {
                return control.window == window && control.role == role && control.name == name &&
                       (group.empty() || control.group == group);
            });
            return found.has_value();
        },
        role + " \"" + name + '"');
    return *found;
}

void User::click(const std::string& role, const std::string& name, const std::string& group) {
    pointer_.click(control(role, name, group).place);
}

void User::scrollTo(const std::string& role, const std::string& name, const std::string& group) {
    const auto window = desktop_.clientRect(desktop_.activeWindow());
    if (!window) {
        throw std::runtime_error("no window to scroll in");
    }
    pointer_.moveTo(window->x + window->width / 2, window->y + window->height / 2);
    await(
        [&] {
            const PixelRect place = control(role, name, group).place;
            const bool isInSight = place.y + place.height <= window->y + window->height;
            if (!isInSight) {
                constexpr std::uint8_t wheelDown = 5;
                pointer_.down(wheelDown);
                pointer_.up(wheelDown);
            }
            return isInSight;
        },
        "the lower part of the window");
}

xcb_window_t User::window(const std::string& title) {
    await([&] { return desktop_.title(desktop_.activeWindow()) == title; }, "the window \"" + title + '"');
    return desktop_.activeWindow();
}

} // namespace brisk::desktop
