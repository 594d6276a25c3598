#pragma once

#include "platform/x11/atoms.h"
#include "platform/x11/connection.h"
#include "platform/x11/properties.h"
#include "platform/x11/window.h"

#include <xcb/res.h>

#include <optional>
#include <string>

namespace brisk::x11 {

/// The class in the property WM_CLASS: two strings, instance and class, each with a zero byte after it. Empty where
/// there is none.
std::string classIn(const std::string& property);

/// What is asked about a window when it is first seen: all questions are sent at once, for many windows together, and
/// the answers taken afterwards, so that a desktop full of windows costs one round trip.
class DescriptionRequest {
public:
    DescriptionRequest(Connection& connection, const Atoms& atoms, xcb_window_t window);

    /// Fills in the description; false when the window is gone.
    bool take(Window& window);

private:
    ProcessIdentity takeProcess(xcb_window_t window);

    Connection& connection_;
    const Atoms& atoms_;
    xcb_get_window_attributes_cookie_t attributes_;
    /// None where the server does not know whose a window is.
    std::optional<xcb_res_query_client_ids_cookie_t> owner_;
    PropertyRequest class_;
    PropertyRequest type_;
    PropertyRequest strut_;
    PropertyRequest strutPartial_;
};

} // namespace brisk::x11
