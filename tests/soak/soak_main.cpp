// Wears the program out on a desktop of its own: saves that are killed, thousands of snaps, drags and edits, a thousand
// custom layouts. Prints what was injected and what held, and ends with status 0 only if everything did.

#include "desktop/support/input.h"
#include "desktop/support/test_window.h"
#include "desktop/support/virtual_server.h"
#include "desktop/support/wait.h"
#include "desktop/support/window_manager.h"
#include "soak/killed_saves.h"
#include "soak/resource_use.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <exception>
#include <fstream>
#include <functional>
#include <iomanip>
#include <iostream>
#include <iterator>
#include <map>
#include <optional>
#include <span>
#include <sstream>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace {

using namespace brisk::desktop;
using Clock = std::chrono::steady_clock;

constexpr PixelSize screenSize{.width = 1440, .height = 900};
constexpr PixelRect leftHalf{.x = 0, .y = 0, .width = 720, .height = 900};
constexpr PixelRect rightHalf{.x = 720, .y = 0, .width = 720, .height = 900};

double millisecondsSince(Clock::time_point start) {
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

std::string plainSettings() {
    return R"({ "hasCompletedOnboarding": true,
        "dragEnabledBuiltInWindowLayoutIDs": ["window.leftHalf", "window.rightHalf"] })";
}

/// Every one of them a drop zone, the cells of the finest grid over and over.
std::string settingsWithLayouts(int count) {
    constexpr int side = 6;
    std::ostringstream json;
    json << R"({ "hasCompletedOnboarding": true, "customWindowLayouts": [)";
    for (int i = 0; i < count; ++i) {
        json << (i > 0 ? ", " : "") << R"({ "id": "L)" << i << R"(", "name": "Layout )" << i
             << R"(", "isAvailableForDragging": true, "selection": { "columns": 6, "rows": 6, "column": )" << i % side
             << R"(, "row": )" << i / side % side << R"(, "columnSpan": 1, "rowSpan": 1 } })";
    }
    json << "] }";
    return json.str();
}

/// The program on a desktop with a window of another application, and a person who never tires.
class Scene {
public:
    explicit Scene(const std::string& program, const std::string& settings) : program_(program) {
        server_.home().write("data/brisk/native-settings.json", settings);
        brisk_.emplace(std::vector<std::string>{program}, server_.environment());
        // The hot keys come last at the start.
        startMilliseconds_ = timed("the start", [this] { return isGrabbed(desktop_, Key::left, controlAlt); });
        window_ = client_.open();
        await("the window", [this] { return desktop_.isManaged(window_) && desktop_.activeWindow() == window_; });
        snap(Key::left, leftHalf);
    }

    double startMilliseconds() const { return startMilliseconds_; }
    /// Once it stays the same for a second: a window that was just opened goes on growing by itself.
    ResourceUse useAtRest() {
        ResourceUse use;
        await("the program's rest", [&] {
            const auto before = std::exchange(use, ResourceUse::of(brisk_->id(), desktop_));
            std::this_thread::sleep_for(std::chrono::seconds(1));
            return use == before;
        });
        return use;
    }

    void snapToAndFro(int count) {
        for (int i = 0; i < count; ++i) {
            i % 2 == 0 ? snap(Key::right, rightHalf) : snap(Key::left, leftHalf);
        }
    }

    /// Drops the window on a zone, with zones shown on the way; milliseconds until those were there.
    double dragOnce(const PixelRect& zone) {
        snap(Key::u, {.x = 0, .y = 0, .width = 720, .height = 450});
        const auto before = *desktop_.visibleFrame(window_);
        pointer_.moveTo(before.x + before.width / 2, before.y + 8);
        pointer_.down();
        await("the window's move", [&] {
            pointer_.moveBy(2, 2);
            return desktop_.visibleFrame(window_)->x > before.x + 20;
        });
        keyboard_.down(Key::leftShift);
        const double shown = timed("the zones", [this] { return isOverlayShown(); });
        pointer_.moveTo(zone.x + zone.width / 2 - 1, zone.y + zone.height / 2);
        pointer_.moveBy(1, 0);
        pointer_.up();
        keyboard_.up(Key::leftShift);
        await("the drop", [&] { return desktop_.visibleFrame(window_) == zone && !isOverlayShown(); });
        return shown;
    }

