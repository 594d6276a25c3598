#pragma once

#include "platform/login_item.h"
#include "platform/simulated/call_log.h"

namespace brisk::simulated {

/// A login item that a scenario switches behind the program's back, and whose changes it makes fail.
class LoginItem final : public brisk::LoginItem {
public:
    explicit LoginItem(CallLog& log) : log_(log) {}

    LoginItemStatus currentStatus = LoginItemStatus::notRegistered;
    /// Why the next changes fail; none for success.
    std::optional<std::string> error;

    LoginItemStatus status() const override { return currentStatus; }
    [[nodiscard]] std::optional<std::string> registerService() override {
        return change("registerService", LoginItemStatus::enabled);
    }
    [[nodiscard]] std::optional<std::string> unregisterService() override {
        return change("unregisterService", LoginItemStatus::notRegistered);
    }
    void openSystemSettingsLoginItems() override { log_.record("openSystemSettingsLoginItems"); }

private:
    std::optional<std::string> change(const char* call, LoginItemStatus status) {
        log_.record(call);
        if (!error) {
            currentStatus = status;
        }
        return error;
    }

    CallLog& log_;
};

} // namespace brisk::simulated
