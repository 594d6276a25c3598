#include "platform/x11/key_input.h"

#include "hotkeys/function_keys.h"
#include "hotkeys/modifier_table.h"
#include "hotkeys/virtual_keys.h"
#include "platform/x11/events.h"
#include "platform/x11/virtual_key_codes.h"
#include "platform/x11/xkb.h"

#include <xkbcommon/xkbcommon-keysyms.h>
#include <xkbcommon/xkbcommon-x11.h>

#include <array>
#include <string>

namespace brisk::x11 {

namespace {

struct UnrefState {
    void operator()(xkb_state* state) const { xkb_state_unref(state); }
};
using State = std::unique_ptr<xkb_state, UnrefState>;

struct UnrefContext {
    void operator()(xkb_context* context) const { xkb_context_unref(context); }
};

/// Whether pressing the key changes what others mean: a modifier, a lock or a switch of layouts.
bool modifiesOthers(xkb_keycode_t keyCode, xkb_keymap& keymap, xkb_layout_index_t group) {
    const State state{xkb_state_new(&keymap)};
    xkb_state_update_mask(state.get(), 0, 0, 0, 0, 0, group);
    return xkb_state_update_key(state.get(), keyCode, XKB_KEY_DOWN) != 0;
}

bool isOnKeypad(xkb_keysym_t keysym) {
    return keysym >= XKB_KEY_KP_Space && keysym <= XKB_KEY_KP_Equal;
}

std::optional<std::uint32_t> keyCodeOf(xkb_keysym_t keysym) {
    switch (keysym) {
    case XKB_KEY_Escape:
        return kVK_Escape;
    case XKB_KEY_BackSpace:
        return kVK_Delete;
    case XKB_KEY_Delete:
        return kVK_ForwardDelete;
    default:
        return std::nullopt;
    }
}

std::string textOf(xkb_keysym_t keysym) {
    std::array<char, 16> text{};
    const int length = xkb_keysym_to_utf8(keysym, text.data(), text.size());
    return length > 1 ? std::string(text.data()) : std::string(); // the length counts the terminating null
}

} // namespace

std::optional<KeyEvent> keyDown(const NativeKeyPress& press, xkb_keymap& keymap, const ModifierMap& modifierMap) {
    const xkb_layout_index_t group = (press.state >> 13U) & 3U;
    if (modifiesOthers(press.keyCode, keymap, group)) {
        return std::nullopt;
    }
    KeyEvent event{.keyCode = KeyInput::noVirtualKeyCode};
    for (const Modifier& modifier : modifierTable) {
        const auto mask = modifierMap.maskOf(modifier.carbonMask);
        if (mask && (press.state & *mask) == *mask) {
            event.modifierFlags |= modifier.flag;
        }
    }

    const State state{xkb_state_new(&keymap)};
    xkb_state_update_mask(state.get(), press.state & XCB_MOD_MASK_SHIFT, 0, 0, 0, 0, group);
    xkb_keysym_t keysym = xkb_state_key_get_one_sym(state.get(), press.keyCode);
    if (isOnKeypad(keysym)) {
        xkb_state_update_mask(state.get(), 0, 0, modifierMap.numLock, 0, 0, group);
        keysym = xkb_state_key_get_one_sym(state.get(), press.keyCode);
    }

    auto keyCode = keyCodeOf(keysym);
    if (!keyCode && press.keyCode <= 0xFF) {
        keyCode = virtualKeyCodeOf(static_cast<std::uint8_t>(press.keyCode));
    }
    if (!keyCode) {
        return event;
    }
    event.keyCode = static_cast<std::uint16_t>(*keyCode);
    if (const auto character = functionKeyCharacter(*keyCode)) {
        event.charactersIgnoringModifiers = *character;
    } else if (std::string text = textOf(keysym); !text.empty()) {
        event.charactersIgnoringModifiers = std::move(text);
    }
    return event;
}

KeyInput::KeyInput(Connection& connection) : connection_(connection) {
    xcb_connection_t* const xcb = connection_.xcb();
    if (xkb_x11_setup_xkb_extension(xcb, XKB_X11_MIN_MAJOR_XKB_VERSION, XKB_X11_MIN_MINOR_XKB_VERSION,
                                    XKB_X11_SETUP_XKB_EXTENSION_NO_FLAGS, nullptr, nullptr, &xkbEvent_, nullptr) != 0) {
        constexpr std::uint16_t events = XCB_XKB_EVENT_TYPE_NEW_KEYBOARD_NOTIFY | XCB_XKB_EVENT_TYPE_MAP_NOTIFY;
        constexpr std::uint16_t parts = XCB_XKB_MAP_PART_KEY_TYPES | XCB_XKB_MAP_PART_KEY_SYMS |
                                        XCB_XKB_MAP_PART_MODIFIER_MAP | XCB_XKB_MAP_PART_KEY_ACTIONS |
                                        XCB_XKB_MAP_PART_VIRTUAL_MODS | XCB_XKB_MAP_PART_VIRTUAL_MOD_MAP;
        xcb_xkb_select_events(xcb, XCB_XKB_ID_USE_CORE_KBD, events, 0, XCB_XKB_EVENT_TYPE_NEW_KEYBOARD_NOTIFY, parts,
                              parts, nullptr);
        xcb_flush(xcb);
    }
    subscription_ = connection_.addEventHandler([this](const xcb_generic_event_t& event) { handle(event); });
}

std::optional<KeyEvent> KeyInput::keyDown(const NativeKeyPress& press) {
    // The press came by the toolkit's connection; a change of the map before it has come by ours.
    connection_.dispatchEvents();
    if (!keymap_) {
        readKeymap();
    }
    if (!keymap_) {
        return KeyEvent{.keyCode = noVirtualKeyCode};
    }
    return x11::keyDown(press, *keymap_, modifierMap_);
}

void KeyInput::beep() {
    xcb_bell(connection_.xcb(), 0);
    xcb_flush(connection_.xcb());
}

void KeyInput::handle(const xcb_generic_event_t& event) {
    const std::uint8_t type = typeOf(event);
    const bool isKeyboardEvent = type == xkbEvent_ && type != 0;
    if (type == XCB_MAPPING_NOTIFY ||
        (isKeyboardEvent && (event.pad0 == XCB_XKB_NEW_KEYBOARD_NOTIFY || event.pad0 == XCB_XKB_MAP_NOTIFY))) {
        keymap_.reset();
    }
}

void KeyInput::readKeymap() {
    xcb_connection_t* const xcb = connection_.xcb();
    const std::unique_ptr<xkb_context, UnrefContext> context{xkb_context_new(XKB_CONTEXT_NO_DEFAULT_INCLUDES)};
    const std::int32_t device = xkb_x11_get_core_keyboard_device_id(xcb);
    if (!context || device < 0) {
        return;
    }
    keymap_.reset(xkb_x11_keymap_new_from_device(context.get(), xcb, device, XKB_KEYMAP_COMPILE_NO_FLAGS));
    modifierMap_ = readModifierMap(connection_).value_or(ModifierMap{});
}

} // namespace brisk::x11
