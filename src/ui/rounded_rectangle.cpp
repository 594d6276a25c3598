#include "ui/rounded_rectangle.h"

#include <cmath>
#include <utility>

namespace brisk {
namespace {

/// What the pixels of a line or column look like, neighbours of one colour as one.
struct Run {
    int begin;
    int end;
    QRgb color;
};

template <typename ColorAt>
std::vector<Run> runs(int begin, int end, ColorAt colorAt) {
    std::vector<Run> result;
    for (int i = begin; i < end; ++i) {
        if (result.empty() || result.back().color != colorAt(i)) {
            result.push_back({.begin = i, .end = i, .color = colorAt(i)});
        }
        result.back().end = i + 1;
    }
    return result;
}

QImage painted(QSize size, const QPointF& origin, const QPainterPath& path, const QColor& fill, const QPen& line) {
    QImage image = emptyPicture(size);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(-origin);
    painter.fillPath(path, fill);
    painter.strokePath(path, line);
    return image;
}

} // namespace

QPainterPath roundedPath(const QRectF& rectangle, double radius) {
    QPainterPath path;
    path.addRoundedRect(rectangle, radius, radius);
    return path;
}

std::vector<Layer> roundedRectangle(const QRectF& rectangle, double radius, const QColor& fill, const QPen& line) {
    const double outside = line.widthF() / 2;
    const QRect bounds = rectangle.adjusted(-outside, -outside, outside, outside).toAlignedRect();
    // From the bounds, which may be up to a pixel outside the line, to where the sides are straight.
    const int corner = static_cast<int>(std::ceil(1 + outside + radius));
    // Between its corners it looks the same everywhere, so that one pixel of each side is painted.
    const int right = bounds.width() - corner;
    const int bottom = bounds.height() - corner;
    if (right <= corner || bottom <= corner) {
        return {{.rectangle = bounds,
                 .picture = painted(bounds.size(), bounds.topLeft(), roundedPath(rectangle, radius), fill, line)}};
    }
    const int left = corner;
    const int top = corner;
    const int size = 2 * corner + 1;
    const QImage image = painted(
        {size, size}, bounds.topLeft(),
        roundedPath(rectangle.adjusted(0, 0, size - bounds.width(), size - bounds.height()), radius), fill, line);

    const auto pixel = [&](int x, int y) { return reinterpret_cast<const QRgb*>(image.constScanLine(y))[x]; };
    std::vector<Layer> layers;
    const auto add = [&](const QRect& within, QRgb color) {
        layers.push_back({.rectangle = within.translated(bounds.topLeft()), .color = color});
    };
    const auto stretched = [&](int position, int length) {
        return position > corner ? position + length - size : position;
    };
    for (const Run& run : runs(0, size, [&](int y) { return pixel(corner, y); })) {
        const int y = stretched(run.begin, bounds.height());
        add({left, y, right - left, stretched(run.end, bounds.height()) - y}, run.color);
    }
    for (const auto& [begin, end] : {std::pair(0, corner), std::pair(corner + 1, size)}) {
        for (const Run& run : runs(begin, end, [&](int x) { return pixel(x, corner); })) {
            add({stretched(run.begin, bounds.width()), top, run.end - run.begin, bottom - top}, run.color);
        }
    }
    for (const int x : {0, corner + 1}) {
        for (const int y : {0, corner + 1}) {
            const QPoint place(stretched(x, bounds.width()), stretched(y, bounds.height()));
            layers.push_back({.rectangle = QRect(bounds.topLeft() + place, QSize(corner, corner)),
                              .picture = image.copy(x, y, corner, corner)});
        }
    }
    return layers;
}

} // namespace brisk
