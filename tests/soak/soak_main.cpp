// Wears the program out on a desktop of its own: saves that are killed, thousands of snaps, drags and edits, a thousand
// custom layouts. Prints what was injected and what held, and ends with status 0 only if everything did.

#include "desktop/support/process.h"
#include "soak/killed_saves.h"
#include "soak/scene.h"
#include "soak/stopwatch.h"

#include <algorithm>
#include <cstdlib>
#include <exception>
#include <functional>
#include <iomanip>
#include <iostream>
#include <map>
#include <sstream>
#include <string>

namespace {

using namespace brisk::desktop;

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
    scene.dragOnce(Scene::leftHalf);
    wear(report, scene, named("snaps"), counts.at("snaps"), [&](int count) { scene.snapToAndFro(count); });
    wear(report, scene, named("drags"), counts.at("drags"), [&](int count) {
        for (int i = 0; i < count; ++i) {
            scene.dragOnce(i % 2 == 0 ? Scene::leftHalf : Scene::rightHalf);
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
        const Stopwatch stopwatch;
        scene.showWindowsPane();
        figures += ", Windows pane with two edits " + milliseconds(stopwatch.milliseconds());
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
