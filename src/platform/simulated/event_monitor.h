#pragma once

#include "platform/global_event_monitor.h"
#include "platform/simulated/call_log.h"

#include <map>
#include <optional>

namespace brisk::simulated {

/// The mouse of the simulated desktop, and who watches it.
class EventMonitor final : public GlobalEventMonitor {
public:
    explicit EventMonitor(CallLog& log) : log_(log) {}

    CGPoint pointer;
    /// Whether the platform lets the mouse be watched.
    bool isAvailable = true;
    /// Where its motion changes nothing, as whoever watches has said last.
    std::optional<CGRect> ignoredRegion;

    /// Reports an event to whoever watches that kind.
    void send(NSEventType type, NSEventModifierFlags flags);

    std::optional<Token> addGlobalMonitorForEventsMatchingMask(NSEventMask mask, Handler handler) override;
    void removeMonitor(Token token) override;
    void ignoreRestOfPress() override { log_.record("ignoreRestOfPress"); }
    void ignoreMotionWithin(const CGRect& region) override { ignoredRegion = region; }
    CGPoint mouseLocation() override { return pointer; }

private:
    struct Monitor {
        NSEventMask mask;
        Handler handler;
    };

    CallLog& log_;
    std::map<Token, Monitor> monitors_;
    Token lastToken_ = 0;
};

} // namespace brisk::simulated
