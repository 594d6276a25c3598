#include "ui/flat_layers.h"

#include <QRgb>
#include <QRgba64>

#include <cstddef>

namespace brisk {
namespace {

struct Part {
    QRegion region;
    /// Premultiplied.
    QRgb color;
};

/// Rounded as the toolkit blends, so that no seam shows where it has painted the same layers.
QRgb laidOn(QRgb below, QRgb above) {
    const auto channel = [&](int ofAbove, int ofBelow) {
        return ofAbove + (ofBelow * (255 - qAlpha(above)) + 127) / 255;
    };
    return qRgba(channel(qRed(above), qRed(below)), channel(qGreen(above), qGreen(below)),
                 channel(qBlue(above), qBlue(below)), channel(qAlpha(above), qAlpha(below)));
}

/// In 16 bits, which premultiplied again give the same 8.
QColor unpremultiplied(QRgb color) {
    return QColor::fromRgba64(QRgba64::fromArgb32(color).unpremultiplied());
}

} // namespace

void paintFlatLayers(QPainter& painter, const QRegion& region, const std::vector<FlatLayer>& layers) {
    std::vector<Part> parts{{.region = region, .color = 0}};
    for (const FlatLayer& layer : layers) {
        if (!region.intersects(layer.rectangle)) {
            continue;
        }
        const QRgb color = qPremultiply(layer.color.rgba());
        for (std::size_t i = 0, count = parts.size(); i < count; ++i) {
            const QRegion covered = parts[i].region & layer.rectangle;
            if (covered.isEmpty()) {
                continue;
            }
            parts.push_back({.region = covered, .color = laidOn(parts[i].color, color)});
            parts[i].region -= covered;
        }
        std::erase_if(parts, [](const Part& part) { return part.region.isEmpty(); });
    }
    painter.save();
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    for (const Part& part : parts) {
        for (const QRect& rectangle : part.region) {
            painter.fillRect(rectangle, unpremultiplied(part.color));
        }
    }
    painter.restore();
}

} // namespace brisk
