#pragma once

#include <QColor>
#include <QImage>
#include <QPainterPath>
#include <QRectF>

#include <array>

class QPainter;

namespace brisk {

/// The face's three strokes, in the order in which they are drawn: brows, eyes, mouth. `rectangle` has its y axis
/// pointing up (`y()` is its bottom edge), and so have the paths.
std::array<QPainterPath, 3> faceStrokes(const QRectF& rectangle);

/// Draws the emblem, a small frowning face, with round caps and joins. The painter's y axis must point up as the
/// rectangle's does: scale it by (1, -1). Its state is left as it was. Null or inactive: draws nothing.
void drawFace(QPainter* painter, const QRectF& rectangle, const QColor& color, double lineWidth);

/// Size of the menu bar's image of the face, in points.
inline constexpr QSize menuBarFaceSize{19, 18};
inline constexpr const char* menuBarFaceDescription = "Brisk Window Manager";

/// The face as the menu bar shows it, drawn for that device pixel ratio, in the colour that stands out there: the image
/// is a template, without a colour of its own.
QImage menuBarFaceImage(const QColor& color, double devicePixelRatio);

} // namespace brisk
