#include "desktop/controls/user.h"

#include "desktop/support/wait.h"

#include <optional>
#include <stdexcept>
#include <string_view>

namespace brisk::desktop {
namespace {

std::string titleOf(DesktopConnection& desktop, xcb_window_t window) {
    constexpr std::uint32_t length = 256;
    const Reply<xcb_get_property_reply_t> name{
        xcb_get_property_reply(desktop.xcb(),
                               xcb_get_property(desktop.xcb(), 0, window, desktop.atom("_NET_WM_NAME"),
                                                desktop.atom("UTF8_STRING"), 0, length),
                               nullptr)};
    return name ? std::string(static_cast<const char*>(xcb_get_property_value(name.get())),
                              static_cast<std::size_t>(xcb_get_property_value_length(name.get())))
                : std::string();
}

} // namespace

void User::await(const std::function<bool()>& condition, const std::string& what) const {
    if (!waitUntil(condition)) {
        throw std::runtime_error(what + " did not come");
    }
}

Control User::control(const std::string& role, const std::string& name, const std::string& group) {
    std::optional<Control> found;
    await(
        [&] {
            const std::string window = titleOf(desktop_, desktop_.activeWindow());
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
    click(control(role, name, group).place);
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

void User::click(const PixelRect& place) {
    pointer_.moveTo(place.x + place.width / 2, place.y + place.height / 2);
    pointer_.down();
    pointer_.up();
}

xcb_window_t User::window(const std::string& title) {
    await([&] { return titleOf(desktop_, desktop_.activeWindow()) == title; }, "the window \"" + title + '"');
    return desktop_.activeWindow();
}

void User::takeByTitle(xcb_window_t window) {
    const auto before = desktop_.visibleFrame(window);
    if (!before) {
        throw std::runtime_error("the window to be moved is gone");
    }
    pointer_.moveTo(before->x + before->width / 2, before->y + 8);
    pointer_.down();
    await(
        [&] {
            pointer_.moveBy(1, 1);
            const auto now = desktop_.visibleFrame(window);
            return now && now->x > before->x + 10;
        },
        "the window manager's move of the window");
}

} // namespace brisk::desktop
