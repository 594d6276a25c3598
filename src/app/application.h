#pragma once

#include "app/menu.h"

namespace brisk {

/// Whether the program is listed among the applications that the user switches between.
enum class ActivationPolicy {
    /// With Dock or taskbar entry: while one of its windows is open.
    regular,
    /// In the menu bar only.
    accessory,
};

/// The running program as the platform's toolkit sees it. Main thread only.
class Application {
public:
    virtual ~Application() = default;
    virtual void setActivationPolicy(ActivationPolicy policy) = 0;
    /// The menu shown while the activation policy is regular.
    virtual void setMainMenu(const Menu& menu) = 0;
    /// Ends the main loop, unwinding an open modal dialog first; the delegate's `applicationWillTerminate` follows.
    virtual void terminate() = 0;
};

} // namespace brisk
