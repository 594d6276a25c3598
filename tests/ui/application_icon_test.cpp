#include "ui/application_icon.h"

#include <QFile>
#include <QGuiApplication>
#include <QImage>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace brisk {
namespace {

QColor middleOf(const QIcon& icon) {
    return icon.pixmap(16, 16).toImage().pixelColor(8, 12);
}

QIcon solid(const QColor& color) {
    QPixmap pixmap(16, 16);
    pixmap.fill(color);
    return pixmap;
}

TEST(ApplicationIcon, IsLookedForInOrder) {
    const QTemporaryDir folder;
    const QString good = folder.filePath("good.png");
    const QString broken = folder.filePath("broken.png");
    ASSERT_TRUE(solid(Qt::blue).pixmap(16, 16).save(good));
    QFile file(broken);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("not an image");
    file.close();

    const QColor flame = Qt::red;
    struct Row {
        const char* why;
        QStringList resource;
        QIcon ofWindows;
        QColor expected;
    };
    for (const Row& row : {
             Row{"the bundle's own first", {good}, solid(Qt::green), Qt::blue},
             Row{"a size that does not load does not spoil the others", {broken, good}, solid(Qt::green), Qt::blue},
             Row{"a resource that does not load is none", {broken}, solid(Qt::green), Qt::green},
             Row{"no resource: the application's", {folder.filePath("none.png")}, solid(Qt::green), Qt::green},
             Row{"neither: the flame", {}, QIcon(), flame},
         }) {
        SCOPED_TRACE(row.why);
        QGuiApplication::setWindowIcon(row.ofWindows);
        EXPECT_EQ(middleOf(applicationIcon(flame, row.resource)).rgb(), row.expected.rgb());
    }
    QGuiApplication::setWindowIcon({});
}

TEST(ApplicationIcon, HasADrawingForEverySizeItIsShownAt) {
    const QIcon icon = applicationIcon(Qt::red);
    for (const int size : {16, 22, 24, 32, 48, 64, 128, 256, 512}) {
        const QImage image = icon.pixmap(size, size).toImage();
        EXPECT_EQ(image.size(), QSize(size, size));
        EXPECT_EQ(image.pixelColor(0, 0).alpha(), 0) << "the field's corners are round";
        EXPECT_EQ(image.pixelColor(size / 2, size / 8).alpha(), 255);
    }
}

} // namespace
} // namespace brisk
