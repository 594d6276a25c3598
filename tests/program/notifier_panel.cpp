#include "program/notifier_panel.h"

#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusReply>
#include <QDBusVariant>

#include <stdexcept>
#include <utility>

namespace brisk::desktop {

namespace {

const QString serviceName = QStringLiteral("org.kde.StatusNotifierWatcher");
const QString menuInterface = QStringLiteral("com.canonical.dbusmenu");

} // namespace

const QDBusArgument& operator>>(const QDBusArgument& argument, ExportedItem& item) {
    argument.beginStructure();
    argument >> item.id >> item.properties >> item.children;
    argument.endStructure();
    return argument;
}

QDBusArgument& operator<<(QDBusArgument& argument, const ExportedItem& item) {
    argument.beginStructure();
    argument << item.id << item.properties << item.children;
    argument.endStructure();
    return argument;
}

NotifierPanel::NotifierPanel(QDBusConnection bus, Host host) : bus_(std::move(bus)), hasHost_(host == Host::present) {
    qDBusRegisterMetaType<ExportedItem>();
    if (!bus_.registerObject(QStringLiteral("/StatusNotifierWatcher"), this, QDBusConnection::ExportAllContents) ||
        !bus_.registerService(serviceName)) {
        throw std::runtime_error("another panel is on the bus");
    }
}

NotifierPanel::~NotifierPanel() {
    bus_.unregisterService(serviceName);
    bus_.unregisterObject(QStringLiteral("/StatusNotifierWatcher"));
}

void NotifierPanel::addHost() {
    hasHost_ = true;
    emit StatusNotifierHostRegistered();
}

void NotifierPanel::RegisterStatusNotifierItem(const QString& service) {
    items_.append(service);
    emit StatusNotifierItemRegistered(service);
}

QVariant NotifierPanel::itemProperty(const QString& name) const {
    QDBusMessage question =
        QDBusMessage::createMethodCall(items_.last(), QStringLiteral("/StatusNotifierItem"),
                                       QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    question << QStringLiteral("org.kde.StatusNotifierItem") << name;
    return QDBusReply<QDBusVariant>(bus_.call(question)).value().variant();
}

std::optional<ExportedItem> NotifierPanel::openMenu() const {
    const auto path = itemProperty(QStringLiteral("Menu")).value<QDBusObjectPath>().path();
    QDBusMessage opening =
        QDBusMessage::createMethodCall(items_.last(), path, menuInterface, QStringLiteral("AboutToShow"));
    opening << 0;
    if (bus_.call(opening).type() != QDBusMessage::ReplyMessage) {
        return std::nullopt;
    }
    QDBusMessage question =
        QDBusMessage::createMethodCall(items_.last(), path, menuInterface, QStringLiteral("GetLayout"));
    question << 0 << -1 << QStringList();
    const QDBusMessage reply = bus_.call(question);
    if (reply.arguments().size() != 2) {
        return std::nullopt;
    }
    return qdbus_cast<ExportedItem>(reply.arguments().at(1));
}

void NotifierPanel::click(const ExportedItem& item) const {
    const auto path = itemProperty(QStringLiteral("Menu")).value<QDBusObjectPath>().path();
    QDBusMessage event = QDBusMessage::createMethodCall(items_.last(), path, menuInterface, QStringLiteral("Event"));
    event << item.id << QStringLiteral("clicked") << QVariant::fromValue(QDBusVariant(0)) << 0U;
    bus_.call(event);
}

} // namespace brisk::desktop
