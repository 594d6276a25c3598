#include "platform/simulated/hot_keys.h"

#include <algorithm>
#include <string>

namespace brisk::simulated {

std::optional<OSStatus> HotKeys::press(std::uint32_t keyCode, std::uint32_t modifiers) {
    const auto pressed = std::ranges::find_if(
        hotKeys_, [&](const auto& entry) { return entry.second.combination == Combination(keyCode, modifiers); });
    const bool isOurs = pressed != hotKeys_.end() && !isSuspended() && !heldElsewhere.contains({keyCode, modifiers});
    return isOurs ? deliver(pressed->second.id) : std::nullopt;
}

std::optional<OSStatus> HotKeys::deliver(std::optional<EventHotKeyID> id) {
    if (handlers_.empty()) {
        return std::nullopt;
    }
    const HotKeyPressedHandler handler = handlers_.rbegin()->second;
    return handler(id);
}

EventHandlerInstallation HotKeys::InstallEventHandler(HotKeyPressedHandler handler) {
    log_.record("InstallEventHandler");
    if (handlerStatus != noErr) {
        return {.status = handlerStatus};
    }
    const EventHandlerRef reference{++lastReference_};
    handlers_.emplace(reference, std::move(handler));
    return {.handler = reference};
}

void HotKeys::RemoveEventHandler(EventHandlerRef handler) {
    log_.record("RemoveEventHandler");
    handlers_.erase(handler);
}

HotKeyRegistration HotKeys::RegisterEventHotKey(std::uint32_t keyCode, std::uint32_t modifiers, EventHotKeyID id) {
    log_.record("RegisterEventHotKey " + std::to_string(keyCode) + " " + std::to_string(modifiers) + " as " +
                std::to_string(id.id));
    const Combination combination{keyCode, modifiers};
    const bool isHeld =
        (heldElsewhere.contains(combination) && !isSuspended()) ||
        std::ranges::any_of(hotKeys_, [&](const auto& entry) { return entry.second.combination == combination; });
    if (isHeld) {
        return {.status = eventHotKeyExistsErr};
    }
    const EventHotKeyRef reference{++lastReference_};
    hotKeys_.emplace(reference, HotKey{.combination = combination, .id = id});
    return {.hotKey = reference};
}

void HotKeys::UnregisterEventHotKey(EventHotKeyRef hotKey) {
    const auto registered = hotKeys_.find(hotKey);
    log_.record("UnregisterEventHotKey " + std::to_string(registered == hotKeys_.end() ? 0 : registered->second.id.id));
    if (registered != hotKeys_.end()) {
        hotKeys_.erase(registered);
    }
}

void HotKeys::suspend() {
    log_.record("suspend");
    ++suspensions_;
}

void HotKeys::resume() {
    log_.record("resume");
    --suspensions_;
}

} // namespace brisk::simulated
