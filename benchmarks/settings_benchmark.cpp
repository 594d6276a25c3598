#include "settings/settings_json.h"

#include <benchmark/benchmark.h>

#include <string>
#include <variant>

namespace brisk {
namespace {

/// Every layout with a shortcut of its own: the most a file of that many layouts can say.
AppSettings settingsWithLayouts(std::int64_t count) {
    AppSettings settings;
    for (std::int64_t i = 0; i < count; ++i) {
        CustomWindowLayout layout{.id = "00000000-0000-4000-8000-" + std::to_string(100'000'000'000 + i),
                                  .name = "Layout " + std::to_string(i),
                                  .selection = {6, 6, i % 6, i / 6 % 6, 1, 1},
                                  .isAvailableForDragging = i % 2 == 0};
        settings.commandHotkeys[commandIdentifier(layout)] = {
            .keyCode = static_cast<std::uint32_t>(i % 128), .modifiers = 6144, .display = "⌃⌥X"};
        settings.customWindowLayouts.push_back(std::move(layout));
    }
    return settings;
}

void decodeSettingsFile(benchmark::State& state) {
    const AppSettings settings = settingsWithLayouts(state.range(0));
    const std::string text = encodeSettings(settings);
    for (auto _ : state) {
        auto decoded = decodeSettings(text);
        if (std::get_if<AppSettings>(&decoded) == nullptr) {
            state.SkipWithError("unreadable");
            break;
        }
        benchmark::DoNotOptimize(decoded);
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}
BENCHMARK(decodeSettingsFile)->Arg(0)->Arg(1'000)->Unit(benchmark::kMicrosecond);

void encodeSettingsFile(benchmark::State& state) {
    const AppSettings settings = settingsWithLayouts(state.range(0));
    for (auto _ : state) {
        benchmark::DoNotOptimize(encodeSettings(settings));
    }
}
BENCHMARK(encodeSettingsFile)->Arg(0)->Arg(1'000)->Unit(benchmark::kMicrosecond);

/// What each edit costs on the main thread before the file's own thread takes over: a copy.
void copySettingsForASave(benchmark::State& state) {
    const AppSettings settings = settingsWithLayouts(state.range(0));
    for (auto _ : state) {
        AppSettings snapshot = settings; // NOLINT(performance-unnecessary-copy-initialization): it is what is measured
        benchmark::DoNotOptimize(snapshot);
    }
}
BENCHMARK(copySettingsForASave)->Arg(0)->Arg(1'000)->Unit(benchmark::kMicrosecond);

} // namespace
} // namespace brisk
