#include "ui/face_glyph.h"

#include <QPainter>
#include <QPen>

#include <cmath>

namespace brisk {

std::array<QPainterPath, 3> faceStrokes(const QRectF& rectangle) {
    const auto at = [&](double x, double y) {
        return QPointF(rectangle.x() + x * rectangle.width(), rectangle.y() + y * rectangle.height());
    };
    std::array<QPainterPath, 3> strokes;
    auto& [brows, eyes, mouth] = strokes;
    // The inner ends are lower: it frowns.
    brows.moveTo(at(0.13, 0.73));
    brows.lineTo(at(0.43, 0.58));
    brows.moveTo(at(0.57, 0.58));
    brows.lineTo(at(0.87, 0.73));
    eyes.moveTo(at(0.25, 0.44));
    eyes.lineTo(at(0.36, 0.44));
    eyes.moveTo(at(0.64, 0.44));
    eyes.lineTo(at(0.75, 0.44));
    mouth.moveTo(at(0.27, 0.18));
    mouth.cubicTo(at(0.39, 0.28), at(0.61, 0.28), at(0.73, 0.18));
    return strokes;
}

void drawFace(QPainter* painter, const QRectF& rectangle, const QColor& color, double lineWidth) {
    if (painter == nullptr || !painter->isActive()) {
        return;
    }
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    for (const QPainterPath& stroke : faceStrokes(rectangle)) {
        painter->strokePath(stroke, QPen(color, lineWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    }
    painter->restore();
}

QImage menuBarFaceImage(const QColor& color, double devicePixelRatio) {
    QImage image(static_cast<int>(std::ceil(menuBarFaceSize.width() * devicePixelRatio)),
                 static_cast<int>(std::ceil(menuBarFaceSize.height() * devicePixelRatio)),
                 QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(devicePixelRatio);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.translate(0, menuBarFaceSize.height());
    painter.scale(1, -1);
    drawFace(&painter, QRectF(QPointF(0, 0), QSizeF(menuBarFaceSize)).adjusted(1.5, 1.0, -1.5, -1.0), color, 1.8);
    return image;
}

} // namespace brisk
