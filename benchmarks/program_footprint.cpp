// What the program takes beside a bare Qt program in the tray: the time to its first hot key, memory at rest and after
// its windows were open, and wake-ups while nothing happens.

#include "desktop/support/input.h"
#include "desktop/support/virtual_server.h"
#include "desktop/support/wait.h"
#include "desktop/support/window_manager.h"
#include "quantile.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <iomanip>
#include <iostream>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace {

using namespace brisk::desktop;
using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;

constexpr std::uint16_t controlAlt = XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1;

double proportionalMebibytes(const Process& process) {
    return static_cast<double>(processNumber(process.id(), "smaps_rollup", "Pss:")) / 1024;
}

/// Of all its threads.
long voluntarySwitches(const Process& process) {
    long sum = 0;
    for (const auto& thread : std::filesystem::directory_iterator("/proc/" + std::to_string(process.id()) + "/task")) {
        sum += processNumber(process.id(), "task/" + thread.path().filename().string() + "/status",
                             "voluntary_ctxt_switches:");
    }
    return sum;
}

class Footprint {
public:
    Footprint(std::string bareTray, std::string brisk) : bareTray_(std::move(bareTray)), brisk_(std::move(brisk)) {
        // The first-run guide would be a window of its own.
        server_.home().write("data/brisk/native-settings.json", R"({ "hasCompletedOnboarding": true })");
    }

    void measureStart() {
        std::vector<double> bare;
        std::vector<double> brisk;
        constexpr int warmUp = 3;
        constexpr int rounds = 30;
        for (int round = 0; round < warmUp + rounds; ++round) {
            const double bareTaken = millisecondsToKey({bareTray_}, Key::digit1);
            const double briskTaken = millisecondsToKey({brisk_}, Key::left);
            if (round >= warmUp) {
                bare.push_back(bareTaken);
                brisk.push_back(briskTaken);
            }
        }
        std::cout << "Start to first hot key, milliseconds\n"
                  << std::setw(31) << "median" << std::setw(9) << "p95" << '\n';
        print("bare Qt tray", {quantile(bare, 0.5), quantile(bare, 0.95)});
        print("Brisk", {quantile(brisk, 0.5), quantile(brisk, 0.95)});
        print("ratio", {quantile(brisk, 0.5) / quantile(bare, 0.5)});
    }

    void measureRest() {
        Process brisk = run({brisk_}, Key::left);
        Process bare = run({bareTray_}, Key::digit1);
        waitForRest(brisk);
        waitForRest(bare);
        // Qt's helper threads end when they had nothing to do for half a minute.
        waitForRest(brisk, std::chrono::seconds(35));
        const double briskMemory = proportionalMebibytes(brisk);
        const double bareMemory = proportionalMebibytes(bare);
        const long before = voluntarySwitches(brisk);
        constexpr std::chrono::seconds duration(60);
        std::this_thread::sleep_for(duration);
        const long switches = voluntarySwitches(brisk) - before;

        const PixelSize size = openAndCloseSettings();
        stop(bare, Key::digit1);
        bare = run({bareTray_, std::to_string(size.width), std::to_string(size.height)}, Key::digit1);
        closeWindowOf("bare_tray");
        waitForRest(brisk);
        waitForRest(bare);
        const double briskAfter = proportionalMebibytes(brisk);
        const double bareAfter = proportionalMebibytes(bare);

        std::cout << "\nProportional memory, MiB\n"
                  << std::setw(31) << "never open" << std::setw(9) << "closed" << '\n';
        print("bare Qt tray", {bareMemory, bareAfter});
        print("Brisk", {briskMemory, briskAfter});
        print("ratio", {briskMemory / bareMemory, briskAfter / bareAfter});
        std::cout << "\nVoluntary context switches of all threads in " << duration.count()
                  << " idle seconds: " << switches << '\n';
    }

private:
    static void print(const std::string& name, std::initializer_list<double> figures) {
        std::cout << std::left << std::setw(22) << name << std::right << std::fixed << std::setprecision(2);
        for (const double figure : figures) {
            std::cout << std::setw(9) << figure;
        }
        std::cout << std::endl;
    }

    void await(const std::function<bool()>& condition, const std::string& what) const {
        if (!waitUntil(condition)) {
            throw std::runtime_error(what + " did not happen");
        }
    }

    Process run(std::vector<std::string> command, Key key) {
        const std::string name = command.front();
        Process process(std::move(command), server_.environment(), SIGTERM);
        await([&] { return isGrabbed(desktop_, key, controlAlt); }, "the start of " + name);
        return process;
    }

    void stop(Process& process, Key key) {
        process.stop();
        await([&] { return !isGrabbed(desktop_, key, controlAlt); }, "the end of a program");
    }

    double millisecondsToKey(std::vector<std::string> command, Key key) {
        const auto start = Clock::now();
        Process process(std::move(command), server_.environment(), SIGTERM);
        while (!isGrabbed(desktop_, key, controlAlt)) {
            if (Clock::now() > start + std::chrono::seconds(10)) {
                throw std::runtime_error("a program holds no key");
            }
            std::this_thread::sleep_for(std::chrono::microseconds(500));
        }
        const Milliseconds taken = Clock::now() - start;
        stop(process, key);
        return taken.count();
    }

    /// Until it has slept that long without a break.
    void waitForRest(const Process& process, std::chrono::milliseconds rest = std::chrono::milliseconds(1500)) const {
        for (long last = -1; last != voluntarySwitches(process);) {
            last = voluntarySwitches(process);
            std::this_thread::sleep_for(rest);
        }
    }

    /// Closes the one window of a program once it was there for a while, as after a look at it.
    PixelSize closeWindowOf(const std::string& program) {
        await([&] { return !desktop_.windowsOf(program).empty(); }, "a window's opening");
        std::this_thread::sleep_for(std::chrono::seconds(1));
        const xcb_window_t window = desktop_.windowsOf(program).front();
        const PixelRect area = desktop_.clientRect(window).value();
        desktop_.requestClose(window);
        await([&] { return desktop_.windowsOf(program).empty(); }, "a window's closing");
        return {.width = area.width, .height = area.height};
    }

    PixelSize openAndCloseSettings() {
        // A second copy hands over to the first one and ends.
        const Process second({brisk_}, server_.environment());
        return closeWindowOf("brisk");
    }

    std::string bareTray_;
    std::string brisk_;
    VirtualServer server_;
    WindowManager windowManager_{server_, WindowManager::Kind::openbox};
    DesktopConnection desktop_{server_.display()};
};

} // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::cerr << "usage: program_footprint <bare tray> <brisk>\n";
        return EXIT_FAILURE;
    }
    try {
        Footprint footprint(argv[1], argv[2]);
        footprint.measureStart();
        footprint.measureRest();
    } catch (const std::exception& failure) {
        std::cerr << "program_footprint: " << failure.what() << '\n';
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}
