#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace brisk {

/// What the program's package says about it.
class BundleInfo {
public:
    virtual ~BundleInfo() = default;
    /// The entry of the information dictionary if there is one and it is a string.
    virtual std::optional<std::string> stringForInfoDictionaryKey(std::string_view key) const = 0;
};

} // namespace brisk
