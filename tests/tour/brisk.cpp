#include "tour/brisk.h"

#include "desktop/support/wait.h"

#include <algorithm>
#include <csignal>
#include <optional>
#include <stdexcept>

namespace brisk::tour {

using desktop::Environment;
using desktop::Key;
using desktop::PixelRect;

namespace {

// As a desktop tells the toolkit about its colours.
constexpr const char* darkColours = R"([Colors:Window]
BackgroundNormal=42,46,50
ForegroundNormal=252,252,252
[Colors:Button]
BackgroundNormal=49,54,59
ForegroundNormal=252,252,252
[Colors:View]
BackgroundNormal=27,30,32
BackgroundAlternate=35,38,41
ForegroundNormal=252,252,252
ForegroundInactive=161,169,177
ForegroundLink=29,153,243
[Colors:Selection]
BackgroundNormal=61,174,233
ForegroundNormal=252,252,252
[Colors:Tooltip]
BackgroundNormal=49,54,59
ForegroundNormal=252,252,252
)";

Environment environmentFor(Stage& stage, Brisk::Look look) {
    Environment environment = stage.controls.environment();
    environment.merge(stage.server.environment());
    if (look == Brisk::Look::dark) {
        stage.server.home().write("config/kdeglobals", darkColours);
        environment.insert({{"QT_QPA_PLATFORMTHEME", "kde"}, {"KDE_SESSION_VERSION", "5"}});
    }
    return environment;
}

desktop::Process start(Stage& stage, const std::string& program, const std::string& settings, Brisk::Look look) {
    const std::string file = stage.server.home().write("data/brisk/native-settings.json", settings);
    if (settings.empty()) {
        std::filesystem::remove(file);
    }
    return desktop::Process({program}, environmentFor(stage, look), SIGTERM);
}

} // namespace

Brisk::Brisk(Stage& stage, const std::string& program, const std::string& settings, Look look)
    : stage_(stage), look_(look), process_(start(stage, program, settings, look)) {
    constexpr std::uint16_t controlAlt = XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1;
    if (!desktop::waitUntil([&] { return isGrabbed(stage_.desktop, Key::backspace, controlAlt); })) {
        throw std::runtime_error("Brisk registered no shortcuts\n" + process_.output() + process_.errors());
    }
}

void Brisk::takePictureOf(xcb_window_t window, const std::string& name) {
    stage_.takePictureOf(window, name + (look_ == Look::dark ? "-dark" : "-light"));
}

void Brisk::goToMenuItem(int index) {
    std::optional<PixelRect> icon;
    stage_.user.await(
        [&] {
            for (const xcb_window_t window : stage_.desktop.windowsOf("brisk")) {
                const auto place = stage_.desktop.clientRect(window);
                if (place && place->y + place->height <= panelHeight) {
                    icon = place;
                }
            }
            return icon.has_value();
        },
        "the icon in the tray");
    const std::size_t before = stage_.desktop.windowsOf("brisk").size();
    stage_.pointer.click(*icon);
    stage_.user.await([&] { return stage_.desktop.windowsOf("brisk").size() > before; }, "the menu");
    for (int step = index < 0 ? index : index + 1; step != 0; step += step < 0 ? 1 : -1) {
        stage_.user.press(index < 0 ? Key::up : Key::down);
    }
}

bool Brisk::isOverlayShown() {
    const PixelRect whole{.x = 0, .y = 0, .width = screenSize.width, .height = screenSize.height};
    const auto own = stage_.desktop.windowsOf("brisk");
    return std::ranges::any_of(own, [&](xcb_window_t window) { return stage_.desktop.clientRect(window) == whole; });
}

} // namespace brisk::tour
