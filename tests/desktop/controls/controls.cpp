#include "desktop/controls/controls.h"

#include "desktop/support/wait.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusReply>
#include <QDBusVariant>

#include <algorithm>
#include <functional>
#include <stdexcept>

namespace brisk::desktop {
namespace {

const QString sessionName = QStringLiteral("session");
const QString accessibilityName = QStringLiteral("accessibility");
const QString accessibleInterface = QStringLiteral("org.a11y.atspi.Accessible");
const QString propertiesInterface = QStringLiteral("org.freedesktop.DBus.Properties");

/// An accessible object: whose it is, and which.
struct Reference {
    QString service;
    QDBusObjectPath path;
};

const QDBusArgument& operator>>(const QDBusArgument& argument, Reference& reference) {
    argument.beginStructure();
    argument >> reference.service >> reference.path;
    argument.endStructure();
    return argument;
}

struct Extents {
    PixelRect rect;
};

const QDBusArgument& operator>>(const QDBusArgument& argument, Extents& extents) {
    argument.beginStructure();
    argument >> extents.rect.x >> extents.rect.y >> extents.rect.width >> extents.rect.height;
    argument.endStructure();
    return argument;
}

// Bits of the state set.
constexpr unsigned focusableState = 11;
constexpr unsigned showingState = 25;
/// Coordinates of the screen, not of the window.
constexpr unsigned onScreen = 0;

} // namespace

/// Any call may find its object gone: a program changes its controls as it likes. Then there is nothing to tell.
class AccessibilityBus::Connection {
public:
    explicit Connection(const std::string& sessionAddress)
        : session_(QDBusConnection::connectToBus(QString::fromStdString(sessionAddress), sessionName)),
          accessibility_(QDBusConnection::connectToBus(startAccessibility(), accessibilityName)) {
        if (!accessibility_.isConnected()) {
            throw std::runtime_error("no accessibility bus: is at-spi2-core installed?");
        }
    }
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;
    ~Connection() {
        QDBusConnection::disconnectFromBus(accessibilityName);
        QDBusConnection::disconnectFromBus(sessionName);
    }

    /// Goes through all controls until one is `visit`ed with true.
    void visitAll(const std::function<bool(const Control&)>& visit) const {
        const Reference registry{QStringLiteral("org.a11y.atspi.Registry"),
                                 QDBusObjectPath(QStringLiteral("/org/a11y/atspi/accessible/root"))};
        for (const Reference& program : children(registry)) {
            // It is neither shown nor hidden itself.
            for (const Reference& window : children(program)) {
                if (visitFrom(window, nullptr, visit)) {
                    return;
                }
            }
        }
    }

private:
    /// The address of the bus that accessibility has to itself.
    QString startAccessibility() const {
        const QString service = QStringLiteral("org.a11y.Bus");
        const QString path = QStringLiteral("/org/a11y/bus");
        QDBusMessage switchingOn =
            QDBusMessage::createMethodCall(service, path, propertiesInterface, QStringLiteral("Set"));
        switchingOn << QStringLiteral("org.a11y.Status") << QStringLiteral("IsEnabled")
                    << QVariant::fromValue(QDBusVariant(true));
        session_.call(switchingOn);
        const QDBusReply<QString> address =
            session_.call(QDBusMessage::createMethodCall(service, path, service, QStringLiteral("GetAddress")));
        return address.value();
    }

    /// Without `parent` the object is a window.
    bool visitFrom(const Reference& object, const Control* parent,
                   const std::function<bool(const Control&)>& visit) const {
        const auto state = ask<QList<uint>>(object, accessibleInterface, QStringLiteral("GetState"));
        const auto has = [&state](unsigned bit) { return !state.isEmpty() && (state.first() >> bit & 1U) != 0; };
        if (!has(showingState)) {
            return false;
        }
        Control control{.role = ask<QString>(object, accessibleInterface, QStringLiteral("GetRoleName")).toStdString(),
                        .name = text(object, QStringLiteral("Name")),
                        .description = text(object, QStringLiteral("Description")),
                        .place = ask<Extents>(object, QStringLiteral("org.a11y.atspi.Component"),
                                              QStringLiteral("GetExtents"), {onScreen})
                                     .rect,
                        .isFocusable = has(focusableState)};
        control.group = parent != nullptr ? parent->name : std::string();
        control.window = parent != nullptr ? parent->window : control.name;
        if (visit(control)) {
            return true;
        }
        const QList<Reference> below = children(object);
        return std::any_of(below.begin(), below.end(),
                           [&](const Reference& child) { return visitFrom(child, &control, visit); });
    }

    std::string text(const Reference& object, const QString& property) const {
        return ask<QDBusVariant>(object, propertiesInterface, QStringLiteral("Get"), {accessibleInterface, property})
            .variant()
            .toString()
            .toStdString();
    }

    QList<Reference> children(const Reference& object) const {
        return ask<QList<Reference>>(object, accessibleInterface, QStringLiteral("GetChildren"));
    }

    template <class Answer>
    Answer ask(const Reference& object, const QString& interface, const QString& method,
               const QVariantList& arguments = {}) const {
        QDBusMessage question = QDBusMessage::createMethodCall(object.service, object.path.path(), interface, method);
        question.setArguments(arguments);
        const QDBusMessage reply = accessibility_.call(question);
        return reply.arguments().isEmpty() ? Answer{} : qdbus_cast<Answer>(reply.arguments().constFirst());
    }

    QDBusConnection session_;
    QDBusConnection accessibility_;
};

AccessibilityBus::AccessibilityBus(const Environment& environment)
    : sessionBus_({"dbus-daemon", "--session", "--print-address", "--nofork"}, environment) {
    if (!waitUntil([this] { return sessionBus_.output().ends_with('\n'); })) {
        throw std::runtime_error("no session bus: " + sessionBus_.errors());
    }
    sessionAddress_ = sessionBus_.output();
    sessionAddress_.pop_back();
    connection_ = std::make_unique<Connection>(sessionAddress_);
}

AccessibilityBus::~AccessibilityBus() = default;

std::vector<Control> AccessibilityBus::controls() const {
    std::vector<Control> found;
    connection_->visitAll([&found](const Control& control) {
        found.push_back(control);
        return false;
    });
    return found;
}

std::optional<Control> AccessibilityBus::find(const std::function<bool(const Control&)>& isWanted) const {
    std::optional<Control> found;
    connection_->visitAll([&](const Control& control) {
        if (isWanted(control)) {
            found = control;
        }
        return found.has_value();
    });
    return found;
}

} // namespace brisk::desktop
