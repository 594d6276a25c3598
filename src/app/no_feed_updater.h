#pragma once

#include "app/alert_presenter.h"
#include "platform/updater.h"

namespace brisk {

/// The updater of a build that has been given no feed to look for newer versions in: it says so.
class NoFeedUpdater final : public Updater {
public:
    /// `alerts` outlives the updater.
    explicit NoFeedUpdater(AlertPresenter& alerts) : alerts_(alerts) {}
    void checkForUpdates() override;

private:
    AlertPresenter& alerts_;
};

} // namespace brisk
