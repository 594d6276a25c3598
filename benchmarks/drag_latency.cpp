// A window dragged with Shift on a large display full of zones: how soon the picture follows the pointer into another
// zone, and what the product takes of a processor meanwhile, with a compositor and without.

#include "desktop/support/input.h"
#include "desktop/support/test_window.h"
#include "desktop/support/virtual_server.h"
#include "desktop/support/wait.h"
#include "desktop/support/window_manager.h"
#include "quantile.h"

#include <poll.h>
#include <xcb/damage.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdlib>
#include <ctime>
#include <exception>
#include <iomanip>
#include <iostream>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace {

using namespace brisk::desktop;
using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;
using Seconds = std::chrono::duration<double>;

constexpr PixelSize screenSize{.width = 3840, .height = 2160};
// The custom zones are the cells of a grid, so that each of its lines is a border between two zones.
constexpr int columns = 5;
constexpr int rows = 4;
constexpr int columnWidth = screenSize.width / columns;
constexpr int rowHeight = screenSize.height / rows;

std::string settings(bool hasZones) {
    std::ostringstream json;
    json << R"({ "hasCompletedOnboarding": true)";
    if (hasZones) {
        json << R"(, "dragEnabledBuiltInWindowLayoutIDs": ["window.leftHalf", "window.rightHalf", "window.topHalf",
            "window.bottomHalf", "window.maximize", "window.center", "window.topLeft", "window.topRight",
            "window.bottomLeft", "window.bottomRight"], "customWindowLayouts": [)";
        for (int cell = 0; cell < columns * rows; ++cell) {
            json << (cell > 0 ? ", " : "") << R"({ "id": "cell)" << cell << R"(", "name": "Cell )" << cell
                 << R"(", "isAvailableForDragging": true, "selection": { "columns": )" << columns << R"(, "rows": )"
                 << rows << R"(, "column": )" << cell % columns << R"(, "row": )" << cell / columns
                 << R"(, "columnSpan": 1, "rowSpan": 1 } })";
        }
        json << ']';
    }
    json << " }";
    return json.str();
}

/// The product on a desktop of its own with a window that is being dragged with Shift held.
class DragScene {
public:
    enum class Compositor { none, picom };

    DragScene(const std::string& program, Compositor compositor, bool hasZones) {
        if (compositor == Compositor::picom) {
            compositor_.emplace(std::vector<std::string>{"picom", "--backend", "xrender"}, server_.environment());
            await([this] { return desktop_.isCompositing(); }, "picom");
        }
        server_.home().write("data/brisk/native-settings.json", settings(hasZones));
        brisk_.emplace(std::vector<std::string>{program}, server_.environment(), SIGTERM);
        measured_ = &*brisk_;
        await([this] { return isGrabbed(desktop_, Key::left, XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1); }, program);
        window_ = client_.open({.client = {.x = 300, .y = 300, .width = 800, .height = 600}});
        await([&] { return desktop_.isManaged(window_) && desktop_.activeWindow() == window_; }, "the window");
        // A hot key that works tells that the program has started to the end.
        keyboard_.press(Key::left, {Key::leftControl, Key::leftAlt});
        await([&] { return desktop_.visibleFrame(window_)->height == screenSize.height; }, "the hot key");
        // Half a display that moves takes the server longer to draw than the zones do.
        keyboard_.press(Key::u, {Key::leftControl, Key::leftAlt});
        await([&] { return desktop_.visibleFrame(window_)->height < screenSize.height; }, "the quarter");

        if (!pointer_.takeByTitle(window_, [this] { client_.dispatchEvents(); })) {
            throw std::runtime_error("the window does not follow the pointer");
        }
        keyboard_.down(Key::leftShift);
        if (hasZones) {
            await([this] { return findOverlay(); }, "the overlay");
            watchOverlay();
        }
    }

