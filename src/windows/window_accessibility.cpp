#include "windows/window_accessibility.h"

#include <algorithm>

namespace brisk {

namespace {

/// What an attribute read returned, if it succeeded and the value is of that type.
template <class T>
std::optional<T> valueAs(const AXAttributeValue& attribute) {
    const T* value = attribute.error == kAXErrorSuccess ? std::get_if<T>(&attribute.value) : nullptr;
    return value == nullptr ? std::nullopt : std::optional(*value);
}

template <class T>
std::optional<T> unwrap(const std::optional<AXValue>& wrapped) {
    const T* value = wrapped ? std::get_if<T>(&*wrapped) : nullptr;
    return value == nullptr ? std::nullopt : std::optional(*value);
}

/// The same flip turns either space into the other.
CGRect flipped(const CGRect& frame, const CGRect& primaryFrame) {
    return {.origin = {.x = frame.minX(), .y = primaryFrame.maxY() - frame.maxY()}, .size = frame.size};
}

} // namespace

std::optional<AXUIElementRef> WindowAccessibility::focusedWindow(const AXUIElementRef& application) const {
    if (auto focused = valueAs<AXUIElementRef>(platform_.AXUIElementCopyAttributeValue(application, AXFocusedWindow))) {
        return focused;
    }
    const auto windows =
        valueAs<std::vector<AXUIElementRef>>(platform_.AXUIElementCopyAttributeValue(application, AXWindows));
    if (!windows || windows->empty()) {
        return std::nullopt;
    }
    return windows->front();
}

std::optional<CGRect> WindowAccessibility::readFrame(const AXUIElementRef& window) const {
    const auto position = platform_.AXUIElementCopyAttributeValue(window, AXPosition);
    if (position.error != kAXErrorSuccess) {
        return std::nullopt;
    }
    const auto origin = unwrap<CGPoint>(valueAs<AXValue>(position));
    const auto size = unwrap<CGSize>(valueAs<AXValue>(platform_.AXUIElementCopyAttributeValue(window, AXSize)));
    if (!origin || !size) {
        return std::nullopt;
    }
    return CGRect{.origin = *origin, .size = *size};
}

bool WindowAccessibility::writeFrame(const AXUIElementRef& window, const CGRect& frame) const {
    const auto position = platform_.AXValueCreate(frame.origin);
    const auto size = platform_.AXValueCreate(frame.size);
    if (!position || !size) {
        return false;
    }
    const AXError positionError = platform_.AXUIElementSetAttributeValue(window, AXPosition, *position);
    const AXError sizeError = platform_.AXUIElementSetAttributeValue(window, AXSize, *size);
    return positionError == kAXErrorSuccess && sizeError == kAXErrorSuccess;
}

bool WindowAccessibility::isInvalid(const AXUIElementRef& window) const {
    return platform_.AXUIElementCopyAttributeValue(window, AXRole).error == kAXErrorInvalidUIElement;
}

CGRect toAppKitFrame(const CGRect& accessibilityFrame, const CGRect& primaryFrame) {
    return flipped(accessibilityFrame, primaryFrame);
}

CGRect toAccessibilityFrame(const CGRect& appKitFrame, const CGRect& primaryFrame) {
    return flipped(appKitFrame, primaryFrame);
}

std::optional<ScreenInfo> screenContaining(const CGRect& frame, std::span<const ScreenInfo> screens) {
    const CGPoint center{.x = frame.midX(), .y = frame.midY()};
    const auto containing =
        std::ranges::find_if(screens, [&](const ScreenInfo& screen) { return screen.frame.contains(center); });
    if (containing != screens.end()) {
        return *containing;
    }
    // The first of the largest overlaps: max_element keeps the earlier of equals.
    const auto best = std::ranges::max_element(
        screens, {}, [&](const ScreenInfo& screen) { return intersectionArea(screen.frame, frame); });
    return best == screens.end() ? std::nullopt : std::optional(*best);
}

} // namespace brisk
