#include "text/unicode_text.h"

#include <cwctype>
#include <locale.h> // NOLINT(modernize-deprecated-headers): newlocale is POSIX, <clocale> need not have it
#include <memory>
#include <optional>

namespace brisk {

namespace {

struct Character {
    /// The code point; none for a byte that starts no valid sequence.
    std::optional<char32_t> codePoint;
    std::string_view bytes;
};

/// The first character of a text that is not empty.
Character firstCharacter(std::string_view text) {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned lead = byte(0);
    std::size_t length = 0;
    char32_t codePoint = 0;
    char32_t smallest = 0;
    if (lead < 0x80) {
        return {.codePoint = lead, .bytes = text.substr(0, 1)};
    }
    if (lead >= 0xC0 && lead < 0xE0) {
        length = 2, codePoint = lead & 0x1FU, smallest = 0x80;
    } else if (lead >= 0xE0 && lead < 0xF0) {
        length = 3, codePoint = lead & 0x0FU, smallest = 0x800;
    } else if (lead >= 0xF0 && lead < 0xF8) {
        length = 4, codePoint = lead & 0x07U, smallest = 0x10000;
    }
    const Character invalid{.codePoint = std::nullopt, .bytes = text.substr(0, 1)};
    if (length == 0 || text.size() < length) {
        return invalid;
    }
    for (std::size_t i = 1; i < length; ++i) {
        if ((byte(i) & 0xC0U) != 0x80U) {
            return invalid;
        }
        codePoint = (codePoint << 6U) | (byte(i) & 0x3FU);
    }
    const bool isSurrogate = codePoint >= 0xD800 && codePoint <= 0xDFFF;
    if (codePoint < smallest || codePoint > 0x10FFFF || isSurrogate) {
        return invalid;
    }
    return {.codePoint = codePoint, .bytes = text.substr(0, length)};
}

void append(std::string& text, char32_t codePoint) {
    const auto put = [&](char32_t byte) { text += static_cast<char>(static_cast<unsigned char>(byte)); };
    if (codePoint < 0x80) {
        put(codePoint);
    } else if (codePoint < 0x800) {
        put(0xC0U | (codePoint >> 6U));
        put(0x80U | (codePoint & 0x3FU));
    } else if (codePoint < 0x10000) {
        put(0xE0U | (codePoint >> 12U));
        put(0x80U | ((codePoint >> 6U) & 0x3FU));
        put(0x80U | (codePoint & 0x3FU));
    } else {
        put(0xF0U | (codePoint >> 18U));
        put(0x80U | ((codePoint >> 12U) & 0x3FU));
        put(0x80U | ((codePoint >> 6U) & 0x3FU));
        put(0x80U | (codePoint & 0x3FU));
    }
}

/// White space and line breaks as Unicode has them (the property White_Space).
bool isWhiteSpace(char32_t c) {
    return (c >= 0x09 && c <= 0x0D) || c == 0x20 || c == 0x85 || c == 0xA0 || c == 0x1680 ||
           (c >= 0x2000 && c <= 0x200A) || c == 0x2028 || c == 0x2029 || c == 0x202F || c == 0x205F || c == 0x3000;
}

struct FreeLocale {
    void operator()(locale_t locale) const { freelocale(locale); }
};
using Locale = std::unique_ptr<std::remove_pointer_t<locale_t>, FreeLocale>;

template <class Convert>
std::string converted(std::string_view text, Convert convert) {
    // A locale of our own: the user's decides about language, not about what the capital of a letter is.
    const Locale locale{newlocale(LC_CTYPE_MASK, "C.UTF-8", locale_t{})};
    std::string result;
    while (!text.empty()) {
        const Character character = firstCharacter(text);
        if (character.codePoint && locale) {
            convert(result, *character.codePoint, locale.get());
        } else {
            result += character.bytes;
        }
        text.remove_prefix(character.bytes.size());
    }
    return result;
}

} // namespace

std::string trimmed(std::string_view text) {
    std::string_view kept;
    bool hasBegun = false;
    const char* begin = text.data();
    while (!text.empty()) {
        const Character character = firstCharacter(text);
        text.remove_prefix(character.bytes.size());
        if (character.codePoint && isWhiteSpace(*character.codePoint)) {
            continue;
        }
        if (!hasBegun) {
            hasBegun = true;
            begin = character.bytes.data();
        }
        kept = {begin, static_cast<std::size_t>(character.bytes.data() + character.bytes.size() - begin)};
    }
    return std::string(kept);
}

std::string uppercased(std::string_view text) {
    return converted(text, [](std::string& result, char32_t c, locale_t locale) {
        if (c == U'ß') {
            result += "SS";
        } else {
            append(result, static_cast<char32_t>(towupper_l(static_cast<wint_t>(c), locale)));
        }
    });
}

std::string lowercased(std::string_view text) {
    return converted(text, [](std::string& result, char32_t c, locale_t locale) {
        append(result, static_cast<char32_t>(towlower_l(static_cast<wint_t>(c), locale)));
    });
}

} // namespace brisk
