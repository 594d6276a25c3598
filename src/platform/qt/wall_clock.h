#pragma once

#include "platform/wall_clock.h"

namespace brisk::qt {

/// The system's clock.
class WallClock final : public brisk::WallClock {
public:
    std::tm localTime() const override {
        const std::time_t now = std::time(nullptr);
        std::tm local{};
        localtime_r(&now, &local);
        return local;
    }
};

} // namespace brisk::qt
