#pragma once

#include <chrono>

namespace brisk::desktop {

/// Runs from its making.
class Stopwatch {
public:
    double milliseconds() const {
        return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start_).count();
    }

private:
    std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

} // namespace brisk::desktop
