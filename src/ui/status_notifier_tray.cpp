#include "ui/status_notifier_tray.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>

namespace brisk {

namespace {

// The name that every desktop uses, whichever wrote it first.
const QString watcherService = QStringLiteral("org.kde.StatusNotifierWatcher");
const QString watcherPath = QStringLiteral("/StatusNotifierWatcher");

} // namespace

StatusNotifierTray::StatusNotifierTray(const QDBusConnection& bus)
    : bus_(bus), watcher_(watcherService, bus, QDBusServiceWatcher::WatchForRegistration) {
    if (!bus_.isConnected()) {
        return;
    }
    connect(&watcher_, &QDBusServiceWatcher::serviceRegistered, this, &StatusNotifierTray::changed);
    // The watcher, which only keeps the list, may be there long before a panel that shows what is on it.
    bus_.connect(watcherService, watcherPath, watcherService, QStringLiteral("StatusNotifierHostRegistered"), this,
                 SIGNAL(changed()));
}

void StatusNotifierTray::ask(const std::function<void(bool)>& answer) {
    if (!bus_.isConnected()) {
        answer(false);
        return;
    }
    QDBusMessage question = QDBusMessage::createMethodCall(
        watcherService, watcherPath, QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    question << watcherService << QStringLiteral("IsStatusNotifierHostRegistered");
    // Brisk is a guest: it does not start a desktop's services.
    question.setAutoStartService(false);
    auto* const pending = new QDBusPendingCallWatcher(bus_.asyncCall(question), this);
    connect(pending, &QDBusPendingCallWatcher::finished, this, [pending, answer] {
        pending->deleteLater();
        const QDBusPendingReply<QDBusVariant> reply = *pending;
        answer(reply.isValid() && reply.value().variant().toBool());
    });
}

} // namespace brisk
