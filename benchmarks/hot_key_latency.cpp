// From a key press to the window's final place: the product beside a minimal daemon and beside a general hot key daemon
// that runs a command line tool, on one desktop, taking turns with the same window and the same two frames.

#include "desktop/support/input.h"
#include "desktop/support/test_window.h"
#include "desktop/support/virtual_server.h"
#include "desktop/support/wait.h"
#include "desktop/support/window_manager.h"
#include "quantile.h"

#include <poll.h>

#include <array>
#include <chrono>
#include <cstdlib>
#include <exception>
#include <iomanip>
#include <iostream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace {

using namespace brisk::desktop;
using Milliseconds = std::chrono::duration<double, std::milli>;

constexpr PixelSize screenSize{.width = 1920, .height = 1080};
constexpr std::array<PixelRect, 2> halves{
    PixelRect{.x = 0, .y = 0, .width = screenSize.width / 2, .height = screenSize.height},
    PixelRect{.x = screenSize.width / 2, .y = 0, .width = screenSize.width / 2, .height = screenSize.height}};

/// A program that puts the window on the left half by one key and on the right half by another.
struct Peer {
    std::string name;
    std::array<Key, 2> keys;
    std::vector<double> milliseconds;
};

class Benchmark {
public:
    Benchmark() {
        window_ = client_.open({.title = "Measured window"});
        await([this] { return desktop_.isManaged(window_) && desktop_.activeWindow() == window_; }, "the window");
    }

    void startBrisk(const std::string& program) {
        // The first-run guide would be a window of its own.
        server_.home().write("data/brisk/native-settings.json", R"({ "hasCompletedOnboarding": true })");
        start({"Brisk", {Key::left, Key::right}, {}}, {program});
    }

    void startMinimalDaemon(const std::string& program) {
        start({"minimal daemon", {Key::digit1, Key::digit2}, {}}, {program, message(halves[0]), message(halves[1])});
    }

    void startSxhkd() {
        const auto line = [this](const char* key, const PixelRect& half) {
            return std::string("ctrl + alt + ") + key + "\n    wmctrl -r :ACTIVE: -e 0," + message(half) + "\n";
        };
        const std::string configuration = server_.home().write("sxhkdrc", line("3", halves[0]) + line("4", halves[1]));
        start({"sxhkd + wmctrl", {Key::digit3, Key::digit4}, {}}, {"sxhkd", "-c", configuration});
    }

    void startXbindkeys() {
        const auto lines = [this](const char* key, const PixelRect& half) {
            const PixelRect client = clientArea(half);
            std::ostringstream text;
            text << "\"xdotool getactivewindow windowsize " << client.width << ' ' << client.height << " windowmove "
                 << half.x << ' ' << half.y << "\"\n    control+alt + " << key << '\n';
            return text.str();
        };
        const std::string configuration =
            server_.home().write("xbindkeysrc", lines("5", halves[0]) + lines("6", halves[1]));
        start({"xbindkeys + xdotool", {Key::digit5, Key::digit6}, {}},
              {"xbindkeys", "--nodaemon", "-f", configuration});
    }

    /// Lets the first `count` peers take turns, each starting a round once in `count` rounds, so that each meets the
    /// window on both sides and after each of the others.
    void measure(std::size_t firstPeer, std::size_t count, std::size_t presses) {
        constexpr std::size_t warmUp = 10;
        std::size_t side = 0;
        for (std::size_t round = 0; round < warmUp + presses; ++round) {
            for (std::size_t turn = 0; turn < count; ++turn) {
                Peer& peer = peers_.at(firstPeer + (turn + round) % count);
                const double taken = press(peer, side);
                if (round >= warmUp) {
                    peer.milliseconds.push_back(taken);
                }
                side = 1 - side;
            }
        }
    }

    void measureLast(std::size_t presses) { measure(peers_.size() - 1, 1, presses); }

    void print() const {
        const double reference = quantile(peers_.front().milliseconds, 0.5);
        std::cout << "Key press to final ConfigureNotify under openbox, milliseconds\n"
                  << std::left << std::setw(20) << "" << std::right << std::setw(8) << "presses" << std::setw(9)
                  << "median" << std::setw(9) << "p95" << std::setw(9) << "max" << std::setw(8) << "ratio" << '\n'
                  << std::fixed;
        for (const Peer& peer : peers_) {
            const double median = quantile(peer.milliseconds, 0.5);
            std::cout << std::left << std::setw(20) << peer.name << std::right << std::setw(8)
                      << peer.milliseconds.size() << std::setprecision(2) << std::setw(9) << median << std::setw(9)
                      << quantile(peer.milliseconds, 0.95) << std::setw(9) << quantile(peer.milliseconds, 1)
                      << std::setw(8) << median / reference << '\n';
        }
    }

private:
    static constexpr std::uint16_t controlAlt = XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1;

