#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

namespace brisk::desktop {

/// Value at the fraction of the sorted sample, by the nearest rank.
inline double quantile(std::vector<double> sample, double fraction) {
    std::sort(sample.begin(), sample.end());
    const auto rank = static_cast<std::size_t>(std::ceil(fraction * static_cast<double>(sample.size())));
    return sample.at(std::max<std::size_t>(rank, 1) - 1);
}

} // namespace brisk::desktop
