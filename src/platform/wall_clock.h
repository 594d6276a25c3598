#pragma once

#include <ctime>

namespace brisk {

/// The date and time as the user's clock shows it.
class WallClock {
public:
    virtual ~WallClock() = default;
    /// Now, in the local time zone.
    virtual std::tm localTime() const = 0;
};

} // namespace brisk
