#pragma once

#include <functional>

namespace brisk {

/// A place in the desktop's panel where programs put their items. It may come late, go and come back. Main thread only.
class SystemTray {
public:
    virtual ~SystemTray() = default;
    /// Whether there is one now.
    virtual bool isPresent() const = 0;
    /// Calls `onAppeared` whenever one comes from now on, also in place of another.
    virtual void watch(std::function<void()> onAppeared) = 0;
};

} // namespace brisk
