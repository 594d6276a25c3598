#include "platform/x11/hot_keys.h"

#include "desktop/event_loop.h"
#include "desktop/support/input.h"
#include "desktop/support/process.h"
#include "desktop/support/virtual_server.h"
#include "desktop/support/wait.h"
#include "platform/hot_key_contract.h"
#include "platform/x11/events.h"
#include "platform/x11/virtual_key_codes.h"
#include "platform/x11/xkb.h"

#include <algorithm>
#include <array>
#include <utility>

namespace brisk::desktop {
namespace {

constexpr std::uint32_t keyC = 8;
constexpr std::uint32_t keyK = 40;
constexpr std::uint16_t controlAlt = XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1;
constexpr std::uint16_t capsLock = XCB_MOD_MASK_LOCK;
constexpr std::uint16_t numLock = XCB_MOD_MASK_2;

bool grab(DesktopConnection& client, Key key, std::uint16_t modifiers) {
    const auto cookie = xcb_grab_key_checked(client.xcb(), 0, client.root(), modifiers, static_cast<std::uint8_t>(key),
                                             XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    return Reply<xcb_generic_error_t>{xcb_request_check(client.xcb(), cookie)} == nullptr;
}

/// A server, Brisk's hot keys on it, a keyboard and another client.
class HotKeysDesktop : public HotKeyPlatform {
public:
    HotKeysDesktop() {
        const auto dispatch = [this] { connection_->dispatchEvents(); };
        loop_.watch(connection_->fileDescriptor(), dispatch);
        loop_.setEndOfTurn(dispatch);
    }

    HotKeyService& hotKeys() override { return *hotKeys_; }
    void press(std::uint32_t keyCode, std::uint32_t modifiers) override {
        settle();
        struct Modifier {
            std::uint32_t bit;
            Key key;
        };
        std::vector<Key> held;
        for (const Modifier& modifier : {Modifier{controlKey, Key::leftControl}, Modifier{optionKey, Key::leftAlt},
                                         Modifier{shiftKey, Key::leftShift}, Modifier{cmdKey, Key::leftSuper}}) {
            if ((modifiers & modifier.bit) != 0) {
                held.push_back(modifier.key);
            }
        }
        keyboard.press(static_cast<Key>(*x11::xKeyCodeOf(keyCode)), held);
    }
    bool holdElsewhere(std::uint32_t keyCode, std::uint32_t modifiers) override {
        settle();
        const auto mask =
            x11::ModifierMap{.numLock = numLock, .option = XCB_MOD_MASK_1, .command = XCB_MOD_MASK_4}.maskOf(modifiers);
        return std::ranges::all_of(std::array<unsigned, 4>{0, capsLock, numLock, capsLock | numLock},
                                   [&](unsigned locks) {
                                       return grab(other, static_cast<Key>(*x11::xKeyCodeOf(keyCode)),
                                                   static_cast<std::uint16_t>(*mask | locks));
                                   });
    }
    /// The requests of one connection are carried out in order, those of two are not: what Brisk asked for so far is
    /// done when this returns.
    void settle() {
        xcb_connection_t* const xcb = connection_->xcb();
        const Reply<xcb_get_input_focus_reply_t> done{
            xcb_get_input_focus_reply(xcb, xcb_get_input_focus(xcb), nullptr)};
    }
    bool waitUntil(const std::function<bool()>& condition) override { return loop_.runUntil(condition); }

    x11::Connection& connection() { return *connection_; }
    EventLoop& loop() { return loop_; }
    void endHotKeys() { hotKeys_.reset(); }

    VirtualServer server;
    DesktopConnection other{server.display()};
    Keyboard keyboard{other};

private:
    std::unique_ptr<x11::Connection> connection_ = x11::Connection::open(server.display().c_str());
    EventLoop loop_;
    std::unique_ptr<x11::HotKeys> hotKeys_ = std::make_unique<x11::HotKeys>(*connection_, loop_);
};

class HotKeysTest : public testing::Test {
protected:
    HotKeysTest() {
        (void)desktop.hotKeys().InstallEventHandler([this](std::optional<EventHotKeyID> id) {
            reports.push_back(id->id);
            return noErr;
        });
    }

    HotKeyRegistration registerKey(std::uint32_t keyCode, std::uint32_t modifiers, std::uint32_t id = 100) {
        return desktop.hotKeys().RegisterEventHotKey(keyCode, modifiers, {.signature = 1, .id = id});
    }
    /// One press is one report.
    void expectFires(std::uint32_t keyCode, std::uint32_t modifiers, std::uint32_t id) {
        reports.clear();
        desktop.press(keyCode, modifiers);
        EXPECT_TRUE(desktop.waitUntil([&] { return !reports.empty(); }));
        EXPECT_EQ(reports, std::vector<std::uint32_t>{id});
    }
    /// Presses a canary after it, which is registered under 200, and hears that alone.
    void expectSilent(std::uint32_t keyCode, std::uint32_t modifiers) {
        reports.clear();
        desktop.press(keyCode, modifiers);
        desktop.press(keyK, controlKey | shiftKey);
        EXPECT_TRUE(desktop.waitUntil([&] { return std::ranges::count(reports, 200U) != 0; }));
        EXPECT_EQ(reports, std::vector<std::uint32_t>{200});
    }
    void registerCanary() { ASSERT_EQ(registerKey(keyK, controlKey | shiftKey, 200).status, noErr); }

    /// Which keys give which modifier, as `xmodmap` would change it.
    void moveModifier(unsigned from, unsigned to) {
        xcb_connection_t* const xcb = desktop.other.xcb();
        const Reply<xcb_get_modifier_mapping_reply_t> map{
            xcb_get_modifier_mapping_reply(xcb, xcb_get_modifier_mapping(xcb), nullptr)};
        const std::size_t width = map->keycodes_per_modifier;
        xcb_keycode_t* const keyCodes = xcb_get_modifier_mapping_keycodes(map.get());
        std::swap_ranges(keyCodes + from * width, keyCodes + (from + 1) * width, keyCodes + to * width);
        const Reply<xcb_set_modifier_mapping_reply_t> reply{xcb_set_modifier_mapping_reply(
            xcb, xcb_set_modifier_mapping(xcb, map->keycodes_per_modifier, keyCodes), nullptr)};
        ASSERT_EQ(reply->status, XCB_MAPPING_STATUS_SUCCESS);
    }
    /// Until the notices on their way have been answered.
    void followMap() {
        const auto before = requestCount();
        ASSERT_TRUE(desktop.waitUntil([&] { return requestCount() >= before + 2; }));
    }
    /// Requests of Brisk's so far, this question included.
    unsigned requestCount() { return xcb_no_operation(desktop.connection().xcb()).sequence - ++questions; }

    HotKeysDesktop desktop;
    std::vector<std::uint32_t> reports;
    unsigned questions = 0;
};

TEST_F(HotKeysTest, LocksDoNotMatter) {
    ASSERT_EQ(registerKey(keyC, controlKey | optionKey).status, noErr);
    struct Row {
        const char* why;
        std::optional<Key> toggle;
        std::uint16_t locks;
    };
    for (const Row& row : {
             Row{"no lock", std::nullopt, 0},
             Row{"Caps Lock", Key::capsLock, capsLock},
             Row{"both", Key::numLock, capsLock | numLock},
             Row{"Num Lock", Key::capsLock, numLock},
         }) {
        SCOPED_TRACE(row.why);
        if (row.toggle) {
            desktop.keyboard.press(*row.toggle);
        }
        xcb_connection_t* const xcb = desktop.other.xcb();
        const Reply<xcb_query_pointer_reply_t> state{
            xcb_query_pointer_reply(xcb, xcb_query_pointer(xcb, desktop.other.root()), nullptr)};
        ASSERT_EQ(state->mask, row.locks);
        expectFires(keyC, controlKey | optionKey, 100);
    }
}

TEST_F(HotKeysTest, AHeldKeyReportsOnePress) {
    ASSERT_EQ(registerKey(keyC, controlKey | optionKey).status, noErr);
    registerCanary();
    Process repeatRate({"xset", "r", "rate", "100", "50"}, desktop.server.environment());
    ASSERT_TRUE(waitUntil([&] { return !repeatRate.isRunning(); }));

    using enum x11::KeyRepeat::Style;
    for (const auto style : {presses, releasesAndPresses}) {
        SCOPED_TRACE(style == presses ? "the server repeats presses" : "the server repeats releases, too");
        // The hot keys have asked for the first; the second is what they would get of a server that cannot.
        xcb_connection_t* const xcb = desktop.connection().xcb();
        xcb_discard_reply(xcb, xcb_xkb_per_client_flags(xcb, XCB_XKB_ID_USE_CORE_KBD,
                                                        XCB_XKB_PER_CLIENT_FLAG_DETECTABLE_AUTO_REPEAT,
                                                        style == presses ? 1 : 0, 0, 0, 0)
                                   .sequence);
        x11::KeyRepeat repeat{style};
        int pressEvents = 0;
        int releaseEvents = 0;
        int firstPresses = 0;
        const auto subscription = desktop.connection().addEventHandler([&](const xcb_generic_event_t& event) {
            const auto& key = x11::as<xcb_key_press_event_t>(event);
            if (event.response_type == XCB_KEY_PRESS) {
                ++pressEvents;
                firstPresses += repeat.press(key.detail, key.time) ? 1 : 0;
            } else if (event.response_type == XCB_KEY_RELEASE) {
                ++releaseEvents;
                repeat.release(key.detail, key.time);
            }
        });
        reports.clear();
        for (const Key key : {Key::leftControl, Key::leftAlt, Key::c}) {
            desktop.keyboard.down(key);
        }
        EXPECT_TRUE(desktop.waitUntil([&] { return pressEvents >= 5; }));
        EXPECT_EQ(releaseEvents == 0, style == presses);
        EXPECT_EQ(firstPresses, 1);
        if (style == presses) {
            EXPECT_EQ(reports, std::vector<std::uint32_t>{100});
        }
        for (const Key key : {Key::c, Key::leftAlt, Key::leftControl}) {
            desktop.keyboard.up(key);
        }
        expectFires(keyC, controlKey | optionKey, 100);
    }
}

TEST_F(HotKeysTest, OneVariantHeldElsewhereRefusesAll) {
    ASSERT_TRUE(grab(desktop.other, Key::c, controlAlt | numLock));
    EXPECT_EQ(registerKey(keyC, controlKey | optionKey).status, eventHotKeyExistsErr);
    desktop.settle();
    for (const unsigned locks : {0U, unsigned{capsLock}, unsigned{capsLock} | numLock}) {
        EXPECT_TRUE(grab(desktop.other, Key::c, static_cast<std::uint16_t>(controlAlt | locks)))
            << "left grabbed: " << locks;
    }
}

TEST_F(HotKeysTest, WhatIsNoCombinationIsRefused) {
    struct Row {
        const char* why;
        std::uint32_t keyCode;
        std::uint32_t modifiers;
    };
    for (const Row& row : {
             Row{"no such key", 0x7F, controlKey},
             Row{"a modifier that hot keys do not have", keyC, controlKey | 1024},
             Row{"AppKit's bits are not the hot keys'", keyC, 1U << 18U},
         }) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(registerKey(row.keyCode, row.modifiers).status, eventHotKeyInvalidErr);
    }
}

TEST_F(HotKeysTest, NothingStaysGrabbedAtTheEnd) {
    ASSERT_EQ(registerKey(keyC, controlKey | optionKey).status, noErr);
    ASSERT_FALSE(grab(desktop.other, Key::c, XCB_MOD_MASK_ANY));
    desktop.endHotKeys();
    desktop.settle();
    EXPECT_TRUE(grab(desktop.other, Key::c, XCB_MOD_MASK_ANY));
}

TEST_F(HotKeysTest, ModifiersAreFollowedWhereTheyMove) {
    ASSERT_EQ(registerKey(keyC, cmdKey | shiftKey).status, noErr);
    registerCanary();
    expectFires(keyC, cmdKey | shiftKey, 100);

    moveModifier(XCB_MAP_INDEX_4, XCB_MAP_INDEX_3);
    followMap();
    expectFires(keyC, cmdKey | shiftKey, 100);

    moveModifier(XCB_MAP_INDEX_2, XCB_MAP_INDEX_4);
    followMap();
    desktop.keyboard.press(Key::numLock);
    expectFires(keyC, cmdKey | shiftKey, 100);
    desktop.keyboard.press(Key::numLock);
    expectSilent(keyC, shiftKey);
}

TEST_F(HotKeysTest, AnotherLayoutIsFollowed) {
    ASSERT_EQ(registerKey(keyC, optionKey | shiftKey).status, noErr);
    ASSERT_EQ(registerKey(keyC, cmdKey | shiftKey, 101).status, noErr);
    expectFires(keyC, optionKey | shiftKey, 100);
    const auto before = requestCount();
    Process setLayout({"setxkbmap", "-layout", "de", "-option", "altwin:swap_alt_win"}, desktop.server.environment());
    ASSERT_TRUE(waitUntil([&] { return !setLayout.isRunning(); }));
    ASSERT_TRUE(desktop.waitUntil([&] { return requestCount() >= before + 2; }));
    // The keys changed places: the left Alt key is Super now.
    expectFires(keyC, optionKey | shiftKey, 101);
    expectFires(keyC, cmdKey | shiftKey, 100);
}

TEST_F(HotKeysTest, AStormOfIrrelevantChangesCostsNoGrab) {
    for (std::uint32_t virtualKey = 0; virtualKey < 5; ++virtualKey) {
        ASSERT_EQ(registerKey(virtualKey, controlKey | optionKey, virtualKey).status, noErr);
    }
    const auto before = requestCount();
    constexpr xcb_keycode_t unusedKey = 248;
    for (xcb_keysym_t keySym = 'a'; keySym <= 'z'; ++keySym) {
        xcb_change_keyboard_mapping(desktop.other.xcb(), 1, unusedKey, 1, &keySym);
    }
    desktop.other.synchronize();
    ASSERT_TRUE(desktop.waitUntil([&] { return requestCount() > before; }));
    desktop.loop().runFor(std::chrono::milliseconds(50));
    EXPECT_LE(requestCount() - before, 4U) << "read once, perhaps twice";
    expectFires(2, controlKey | optionKey, 2);
}

TEST_F(HotKeysTest, ARegistrationLostToAMapChangeComesBack) {
    ASSERT_EQ(registerKey(keyC, cmdKey | shiftKey).status, noErr);
    registerCanary();
    constexpr std::uint16_t afterTheMove = XCB_MOD_MASK_3 | XCB_MOD_MASK_SHIFT;
    ASSERT_TRUE(grab(desktop.other, Key::c, afterTheMove));

    moveModifier(XCB_MAP_INDEX_4, XCB_MAP_INDEX_3);
    followMap();
    expectSilent(keyC, cmdKey | shiftKey);
    EXPECT_EQ(registerKey(keyC, cmdKey | shiftKey, 101).status, eventHotKeyExistsErr) << "still ours";

    xcb_ungrab_key(desktop.other.xcb(), static_cast<std::uint8_t>(Key::c), desktop.other.root(), afterTheMove);
    moveModifier(XCB_MAP_INDEX_5, XCB_MAP_INDEX_5);
    followMap();
    expectFires(keyC, cmdKey | shiftKey, 100);
}

} // namespace
} // namespace brisk::desktop

namespace brisk {

INSTANTIATE_TEST_SUITE_P(X11, HotKeyContract,
                         ::testing::Values([] { return std::make_unique<desktop::HotKeysDesktop>(); }));

} // namespace brisk
