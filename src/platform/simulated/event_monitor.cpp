#include "platform/simulated/event_monitor.h"

#include <string>
#include <utility>

namespace brisk::simulated {

void EventMonitor::send(NSEventType type, NSEventModifierFlags flags) {
    // Over a copy: a handler may remove its monitor.
    for (const auto& [token, monitor] : std::map(monitors_)) {
        if ((monitor.mask & maskOf(type)) != 0) {
            monitor.handler(type, flags);
        }
    }
}

std::optional<GlobalEventMonitor::Token> EventMonitor::addGlobalMonitorForEventsMatchingMask(NSEventMask mask,
                                                                                             Handler handler) {
    log_.record("addGlobalMonitorForEventsMatchingMask " + std::to_string(mask));
    if (!isAvailable) {
        return std::nullopt;
    }
    monitors_.emplace(++lastToken_, Monitor{.mask = mask, .handler = std::move(handler)});
    return lastToken_;
}

void EventMonitor::removeMonitor(Token token) {
    log_.record("removeMonitor");
    monitors_.erase(token);
}

} // namespace brisk::simulated
