#include "ui/drag_overlay_view.h"

#include "ui/face_glyph.h"
#include "ui/theme.h"

#include <QFontMetricsF>
#include <QPaintEvent>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>

namespace brisk {

namespace {

constexpr ColorRole builtInZoneColor = ColorRole::accent;
constexpr ColorRole customZoneColor = ColorRole::teal;
constexpr double zoneRadius = 14;
constexpr double activeFillAlpha = 0.34;
constexpr double inactiveFillAlpha = 0.13;
constexpr double inactiveStrokeAlpha = 0.58;
constexpr double activeLineWidth = 3.0;
constexpr double inactiveLineWidth = 1.5;
// Without a fill the line alone says which zone is the active one.
constexpr double activeCutOutLineWidth = 6;
constexpr double inactiveCutOutLineWidth = 2;

constexpr int labelPixelSize = 13;
constexpr Qt::GlobalColor labelColor = Qt::white;
constexpr Qt::GlobalColor pillColor = Qt::black;
constexpr double pillAlpha = 0.48;
constexpr QRgb opaquePill = 0xFF262626;
constexpr double pillRadius = 7;
constexpr double pillPaddingX = 14;
constexpr double pillPaddingY = 8;

constexpr double glyphSize = 14;
constexpr double glyphLineWidth = 1.25;
constexpr double glyphSpace = 7;

QFont labelFont() {
    return themeFont(labelPixelSize, QFont::DemiBold);
}

QColor withAlpha(QColor color, double alpha) {
    color.setAlphaF(static_cast<float>(alpha));
    return color;
}

double lineWidth(const ZonePicture& zone) {
    return zone.isActive ? activeLineWidth : inactiveLineWidth;
}

QPainterPath roundedPath(const QRectF& rectangle, double radius) {
    QPainterPath path;
    path.addRoundedRect(rectangle, radius, radius);
    return path;
}

QRegion roundedRegion(const QRectF& rectangle, double radius) {
    if (!rectangle.isValid()) {
        return {};
    }
    const QPolygon polygon = roundedPath(rectangle, std::max(radius, 0.0)).toFillPolygon().toPolygon();
    return {polygon};
}

QRectF scaled(const QRectF& rectangle, double factor) {
    return {rectangle.topLeft() * factor, rectangle.size() * factor};
}

} // namespace

WindowDragOverlayView::WindowDragOverlayView()
    : QWidget(nullptr, Qt::Tool | Qt::FramelessWindowHint | Qt::BypassWindowManagerHint | Qt::WindowStaysOnTopHint |
                           Qt::WindowDoesNotAcceptFocus | Qt::WindowTransparentForInput | Qt::NoDropShadowWindowHint) {
    setAttribute(Qt::WA_TranslucentBackground);
    setAttribute(Qt::WA_ShowWithoutActivating);
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setAttribute(Qt::WA_QuitOnClose, false);
    setFocusPolicy(Qt::NoFocus);
}

void WindowDragOverlayView::setZones(std::vector<ZonePicture> zones, CGSize displaySize) {
    if (displaySize != displaySize_) {
        displaySize_ = displaySize;
        drawings_.clear();
        update();
    }
    QRegion changed;
    std::vector<Drawing> drawings;
    drawings.reserve(zones.size());
    for (std::size_t i = 0; i < zones.size(); ++i) {
        if (i < drawings_.size() && drawings_[i].zone == zones[i]) {
            drawings.push_back(std::move(drawings_[i]));
        } else {
            changed |= i < drawings_.size() ? drawings_[i].area : QRegion();
            drawings.push_back(drawingOf(std::move(zones[i])));
            changed |= drawings.back().area;
        }
    }
    for (std::size_t i = zones.size(); i < drawings_.size(); ++i) {
        changed |= drawings_[i].area;
    }
    drawings_ = std::move(drawings);
    update(changed);
}

void WindowDragOverlayView::setSurface(OverlaySurface surface) {
    if (surface != surface_) {
        surface_ = surface;
        drawAnew();
    }
}

void WindowDragOverlayView::updateScale() {
    drawAnew();
}

void WindowDragOverlayView::drawAnew() {
    for (Drawing& drawing : drawings_) {
        drawing = drawingOf(std::move(drawing.zone));
    }
    update();
}

std::vector<CGRect> WindowDragOverlayView::cutOut() const {
    std::vector<CGRect> rectangles;
    for (const Drawing& drawing : drawings_) {
        for (const QRegion* region : {&drawing.outline, &drawing.pillArea}) {
            for (const QRect& rectangle : *region) {
                rectangles.push_back(
                    {.origin = {.x = static_cast<double>(rectangle.x()), .y = static_cast<double>(rectangle.y())},
                     .size = {.width = static_cast<double>(rectangle.width()),
                              .height = static_cast<double>(rectangle.height())}});
            }
        }
    }
    return rectangles;
}

void WindowDragOverlayView::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    const auto draw = [&](auto parts) {
        for (const Drawing& drawing : drawings_) {
            if (event->region().intersects(drawing.area)) {
                parts(drawing);
            }
        }
    };
    if (surface_ == OverlaySurface::translucent) {
        draw([&](const Drawing& drawing) {
            drawTranslucent(painter, drawing);
            drawLabel(painter, drawing);
        });
    } else {
        // Opaque lines would cut through the labels of larger zones. In full colour, also where inactive: what is below
        // is not known, and a paler line may vanish on it.
        draw([&](const Drawing& drawing) { fillPixels(painter, drawing.outline, baseColor(drawing.zone)); });
        draw([&](const Drawing& drawing) {
            fillPixels(painter, drawing.pillArea, opaquePill);
            drawLabel(painter, drawing);
        });
    }
}

