#include "soak/scene.h"

#include "desktop/support/wait.h"
#include "soak/stopwatch.h"

#include <algorithm>
#include <chrono>
#include <stdexcept>
#include <thread>
#include <utility>
#include <vector>

namespace brisk::desktop {
namespace {

constexpr std::uint16_t controlAlt = XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1;
constexpr const char* settingsFile = "data/brisk/native-settings.json";

} // namespace

Scene::Scene(const std::string& program, const std::string& settings) : program_(program) {
    server_.home().write(settingsFile, settings);
    brisk_.emplace(std::vector<std::string>{program}, server_.environment());
    // The hot keys come last at the start.
    startMilliseconds_ = timed("the start", [this] { return isGrabbed(desktop_, Key::left, controlAlt); });
    window_ = client_.open();
    await("the window", [this] { return desktop_.isManaged(window_) && desktop_.activeWindow() == window_; });
    snap(Key::left, leftHalf);
}

ResourceUse Scene::useAtRest() {
    ResourceUse use;
    await("the program's rest", [&] {
        const auto before = std::exchange(use, ResourceUse::of(brisk_->id(), desktop_));
        std::this_thread::sleep_for(std::chrono::seconds(1));
        return use == before;
    });
    return use;
}

void Scene::snapToAndFro(int count) {
    for (int i = 0; i < count; ++i) {
        i % 2 == 0 ? snap(Key::right, rightHalf) : snap(Key::left, leftHalf);
    }
}

double Scene::dragOnce(const PixelRect& zone) {
    snap(Key::u, {.x = 0, .y = 0, .width = 720, .height = 450});
    if (!pointer_.takeByTitle(window_, [this] { client_.dispatchEvents(); })) {
        throw std::runtime_error("the window does not follow the pointer");
    }
    keyboard_.down(Key::leftShift);
    const double shown = timed("the zones", [this] { return isOverlayShown(); });
    pointer_.moveTo(zone.x + zone.width / 2 - 1, zone.y + zone.height / 2);
    pointer_.moveBy(1, 0);
    pointer_.up();
    keyboard_.up(Key::leftShift);
    await("the drop", [&] { return desktop_.visibleFrame(window_) == zone && !isOverlayShown(); });
    return shown;
}

double Scene::showSettings() {
    const Process again({program_}, server_.environment());
    return timed("the settings",
                 [this] { return desktop_.title(desktop_.activeWindow()) == "General — Brisk Settings"; });
}

void Scene::showWindowsPane() {
    // The toolbar is first in the order of the keys, then come the gap's field and its stepper.
    keyboard_.press(Key::right);
    await("the Windows pane", [this] { return desktop_.title(desktop_.activeWindow()) == "Windows — Brisk Settings"; });
    keyboard_.press(Key::tab);
    keyboard_.press(Key::tab);
    edit(2);
}

double Scene::edit(int count) {
    const Stopwatch stopwatch;
    for (int i = 0; i < count; ++i) {
        const bool isUp = i % 2 == 0;
        keyboard_.press(isUp ? Key::up : Key::down);
        const char* const expected = isUp ? "\"windowGap\": 1" : "\"windowGap\": 0";
        await("the edit's save", [&] { return server_.home().read(settingsFile).find(expected) != std::string::npos; });
    }
    return stopwatch.milliseconds() / count;
}

void Scene::closeSettings() {
    const xcb_window_t settings = desktop_.activeWindow();
    desktop_.requestClose(settings);
    await("the settings' end", [&] { return !desktop_.isViewable(settings); });
    desktop_.requestActivation(window_);
    await("the window in front", [&] { return desktop_.activeWindow() == window_; });
}

Scene::MenuTimes Scene::chooseFirstCustomLayout(const PixelRect& frame) {
    const std::string panel = "panel_items = S\npanel_size = 100% 30\npanel_position = bottom center horizontal\n";
    const Process tray({"tint2", "-c", server_.home().write("panel", panel)}, server_.environment());
    std::optional<PixelRect> icon;
    await("the tray's item", [&] {
        const auto own = ownWindows();
        icon = own.size() == 1 ? desktop_.clientRect(own.front()) : std::nullopt;
        return icon && icon->y >= screenSize.height - 30;
    });
    pointer_.click(*icon);
    MenuTimes times;
    times.menu = timed("the menu", [this] { return ownWindows().size() == 2; });
    // Below it are the settings, About, the updates and Quit.
    for (int i = 0; i < 5; ++i) {
        keyboard_.press(Key::up);
    }
    keyboard_.press(Key::right);
    times.customLayouts = timed("the custom layouts", [this] { return ownWindows().size() == 3; });
    keyboard_.press(Key::returnKey);
    await("the first custom layout", [&] { return desktop_.visibleFrame(window_) == frame; });
    return times;
}

void Scene::await(const std::string& what, const std::function<bool()>& condition) {
    const bool isReached = waitUntil([&] {
        client_.dispatchEvents();
        return condition();
    });
    if (!isReached) {
        throw std::runtime_error(what + " did not come; the program " + (brisk_->isRunning() ? "runs. " : "is gone. ") +
                                 brisk_->errors());
    }
}

double Scene::timed(const std::string& what, const std::function<bool()>& condition) {
    const Stopwatch stopwatch;
    await(what, condition);
    return stopwatch.milliseconds();
}

void Scene::snap(Key key, const PixelRect& frame) {
    keyboard_.press(key, {Key::leftControl, Key::leftAlt});
    await("a snap", [&] { return desktop_.visibleFrame(window_) == frame; });
    client_.forgetRecords();
}

bool Scene::isOverlayShown() {
    return std::ranges::any_of(ownWindows(), [this](xcb_window_t window) {
        const auto rect = desktop_.clientRect(window);
        return rect && rect->width == screenSize.width;
    });
}

} // namespace brisk::desktop
