#include "app/window_manager_controller.h"

#include <algorithm>
#include <unordered_set>
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
                                                                         AlertPresenter& alerts,
                                                                         const SettingsFolders& folders,
                                                                         MakeOverlay makeOverlay) {
    std::shared_ptr<WindowManagerController> controller(new WindowManagerController(desktop, alerts, folders));
    controller->attachDragSnapping(std::move(makeOverlay));
    return controller;
}

WindowManagerController::WindowManagerController(const DesktopServices& desktop, AlertPresenter& alerts,
                                                 const SettingsFolders& folders)
    : desktop_(desktop),
      alerts_(alerts),
      settingsStore_(defaultFileURL(folders), folders, desktop.wallClock),
      windowManager_(desktop.accessibility) {}

void WindowManagerController::attachDragSnapping(MakeOverlay makeOverlay) {
    const auto weak = weak_from_this();
    dragSnapController_ = std::make_shared<WindowDragSnapController>(
        windowManager_, desktop_.accessibility, desktop_.eventMonitor, desktop_.mainQueue,
        WindowDragSnapController::Callbacks{
            .appProvider = [weak]() -> RunningApplicationRef {
                const auto self = weak.lock();
                // While a modal dialog of ours is open nothing is laid out, so no drag is followed either.
                return self && !self->alerts_.isRunningModal() ? self->frontmostOtherApplication() : nullptr;
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
            .makeOverlay = std::move(makeOverlay),
        });
    dragSnapController_->start();
}

std::vector<WindowLayout> WindowManagerController::dragEnabledBuiltInLayouts() const {
    const auto& enabled = settingsStore_.settings.dragEnabledBuiltInWindowLayoutIDs;
    const std::unordered_set<CommandIdentifier> identifiers(enabled.begin(), enabled.end());
    std::vector<WindowLayout> layouts;
    std::ranges::copy_if(allWindowLayouts, std::back_inserter(layouts),
                         [&](WindowLayout layout) { return identifiers.contains(commandIdentifier(layout)); });
    return layouts;
}

void WindowManagerController::runCommand(const CommandIdentifier& command) {
    if (alerts_.isRunningModal()) {
        return;
    }
    const RunningApplicationRef application = targetApplication();
    if (!application) {
        alerts_.runModal(
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
        alerts_.runModal(
            {.messageText = "Allow Brisk to manage windows",
             .informativeText = "macOS needs Accessibility permission before Brisk can resize and move windows."});
        return;
    }
    switch (apply(target, *application)) {
    case WindowActionResult::applied:
    case WindowActionResult::nothingToRestore:
        break;
    case WindowActionResult::noWindow:
        alerts_.runModal({.messageText = "Could not find window",
                          .informativeText = "Brisk could not find a focused window for " +
                                             application->localizedName().value_or("the active app") + "."});
        break;
    case WindowActionResult::failed:
        alerts_.runModal({.messageText = "Could not apply " + std::visit(DisplayTitle{}, target),
                          .informativeText = application->localizedName().value_or("The active app") +
                                             " did not accept the requested window frame."});
        break;
    }
}

} // namespace brisk
