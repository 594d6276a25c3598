#include "platform/qt/message_bus.h"

#include <QFileInfo>

namespace brisk::qt {

void startNoMessageBus() {
    const QString usualPlace = qEnvironmentVariable("XDG_RUNTIME_DIR") + QStringLiteral("/bus");
    if (qEnvironmentVariableIsEmpty("DBUS_SESSION_BUS_ADDRESS") && !QFileInfo::exists(usualPlace)) {
        // An address that no transport serves, so that connecting fails at once.
        qputenv("DBUS_SESSION_BUS_ADDRESS", "disabled:");
    }
}

} // namespace brisk::qt
