#pragma once

#include <chrono>
#include <functional>

namespace brisk::desktop {

/// How long a desktop may take for what it is going to do at all: ten seconds, more under sanitizers and valgrind.
/// Long, because only a failing test ever waits for its end.
std::chrono::milliseconds defaultDeadline();

/// Asks `condition` every millisecond until it holds. False when it still does not at the deadline.
[[nodiscard]] bool waitUntil(const std::function<bool()>& condition,
                             std::chrono::milliseconds deadline = defaultDeadline());

} // namespace brisk::desktop
