#pragma once

#include "platform/key_input.h"
#include "platform/simulated/call_log.h"

namespace brisk::simulated {

/// A keyboard with US labels whose native numbers are the logic's own: virtual key codes, and modifier flags as the
/// state. It has letters and digits, Return, Space, Tab, Delete, Escape, and the function keys.
class KeyInput final : public brisk::KeyInput {
public:
    explicit KeyInput(CallLog& log) : log_(log) {}

    std::optional<KeyEvent> keyDown(const NativeKeyPress& press) override;
    void beep() override { log_.record("beep"); }

private:
    CallLog& log_;
};

} // namespace brisk::simulated
