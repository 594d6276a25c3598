#include "ui/link_button.h"

#include "ui/theme.h"

#include <QFocusEvent>
#include <QPainter>

#include <utility>

namespace brisk {

namespace {

constexpr int linkPixelSize = 12;
constexpr int underlineGap = 1;

} // namespace

LinkButton::LinkButton(QString title, QWidget* parent) : QPushButton(parent), title_(std::move(title)) {
    setAccessibleName(title_);
    setFont(themeFont(linkPixelSize));
    setCursor(Qt::PointingHandCursor);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize LinkButton::sizeHint() const {
    return {fontMetrics().horizontalAdvance(title_), fontMetrics().height() + 1};
}

void LinkButton::focusInEvent(QFocusEvent* event) {
    showsFocus_ = event->reason() == Qt::TabFocusReason || event->reason() == Qt::BacktabFocusReason;
    QPushButton::focusInEvent(event);
}

void LinkButton::focusOutEvent(QFocusEvent* event) {
    showsFocus_ = false;
    QPushButton::focusOutEvent(event);
}

void LinkButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    QColor color = themeColor(ColorRole::link, palette());
    if (isDown()) {
        color.setAlphaF(0.6F);
    }
    painter.setPen(color);
    const QFontMetrics metrics = fontMetrics();
    painter.drawText(0, metrics.ascent(), title_);
    painter.fillRect(QRect(0, metrics.ascent() + underlineGap, width(), showsFocus_ ? 2 : 1), color);
}

} // namespace brisk
