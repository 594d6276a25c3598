#pragma once

#include "drag/zone_picture.h"
#include "ui/layers.h"

#include <QColor>
#include <QImage>
#include <QRegion>
#include <QWidget>

#include <memory>
#include <vector>

namespace brisk {

/// How zones are drawn: translucent where the desktop can show what is below, else as opaque outlines and labels, to
/// which the window is cut so that it covers nothing besides.
enum class OverlaySurface { translucent, cutOut };

/// Draws the drop zones over one display. The zones come in the display's own pixels, whatever scale factor the toolkit
/// works with; corners, lines and labels grow with the factor.
class WindowDragOverlayView final : public QWidget {
public:
    WindowDragOverlayView();

    /// Shows these zones on a display of that size (both in points of the display) and repaints where the picture
    /// changed.
    void setZones(const std::vector<ZonePicture>& zones, CGSize displaySize);
    void setSurface(OverlaySurface surface);
    /// Draws everything anew for the scale that the display has now.
    void updateScale();

    /// What is drawn on a cut-out surface: rectangles that may overlap, in pixels of the display, y down.
    std::vector<CGRect> cutOut() const;

protected:
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    /// The label's dark field, in the toolkit's units with y up, and what stands on it.
    struct Pill {
        QString text;
        /// Space that the active marker takes before the text.
        double markerWidth = 0;
        QRectF rectangle;
    };
    /// A zone with what takes longer to find out than to paint, in pixels.
    struct Drawing {
        ZonePicture zone;
        /// Where anything of it is painted.
        QRegion covered;
        Layer label;

        /// What a translucent surface shows below the label.
        std::vector<Layer> layers;

        /// What it takes of a cut-out surface.
        QColor lineColor;
        QRegion outline;
        QRegion pillArea;
    };
    using DrawingRef = std::shared_ptr<const Drawing>;
    /// From among those known, or drawn now and known from then on.
    DrawingRef drawingOf(const ZonePicture& zone, std::vector<DrawingRef>& known) const;
    /// What those drawings cover that are not in the same place of the others.
    static QRegion coveredByNew(const std::vector<DrawingRef>& drawings, const std::vector<DrawingRef>& others);
    Drawing newDrawing(const ZonePicture& zone) const;
    Pill pillOf(const ZonePicture& zone) const;
    QImage labelOf(const Pill& pill) const;
    QRectF zonePixels(const ZonePicture& zone) const;
    /// A rectangle with y up as the widget and its painters before the flip have it.
    QRectF flipped(const QRectF& rectangle) const;
    QColor baseColor(const ZonePicture& zone) const;
    QRect labelPixels(const Pill& pill) const;
    /// All pixels that a region in the widget's units has a part of, and the other way round.
    QRegion pixelsOf(const QRegion& units) const;
    QRegion unitsOf(const QRegion& pixels) const;
    QRegion outlineOf(const ZonePicture& zone) const;
    QRegion pillAreaOf(const Pill& pill) const;
    void drawAnew();
    double displayHeight() const;

    // In pixels, which the painter's units are, too.
    void paintTranslucent(QPainter& painter, const QRegion& pixels) const;
    void paintCutOut(QPainter& painter, const QRegion& pixels) const;

    std::vector<DrawingRef> drawings_;
    /// For each of these all that were drawn since the zones appeared, for this display, scale, surface and palette:
    /// the same few zones become active and inactive again.
    std::vector<std::vector<DrawingRef>> known_;
    CGSize displaySize_;
    OverlaySurface surface_ = OverlaySurface::translucent;
};

} // namespace brisk
