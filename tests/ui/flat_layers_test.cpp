#include "ui/flat_layers.h"

#include <QImage>

#include <gtest/gtest.h>

namespace brisk {
namespace {

QColor translucent(int red, int green, int blue, double alpha) {
    QColor color(red, green, blue);
    color.setAlphaF(static_cast<float>(alpha));
    return color;
}

TEST(FlatLayers, LookLikeRectanglesPaintedOneOverAnother) {
    const std::vector<FlatLayer> layers{
        {.rectangle = {0, 0, 200, 150}, .color = translucent(200, 40, 120, 0.13)},
        {.rectangle = {0, 0, 100, 150}, .color = translucent(0, 120, 215, 0.13)},
        {.rectangle = {60, 50, 90, 60}, .color = translucent(0, 128, 128, 0.34)},
        {.rectangle = {80, 20, 20, 110}, .color = translucent(255, 255, 255, 0.58)},
        {.rectangle = {300, 0, 20, 20}, .color = Qt::black},
    };
    QImage expected(240, 160, QImage::Format_ARGB32_Premultiplied);
    expected.fill(Qt::transparent);
    QImage image(expected.size(), expected.format());
    image.fill(Qt::red);
    {
        QPainter painter(&expected);
        for (const FlatLayer& layer : layers) {
            painter.fillRect(layer.rectangle, layer.color);
        }
    }
    const QRegion region = QRegion(10, 0, 230, 160) - QRegion(90, 60, 30, 30);
    {
        QPainter painter(&image);
        paintFlatLayers(painter, region, layers);
    }
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QRgb wanted = region.contains(QPoint(x, y)) ? expected.pixel(x, y) : qRgb(255, 0, 0);
            ASSERT_EQ(image.pixel(x, y), wanted) << x << ", " << y;
        }
    }
}

} // namespace
} // namespace brisk
