#pragma once

#include "app/alert_presenter.h"

namespace brisk {

/// Alerts as modal message boxes in front of everything.
class ModalAlerts final : public AlertPresenter {
public:
    void runModal(const Alert& alert) override;
    bool isRunningModal() const override;
};

} // namespace brisk
