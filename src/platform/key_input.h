#pragma once

#include "platform/key_event.h"

#include <cstdint>
#include <optional>

namespace brisk {

/// A key press in the desktop's own numbers, as a toolkit passes them through with its event.
struct NativeKeyPress {
    std::uint32_t keyCode = 0;
    /// Modifiers and locks before the press, with whatever else the desktop keeps among them.
    std::uint32_t state = 0;
};

/// What a desktop knows of its keyboard beyond what toolkits tell. Main thread only.
class KeyInput {
public:
    virtual ~KeyInput() = default;
    /// The press in the terms of the logic; none for a key that only modifies others. A key that has no virtual key
    /// code gets `noVirtualKeyCode` and types nothing.
    virtual std::optional<KeyEvent> keyDown(const NativeKeyPress& press) = 0;
    /// The sound of a key that is not wanted.
    virtual void beep() = 0;

    static constexpr std::uint16_t noVirtualKeyCode = 0xFFFF;
};

} // namespace brisk
