#pragma once

#include "platform/bundle_info.h"

#include <string>

namespace brisk {

/// The program's version for the user, for example "Version 1.2 (Build 45)"; never without numbers.
std::string versionText(const BundleInfo& bundle);

} // namespace brisk
