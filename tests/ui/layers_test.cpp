#include "ui/layers.h"
#include "ui/rounded_rectangle.h"

#include <QImage>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>

namespace brisk {
namespace {

QColor translucent(int red, int green, int blue, double alpha) {
    QColor color(red, green, blue);
    color.setAlphaF(static_cast<float>(alpha));
    return color;
}

QRgb premultipliedAt(const QImage& image, QPoint at) {
    return reinterpret_cast<const QRgb*>(image.constScanLine(at.y()))[at.x()];
}

/// By how much any channel of any pixel differs at most.
int difference(const QImage& image, const QImage& other) {
    int result = 0;
    for (int y = 0; y < image.height(); ++y) {
        const uchar* const line = image.constScanLine(y);
        const uchar* const otherLine = other.constScanLine(y);
        for (qsizetype i = 0; i < image.bytesPerLine(); ++i) {
            result = std::max(result, std::abs(line[i] - otherLine[i]));
        }
    }
    return result;
}

TEST(Layers, LookLikeRectanglesAndPicturesPaintedOneOverAnother) {
    QImage disc = emptyPicture({60, 50});
    {
        QPainter painter(&disc);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setBrush(translucent(20, 30, 200, 0.6));
        painter.drawEllipse(QRectF(1.5, 1.5, 57, 47));
    }
    const auto flat = [](const QRect& rectangle, const QColor& color) {
        return Layer{.rectangle = rectangle, .color = qPremultiply(color.rgba()), .picture = {}};
    };
    const std::vector<Layer> layers{
        flat({0, 0, 1200, 330}, translucent(200, 40, 120, 0.13)),
        flat({0, 0, 100, 150}, translucent(0, 120, 215, 0.13)),
        {.rectangle = {-10, 30, 60, 50}, .picture = disc},
        {.rectangle = {30, 50, 60, 50}, .picture = disc},
        flat({60, 50, 90, 60}, translucent(0, 128, 128, 0.34)),
        {.rectangle = {190, 110, 60, 50}, .picture = disc},
        flat({80, 20, 20, 110}, translucent(255, 255, 255, 0.58)),
        flat({1300, 0, 20, 20}, Qt::black),
    };
    // Too large to be composed at once, and the region ends above the image.
    QImage expected = emptyPicture({1240, 360});
    QImage image(expected.size(), expected.format());
    image.fill(Qt::red);
    {
        QPainter painter(&expected);
        for (const Layer& layer : layers) {
            if (layer.picture.isNull()) {
                painter.fillRect(layer.rectangle, QColor::fromRgba(qUnpremultiply(layer.color)));
            } else {
                painter.drawImage(layer.rectangle, layer.picture);
            }
        }
    }
    const QRegion region = QRegion(10, 0, 1230, 340) - QRegion(90, 60, 30, 30);
    {
        QPainter painter(&image);
        paintLayers(painter, region, layers);
    }
    int different = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QPoint at(x, y);
            if (!region.contains(at)) {
                ASSERT_EQ(image.pixel(at), qRgb(255, 0, 0)) << x << ", " << y;
                expected.setPixel(at, qRgb(255, 0, 0));
            }
            different += premultipliedAt(image, at) == premultipliedAt(expected, at) ? 0 : 1;
        }
    }
    EXPECT_LE(difference(image, expected), 2) << "colours laid on each other first are rounded another way";
    EXPECT_LT(different, image.width() * image.height() / 10);
}

TEST(RoundedRectangle, LooksAsThePainterDrawsIt) {
    struct Row {
        const char* why;
        QRectF rectangle;
        double radius;
        double lineWidth;
    };
    for (const Row& row : {
             Row{"whole pixels", {20, 30, 200, 120}, 14, 1.5},
             Row{"a thick line", {20, 30, 200, 120}, 14, 3},
             Row{"fractions of pixels, a scale between two", {20.3, 30.8, 199.9, 120.25}, 21, 2.25},
             Row{"where the line ends just before a pixel does", {20.45, 30.45, 200.1, 120.1}, 17.5, 3},
             Row{"partly outside of the picture", {-40.5, -20, 200, 120}, 28, 6},
             Row{"as large as its corners need", {20, 30, 35, 35}, 14, 1.5},
             Row{"no larger than its corners", {20, 30, 200, 12.5}, 14, 3},
             Row{"without height", {20, 30, 200, 0}, 14, 3},
         }) {
        SCOPED_TRACE(row.why);
        const QColor fill = translucent(200, 40, 120, 0.34);
        const QPen line(translucent(200, 40, 120, 0.58), row.lineWidth);
        QImage expected = emptyPicture({260, 180});
        QImage image = emptyPicture(expected.size());
        {
            QPainter painter(&expected);
            painter.setRenderHint(QPainter::Antialiasing);
            painter.fillPath(roundedPath(row.rectangle, row.radius), fill);
            painter.strokePath(roundedPath(row.rectangle, row.radius), line);
        }
        {
            QPainter painter(&image);
            paintLayers(painter, image.rect(), roundedRectangle(row.rectangle, row.radius, fill, line));
        }
        EXPECT_LE(difference(image, expected), 1);
        EXPECT_GT(difference(expected, emptyPicture(expected.size())), 50);
    }
}

} // namespace
} // namespace brisk
