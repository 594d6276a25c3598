#include "desktop/support/window_manager.h"

#include "desktop/support/test_window.h"
#include "desktop/support/wait.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace brisk::desktop {
namespace {

// A click focuses and raises, dragging the title bar or Alt and the left button moves, two desktops, no key bindings.
constexpr const char* openboxConfiguration = R"(<?xml version="1.0" encoding="UTF-8"?>
<openbox_config xmlns="http://openbox.org/3.4/rc">
  <focus><focusNew>yes</focusNew><followMouse>no</followMouse></focus>
  <placement><policy>Smart</policy></placement>
  <desktops><number>2</number><popupTime>0</popupTime></desktops>
  <resize><drawContents>yes</drawContents><popupShow>Never</popupShow></resize>
  <keyboard>@keyBindings@</keyboard>
  <mouse>
    <dragThreshold>1</dragThreshold>
    <context name="Frame">
      <mousebind button="A-Left" action="Press"><action name="Focus"/><action name="Raise"/></mousebind>
      <mousebind button="A-Left" action="Drag"><action name="Move"/></mousebind>
    </context>
    <context name="Titlebar">
      <mousebind button="Left" action="Press"><action name="Focus"/><action name="Raise"/></mousebind>
      <mousebind button="Left" action="Drag"><action name="Move"/></mousebind>
    </context>
    <context name="Client">
      <mousebind button="Left" action="Press"><action name="Focus"/><action name="Raise"/></mousebind>
    </context>
  </mouse>
</openbox_config>
)";

// The shortcuts of metacity's own that are near Brisk's default ones.
constexpr const char* metacitySettings = R"([org/gnome/desktop/wm/keybindings]
switch-to-workspace-left=@as []
switch-to-workspace-right=@as []
switch-to-workspace-up=@as []
switch-to-workspace-down=@as []
move-to-workspace-left=@as []
move-to-workspace-right=@as []
move-to-workspace-up=@as []
move-to-workspace-down=@as []
)";

// xfwm4 brings default shortcuts of its own; "override" says that ours, none, replace them.
constexpr const char* xfwmShortcuts = R"(<?xml version="1.0" encoding="UTF-8"?>
<channel name="xfce4-keyboard-shortcuts" version="1.0">
  <property name="xfwm4" type="empty">
    <property name="custom" type="empty">
      <property name="override" type="bool" value="true"/>
    </property>
  </property>
</channel>
)";

std::vector<std::string> arguments(const VirtualServer& server, WindowManager::Kind kind,
                                   const std::string& openboxKeyBindings) {
    switch (kind) {
    case WindowManager::Kind::openbox: {
        std::string configuration = openboxConfiguration;
        const std::string placeholder = "@keyBindings@";
        configuration.replace(configuration.find(placeholder), placeholder.size(), openboxKeyBindings);
        return {"openbox", "--sm-disable", "--config-file", server.home().write("openbox.xml", configuration)};
    }
    case WindowManager::Kind::xfwm4:
        server.home().write("config/xfce4/xfconf/xfce-perchannel-xml/xfce4-keyboard-shortcuts.xml", xfwmShortcuts);
        // It reads its settings over a session bus and does not start without one.
        return {"dbus-run-session", "--", "xfwm4", "--compositor=off"};
    case WindowManager::Kind::metacity:
        server.home().write("config/glib-2.0/settings/keyfile", metacitySettings);
        return {"metacity", "--sm-disable", "--no-composite"};
    case WindowManager::Kind::kwin:
        return {"dbus-run-session", "--", "env", "KWIN_COMPOSE=N", "kwin_x11"};
    }
    throw std::logic_error("unknown window manager");
}

Environment environment(const VirtualServer& server) {
    Environment result = server.environment();
    // No shortcuts from the system's desktop configuration.
    result["XDG_CONFIG_DIRS"] = server.home().path() + "/system-config";
    return result;
}

bool isWindowManagerPresent(DesktopConnection& connection) {
    const auto check = connection.cardinals(connection.root(), "_NET_SUPPORTING_WM_CHECK");
    // The property outlives a window manager that crashed; its window, which names itself, does not.
    return !check.empty() && connection.cardinals(check.front(), "_NET_SUPPORTING_WM_CHECK") == check;
}

} // namespace

const char* WindowManager::programOf(Kind kind) {
    switch (kind) {
    case Kind::openbox:
        return "openbox";
    case Kind::xfwm4:
        return "xfwm4";
    case Kind::metacity:
        return "metacity";
    case Kind::kwin:
        return "kwin_x11";
    }
    return "";
}

std::vector<WindowManager::Kind> WindowManager::kindsToTest() {
    std::vector<Kind> kinds{Kind::openbox, Kind::xfwm4, Kind::metacity};
    if (isInstalled(programOf(Kind::kwin))) {
        kinds.push_back(Kind::kwin);
    }
    return kinds;
}

WindowManager::WindowManager(VirtualServer& server, Kind kind) : server_(server), kind_(kind) {
    start();
}

WindowManager::WindowManager(VirtualServer& server, std::string openboxKeyBindings)
    : server_(server), kind_(Kind::openbox), openboxKeyBindings_(std::move(openboxKeyBindings)) {
    start();
}

void WindowManager::kill() {
    process_.reset();
}

void WindowManager::recover() {
    if (!process_) {
        start();
    }
    process_->resume();
}

void WindowManager::start() {
    launch({});
    awaitReadiness();
}

void WindowManager::replace() {
    const std::unique_ptr<Process> old = std::move(process_);
    launch({"--replace"});
    if (!waitUntil([&] { return !old->isRunning(); })) {
        throw std::runtime_error(std::string(programOf(kind_)) + " does not give way");
    }
    awaitReadiness();
}

void WindowManager::launch(const std::vector<std::string>& options) {
    auto command = arguments(server_, kind_, openboxKeyBindings_);
    command.insert(command.end(), options.begin(), options.end());
    process_ = std::make_unique<Process>(std::move(command), environment(server_));
}

void WindowManager::awaitReadiness() const {
    // It is ready when it takes care of a window, not when it says that it is there.
    DesktopConnection connection(server_.display());
    TestClient client(server_.display());
    const auto mustBe = [this](bool isReached, const char* what) {
        if (!isReached) {
            throw std::runtime_error(std::string(programOf(kind_)) + " does not " + what + ": " + process_->errors());
        }
    };
    mustBe(waitUntil([&] { return isWindowManagerPresent(connection); }), "announce itself");
    mustBe(waitUntil([&] {
               // A new window each time: a request to be shown that comes while a window manager starts may be lost.
               const xcb_window_t probe = client.open({.title = "Probe"});
               const bool isManaged =
                   waitUntil([&] { return connection.isManaged(probe); }, std::chrono::milliseconds(200));
               client.close(probe);
               return isManaged;
           }),
           "manage a window");
    mustBe(waitUntil([&] {
               const auto windows = connection.clients();
               return std::none_of(windows.begin(), windows.end(),
                                   [&client](xcb_window_t window) { return client.has(window); });
           }),
           "let a window go");
}

} // namespace brisk::desktop