    /// A second start brings the settings to the front; milliseconds until then.
    double showSettings() {
        Process again({program_}, server_.environment());
        return timed("the settings", [this] { return activeTitle() == "General — Brisk Settings"; });
    }
    /// Brings the keys to the stepper of the gap; the first edit tells that the pane is there.
    void showWindowsPane() {
        // The toolbar is first in the order of the keys, then come the gap's field and its stepper.
        keyboard_.press(Key::right);
        await("the Windows pane", [this] { return activeTitle() == "Windows — Brisk Settings"; });
        keyboard_.press(tab);
        keyboard_.press(tab);
        edit(2);
    }
    /// Steps the gap up and down again, each a save and every hot key registered anew; milliseconds a step.
    double edit(int count) {
        const auto start = Clock::now();
        for (int i = 0; i < count; ++i) {
            const bool isUp = i % 2 == 0;
            keyboard_.press(isUp ? Key::up : Key::down);
            const char* const expected = isUp ? "\"windowGap\": 1" : "\"windowGap\": 0";
            await("the edit's save", [&] { return settingsFile().find(expected) != std::string::npos; });
        }
        return millisecondsSince(start) / count;
    }
    void closeSettings() {
        constexpr std::uint32_t sourcePager = 2;
        const xcb_window_t settings = desktop_.activeWindow();
        desktop_.sendToWindowManager(settings, "_NET_CLOSE_WINDOW", {XCB_CURRENT_TIME, sourcePager, 0, 0, 0});
        await("the settings' end", [&] { return !desktop_.isViewable(settings); });
        desktop_.requestActivation(window_);
        await("the window in front", [&] { return desktop_.activeWindow() == window_; });
    }

    struct MenuTimes {
        double menu = 0;
        double customLayouts = 0;
    };
    /// Has a panel with a tray, opens the menu there and chooses the first of the custom layouts; milliseconds until
    /// each menu was there.
    MenuTimes chooseFirstCustomLayout(const PixelRect& frame) {
        const std::string panel = "panel_items = S\npanel_size = 100% 30\npanel_position = bottom center horizontal\n";
        const Process tray({"tint2", "-c", server_.home().write("panel", panel)}, server_.environment());
        const auto item = [this](xcb_window_t window) {
            return desktop_.clientRect(window)->y >= screenSize.height - 30;
        };
        std::vector<xcb_window_t> windows;
        await("the tray's item", [&] {
            windows = visibleWindows();
            return windows.size() == 1 && item(windows.front());
        });
        const PixelRect place = *desktop_.clientRect(windows.front());
        pointer_.moveTo(place.x + place.width / 2, place.y + place.height / 2);
        pointer_.down();
        pointer_.up();
        MenuTimes times;
        times.menu = timed("the menu", [this] { return visibleWindows().size() == 2; });
        // Below it are the settings, About, the updates and Quit.
        for (int i = 0; i < 5; ++i) {
            keyboard_.press(Key::up);
        }
        keyboard_.press(Key::right);
        times.customLayouts = timed("the custom layouts", [this] { return visibleWindows().size() == 3; });
        keyboard_.press(Key::returnKey);
        await("the first custom layout", [&] { return desktop_.visibleFrame(window_) == frame; });
        return times;
    }

private:
    static constexpr auto tab = static_cast<Key>(23);
    static constexpr std::uint16_t controlAlt = XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1;

