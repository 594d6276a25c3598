#pragma once

#include <string>
#include <string_view>

namespace brisk {

/// Text operations on UTF-8. Bytes that are not UTF-8 pass through unchanged.

/// Without white space and line breaks at both ends (Unicode's, so that a no-break space or an ideographic one goes
/// too).
std::string trimmed(std::string_view text);
/// In capitals, character by character; "ß", the one key that has no capital of its own, becomes "SS".
std::string uppercased(std::string_view text);
/// In small letters, character by character.
std::string lowercased(std::string_view text);

} // namespace brisk