    /// Milliseconds from each motion into another zone until the overlay's picture has changed for the last time: what
    /// the window that moves below it uncovers is drawn as well.
    std::vector<double> measureLatency(int count) {
        std::vector<double> result;
        constexpr std::array borders{1, 3, 2, 4};
        constexpr int motionsAtBorder = 10;
        for (int motion = 0; motion < count; ++motion) {
            const int border = borders.at(static_cast<std::size_t>(motion / motionsAtBorder % 4));
            const int row = motion / (4 * motionsAtBorder) % rows;
            const int aside = motion % 2 == 0 ? -20 : 20;
            waitForPicture(std::chrono::milliseconds(60));
            const auto start = Clock::now();
            pointer_.moveTo(border * columnWidth + aside, row * rowHeight + rowHeight / 2);
            const auto end = waitForPicture(std::chrono::seconds(2));
            if (!end) {
                throw std::runtime_error("the overlay does not follow the pointer");
            }
            result.push_back(Milliseconds(*end - start).count());
        }
        return result;
    }

    /// Lets a program that only follows the drag be the one whose load is measured.
    void follow(const std::string& follower) {
        follower_.emplace(std::vector<std::string>{follower, std::to_string(window_)}, server_.environment());
        measured_ = &*follower_;
    }

    /// Per cent of one processor core that is taken while the pointer reports its way across the zones at that rate.
    double measureLoad(int motionsPerSecond) {
        constexpr int pixelsPerSecond = 2000;
        constexpr std::chrono::seconds duration(3);
        const int step = pixelsPerSecond / motionsPerSecond;
        int x = columnWidth / 2;
        int direction = step;
        pointer_.moveTo(x, rowHeight / 2);
        waitForIdleness();
        const double before = processorSeconds();
        const auto start = Clock::now();
        auto next = start;
        int motions = 0;
        for (; next < start + duration; ++motions) {
            if (x + direction < 100 || x + direction > screenSize.width - 100) {
                direction = -direction;
            }
            x += direction;
            pointer_.moveBy(direction, 0);
            next += std::chrono::microseconds(1'000'000 / motionsPerSecond);
            std::this_thread::sleep_until(next);
        }
        const double taken = Seconds(Clock::now() - start).count();
        const double load = 100 * (processorSeconds() - before) / taken;
        if (motions / taken < 0.95 * motionsPerSecond) {
            std::cerr << "(only " << static_cast<int>(motions / taken) << " of " << motionsPerSecond
                      << " motions a second)\n";
        }
        return load;
    }

private:
    void await(const std::function<bool()>& condition, const std::string& what) {
        const bool isReached = waitUntil([&] {
            client_.dispatchEvents();
            return condition();
        });
        if (!isReached) {
            throw std::runtime_error(what + " did not come up");
        }
    }

    bool findOverlay() {
        const auto own = desktop_.windowsOf("brisk");
        const auto found = std::ranges::find_if(own, [this](xcb_window_t window) {
            const auto rect = desktop_.clientRect(window);
            return rect && rect->width == screenSize.width;
        });
        if (found == own.end()) {
            return false;
        }
        overlay_ = *found;
        return true;
    }

    void watchOverlay() {
        xcb_connection_t* const xcb = desktop_.xcb();
        damageEvent_ = xcb_get_extension_data(xcb, &xcb_damage_id)->first_event;
        const Reply<xcb_damage_query_version_reply_t> version{
            xcb_damage_query_version_reply(xcb, xcb_damage_query_version(xcb, 1, 1), nullptr)};
        xcb_damage_create(xcb, xcb_generate_id(xcb), overlay_, XCB_DAMAGE_REPORT_LEVEL_RAW_RECTANGLES);
        desktop_.synchronize();
    }