void WindowDragOverlayView::drawTranslucent(QPainter& painter, const Drawing& drawing) const {
    const ZonePicture& zone = drawing.zone;
    const QColor color = baseColor(zone);
    const QPainterPath path = roundedPath(flipped(rectangleOf(zone)), zoneRadius);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillPath(path, withAlpha(color, zone.isActive ? activeFillAlpha : inactiveFillAlpha));
    painter.strokePath(path, QPen(zone.isActive ? color : withAlpha(color, inactiveStrokeAlpha), lineWidth(zone)));
    painter.fillPath(roundedPath(flipped(drawing.pill.rectangle), pillRadius), withAlpha(pillColor, pillAlpha));
}

void WindowDragOverlayView::fillPixels(QPainter& painter, const QRegion& pixels, const QColor& color) const {
    painter.save();
    painter.scale(1 / devicePixelRatioF(), 1 / devicePixelRatioF());
    painter.setRenderHint(QPainter::Antialiasing, false);
    for (const QRect& rectangle : pixels) {
        painter.fillRect(rectangle, color);
    }
    painter.restore();
}

void WindowDragOverlayView::drawLabel(QPainter& painter, const Drawing& drawing) const {
    const Pill& pill = drawing.pill;
    if (drawing.zone.isActive) {
        painter.save();
        painter.translate(0, displayHeight());
        painter.scale(1, -1);
        drawFace(&painter,
                 {pill.rectangle.x() + pillPaddingX, pill.rectangle.center().y() - glyphSize / 2, glyphSize, glyphSize},
                 labelColor, glyphLineWidth);
        painter.restore();
    }
    const QFont font = labelFont();
    // The text stands on the pill's lower padding; Qt places it by its baseline.
    const double baseline = pill.rectangle.y() + pillPaddingY + QFontMetricsF(font).descent();
    painter.setFont(font);
    painter.setPen(labelColor);
    painter.drawText(QPointF(pill.rectangle.x() + pillPaddingX + pill.markerWidth, displayHeight() - baseline),
                     pill.text);
}

WindowDragOverlayView::Drawing WindowDragOverlayView::drawingOf(ZonePicture zone) const {
    Drawing drawing{.pill = pillOf(zone)};
    drawing.area = areaOf(zone, drawing.pill);
    if (surface_ == OverlaySurface::cutOut) {
        drawing.outline = outlineOf(zone);
        drawing.pillArea = pillAreaOf(drawing.pill);
    }
    drawing.zone = std::move(zone);
    return drawing;
}

WindowDragOverlayView::Pill WindowDragOverlayView::pillOf(const ZonePicture& zone) const {
    Pill pill{.text = QString::fromStdString(zone.label), .markerWidth = zone.isActive ? glyphSize + glyphSpace : 0};
    const QFontMetricsF metrics(labelFont());
    const double width = metrics.horizontalAdvance(pill.text) + pill.markerWidth + 2 * pillPaddingX;
    const double height = metrics.height() + 2 * pillPaddingY;
    const QPointF middle = rectangleOf(zone).center();
    pill.rectangle = {middle.x() - width / 2, middle.y() - height / 2, width, height};
    return pill;
}

QRectF WindowDragOverlayView::rectangleOf(const ZonePicture& zone) const {
    return scaled({zone.frame.minX(), zone.frame.minY(), zone.frame.width(), zone.frame.height()},
                  1 / devicePixelRatioF());
}

QRectF WindowDragOverlayView::flipped(const QRectF& rectangle) const {
    return {rectangle.x(), displayHeight() - rectangle.y() - rectangle.height(), rectangle.width(), rectangle.height()};
}

QColor WindowDragOverlayView::baseColor(const ZonePicture& zone) const {
    return themeColor(zone.kind == ZoneKind::custom ? customZoneColor : builtInZoneColor, palette());
}

QRegion WindowDragOverlayView::areaOf(const ZonePicture& zone, const Pill& pill) const {
    const QRectF rectangle = flipped(rectangleOf(zone)).normalized();
    constexpr double outside = activeLineWidth / 2 + 1;
    QRegion area = rectangle.adjusted(-outside, -outside, outside, outside).toAlignedRect();
    if (surface_ == OverlaySurface::cutOut) {
        // The corners reach further inside than the lines.
        static_assert(zoneRadius > activeCutOutLineWidth + 1);
        area -= rectangle.adjusted(zoneRadius, zoneRadius, -zoneRadius, -zoneRadius).toRect();
    }
    // Cut out in pixels, its edge may lie up to half a pixel outside.
    return area | flipped(pill.rectangle).toAlignedRect().adjusted(-1, -1, 1, 1);
}

QRegion WindowDragOverlayView::outlineOf(const ZonePicture& zone) const {
    // Whole pixels, and inside the zone: at the display's edge half of a centred line would be lost, and an opaque line
    // has no neighbour to blend with.
    const double ratio = devicePixelRatioF();
    const double width = std::round((zone.isActive ? activeCutOutLineWidth : inactiveCutOutLineWidth) * ratio);
    const double radius = zoneRadius * ratio;
    const QRectF outer = scaled(flipped(rectangleOf(zone)), ratio);
    return roundedRegion(outer, radius) - roundedRegion(outer.adjusted(width, width, -width, -width), radius - width);
}

QRegion WindowDragOverlayView::pillAreaOf(const Pill& pill) const {
    const double ratio = devicePixelRatioF();
    return roundedRegion(scaled(flipped(pill.rectangle), ratio), pillRadius * ratio);
}

double WindowDragOverlayView::displayHeight() const {
    return displaySize_.height / devicePixelRatioF();
}

} // namespace brisk
