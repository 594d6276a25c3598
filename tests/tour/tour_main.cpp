// Plays the program on a display of its own: real clients, real key presses, and for each command the frame that it
// must give, computed here from the layouts' definition and not by the program's code. Prints a table, leaves a
// screenshot for every command, and ends with status 0 only if every frame was right.

#include "desktop/support/input.h"
#include "desktop/support/test_window.h"
#include "desktop/support/virtual_server.h"
#include "desktop/support/wait.h"
#include "desktop/support/window_manager.h"
#include "tour/screenshot.h"

#include <xcb/xcb_icccm.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <iomanip>
#include <iostream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using namespace brisk::desktop;

constexpr PixelSize screenSize{.width = 1920, .height = 1080};
constexpr int panelHeight = 32;
constexpr int gap = 10;

// A gap and two layouts of the user's own on 1 and 2, beside the default shortcuts.
constexpr const char* settings = R"({
  "commandHotkeys": {
    "window.custom.wide": { "display": "⌃⌥1", "keyCode": 18, "modifiers": 6144 },
    "window.custom.middle": { "display": "⌃⌥2", "keyCode": 19, "modifiers": 6144 }
  },
  "customWindowLayouts": [
    { "id": "wide", "name": "Wide Left", "isAvailableForDragging": true,
      "selection": { "columns": 4, "rows": 2, "column": 0, "row": 0, "columnSpan": 3, "rowSpan": 2 } },
    { "id": "middle", "name": "Middle Third", "isAvailableForDragging": false,
      "selection": { "columns": 3, "rows": 1, "column": 1, "row": 0, "columnSpan": 1, "rowSpan": 1 } }
  ],
  "hasCompletedOnboarding": true,
  "windowGap": 10
})";

/// Edges in pixels before rounding.
struct Edges {
    double left = 0;
    double top = 0;
    double right = 0;
    double bottom = 0;
};

/// Neighbours share their edges, so it is edges that are rounded, not sizes.
PixelRect rounded(const Edges& edges) {
    const auto round = [](double value) { return static_cast<int>(std::lround(value)); };
    return {.x = round(edges.left),
            .y = round(edges.top),
            .width = round(edges.right) - round(edges.left),
            .height = round(edges.bottom) - round(edges.top)};
}

constexpr Edges usableArea{.left = 0, .top = panelHeight, .right = screenSize.width, .bottom = screenSize.height};

/// Cells [firstColumn, endColumn) and rows, from the top, of a grid over the usable area with a gap around each cell.
Edges cells(int columns, int firstColumn, int endColumn, int rows, int firstRow, int endRow) {
    const double columnStep = (usableArea.right - usableArea.left - gap) / columns;
    const double rowStep = (usableArea.bottom - usableArea.top - gap) / rows;
    return {.left = usableArea.left + gap + firstColumn * columnStep,
            .top = usableArea.top + gap + firstRow * rowStep,
            .right = usableArea.left + endColumn * columnStep,
            .bottom = usableArea.top + endRow * rowStep};
}

Edges centered() {
    const Edges whole = cells(1, 0, 1, 1, 0, 1);
    const double marginX = (whole.right - whole.left) * 0.14;
    const double marginY = (whole.bottom - whole.top) * 0.14;
    return {.left = whole.left + marginX,
            .top = whole.top + marginY,
            .right = whole.right - marginX,
            .bottom = whole.bottom - marginY};
}

struct Command {
    const char* name;
    Key key;
    PixelRect frame;
};

std::vector<Command> commands() {
    return {
        {"left-half", Key::left, rounded(cells(2, 0, 1, 1, 0, 1))},
        {"left-two-thirds", Key::left, rounded(cells(3, 0, 2, 1, 0, 1))},
        {"left-third", Key::left, rounded(cells(3, 0, 1, 1, 0, 1))},
        {"right-half", Key::right, rounded(cells(2, 1, 2, 1, 0, 1))},
        {"top-half", Key::up, rounded(cells(1, 0, 1, 2, 0, 1))},
        {"bottom-half", Key::down, rounded(cells(1, 0, 1, 2, 1, 2))},
        {"maximize", Key::returnKey, rounded(cells(1, 0, 1, 1, 0, 1))},
        {"center", Key::c, rounded(centered())},
        {"top-left", Key::u, rounded(cells(2, 0, 1, 2, 0, 1))},
        {"top-right", Key::i, rounded(cells(2, 1, 2, 2, 0, 1))},
        {"bottom-left", Key::j, rounded(cells(2, 0, 1, 2, 1, 2))},
        {"bottom-right", Key::k, rounded(cells(2, 1, 2, 2, 1, 2))},
        {"custom-wide-left", Key::digit1, rounded(cells(4, 0, 3, 2, 0, 2))},
        {"custom-middle-third", Key::digit2, rounded(cells(3, 1, 2, 1, 0, 1))},
    };
}

