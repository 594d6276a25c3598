#pragma once

#include "platform/x11/connection.h"

#include <array>
#include <cstdint>
#include <optional>

namespace brisk::x11 {

/// Which bits of an X modifier mask mean which modifier key. Shift, Control and Caps Lock have bits of their own; what
/// the other five mean is the keyboard map's affair and may change at any time.
struct ModifierMap {
    /// Each is one bit, or 0 where the keyboard map has no such modifier.
    std::uint16_t numLock = 0;
    /// Alt.
    std::uint16_t option = 0;
    /// Super.
    std::uint16_t command = 0;

    /// The bits of a Carbon modifier mask; none when it has bits of another meaning or a modifier that no key gives.
    std::optional<std::uint16_t> maskOf(std::uint32_t carbonModifiers) const;
    /// The state of the locks, in every combination. Without a Num Lock some come twice.
    std::array<std::uint16_t, 4> lockVariants() const;
    /// What of an event's state tells one hot key from another: neither locks nor mouse buttons nor keyboard group.
    std::uint16_t withoutLocks(std::uint16_t state) const;

    friend bool operator==(const ModifierMap&, const ModifierMap&) = default;
};

/// Asks the server, in one round trip; none when it does not answer.
std::optional<ModifierMap> readModifierMap(const Connection& connection);

} // namespace brisk::x11
