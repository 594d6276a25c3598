#include "ui/theme.h"

#include <QGuiApplication>

#include <algorithm>
#include <cmath>

namespace brisk {

namespace {

struct Pair {
    QColor light;
    QColor dark;
};

QColor black(double alpha) {
    return QColor::fromRgbF(0, 0, 0, static_cast<float>(alpha));
}

QColor white(double alpha) {
    return QColor::fromRgbF(1, 1, 1, static_cast<float>(alpha));
}

Pair fixedPair(ColorRole role) {
    switch (role) {
    case ColorRole::label:
        return {black(0.85), white(0.85)};
    case ColorRole::secondaryLabel:
        return {black(0.50), white(0.55)};
    case ColorRole::tertiaryLabel:
        return {black(0.26), white(0.25)};
    case ColorRole::separator:
        return {black(0.10), white(0.10)};
    case ColorRole::unemphasizedSelection:
        return {QColor(0xDC, 0xDC, 0xDC), QColor(0x46, 0x46, 0x46)};
    case ColorRole::link:
        return {QColor(0x00, 0x68, 0xDA), QColor(0x41, 0x9C, 0xFF)};
    case ColorRole::green:
        return {QColor(0x28, 0xCD, 0x41), QColor(0x32, 0xD7, 0x4B)};
    case ColorRole::orange:
        return {QColor(0xFF, 0x95, 0x00), QColor(0xFF, 0x9F, 0x0A)};
    case ColorRole::red:
        return {QColor(0xFF, 0x3B, 0x30), QColor(0xFF, 0x45, 0x3A)};
    case ColorRole::teal:
        return {QColor(0x59, 0xAD, 0xC4), QColor(0x6A, 0xC4, 0xDC)};
    case ColorRole::windowBackground:
    case ColorRole::controlBackground:
    case ColorRole::accent:
        break; // the palette's own
    }
    return {};
}

} // namespace

bool isDark(const QPalette& palette) {
    return palette.color(QPalette::Active, QPalette::WindowText).lightness() >
           palette.color(QPalette::Active, QPalette::Window).lightness();
}

QColor themeColor(ColorRole role, const QPalette& palette) {
    // The active group throughout: the overlay never has focus and must not turn grey for that.
    switch (role) {
    case ColorRole::windowBackground:
        return palette.color(QPalette::Active, QPalette::Window);
    case ColorRole::controlBackground:
        return palette.color(QPalette::Active, QPalette::Base);
    case ColorRole::accent:
        // Desktops with an accent colour hand it to applications as the highlight.
        return palette.color(QPalette::Active, QPalette::Highlight);
    default: {
        const Pair pair = fixedPair(role);
        return isDark(palette) ? pair.dark : pair.light;
    }
    }
}

namespace {

/// WCAG 2.1's relative luminance.
double luminance(const QColor& color) {
    const auto linear = [](double channel) {
        return channel <= 0.03928 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

double contrast(const QColor& a, const QColor& b) {
    // The list gives values: of two temporaries, `minmax` gives references that outlive them.
    const auto [darker, lighter] = std::minmax({luminance(a), luminance(b)});
    return (lighter + 0.05) / (darker + 0.05);
}

} // namespace

QColor readableOn(const QColor& background, QColor color) {
    const QColor extreme = contrast(background, Qt::black) > contrast(background, Qt::white) ? Qt::black : Qt::white;
    const auto step = [](int from, int to) { return from + (to - from + (to > from ? 9 : -9)) / 10; };
    while (contrast(color, background) < 4.5 && color != extreme) {
        color = QColor(step(color.red(), extreme.red()), step(color.green(), extreme.green()),
                       step(color.blue(), extreme.blue()));
    }
    return color;
}

QFont themeFont(int pixelSize, QFont::Weight weight) {
    QFont font = QGuiApplication::font();
    font.setPixelSize(pixelSize);
    font.setWeight(weight);
    return font;
}

} // namespace brisk
