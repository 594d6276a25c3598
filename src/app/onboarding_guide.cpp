#include "app/onboarding_guide.h"

#include "hotkeys/command_catalogue.h"
#include "settings/app_settings.h"

#include <utility>

namespace brisk {

OnboardingText onboardingText(OnboardingStep step) {
    switch (step) {
    case OnboardingStep::welcome:
        return {
            .windowTitle = "Welcome to Brisk",
            .title = "Brisk keeps windows in line",
            .body = {"Move and resize the window of whichever app you are using, with global keyboard shortcuts or by "
                     "holding Shift while you drag.",
                     "No Dock icon, no window of its own. It waits in the menu bar."}};
    case OnboardingStep::accessibility:
        return {.windowTitle = "Permission",
                .title = "One permission needed",
                .body = {"macOS requires Accessibility permission before any app can move another app's windows.",
                         "Open System Settings, then switch Brisk on under Privacy & Security › Accessibility."}};
    case OnboardingStep::ready:
        return {.windowTitle = "You're Set", .title = "You're set", .body = {"Try these to start with:"}};
    }
    return {};
}

std::vector<OnboardingShortcut> onboardingShortcuts() {
    std::vector<OnboardingShortcut> shortcuts;
    for (const WindowLayout layout : {WindowLayout::leftHalf, WindowLayout::rightHalf, WindowLayout::maximize,
                                      WindowLayout::center, WindowLayout::restore}) {
        const auto binding = defaultCommandHotkeys().find(commandIdentifier(layout));
        if (binding != defaultCommandHotkeys().end()) {
            shortcuts.push_back({.display = binding->second.display, .title = std::string(title(layout))});
        }
    }
    return shortcuts;
}

OnboardingGuide::OnboardingGuide(AccessibilityPlatform& accessibility, MainQueue& mainQueue, Callbacks callbacks)
    : accessibility_(accessibility), mainQueue_(mainQueue), callbacks_(std::move(callbacks)) {}

void OnboardingGuide::advance() {
    switch (step_) {
    case OnboardingStep::welcome:
        show(OnboardingStep::accessibility);
        break;
    case OnboardingStep::accessibility:
        if (accessibility_.AXIsProcessTrusted()) {
            show(OnboardingStep::ready);
        } else {
            accessibility_.AXIsProcessTrustedWithOptions(AXTrustedCheckOptionPrompt::yes);
        }
        break;
    case OnboardingStep::ready:
        callbacks_.onClose();
        break;
    }
}

void OnboardingGuide::windowWillClose() {
    stopPermissionPoll();
}

void OnboardingGuide::show(OnboardingStep step) {
    step_ = step;
    stopPermissionPoll();
    statusText_.clear();
    switch (step) {
    case OnboardingStep::welcome:
        primaryButtonTitle_ = "Continue";
        break;
    case OnboardingStep::accessibility:
        showPermissionStatus();
        schedulePermissionPoll();
        break;
    case OnboardingStep::ready:
        primaryButtonTitle_ = "Done";
        break;
    }
    callbacks_.onStepShown();
}

void OnboardingGuide::showPermissionStatus() {
    const bool isGranted = accessibility_.AXIsProcessTrusted();
    statusText_ = isGranted ? "Permission granted." : "Waiting for permission\u2026";
    primaryButtonTitle_ = isGranted ? "Continue" : "Open System Settings";
}

void OnboardingGuide::schedulePermissionPoll() {
    permissionPoll_ = mainQueue_.asyncAfter(permissionPollInterval, [weak = weak_from_this()] {
        const auto self = weak.lock();
        if (!self || self->step_ != OnboardingStep::accessibility) {
            return;
        }
        if (self->accessibility_.AXIsProcessTrusted()) {
            self->show(OnboardingStep::ready);
        } else {
            self->schedulePermissionPoll();
        }
    });
}

void OnboardingGuide::stopPermissionPoll() {
    if (permissionPoll_) {
        permissionPoll_->cancel();
        permissionPoll_.reset();
    }
}

} // namespace brisk
