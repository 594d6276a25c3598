#include "app/version_text.h"

namespace brisk {

std::string versionText(const BundleInfo& bundle) {
    return "Version " + bundle.stringForInfoDictionaryKey("CFBundleShortVersionString").value_or("0.1.0") + " (Build " +
           bundle.stringForInfoDictionaryKey("CFBundleVersion").value_or("dev") + ")";
}

} // namespace brisk
