#pragma once

#include <functional>

namespace brisk {

/// Sees to it that one copy of the program runs a desktop. Main thread only. The copy that runs is the one until this
/// object goes or the process ends, however it ends.
class SingleInstance {
public:
    enum class Start {
        /// No other copy runs; from now on this is the one.
        alone,
        /// Another copy runs, and it has heard that the program was started again.
        handedOver,
        /// Another copy runs and does not answer. It still holds what only one can have, so this one must not go on.
        noAnswer,
    };

    virtual ~SingleInstance() = default;
    /// Asked once, before anything that two copies would fight over. Waits for an answer of the other copy, for a few
    /// seconds at most; a copy that ends meanwhile leaves its place to this one. `onStartedAgain` is called whenever
    /// the program is started again, on a later turn of the main loop.
    virtual Start start(std::function<void()> onStartedAgain) = 0;
};

} // namespace brisk
