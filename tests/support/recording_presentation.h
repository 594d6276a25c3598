#pragma once

#include "app/presentation.h"
#include "platform/simulated/desktop.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace brisk {

/// Alerts that are noted instead of shown; while one is "open" a scenario may act.
class RecordingAlerts final : public AlertPresenter {
public:
    std::vector<Alert> alerts;
    std::function<void()> whileOpen;

    void runModal(const Alert& alert) override {
        alerts.push_back(alert);
        isOpen_ = true;
        if (whileOpen) {
            std::exchange(whileOpen, nullptr)();
        }
        isOpen_ = false;
    }
    bool isRunningModal() const override { return isOpen_; }

private:
    bool isOpen_ = false;
};

/// Notes what the program asks of its toolkit into the desktop's own log, so that orders across both can be stated.
class RecordingApplication final : public Application {
public:
    explicit RecordingApplication(simulated::CallLog& log) : log_(log) {}
    void setActivationPolicy(ActivationPolicy policy) override {
        log_.record(policy == ActivationPolicy::regular ? "setActivationPolicy regular"
                                                        : "setActivationPolicy accessory");
    }
    void setMainMenu(const Menu& menu) override { log_.record("setMainMenu " + menu.title); }
    void terminate() override { log_.record("terminate"); }

private:
    simulated::CallLog& log_;
};

/// A status item whose menu a scenario opens and chooses from.
class RecordingStatusItem final : public StatusItem {
public:
    RecordingStatusItem(simulated::CallLog& log, Callbacks callbacks) : log_(log), callbacks_(std::move(callbacks)) {}

    Menu menu;
    void open() { menu = callbacks_.menuNeedsUpdate(); }
    void choose(const MenuItem& item) { callbacks_.onChosen(item); }
    void updateMenu() override {
        log_.record("updateMenu");
        open();
    }

private:
    simulated::CallLog& log_;
    Callbacks callbacks_;
};

/// A settings window that notes what it is asked to show.
class RecordingSettingsWindow final : public SettingsWindow {
public:
    RecordingSettingsWindow(simulated::CallLog& log, Callbacks given) : callbacks(std::move(given)), log_(log) {}
    Callbacks callbacks;
    void show(SettingsPane pane) override {
        selection_.select(pane);
        log_.record("show settings " + std::string(title(pane)));
    }
    SettingsPane lastConfigurationPane() const override { return selection_.lastConfigurationPane(); }

private:
    simulated::CallLog& log_;
    SettingsPaneSelection selection_;
};

/// A guide window that a scenario closes.
class RecordingOnboardingWindow final : public OnboardingWindow {
public:
    RecordingOnboardingWindow(simulated::CallLog& log, std::function<void()> onFinish)
        : log_(log), onFinish_(std::move(onFinish)) {}
    ~RecordingOnboardingWindow() override { log_.record("release onboarding"); }
    RecordingOnboardingWindow(const RecordingOnboardingWindow&) = delete;
    RecordingOnboardingWindow& operator=(const RecordingOnboardingWindow&) = delete;
    void showWindow() override { log_.record("show onboarding"); }
    /// From a copy: the call may release this window and what it holds.
    void close() {
        const auto onFinish = onFinish_;
        onFinish();
    }

private:
    simulated::CallLog& log_;
    std::function<void()> onFinish_;
};

class RecordingUpdater final : public Updater {
public:
    explicit RecordingUpdater(simulated::CallLog& log) : log_(log) {}
    void checkForUpdates() override { log_.record("checkForUpdates"); }

private:
    simulated::CallLog& log_;
};

/// A whole presentation of the recording kind, with the parts a scenario acts on.
struct RecordingPresentation {
    explicit RecordingPresentation(simulated::CallLog& callLog) : log(callLog), application(callLog) {}

    Presentation presentation() {
        return {
            .application = application,
            .alerts = alerts,
            .makeStatusItem =
                [this](StatusItem::Callbacks callbacks) { return note(statusItem, std::move(callbacks)); },
            .makeUpdater =
                [this] {
                    log.record("makeUpdater");
                    return std::make_unique<RecordingUpdater>(log);
                },
            .makeOverlay = [] { return std::make_unique<NoOverlay>(); },
            .makeSettingsWindow =
                [this](SettingsStore&, SettingsWindow::Callbacks callbacks) {
                    return note(settingsWindow, std::move(callbacks));
                },
            .makeOnboardingWindow =
                [this](std::function<void()> onFinish) { return note(onboardingWindow, std::move(onFinish)); },
        };
    }

    simulated::CallLog& log;
    RecordingApplication application;
    RecordingAlerts alerts;
    RecordingStatusItem* statusItem = nullptr;
    RecordingSettingsWindow* settingsWindow = nullptr;
    RecordingOnboardingWindow* onboardingWindow = nullptr;

private:
    class NoOverlay final : public WindowDragOverlay {
    public:
        void show(const std::vector<WindowDragZone>&, const std::optional<CommandIdentifier>&,
                  const ScreenInfo&) override {}
        void hide() override {}
    };

    template <class Part, class Argument>
    std::unique_ptr<Part> note(Part*& place, Argument argument) {
        auto part = std::make_unique<Part>(log, std::move(argument));
        place = part.get();
        return part;
    }
};

} // namespace brisk
