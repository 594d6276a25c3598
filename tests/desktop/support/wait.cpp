#include "desktop/support/wait.h"

#include <cstdlib>
#include <string_view>
#include <thread>

namespace brisk::desktop {

std::chrono::milliseconds defaultDeadline() {
    using namespace std::chrono_literals;
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    return 30s;
#else
    const char* preloaded = std::getenv("LD_PRELOAD");
    const bool underValgrind =
        preloaded != nullptr && std::string_view(preloaded).find("vgpreload") != std::string_view::npos;
    return underValgrind ? 60s : 10s;
#endif
}

bool waitUntil(const std::function<bool()>& condition, std::chrono::milliseconds deadline) {
    const auto end = std::chrono::steady_clock::now() + deadline;
    while (!condition()) {
        if (std::chrono::steady_clock::now() >= end) {
            return false;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return true;
}

} // namespace brisk::desktop
