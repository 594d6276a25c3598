#include "tour/expected_frame.h"

#include <xcb/xcb_icccm.h>

#include <algorithm>
#include <cmath>
#include <stdexcept>

namespace brisk::tour {

using desktop::PixelRect;

namespace {

/// Edges in pixels before rounding.
struct Edges {
    double left = 0;
    double top = 0;
    double right = 0;
    double bottom = 0;
};

/// Neighbours share their edges, so it is edges that are rounded, not sizes.
PixelRect rounded(const Edges& edges) {
    const auto round = [](double value) { return static_cast<int>(std::lround(value)); };
    return {.x = round(edges.left),
            .y = round(edges.top),
            .width = round(edges.right) - round(edges.left),
            .height = round(edges.bottom) - round(edges.top)};
}

constexpr Edges usableArea{.left = 0, .top = panelHeight, .right = screenSize.width, .bottom = screenSize.height};

} // namespace

PixelRect cells(int columns, int firstColumn, int endColumn, int rows, int firstRow, int endRow) {
    const double columnStep = (usableArea.right - usableArea.left - gap) / columns;
    const double rowStep = (usableArea.bottom - usableArea.top - gap) / rows;
    return rounded({.left = usableArea.left + gap + firstColumn * columnStep,
                    .top = usableArea.top + gap + firstRow * rowStep,
                    .right = usableArea.left + endColumn * columnStep,
                    .bottom = usableArea.top + endRow * rowStep});
}

PixelRect centered() {
    const double marginX = (usableArea.right - usableArea.left - 2 * gap) * 0.14 + gap;
    const double marginY = (usableArea.bottom - usableArea.top - 2 * gap) * 0.14 + gap;
    return rounded({.left = usableArea.left + marginX,
                    .top = usableArea.top + marginY,
                    .right = usableArea.right - marginX,
                    .bottom = usableArea.bottom - marginY});
}

PixelRect allowedByHints(desktop::DesktopConnection& desktop, xcb_window_t window, PixelRect frame) {
    xcb_size_hints_t hints{};
    if (xcb_icccm_get_wm_normal_hints_reply(desktop.xcb(), xcb_icccm_get_wm_normal_hints(desktop.xcb(), window), &hints,
                                            nullptr) == 0) {
        return frame;
    }
    const auto client = desktop.clientRect(window);
    const auto visible = desktop.visibleFrame(window);
    if (!client || !visible) {
        throw std::runtime_error("a window of the tour is gone");
    }
    const auto fit = [&hints](int wanted, int minimum, int base, int increment) {
        if ((hints.flags & XCB_ICCCM_SIZE_HINT_P_MIN_SIZE) != 0) {
            wanted = std::max(wanted, minimum);
        }
        if ((hints.flags & XCB_ICCCM_SIZE_HINT_P_RESIZE_INC) != 0 && increment > 1) {
            wanted -= (wanted - base) % increment;
        }
        return wanted;
    };
    const int besideX = visible->width - client->width;
    const int besideY = visible->height - client->height;
    const int width = fit(frame.width - besideX, hints.min_width, hints.base_width, hints.width_inc);
    const int height = fit(frame.height - besideY, hints.min_height, hints.base_height, hints.height_inc);
    frame.width = width + besideX;
    frame.height = height + besideY;
    return frame;
}

} // namespace brisk::tour
