#pragma once

#include <optional>
#include <string>

namespace brisk {

enum class LoginItemStatus {
    notRegistered,
    enabled,
    /// Registered, but switched off by the user where the system lists what starts at login; only there can it be
    /// switched on again.
    requiresApproval,
    /// Registered in a way that starts nothing: the program is not where it says, or the entry cannot be read.
    notFound,
};

/// Whether the system starts this program when the user logs in. The system keeps the state and others may change it at
/// any time: nothing is remembered here. Main thread only.
class LoginItem {
public:
    virtual ~LoginItem() = default;
    virtual LoginItemStatus status() const = 0;
    /// Registers this program. A failure is its text for the user, and then nothing has changed.
    [[nodiscard]] virtual std::optional<std::string> registerService() = 0;
    /// The opposite, with failures alike. Not being registered is no failure.
    [[nodiscard]] virtual std::optional<std::string> unregisterService() = 0;
    /// Shows the user where the system lists what starts at login.
    virtual void openSystemSettingsLoginItems() = 0;
};

} // namespace brisk
