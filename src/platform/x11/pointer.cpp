#include "platform/x11/pointer.h"

#include "platform/x11/properties.h"

#include <xcb/res.h>

#include <algorithm>
#include <vector>

namespace brisk::x11 {
namespace {

/// The child of the root window that the window is or lies in; none when it is gone. Bounded, since the tree may change
/// underway.
xcb_window_t topLevelOf(Connection& connection, xcb_window_t window) {
    constexpr int maximumDepth = 64;
    for (int depth = 0; depth < maximumDepth && window != XCB_WINDOW_NONE; ++depth) {
        const auto cookie = xcb_query_tree(connection.xcb(), window);
        const Reply<xcb_query_tree_reply_t> tree{xcb_query_tree_reply(connection.xcb(), cookie, nullptr)};
        if (!tree) {
            return XCB_WINDOW_NONE;
        }
        if (tree->parent == connection.root()) {
            return window;
        }
        window = tree->parent;
    }
    return XCB_WINDOW_NONE;
}

std::optional<PointerReading> take(Connection& connection, xcb_query_pointer_cookie_t cookie) {
    const Reply<xcb_query_pointer_reply_t> reply{xcb_query_pointer_reply(connection.xcb(), cookie, nullptr)};
    return reply ? std::optional(readingOf(*reply)) : std::nullopt;
}

class ActiveWindowRequest {
public:
    ActiveWindowRequest(Connection& connection, const Atoms& atoms)
        : property_(connection, connection.root(), atoms.netActiveWindow, 1) {}
    xcb_window_t take() const {
        const auto words = property_.takeWords(XCB_ATOM_WINDOW, 1);
        return words ? words->front() : xcb_window_t{XCB_WINDOW_NONE};
    }

private:
    PropertyRequest property_;
};

bool isIn(Connection& connection, xcb_window_t window, xcb_window_t topLevel) {
    return window != XCB_WINDOW_NONE && topLevel != XCB_WINDOW_NONE && topLevelOf(connection, window) == topLevel;
}

/// Which ids the server has given to this process: one range for each of its connections.
class OwnIDs {
public:
    explicit OwnIDs(Connection& connection) : connection_(connection) {
        if (!connection.has(xcb_res_id)) {
            return;
        }
        const xcb_res_client_id_spec_t everyProcess{.client = 0, .mask = XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID};
        cookie_ = xcb_res_query_client_ids(connection.xcb(), 1, &everyProcess);
    }

    void take() {
        const xcb_setup_t& setup = *xcb_get_setup(connection_.xcb());
        rangeMask_ = ~setup.resource_id_mask;
        ranges_ = {setup.resource_id_base};
        if (!cookie_) {
            return;
        }
        struct Range {
            std::uint32_t base;
            std::uint32_t processID;
        };
        std::vector<Range> all;
        // Our own process id as the server sees it, which may live in another process id name space.
        std::optional<std::uint32_t> own;
        const Reply<xcb_res_query_client_ids_reply_t> reply{
            xcb_res_query_client_ids_reply(connection_.xcb(), *cookie_, nullptr)};
        if (!reply) {
            return;
        }
        for (auto id = xcb_res_query_client_ids_ids_iterator(reply.get()); id.rem > 0;
             xcb_res_client_id_value_next(&id)) {
            if (xcb_res_client_id_value_value_length(id.data) < 1) {
                continue;
            }
            all.push_back({id.data->spec.client, *xcb_res_client_id_value_value(id.data)});
            if (all.back().base == setup.resource_id_base) {
                own = all.back().processID;
            }
        }
        for (const Range& range : all) {
            if (range.processID == own) {
                ranges_.push_back(range.base);
            }
        }
    }
    bool contain(xcb_window_t window) const { return std::ranges::find(ranges_, window & rangeMask_) != ranges_.end(); }

private:
    Connection& connection_;
    /// None without the extension: then only what this connection has made is known.
    std::optional<xcb_res_query_client_ids_cookie_t> cookie_;
    std::uint32_t rangeMask_ = 0;
    std::vector<std::uint32_t> ranges_;
};

} // namespace

PointerReading readingOf(const xcb_query_pointer_reply_t& reply) {
    return {.rootX = reply.root_x, .rootY = reply.root_y, .state = reply.mask, .topLevel = reply.child};
}

std::optional<PointerReading> readPointer(Connection& connection) {
    return take(connection, xcb_query_pointer(connection.xcb(), connection.root()));
}

std::optional<PressReading> readPress(Connection& connection, const Atoms& atoms) {
    constexpr std::uint32_t everyClient = 4096;
    const auto pointerCookie = xcb_query_pointer(connection.xcb(), connection.root());
    const ActiveWindowRequest activeWindow(connection, atoms);
    const PropertyRequest clientList(connection, connection.root(), atoms.netClientList, everyClient);
    OwnIDs ownIDs(connection);

    const auto pointer = take(connection, pointerCookie);
    const xcb_window_t active = activeWindow.take();
    const auto clients = clientList.takeWords(XCB_ATOM_WINDOW).value_or(std::vector<std::uint32_t>{});
    ownIDs.take();
    if (!pointer) {
        return std::nullopt;
    }
    // Of framed windows the frame is under the pointer, and that is the window manager's.
    const bool isOwn = ownIDs.contain(pointer->topLevel) || std::ranges::any_of(clients, [&](xcb_window_t client) {
                           return ownIDs.contain(client) && isIn(connection, client, pointer->topLevel);
                       });
    return PressReading{.pointer = *pointer, .isOwn = isOwn, .isActive = isIn(connection, active, pointer->topLevel)};
}

bool isActiveWindowIn(Connection& connection, const Atoms& atoms, xcb_window_t topLevel) {
    return isIn(connection, ActiveWindowRequest(connection, atoms).take(), topLevel);
}

} // namespace brisk::x11
