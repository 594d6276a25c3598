#pragma once

#include <map>
#include <string>
#include <string_view>

/// The little that is needed of the Desktop Entry Specification.
namespace brisk::freedesktop {

/// The keys and values of a file's "Desktop Entry" group, the escapes of its strings undone. Of a key given twice the
/// first counts. Empty when the file has no such group.
std::map<std::string, std::string, std::less<>> parseDesktopEntry(std::string_view file);

/// A text as the value of a key of type string.
std::string escapedString(std::string_view text);

/// The value of an `Exec` key that starts a program without arguments: quoted where its path needs it, and escaped.
std::string execValue(std::string_view programPath);

} // namespace brisk::freedesktop