    void await(const std::string& what, const std::function<bool()>& condition) {
        const bool isReached = waitUntil([&] {
            client_.dispatchEvents();
            return condition();
        });
        if (!isReached) {
            throw std::runtime_error(what + " did not come; the program " +
                                     (brisk_->isRunning() ? "runs. " : "is gone. ") + brisk_->errors());
        }
    }
    double timed(const std::string& what, const std::function<bool()>& condition) {
        const auto start = Clock::now();
        await(what, condition);
        return millisecondsSince(start);
    }
    void snap(Key key, const PixelRect& frame) {
        keyboard_.press(key, {Key::leftControl, Key::leftAlt});
        await("a snap", [&] { return desktop_.visibleFrame(window_) == frame; });
        client_.forgetRecords();
    }
    /// The program's windows that can be seen, wherever they lie.
    std::vector<xcb_window_t> visibleWindows() {
        std::vector<xcb_window_t> found;
        addVisibleWindows(desktop_.root(), found);
        return found;
    }
    void addVisibleWindows(xcb_window_t parent, std::vector<xcb_window_t>& found) {
        const Reply<xcb_query_tree_reply_t> tree{
            xcb_query_tree_reply(desktop_.xcb(), xcb_query_tree(desktop_.xcb(), parent), nullptr)};
        if (!tree) {
            return;
        }
        for (const xcb_window_t child :
             std::span(xcb_query_tree_children(tree.get()),
                       static_cast<std::size_t>(xcb_query_tree_children_length(tree.get())))) {
            const auto owner = desktop_.cardinals(child, "_NET_WM_PID");
            if (owner.size() == 1 && owner.front() == static_cast<std::uint32_t>(brisk_->id()) &&
                desktop_.isViewable(child)) {
                found.push_back(child);
            } else {
                addVisibleWindows(child, found);
            }
        }
    }
    bool isOverlayShown() {
        return std::ranges::any_of(visibleWindows(), [this](xcb_window_t window) {
            const auto rect = desktop_.clientRect(window);
            return rect && rect->width == screenSize.width;
        });
    }
    std::string activeTitle() {
        const Reply<xcb_get_property_reply_t> reply{
            xcb_get_property_reply(desktop_.xcb(),
                                   xcb_get_property(desktop_.xcb(), 0, desktop_.activeWindow(),
                                                    desktop_.atom("_NET_WM_NAME"), XCB_ATOM_ANY, 0, 64),
                                   nullptr)};
        return reply ? std::string(static_cast<const char*>(xcb_get_property_value(reply.get())),
                                   static_cast<std::size_t>(xcb_get_property_value_length(reply.get())))
                     : std::string();
    }
    std::string settingsFile() const {
        std::ifstream file(server_.home().path() + "/data/brisk/native-settings.json");
        return {std::istreambuf_iterator<char>(file), {}};
    }

    std::string program_;
    VirtualServer server_{screenSize};
    WindowManager windowManager_{server_, WindowManager::Kind::openbox};
    DesktopConnection desktop_{server_.display()};
    Keyboard keyboard_{desktop_};
    Pointer pointer_{desktop_};
    TestClient client_{server_.display()};
    std::optional<Process> brisk_;
    xcb_window_t window_ = XCB_WINDOW_NONE;
    double startMilliseconds_ = 0;
};

/// The table, and whether everything held.
class Report {
public:
    void add(const std::string& injected, const std::string& figures, const std::string& failure) {
        hasFailed_ = hasFailed_ || !failure.empty();
        std::cout << std::left << std::setw(32) << injected << " | "
                  << (failure.empty() ? figures : "FAILED: " + failure) << std::endl;
    }
    /// What throws has not held either.
    void play(const std::string& injected, const std::function<void()>& scenario) {
        try {
            scenario();
        } catch (const std::exception& error) {
            add(injected, "", error.what());
        }
    }
    bool hasFailed() const { return hasFailed_; }

private:
    bool hasFailed_ = false;
};

std::string milliseconds(double value) {
    std::ostringstream text;
    text << std::fixed << std::setprecision(1) << value << " ms";
    return text.str();
}

