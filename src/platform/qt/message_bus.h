#pragma once

namespace brisk::qt {

/// Makes sure that this process starts no message bus: where no session bus is named and none is at its usual place,
/// the D-Bus library would start one for whoever asks, which then stays behind. Called before anything else of Qt.
void startNoMessageBus();

} // namespace brisk::qt
