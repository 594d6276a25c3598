#pragma once

#include "platform/hot_key_service.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <vector>

namespace brisk {

/// What the contract needs of a platform besides its hot keys: a keyboard, another program, and the time that a press
/// takes to be reported.
class HotKeyPlatform {
public:
    virtual ~HotKeyPlatform() = default;
    virtual HotKeyService& hotKeys() = 0;
    /// Presses the key while the modifiers are held, and lets go of all. What this causes may be reported later.
    virtual void press(std::uint32_t keyCode, std::uint32_t modifiers) = 0;
    /// Another program registers the combination; false when it may not.
    virtual bool holdElsewhere(std::uint32_t keyCode, std::uint32_t modifiers) = 0;
    /// Goes on until `condition` holds; false when it does not come true.
    virtual bool waitUntil(const std::function<bool()>& condition) = 0;
};

/// What every `HotKeyService` does. A platform's tests include this header once and instantiate the suite with a
/// factory of its own:
///     INSTANTIATE_TEST_SUITE_P(X11, HotKeyContract, ::testing::Values([] { return ...; }));
class HotKeyContract : public ::testing::TestWithParam<std::function<std::unique_ptr<HotKeyPlatform>()>> {
protected:
    static constexpr std::uint32_t keyC = 8;
    static constexpr std::uint32_t keyK = 40;
    static constexpr std::uint32_t keyLeftArrow = 123;
    static constexpr std::uint32_t signature = 0x74657374;

    HotKeyContract() : platform_(GetParam()()) {
        handler_ = hotKeys().InstallEventHandler([this](std::optional<EventHotKeyID> id) {
            pressed_.push_back(id.value_or(EventHotKeyID{}).id);
            return noErr;
        });
    }

    HotKeyService& hotKeys() { return platform_->hotKeys(); }
    HotKeyPlatform& platform() { return *platform_; }
    EventHandlerRef handler() const { return handler_.handler; }

    HotKeyRegistration registerKey(std::uint32_t keyCode, std::uint32_t modifiers, std::uint32_t id) {
        return hotKeys().RegisterEventHotKey(keyCode, modifiers, {.signature = signature, .id = id});
    }
    void press(std::uint32_t keyCode, std::uint32_t modifiers) { platform_->press(keyCode, modifiers); }

    /// Reports come in the order of the presses, so the one that is waited for last shows that no other is on its way.
    void expectPresses(const std::vector<std::uint32_t>& ids) {
        EXPECT_TRUE(platform_->waitUntil([&] { return pressed_.size() >= ids.size(); }));
        EXPECT_EQ(pressed_, ids);
    }

private:
    std::unique_ptr<HotKeyPlatform> platform_;
    EventHandlerInstallation handler_;
    std::vector<std::uint32_t> pressed_;
};

TEST_P(HotKeyContract, APressIsReportedByItsId) {
    ASSERT_EQ(registerKey(keyLeftArrow, controlKey | optionKey, 100).status, noErr);
    ASSERT_EQ(registerKey(keyC, controlKey | optionKey, 101).status, noErr);
    ASSERT_EQ(registerKey(keyC, cmdKey | shiftKey, 103).status, noErr);
    press(keyC, cmdKey | shiftKey);
    press(keyLeftArrow, controlKey | optionKey);
    press(keyC, controlKey | optionKey);
    expectPresses({103, 100, 101});
}

TEST_P(HotKeyContract, OtherModifiersAreOtherCombinations) {
    ASSERT_EQ(registerKey(keyC, controlKey | optionKey, 100).status, noErr);
    press(keyC, 0);
    press(keyC, controlKey);
    press(keyC, controlKey | optionKey | shiftKey);
    press(keyC, controlKey | cmdKey);
    press(keyK, controlKey | optionKey);
    press(keyC, controlKey | optionKey);
    expectPresses({100});
}

TEST_P(HotKeyContract, ACombinationHasOneOwner) {
    ASSERT_EQ(registerKey(keyC, controlKey | optionKey, 100).status, noErr);
    EXPECT_EQ(registerKey(keyC, controlKey | optionKey, 101).status, eventHotKeyExistsErr) << "ours already";
    ASSERT_TRUE(platform().holdElsewhere(keyK, controlKey | optionKey));
    EXPECT_EQ(registerKey(keyK, controlKey | optionKey, 102).status, eventHotKeyExistsErr) << "another program's";
    EXPECT_EQ(registerKey(keyK, controlKey | cmdKey, 103).status, noErr) << "the refusals took no other key along";
    press(keyK, controlKey | optionKey);
    press(keyC, controlKey | optionKey);
    press(keyK, controlKey | cmdKey);
    expectPresses({100, 103});
}

TEST_P(HotKeyContract, UnregisteringFreesTheCombination) {
    const HotKeyRegistration first = registerKey(keyC, controlKey | optionKey, 100);
    const HotKeyRegistration second = registerKey(keyK, controlKey | optionKey, 101);
    ASSERT_EQ(first.status, noErr);
    ASSERT_EQ(second.status, noErr);
    hotKeys().UnregisterEventHotKey(first.hotKey);
    press(keyC, controlKey | optionKey);
    press(keyK, controlKey | optionKey);
    expectPresses({101});

    EXPECT_TRUE(platform().holdElsewhere(keyC, controlKey | optionKey)) << "free for another program";
    hotKeys().UnregisterEventHotKey(second.hotKey);
    ASSERT_EQ(registerKey(keyK, controlKey | optionKey, 102).status, noErr) << "free for us again";
    press(keyK, controlKey | optionKey);
    expectPresses({101, 102});
}

TEST_P(HotKeyContract, SuspendedKeysAreKeysLikeAnyOther) {
    ASSERT_EQ(registerKey(keyC, controlKey | optionKey, 100).status, noErr);
    ASSERT_EQ(registerKey(keyLeftArrow, controlKey | optionKey, 101).status, noErr);
    {
        const HotKeySuspension outer(hotKeys());
        const HotKeySuspension inner(hotKeys());
        press(keyC, controlKey | optionKey);
        EXPECT_TRUE(platform().holdElsewhere(keyC, controlKey | optionKey)) << "free for another program";
        EXPECT_EQ(registerKey(keyK, controlKey | optionKey, 102).status, noErr);
        EXPECT_EQ(registerKey(keyC, controlKey | optionKey, 103).status, eventHotKeyExistsErr) << "ours already";
        press(keyK, controlKey | optionKey);
    }
    press(keyC, controlKey | optionKey);
    press(keyK, controlKey | optionKey);
    press(keyLeftArrow, controlKey | optionKey);
    expectPresses({102, 101});
}

TEST_P(HotKeyContract, ARemovedHandlerHearsNothing) {
    ASSERT_EQ(registerKey(keyC, controlKey | optionKey, 100).status, noErr);
    hotKeys().RemoveEventHandler(handler());
    std::vector<std::uint32_t> heard;
    const auto successor = hotKeys().InstallEventHandler([&](std::optional<EventHotKeyID> id) {
        heard.push_back(id.value_or(EventHotKeyID{}).id);
        return noErr;
    });
    press(keyC, controlKey | optionKey);
    EXPECT_TRUE(platform().waitUntil([&] { return !heard.empty(); }));
    EXPECT_EQ(heard, std::vector<std::uint32_t>{100});
    expectPresses({});
    hotKeys().RemoveEventHandler(successor.handler);
}

} // namespace brisk
