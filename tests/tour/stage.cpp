#include "tour/stage.h"

#include "desktop/support/test_window.h"
#include "desktop/support/wait.h"
#include "tour/screenshot.h"

#include <algorithm>
#include <chrono>
#include <iomanip>
#include <iostream>
#include <sstream>
#include <stdexcept>
#include <utility>

namespace brisk::tour {

using desktop::PixelRect;
using desktop::Process;

namespace {

// Across the top: the windows' names and a tray.
constexpr const char* panelConfiguration = R"(
background_color = #202830 100
panel_items = TS
panel_size = 100% 32
panel_position = top center horizontal
panel_background_id = 1
panel_padding = 12 0 12
task_maximum_size = 180 32
task_icon = 0
task_centered = 0
task_font = Sans 10
task_font_color = #C8D0D8 60
task_active_font_color = #FFFFFF 100
systray_padding = 0 5 5
systray_icon_size = 22
)";

std::string text(const PixelRect& rect) {
    std::ostringstream stream;
    stream << rect;
    return stream.str();
}

} // namespace

Stage::Stage(std::filesystem::path folderForPictures) : folder_(std::move(folderForPictures)) {
    std::filesystem::create_directories(folder_);
    // Zones are translucent only with a compositor.
    programs_.push_back(Process({"picom", "--backend", "xrender", "--config", "/dev/null"}, server.environment()));
    programs_.push_back(
        Process({"tint2", "-c", server.home().write("panel", panelConfiguration)}, server.environment()));
    user.await([this] { return !desktop.windowsOf("tint2").empty(); }, "the panel");

    const std::vector<desktop::WindowDescription> own{
        {.title = "Desktop",
         .client = {.x = 0, .y = 0, .width = screenSize.width, .height = screenSize.height},
         .kind = desktop::WindowKind::desktop,
         .background = 0x3B5B78},
        {.title = "Plain window", .client = {.x = 900, .y = 500, .width = 500, .height = 350}}};
    programs_.push_back(startTestClient(server.environment(), own));
    const xcb_window_t plain = testClientWindows(programs_.back(), own.size()).back();
    user.await([&] { return desktop.isManaged(plain); }, "the plain window");
    actors_.push_back({.name = "plain", .window = plain});
    openProgram("xterm", {"xterm", "-geometry", "80x24+200+300"});
    if (desktop::isInstalled("gtk3-demo")) {
        openProgram("gtk3-demo", {"gtk3-demo"});
    }

    std::cout << std::left << std::setw(14) << "window" << std::setw(22) << "command" << std::setw(20) << "expected"
              << std::setw(20) << "reached" << std::endl;
}

void Stage::openProgram(const std::string& name, std::vector<std::string> arguments) {
    const auto before = desktop.clients();
    programs_.emplace_back(std::move(arguments), server.environment());
    xcb_window_t window = XCB_WINDOW_NONE;
    const auto isShown = [&] {
        const auto now = desktop.clients();
        const auto added = std::find_if(now.begin(), now.end(), [&before](xcb_window_t candidate) {
            return std::find(before.begin(), before.end(), candidate) == before.end();
        });
        window = added == now.end() ? xcb_window_t{XCB_WINDOW_NONE} : *added;
        if (window != XCB_WINDOW_NONE && desktop.activeWindow() != window) {
            desktop.requestActivation(window);
        }
        return window != XCB_WINDOW_NONE && desktop.isManaged(window) && desktop.activeWindow() == window;
    };
    // Large programs, perhaps from a cold disk.
    if (!desktop::waitUntil(isShown, std::chrono::seconds(30))) {
        throw std::runtime_error(name + " did not come: " + programs_.back().errors());
    }
    actors_.push_back({.name = name, .window = window});
}

void Stage::activate(const Actor& actor) {
    desktop.requestActivation(actor.window);
    user.await([&] { return desktop.activeWindow() == actor.window; }, actor.name);
}

void Stage::takePicture(const std::string& name) {
    writeScreenshot(desktop, {.x = 0, .y = 0, .width = screenSize.width, .height = screenSize.height},
                    picturePath(name));
}

void Stage::takePictureOf(xcb_window_t window, const std::string& name) {
    // Some windows grow into the size of what they show.
    using Clock = std::chrono::steady_clock;
    auto frame = desktop.visibleFrame(window);
    auto unchangedSince = Clock::now();
    user.await(
        [&] {
            if (const auto now = desktop.visibleFrame(window); now != frame) {
                frame = now;
                unchangedSince = Clock::now();
            }
            return frame && Clock::now() - unchangedSince > std::chrono::milliseconds(250);
        },
        "the window for the picture " + name);
    writeScreenshot(desktop, *frame, picturePath(name));
}

std::string Stage::picturePath(const std::string& name) {
    std::ostringstream file;
    file << std::setw(2) << std::setfill('0') << ++pictureCount_ << '-' << name << ".png";
    return (folder_ / file.str()).string();
}

void Stage::expectFrame(const Actor& actor, const std::string& command, const PixelRect& expected) {
    // Whether it was reached is judged by what is there at the end, below.
    static_cast<void>(desktop::waitUntil([&] { return desktop.visibleFrame(actor.window) == expected; }));
    ++frameCount_;
    takePicture(actor.name + '-' + command);
    const auto reached = desktop.visibleFrame(actor.window);
    const bool isRight = reached == expected;
    wrongFrameCount_ += isRight ? 0 : 1;
    std::cout << std::setw(14) << actor.name << std::setw(22) << command << std::setw(20) << text(expected)
              << std::setw(20) << (reached ? text(*reached) : "gone") << (isRight ? "" : "WRONG") << std::endl;
}

} // namespace brisk::tour
