#include "layouts/window_layout.h"

#include <algorithm>
#include <cmath>

namespace brisk {

namespace {

struct Description {
    std::string_view rawValue;
    std::string_view title;
    std::string_view symbolName;
};

constexpr Description describe(WindowLayout layout) {
    switch (layout) {
    case WindowLayout::leftHalf:
        return {"leftHalf", "Left Half", "rectangle.lefthalf.filled"};
    case WindowLayout::rightHalf:
        return {"rightHalf", "Right Half", "rectangle.righthalf.filled"};
    case WindowLayout::topHalf:
        return {"topHalf", "Top Half", "rectangle.tophalf.filled"};
    case WindowLayout::bottomHalf:
        return {"bottomHalf", "Bottom Half", "rectangle.bottomhalf.filled"};
    case WindowLayout::maximize:
        return {"maximize", "Maximize", "arrow.up.left.and.arrow.down.right"};
    case WindowLayout::center:
        return {"center", "Center", "rectangle.center.inset.filled"};
    case WindowLayout::topLeft:
        return {"topLeft", "Top Left", "arrow.up.left.square"};
    case WindowLayout::topRight:
        return {"topRight", "Top Right", "arrow.up.right.square"};
    case WindowLayout::bottomLeft:
        return {"bottomLeft", "Bottom Left", "arrow.down.left.square"};
    case WindowLayout::bottomRight:
        return {"bottomRight", "Bottom Right", "arrow.down.right.square"};
    case WindowLayout::restore:
        return {"restore", "Restore Window", "arrow.uturn.backward.square"};
    }
    return {};
}

static_assert(describe(static_cast<WindowLayout>(allWindowLayouts.size())).rawValue.empty(),
              "There is a layout that allWindowLayouts does not list.");

constexpr WindowGridSelection wholeArea{.columns = 1, .rows = 1};

double nextHalfFraction(std::optional<double> matched) {
    if (!matched) {
        return halfWidthFractions.front();
    }
    for (std::size_t i = 0; i < halfWidthFractions.size(); ++i) {
        if (std::abs(halfWidthFractions[i] - *matched) < fractionTolerance) {
            return halfWidthFractions[(i + 1) % halfWidthFractions.size()];
        }
    }
    return halfWidthFractions.front();
}

CGRect halfFrame(bool isRightSide, const CGRect& visibleFrame, const CGRect& currentFrame, double gap) {
    const double fraction = nextHalfFraction(matchedHalfFraction(isRightSide, visibleFrame, currentFrame, gap));
    return gridFrame(halfGridSelection(fraction, isRightSide), visibleFrame, gap);
}

CGRect centerFrame(const CGRect& visibleFrame, double gap) {
    const CGRect area = gridFrame(wholeArea, visibleFrame, gap);
    const CGSize size{.width = area.width() * centerScale, .height = area.height() * centerScale};
    return {.origin = {.x = area.midX() - size.width * 0.5, .y = area.midY() - size.height * 0.5}, .size = size};
}

} // namespace

std::string_view rawValue(WindowLayout layout) {
    return describe(layout).rawValue;
}
std::string_view title(WindowLayout layout) {
    return describe(layout).title;
}
std::string_view symbolName(WindowLayout layout) {
    return describe(layout).symbolName;
}

std::string_view subtitle(WindowLayout layout) {
    return layout == WindowLayout::restore ? "Return the window to its pre-Brisk frame."
                                           : "Move the active window to this position.";
}

std::optional<WindowLayout> windowLayoutFromRawValue(std::string_view rawValue) {
    const auto* const found =
        std::ranges::find(allWindowLayouts, rawValue, [](WindowLayout layout) { return describe(layout).rawValue; });
    return found != allWindowLayouts.end() ? std::optional(*found) : std::nullopt;
}

WindowGridSelection halfGridSelection(double fraction, bool isRightSide) {
    const std::int64_t columns = std::abs(fraction - 0.5) < fractionTolerance ? 2 : 3;
    const std::int64_t span =
        std::clamp<std::int64_t>(std::llround(fraction * static_cast<double>(columns)), 1, columns);
    return {.columns = columns, .rows = 1, .column = isRightSide ? columns - span : 0, .columnSpan = span};
}

std::optional<double> matchedHalfFraction(bool isRightSide, const CGRect& visibleFrame, const CGRect& currentFrame,
                                          double gap) {
    for (const double fraction : halfWidthFractions) {
        const CGRect candidate = gridFrame(halfGridSelection(fraction, isRightSide), visibleFrame, gap);
        if (isNear(currentFrame, candidate, halfCycleTolerance)) {
            return fraction;
        }
    }
    return std::nullopt;
}

CGRect layoutFrame(WindowLayout layout, const CGRect& visibleFrame, const CGRect& currentFrame, double gap) {
    const auto cell = [&](std::int64_t columns, std::int64_t rows, std::int64_t column, std::int64_t row) {
        return gridFrame({.columns = columns, .rows = rows, .column = column, .row = row}, visibleFrame, gap);
    };
    switch (layout) {
    case WindowLayout::leftHalf:
        return halfFrame(false, visibleFrame, currentFrame, gap);
    case WindowLayout::rightHalf:
        return halfFrame(true, visibleFrame, currentFrame, gap);
    case WindowLayout::topHalf:
        return cell(1, 2, 0, 0);
    case WindowLayout::bottomHalf:
        return cell(1, 2, 0, 1);
    case WindowLayout::maximize:
        return gridFrame(wholeArea, visibleFrame, gap);
    case WindowLayout::center:
        return centerFrame(visibleFrame, gap);
    case WindowLayout::topLeft:
        return cell(2, 2, 0, 0);
    case WindowLayout::topRight:
        return cell(2, 2, 1, 0);
    case WindowLayout::bottomLeft:
        return cell(2, 2, 0, 1);
    case WindowLayout::bottomRight:
        return cell(2, 2, 1, 1);
    case WindowLayout::restore:
        return currentFrame;
    }
    return currentFrame;
}

} // namespace brisk
