#pragma once

#include <cstdint>

namespace brisk {

/// Virtual key codes that the rules name (Carbon's `kVK_...`, by position on the keyboard).
inline constexpr std::uint32_t kVK_ANSI_C = 8;
inline constexpr std::uint32_t kVK_ANSI_U = 32;
inline constexpr std::uint32_t kVK_ANSI_I = 34;
inline constexpr std::uint32_t kVK_Return = 36;
inline constexpr std::uint32_t kVK_ANSI_J = 38;
inline constexpr std::uint32_t kVK_ANSI_K = 40;
inline constexpr std::uint32_t kVK_Space = 49;
inline constexpr std::uint32_t kVK_Delete = 51;
inline constexpr std::uint32_t kVK_Escape = 53;
inline constexpr std::uint32_t kVK_ANSI_KeypadEnter = 76;
inline constexpr std::uint32_t kVK_ForwardDelete = 117;
inline constexpr std::uint32_t kVK_LeftArrow = 123;
inline constexpr std::uint32_t kVK_RightArrow = 124;
inline constexpr std::uint32_t kVK_DownArrow = 125;
inline constexpr std::uint32_t kVK_UpArrow = 126;

} // namespace brisk
