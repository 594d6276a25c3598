#pragma once

#include "platform/hot_key_service.h"
#include "platform/main_queue.h"
#include "platform/x11/connection.h"
#include "platform/x11/modifier_map.h"

#include <bitset>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace brisk::x11 {

/// Tells the press of a key from the presses that auto-repeat makes of holding it, out of the events that a grabbed
/// keyboard reports.
class KeyRepeat {
public:
    /// How the server repeats a key: by presses alone ("detectable"), or with a release of the same time before each.
    enum class Style : std::uint8_t { presses, releasesAndPresses };
    explicit KeyRepeat(Style style) : style_(style) {}

    /// Whether the key goes down with this press.
    bool press(xcb_keycode_t keyCode, xcb_timestamp_t time);
    void release(xcb_keycode_t keyCode, xcb_timestamp_t time);

private:
    Style style_;
    std::bitset<256> down_;
    /// The key whose press grabbed the keyboard, and whose release ends that.
    xcb_keycode_t grabbing_ = 0;
    xcb_keycode_t released_ = 0;
    xcb_timestamp_t releaseTime_ = 0;
};

/// Hot keys as key grabs on the root window. Command is Super and Option is Alt, wherever the keyboard map has them.
///
/// A registration outlives changes of the keyboard map: where a new map leaves no combination for it, or another client
/// has that one, it stays recorded and is tried again with the next change. So it is after a suspension.
class HotKeys final : public HotKeyService {
public:
    HotKeys(Connection& connection, MainQueue& queue);
    HotKeys(const HotKeys&) = delete;
    HotKeys& operator=(const HotKeys&) = delete;
    ~HotKeys() override;

    EventHandlerInstallation InstallEventHandler(HotKeyPressedHandler handler) override;
    void RemoveEventHandler(EventHandlerRef handler) override;
    HotKeyRegistration RegisterEventHotKey(std::uint32_t keyCode, std::uint32_t modifiers, EventHotKeyID id) override;
    void UnregisterEventHotKey(EventHotKeyRef hotKey) override;
    void suspend() override;
    void resume() override;

private:
    struct Handler {
        EventHandlerRef reference;
        HotKeyPressedHandler handle;
    };
    struct HotKey {
        EventHotKeyRef reference{};
        EventHotKeyID id;
        xcb_keycode_t keyCode = 0;
        /// As registered (Carbon).
        std::uint32_t modifiers = 0;
        /// The X modifiers, locks left aside, with which the key is grabbed; none while it is not.
        std::optional<std::uint16_t> grabbed = std::nullopt;
    };

    void setUpKeyboard();
    void handle(const xcb_generic_event_t& event);
    void keyPressed(const xcb_key_press_event_t& event);
    void report(EventHotKeyID id);
    void scheduleFollowingTheMap();
    void followTheMap();

    /// Grabs what of these is not grabbed yet, all of it in one round trip; nothing while suspended.
    void grab(const std::vector<HotKey*>& hotKeys);
    void grabAll();
    void release(HotKey& hotKey);
    bool isGrabbed(xcb_keycode_t keyCode, std::uint16_t mask) const;

    Connection& connection_;
    MainQueue& queue_;
    ModifierMap modifierMap_;
    /// The one installed last comes first: it is asked first, the others where it does not want the event.
    std::vector<Handler> handlers_;
    std::vector<HotKey> hotKeys_;
    std::uint64_t lastReference_ = 0;
    int suspensions_ = 0;
    KeyRepeat repeat_{KeyRepeat::Style::releasesAndPresses};
    /// The number of the keyboard extension's events, 0 without it (no event has that).
    std::uint8_t xkbEvent_ = 0;
    bool mapIsStale_ = false;
    /// What scheduled work holds weakly.
    std::shared_ptr<HotKeys*> self_ = std::make_shared<HotKeys*>(this);
    Connection::Subscription subscription_;
};

} // namespace brisk::x11
