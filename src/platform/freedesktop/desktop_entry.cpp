#include "platform/freedesktop/desktop_entry.h"

#include <algorithm>
#include <array>
#include <utility>

namespace brisk::freedesktop {

namespace {

/// What an escape letter stands for, both ways.
constexpr std::array<std::pair<char, char>, 4> escapes{{{'n', '\n'}, {'t', '\t'}, {'r', '\r'}, {'\\', '\\'}}};

std::string_view trimmed(std::string_view text) {
    constexpr std::string_view spaces = " \t\r";
    const auto first = text.find_first_not_of(spaces);
    return first == std::string_view::npos ? std::string_view{}
                                           : text.substr(first, text.find_last_not_of(spaces) - first + 1);
}

std::string unescapedString(std::string_view value) {
    std::string text;
    for (std::size_t i = 0; i < value.size(); ++i) {
        if (value[i] != '\\' || i + 1 == value.size()) {
            text += value[i];
            continue;
        }
        const char letter = value[++i];
        const auto* const escape = std::ranges::find(escapes, letter, &std::pair<char, char>::first);
        if (letter == 's') {
            text += ' ';
        } else if (escape != escapes.end()) {
            text += escape->second;
        } else {
            text += '\\';
            text += letter;
        }
    }
    return text;
}

} // namespace

std::map<std::string, std::string, std::less<>> parseDesktopEntry(std::string_view file) {
    std::map<std::string, std::string, std::less<>> entry;
    bool isInGroup = false;
    while (!file.empty()) {
        const auto end = std::min(file.find('\n'), file.size());
        const std::string_view line = trimmed(file.substr(0, end));
        file.remove_prefix(std::min(end + 1, file.size()));
        if (line.starts_with('#')) {
            continue;
        }
        if (line.starts_with('[')) {
            isInGroup = line == "[Desktop Entry]";
        } else if (const auto equals = line.find('='); isInGroup && equals != std::string_view::npos) {
            entry.emplace(trimmed(line.substr(0, equals)), unescapedString(trimmed(line.substr(equals + 1))));
        }
    }
    return entry;
}

std::string escapedString(std::string_view text) {
    std::string value;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char character = text[i];
        const auto* const escape = std::ranges::find(escapes, character, &std::pair<char, char>::second);
        if (escape != escapes.end()) {
            value += '\\';
            value += escape->first;
        } else if (character == ' ' && (i == 0 || i + 1 == text.size())) {
            // Written plainly it would be taken for the space around the equals sign, or at the end of the line.
            value += "\\s";
        } else {
            value += character;
        }
    }
    return value;
}

std::string execValue(std::string_view programPath) {
    constexpr std::string_view reserved = " \t\n\"'\\><~|&;$*?#()`";
    constexpr std::string_view escapedWhenQuoted = "\"`$\\";
    const bool isQuoted = programPath.find_first_of(reserved) != std::string_view::npos;
    std::string argument;
    for (const char character : programPath) {
        if (isQuoted && escapedWhenQuoted.find(character) != std::string_view::npos) {
            argument += '\\';
        }
        // Outside and inside quotes alike, a percent sign begins a field code.
        argument += character == '%' ? std::string("%%") : std::string(1, character);
    }
    // The quoting is undone last when the entry is read, so the escapes of strings go around it.
    return escapedString(isQuoted ? '"' + argument + '"' : argument);
}

} // namespace brisk::freedesktop
