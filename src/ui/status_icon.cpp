#include "ui/status_icon.h"

#include "ui/face_glyph.h"
#include "ui/theme.h"

#include <QIconEngine>
#include <QPainter>

namespace brisk {

namespace {

class FaceIconEngine final : public QIconEngine {
public:
    FaceIconEngine(const QColor& color, const QColor& rim) : color_(color), rim_(rim) {}

    void paint(QPainter* painter, const QRect& rectangle, QIcon::Mode, QIcon::State) override {
        // The face at the size and weight of a menu bar's, its strokes centred, with room for their rim and no more.
        const double scale = std::min(rectangle.width(), rectangle.height()) / 17.0;
        painter->save();
        painter->translate(QRectF(rectangle).center());
        painter->scale(scale, -scale);
        const QRectF face(-8.5, -7.75, 17, 17);
        drawFace(painter, face, rim_, 3.2);
        drawFace(painter, face, color_, 1.8);
        painter->restore();
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        QPixmap drawn(size);
        drawn.fill(Qt::transparent);
        QPainter painter(&drawn);
        paint(&painter, QRect(QPoint(0, 0), size), mode, state);
        return drawn;
    }

    QIconEngine* clone() const override { return new FaceIconEngine(*this); }

private:
    QColor color_;
    QColor rim_;
};

} // namespace

QIcon statusIcon(const QPalette& palette) {
    const QColor dark(0x26, 0x26, 0x26);
    const QColor light(0xFF, 0xFF, 0xFF);
    return isDark(palette) ? QIcon(new FaceIconEngine(light, dark)) : QIcon(new FaceIconEngine(dark, light));
}

} // namespace brisk
