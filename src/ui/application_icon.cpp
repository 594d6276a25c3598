#include "ui/application_icon.h"

#include "ui/symbols.h"

#include <QGuiApplication>
#include <QImageReader>

namespace brisk {

QStringList applicationIconResource() {
    QStringList files;
    for (const int size : {16, 22, 24, 32, 48, 64, 128, 256, 512}) {
        files.append(QStringLiteral(":/icon/AppIcon-%1.png").arg(size));
    }
    return files;
}

QIcon applicationIcon(const QColor& symbolColor, const QStringList& bundleResource) {
    QIcon icon;
    for (const QString& file : bundleResource) {
        // The icon would take the name of any file; it reads it only when that size is first shown.
        if (QImageReader(file).canRead()) {
            icon.addFile(file);
        }
    }
    if (!icon.isNull()) {
        return icon;
    }
    const QIcon ofWindows = QGuiApplication::windowIcon();
    return ofWindows.isNull() ? symbolIcon(QStringLiteral("flame.fill"), symbolColor) : ofWindows;
}

} // namespace brisk
