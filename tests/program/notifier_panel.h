#pragma once

#include <QDBusAbstractAdaptor>
#include <QDBusArgument>
#include <QDBusConnection>
#include <QObject>
#include <QStringList>

#include <optional>

namespace brisk::desktop {

/// An item of a menu as it goes over D-Bus.
struct ExportedItem {
    int id = 0;
    QVariantMap properties;
    QList<QDBusVariant> children;

    QString label() const { return properties[QStringLiteral("label")].toString(); }
};
const QDBusArgument& operator>>(const QDBusArgument& argument, ExportedItem& item);
QDBusArgument& operator<<(QDBusArgument& argument, const ExportedItem& item);

/// The part of a desktop that shows status items over D-Bus: it keeps their list, and plays the user who opens their
/// menus. Its tests turn the main loop.
class NotifierPanel : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierWatcher")
    Q_PROPERTY(bool IsStatusNotifierHostRegistered MEMBER hasHost_)
    Q_PROPERTY(QStringList RegisteredStatusNotifierItems MEMBER items_)
    Q_PROPERTY(int ProtocolVersion MEMBER version_)

public:
    enum class Host { present, absent };
    NotifierPanel(QDBusConnection bus, Host host);
    NotifierPanel(const NotifierPanel&) = delete;
    NotifierPanel& operator=(const NotifierPanel&) = delete;
    ~NotifierPanel() override;

    void addHost();
    /// The D-Bus names of the items' owners.
    const QStringList& items() const { return items_; }

    QVariant itemProperty(const QString& name) const;
    /// Opens the item's menu as a panel does, and asks for all of it.
    std::optional<ExportedItem> openMenu() const;
    void click(const ExportedItem& item) const;

public slots:
    void RegisterStatusNotifierItem(const QString& service);
    void RegisterStatusNotifierHost(const QString&) {}

signals:
    void StatusNotifierItemRegistered(const QString& service);
    void StatusNotifierItemUnregistered(const QString& service);
    void StatusNotifierHostRegistered();

private:
    QDBusConnection bus_;
    bool hasHost_;
    QStringList items_;
    int version_ = 0;
};

} // namespace brisk::desktop
