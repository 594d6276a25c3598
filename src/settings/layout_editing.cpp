#include "settings/layout_editing.h"

#include "text/unicode_text.h"

#include <random>

namespace brisk {

namespace {

/// A random UUID (RFC 9562, version 4) in its canonical form, in capitals.
std::string randomUUID() {
    std::array<std::uint8_t, 16> bytes{};
    std::random_device random;
    for (std::uint8_t& byte : bytes) {
        byte = static_cast<std::uint8_t>(random());
    }
    bytes[6] = static_cast<std::uint8_t>((bytes[6] & 0x0FU) | 0x40U);
    bytes[8] = static_cast<std::uint8_t>((bytes[8] & 0x3FU) | 0x80U);
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string text;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        if (i == 4 || i == 6 || i == 8 || i == 10) {
            text += '-';
        }
        text += digits[bytes[i] >> 4U];
        text += digits[bytes[i] & 0x0FU];
    }
    return text;
}

} // namespace

std::string defaultLayoutName(const AppSettings& settings) {
    return "Custom Layout " + std::to_string(settings.customWindowLayouts.size() + 1);
}

CustomWindowLayout defaultNewLayout(const AppSettings& settings) {
    return {.id = randomUUID(),
            .name = defaultLayoutName(settings),
            .selection = wholeGrid(standardGridSize, standardGridSize)};
}

WindowGridSelection wholeGrid(std::optional<std::int64_t> columns, std::optional<std::int64_t> rows) {
    const std::int64_t columnCount = columns.value_or(standardGridSize);
    const std::int64_t rowCount = rows.value_or(standardGridSize);
    return normalized({.columns = columnCount, .rows = rowCount, .columnSpan = columnCount, .rowSpan = rowCount});
}

std::string layoutName(std::string_view typed, const std::string& defaultName) {
    std::string name = trimmed(typed);
    return name.empty() ? defaultName : name;
}

} // namespace brisk
