#pragma once

#include "settings/app_settings.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <variant>

namespace brisk {

/// Deeper nesting of objects and arrays than this makes a file unreadable; the settings themselves nest five deep.
inline constexpr std::size_t maximumSettingsDepth = 512;
/// So do more values than this. A custom layout with a shortcut has fifteen.
inline constexpr std::size_t maximumSettingsValues = 4'000'000;

/// What is wrong with a settings file, in words for a developer.
struct SettingsDecodingError {
    std::string description;
};

/// Reads a settings file (JSON, RFC 8259, in UTF-8). Strict: one value of the wrong type, or a number beyond its
/// field's range, makes the whole file unreadable. Unknown members are ignored, absent or null ones take their default;
/// of a member given twice the last counts. 12.0 is as good an integer as 12. Never throws.
[[nodiscard]] std::variant<AppSettings, SettingsDecodingError> decodeSettings(std::string_view bytes);

/// The settings as indented JSON with sorted keys. Shortcuts that equal their default are left out, so that a user who
/// never touched one follows the default table of a later version. Text that is not UTF-8 gets replacement characters.
std::string encodeSettings(const AppSettings& settings);

} // namespace brisk
