#pragma once

#include "app/product.h"
#include "platform/bundle_info.h"

namespace brisk::freedesktop {

/// There are no bundles here: version and build are compiled in.
class BuiltInBundleInfo final : public BundleInfo {
public:
    std::optional<std::string> stringForInfoDictionaryKey(std::string_view key) const override {
        if (key == "CFBundleShortVersionString") {
            return std::string(product::version);
        }
        if (key == "CFBundleVersion") {
            return std::string(product::buildNumber);
        }
        return std::nullopt;
    }
};

} // namespace brisk::freedesktop
