#pragma once

#include "geometry/rectangle.h"
#include "platform/accessibility_platform.h"
#include "platform/workspace.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace brisk::simulated {

/// One window of the simulated desktop, and how its application answers requests. Frames are in accessibility
/// coordinates.
struct Window {
    CGRect frame;
    /// Sizes below this are raised to it.
    CGSize minimumSize{.width = 1, .height = 1};
    /// Sizes are cut to whole steps of this; 0 takes any size.
    CGSize increment;
    bool exists = true;
    AXError positionWriteError = kAXErrorSuccess;
    AXError sizeWriteError = kAXErrorSuccess;
    AXError positionReadError = kAXErrorSuccess;
    AXError sizeReadError = kAXErrorSuccess;
};
using WindowRef = std::shared_ptr<Window>;

/// One run of an application: its windows, frontmost first, and what it answers when asked for them.
class Application final : public RunningApplication {
public:
    Application(ProcessIdentifier processIdentifier, std::optional<std::string> givenName)
        : name(std::move(givenName)), processIdentifier_(processIdentifier) {}

    ProcessIdentifier processIdentifier() const override { return processIdentifier_; }
    std::optional<std::string> localizedName() const override { return name; }
    bool isTerminated() const override { return terminated; }

    std::optional<std::string> name;
    std::vector<WindowRef> windows;
    bool terminated = false;
    /// Answers to "AXFocusedWindow" and "AXWindows" other than the truth: an error, or a value of the wrong type.
    std::optional<AXAttributeValue> focusedWindowAnswer;
    std::optional<AXAttributeValue> windowsAnswer;

private:
    ProcessIdentifier processIdentifier_;
};
using ApplicationRef = std::shared_ptr<Application>;

} // namespace brisk::simulated
