#include "desktop/support/desktop_connection.h"

#include <algorithm>
#include <stdexcept>
#include <string_view>

namespace brisk::desktop {
namespace {

constexpr std::uint32_t sourcePager = 2;

PixelExtents extents(const std::vector<std::uint32_t>& items) {
    if (items.size() != 4) {
        return {};
    }
    return {.left = static_cast<int>(items[0]),
            .right = static_cast<int>(items[1]),
            .top = static_cast<int>(items[2]),
            .bottom = static_cast<int>(items[3])};
}

} // namespace

DesktopConnection::DesktopConnection(const std::string& display) {
    int screenNumber = 0;
    connection_ = xcb_connect(display.c_str(), &screenNumber);
    if (xcb_connection_has_error(connection_) != 0) {
        xcb_disconnect(connection_);
        throw std::runtime_error("cannot connect to display " + display);
    }
    auto screens = xcb_setup_roots_iterator(xcb_get_setup(connection_));
    for (int i = 0; i < screenNumber; ++i) {
        xcb_screen_next(&screens);
    }
    screen_ = screens.data;
}

DesktopConnection::~DesktopConnection() {
    xcb_disconnect(connection_);
}

xcb_atom_t DesktopConnection::atom(const std::string& name) {
    const auto known = atoms_.find(name);
    if (known != atoms_.end()) {
        return known->second;
    }
    const auto cookie = xcb_intern_atom(connection_, 0, static_cast<std::uint16_t>(name.size()), name.c_str());
    const Reply<xcb_intern_atom_reply_t> reply{xcb_intern_atom_reply(connection_, cookie, nullptr)};
    if (!reply) {
        throw std::runtime_error("the X server is gone");
    }
    return atoms_[name] = reply->atom;
}

std::vector<std::uint32_t> DesktopConnection::cardinals(xcb_window_t window, const std::string& property) {
    const auto cookie = xcb_get_property(connection_, 0, window, atom(property), XCB_GET_PROPERTY_TYPE_ANY, 0, 4096);
    const Reply<xcb_get_property_reply_t> reply{xcb_get_property_reply(connection_, cookie, nullptr)};
    if (!reply || reply->format != 32) {
        return {};
    }
    const auto* items = static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
    return {items, items + reply->value_len};
}

void DesktopConnection::setCardinals(xcb_window_t window, const std::string& property, xcb_atom_t type,
                                     const std::vector<std::uint32_t>& items) {
    xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window, atom(property), type, 32,
                        static_cast<std::uint32_t>(items.size()), items.data());
}

void DesktopConnection::sendToWindowManager(xcb_window_t window, const std::string& type,
                                            std::array<std::uint32_t, 5> data) {
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = atom(type);
    std::copy(data.begin(), data.end(), std::begin(message.data.data32));
    xcb_send_event(connection_, 0, root(), XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                   // xcb sends the 32 bytes of any event structure through this one type.
                   reinterpret_cast<const char*>(&message));
    xcb_flush(connection_);
}

void DesktopConnection::synchronize() {
    const Reply<xcb_get_input_focus_reply_t> reply{
        xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr)};
}

std::optional<PixelRect> DesktopConnection::clientRect(xcb_window_t window) {
    const auto geometryCookie = xcb_get_geometry(connection_, window);
    const auto originCookie = xcb_translate_coordinates(connection_, window, root(), 0, 0);
    const Reply<xcb_get_geometry_reply_t> geometry{xcb_get_geometry_reply(connection_, geometryCookie, nullptr)};
    const Reply<xcb_translate_coordinates_reply_t> origin{
        xcb_translate_coordinates_reply(connection_, originCookie, nullptr)};
    if (!geometry || !origin) {
        return std::nullopt;
    }
    return PixelRect{.x = origin->dst_x, .y = origin->dst_y, .width = geometry->width, .height = geometry->height};
}

PixelExtents DesktopConnection::decorations(xcb_window_t window) {
    return extents(cardinals(window, "_NET_FRAME_EXTENTS"));
}

std::optional<PixelRect> DesktopConnection::visibleFrame(xcb_window_t window) {
    const auto client = clientRect(window);
    if (!client) {
        return std::nullopt;
    }
    const PixelExtents around = decorations(window);
    const PixelExtents shadow = extents(cardinals(window, "_GTK_FRAME_EXTENTS"));
    const int left = around.left - shadow.left;
    const int top = around.top - shadow.top;
    return PixelRect{.x = client->x - left,
                     .y = client->y - top,
                     .width = client->width + left + around.right - shadow.right,
                     .height = client->height + top + around.bottom - shadow.bottom};
}

bool DesktopConnection::isViewable(xcb_window_t window) {
    const Reply<xcb_get_window_attributes_reply_t> reply{
        xcb_get_window_attributes_reply(connection_, xcb_get_window_attributes(connection_, window), nullptr)};
    return reply && reply->map_state == XCB_MAP_STATE_VIEWABLE;
}

