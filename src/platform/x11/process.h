#pragma once

#include "platform/workspace.h"

#include <cstdint>
#include <optional>
#include <string>

namespace brisk::x11 {

/// One run of a process: ids are used again, together with the start time they are not. Where a window's client runs on
/// another machine, the id is a negative number for the client and there is no time.
struct ProcessIdentity {
    ProcessIdentifier id = 0;
    /// In clock ticks since boot, 0 when unknown.
    std::uint64_t startTime = 0;
    friend bool operator==(const ProcessIdentity&, const ProcessIdentity&) = default;
};

/// The process of that id as it runs now; none when there is none, or only what its parent has not collected yet.
std::optional<ProcessIdentity> runningProcess(ProcessIdentifier id);
/// The name of the program that the process runs, as the kernel knows it (cut at 15 bytes).
std::optional<std::string> processName(ProcessIdentifier id);

} // namespace brisk::x11
