#pragma once

#include "app/settings_pane.h"

#include <functional>

namespace brisk {

/// The one window that edits the settings. Main thread only. Made on first use, then kept, shown and hidden.
class SettingsWindow {
public:
    struct Callbacks {
        /// After every edit, which is in the store by then.
        std::function<void()> onSettingsChanged;
        /// The window is about to close.
        std::function<void()> onClose;
    };

    virtual ~SettingsWindow() = default;
    /// Shows the pane afresh and brings the window to the front.
    virtual void show(SettingsPane pane) = 0;
    /// The last pane shown that configures something.
    virtual SettingsPane lastConfigurationPane() const = 0;
};

/// The window of the first-run guide. Main thread only. Closing it at any step ends the guide.
class OnboardingWindow {
public:
    virtual ~OnboardingWindow() = default;
    /// Shows the window, or brings it to the front.
    virtual void showWindow() = 0;
};

} // namespace brisk
