#pragma once

#include "app/sync_pane.h"

#include <QWidget>

#include <functional>

namespace brisk {

struct SyncPaneActions {
    std::function<void()> revealSettingsFile;
    std::function<void()> copySettingsPath;
};

QWidget* makeSyncPane(const SyncPane& pane, const SyncPaneActions& actions);

} // namespace brisk
