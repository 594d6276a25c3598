#pragma once

#include "app/general_pane.h"

#include <QWidget>

#include <functional>

namespace brisk {

struct GeneralPaneActions {
    std::function<void()> openAccessibilitySettings;
    std::function<void()> openLoginItems;
    /// The switch was set to that; what it shows afterwards is the caller's.
    std::function<void(bool)> setOpensAtLogin;
};

QWidget* makeGeneralPane(const GeneralPane& pane, const GeneralPaneActions& actions);

} // namespace brisk
