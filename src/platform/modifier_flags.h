#pragma once

#include <cstdint>

namespace brisk {

/// Modifier keys held at an event (AppKit's bits).
using NSEventModifierFlags = std::uint32_t;
inline constexpr NSEventModifierFlags NSEventModifierFlagShift = 1U << 17U;
inline constexpr NSEventModifierFlags NSEventModifierFlagControl = 1U << 18U;
inline constexpr NSEventModifierFlags NSEventModifierFlagOption = 1U << 19U;
inline constexpr NSEventModifierFlags NSEventModifierFlagCommand = 1U << 20U;
inline constexpr NSEventModifierFlags NSEventModifierFlagDeviceIndependentFlagsMask = 0xFFFF0000U;

} // namespace brisk
