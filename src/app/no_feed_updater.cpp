#include "app/no_feed_updater.h"

namespace brisk {

void NoFeedUpdater::checkForUpdates() {
    if (alerts_.isRunningModal()) {
        return;
    }
    alerts_.runModal({.messageText = "Brisk cannot check for updates",
                      .informativeText = "This build of Brisk has no update feed. Update it the way it was installed, "
                                         "for example with your package manager."});
}

} // namespace brisk
