#include "platform/x11/window_tracker.h"

#include "platform/x11/events.h"
#include "platform/x11/properties.h"
#include "platform/x11/window_description.h"

#include <algorithm>
#include <optional>
#include <unordered_set>
#include <utility>

namespace brisk::x11 {

namespace {

/// More windows than any desktop has, and a bound on what a broken list can cost.
constexpr std::uint32_t maximumClients = 4096;

} // namespace

WindowTracker::WindowTracker(Connection& connection, const Atoms& atoms)
    : connection_(connection),
      atoms_(atoms),
      subscription_(connection.addEventHandler([this](const xcb_generic_event_t& event) { handle(event); })) {}

void WindowTracker::update() {
    // What is asked may change while it is asked. A few passes follow an honest desktop; a client that changes
    // something without end is left for the next turn.
    for (int pass = 0; pass < 3 && (isClientListStale_ || isActiveWindowStale_ || areWindowsStale_); ++pass) {
        std::optional<PropertyRequest> clients;
        std::optional<PropertyRequest> active;
        if (std::exchange(isClientListStale_, false)) {
            clients.emplace(connection_, connection_.root(), atoms_.netClientList, maximumClients);
        }
        if (std::exchange(isActiveWindowStale_, false)) {
            active.emplace(connection_, connection_.root(), atoms_.netActiveWindow, 1);
        }
        const auto clientIDs = clients ? clients->takeWords(XCB_ATOM_WINDOW) : std::nullopt;
        const auto activeIDs = active ? active->takeWords(XCB_ATOM_WINDOW, 1) : std::nullopt;
        connection_.dispatchQueuedEvents();
        if (clients) {
            takeClientList(clientIDs.value_or(std::vector<xcb_window_t>{}));
        }
        describeStaleWindows();
        if (active) {
            takeActiveWindow(activeIDs ? activeIDs->front() : xcb_window_t{XCB_WINDOW_NONE});
        }
    }
}

void WindowTracker::synchronize() {
    connection_.dispatchEvents();
    update();
}

WindowRef WindowTracker::activeWindow() const {
    const auto window = windows_.find(activeID_);
    return window != windows_.end() && window->second->isFocusable ? window->second : nullptr;
}

bool WindowTracker::isClient(xcb_window_t id) const {
    const auto window = windows_.find(id);
    return window != windows_.end() && window->second->isListed;
}

WindowRef WindowTracker::find(xcb_window_t id) {
    if (id == XCB_WINDOW_NONE || id == connection_.root()) {
        return nullptr;
    }
    if (const auto known = windows_.find(id); known != windows_.end()) {
        return known->second;
    }
    follow(connection_.xcb(), id);
    windows_.emplace(id, std::make_shared<Window>(id));
    areWindowsStale_ = true;
    describeStaleWindows();
    const auto found = windows_.find(id);
    return found != windows_.end() ? found->second : nullptr;
}

std::vector<WindowRef> WindowTracker::windowsOf(const ProcessIdentity& process) {
    if (std::exchange(isStackingStale_, false)) {
        const PropertyRequest request{connection_, connection_.root(), atoms_.netClientListStacking, maximumClients};
        stacking_ = request.takeWords(XCB_ATOM_WINDOW).value_or(std::vector<xcb_window_t>{});
        connection_.dispatchQueuedEvents();
    }
    std::vector<WindowRef> result;
    for (const auto& [id, window] : windows_) {
        if (window->isListed && window->isFocusable && window->process == process) {
            result.push_back(window);
        }
    }
    const auto height = [this](const WindowRef& window) {
        const auto place = std::find(stacking_.begin(), stacking_.end(), window->id);
        return place != stacking_.end() ? place - stacking_.begin() : -1;
    };
    std::sort(result.begin(), result.end(),
              [&](const WindowRef& a, const WindowRef& b) { return height(a) > height(b); });
    return result;
}

WindowRef WindowTracker::focusedWindowOf(const ProcessIdentity& process) {
    if (auto active = activeWindow(); active && active->process == process) {
        return active;
    }
    const auto windows = windowsOf(process);
    // The first of the best, so that what lies on top goes first among windows that were never active.
    const auto best = std::max_element(windows.begin(), windows.end(), [](const WindowRef& a, const WindowRef& b) {
        return std::pair{a->isMapped, a->lastActivation} < std::pair{b->isMapped, b->lastActivation};
    });
    return best != windows.end() ? *best : nullptr;
}

std::optional<ProcessIdentity> WindowTracker::ownerWithID(ProcessIdentifier id) const {
    for (const auto& [windowID, window] : windows_) {
        if (window->process.id == id) {
            return window->process;
        }
    }
    return std::nullopt;
}

std::vector<Strut> WindowTracker::struts() const {
    std::vector<Strut> result;
    for (const auto& [id, window] : windows_) {
        if (window->strut && window->isListed && window->isMapped) {
            result.push_back(*window->strut);
        }
    }
    return result;
}

void WindowTracker::handle(const xcb_generic_event_t& event) {
    switch (typeOf(event)) {
    case XCB_PROPERTY_NOTIFY: {
        const auto& notify = as<xcb_property_notify_event_t>(event);
        if (notify.window == connection_.root()) {
            handleRootProperty(notify.atom);
        } else if (notify.atom == atoms_.netWindowType || notify.atom == atoms_.netStrut ||
                   notify.atom == atoms_.netStrutPartial) {
            if (const auto window = windows_.find(notify.window); window != windows_.end()) {
                window->second->isStale = true;
                areWindowsStale_ = true;
            }
        }
        break;
    }
    case XCB_DESTROY_NOTIFY:
        handleDestruction(as<xcb_destroy_notify_event_t>(event).window);
        break;
    case XCB_MAP_NOTIFY:
        setMapped(as<xcb_map_notify_event_t>(event).window, true);
        break;
    case XCB_UNMAP_NOTIFY:
        setMapped(as<xcb_unmap_notify_event_t>(event).window, false);
        break;
    default:
        break;
    }
}

void WindowTracker::handleRootProperty(xcb_atom_t property) {
    isClientListStale_ = isClientListStale_ || property == atoms_.netClientList;
    isStackingStale_ = isStackingStale_ || property == atoms_.netClientListStacking;
    isActiveWindowStale_ = isActiveWindowStale_ || property == atoms_.netActiveWindow;
}

void WindowTracker::handleDestruction(xcb_window_t id) {
    if (const auto found = windows_.find(id); found != windows_.end()) {
        found->second->exists = false;
        if (found->second->strut) {
            ++strutGeneration_;
        }
        windows_.erase(found);
    }
}

void WindowTracker::setMapped(xcb_window_t id, bool isMapped) {
    if (const auto found = windows_.find(id); found != windows_.end()) {
        found->second->isMapped = isMapped;
        if (found->second->strut) {
            ++strutGeneration_;
        }
    }
}

void WindowTracker::takeClientList(const std::vector<xcb_window_t>& ids) {
    const std::unordered_set<xcb_window_t> listed{ids.begin(), ids.end()};
    for (const auto& [id, window] : windows_) {
        if (window->isListed && !listed.contains(id)) {
            // Withdrawn, not destroyed: it may be shown again and is then the same window to those that remember it.
            window->isListed = false;
            if (window->strut) {
                ++strutGeneration_;
            }
        }
    }
    for (const xcb_window_t id : listed) {
        if (id == XCB_WINDOW_NONE || id == connection_.root()) {
            continue;
        }
        const auto [position, isNew] = windows_.try_emplace(id);
        if (isNew) {
            position->second = std::make_shared<Window>(id);
            follow(connection_.xcb(), id);
            areWindowsStale_ = true;
        }
        Window& window = *position->second;
        if (!std::exchange(window.isListed, true)) {
            if (window.strut) {
                ++strutGeneration_;
            }
        }
    }
}

void WindowTracker::takeActiveWindow(xcb_window_t id) {
    activeID_ = id;
    if (const WindowRef window = find(id);
        window && (window->lastActivation == 0 || window->lastActivation != activations_)) {
        windows_.at(id)->lastActivation = ++activations_;
    }
}

void WindowTracker::describeStaleWindows() {
    if (!std::exchange(areWindowsStale_, false)) {
        return;
    }
    std::vector<std::pair<std::shared_ptr<Window>, DescriptionRequest>> requests;
    for (const auto& [id, window] : windows_) {
        if (window->isStale) {
            requests.emplace_back(window, DescriptionRequest{connection_, atoms_, id});
        }
    }
    for (auto& [window, request] : requests) {
        const auto strutBefore = window->strut;
        if (!request.take(*window)) {
            window->exists = false;
            windows_.erase(window->id);
        }
        if (window->strut != strutBefore) {
            ++strutGeneration_;
        }
    }
    connection_.dispatchQueuedEvents();
}

} // namespace brisk::x11
