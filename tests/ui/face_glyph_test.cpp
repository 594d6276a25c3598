#include "ui/face_glyph.h"

#include <QPainter>

#include <gtest/gtest.h>

namespace brisk {
namespace {

int inkOf(const QImage& image, const QColor& color) {
    int ink = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            ink += image.pixelColor(x, y).rgb() == color.rgb() ? 1 : 0;
        }
    }
    return ink;
}

TEST(FaceGlyph, StrokesLieWhereTheFaceIsDesigned) {
    const auto strokes = faceStrokes({100, 200, 14, 14});
    struct Row {
        const char* what;
        int stroke;
        int element;
        QPointF expected;
    };
    for (const Row& row : {
             Row{"left brow, outer end", 0, 0, {101.82, 210.22}},
             Row{"left brow, inner end: lower", 0, 1, {106.02, 208.12}},
             Row{"right brow, outer end", 0, 3, {112.18, 210.22}},
             Row{"left eye", 1, 0, {103.5, 206.16}},
             Row{"right eye's end", 1, 3, {110.5, 206.16}},
             Row{"mouth's first corner", 2, 0, {103.78, 202.52}},
             Row{"its control point is higher: the corners hang", 2, 1, {105.46, 203.92}},
             Row{"mouth's last corner", 2, 3, {110.22, 202.52}},
         }) {
        SCOPED_TRACE(row.what);
        const QPainterPath::Element at = strokes.at(static_cast<std::size_t>(row.stroke)).elementAt(row.element);
        EXPECT_NEAR(at.x, row.expected.x(), 1e-9);
        EXPECT_NEAR(at.y, row.expected.y(), 1e-9);
    }
}

TEST(FaceGlyph, WithoutAPainterNothingIsDrawn) {
    QImage image(16, 16, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    const QImage untouched = image;
    QPainter ended(&image);
    ended.end();
    drawFace(&ended, {0, 0, 14, 14}, Qt::white, 1.25);
    drawFace(nullptr, {0, 0, 14, 14}, Qt::white, 1.25);
    EXPECT_EQ(image, untouched);
}

TEST(FaceGlyph, LeavesThePainterAsItWas) {
    QImage image(32, 32, QImage::Format_ARGB32_Premultiplied);
    QPainter painter(&image);
    painter.setPen(Qt::green);
    drawFace(&painter, {0, 0, 32, 32}, Qt::red, 3);
    EXPECT_EQ(painter.pen().color(), QColor(Qt::green));
    EXPECT_FALSE(painter.testRenderHint(QPainter::Antialiasing));
}

TEST(MenuBarFace, IsDrawnForTheScreensOwnPixelsInTheColourGiven) {
    int before = 0;
    for (const double ratio : {1.0, 1.5, 2.0}) {
        SCOPED_TRACE(ratio);
        const QImage image = menuBarFaceImage(Qt::red, ratio);
        EXPECT_EQ(image.deviceIndependentSize().toSize(), menuBarFaceSize);
        EXPECT_EQ(image.pixelColor(0, 0).alpha(), 0);
        const int ink = inkOf(image, Qt::red);
        EXPECT_GT(ink, before) << "more device pixels, more of them wholly covered";
        before = ink;
        // The brows are at the top: a face drawn with y down would frown upwards.
        EXPECT_GT(inkOf(image.copy(0, 0, image.width() / 4, image.height() / 2), Qt::red), 0);
    }
}

} // namespace
} // namespace brisk
