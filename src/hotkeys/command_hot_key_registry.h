#pragma once

#include "hotkeys/command_catalogue.h"
#include "hotkeys/hot_key_binding.h"
#include "platform/hot_key_service.h"
#include "platform/main_queue.h"

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <unordered_map>
#include <vector>

namespace brisk {

/// Makes one set of shortcuts work system-wide for as long as it lives; a changed set is a new registry, built after
/// the old one is gone so that its keys are free again. Main thread only. Failures are lines on standard output and
/// leave the other keys working.
class CommandHotKeyRegistry {
public:
    using OnCommand = std::function<void(const CommandIdentifier&)>;

    /// The four characters "bskc", which tell this program's hot keys from others'.
    static constexpr std::uint32_t signature = 0x62736B63;
    static constexpr std::uint32_t firstHotKeyID = 100;

    /// `onCommand` is called from the main queue, never from inside the service's event handler.
    CommandHotKeyRegistry(HotKeyService& service, MainQueue& mainQueue, OnCommand onCommand);
    CommandHotKeyRegistry(const CommandHotKeyRegistry&) = delete;
    CommandHotKeyRegistry& operator=(const CommandHotKeyRegistry&) = delete;
    ~CommandHotKeyRegistry();

    /// Called once. Ids count from 100 in the order of the identifiers; a binding that equals an earlier one is
    /// skipped, and skipped and failed ones leave gaps in the numbers.
    void registerBindings(const std::map<CommandIdentifier, HotKeyBinding>& bindings);

private:
    OSStatus handleHotKeyPressed(std::optional<EventHotKeyID> hotKey) const;

    HotKeyService& service_;
    MainQueue& mainQueue_;
    OnCommand onCommand_;
    std::unordered_map<std::uint32_t, CommandIdentifier> commandByHotKeyID_;
    std::optional<EventHandlerRef> eventHandlerRef_;
    std::vector<EventHotKeyRef> hotKeyRefs_;
};

} // namespace brisk
