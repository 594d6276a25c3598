#pragma once

#include "platform/accessibility_platform.h"
#include "platform/main_queue.h"

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace brisk {

enum class OnboardingStep { welcome, accessibility, ready };

/// The words of one step.
struct OnboardingText {
    std::string windowTitle;
    std::string title;
    std::vector<std::string> body;
};
OnboardingText onboardingText(OnboardingStep step);

/// The label that points at the status item.
inline constexpr const char* menuBarHint = "Look for this face in your menu bar.";

/// A shortcut that the last step shows: what to press, and what it does.
struct OnboardingShortcut {
    std::string display;
    std::string title;
    friend bool operator==(const OnboardingShortcut&, const OnboardingShortcut&) = default;
};
/// A few of the default shortcuts, whatever the user has changed.
std::vector<OnboardingShortcut> onboardingShortcuts();

/// The first-run guide, without its window: welcome, then the permission, then a closing page. There is no way back.
/// While the permission is asked for it looks twice a second whether it has been granted. Main thread only; held by a
/// shared pointer, since what it schedules refers to it weakly.
class OnboardingGuide : public std::enable_shared_from_this<OnboardingGuide> {
public:
    static constexpr std::chrono::milliseconds permissionPollInterval{500};

    struct Callbacks {
        /// Show the step afresh, with its button and status.
        std::function<void()> onStepShown;
        /// Close the window. May release the guide's owner; nothing is done after the call.
        std::function<void()> onClose;
    };

    OnboardingGuide(AccessibilityPlatform& accessibility, MainQueue& mainQueue, Callbacks callbacks);

    /// Shows the first step.
    void begin() { show(OnboardingStep::welcome); }
    /// The button was pressed.
    void advance();
    /// The window is going: nothing is looked for any more.
    void windowWillClose();

    OnboardingStep step() const { return step_; }
    const std::string& primaryButtonTitle() const { return primaryButtonTitle_; }
    /// The line beside the button; empty on steps that wait for nothing.
    const std::string& statusText() const { return statusText_; }

private:
    void show(OnboardingStep step);
    void showPermissionStatus();
    void schedulePermissionPoll();
    void stopPermissionPoll();

    AccessibilityPlatform& accessibility_;
    MainQueue& mainQueue_;
    Callbacks callbacks_;
    OnboardingStep step_ = OnboardingStep::welcome;
    std::string primaryButtonTitle_;
    std::string statusText_;
    DispatchWorkItemRef permissionPoll_;
};

} // namespace brisk
