#pragma once

#include "platform/key_input.h"
#include "platform/x11/connection.h"
#include "platform/x11/modifier_map.h"

#include <xkbcommon/xkbcommon.h>

#include <memory>
#include <optional>

namespace brisk::x11 {

struct UnrefKeymap {
    void operator()(xkb_keymap* keymap) const { xkb_keymap_unref(keymap); }
};
using Keymap = std::unique_ptr<xkb_keymap, UnrefKeymap>;

/// What a press means under a keyboard map. Key codes are positions; characters are those of the keyboard layout in the
/// press's state. A key pad types what is printed on it, Num Lock or not. Escape, Backspace and Delete are where the
/// map has them: they are known by what they do, and a map may swap Escape with Caps Lock.
std::optional<KeyEvent> keyDown(const NativeKeyPress& press, xkb_keymap& keymap, const ModifierMap& modifierMap);

/// The keyboard of an X server; native key presses are an X key code and an X state with the keyboard group.
class KeyInput final : public brisk::KeyInput {
public:
    explicit KeyInput(Connection& connection);

    std::optional<KeyEvent> keyDown(const NativeKeyPress& press) override;
    void beep() override;

private:
    void handle(const xcb_generic_event_t& event);
    void readKeymap();

    Connection& connection_;
    /// The number of the keyboard extension's events, 0 without it (no event has that).
    std::uint8_t xkbEvent_ = 0;
    /// None while what was read is out of date.
    Keymap keymap_;
    ModifierMap modifierMap_;
    Connection::Subscription subscription_;
};

} // namespace brisk::x11
