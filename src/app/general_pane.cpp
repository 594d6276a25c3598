#include "app/general_pane.h"

namespace brisk {

namespace {

/// A login item that waits for approval counts as on: the user did ask for it.
bool isOn(LoginItemStatus status) {
    return status == LoginItemStatus::enabled || status == LoginItemStatus::requiresApproval;
}

} // namespace

GeneralPane generalPane(bool isTrustedForAccessibility, LoginItemStatus loginItem) {
    const bool needsApproval = loginItem == LoginItemStatus::requiresApproval;
    return {
        .heading = {.title = "General",
                    .subtitle = "Brisk runs quietly in the menu bar and manages windows using macOS Accessibility."},
        .accessibility = {.title = "Accessibility",
                          .detail = "Required to move and resize windows in other applications."},
        .isAccessibilityAllowed = isTrustedForAccessibility,
        .accessibilityState = isTrustedForAccessibility ? "Allowed" : "Not Allowed",
        .menuBar = {.title = "Menu bar",
                    .detail = "Brisk has no Dock icon and remains available through its menu-bar item."},
        .menuBarState = "Always On",
        .openAtLogin = {.title = "Open at login",
                        .detail = needsApproval
                                      ? "Approval is required in System Settings \u2192 General \u2192 Login Items."
                                      : "Start Brisk automatically when you log in."},
        .opensAtLogin = isOn(loginItem),
        .needsLoginItemApproval = needsApproval,
    };
}

std::optional<Alert> setOpensAtLogin(LoginItem& loginItem, bool isWanted) {
    if (isOn(loginItem.status()) == isWanted) {
        return std::nullopt;
    }
    const auto error = isWanted ? loginItem.registerService() : loginItem.unregisterService();
    if (!error) {
        return std::nullopt;
    }
    // Named after what the item is now, not after what was wanted: the attempt may have failed half-way.
    return Alert{.messageText =
                     isOn(loginItem.status()) ? "Could not turn off Open at Login" : "Could not turn on Open at Login",
                 .informativeText = *error};
}

} // namespace brisk