/// What of `frame` a window can take: not below its minimum size, and no part of a character cell.
PixelRect allowedByHints(DesktopConnection& desktop, xcb_window_t window, PixelRect frame) {
    xcb_size_hints_t hints{};
    if (xcb_icccm_get_wm_normal_hints_reply(desktop.xcb(), xcb_icccm_get_wm_normal_hints(desktop.xcb(), window), &hints,
                                            nullptr) == 0) {
        return frame;
    }
    const auto client = desktop.clientRect(window);
    const auto visible = desktop.visibleFrame(window);
    if (!client || !visible) {
        throw std::runtime_error("a window of the tour is gone");
    }
    const auto fit = [&hints](int wanted, int minimum, int base, int increment) {
        if ((hints.flags & XCB_ICCCM_SIZE_HINT_P_MIN_SIZE) != 0) {
            wanted = std::max(wanted, minimum);
        }
        if ((hints.flags & XCB_ICCCM_SIZE_HINT_P_RESIZE_INC) != 0 && increment > 1) {
            wanted -= (wanted - base) % increment;
        }
        return wanted;
    };
    const int besideX = visible->width - client->width;
    const int besideY = visible->height - client->height;
    const int width = fit(frame.width - besideX, hints.min_width, hints.base_width, hints.width_inc);
    const int height = fit(frame.height - besideY, hints.min_height, hints.base_height, hints.height_inc);
    frame.width = width + besideX;
    frame.height = height + besideY;
    return frame;
}

std::string text(const PixelRect& rect) {
    std::ostringstream stream;
    stream << rect;
    return stream.str();
}

/// A client of the tour, on the screen and decorated.
struct Actor {
    std::string name;
    xcb_window_t window = XCB_WINDOW_NONE;
};

class Tour {
public:
    Tour(std::string program, std::filesystem::path folder) : program_(std::move(program)), folder_(std::move(folder)) {
        std::filesystem::create_directories(folder_);
        server_.home().write("data/brisk/native-settings.json", settings);
        paintBackground();
        openActors();
    }

    /// Whether every frame was right.
    bool play() {
        Process brisk({program_}, server_.environment(), SIGTERM);
        constexpr std::uint16_t controlAlt = XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1;
        const bool hasShortcuts = waitUntil([this] {
            return isGrabbed(desktop_, Key::backspace, controlAlt) && isGrabbed(desktop_, Key::digit1, controlAlt) &&
                   isGrabbed(desktop_, Key::digit2, controlAlt);
        });
        if (!hasShortcuts) {
            throw std::runtime_error("Brisk registered no shortcuts\n" + brisk.output() + brisk.errors());
        }
        std::cout << std::left << std::setw(14) << "window" << std::setw(22) << "command" << std::setw(20) << "expected"
                  << std::setw(20) << "reached" << '\n';
        for (const Actor& actor : actors_) {
            play(actor);
        }
        if (!brisk.isRunning()) {
            std::cout << "Brisk ended on the way\n" << brisk.errors();
        }
        std::cout << commandCount_ - wrongCount_ << " of " << commandCount_ << " frames right; screenshots in "
                  << folder_.string() << std::endl;
        return wrongCount_ == 0 && brisk.isRunning();
    }

private:
    void paintBackground() {
        const std::uint32_t colour = 0x3B5B78;
        xcb_change_window_attributes(desktop_.xcb(), desktop_.root(), XCB_CW_BACK_PIXEL, &colour);
        xcb_clear_area(desktop_.xcb(), 0, desktop_.root(), 0, 0, 0, 0);
        desktop_.synchronize();
    }