/// Does the work once to warm up, and again to see whether it leaves something behind.
void wear(Report& report, Scene& scene, const std::string& injected, int count, const std::function<void(int)>& work) {
    report.play(injected, [&] {
        // Long enough for what is made once and kept, and for the allocator to have seen everything.
        work(std::max(count / 4, 100));
        const ResourceUse before = scene.useAtRest();
        work(count);
        const ResourceUse after = scene.useAtRest();
        report.add(injected, after.comparedTo(before), after.growthSince(before));
    });
}

void wearOut(Report& report, const std::string& program, const std::map<std::string, int>& counts) {
    const auto named = [&](const std::string& name) { return std::to_string(counts.at(name)) + " " + name; };
    Scene scene(program, plainSettings());
    // What a drag needs is made once and kept.
    scene.dragOnce(leftHalf);
    wear(report, scene, named("snaps"), counts.at("snaps"), [&](int count) { scene.snapToAndFro(count); });
    wear(report, scene, named("drags"), counts.at("drags"), [&](int count) {
        for (int i = 0; i < count; ++i) {
            scene.dragOnce(i % 2 == 0 ? leftHalf : rightHalf);
        }
    });
    report.play(named("edits"), [&] {
        scene.showSettings();
        scene.showWindowsPane();
        wear(report, scene, named("edits"), counts.at("edits"), [&](int count) { scene.edit(count); });
        scene.closeSettings();
    });
}

void crowd(Report& report, const std::string& program, int count) {
    const std::string injected = std::to_string(count) + " custom layouts";
    report.play(injected, [&] {
        Scene scene(program, settingsWithLayouts(count));
        std::string figures = "start " + milliseconds(scene.startMilliseconds());
        figures += ", zones " + milliseconds(scene.dragOnce({.x = 240, .y = 300, .width = 240, .height = 150}));
        figures += ", settings " + milliseconds(scene.showSettings());
        const auto start = Clock::now();
        scene.showWindowsPane();
        figures += ", Windows pane with two edits " + milliseconds(millisecondsSince(start));
        figures += ", each further edit " + milliseconds(scene.edit(10));
        scene.closeSettings();
        scene.snapToAndFro(10);
        const auto menus = scene.chooseFirstCustomLayout({.x = 0, .y = 0, .width = 240, .height = 145});
        figures += ", menu " + milliseconds(menus.menu) + ", its layouts " + milliseconds(menus.customLayouts);
        report.add(injected, figures, "");
    });
}

} // namespace

int main(int argc, char** argv) {
    std::map<std::string, int> counts{
        {"kills", 1'000}, {"snaps", 10'000}, {"drags", 300}, {"edits", 1'000}, {"layouts", 1'000}};
    std::string program;
    for (int i = 1; i < argc; ++i) {
        const std::string argument = argv[i];
        const auto equals = argument.find('=');
        const auto count = argument.starts_with("--") && equals != std::string::npos
                               ? counts.find(argument.substr(2, equals - 2))
                               : counts.end();
        if (count != counts.end()) {
            count->second = std::atoi(argument.c_str() + equals + 1);
        } else if (program.empty() && !argument.starts_with("--")) {
            program = argument;
        } else {
            program.clear();
            break;
        }
    }
    if (program.empty()) {
        std::cerr << "usage: brisk_soak [--kills=N] [--snaps=N] [--drags=N] [--edits=N] [--layouts=N] program\n";
        return 2;
    }
    Report report;
    report.add("injected", "what held", "");
    report.play("kills", [&] {
        const TemporaryDirectory folder;
        const auto killed = brisk::killSaves(counts.at("kills"), folder.path());
        report.add(std::to_string(counts.at("kills")) + " killed saves",
                   "always the old settings or the new, no leftovers; " + std::to_string(killed.hitInTheMiddle) +
                       " hit in the middle",
                   killed.failure);
    });
    report.play("the program", [&] { wearOut(report, program, counts); });
    crowd(report, program, counts.at("layouts"));
    return report.hasFailed() ? EXIT_FAILURE : EXIT_SUCCESS;
}
