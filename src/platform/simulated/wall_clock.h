#pragma once

#include "platform/wall_clock.h"

namespace brisk::simulated {

/// A clock that shows what it was set to.
class WallClock final : public brisk::WallClock {
public:
    /// 2026-01-02 03:04:05.
    std::tm time{.tm_sec = 5, .tm_min = 4, .tm_hour = 3, .tm_mday = 2, .tm_mon = 0, .tm_year = 126};

    std::tm localTime() const override { return time; }
};

} // namespace brisk::simulated