    void openActors() {
        const std::vector<WindowDescription> own{
            {.title = "Panel",
             .client = {.x = 0, .y = 0, .width = screenSize.width, .height = panelHeight},
             .kind = WindowKind::dock,
             .strut =
                 Strut{.edge = Strut::Edge::top, .thickness = panelHeight, .start = 0, .end = screenSize.width - 1},
             .background = 0x202830},
            {.title = "Plain window", .client = {.x = 900, .y = 500, .width = 500, .height = 350}}};
        programs_.push_back(startTestClient(server_.environment(), own));
        const auto windows = testClientWindows(programs_.back(), own.size());
        await([&] { return desktop_.isManaged(windows[0]) && desktop_.isManaged(windows[1]); }, "the plain window");
        actors_.push_back({.name = "plain", .window = windows[1]});

        openProgram("xterm", {"xterm", "-geometry", "80x24+200+300"});
        if (isInstalled("gtk3-demo")) {
            openProgram("gtk3-demo", {"gtk3-demo"});
        }
    }

    void openProgram(const std::string& name, std::vector<std::string> arguments) {
        const auto before = desktop_.clients();
        programs_.emplace_back(std::move(arguments), server_.environment());
        xcb_window_t window = XCB_WINDOW_NONE;
        await(
            [&] {
                const auto now = desktop_.clients();
                const auto added = std::find_if(now.begin(), now.end(), [&before](xcb_window_t candidate) {
                    return std::find(before.begin(), before.end(), candidate) == before.end();
                });
                window = added == now.end() ? xcb_window_t{XCB_WINDOW_NONE} : *added;
                return window != XCB_WINDOW_NONE && desktop_.isManaged(window) && desktop_.activeWindow() == window;
            },
            name);
        actors_.push_back({.name = name, .window = window});
    }

    void await(const std::function<bool()>& condition, const std::string& what) const {
        if (!waitUntil(condition)) {
            throw std::runtime_error(what + " did not come up");
        }
    }

    void play(const Actor& actor) {
        desktop_.requestActivation(actor.window);
        await([&] { return desktop_.activeWindow() == actor.window; }, actor.name);
        const auto original = desktop_.visibleFrame(actor.window);
        if (!original) {
            throw std::runtime_error(actor.name + " is gone");
        }
        for (const Command& command : commands()) {
            play(actor, command.name, command.key, allowedByHints(desktop_, actor.window, command.frame));
        }
        play(actor, "restore", Key::backspace, *original);
    }

    void play(const Actor& actor, const std::string& command, Key key, const PixelRect& expected) {
        keyboard_.press(key, {Key::leftControl, Key::leftAlt});
        // Whether it was reached is judged by what is there at the end, below.
        static_cast<void>(waitUntil([&] { return desktop_.visibleFrame(actor.window) == expected; }));
        ++commandCount_;
        std::ostringstream file;
        file << std::setw(2) << std::setfill('0') << commandCount_ << '-' << actor.name << '-' << command << ".png";
        brisk::tour::writeScreenshot(desktop_, (folder_ / file.str()).string());
        const auto reached = desktop_.visibleFrame(actor.window);
        const bool isRight = reached == expected;
        wrongCount_ += isRight ? 0 : 1;
        std::cout << std::setw(14) << actor.name << std::setw(22) << command << std::setw(20) << text(expected)
                  << std::setw(20) << (reached ? text(*reached) : "gone") << (isRight ? "" : "WRONG") << std::endl;
    }

    std::string program_;
    std::filesystem::path folder_;
    VirtualServer server_{screenSize};
    WindowManager windowManager_{server_, WindowManager::Kind::openbox};
    DesktopConnection desktop_{server_.display()};
    Keyboard keyboard_{desktop_};
    std::vector<Process> programs_;
    std::vector<Actor> actors_;
    int commandCount_ = 0;
    int wrongCount_ = 0;
};

} // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::cerr << "usage: brisk_tour <program> <folder for screenshots>\n";
        return EXIT_FAILURE;
    }
    try {
        return Tour(argv[1], argv[2]).play() ? EXIT_SUCCESS : EXIT_FAILURE;
    } catch (const std::exception& failure) {
        std::cerr << "brisk_tour: " << failure.what() << '\n';
        return EXIT_FAILURE;
    }
}
