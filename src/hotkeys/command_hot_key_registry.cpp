#include "hotkeys/command_hot_key_registry.h"

#include "text/standard_output.h"

#include <set>
#include <string>
#include <utility>

namespace brisk {

CommandHotKeyRegistry::CommandHotKeyRegistry(HotKeyService& service, MainQueue& mainQueue, OnCommand onCommand)
    : service_(service), mainQueue_(mainQueue), onCommand_(std::move(onCommand)) {}

CommandHotKeyRegistry::~CommandHotKeyRegistry() {
    for (const EventHotKeyRef hotKey : hotKeyRefs_) {
        service_.UnregisterEventHotKey(hotKey);
    }
    if (eventHandlerRef_) {
        service_.RemoveEventHandler(*eventHandlerRef_);
    }
}

void CommandHotKeyRegistry::registerBindings(const std::map<CommandIdentifier, HotKeyBinding>& bindings) {
    const auto installation =
        service_.InstallEventHandler([this](std::optional<EventHotKeyID> id) { return handleHotKeyPressed(id); });
    if (installation.status != noErr) {
        printLine("Failed to install window hotkey handler: " + std::to_string(installation.status));
        return;
    }
    eventHandlerRef_ = installation.handler;

    std::set<HotKeyBinding> registered;
    std::uint32_t id = firstHotKeyID;
    for (const auto& [command, binding] : bindings) {
        const EventHotKeyID hotKeyID{.signature = signature, .id = id++};
        if (registered.contains(binding)) {
            printLine("Skipped duplicate window hotkey " + binding.display + " for " + command);
            continue;
        }
        const auto registration = service_.RegisterEventHotKey(binding.keyCode, binding.modifiers, hotKeyID);
        if (registration.status != noErr) {
            printLine("Failed to register window hotkey " + binding.display + " for " + command + ": " +
                      std::to_string(registration.status));
            continue;
        }
        registered.insert(binding);
        commandByHotKeyID_.emplace(hotKeyID.id, command);
        hotKeyRefs_.push_back(registration.hotKey);
    }
}

OSStatus CommandHotKeyRegistry::handleHotKeyPressed(std::optional<EventHotKeyID> hotKey) const {
    if (!hotKey || hotKey->signature != signature) {
        return eventNotHandledErr;
    }
    const auto command = commandByHotKeyID_.find(hotKey->id);
    if (command == commandByHotKeyID_.end()) {
        return eventNotHandledErr;
    }
    mainQueue_.async([onCommand = onCommand_, command = command->second] { onCommand(command); });
    return noErr;
}

} // namespace brisk
