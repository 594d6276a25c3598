#include "app/app_delegate.h"

#include "app/main_menu.h"
#include "app/status_menu.h"

#include <utility>

namespace brisk {

AppDelegate::AppDelegate(const DesktopServices& desktop, Presentation presentation, SettingsFolders folders)
    : desktop_(desktop), presentation_(std::move(presentation)), folders_(std::move(folders)) {}

void AppDelegate::applicationDidFinishLaunching() {
    const auto weak = weak_from_this();
    presentation_.application.setMainMenu(mainMenu());
    presentation_.application.setActivationPolicy(ActivationPolicy::accessory);
    statusItem_ = presentation_.makeStatusItem({
        .menuNeedsUpdate =
            [weak] {
                const auto self = weak.lock();
                return self ? self->menuNeedsUpdate() : Menu{};
            },
        .onChosen =
            [weak](const MenuItem& item) {
                if (const auto self = weak.lock()) {
                    self->perform(item);
                }
            },
    });
    statusItem_->updateMenu();

    windowController_ = WindowManagerController::create(desktop_, presentation_, folders_);
    windowController_->onSettingsChanged = [weak] {
        if (const auto self = weak.lock()) {
            self->settingsChanged();
        }
    };
    registerHotKeys();
    leadIntoFirstRun();
    updater_ = presentation_.makeUpdater();
}

void AppDelegate::applicationWillTerminate() {
    if (windowController_) {
        windowController_->dragSnapController().stop();
        windowController_->settingsStore().ioQueue().sync([] {});
    }
}

void AppDelegate::leadIntoFirstRun() {
    if (!windowController_->settingsStore().settings.hasCompletedOnboarding) {
        windowController_->showOnboarding();
    } else if (!desktop_.accessibility.AXIsProcessTrusted()) {
        desktop_.accessibility.AXIsProcessTrustedWithOptions(AXTrustedCheckOptionPrompt::yes);
    }
}

void AppDelegate::showSettings() {
    if (mayShowSettings()) {
        windowController_->showSettings(windowController_->settingsWindowController().lastConfigurationPane());
    }
}

void AppDelegate::showAbout() {
    if (mayShowSettings()) {
        windowController_->showSettings(SettingsPane::about);
    }
}

bool AppDelegate::mayShowSettings() const {
    // A pane is built anew when it is shown: not below the dialog that it has opened and still waits for.
    return windowController_ && !presentation_.alerts.isRunningModal();
}

void AppDelegate::perform(const MenuItem& item) {
    switch (item.action) {
    case MenuAction::runWindowCommand:
        if (item.representedObject && windowController_) {
            windowController_->runCommand(*item.representedObject);
        }
        break;
    case MenuAction::checkForUpdates:
        if (updater_) {
            updater_->checkForUpdates();
        }
        break;
    case MenuAction::quit:
        presentation_.application.terminate();
        break;
    case MenuAction::showSettings:
        showSettings();
        break;
    case MenuAction::showAbout:
        showAbout();
        break;
    case MenuAction::none:
        break;
    }
}

Menu AppDelegate::menuNeedsUpdate() {
    if (!windowController_) {
        return statusMenu(nullptr);
    }
    windowController_->rememberFrontmostApplication();
    return statusMenu(&windowController_->settingsStore().settings);
}

void AppDelegate::registerHotKeys() {
    if (!windowController_) {
        return;
    }
    // The old registry goes first: its keys must be free when the new one asks for them.
    commandHotKeys_.reset();
    auto registry = std::make_unique<CommandHotKeyRegistry>(
        desktop_.hotKeys, desktop_.mainQueue, [weak = weak_from_this()](const CommandIdentifier& command) {
            if (const auto self = weak.lock()) {
                self->runCommandLater(command);
            }
        });
    registry->registerBindings(windowController_->settingsStore().settings.commandHotkeys);
    commandHotKeys_ = std::move(registry);
}

void AppDelegate::settingsChanged() {
    registerHotKeys();
    if (statusItem_) {
        statusItem_->updateMenu();
    }
}

void AppDelegate::runCommandLater(const CommandIdentifier& command) {
    if (presentation_.alerts.isRunningModal()) {
        // Dropped here, not only when it would run: a press made while a dialog is open must not act once it closes.
        return;
    }
    desktop_.mainQueue.async([weak = weak_from_this(), command] {
        const auto self = weak.lock();
        if (self && self->windowController_) {
            self->windowController_->runCommand(command);
        }
    });
}

} // namespace brisk