    void await(const std::function<bool()>& condition, const std::string& what) const {
        if (!waitUntil(condition)) {
            throw std::runtime_error(what + " did not come up");
        }
    }

    void start(Peer peer, std::vector<std::string> command) {
        processes_.emplace_back(std::move(command), server_.environment(), SIGTERM);
        await(
            [&] {
                return isGrabbed(desktop_, peer.keys[0], controlAlt) && isGrabbed(desktop_, peer.keys[1], controlAlt);
            },
            peer.name);
        peers_.push_back(std::move(peer));
    }

    /// The client area that shows as `half` with the window's decorations.
    PixelRect clientArea(const PixelRect& half) {
        const PixelExtents around = desktop_.decorations(window_);
        return {.x = half.x + around.left,
                .y = half.y + around.top,
                .width = half.width - around.left - around.right,
                .height = half.height - around.top - around.bottom};
    }

    /// What moves the window to `half`: corner of the frame, size of the client.
    std::string message(const PixelRect& half) {
        const PixelRect client = clientArea(half);
        std::ostringstream text;
        text << half.x << ',' << half.y << ',' << client.width << ',' << client.height;
        return text.str();
    }

    /// Milliseconds from the press of the peer's key for that side until the window is told its final place.
    double press(const Peer& peer, std::size_t side) {
        const PixelRect target = clientArea(halves[side]);
        if (desktop_.clientRect(window_) == target) {
            throw std::runtime_error("the window is there already: nothing would be measured");
        }
        keyboard_.down(Key::leftControl);
        keyboard_.down(Key::leftAlt);
        client_.forgetRecords();

        const auto start = std::chrono::steady_clock::now();
        keyboard_.down(peer.keys[side]);
        waitForArrival(peer, target, start);
        const Milliseconds taken = std::chrono::steady_clock::now() - start;

        keyboard_.up(peer.keys[side]);
        keyboard_.up(Key::leftAlt);
        keyboard_.up(Key::leftControl);
        // Everybody's after-work is done before the next press.
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
        return taken.count();
    }

    void waitForArrival(const Peer& peer, const PixelRect& target, std::chrono::steady_clock::time_point start) {
        pollfd events{.fd = xcb_get_file_descriptor(client_.connection().xcb()), .events = POLLIN, .revents = 0};
        for (std::size_t seen = 0;;) {
            // Asked again after each look at the server, whose replies bring events that the descriptor does not
            // announce.
            const auto& notifies = client_.record(window_).configurations;
            if (notifies.size() > seen) {
                seen = notifies.size();
                // Only a synthetic event speaks of the root window; after another one the server is asked.
                const auto& last = notifies.back();
                if (last.isSynthetic ? last.rect == target : client_.connection().clientRect(window_) == target) {
                    return;
                }
                continue;
            }
            constexpr std::chrono::seconds patience(5);
            if (std::chrono::steady_clock::now() - start > patience) {
                std::ostringstream problem;
                problem << peer.name << " did not move the window to " << target;
                if (const auto reached = desktop_.clientRect(window_)) {
                    problem << ", it is at " << *reached;
                }
                throw std::runtime_error(problem.str());
            }
            poll(&events, 1, 100);
        }
    }

    VirtualServer server_{screenSize};
    WindowManager windowManager_{server_, WindowManager::Kind::openbox};
    DesktopConnection desktop_{server_.display()};
    Keyboard keyboard_{desktop_};
    TestClient client_{server_.display()};
    xcb_window_t window_ = XCB_WINDOW_NONE;
    std::vector<Process> processes_;
    std::vector<Peer> peers_;
};

} // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::cerr << "usage: hot_key_latency <minimal daemon> <brisk>\n";
        return EXIT_FAILURE;
    }
    try {
        Benchmark benchmark;
        benchmark.startMinimalDaemon(argv[1]);
        benchmark.startBrisk(argv[2]);
        benchmark.measure(0, 2, 500);
        if (isInstalled("sxhkd") && isInstalled("wmctrl")) {
            benchmark.startSxhkd();
            benchmark.measureLast(60);
        }
        if (isInstalled("xbindkeys") && isInstalled("xdotool")) {
            benchmark.startXbindkeys();
            benchmark.measureLast(60);
        }
        benchmark.print();
    } catch (const std::exception& failure) {
        std::cerr << "hot_key_latency: " << failure.what() << '\n';
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}
