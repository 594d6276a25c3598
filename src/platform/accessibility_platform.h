#pragma once

#include "geometry/rectangle.h"
#include "geometry/screen_info.h"
#include "platform/workspace.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace brisk {

/// An application's or a window's accessibility element: an opaque object of the platform that stands for one thing on
/// the desktop for as long as that thing exists. Once the thing is gone its element answers `kAXErrorInvalidUIElement`
/// for ever, whatever takes its place.
class AXUIElement {
public:
    virtual ~AXUIElement() = default;
    /// Whether both stand for the same thing. Elements of different platforms are never equal.
    virtual bool isEqual(const AXUIElement& other) const = 0;
    /// Equal elements have equal hashes.
    virtual std::size_t hash() const = 0;
};
using AXUIElementRef = std::shared_ptr<const AXUIElement>;

inline bool CFEqual(const AXUIElementRef& a, const AXUIElementRef& b) {
    return a->isEqual(*b);
}
inline std::size_t CFHash(const AXUIElementRef& element) {
    return element->hash();
}

/// Result codes, with the numbers of the accessibility interface they come from; 0 is success. Others than these count
/// as some failure.
using AXError = std::int32_t;
inline constexpr AXError kAXErrorSuccess = 0;
inline constexpr AXError kAXErrorFailure = -25200;
inline constexpr AXError kAXErrorIllegalArgument = -25201;
/// The element no longer exists.
inline constexpr AXError kAXErrorInvalidUIElement = -25202;
/// The other side did not, or may not, do what was asked.
inline constexpr AXError kAXErrorCannotComplete = -25204;
inline constexpr AXError kAXErrorAttributeUnsupported = -25205;
inline constexpr AXError kAXErrorNoValue = -25212;

/// A wrapped value, as positions and sizes are read and written.
using AXValue = std::variant<CGPoint, CGSize>;

/// What an attribute holds. Which alternative it is plays the part of the value's type identifier; `std::monostate` is
/// a read that succeeded and returned nothing.
using CFValue = std::variant<std::monostate, AXUIElementRef, std::vector<AXUIElementRef>, AXValue, std::string>;

struct AXAttributeValue {
    AXError error = kAXErrorSuccess;
    CFValue value;
};

inline constexpr std::string_view AXFocusedWindow = "AXFocusedWindow";
inline constexpr std::string_view AXWindows = "AXWindows";
inline constexpr std::string_view AXRole = "AXRole";
inline constexpr std::string_view AXPosition = "AXPosition";
inline constexpr std::string_view AXSize = "AXSize";

/// Whether a trust check may show the platform's own permission prompt.
enum class AXTrustedCheckOptionPrompt : bool { no, yes };

/// Other applications' windows and the displays, in the terms of the macOS accessibility interface. Main thread only;
/// every call returns in bounded time whatever other applications do. Frames are in accessibility coordinates: points,
/// origin at the top left of the primary display, y down. A window's frame is its visible outer frame, title bar
/// included.
class AccessibilityPlatform {
public:
    virtual ~AccessibilityPlatform() = default;

    /// The element of the application with that process id; never null, also when there is no such process.
    virtual AXUIElementRef AXUIElementCreateApplication(ProcessIdentifier processIdentifier) = 0;

    /// Reads an attribute. Applications have `AXFocusedWindow` (an element) and `AXWindows` (elements, frontmost
    /// first); windows have `AXRole` (a string), `AXPosition` (a point) and `AXSize` (a size).
    virtual AXAttributeValue AXUIElementCopyAttributeValue(const AXUIElementRef& element,
                                                           std::string_view attribute) = 0;

    /// Asks a window to take a position or a size. Success means that the request was accepted, not that the window
    /// took exactly that frame; reading it back tells. `kAXErrorCannotComplete` when the window may not be moved or
    /// resized.
    virtual AXError AXUIElementSetAttributeValue(const AXUIElementRef& element, std::string_view attribute,
                                                 const AXValue& value) = 0;

    /// Wraps a point or size; none when the platform cannot represent it (not a number, beyond its coordinates).
    virtual std::optional<AXValue> AXValueCreate(CGPoint point) = 0;
    virtual std::optional<AXValue> AXValueCreate(CGSize size) = 0;

    /// Whether the desktop lets this process manage windows.
    virtual bool AXIsProcessTrusted() = 0;
    /// The same, and with the prompt option the platform may tell the user how to grant it; it does not wait for an
    /// answer.
    virtual bool AXIsProcessTrustedWithOptions(AXTrustedCheckOptionPrompt prompt) = 0;

    /// The displays in AppKit coordinates, primary display first; may be empty.
    virtual std::vector<ScreenInfo> screens() = 0;
};

} // namespace brisk
