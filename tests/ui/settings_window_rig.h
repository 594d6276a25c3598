#pragma once

#include "platform/simulated/bundle_info.h"
#include "platform/simulated/desktop.h"
#include "platform/simulated/link_opener.h"
#include "platform/simulated/login_item.h"
#include "platform/simulated/pasteboard.h"
#include "support/recording_presentation.h"
#include "support/temporary_folder.h"
#include "ui/settings_window.h"

#include <deque>
#include <optional>
#include <string>

namespace brisk {

/// The settings window on a simulated desktop, with everything it touches at hand.
class SettingsWindowRig {
public:
    SettingsWindowRig()
        : controller(
              {.settingsStore = store,
               .alerts = alerts,
               .accessibility = desktop.accessibility,
               .loginItem = loginItem,
               .links = links,
               .pasteboard = pasteboard,
               .bundle = bundle,
               .makeMenuBar = nullptr,
               .recorder = {.hotKeys = desktop.hotKeys, .keyInput = desktop.keyInput, .mainQueue = desktop.mainQueue},
               .editCustomLayout =
                   [this](QWidget&, const std::optional<CustomWindowLayout>& layout) {
                       edited.push_back(layout);
                       return isEditSaved;
                   }},
              {.onSettingsChanged = [this] { ++timesChanged; }, .onClose = [this] { ++timesClosed; }}) {}

    /// The control of that name in the pane that is shown.
    template <typename Control = QWidget>
    Control* control(const char* name) {
        for (Control* const found : controller.window().findChildren<Control*>(QString::fromUtf8(name))) {
            if (found->isVisibleTo(&controller.window())) {
                return found;
            }
        }
        return nullptr;
    }
    /// The settings as the file has them.
    AppSettings stored() {
        store.ioQueue().sync([] {});
        return SettingsStore(store.fileURL(), folders, desktop.wallClock).settings;
    }
    void addLayouts(int count, const std::string& name = "Layout") {
        for (int i = 0; i < count; ++i) {
            store.settings.customWindowLayouts.push_back({.id = "id" + std::to_string(i),
                                                          .name = name + " " + std::to_string(i + 1),
                                                          .selection = {3, 2, i % 3, 0, 1, 2},
                                                          .isAvailableForDragging = i % 2 == 0});
        }
    }

    simulated::Desktop desktop;
    TemporaryFolder home;
    SettingsFolders folders{.home = home.path(), .applicationSupport = home.path() / "data"};
    SettingsStore store{localFileURL(folders), folders, desktop.wallClock};
    RecordingAlerts alerts;
    simulated::LoginItem loginItem{desktop.log};
    simulated::LinkOpener links{desktop.log};
    simulated::Pasteboard pasteboard;
    simulated::BundleInfo bundle;
    std::deque<std::optional<CustomWindowLayout>> edited;
    bool isEditSaved = true;
    int timesChanged = 0;
    int timesClosed = 0;
    BriskSettingsWindowController controller;
};

} // namespace brisk