    /// When the overlay was drawn for the last time before it was left alone for a while; none if it was not drawn at
    /// all within `patience`.
    std::optional<Clock::time_point> waitForPicture(std::chrono::milliseconds patience) {
        constexpr std::chrono::milliseconds quiet(60);
        std::optional<Clock::time_point> last;
        pollfd events{.fd = xcb_get_file_descriptor(desktop_.xcb()), .events = POLLIN, .revents = 0};
        for (auto end = Clock::now() + patience; Clock::now() < end;) {
            while (const Reply<xcb_generic_event_t> event{xcb_poll_for_event(desktop_.xcb())}) {
                if ((event->response_type & 0x7F) == damageEvent_ + XCB_DAMAGE_NOTIFY) {
                    last = Clock::now();
                    end = *last + quiet;
                }
            }
            poll(&events, 1, 5);
        }
        client_.dispatchEvents();
        return last;
    }

    /// Until the product has done nothing for a while: what it does once it has started is not the drag's.
    void waitForIdleness() {
        double last = -1;
        await(
            [&] {
                std::this_thread::sleep_for(std::chrono::milliseconds(500));
                const double before = std::exchange(last, processorSeconds());
                return last == before;
            },
            "the product's rest");
    }

    /// User and system time of the whole process.
    double processorSeconds() const {
        clockid_t clock{};
        timespec time{};
        if (clock_getcpuclockid(measured_->id(), &clock) != 0 || clock_gettime(clock, &time) != 0) {
            throw std::runtime_error("the processor time cannot be read");
        }
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
    }

    VirtualServer server_{screenSize};
    WindowManager windowManager_{server_, WindowManager::Kind::openbox};
    DesktopConnection desktop_{server_.display()};
    Keyboard keyboard_{desktop_};
    Pointer pointer_{desktop_};
    TestClient client_{server_.display()};
    std::optional<Process> compositor_;
    std::optional<Process> brisk_;
    std::optional<Process> follower_;
    const Process* measured_ = nullptr;
    xcb_window_t window_ = XCB_WINDOW_NONE;
    xcb_window_t overlay_ = XCB_WINDOW_NONE;
    int damageEvent_ = 0;
};

void printLoad(DragScene& scene) {
    std::cout << std::setw(9) << scene.measureLoad(125) << std::setw(9) << scene.measureLoad(1000) << std::endl;
}

void measure(const std::string& program, const std::string& name, DragScene::Compositor compositor, bool hasZones) {
    DragScene scene(program, compositor, hasZones);
    std::cout << std::left << std::setw(22) << name << std::right << std::fixed << std::setprecision(2);
    if (hasZones) {
        constexpr int warmUp = 10;
        scene.measureLatency(warmUp);
        const auto latency = scene.measureLatency(200);
        std::cout << std::setw(9) << quantile(latency, 0.5) << std::setw(9) << quantile(latency, 0.95) << std::setw(9)
                  << quantile(latency, 1);
    } else {
        std::cout << std::setw(27) << "";
    }
    printLoad(scene);
}

/// For comparison: what a plain program takes that follows the same drag and shows nothing.
void measureFollower(const std::string& program, const std::string& follower) {
    DragScene scene(program, DragScene::Compositor::none, false);
    scene.follow(follower);
    std::cout << std::left << std::setw(22) << "minimal follower" << std::right << std::setw(27) << "";
    printLoad(scene);
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::cerr << "usage: drag_latency <brisk> <minimal follower>\n";
        return EXIT_FAILURE;
    }
    try {
        std::cout << "A drag with Shift over 30 zones, " << screenSize.width << 'x' << screenSize.height
                  << " under openbox\n"
                  << std::setw(49) << "ms from motion to picture" << std::setw(18) << "% of a core at" << '\n'
                  << std::setw(31) << "median" << std::setw(9) << "p95" << std::setw(9) << "max" << std::setw(9)
                  << "125 Hz" << std::setw(9) << "1000 Hz" << '\n';
        using enum DragScene::Compositor;
        measure(argv[1], "no compositor", none, true);
        if (isInstalled("picom")) {
            measure(argv[1], "picom", picom, true);
        }
        measure(argv[1], "no zone enabled", none, false);
        measureFollower(argv[1], argv[2]);
    } catch (const std::exception& failure) {
        std::cerr << "drag_latency: " << failure.what() << '\n';
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}
