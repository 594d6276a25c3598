#pragma once

#include "app/alert_presenter.h"
#include "app/general_pane.h"
#include "app/program_windows.h"
#include "platform/accessibility_platform.h"
#include "platform/bundle_info.h"
#include "platform/link_opener.h"
#include "platform/login_item.h"
#include "platform/pasteboard.h"
#include "settings/settings_store.h"
#include "ui/hot_key_recorder_view.h"
#include "ui/window_gap_controls.h"

#include <QObject>
#include <QVariantAnimation>
#include <QWidget>

#include <functional>
#include <memory>
#include <optional>

namespace brisk {

class SettingsToolbar;

/// What the settings window needs around it. Outlives the window.
struct SettingsWindowServices {
    SettingsStore& settingsStore;
    AlertPresenter& alerts;
    AccessibilityPlatform& accessibility;
    LoginItem& loginItem;
    LinkOpener& links;
    Pasteboard& pasteboard;
    const BundleInfo& bundle;
    /// The program's main menu for a window of its own, which owns it; may give none.
    std::function<QWidget*(QWidget* window)> makeMenuBar;
    HotKeyRecorderServices recorder;
    /// Lets the user edit that layout, or a new one, in a dialog; whether it was saved.
    std::function<bool(QWidget& window, const std::optional<CustomWindowLayout>& layout)> editCustomLayout;
};

/// The one settings window: a toolbar of panes, and below it the pane that is selected. Every edit goes to the store at
/// once and is reported. Each pane is built anew from the settings whenever it is selected. Main thread only.
class BriskSettingsWindowController final : public QObject, public SettingsWindow {
    Q_OBJECT

public:
    BriskSettingsWindowController(SettingsWindowServices services, Callbacks callbacks);
    ~BriskSettingsWindowController() override;

    void show(SettingsPane pane) override;
    SettingsPane lastConfigurationPane() const override { return selection_.lastConfigurationPane(); }

    QWidget& window() { return *window_; }

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void select(SettingsPane pane);
    QWidget* buildPane(SettingsPane pane);
    QWidget* buildGeneralPane();
    QWidget* buildWindowsPane();
    QWidget* buildSyncPane();
    QWidget* buildAboutPane();
    QWidget* makeRecorder(const CommandIdentifier& command, const std::optional<HotKeyBinding>& binding);

    GeneralPane currentGeneralPane() const;
    void appDidBecomeActive();
    void launchAtLoginChanged(bool isWanted);
    void windowGapChanged(std::int64_t gap);
    void showWindowGap();
    void editCustomLayout(const std::optional<CustomWindowLayout>& layout);

    void fitWindowToPane();
    void setContentHeight(int height);

    SettingsWindowServices services_;
    Callbacks callbacks_;
    SettingsPaneSelection selection_;
    std::unique_ptr<QWidget> window_;
    QWidget* contentContainer_;
    SettingsToolbar* toolbar_;
    /// Kept through every rebuild of the pane they are in.
    WindowGapField* windowGapField_;
    WindowGapStepper* windowGapStepper_;
    QWidget* paneView_ = nullptr;
    std::optional<GeneralPane> shownGeneralPane_;
    QVariantAnimation heightAnimation_;
};

} // namespace brisk
