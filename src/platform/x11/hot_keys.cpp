#include "platform/x11/hot_keys.h"

#include "platform/x11/events.h"
#include "platform/x11/virtual_key_codes.h"
#include "platform/x11/xkb.h"

#include <algorithm>
#include <cassert>
#include <utility>

namespace brisk::x11 {

bool KeyRepeat::press(xcb_keycode_t keyCode, xcb_timestamp_t time) {
    if (down_.none()) {
        grabbing_ = keyCode;
    }
    const bool wasReleasedForThis = style_ == Style::releasesAndPresses && keyCode == released_ && time == releaseTime_;
    const bool isRepeat = down_[keyCode] || wasReleasedForThis;
    down_.set(keyCode);
    return !isRepeat;
}

void KeyRepeat::release(xcb_keycode_t keyCode, xcb_timestamp_t time) {
    released_ = keyCode;
    releaseTime_ = time;
    if (keyCode == grabbing_) {
        // The keyboard is free again, and the releases of keys still down go to others.
        down_.reset();
    } else {
        down_.reset(keyCode);
    }
}

HotKeys::HotKeys(Connection& connection, MainQueue& queue) : connection_(connection), queue_(queue) {
    setUpKeyboard();
    subscription_ = connection_.addEventHandler([this](const xcb_generic_event_t& event) { handle(event); });
}

HotKeys::~HotKeys() {
    for (HotKey& hotKey : hotKeys_) {
        release(hotKey);
    }
    xcb_flush(connection_.xcb());
}

void HotKeys::setUpKeyboard() {
    xcb_connection_t* const xcb = connection_.xcb();
    const xcb_query_extension_reply_t* extension = xcb_get_extension_data(xcb, &xcb_xkb_id);
    if (extension == nullptr || extension->present == 0) {
        modifierMap_ = readModifierMap(connection_).value_or(ModifierMap{});
        return;
    }
    xkbEvent_ = extension->first_event;
    xcb_discard_reply(xcb, xcb_xkb_use_extension(xcb, XCB_XKB_MAJOR_VERSION, XCB_XKB_MINOR_VERSION).sequence);
    // Every client hears of the core protocol's map changes, of the extension's own those that ask. It is asked before
    // the map is read, so that no change falls in between.
    constexpr std::uint16_t events = XCB_XKB_EVENT_TYPE_NEW_KEYBOARD_NOTIFY | XCB_XKB_EVENT_TYPE_MAP_NOTIFY;
    constexpr std::uint16_t parts = XCB_XKB_MAP_PART_KEY_SYMS | XCB_XKB_MAP_PART_MODIFIER_MAP;
    xcb_xkb_select_events(xcb, XCB_XKB_ID_USE_CORE_KBD, events, 0, XCB_XKB_EVENT_TYPE_NEW_KEYBOARD_NOTIFY, parts, parts,
                          nullptr);
    constexpr std::uint32_t detectable = XCB_XKB_PER_CLIENT_FLAG_DETECTABLE_AUTO_REPEAT;
    const auto flagsCookie = xcb_xkb_per_client_flags(xcb, XCB_XKB_ID_USE_CORE_KBD, detectable, detectable, 0, 0, 0);
    modifierMap_ = readModifierMap(connection_).value_or(ModifierMap{});
    const Reply<xcb_xkb_per_client_flags_reply_t> flags{xcb_xkb_per_client_flags_reply(xcb, flagsCookie, nullptr)};
    if (flags && (flags->value & detectable) != 0) {
        repeat_ = KeyRepeat{KeyRepeat::Style::presses};
    }
}

EventHandlerInstallation HotKeys::InstallEventHandler(HotKeyPressedHandler handler) {
    const EventHandlerRef reference{++lastReference_};
    handlers_.insert(handlers_.begin(), {reference, std::move(handler)});
    return {.handler = reference};
}

void HotKeys::RemoveEventHandler(EventHandlerRef handler) {
    std::erase_if(handlers_, [&](const Handler& installed) { return installed.reference == handler; });
}

HotKeyRegistration HotKeys::RegisterEventHotKey(std::uint32_t keyCode, std::uint32_t modifiers, EventHotKeyID id) {
    const auto xKeyCode = xKeyCodeOf(keyCode);
    if (!xKeyCode || !modifierMap_.maskOf(modifiers)) {
        return {.status = eventHotKeyInvalidErr};
    }
    const bool isTaken = std::ranges::any_of(
        hotKeys_, [&](const HotKey& hotKey) { return hotKey.keyCode == *xKeyCode && hotKey.modifiers == modifiers; });
    HotKey hotKey{
        .reference = EventHotKeyRef{lastReference_ + 1}, .id = id, .keyCode = *xKeyCode, .modifiers = modifiers};
    if (!isTaken) {
        grab({&hotKey});
    }
    if (isTaken || (!hotKey.grabbed && suspensions_ == 0)) {
        return {.status = eventHotKeyExistsErr};
    }
    ++lastReference_;
    hotKeys_.push_back(hotKey);
    return {.hotKey = hotKey.reference};
}

void HotKeys::UnregisterEventHotKey(EventHotKeyRef hotKey) {
    const auto found = std::ranges::find(hotKeys_, hotKey, &HotKey::reference);
    if (found != hotKeys_.end()) {
        release(*found);
        hotKeys_.erase(found);
    }
}

void HotKeys::suspend() {
    if (suspensions_++ > 0) {
        return;
    }
    for (HotKey& hotKey : hotKeys_) {
        release(hotKey);
    }
    xcb_connection_t* const xcb = connection_.xcb();
    // An answer: the server has carried out what was asked before.
    const Reply<xcb_get_input_focus_reply_t> answer{xcb_get_input_focus_reply(xcb, xcb_get_input_focus(xcb), nullptr)};
}

void HotKeys::resume() {
    assert(suspensions_ > 0);
    if (--suspensions_ == 0) {
        grabAll();
    }
}

void HotKeys::grab(const std::vector<HotKey*>& hotKeys) {
    if (suspensions_ > 0) {
        return;
    }
    struct Attempt {
        HotKey* hotKey;
        std::array<xcb_void_cookie_t, 4> cookies;
    };
    std::vector<Attempt> attempts;
    for (HotKey* const hotKey : hotKeys) {
        const auto mask = modifierMap_.maskOf(hotKey->modifiers);
        // The server lets one client grab a combination twice, and two modifiers may share a bit.
        if (hotKey->grabbed || !mask || isGrabbed(hotKey->keyCode, *mask)) {
            continue;
        }
        Attempt& attempt = attempts.emplace_back(Attempt{.hotKey = hotKey, .cookies = {}});
        std::ranges::transform(modifierMap_.lockVariants(), attempt.cookies.begin(), [&](std::uint16_t locks) {
            return xcb_grab_key_checked(connection_.xcb(), 0, connection_.root(),
                                        static_cast<std::uint16_t>(*mask | locks), hotKey->keyCode, XCB_GRAB_MODE_ASYNC,
                                        XCB_GRAB_MODE_ASYNC);
        });
        hotKey->grabbed = mask;
    }
    for (const Attempt& attempt : attempts) {
        bool isRefused = false;
        for (const xcb_void_cookie_t cookie : attempt.cookies) {
            const Reply<xcb_generic_error_t> error{xcb_request_check(connection_.xcb(), cookie)};
            isRefused = isRefused || error;
        }
        if (isRefused) {
            release(*attempt.hotKey);
        }
    }
}

void HotKeys::release(HotKey& hotKey) {
    if (!hotKey.grabbed) {
        return;
    }
    for (const std::uint16_t locks : modifierMap_.lockVariants()) {
        xcb_ungrab_key(connection_.xcb(), hotKey.keyCode, connection_.root(),
                       static_cast<std::uint16_t>(*hotKey.grabbed | locks));
    }
    hotKey.grabbed.reset();
}

bool HotKeys::isGrabbed(xcb_keycode_t keyCode, std::uint16_t mask) const {
    return std::ranges::any_of(
        hotKeys_, [&](const HotKey& hotKey) { return hotKey.keyCode == keyCode && hotKey.grabbed == mask; });
}

void HotKeys::handle(const xcb_generic_event_t& event) {
    const std::uint8_t type = typeOf(event);
    // Which of its events one of the keyboard extension's is says the second byte.
    const bool isMapChange =
        type == XCB_MAPPING_NOTIFY || (type == xkbEvent_ && type != 0 &&
                                       (event.pad0 == XCB_XKB_NEW_KEYBOARD_NOTIFY || event.pad0 == XCB_XKB_MAP_NOTIFY));
    if (isMapChange) {
        scheduleFollowingTheMap();
    } else if (type == XCB_KEY_PRESS) {
        keyPressed(as<xcb_key_press_event_t>(event));
    } else if (type == XCB_KEY_RELEASE) {
        const auto& release = as<xcb_key_release_event_t>(event);
        repeat_.release(release.detail, release.time);
    }
}

void HotKeys::keyPressed(const xcb_key_press_event_t& event) {
    if (!repeat_.press(event.detail, event.time)) {
        return;
    }
    const std::uint16_t mask = modifierMap_.withoutLocks(event.state);
    const auto pressed = std::ranges::find_if(
        hotKeys_, [&](const HotKey& hotKey) { return hotKey.keyCode == event.detail && hotKey.grabbed == mask; });
    if (pressed != hotKeys_.end()) {
        report(pressed->id);
    }
}

void HotKeys::report(EventHotKeyID id) {
    const std::vector<Handler> handlers = handlers_;
    for (const Handler& handler : handlers) {
        if (handler.handle(id) == noErr) {
            return;
        }
    }
}

/// Changing a map, or typing on another keyboard, sends many notices at once. They are answered together.
void HotKeys::scheduleFollowingTheMap() {
    if (std::exchange(mapIsStale_, true)) {
        return;
    }
    queue_.async([weak = std::weak_ptr(self_)] {
        if (const auto self = weak.lock()) {
            (*self)->followTheMap();
        }
    });
}

void HotKeys::followTheMap() {
    mapIsStale_ = false;
    const auto map = readModifierMap(connection_);
    if (!map) {
        return;
    }
    if (*map != modifierMap_) {
        for (HotKey& hotKey : hotKeys_) {
            release(hotKey);
        }
    }
    modifierMap_ = *map;
    grabAll();
}

void HotKeys::grabAll() {
    std::vector<HotKey*> all;
    for (HotKey& hotKey : hotKeys_) {
        all.push_back(&hotKey);
    }
    grab(all);
}

} // namespace brisk::x11
