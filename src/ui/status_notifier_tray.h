#pragma once

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QObject>

#include <functional>

namespace brisk {

/// Whether a panel that shows status items over D-Bus (the StatusNotifier protocol) is on a bus. Everything is
/// asynchronous: no program on the bus can keep this one waiting. On a bus that is not connected there is never one.
class StatusNotifierTray : public QObject {
    Q_OBJECT
public:
    explicit StatusNotifierTray(const QDBusConnection& bus = QDBusConnection::sessionBus());

    /// Calls `answer` once, on a later turn of the main loop unless there is no bus.
    void ask(const std::function<void(bool isPresent)>& answer);

signals:
    /// There may be one now: ask.
    void changed();

private:
    QDBusConnection bus_;
    QDBusServiceWatcher watcher_;
};

} // namespace brisk
