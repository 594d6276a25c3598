#pragma once

#include "platform/accessibility_platform.h"
#include "platform/simulated/application.h"
#include "platform/simulated/call_log.h"

#include <vector>

namespace brisk::simulated {

/// Window access over simulated applications and displays. Applications are the owner's and outlive this.
class Accessibility final : public AccessibilityPlatform {
public:
    Accessibility(CallLog& log, const std::vector<ApplicationRef>& applications)
        : log_(log), applications_(applications) {}

    /// The element that stands for a window, as a scenario needs it to ask about the window directly.
    static AXUIElementRef elementOf(const WindowRef& window);

    bool isTrusted = true;
    std::vector<ScreenInfo> displays;

    AXUIElementRef AXUIElementCreateApplication(ProcessIdentifier processIdentifier) override;
    AXAttributeValue AXUIElementCopyAttributeValue(const AXUIElementRef& element, std::string_view attribute) override;
    AXError AXUIElementSetAttributeValue(const AXUIElementRef& element, std::string_view attribute,
                                         const AXValue& value) override;
    std::optional<AXValue> AXValueCreate(CGPoint point) override;
    std::optional<AXValue> AXValueCreate(CGSize size) override;
    bool AXIsProcessTrusted() override;
    bool AXIsProcessTrustedWithOptions(AXTrustedCheckOptionPrompt prompt) override;
    std::vector<ScreenInfo> screens() override;

private:
    AXAttributeValue applicationAttribute(ProcessIdentifier processIdentifier, std::string_view attribute) const;

    CallLog& log_;
    const std::vector<ApplicationRef>& applications_;
};

} // namespace brisk::simulated
