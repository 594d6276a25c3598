#pragma once

#include "platform/x11/connection.h"

#include <cstdint>
#include <optional>

namespace brisk::x11 {

/// The mouse and the modifier keys as the server tells of them whoever has grabbed the pointer: raw events of the input
/// extension, and the state that the keyboard extension tells.
class RawInput {
public:
    explicit RawInput(Connection& connection) : connection_(connection) {}

    /// Finds out whether the server has what is needed. Nothing is heard before.
    bool isAvailable();

    enum class Selection : std::uint8_t { nothing, buttons, buttonsAndModifiers, everything };
    /// Says what is to be heard; takes effect with what is sent next.
    void select(Selection selection);

    struct Event {
        enum class Kind : std::uint8_t { press, release, motion, modifiers };
        Kind kind;
        /// The physical button of a press or release, the modifiers' new state.
        std::uint32_t detail = 0;
    };
    /// What an event of the connection tells; none for any other, the wheel's included.
    std::optional<Event> eventIn(const xcb_generic_event_t& event) const;

private:
    std::optional<Event> inputEventIn(const xcb_generic_event_t& event) const;

    Connection& connection_;
    /// The extensions' numbers, 0 as long as they are not known.
    std::uint8_t inputExtension_ = 0;
    std::uint8_t xkbEvent_ = 0;
};

} // namespace brisk::x11
