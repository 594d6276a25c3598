#include "settings/settings_store.h"

#include "settings/settings_file.h"
#include "settings/settings_json.h"
#include "text/standard_output.h"

#include <algorithm>
#include <array>
#include <ctime>
#include <exception>
#include <string_view>
#include <utility>
#include <variant>

namespace brisk {

namespace {

std::error_code copyFile(const std::filesystem::path& source, const std::filesystem::path& target) {
    const auto bytes = readFile(source);
    if (const auto* error = std::get_if<std::error_code>(&bytes)) {
        return *error;
    }
    return writeFileAtomically(target, std::get<std::string>(bytes));
}

void migrate(const std::filesystem::path& target, const std::filesystem::path& source) {
    if (itemExists(target) || !itemExists(source)) {
        return;
    }
    std::error_code error = createFolder(target.parent_path());
    if (!error) {
        error = copyFile(source, target);
    }
    if (error) {
        printLine("Failed to migrate Brisk settings: " + error.message());
    }
}

void setAside(const std::filesystem::path& file, const WallClock& clock) {
    constexpr std::size_t roomForAnyYear = 32;
    std::array<char, roomForAnyYear> time{};
    const std::tm now = clock.localTime();
    (void)std::strftime(time.data(), time.size(), "%Y%m%d-%H%M%S", &now);

    const auto backup =
        moveAside(file, file.parent_path() / (std::string("native-settings.corrupt-") + time.data() + ".json"));
    if (const auto* error = std::get_if<std::error_code>(&backup)) {
        printLine("Brisk settings were unreadable and could not be backed up: " + error->message());
    } else {
        printLine("Brisk settings were unreadable; backed up to " + std::get<std::filesystem::path>(backup).string());
    }
}

AppSettings load(const std::filesystem::path& file, const WallClock& clock) {
    if (!itemExists(file)) {
        return {};
    }
    const auto bytes = readFile(file);
    if (const auto* text = std::get_if<std::string>(&bytes)) {
        auto decoded = decodeSettings(*text);
        if (auto* settings = std::get_if<AppSettings>(&decoded)) {
            return std::move(*settings);
        }
    }
    setAside(file, clock);
    return {};
}

void write(const AppSettings& settings, const std::filesystem::path& file) {
    std::error_code error = createFolder(file.parent_path());
    if (!error) {
        error = writeFileAtomically(file, encodeSettings(settings));
    }
    if (error) {
        printLine("Failed to save Brisk settings: " + error.message());
    }
}

} // namespace

SettingsStore::SettingsStore(std::filesystem::path fileURL, const SettingsFolders& folders, const WallClock& clock)
    : fileURL_(std::move(fileURL)), ioQueue_("briskwm.settings-io") {
    removeLeftovers(fileURL_);
    migrate(fileURL_, counterpartFileURL(folders, fileURL_));
    settings = load(fileURL_, clock);
}

void SettingsStore::save() {
    ioQueue_.async([snapshot = settings, file = fileURL_] {
        try {
            write(snapshot, file);
        } catch (const std::exception& error) {
            // No memory for the text, say. The settings are still there for the next save.
            printLine(std::string("Failed to save Brisk settings: ") + error.what());
        }
    });
}

void SettingsStore::assignHotkey(const CommandIdentifier& identifier, HotKeyBinding binding) {
    std::erase(settings.disabledCommandHotkeys, identifier);
    settings.commandHotkeys.insert_or_assign(identifier, std::move(binding));
    save();
}

void SettingsStore::clearHotkey(const CommandIdentifier& identifier) {
    settings.commandHotkeys.erase(identifier);
    auto& disabled = settings.disabledCommandHotkeys;
    if (defaultCommandHotkeys().contains(identifier) && std::ranges::find(disabled, identifier) == disabled.end()) {
        disabled.push_back(identifier);
    }
    save();
}

void SettingsStore::saveCustomLayout(const CustomWindowLayout& layout, const std::optional<HotKeyBinding>& binding) {
    auto& layouts = settings.customWindowLayouts;
    const auto existing = std::ranges::find(layouts, layout.id, &CustomWindowLayout::id);
    if (existing != layouts.end()) {
        *existing = layout;
    } else {
        layouts.push_back(layout);
    }

    const CommandIdentifier identifier = commandIdentifier(layout);
    std::erase(settings.disabledCommandHotkeys, identifier);
    if (binding) {
        settings.commandHotkeys.insert_or_assign(identifier, *binding);
    } else {
        settings.commandHotkeys.erase(identifier);
    }
    save();
}

void SettingsStore::removeCustomLayout(const std::string& id) {
    CustomWindowLayout removed;
    removed.id = id;
    const CommandIdentifier identifier = commandIdentifier(removed);
    settings.commandHotkeys.erase(identifier);
    std::erase(settings.disabledCommandHotkeys, identifier);
    std::erase_if(settings.customWindowLayouts, [&](const CustomWindowLayout& layout) { return layout.id == id; });
    save();
}

void SettingsStore::setDragEnabled(WindowLayout layout, bool isEnabled) {
    if (!canBeDropZone(layout)) {
        return;
    }
    auto& enabled = settings.dragEnabledBuiltInWindowLayoutIDs;
    const CommandIdentifier identifier = commandIdentifier(layout);
    std::erase(enabled, identifier);
    if (isEnabled) {
        enabled.push_back(identifier);
        std::ranges::sort(enabled);
    }
    save();
}

std::optional<CommandIdentifier> SettingsStore::commandUsingHotkey(std::uint32_t keyCode, std::uint32_t modifiers,
                                                                   const CommandIdentifier& excluded) const {
    for (const auto& [identifier, binding] : settings.commandHotkeys) {
        if (identifier != excluded && binding.keyCode == keyCode && binding.modifiers == modifiers) {
            return identifier;
        }
    }
    return std::nullopt;
}

std::optional<std::string> SettingsStore::conflictMessage(const HotKeyBinding& candidate,
                                                          const CommandIdentifier& edited) const {
    const auto owner = commandUsingHotkey(candidate.keyCode, candidate.modifiers, edited);
    if (!owner) {
        return std::nullopt;
    }
    for (const WindowLayout layout : allWindowLayouts) {
        if (commandIdentifier(layout) == *owner) {
            return "Used by " + std::string(title(layout));
        }
    }
    for (const CustomWindowLayout& layout : settings.customWindowLayouts) {
        if (commandIdentifier(layout) == *owner) {
            return "Used by " + layout.name;
        }
    }
    return "Already Used";
}

} // namespace brisk
