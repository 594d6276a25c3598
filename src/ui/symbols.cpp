#include "ui/symbols.h"

#include <QFile>
#include <QIconEngine>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>

#include <cmath>

namespace brisk {

namespace {

QString drawingPath(const QString& name) {
    return QStringLiteral(":/symbols/%1.svg").arg(name);
}

class SymbolIconEngine final : public QIconEngine {
public:
    SymbolIconEngine(QString name, const QColor& color) : name_(std::move(name)), color_(color) {}

    void paint(QPainter* painter, const QRect& rectangle, QIcon::Mode mode, QIcon::State state) override {
        const double ratio = painter->device()->devicePixelRatioF();
        painter->drawPixmap(rectangle, scaledPixmap(rectangle.size() * ratio, mode, state, ratio));
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        return scaledPixmap(size, mode, state, 1);
    }

    /// `size` is in device pixels; the caller of the icon sets the ratio.
    QPixmap scaledPixmap(const QSize& size, QIcon::Mode mode, QIcon::State /*state*/, qreal /*scale*/) override {
        QColor color = color_;
        if (mode == QIcon::Disabled) {
            color.setAlphaF(color.alphaF() * 0.4F);
        }
        QPixmap drawn = symbolPixmap(name_, std::min(size.width(), size.height()), color, 1);
        if (drawn.size() == size) {
            return drawn;
        }
        QPixmap centred(size);
        centred.fill(Qt::transparent);
        QPainter painter(&centred);
        painter.drawPixmap((size.width() - drawn.width()) / 2, (size.height() - drawn.height()) / 2, drawn);
        return centred;
    }

    QIconEngine* clone() const override { return new SymbolIconEngine(*this); }

private:
    QString name_;
    QColor color_;
};

} // namespace

QPixmap symbolPixmap(const QString& name, int size, const QColor& color, double devicePixelRatio) {
    QSvgRenderer drawing;
    if (size <= 0 || !QFile::exists(drawingPath(name)) || !drawing.load(drawingPath(name))) {
        return {};
    }
    const int pixels = static_cast<int>(std::lround(size * devicePixelRatio));
    QImage image(pixels, pixels, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    drawing.render(&painter);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(image.rect(), color);
    painter.end();
    image.setDevicePixelRatio(devicePixelRatio);
    return QPixmap::fromImage(std::move(image));
}

QIcon symbolIcon(const QString& name, const QColor& color) {
    return QFile::exists(drawingPath(name)) ? QIcon(new SymbolIconEngine(name, color)) : QIcon();
}

} // namespace brisk
