#include "platform/qt/link_opener.h"

#include "settings/settings_file.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDesktopServices>
#include <QUrl>

#include <utility>

namespace brisk::qt {

namespace {

/// A file manager may have to start first. One that takes longer hangs, and the folder is opened without it.
constexpr int answerTimeoutMilliseconds = 10'000;

QUrl fileURL(const std::filesystem::path& path) {
    return QUrl::fromLocalFile(QString::fromStdString(path.string()));
}

void openFolderOf(const std::filesystem::path& file) {
    std::filesystem::path folder = file.parent_path();
    while (!itemExists(folder) && folder.has_relative_path()) {
        folder = folder.parent_path();
    }
    QDesktopServices::openUrl(fileURL(folder));
}

} // namespace

LinkOpener::LinkOpener(std::function<void()> explainTrust) : explainTrust_(std::move(explainTrust)) {}

void LinkOpener::openURL(std::string_view url) {
    if (url == accessibilityPrivacySettingsLink) {
        explainTrust_();
        return;
    }
    QDesktopServices::openUrl(QUrl(QString::fromUtf8(url.data(), static_cast<qsizetype>(url.size()))));
}

void LinkOpener::selectFile(const std::filesystem::path& file) {
    const QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected() || !itemExists(file)) {
        openFolderOf(file);
        return;
    }
    auto call = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("/org/freedesktop/FileManager1"),
        QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("ShowItems"));
    const QString startupID;
    call << QStringList{fileURL(file).toString(QUrl::FullyEncoded)} << startupID;
    auto* const answer = new QDBusPendingCallWatcher(bus.asyncCall(call, answerTimeoutMilliseconds), &context_);
    QObject::connect(answer, &QDBusPendingCallWatcher::finished, &context_, [answer, file] {
        if (answer->isError()) {
            openFolderOf(file);
        }
        answer->deleteLater();
    });
}

} // namespace brisk::qt
