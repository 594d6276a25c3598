#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

namespace brisk {

/// A process id as the system gives it. A platform that shows windows of processes without one (another machine's)
/// gives those negative numbers of its own.
using ProcessIdentifier = std::int32_t;

/// A handle on one run of an application: it does not come to mean another process that gets the same id.
class RunningApplication {
public:
    virtual ~RunningApplication() = default;
    virtual ProcessIdentifier processIdentifier() const = 0;
    /// The application's name for the user, if it has one.
    virtual std::optional<std::string> localizedName() const = 0;
    virtual bool isTerminated() const = 0;
};
using RunningApplicationRef = std::shared_ptr<const RunningApplication>;

/// The desktop's view of running applications. Main thread only.
class Workspace {
public:
    virtual ~Workspace() = default;
    /// The application whose window the user is working in (this program, too), or null when there is none.
    virtual RunningApplicationRef frontmostApplication() = 0;
    /// This process's own identifier.
    virtual ProcessIdentifier processIdentifier() const = 0;
};

} // namespace brisk
