#pragma once

#include "desktop/support/desktop_connection.h"

#include <cstdint>
#include <functional>
#include <vector>

namespace brisk::desktop {

/// X key codes of keys by their position on a PC keyboard with US labels (evdev code + 8).
enum class Key : std::uint8_t {
    escape = 9,
    digit1 = 10,
    digit2 = 11,
    digit3 = 12,
    digit4 = 13,
    digit5 = 14,
    digit6 = 15,
    backspace = 22,
    tab = 23,
    q = 24,
    u = 30,
    i = 31,
    returnKey = 36,
    leftControl = 37,
    j = 44,
    k = 45,
    leftShift = 50,
    c = 54,
    leftAlt = 64,
    capsLock = 66,
    numLock = 77,
    up = 111,
    left = 113,
    right = 114,
    down = 116,
    leftSuper = 133,
};

/// Real key events by XTEST: to everybody on the display they come from hardware. Each call returns once the server has
/// taken the events in.
class Keyboard {
public:
    explicit Keyboard(DesktopConnection& connection) : connection_(connection) {}
    void down(Key key);
    void up(Key key);
    /// Modifiers down in order, the key down and up, modifiers up in reverse.
    void press(Key key, const std::vector<Key>& modifiers = {});

private:
    DesktopConnection& connection_;
};

/// Whether a client holds the combination; a shortcut works from then on. Never comes in the way of one that asks for
/// it.
bool isGrabbed(DesktopConnection& connection, Key key, std::uint16_t modifierMask);

/// Real pointer events by XTEST, root coordinates.
class Pointer {
public:
    explicit Pointer(DesktopConnection& connection) : connection_(connection) {}
    void moveTo(int x, int y);
    void moveBy(int dx, int dy);
    void down(std::uint8_t button = 1);
    void up(std::uint8_t button = 1);
    void click(const PixelRect& place);
    /// Presses the button on a window's title bar and moves until the window follows; the button stays down. False when
    /// it does not. `meanwhile` is called again and again.
    [[nodiscard]] bool takeByTitle(xcb_window_t window, const std::function<void()>& meanwhile = {});

private:
    DesktopConnection& connection_;
};

} // namespace brisk::desktop
