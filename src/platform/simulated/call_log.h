#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace brisk::simulated {

/// Every call that the program made on the simulated desktop, in order; and the place where a scenario steps in between
/// two of them.
class CallLog {
public:
    /// Called by the services at the start of each operation.
    void record(std::string call) {
        calls_.push_back(std::move(call));
        if (onCall) {
            onCall(calls_.back());
        }
    }

    const std::vector<std::string>& calls() const { return calls_; }
    void clear() { calls_.clear(); }

    /// Runs before the operation takes effect: windows may vanish, displays go, in the middle of a command.
    std::function<void(const std::string& call)> onCall;

private:
    std::vector<std::string> calls_;
};

} // namespace brisk::simulated
