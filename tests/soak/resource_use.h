#pragma once

#include "desktop/support/desktop_connection.h"

#include <sys/types.h>

#include <functional>
#include <map>
#include <string>

namespace brisk::desktop {

/// What a process takes of the system and of the X server, by what it is a measure of.
class ResourceUse {
public:
    static ResourceUse of(pid_t process, DesktopConnection& desktop);
    friend bool operator==(const ResourceUse&, const ResourceUse&) = default;

    /// Each measure that is above its value in `before` by more than its own noise: "handles 14 -> 15". Empty when
    /// nothing grew.
    std::string growthSince(const ResourceUse& before) const;
    /// Every measure before and now.
    std::string comparedTo(const ResourceUse& before) const;

private:
    std::string listed(const ResourceUse& before,
                       const std::function<bool(const std::string& name, long old, long now)>& isWanted) const;

    std::map<std::string, long> measures_;
};

} // namespace brisk::desktop
