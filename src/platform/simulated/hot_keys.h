#pragma once

#include "platform/hot_key_service.h"
#include "platform/simulated/call_log.h"

#include <map>
#include <set>
#include <utility>

namespace brisk::simulated {

/// Hot keys of a simulated keyboard.
class HotKeys final : public HotKeyService {
public:
    /// A key code with a modifier mask.
    using Combination = std::pair<std::uint32_t, std::uint32_t>;

    explicit HotKeys(CallLog& log) : log_(log) {}

    /// Combinations that another program holds.
    std::set<Combination> heldElsewhere;
    /// What `InstallEventHandler` answers.
    OSStatus handlerStatus = noErr;

    /// A person presses the combination. The status of the handler that got it; none when it is nobody's hot key.
    std::optional<OSStatus> press(std::uint32_t keyCode, std::uint32_t modifiers);
    /// An event reaches the installed handler as the system might send it, with any id or none.
    std::optional<OSStatus> deliver(std::optional<EventHotKeyID> id);

    bool isSuspended() const { return suspensions_ > 0; }
    std::size_t registeredCount() const { return hotKeys_.size(); }

    [[nodiscard]] EventHandlerInstallation InstallEventHandler(HotKeyPressedHandler handler) override;
    void RemoveEventHandler(EventHandlerRef handler) override;
    [[nodiscard]] HotKeyRegistration RegisterEventHotKey(std::uint32_t keyCode, std::uint32_t modifiers,
                                                         EventHotKeyID id) override;
    void UnregisterEventHotKey(EventHotKeyRef hotKey) override;
    void suspend() override;
    void resume() override;

private:
    struct HotKey {
        Combination combination;
        EventHotKeyID id;
    };

    CallLog& log_;
    std::map<EventHotKeyRef, HotKey> hotKeys_;
    std::map<EventHandlerRef, HotKeyPressedHandler> handlers_;
    std::uint64_t lastReference_ = 0;
    int suspensions_ = 0;
};

} // namespace brisk::simulated
