#include "desktop/support/input.h"

#include "desktop/support/wait.h"

#include <xcb/xtest.h>

#include <algorithm>
#include <iterator>

namespace brisk::desktop {
namespace {

void fake(DesktopConnection& connection, std::uint8_t type, std::uint8_t detail, int x = 0, int y = 0) {
    xcb_test_fake_input(connection.xcb(), type, detail, XCB_CURRENT_TIME, connection.root(),
                        static_cast<std::int16_t>(x), static_cast<std::int16_t>(y), 0);
}

} // namespace

void Keyboard::down(Key key) {
    fake(connection_, XCB_KEY_PRESS, static_cast<std::uint8_t>(key));
    connection_.synchronize();
}

void Keyboard::up(Key key) {
    fake(connection_, XCB_KEY_RELEASE, static_cast<std::uint8_t>(key));
    connection_.synchronize();
}

void Keyboard::press(Key key, const std::vector<Key>& modifiers) {
    for (const Key modifier : modifiers) {
        fake(connection_, XCB_KEY_PRESS, static_cast<std::uint8_t>(modifier));
    }
    fake(connection_, XCB_KEY_PRESS, static_cast<std::uint8_t>(key));
    fake(connection_, XCB_KEY_RELEASE, static_cast<std::uint8_t>(key));
    std::for_each(std::rbegin(modifiers), std::rend(modifiers),
                  [this](Key modifier) { fake(connection_, XCB_KEY_RELEASE, static_cast<std::uint8_t>(modifier)); });
    connection_.synchronize();
}

bool isGrabbed(DesktopConnection& connection, Key key, std::uint16_t modifierMask) {
    xcb_connection_t* xcb = connection.xcb();
    const auto code = static_cast<std::uint8_t>(key);
    // The server serves nobody else between the grab and its end.
    xcb_grab_server(xcb);
    const auto cookie =
        xcb_grab_key_checked(xcb, 0, connection.root(), modifierMask, code, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    const Reply<xcb_generic_error_t> error{xcb_request_check(xcb, cookie)};
    xcb_ungrab_key(xcb, code, connection.root(), modifierMask);
    xcb_ungrab_server(xcb);
    connection.synchronize();
    return error && error->error_code == XCB_ACCESS;
}

void Pointer::moveTo(int x, int y) {
    constexpr std::uint8_t absolute = 0;
    fake(connection_, XCB_MOTION_NOTIFY, absolute, x, y);
    connection_.synchronize();
}

void Pointer::moveBy(int dx, int dy) {
    constexpr std::uint8_t relative = 1;
    fake(connection_, XCB_MOTION_NOTIFY, relative, dx, dy);
    connection_.synchronize();
}

void Pointer::down(std::uint8_t button) {
    fake(connection_, XCB_BUTTON_PRESS, button);
    connection_.synchronize();
}

void Pointer::up(std::uint8_t button) {
    fake(connection_, XCB_BUTTON_RELEASE, button);
    connection_.synchronize();
}

void Pointer::click(const PixelRect& place) {
    moveTo(place.x + place.width / 2, place.y + place.height / 2);
    down();
    up();
}

bool Pointer::takeByTitle(xcb_window_t window, const std::function<void()>& meanwhile) {
    const auto before = connection_.visibleFrame(window);
    if (!before) {
        return false;
    }
    moveTo(before->x + before->width / 2, before->y + 8);
    down();
    return waitUntil([&] {
        if (meanwhile) {
            meanwhile();
        }
        moveBy(1, 1);
        const auto now = connection_.visibleFrame(window);
        return now && now->x > before->x + 10;
    });
}

} // namespace brisk::desktop
