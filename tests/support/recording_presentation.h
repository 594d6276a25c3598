#pragma once

#include "app/app_delegate.h"
#include "platform/simulated/desktop.h"

#include <functional>
#include <memory>
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

class RecordingUpdater final : public Updater {
public:
    explicit RecordingUpdater(simulated::CallLog& log) : log_(log) {}
    void checkForUpdates() override { log_.record("checkForUpdates"); }

private:
    simulated::CallLog& log_;
};

} // namespace brisk
