#include "ui/drag_overlay_view.h"

#include "ui/face_glyph.h"
#include "ui/rounded_rectangle.h"
#include "ui/theme.h"

#include <QFontMetricsF>
#include <QPaintEvent>
#include <QPainter>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <utility>

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

void WindowDragOverlayView::setZones(const std::vector<ZonePicture>& zones, CGSize displaySize) {
    if (displaySize != displaySize_) {
        displaySize_ = displaySize;
        drawings_.clear();
        known_.clear();
    }
    known_.resize(std::max(known_.size(), zones.size()));
    std::vector<DrawingRef> drawings;
    drawings.reserve(zones.size());
    for (std::size_t i = 0; i < zones.size(); ++i) {
        drawings.push_back(drawingOf(zones[i], known_[i]));
    }
    drawings_.swap(drawings);
    update(drawings.empty() ? rect() : unitsOf(coveredByNew(drawings_, drawings) | coveredByNew(drawings, drawings_)));
}

QRegion WindowDragOverlayView::coveredByNew(const std::vector<DrawingRef>& drawings,
                                            const std::vector<DrawingRef>& others) {
    QRegion covered;
    for (std::size_t i = 0; i < drawings.size(); ++i) {
        if (i >= others.size() || drawings[i] != others[i]) {
            covered |= drawings[i]->covered;
        }
    }
    return covered;
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

void WindowDragOverlayView::changeEvent(QEvent* event) {
    if (event->type() == QEvent::PaletteChange) {
        drawAnew();
    }
    QWidget::changeEvent(event);
}

void WindowDragOverlayView::drawAnew() {
    known_.assign(drawings_.size(), {});
    for (std::size_t i = 0; i < drawings_.size(); ++i) {
        drawings_[i] = drawingOf(drawings_[i]->zone, known_[i]);
    }
    update();
}

std::vector<CGRect> WindowDragOverlayView::cutOut() const {
    std::vector<CGRect> rectangles;
    for (const DrawingRef& drawing : drawings_) {
        for (const QRegion* region : {&drawing->outline, &drawing->pillArea}) {
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
    painter.scale(1 / devicePixelRatioF(), 1 / devicePixelRatioF());
    const QRegion pixels = pixelsOf(event->region());
    if (surface_ == OverlaySurface::translucent) {
        paintTranslucent(painter, pixels);
    } else {
        paintCutOut(painter, pixels);
    }
}

void WindowDragOverlayView::paintTranslucent(QPainter& painter, const QRegion& pixels) const {
    std::vector<Layer> layers;
    for (const DrawingRef& drawing : drawings_) {
        if (drawing->covered.intersects(pixels)) {
            std::ranges::copy(drawing->layers, std::back_inserter(layers));
            layers.push_back(drawing->label);
        }
    }
    paintLayers(painter, pixels, layers);
}

void WindowDragOverlayView::paintCutOut(QPainter& painter, const QRegion& pixels) const {
    const auto fill = [&](const QRegion& region, const QColor& color) {
        if (region.intersects(pixels)) {
            for (const QRect& rectangle : region) {
                painter.fillRect(rectangle, color);
            }
        }
    };
    // Opaque lines would cut through the labels of larger zones. In full colour, also where inactive: what is below is
    // not known, and a paler line may vanish on it.
    for (const DrawingRef& drawing : drawings_) {
        fill(drawing->outline, drawing->lineColor);
    }
    for (const DrawingRef& drawing : drawings_) {
        fill(drawing->pillArea, opaquePill);
        if (pixels.intersects(drawing->label.rectangle)) {
            painter.drawImage(drawing->label.rectangle, drawing->label.picture);
        }
    }
}

WindowDragOverlayView::DrawingRef WindowDragOverlayView::drawingOf(const ZonePicture& zone,
                                                                   std::vector<DrawingRef>& known) const {
    const auto found =
        std::ranges::find(known, zone, [](const DrawingRef& drawing) -> const ZonePicture& { return drawing->zone; });
    return found != known.end() ? *found : known.emplace_back(std::make_shared<const Drawing>(newDrawing(zone)));
}

WindowDragOverlayView::Drawing WindowDragOverlayView::newDrawing(const ZonePicture& zone) const {
    const double ratio = devicePixelRatioF();
    const QColor color = baseColor(zone);
    const Pill pill = pillOf(zone);
    Drawing drawing{.zone = zone, .label = {.rectangle = labelPixels(pill), .picture = labelOf(pill)}};
    if (surface_ == OverlaySurface::translucent) {
        const QPen line(zone.isActive ? color : withAlpha(color, inactiveStrokeAlpha),
                        (zone.isActive ? activeLineWidth : inactiveLineWidth) * ratio);
        drawing.layers = roundedRectangle(zonePixels(zone).normalized(), zoneRadius * ratio,
                                          withAlpha(color, zone.isActive ? activeFillAlpha : inactiveFillAlpha), line);
        QRect bounds;
        for (const Layer& layer : drawing.layers) {
            bounds |= layer.rectangle;
        }
        drawing.covered = bounds;
    } else {
        drawing.lineColor = color;
        drawing.outline = outlineOf(zone);
        drawing.pillArea = pillAreaOf(pill);
        drawing.covered = drawing.outline;
    }
    drawing.covered |= drawing.label.rectangle;
    return drawing;
}

/// The label with its field, which on a cut-out surface is laid below it in whole pixels.
QImage WindowDragOverlayView::labelOf(const Pill& pill) const {
    const QRect pixels = labelPixels(pill);
    QImage label = emptyPicture(pixels.size());
    QPainter painter(&label);
    painter.translate(-pixels.topLeft());
    painter.scale(devicePixelRatioF(), devicePixelRatioF());
    if (surface_ == OverlaySurface::translucent) {
        painter.setRenderHint(QPainter::Antialiasing);
        painter.fillPath(roundedPath(flipped(pill.rectangle), pillRadius), withAlpha(pillColor, pillAlpha));
    }
    if (pill.markerWidth > 0) {
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
    return label;
}

WindowDragOverlayView::Pill WindowDragOverlayView::pillOf(const ZonePicture& zone) const {
    Pill pill{.text = QString::fromStdString(zone.label), .markerWidth = zone.isActive ? glyphSize + glyphSpace : 0};
    const QFontMetricsF metrics(labelFont());
    const double width = metrics.horizontalAdvance(pill.text) + pill.markerWidth + 2 * pillPaddingX;
    const double height = metrics.height() + 2 * pillPaddingY;
    const QPointF middle =
        QRectF(zone.frame.minX(), zone.frame.minY(), zone.frame.width(), zone.frame.height()).center() /
        devicePixelRatioF();
    pill.rectangle = {middle.x() - width / 2, middle.y() - height / 2, width, height};
    return pill;
}

QRectF WindowDragOverlayView::zonePixels(const ZonePicture& zone) const {
    return {zone.frame.minX(), displaySize_.height - zone.frame.maxY(), zone.frame.width(), zone.frame.height()};
}

QRectF WindowDragOverlayView::flipped(const QRectF& rectangle) const {
    return {rectangle.x(), displayHeight() - rectangle.y() - rectangle.height(), rectangle.width(), rectangle.height()};
}

QColor WindowDragOverlayView::baseColor(const ZonePicture& zone) const {
    return themeColor(zone.kind == ZoneKind::custom ? customZoneColor : builtInZoneColor, palette());
}

/// What the label covers of the display, however long its text is. Cut out in whole pixels, its edge may lie up to half
/// a pixel outside.
QRect WindowDragOverlayView::labelPixels(const Pill& pill) const {
    const QRectF label = scaled(flipped(pill.rectangle), devicePixelRatioF());
    return (label & QRectF(0, 0, displaySize_.width, displaySize_.height)).toAlignedRect().adjusted(-1, -1, 1, 1);
}

QRegion WindowDragOverlayView::unitsOf(const QRegion& pixels) const {
    QRegion units;
    for (const QRect& rectangle : pixels) {
        units |= scaled(rectangle, 1 / devicePixelRatioF()).toAlignedRect();
    }
    return units;
}

QRegion WindowDragOverlayView::pixelsOf(const QRegion& units) const {
    QRegion pixels;
    for (const QRect& rectangle : units) {
        pixels |= scaled(rectangle, devicePixelRatioF()).toAlignedRect();
    }
    return pixels;
}

QRegion WindowDragOverlayView::outlineOf(const ZonePicture& zone) const {
    // Whole pixels, and inside the zone: at the display's edge half of a centred line would be lost, and an opaque line
    // has no neighbour to blend with.
    const double ratio = devicePixelRatioF();
    const double width = std::round((zone.isActive ? activeCutOutLineWidth : inactiveCutOutLineWidth) * ratio);
    const double radius = zoneRadius * ratio;
    const QRectF outer = zonePixels(zone);
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
