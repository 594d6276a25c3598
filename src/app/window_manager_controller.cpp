#include "app/window_manager_controller.h"

#include <algorithm>
#include <utility>

namespace brisk {

namespace {

std::optional<WindowDragTarget> resolve(const CommandIdentifier& command, const AppSettings& settings) {
    for (const WindowLayout layout : allWindowLayouts) {
        if (commandIdentifier(layout) == command) {
            return layout;
        }
    }
    for (const CustomWindowLayout& layout : settings.customWindowLayouts) {
        if (commandIdentifier(layout) == command) {
            return layout;
        }
    }
    return std::nullopt;
}

struct DisplayTitle {
    std::string operator()(WindowLayout layout) const { return std::string(title(layout)); }
    std::string operator()(const CustomWindowLayout& layout) const { return layout.name; }
};

} // namespace

std::shared_ptr<WindowManagerController> WindowManagerController::create(const DesktopServices& desktop,
                                                                         Presentation presentation,
                                                                         const SettingsFolders& folders) {
    std::shared_ptr<WindowManagerController> controller(
        new WindowManagerController(desktop, std::move(presentation), folders));
    controller->attachDragSnapping();
    return controller;
}

WindowManagerController::WindowManagerController(const DesktopServices& desktop, Presentation presentation,
                                                 const SettingsFolders& folders)
    : desktop_(desktop),
      presentation_(std::move(presentation)),
      settingsStore_(defaultFileURL(folders), folders, desktop.wallClock),
      windowManager_(desktop.accessibility) {}

void WindowManagerController::attachDragSnapping() {
    const auto weak = weak_from_this();
    dragSnapController_ = std::make_shared<WindowDragSnapController>(
        windowManager_, desktop_.accessibility, desktop_.eventMonitor, desktop_.mainQueue,
        WindowDragSnapController::Callbacks{
            .appProvider = [weak]() -> RunningApplicationRef {
                const auto self = weak.lock();
                // While a modal dialog of ours is open nothing is laid out, so no drag is followed either.
                return self && !self->presentation_.alerts.isRunningModal() ? self->frontmostOtherApplication()
                                                                            : nullptr;
            },
            .builtInLayoutsProvider =
                [weak] {
                    const auto self = weak.lock();
                    return self ? self->dragEnabledBuiltInLayouts() : std::vector<WindowLayout>{};
                },
            .customLayoutsProvider =
                [weak] {
                    const auto self = weak.lock();
                    return self ? self->settingsStore_.settings.customWindowLayouts : std::vector<CustomWindowLayout>{};
                },
            .gapProvider =
                [weak] {
                    const auto self = weak.lock();
                    return self ? static_cast<double>(self->settingsStore_.settings.windowGap) : 0.0;
                },
            .onSnap =
                [weak](const WindowDragTarget& target, const RunningApplicationRef& application) {
                    if (const auto self = weak.lock()) {
                        self->previousApplication_ = application;
                        self->applyTarget(target, application);
                    }
                },
            .makeOverlay = presentation_.makeOverlay,
        });
    dragSnapController_->start();
}

std::vector<WindowLayout> WindowManagerController::dragEnabledBuiltInLayouts() const {
    const auto& enabled = settingsStore_.settings.dragEnabledBuiltInWindowLayoutIDs;
    std::vector<WindowLayout> layouts;
    std::ranges::copy_if(allWindowLayouts, std::back_inserter(layouts), [&](WindowLayout layout) {
        return std::ranges::find(enabled, commandIdentifier(layout)) != enabled.end();
    });
    return layouts;
}

void WindowManagerController::runCommand(const CommandIdentifier& command) {
    if (presentation_.alerts.isRunningModal()) {
        return;
    }
    const RunningApplicationRef application = targetApplication();
    if (!application) {
        presentation_.alerts.runModal(
            {.messageText = "No active app window",
             .informativeText = "Switch to the application whose window you want to manage, then try again."});
        return;
    }
    if (const auto target = resolve(command, settingsStore_.settings)) {
        applyTarget(*target, application);
    }
}

RunningApplicationRef WindowManagerController::frontmostOtherApplication() {
    RunningApplicationRef frontmost = desktop_.workspace.frontmostApplication();
    const bool isOther = frontmost && frontmost->processIdentifier() != desktop_.workspace.processIdentifier();
    return isOther ? frontmost : nullptr;
}

RunningApplicationRef WindowManagerController::targetApplication() {
    if (rememberFrontmostApplication()) {
        return previousApplication_;
    }
    const bool stillRuns = previousApplication_ && !previousApplication_->isTerminated();
    return stillRuns ? previousApplication_ : nullptr;
}

bool WindowManagerController::rememberFrontmostApplication() {
    auto frontmost = frontmostOtherApplication();
    if (!frontmost) {
        return false;
    }
    previousApplication_ = std::move(frontmost);
    return true;
}

SettingsWindow& WindowManagerController::settingsWindowController() {
    if (!settingsWindowController_) {
        const auto weak = weak_from_this();
        settingsWindowController_ = presentation_.makeSettingsWindow(
            settingsStore_,
            {
                .onSettingsChanged =
                    [weak] {
                        const auto self = weak.lock();
                        if (self && self->onSettingsChanged) {
                            self->onSettingsChanged();
                        }
                    },
                .onClose =
                    [weak] {
                        if (const auto self = weak.lock()) {
                            self->presentation_.application.setActivationPolicy(ActivationPolicy::accessory);
                        }
                    },
            });
    }
    return *settingsWindowController_;
}

void WindowManagerController::showSettings(SettingsPane pane) {
    presentation_.application.setActivationPolicy(ActivationPolicy::regular);
    settingsWindowController().show(pane);
}

void WindowManagerController::showOnboarding() {
    if (!onboardingWindowController_) {
        onboardingWindowController_ = presentation_.makeOnboardingWindow([weak = weak_from_this()] {
            if (const auto self = weak.lock()) {
                self->onboardingFinished();
            }
        });
    }
    presentation_.application.setActivationPolicy(ActivationPolicy::regular);
    onboardingWindowController_->showWindow();
}

void WindowManagerController::onboardingFinished() {
    presentation_.application.setActivationPolicy(ActivationPolicy::accessory);
    if (!settingsStore_.settings.hasCompletedOnboarding) {
        settingsStore_.settings.hasCompletedOnboarding = true;
        settingsStore_.save();
    }
    // Last: this call comes from the window that goes here.
    onboardingWindowController_.reset();
}

WindowActionResult WindowManagerController::apply(const WindowDragTarget& target,
                                                  const RunningApplication& application) {
    const auto gap = static_cast<double>(settingsStore_.settings.windowGap);
    if (const auto* custom = std::get_if<CustomWindowLayout>(&target)) {
        return windowManager_.applyCustomLayout(*custom, application, gap);
    }
    return windowManager_.applyLayout(std::get<WindowLayout>(target), application, gap);
}

void WindowManagerController::applyTarget(const WindowDragTarget& target, const RunningApplicationRef& application) {
    if (!desktop_.accessibility.AXIsProcessTrusted()) {
        desktop_.accessibility.AXIsProcessTrustedWithOptions(AXTrustedCheckOptionPrompt::yes);
        presentation_.alerts.runModal(
            {.messageText = "Allow Brisk to manage windows",
             .informativeText = "macOS needs Accessibility permission before Brisk can resize and move windows."});
        return;
    }
    switch (apply(target, *application)) {
    case WindowActionResult::applied:
    case WindowActionResult::nothingToRestore:
        break;
    case WindowActionResult::noWindow:
        presentation_.alerts.runModal({.messageText = "Could not find window",
                                       .informativeText = "Brisk could not find a focused window for " +
                                                          application->localizedName().value_or("the active app") +
                                                          "."});
        break;
    case WindowActionResult::failed:
        presentation_.alerts.runModal({.messageText = "Could not apply " + std::visit(DisplayTitle{}, target),
                                       .informativeText = application->localizedName().value_or("The active app") +
                                                          " did not accept the requested window frame."});
        break;
    }
}

} // namespace brisk
