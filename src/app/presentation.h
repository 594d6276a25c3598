#pragma once

#include "app/alert_presenter.h"
#include "app/application.h"
#include "app/program_windows.h"
#include "app/status_item.h"
#include "drag/drag_overlay.h"
#include "platform/updater.h"
#include "settings/settings_store.h"

#include <functional>
#include <memory>

namespace brisk {

/// What shows the program to the user. What is made is made when it is first needed; all of it is used on the main
/// thread and outlives whoever asks for it.
struct Presentation {
    Application& application;
    AlertPresenter& alerts;
    std::function<std::unique_ptr<StatusItem>(StatusItem::Callbacks)> makeStatusItem;
    std::function<std::unique_ptr<Updater>()> makeUpdater;
    std::function<std::unique_ptr<WindowDragOverlay>()> makeOverlay;
    /// The store is shared, not copied, and outlives the window.
    std::function<std::unique_ptr<SettingsWindow>(SettingsStore&, SettingsWindow::Callbacks)> makeSettingsWindow;
    /// `onFinish` is called once, when the window is about to close, and may release it.
    std::function<std::unique_ptr<OnboardingWindow>(std::function<void()> onFinish)> makeOnboardingWindow;
};

} // namespace brisk
