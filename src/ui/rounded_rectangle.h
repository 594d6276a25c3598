#pragma once

#include "ui/layers.h"

#include <QColor>
#include <QPainterPath>
#include <QPen>
#include <QRectF>

#include <vector>

namespace brisk {

QPainterPath roundedPath(const QRectF& rectangle, double radius);

/// A rounded rectangle with a line along its edge as the painter draws it, antialiased: pictures of its corners, and
/// flat rectangles for all between them. Layers and rectangle are in pixels.
std::vector<Layer> roundedRectangle(const QRectF& rectangle, double radius, const QColor& fill, const QPen& line);

} // namespace brisk
