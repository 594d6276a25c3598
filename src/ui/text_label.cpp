#include "ui/text_label.h"

#include <QHelpEvent>
#include <QPainter>
#include <QStyle>
#include <QTextLayout>
#include <QToolTip>

#include <algorithm>
#include <cmath>

namespace brisk {

namespace {

/// Names come from a file and may be of any length: no line shows more of them than this.
constexpr qsizetype maximumCharactersALine = 512;
/// The tool tip stays on the screen even so.
constexpr qsizetype maximumToolTipCharacters = 2000;
constexpr int compressedCharacters = 6;

/// Never less than what drawing the text takes: rounded down, its last letter would be elided.
int naturalWidth(const QString& text, const QFont& font) {
    const QFontMetricsF metrics(font);
    return static_cast<int>(std::ceil(std::max(metrics.horizontalAdvance(text), metrics.boundingRect(text).right()))) +
           1;
}

} // namespace

TextLabel::TextLabel(const QString& text, const TextLook& look, QWidget* parent) : QLabel(parent), look_(look) {
    QFont font = themeFont(look.pixelSize, look.weight);
    font.setItalic(look.isItalic);
    setFont(font);
    setTextFormat(Qt::PlainText);
    setText(text);
    QSizePolicy policy(look.isCompressible ? QSizePolicy::Preferred : QSizePolicy::Fixed,
                       look.maximumLines == 1 ? QSizePolicy::Fixed : QSizePolicy::Preferred);
    policy.setHeightForWidth(look.maximumLines != 1);
    setSizePolicy(policy);
}

int TextLabel::heightOf(qsizetype lineCount) const {
    return fontMetrics().lineSpacing() * static_cast<int>(std::max<qsizetype>(lineCount, 1));
}

/// `setText` is not virtual: a text that is another now is noticed when it is laid out.
void TextLabel::forgetOtherText() const {
    if (laidOutText_ != text()) {
        laidOutText_ = text();
        naturalSize_ = {};
        linesWidth_ = -1;
    }
}

const TextLabel::Lines& TextLabel::linesIn(int width) const {
    forgetOtherText();
    if (width != linesWidth_) {
        lines_ = brokenInto(width);
        linesWidth_ = width;
    }
    return lines_;
}

TextLabel::Lines TextLabel::brokenInto(int width) const {
    const QString full = text();
    if (look_.maximumLines == 1) {
        // Line breaks in a name are spaces in its one line.
        const QString line = full.left(maximumCharactersALine).simplified();
        const QString shown = fontMetrics().elidedText(full.size() > maximumCharactersALine ? line + u'\u2026' : line,
                                                       Qt::ElideRight, width);
        return {.texts = {shown}, .isElided = shown != line || full.size() > maximumCharactersALine};
    }

    if (sizeHint().width() <= width && !full.contains(u'\n')) {
        return {.texts = {full}};
    }

    Lines lines;
    const qsizetype lineLimit = look_.maximumLines > 0 ? look_.maximumLines : full.size() + 1;
    for (const QString& paragraph : full.split(u'\n')) {
        QTextLayout layout(paragraph, font());
        QTextOption option;
        option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
        layout.setTextOption(option);
        layout.beginLayout();
        qsizetype start = 0;
        do {
            if (lines.texts.size() == lineLimit) {
                lines.texts.back() = fontMetrics().elidedText(lines.texts.back() + u'\u2026', Qt::ElideRight, width);
                lines.isElided = true;
                return lines;
            }
            QTextLine line = layout.createLine();
            if (!line.isValid()) {
                lines.texts.append(QString());
                break;
            }
            line.setLineWidth(width);
            start = line.textStart() + line.textLength();
            lines.texts.append(paragraph.mid(line.textStart(), line.textLength()).trimmed());
        } while (start < paragraph.size());
        layout.endLayout();
    }
    return lines;
}

QSize TextLabel::sizeHint() const {
    forgetOtherText();
    if (!naturalSize_.isValid()) {
        const QStringList lines = look_.maximumLines == 1
                                      ? QStringList{text().left(maximumCharactersALine).simplified()}
                                      : text().split(u'\n');
        int width = 0;
        for (const QString& line : lines) {
            width = std::max(width, naturalWidth(line.left(maximumCharactersALine), font()));
        }
        naturalSize_ = {width, heightOf(lines.size())};
    }
    return naturalSize_;
}

QSize TextLabel::minimumSizeHint() const {
    const QSize natural = sizeHint();
    if (!look_.isCompressible) {
        return natural;
    }
    return {std::min(natural.width(), fontMetrics().averageCharWidth() * compressedCharacters), heightOf(1)};
}

int TextLabel::heightForWidth(int width) const {
    return look_.maximumLines == 1 ? heightOf(1) : heightOf(linesIn(width).texts.size());
}

bool TextLabel::event(QEvent* event) {
    if (event->type() == QEvent::FontChange) {
        naturalSize_ = {};
        linesWidth_ = -1;
    }
    if (event->type() == QEvent::ToolTip && linesIn(width()).isElided) {
        // As rich text, because only that wraps.
        const QString tip = Qt::convertFromPlainText(text().left(maximumToolTipCharacters));
        QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(), tip, this);
        return true;
    }
    return QLabel::event(event);
}

void TextLabel::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    QColor color = themeColor(look_.color, palette());
    if (look_.alpha) {
        color.setAlphaF(static_cast<float>(*look_.alpha));
    }
    if (look_.color == ColorRole::green || look_.color == ColorRole::orange || look_.color == ColorRole::red) {
        // Chosen for areas; as small text these say nothing to many eyes.
        color = readableOn(palette().color(QPalette::Window), color);
    }
    painter.setPen(color);
    const Qt::Alignment alignment =
        QStyle::visualAlignment(layoutDirection(), look_.alignment) | Qt::AlignAbsolute | Qt::AlignVCenter;
    const Lines& lines = linesIn(width());
    const int lineHeight = fontMetrics().lineSpacing();
    int y = (height() - heightOf(lines.texts.size())) / 2;
    for (const QString& line : lines.texts) {
        // A text reads in its own direction; the interface's decides only where it stands.
        painter.setLayoutDirection(line.isRightToLeft() ? Qt::RightToLeft : Qt::LeftToRight);
        painter.drawText(QRect(0, y, width(), lineHeight), static_cast<int>(alignment.toInt()) | Qt::TextSingleLine,
                         line);
        y += lineHeight;
    }
}

} // namespace brisk
