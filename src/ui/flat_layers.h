#pragma once

#include <QColor>
#include <QPainter>
#include <QRect>
#include <QRegion>

#include <vector>

namespace brisk {

/// A rectangle of one translucent colour.
struct FlatLayer {
    QRect rectangle;
    QColor color;
};

/// Paints the region with what the layers, laid on each other in their order, look like there, instead of what it
/// shows: each pixel once, however many layers cover it. Region and rectangles are in the painter's pixels, the painter
/// untransformed.
void paintFlatLayers(QPainter& painter, const QRegion& region, const std::vector<FlatLayer>& layers);

} // namespace brisk
