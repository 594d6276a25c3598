#include "drag/drag_zone.h"
#include "layouts/window_layout.h"
#include "platform/simulated/desktop.h"
#include "windows/window_manager.h"

#include <benchmark/benchmark.h>

#include <string>
#include <vector>

namespace brisk {
namespace {

constexpr CGRect usable{.origin = {0, 0}, .size = {3840, 2115}};
constexpr CGRect elsewhere{.origin = {333, 222}, .size = {800, 600}};

void layoutFrameOfEveryLayout(benchmark::State& state) {
    for (auto _ : state) {
        for (const WindowLayout layout : allWindowLayouts) {
            benchmark::DoNotOptimize(layoutFrame(layout, usable, elsewhere, 8));
        }
    }
}
BENCHMARK(layoutFrameOfEveryLayout);

void buildZonesOfTenBuiltInAndHundredCustomLayouts(benchmark::State& state) {
    std::vector<CustomWindowLayout> custom;
    for (std::int64_t i = 0; i < 100; ++i) {
        custom.push_back({.id = std::to_string(i),
                          .name = "Layout " + std::to_string(i),
                          .selection = {6, 6, i % 6, i / 6 % 6, 2, 2},
                          .isAvailableForDragging = true});
    }
    for (auto _ : state) {
        const auto targets = dragTargets(allWindowLayouts, custom);
        const auto zones = buildZones(targets, usable, 8, elsewhere);
        benchmark::DoNotOptimize(targetAtPoint(zones, {.x = 1000, .y = 1000}));
    }
}
BENCHMARK(buildZonesOfTenBuiltInAndHundredCustomLayouts);

// A whole command on the simulated desktop, with as many windows remembered from before.
void commandWithRememberedWindows(benchmark::State& state) {
    simulated::Desktop desktop;
    WindowManager manager{desktop.accessibility};
    const auto application = desktop.launch("Editor");
    for (std::int64_t i = 0; i < state.range(0); ++i) {
        const auto other = desktop.launch("Other");
        simulated::Desktop::openWindow(other, elsewhere);
        manager.applyLayout(WindowLayout::maximize, *other, 0);
        // Gone from the list, not from the desktop: the cost measured is the history's, not the simulation's.
        desktop.applications.pop_back();
        desktop.log.clear();
    }
    simulated::Desktop::openWindow(application, elsewhere);
    bool left = false;
    for (auto _ : state) {
        left = !left;
        manager.applyLayout(left ? WindowLayout::topLeft : WindowLayout::topRight, *application, 0);
        desktop.log.clear();
    }
    state.counters["remembered"] = static_cast<double>(manager.restoreHistory().records().size());
}
// A fixed number of times: remembering the windows takes longer than all of them.
BENCHMARK(commandWithRememberedWindows)->Arg(0)->Arg(10'000)->Iterations(300);

} // namespace
} // namespace brisk
