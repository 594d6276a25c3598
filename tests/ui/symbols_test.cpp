#include "layouts/window_layout.h"
#include "ui/symbols.h"

#include <QImage>

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace brisk {
namespace {

std::vector<std::string> names() {
    std::vector<std::string> all{"flame.fill",  "gearshape",         "icloud",         "info.circle",
                                 "lock.shield", "rectangle.3.group", "square.grid.3x3"};
    for (const WindowLayout layout : allWindowLayouts) {
        all.emplace_back(symbolName(layout));
    }
    return all;
}

TEST(Symbols, EveryNameThatIsShownHasADrawingOfItsOwn) {
    std::set<QByteArray> seen;
    for (const std::string& name : names()) {
        SCOPED_TRACE(name);
        const QImage image = symbolPixmap(QString::fromStdString(name), 24, Qt::black, 1).toImage();
        ASSERT_EQ(image.size(), QSize(24, 24));
        int ink = 0;
        for (int i = 0; i < 24; ++i) {
            // The margin is free on all four sides: nothing is cut off.
            for (const QPoint edge : {QPoint(i, 0), QPoint(i, 23), QPoint(0, i), QPoint(23, i)}) {
                EXPECT_EQ(image.pixelColor(edge).alpha(), 0) << edge.x() << ", " << edge.y();
            }
            for (int x = 0; x < 24; ++x) {
                ink += image.pixelColor(x, i).alpha() > 128 ? 1 : 0;
            }
        }
        EXPECT_GT(ink, 24);
        seen.emplace(reinterpret_cast<const char*>(image.constBits()), image.sizeInBytes());
    }
    EXPECT_EQ(seen.size(), names().size()) << "two names share a picture";
}

TEST(Symbols, TakeTheColourAndPixelRatioTheyArePaintedFor) {
    const QPixmap pixmap = symbolPixmap("rectangle.lefthalf.filled", 20, QColor(10, 200, 30), 2);
    EXPECT_EQ(pixmap.size(), QSize(40, 40));
    EXPECT_EQ(pixmap.deviceIndependentSize(), QSizeF(20, 20));
    EXPECT_EQ(pixmap.toImage().pixelColor(12, 20), QColor(10, 200, 30));
    EXPECT_EQ(pixmap.toImage().pixelColor(28, 20).alpha(), 0) << "the right half is empty";

    const QIcon icon = symbolIcon("rectangle.lefthalf.filled", QColor(10, 200, 30));
    EXPECT_EQ(icon.pixmap(QSize(20, 20), 2.0).toImage().pixelColor(12, 20), QColor(10, 200, 30));
    EXPECT_EQ(icon.pixmap(QSize(40, 20), 1.0).toImage().pixelColor(16, 10), QColor(10, 200, 30)) << "centred";
    EXPECT_LT(icon.pixmap(QSize(40, 40), 1.0, QIcon::Disabled).toImage().pixelColor(12, 20).alpha(), 128);
}

TEST(Symbols, AnUnknownNameIsNoImage) {
    for (const char* name : {"", "rectangle", "../icon/AppIcon-16"}) {
        EXPECT_TRUE(symbolPixmap(name, 24, Qt::black, 1).isNull()) << name;
        EXPECT_TRUE(symbolIcon(name, Qt::black).isNull()) << name;
    }
}

} // namespace
} // namespace brisk
