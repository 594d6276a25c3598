#include "ui/layers.h"

#include <algorithm>
#include <cassert>
#include <cstddef>
#include <span>

namespace brisk {
namespace {

/// So many pixels stay in the processor's cache from when they are composed until the painter has copied them.
constexpr int pixelsAtATime = 1 << 17;

constexpr QImage::Format pictureFormat = QImage::Format_ARGB32_Premultiplied;

using Stack = std::vector<const Layer*>;

/// From `begin` on, `end` being outside.
struct Range {
    int begin = 0;
    int end = 0;
    int length() const { return end - begin; }
};

Range columnsOf(const QRect& rectangle) {
    return {.begin = rectangle.x(), .end = rectangle.x() + rectangle.width()};
}

Range rowsOf(const QRect& rectangle) {
    return {.begin = rectangle.y(), .end = rectangle.y() + rectangle.height()};
}

/// Both premultiplied; two of the four channels are worked out at a time.
QRgb laidOn(QRgb below, QRgb above) {
    constexpr QRgb everySecondByte = 0x00FF00FF;
    const QRgb share = 255 - static_cast<QRgb>(qAlpha(above));
    // Divided by 255, rounded to the nearest.
    const auto scaled = [](QRgb twoProducts) {
        return twoProducts + ((twoProducts >> 8) & everySecondByte) + 0x00800080;
    };
    const QRgb low = scaled((below & everySecondByte) * share);
    const QRgb high = scaled(((below >> 8) & everySecondByte) * share);
    return above + (((low >> 8) & everySecondByte) | (high & ~everySecondByte));
}

QRgb colorOf(std::span<const Layer* const> flatLayers) {
    QRgb color = 0;
    for (const Layer* layer : flatLayers) {
        color = laidOn(color, layer->color);
    }
    return color;
}

/// A range and the layers that cover all of it.
struct Part {
    Range range;
    Stack layers;
};

/// Divides the whole wherever one of the layers begins or ends.
std::vector<Part> divided(Range whole, const Stack& layers, Range (*rangeOf)(const QRect&)) {
    std::vector<int> edges{whole.begin, whole.end};
    for (const Layer* layer : layers) {
        const Range range = rangeOf(layer->rectangle);
        edges.push_back(std::clamp(range.begin, whole.begin, whole.end));
        edges.push_back(std::clamp(range.end, whole.begin, whole.end));
    }
    std::ranges::sort(edges);
    edges.erase(std::unique(edges.begin(), edges.end()), edges.end());
    std::vector<Part> parts;
    for (std::size_t i = 1; i < edges.size(); ++i) {
        parts.push_back({.range = {.begin = edges[i - 1], .end = edges[i]}, .layers = {}});
    }
    for (const Layer* layer : layers) {
        const Range range = rangeOf(layer->rectangle);
        const auto beginOf = [](const Part& part) { return part.range.begin; };
        for (auto part = std::ranges::lower_bound(parts, range.begin, {}, beginOf);
             part != parts.end() && part->range.begin < range.end; ++part) {
            part->layers.push_back(layer);
        }
    }
    return parts;
}

/// The pixels of an area while they are composed.
class Canvas {
public:
    /// `buffer` is at least as large as the area and is written from its upper left corner on.
    Canvas(QImage& buffer, const QRect& area)
        : pixels_(reinterpret_cast<QRgb*>(buffer.bits())),
          stride_(buffer.bytesPerLine() / std::ptrdiff_t{sizeof(QRgb)}),
          area_(area) {}

    void compose(const std::vector<Layer>& layers) {
        Stack stack;
        for (const Layer& layer : layers) {
            if (layer.rectangle.intersects(area_)) {
                stack.push_back(&layer);
            }
        }
        for (const Part& rows : divided(rowsOf(area_), stack, rowsOf)) {
            composeRows(rows.range, rows.layers);
        }
    }

private:
    void composeRows(Range rows, const Stack& layers) {
        // One line of what is flat is composed, and the others are copied from it.
        Range flat{.begin = area_.x(), .end = area_.x()};
        for (const auto& [columns, stack] : divided(columnsOf(area_), layers, columnsOf)) {
            if (std::ranges::all_of(stack, isFlat)) {
                std::fill_n(at(columns.begin, rows.begin), columns.length(), colorOf(stack));
            } else {
                repeatFirstLine(flat, rows);
                composePictures(columns, rows, stack);
                flat.begin = columns.end;
            }
            flat.end = columns.end;
        }
        repeatFirstLine(flat, rows);
    }

    void repeatFirstLine(Range columns, Range rows) {
        for (int y = rows.begin + 1; y < rows.end; ++y) {
            std::copy_n(at(columns.begin, rows.begin), columns.length(), at(columns.begin, y));
        }
    }

    /// Where pictures are part of the stack. Neighbouring flat layers are laid on each other before they are laid on
    /// pixels.
    void composePictures(Range columns, Range rows, const Stack& stack) {
        auto next = std::ranges::find_if_not(stack, isFlat);
        const QRgb ground = colorOf({stack.begin(), next});
        for (int y = rows.begin; y < rows.end; ++y) {
            std::fill_n(at(columns.begin, y), columns.length(), ground);
        }
        while (next != stack.end()) {
            const Layer& picture = **next;
            assert(picture.picture.size() == picture.rectangle.size());
            assert(picture.picture.format() == pictureFormat);
            const auto flatAbove = next + 1;
            next = std::find_if_not(flatAbove, stack.end(), isFlat);
            const QRgb above = colorOf({flatAbove, next});
            for (int y = rows.begin; y < rows.end; ++y) {
                QRgb* const line = at(columns.begin, y);
                const QRgb* const pictured =
                    reinterpret_cast<const QRgb*>(picture.picture.constScanLine(y - picture.rectangle.y())) +
                    (columns.begin - picture.rectangle.x());
                for (int x = 0; x < columns.length(); ++x) {
                    line[x] = laidOn(laidOn(line[x], pictured[x]), above);
                }
            }
        }
    }

    static bool isFlat(const Layer* layer) { return layer->picture.isNull(); }

    QRgb* at(int x, int y) { return pixels_ + (y - area_.y()) * stride_ + (x - area_.x()); }

    QRgb* pixels_;
    std::ptrdiff_t stride_;
    QRect area_;
};

} // namespace

QImage emptyPicture(QSize size) {
    QImage picture(size, pictureFormat);
    picture.fill(Qt::transparent);
    return picture;
}

void paintLayers(QPainter& painter, const QRegion& region, const std::vector<Layer>& layers) {
    painter.save();
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    for (const QRect& rectangle : region) {
        const int height = std::clamp(pixelsAtATime / rectangle.width(), 1, rectangle.height());
        QImage buffer(rectangle.width(), height, pictureFormat);
        for (int y = rectangle.y(); y <= rectangle.bottom(); y += height) {
            const QRect area = QRect(QPoint(rectangle.x(), y), buffer.size()) & rectangle;
            Canvas(buffer, area).compose(layers);
            painter.drawImage(area.topLeft(), buffer, QRect(QPoint(), area.size()));
        }
    }
    painter.restore();
}

} // namespace brisk
