#include "ui/about_button.h"

#include "ui/theme.h"

#include <QFocusEvent>
#include <QPainter>

namespace brisk {

namespace {

constexpr double cornerRadius = 9;
constexpr int titlePixelSize = 15;

} // namespace

AboutButton::AboutButton(const QString& title, const QSize& size, QWidget* parent) : QPushButton(title, parent) {
    setFont(themeFont(titlePixelSize));
    setFixedSize(size);
    setAutoDefault(false);
}

void AboutButton::focusInEvent(QFocusEvent* event) {
    // There is no ring, except for someone who came by keyboard and would otherwise not know where they are.
    showsFocus_ = event->reason() == Qt::TabFocusReason || event->reason() == Qt::BacktabFocusReason;
    QPushButton::focusInEvent(event);
}

void AboutButton::focusOutEvent(QFocusEvent* event) {
    showsFocus_ = false;
    QPushButton::focusOutEvent(event);
}

void AboutButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const double borderWidth = showsFocus_ ? 2 : 1;
    painter.setPen(QPen(themeColor(showsFocus_ ? ColorRole::accent : ColorRole::separator, palette()), borderWidth));
    painter.setBrush(themeColor(isDown() ? ColorRole::unemphasizedSelection : ColorRole::controlBackground, palette()));
    const double inset = borderWidth / 2;
    painter.drawRoundedRect(QRectF(rect()).adjusted(inset, inset, -inset, -inset), cornerRadius, cornerRadius);
    painter.setPen(themeColor(isEnabled() ? ColorRole::label : ColorRole::tertiaryLabel, palette()));
    painter.drawText(rect(), Qt::AlignCenter, text());
}

} // namespace brisk
