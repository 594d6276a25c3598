#include "ui/key_cap.h"

#include "ui/theme.h"

#include <QFontDatabase>
#include <QPainter>

#include <algorithm>

namespace brisk {

namespace {

constexpr QSize keySize{70, 26};
constexpr double capRadius = 6;
constexpr double borderWidth = 1;
constexpr int smallestTextMargin = 8;
constexpr int textPixelSize = 13;
constexpr double letterSpacing = 1.5;

QFont keyFont() {
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    font.setPixelSize(textPixelSize);
    font.setWeight(QFont::Medium);
    font.setLetterSpacing(QFont::AbsoluteSpacing, letterSpacing);
    return font;
}

} // namespace

KeyCap::KeyCap(const QString& text, QWidget* parent) : QLabel(text, parent) {
    setFont(keyFont());
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setTextFormat(Qt::PlainText);
}

QSize KeyCap::sizeHint() const {
    const int textWidth = fontMetrics().horizontalAdvance(text()) + 2 * smallestTextMargin;
    return {std::max(keySize.width(), textWidth), keySize.height()};
}

void KeyCap::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(themeColor(ColorRole::separator, palette()), borderWidth));
    painter.setBrush(themeColor(ColorRole::controlBackground, palette()));
    const double inset = borderWidth / 2;
    painter.drawRoundedRect(QRectF(rect()).adjusted(inset, inset, -inset, -inset), capRadius, capRadius);
    painter.setPen(themeColor(ColorRole::label, palette()));
    // Keys stand in the order in which they are named, whatever way the user reads.
    painter.setLayoutDirection(Qt::LeftToRight);
    // The space after the last letter is none of the text's.
    painter.drawText(QRectF(rect()).translated(letterSpacing / 2, 0), Qt::AlignCenter, text());
}

} // namespace brisk
