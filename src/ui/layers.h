#pragma once

#include <QImage>
#include <QPainter>
#include <QRect>
#include <QRegion>
#include <QSize>

#include <vector>

namespace brisk {

/// A rectangle of one translucent colour, or a picture of that size.
struct Layer {
    QRect rectangle;
    /// Premultiplied. Not used where there is a picture.
    QRgb color = 0;
    /// As `emptyPicture` makes one.
    QImage picture;
};

/// A picture for a layer on which nothing is painted yet.
QImage emptyPicture(QSize size);

/// Paints the region with what the layers, laid on each other in their order, look like there, instead of what it
/// shows. The colours are laid on each other once for each place that they share and not for each pixel of it. Region
/// and rectangles are in pixels of the painter's device, of which each of its units is one.
void paintLayers(QPainter& painter, const QRegion& region, const std::vector<Layer>& layers);

} // namespace brisk
