#pragma once

namespace brisk {

/// Looks for newer versions of the program by itself from its creation on, and when the user asks. Main thread only.
class Updater {
public:
    virtual ~Updater() = default;
    /// The user asked: says what was found, or plainly that updates cannot be looked for.
    virtual void checkForUpdates() = 0;
};

} // namespace brisk
