#pragma once

#include "app/alert_presenter.h"
#include "app/settings_row.h"
#include "platform/login_item.h"

#include <optional>
#include <string>

namespace brisk {

/// What the General pane says and which of its switches are on. Compares equal when showing it again would change
/// nothing.
struct GeneralPane {
    PaneHeading heading;

    SettingsRow accessibility;
    bool isAccessibilityAllowed = false;
    std::string accessibilityState;

    SettingsRow menuBar;
    std::string menuBarState;

    SettingsRow openAtLogin;
    bool opensAtLogin = false;
    /// Whether it waits for the user's word elsewhere, and the way there is offered.
    bool needsLoginItemApproval = false;

    friend bool operator==(const GeneralPane&, const GeneralPane&) = default;
};

GeneralPane generalPane(bool isTrustedForAccessibility, LoginItemStatus loginItem);

/// Brings the login item to what is wanted; asks nothing of the platform when it is there already. A failure is the
/// alert to show.
[[nodiscard]] std::optional<Alert> setOpensAtLogin(LoginItem& loginItem, bool isWanted);

} // namespace brisk
