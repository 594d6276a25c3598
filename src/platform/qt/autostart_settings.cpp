#include "platform/qt/autostart_settings.h"

#include <QDesktopServices>
#include <QProcess>
#include <QStandardPaths>
#include <QStringList>
#include <QUrl>

#include <array>

namespace brisk::qt {

namespace {

struct AutostartSettings {
    /// As in `XDG_CURRENT_DESKTOP`.
    const char* desktop;
    const char* program;
    const char* argument;
};

/// Of a desktop's several the first that is installed is taken.
constexpr std::array knownSettings{
    AutostartSettings{"KDE", "systemsettings", "kcm_autostart"},
    AutostartSettings{"KDE", "systemsettings5", "kcm_autostart"},
    AutostartSettings{"XFCE", "xfce4-session-settings", nullptr},
    AutostartSettings{"MATE", "mate-session-properties", nullptr},
    AutostartSettings{"LXQt", "lxqt-config-session", nullptr},
    AutostartSettings{"X-Cinnamon", "cinnamon-settings", "startup"},
    AutostartSettings{"GNOME", "gnome-tweaks", nullptr},
};

bool start(const AutostartSettings& settings) {
    const QString program = QStandardPaths::findExecutable(QString::fromLatin1(settings.program));
    const QStringList arguments =
        settings.argument != nullptr ? QStringList{QString::fromLatin1(settings.argument)} : QStringList{};
    return !program.isEmpty() && QProcess::startDetached(program, arguments);
}

} // namespace

void openAutostartSettings(const std::filesystem::path& autostartFolder) {
    const QStringList desktops = qEnvironmentVariable("XDG_CURRENT_DESKTOP").split(QLatin1Char(':'));
    for (const AutostartSettings& settings : knownSettings) {
        if (desktops.contains(QLatin1String(settings.desktop)) && start(settings)) {
            return;
        }
    }
    QDesktopServices::openUrl(QUrl::fromLocalFile(QString::fromStdString(autostartFolder.string())));
}

} // namespace brisk::qt
