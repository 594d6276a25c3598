#include "platform/hot_key_contract.h"
#include "platform/simulated/desktop.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>

namespace brisk {
namespace {

class SimulatedHotKeyPlatform final : public HotKeyPlatform {
public:
    HotKeyService& hotKeys() override { return desktop_.hotKeys; }
    void press(std::uint32_t keyCode, std::uint32_t modifiers) override { desktop_.hotKeys.press(keyCode, modifiers); }
    bool holdElsewhere(std::uint32_t keyCode, std::uint32_t modifiers) override {
        return desktop_.hotKeys.heldElsewhere.emplace(keyCode, modifiers).second;
    }
    bool waitUntil(const std::function<bool()>& condition) override {
        desktop_.mainQueue.run();
        return condition();
    }

private:
    simulated::Desktop desktop_;
};

INSTANTIATE_TEST_SUITE_P(Simulated, HotKeyContract,
                         ::testing::Values([] { return std::make_unique<SimulatedHotKeyPlatform>(); }));

} // namespace
} // namespace brisk
