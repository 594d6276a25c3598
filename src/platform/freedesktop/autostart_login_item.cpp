#include "platform/freedesktop/autostart_login_item.h"

#include "app/product.h"
#include "platform/freedesktop/desktop_entry.h"
#include "settings/settings_file.h"
#include "settings/settings_locations.h"

#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <system_error>
#include <utility>
#include <variant>

namespace brisk::freedesktop {

namespace fs = std::filesystem;

namespace {

bool isExecutable(const std::string& program) {
    std::error_code error;
    return fs::is_regular_file(program, error) && access(program.c_str(), X_OK) == 0;
}

std::string entryFor(const std::string& program) {
    return "[Desktop Entry]\n"
           "Type=Application\n"
           "Version=1.0\n"
           "Name=Brisk\n"
           "Comment=Moves and resizes windows by shortcuts and dragging\n"
           "Icon=" +
           std::string(product::desktopID) +
           "\n"
           "TryExec=" +
           escapedString(program) +
           "\n"
           "Exec=" +
           execValue(program) +
           "\n"
           "Terminal=false\n"
           "StartupNotify=false\n";
}

std::string failureText(const std::string& what, const fs::path& path, const std::error_code& error) {
    return what + " \u201C" + path.string() + "\u201D: " + error.message() + ".";
}

} // namespace

fs::path autostartFolderOfUser() {
    const char* const configHome = std::getenv("XDG_CONFIG_HOME");
    if (configHome != nullptr && fs::path(configHome).is_absolute()) {
        return fs::path(configHome) / "autostart";
    }
    return settingsFoldersOfUser().home / ".config" / "autostart";
}

AutostartLoginItem::AutostartLoginItem(const fs::path& folder, fs::path program, std::function<void()> openSettings)
    : file_(folder / (std::string(product::desktopID) + ".desktop")),
      program_(std::move(program)),
      openSettings_(std::move(openSettings)) {}

LoginItemStatus AutostartLoginItem::status() const {
    if (!itemExists(file_)) {
        return LoginItemStatus::notRegistered;
    }
    const auto content = readFile(file_);
    if (!std::holds_alternative<std::string>(content)) {
        return LoginItemStatus::notFound;
    }
    const auto entry = parseDesktopEntry(std::get<std::string>(content));
    const auto hasValue = [&](std::string_view key, std::string_view value) {
        const auto found = entry.find(key);
        return found != entry.end() && found->second == value;
    };
    if (hasValue("Hidden", "true") || hasValue("X-GNOME-Autostart-enabled", "false")) {
        return LoginItemStatus::requiresApproval;
    }
    // A desktop passes over an entry that names nothing to start, or whose program has since moved.
    const auto tryExec = entry.find("TryExec");
    if (!entry.contains("Exec") || (tryExec != entry.end() && !isExecutable(tryExec->second))) {
        return LoginItemStatus::notFound;
    }
    return LoginItemStatus::enabled;
}

std::optional<std::string> AutostartLoginItem::registerService() {
    if (const std::error_code error = createFolder(file_.parent_path())) {
        return failureText("Brisk could not create the folder", file_.parent_path(), error);
    }
    if (const std::error_code error = writeFileAtomically(file_, entryFor(program_.string()))) {
        return failureText("Brisk could not write the file", file_, error);
    }
    return std::nullopt;
}

std::optional<std::string> AutostartLoginItem::unregisterService() {
    if (unlink(file_.c_str()) == -1 && errno != ENOENT) {
        return failureText("Brisk could not remove the file", file_, {errno, std::generic_category()});
    }
    return std::nullopt;
}

void AutostartLoginItem::openSystemSettingsLoginItems() {
    openSettings_();
}

} // namespace brisk::freedesktop
