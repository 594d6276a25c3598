#include <QDir>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>

/// Renders the application icon's drawings into the PNG files beside them: `render_icons resources/icon`. Run by hand
/// after a drawing has changed; the files are kept, so that a build needs no rendering.
int main(int argc, char** argv) {
    const QGuiApplication application(argc, argv);
    const QDir directory(application.arguments().value(1, "."));
    for (const int size : {BRISK_ICON_SIZES}) {
        QSvgRenderer drawing(directory.filePath(size < 48 ? "AppIcon-small.svg" : "AppIcon.svg"));
        QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        drawing.render(&painter);
        painter.end();
        if (!drawing.isValid() || !image.save(directory.filePath(QString("AppIcon-%1.png").arg(size)))) {
            return 1;
        }
    }
    return 0;
}
