#include "platform/x11/strut.h"

#include <algorithm>
#include <limits>

namespace brisk::x11 {

namespace {

/// Far beyond every coordinate, and safe to add up.
constexpr std::uint32_t farAway = 1U << 20U;

int pixels(std::uint32_t value) {
    return static_cast<int>(std::min(value, farAway));
}

} // namespace

std::optional<Strut> strutIn(const std::optional<std::vector<std::uint32_t>>& partial,
                             const std::optional<std::vector<std::uint32_t>>& plain) {
    if (partial && partial->size() >= Strut{}.size()) {
        Strut strut{};
        std::copy_n(partial->begin(), strut.size(), strut.begin());
        return strut;
    }
    if (plain && plain->size() >= 4) {
        constexpr std::uint32_t end = std::numeric_limits<std::uint32_t>::max();
        return Strut{(*plain)[0], (*plain)[1], (*plain)[2], (*plain)[3], 0, end, 0, end, 0, end, 0, end};
    }
    return std::nullopt;
}

PixelRect areaBeside(const Strut& strut, PixelRect area, PixelRect root) {
    enum Edge : std::size_t { left, right, top, bottom };
    for (const Edge edge : {left, right, top, bottom}) {
        const int depth = pixels(strut[edge]);
        const int first = pixels(strut[4 + edge * 2]);
        const int last = pixels(strut[5 + edge * 2]);
        const bool isVertical = edge == left || edge == right;
        const bool meets = isVertical ? first < area.maxY() && last >= area.y : first < area.maxX() && last >= area.x;
        if (depth == 0 || !meets) {
            continue;
        }
        PixelRect rest = area;
        switch (edge) {
        case left:
            rest.x = std::max(area.x, root.x + depth);
            rest.width = area.maxX() - rest.x;
            break;
        case right:
            rest.width = std::min(area.maxX(), root.maxX() - depth) - area.x;
            break;
        case top:
            rest.y = std::max(area.y, root.y + depth);
            rest.height = area.maxY() - rest.y;
            break;
        case bottom:
            rest.height = std::min(area.maxY(), root.maxY() - depth) - area.y;
            break;
        }
        if (rest.width > 0 && rest.height > 0) {
            area = rest;
        }
    }
    return area;
}

} // namespace brisk::x11
