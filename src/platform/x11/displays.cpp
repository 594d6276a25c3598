#include "platform/x11/displays.h"

#include "platform/x11/events.h"
#include "platform/x11/strut.h"

#include <xcb/randr.h>

#include <algorithm>
#include <utility>

namespace brisk::x11 {

namespace {

CGRect toAppKit(const PixelRect& rect, const PixelRect& primary) {
    return {.origin = {.x = static_cast<double>(rect.x - primary.x),
                       .y = static_cast<double>(primary.maxY() - rect.maxY())},
            .size = {.width = static_cast<double>(rect.width), .height = static_cast<double>(rect.height)}};
}

} // namespace

Displays::Displays(Connection& connection, WindowTracker& tracker)
    : connection_(connection),
      tracker_(tracker),
      subscription_(connection.addEventHandler(
          [this](const xcb_generic_event_t& event) { areMonitorsStale_ = areMonitorsStale_ || isChange(event); })) {
    const auto* extension = xcb_get_extension_data(connection_.xcb(), &xcb_randr_id);
    if (extension == nullptr || extension->present == 0) {
        return;
    }
    firstRandREvent_ = extension->first_event;
    const Reply<xcb_randr_query_version_reply_t> version{
        xcb_randr_query_version_reply(connection_.xcb(), xcb_randr_query_version(connection_.xcb(), 1, 5), nullptr)};
    // Monitors came with version 1.5.
    hasMonitors_ = version && std::pair{version->major_version, version->minor_version} >= std::pair{1U, 5U};
    xcb_randr_select_input(connection_.xcb(), connection_.root(),
                           XCB_RANDR_NOTIFY_MASK_SCREEN_CHANGE | XCB_RANDR_NOTIFY_MASK_CRTC_CHANGE |
                               XCB_RANDR_NOTIFY_MASK_OUTPUT_CHANGE);
}

const std::vector<ScreenInfo>& Displays::screens() {
    update();
    return screens_;
}

CGPoint Displays::accessibilityOrigin() {
    update();
    return {static_cast<double>(monitors_.front().x), static_cast<double>(monitors_.front().y)};
}

CGPoint Displays::toAppKit(CGPoint rootPoint) {
    update();
    return {rootPoint.x - monitors_.front().x, monitors_.front().maxY() - rootPoint.y};
}

bool Displays::isChange(const xcb_generic_event_t& event) const {
    const auto type = typeOf(event);
    const bool isRandR = firstRandREvent_ != 0 && (type == firstRandREvent_ + XCB_RANDR_SCREEN_CHANGE_NOTIFY ||
                                                   type == firstRandREvent_ + XCB_RANDR_NOTIFY);
    // Monitors that are defined by hand are reported as a change of the root window alone.
    const bool isRoot =
        type == XCB_CONFIGURE_NOTIFY && as<xcb_configure_notify_event_t>(event).window == connection_.root();
    return isRandR || isRoot;
}

void Displays::update() {
    tracker_.update();
    if (!areMonitorsStale_ && tracker_.strutGeneration() == strutGeneration_ && !screens_.empty()) {
        return;
    }
    if (std::exchange(areMonitorsStale_, false)) {
        readMonitors();
    }
    strutGeneration_ = tracker_.strutGeneration();
    const auto struts = tracker_.struts();
    screens_.clear();
    for (const PixelRect& monitor : monitors_) {
        PixelRect usable = monitor;
        for (const Strut& strut : struts) {
            usable = areaBeside(strut, usable, root_);
        }
        screens_.push_back({.frame = x11::toAppKit(monitor, monitors_.front()),
                            .visibleFrame = x11::toAppKit(usable, monitors_.front())});
    }
}

void Displays::readMonitors() {
    xcb_connection_t* xcb = connection_.xcb();
    const auto geometryCookie = xcb_get_geometry(xcb, connection_.root());
    Reply<xcb_randr_get_monitors_reply_t> monitors;
    if (hasMonitors_) {
        constexpr std::uint8_t activeOnly = 1;
        const auto cookie = xcb_randr_get_monitors(xcb, connection_.root(), activeOnly);
        monitors.reset(xcb_randr_get_monitors_reply(xcb, cookie, nullptr));
    }
    const Reply<xcb_get_geometry_reply_t> geometry{xcb_get_geometry_reply(xcb, geometryCookie, nullptr)};
    connection_.dispatchQueuedEvents();
    const xcb_screen_t& screen = connection_.screen();
    root_ = {0, 0, geometry ? geometry->width : screen.width_in_pixels,
             geometry ? geometry->height : screen.height_in_pixels};
    monitors_.clear();
    if (monitors) {
        for (auto monitor = xcb_randr_get_monitors_monitors_iterator(monitors.get()); monitor.rem > 0;
             xcb_randr_monitor_info_next(&monitor)) {
            const auto& info = *monitor.data;
            if (info.width == 0 || info.height == 0) {
                continue;
            }
            const auto position = info.primary != 0 ? monitors_.begin() : monitors_.end();
            monitors_.insert(position, {info.x, info.y, info.width, info.height});
        }
    }
    if (monitors_.empty()) {
        monitors_.push_back(root_);
    }
}

} // namespace brisk::x11
