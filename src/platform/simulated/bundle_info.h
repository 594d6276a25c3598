#pragma once

#include "platform/bundle_info.h"

#include <cstdint>
#include <map>
#include <variant>

namespace brisk::simulated {

/// An information dictionary of strings and numbers.
class BundleInfo final : public brisk::BundleInfo {
public:
    std::map<std::string, std::variant<std::string, std::int64_t>, std::less<>> infoDictionary;

    std::optional<std::string> stringForInfoDictionaryKey(std::string_view key) const override {
        const auto entry = infoDictionary.find(key);
        const auto* const string = entry != infoDictionary.end() ? std::get_if<std::string>(&entry->second) : nullptr;
        return string != nullptr ? std::optional(*string) : std::nullopt;
    }
};

} // namespace brisk::simulated