bool DesktopConnection::hasState(xcb_window_t window, const std::string& stateAtom) {
    const auto states = cardinals(window, "_NET_WM_STATE");
    return std::find(states.begin(), states.end(), atom(stateAtom)) != states.end();
}

xcb_window_t DesktopConnection::activeWindow() {
    const auto windows = cardinals(root(), "_NET_ACTIVE_WINDOW");
    return windows.empty() ? xcb_window_t{XCB_WINDOW_NONE} : windows.front();
}

std::vector<xcb_window_t> DesktopConnection::clients() {
    return cardinals(root(), "_NET_CLIENT_LIST");
}

bool DesktopConnection::isManaged(xcb_window_t window) {
    const auto windows = clients();
    return std::find(windows.begin(), windows.end(), window) != windows.end() && isViewable(window);
}

xcb_window_t DesktopConnection::topmostWindow() {
    const Reply<xcb_query_tree_reply_t> tree{
        xcb_query_tree_reply(connection_, xcb_query_tree(connection_, root()), nullptr)};
    const int count = tree ? xcb_query_tree_children_length(tree.get()) : 0;
    return count > 0 ? xcb_query_tree_children(tree.get())[count - 1] : xcb_window_t{XCB_WINDOW_NONE};
}

std::vector<xcb_window_t> DesktopConnection::windowsOf(const std::string& instanceName) {
    std::vector<xcb_window_t> found;
    addWindowsOf(instanceName, root(), found);
    return found;
}

void DesktopConnection::addWindowsOf(const std::string& instanceName, xcb_window_t parent,
                                     std::vector<xcb_window_t>& found) {
    const Reply<xcb_query_tree_reply_t> tree{
        xcb_query_tree_reply(connection_, xcb_query_tree(connection_, parent), nullptr)};
    if (!tree) {
        return;
    }
    for (int i = 0; i < xcb_query_tree_children_length(tree.get()); ++i) {
        const xcb_window_t window = xcb_query_tree_children(tree.get())[i];
        const Reply<xcb_get_property_reply_t> windowClass{xcb_get_property_reply(
            connection_, xcb_get_property(connection_, 0, window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, 0, 16), nullptr)};
        const std::string_view names(
            static_cast<const char*>(windowClass ? xcb_get_property_value(windowClass.get()) : ""),
            windowClass ? static_cast<std::size_t>(xcb_get_property_value_length(windowClass.get())) : 0);
        const auto rect = clientRect(window);
        // Instance and class follow each other, each with a zero byte at its end.
        if (names.substr(0, names.find('\0')) == instanceName && isViewable(window) && rect && rect->width > 10) {
            found.push_back(window);
        }
        addWindowsOf(instanceName, window, found);
    }
}

std::string DesktopConnection::title(xcb_window_t window) {
    constexpr std::uint32_t length = 256;
    const auto cookie = xcb_get_property(connection_, 0, window, atom("_NET_WM_NAME"), atom("UTF8_STRING"), 0, length);
    const Reply<xcb_get_property_reply_t> name{xcb_get_property_reply(connection_, cookie, nullptr)};
    return name ? std::string(static_cast<const char*>(xcb_get_property_value(name.get())),
                              static_cast<std::size_t>(xcb_get_property_value_length(name.get())))
                : std::string();
}

bool DesktopConnection::isCompositing() {
    const auto cookie = xcb_get_selection_owner(connection_, atom("_NET_WM_CM_S0"));
    const Reply<xcb_get_selection_owner_reply_t> owner{xcb_get_selection_owner_reply(connection_, cookie, nullptr)};
    return owner && owner->owner != XCB_WINDOW_NONE;
}

void DesktopConnection::requestFrame(xcb_window_t window, const PixelRect& visibleFrame) {
    const PixelExtents around = decorations(window);
    const PixelExtents shadow = extents(cardinals(window, "_GTK_FRAME_EXTENTS"));
    // Position means the frame's corner and size the client's, by the standard's north-west gravity.
    constexpr std::uint32_t northWest = XCB_GRAVITY_NORTH_WEST;
    constexpr std::uint32_t allFourGiven = 0xFU << 8U;
    sendToWindowManager(
        window, "_NET_MOVERESIZE_WINDOW",
        {northWest | allFourGiven | sourcePager << 12U, static_cast<std::uint32_t>(visibleFrame.x - shadow.left),
         static_cast<std::uint32_t>(visibleFrame.y - shadow.top),
         static_cast<std::uint32_t>(visibleFrame.width - around.left - around.right + shadow.left + shadow.right),
         static_cast<std::uint32_t>(visibleFrame.height - around.top - around.bottom + shadow.top + shadow.bottom)});
}

void DesktopConnection::requestActivation(xcb_window_t window) {
    sendToWindowManager(window, "_NET_ACTIVE_WINDOW", {sourcePager, XCB_CURRENT_TIME, 0, 0, 0});
}

void DesktopConnection::requestClose(xcb_window_t window) {
    sendToWindowManager(window, "_NET_CLOSE_WINDOW", {XCB_CURRENT_TIME, sourcePager, 0, 0, 0});
}

} // namespace brisk::desktop
