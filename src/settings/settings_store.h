#pragma once

#include "platform/wall_clock.h"
#include "settings/app_settings.h"
#include "settings/serial_queue.h"
#include "settings/settings_locations.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

namespace brisk {

/// Owns the live settings and the one file that holds them. Main thread only; files are written on `ioQueue`, from a
/// copy taken when `save` is called. No failure stops the program: each is one line on standard output, and the
/// settings in memory stay.
class SettingsStore {
public:
    /// Copies the file over from the other place if this one has none, then loads it. A file that cannot be read is
    /// renamed out of the way, named after the time `clock` shows, and the defaults are in force. What a killed save
    /// left is removed. Nothing else is written before the first save.
    SettingsStore(std::filesystem::path fileURL, const SettingsFolders& folders, const WallClock& clock);

    /// Single fields (the gap, the finished guide) are edited here and then saved; edits of several have their own
    /// operation below.
    AppSettings settings;

    const std::filesystem::path& fileURL() const { return fileURL_; }

    /// Where the saves run. Running nothing on it synchronously waits until those submitted have been written.
    SerialQueue& ioQueue() { return ioQueue_; }

    /// Writes the settings as they are now, later, after the saves before it.
    void save();

    // Each of these edits saves.

    void assignHotkey(const CommandIdentifier& identifier, HotKeyBinding binding);
    /// A cleared default is remembered as cleared.
    void clearHotkey(const CommandIdentifier& identifier);
    /// Replaces the layout with the same id where it stands, or appends. Without a binding its shortcut goes.
    void saveCustomLayout(const CustomWindowLayout& layout, const std::optional<HotKeyBinding>& binding);
    void removeCustomLayout(const std::string& id);
    /// Does nothing for a layout that cannot be a drop zone.
    void setDragEnabled(WindowLayout layout, bool isEnabled);

    /// The command other than `excluded` that holds this shortcut.
    std::optional<CommandIdentifier> commandUsingHotkey(std::uint32_t keyCode, std::uint32_t modifiers,
                                                        const CommandIdentifier& excluded) const;
    /// Why `edited` may not have this shortcut, or nothing when it may.
    std::optional<std::string> conflictMessage(const HotKeyBinding& candidate, const CommandIdentifier& edited) const;

private:
    std::filesystem::path fileURL_;
    /// Last, so that it finishes its work before anything else goes.
    SerialQueue ioQueue_;
};

} // namespace brisk
