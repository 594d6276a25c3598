#pragma once

#include "platform/accessibility_platform.h"
#include "platform/x11/process.h"
#include "platform/x11/strut.h"

#include <xcb/xcb.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace brisk::x11 {

/// One window from its creation to its destruction, and its accessibility element. The server uses ids again at once,
/// so this object is the identity, not the id: a later window of the same id is another object.
class Window final : public AXUIElement {
public:
    explicit Window(xcb_window_t windowID) : id(windowID) {}

    bool isEqual(const AXUIElement& other) const override { return this == &other; }
    std::size_t hash() const override { return std::hash<const void*>{}(this); }

    const xcb_window_t id;
    /// False for ever once the server has said that it was destroyed; nothing may be asked about the id from then on.
    bool exists = true;
    /// Whether the window manager lists it among its clients.
    bool isListed = false;
    bool isMapped = false;
    /// Whether a user can work in it: it is neither the desktop, nor a panel, nor a pop-up.
    bool isFocusable = true;
    /// Whether what follows has to be asked of the server again.
    bool isStale = true;
    ProcessIdentity process;
    /// The class part of WM_CLASS, empty without one.
    std::string windowClass;
    std::optional<Strut> strut;
    /// Counts up with every change of the active window; 0 for a window that never was the active one.
    std::uint64_t lastActivation = 0;
};
using WindowRef = std::shared_ptr<const Window>;

} // namespace brisk::x11
